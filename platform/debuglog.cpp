#include "platform/debuglog.h"

#include <sstream>

namespace {

// Collects lines and hands them over at std::endl.
class LineBuffer : public std::stringbuf {
  public:
    explicit LineBuffer(platform::LineWriter& writer) : writer_(writer) {}
    ~LineBuffer() override { LineBuffer::sync(); }
    LineBuffer(const LineBuffer&) = delete;
    LineBuffer& operator=(const LineBuffer&) = delete;

  protected:
    int sync() override {
        writer_.write(view());
        str({});
        return 0;
    }

  private:
    platform::LineWriter& writer_;
};

}  // namespace

DebugLog tvlog;

DebugLog::DebugLog() : std::ostream(nullptr) {}

DebugLog::~DebugLog() {
    rdbuf(nullptr);
}

void DebugLog::attach(platform::LineWriter& writer) {
    buffer_ = std::make_unique<LineBuffer>(writer);
    rdbuf(buffer_.get());
}

void DebugLog::divert(std::streambuf* buffer) {
    buffer_.reset();
    rdbuf(buffer);
}
