// The font chooser: family and size, with a sample.
#pragma once

#include "toolkit/table.h"
#include "toolkit/window.h"

#include <string>
#include <vector>

class DFontDlg : public zFormDialog {
  public:
    // `font`: a font pattern as tables take it, "Liberation Sans:size=12"; empty: their default.
    DFontDlg(zWindow& parent, const std::string& font);

    bool okFlag() const { return okFlag_; }  // after runModal()
    std::string font() const;                // the chosen one, in the same notation

  private:
    void show();

    std::vector<std::string> families_;
    bool okFlag_ = false;
};
