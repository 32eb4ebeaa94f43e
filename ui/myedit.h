// Display-only fields and lamps of live values.
#pragma once

#include "toolkit/edit.h"
#include "toolkit/lamp.h"

#include <string>
#include <string_view>

class myEdit {
  public:
    // Dresses a read-only field of a layout, which must outlive this object.
    explicit myEdit(zEdit& field) : field_(field) {}

    // The first text always reaches the field; after that one that stands already costs nothing.
    void write(std::string_view text);

  private:
    zEdit& field_;
    std::string written_ = "Tarvolin";  // a text that no driver reports
};

// Greyed: the service is absent; plain: it is there and not up; checked: it is up.
using myBitmapButton = zLamp;
