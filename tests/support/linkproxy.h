// A link between X clients and their server: relays what they say, can delay it, and counts round trips.
#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <thread>

class LinkProxy {
  public:
    using Trips = std::map<std::string, int>;

    // Relays between its own display and the one named `server` (":7"), each way after `delay`. Throws
    // std::runtime_error when no display number is free.
    explicit LinkProxy(const std::string& server, std::chrono::milliseconds delay = {});
    ~LinkProxy();
    LinkProxy(const LinkProxy&) = delete;
    LinkProxy& operator=(const LinkProxy&) = delete;

    const std::string& display() const { return display_; }  // for DISPLAY

    // The round trips since the last call, by the requests that began them ("InternAtom", "RENDER.1";
    // "connect" for a connection's first words). One ends with a reply to a request that was sent after the
    // last one had ended: what a client asks together it waits for once.
    Trips take();

    // The bytes that clients have sent since the last call.
    std::size_t takeSent();

  private:
    struct Relay;

    std::unique_ptr<Relay> relay_;
    std::string display_;
    std::thread thread_;
};
