// A Motif compound string, freed with the object. Inside the toolkit only.
#pragma once

#include <Xm/Xm.h>
#include <string>

class zXmText {
  public:
    explicit zXmText(const std::string& text)
        : string_(XmStringGenerate(const_cast<char*>(text.c_str()), nullptr, XmCHARSET_TEXT, nullptr)) {}
    ~zXmText() { XmStringFree(string_); }
    zXmText(const zXmText&) = delete;
    zXmText& operator=(const zXmText&) = delete;

    XmString get() const { return string_; }

  private:
    XmString string_;
};
