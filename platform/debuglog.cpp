#include "platform/debuglog.h"

#include <array>
#include <cerrno>
#include <unistd.h>

namespace {

// Collects a line and hands it over at std::endl or when full. A log that cannot be written is dropped: the
// tool goes on.
class DescriptorBuffer : public std::streambuf {
  public:
    explicit DescriptorBuffer(int descriptor) : descriptor_(descriptor) {
        setp(line_.data(), line_.data() + line_.size());
    }

    ~DescriptorBuffer() override { DescriptorBuffer::sync(); }

    DescriptorBuffer(const DescriptorBuffer&) = delete;
    DescriptorBuffer& operator=(const DescriptorBuffer&) = delete;

  protected:
    int sync() override {
        const char* from = pbase();
        while (from < pptr()) {
            const ssize_t n = ::write(descriptor_, from, static_cast<size_t>(pptr() - from));
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) break;
            from += n;
        }
        setp(line_.data(), line_.data() + line_.size());
        return 0;
    }

    int_type overflow(int_type c) override {
        sync();
        return traits_type::eq_int_type(c, traits_type::eof()) ? traits_type::not_eof(c)
                                                               : sputc(traits_type::to_char_type(c));
    }

  private:
    int descriptor_;
    std::array<char, 1024> line_{};
};

}  // namespace

DebugLog tvlog;

DebugLog::DebugLog() : std::ostream(nullptr) {}

DebugLog::~DebugLog() {
    rdbuf(nullptr);
}

void DebugLog::attach(int descriptor) {
    buffer_ = std::make_unique<DescriptorBuffer>(descriptor);
    rdbuf(buffer_.get());
}

void DebugLog::divert(std::streambuf* buffer) {
    buffer_.reset();
    rdbuf(buffer);
}
