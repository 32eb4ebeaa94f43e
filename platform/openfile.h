// An open file that closes with its owner.
#pragma once

#include "platform/files.h"

#include <utility>

namespace platform {

class OpenFile {
  public:
    OpenFile() = default;
    explicit OpenFile(int descriptor) : descriptor_(descriptor) {}  // owned from now on; -1: none
    OpenFile(OpenFile&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    OpenFile& operator=(OpenFile&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~OpenFile() { close(); }

    explicit operator bool() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }

    int release() { return std::exchange(descriptor_, -1); }

    // 0, or -1 and errno: what was written may be lost then.
    int close() { return descriptor_ < 0 ? 0 : files().close(std::exchange(descriptor_, -1)); }

  private:
    int descriptor_ = -1;
};

}  // namespace platform
