// The two streams of an X connection, cut into requests and replies as they pass. Little-endian clients only.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

class XStreams {
  public:
    void fromClient(std::string_view bytes);

    // Names the request of each reply, of those that end a round trip. To be called when the client gets
    // them.
    std::vector<std::string> toClient(std::string_view bytes);

  private:
    void request(std::string_view packet);
    void reply(std::string_view packet, std::vector<std::string>& ended);
    std::string nameOf(std::uint64_t number) const;

    struct Asked {
        std::uint8_t opcode = 0, minor = 0;
        std::string extension;  // of QueryExtension
    };
    std::string client_, server_;  // begun, not complete
    bool clientGreeted_ = false, serverGreeted_ = false;
    std::uint64_t sent_ = 0;      // requests so far
    std::uint64_t answered_ = 0;  // how many there were when the last round trip ended
    std::array<Asked, 65536> asked_;
    std::map<std::uint8_t, std::string> extensions_;
};
