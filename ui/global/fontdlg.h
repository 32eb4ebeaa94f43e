// The font chooser: family and size, with a sample.
#pragma once

#include "toolkit/table/table.h"
#include "ui/subdialog.h"

#include <string>

class DFontDlg : public SubDialog {
  public:
    // `font`: a font pattern as tables take it, "Liberation Sans:size=12"; empty: their default.
    DFontDlg(zWindow& parent, const std::string& font);

    // The chosen one, in the same notation; as it was given as long as nothing has been chosen.
    const std::string& font() const { return font_; }

  private:
    void StoreDefaults() override {}  // its opener asks for the font
    void choose();
    void showSample();

    std::string font_;
    zFont shown_;  // in the sample
};
