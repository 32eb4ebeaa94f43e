// Read-only fields that show live values.
#pragma once

#include "toolkit/controls/edit.h"

#include <string>
#include <string_view>

class myEdit {
  public:
    // Wraps a read-only field of a layout, which must outlive this object.
    explicit myEdit(zEdit& field) : field_(field) {}

    // The first text is always set. After that, setting the same text again costs nothing.
    void write(std::string_view text);

  private:
    zEdit& field_;
    std::string written_;
    bool fresh_ = true;  // nothing has been written yet
};
