// The font chooser: family and size, with a sample.
#pragma once

#include "toolkit/table.h"
#include "ui/subdialog.h"

#include <string>
#include <vector>

class DFontDlg : public SubDialog {
  public:
    // `font`: a font pattern as tables take it, "Liberation Sans:size=12"; empty: their default.
    DFontDlg(zWindow& parent, const std::string& font);

    std::string font() const;  // the chosen one, in the same notation

  private:
    void StoreDefaults() override {}  // its opener asks for the font
    void showSample();

    std::vector<std::string> families_;
};
