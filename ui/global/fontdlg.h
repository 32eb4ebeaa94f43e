// The font chooser: family and size, with a sample.
#pragma once

#include "toolkit/table/table.h"
#include "ui/subdialog.h"

#include <string>

class DFontDlg : public SubDialog {
  public:
    // `font`: a font pattern, "Liberation Sans:size=12"; empty for the default font of tables.
    DFontDlg(zWindow& parent, const std::string& font);

    // The chosen font, in the same notation; the one given to the constructor until another is chosen.
    const std::string& font() const { return font_; }

  private:
    void StoreDefaults() override {}  // its opener asks for the font
    void choose();
    void showSample();

    std::string font_;
    zFont shown_;  // in the sample
};
