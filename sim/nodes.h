// The socket nodes that the simulator stands behind: the driver's device and the socket for commands beside
// it.
#pragma once

#include "platform/root.h"

#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <utility>

namespace sim {

constexpr char devicePath[] = "/dev/li";
constexpr char commandPath[] = "/dev/li.ctl";

// An open descriptor, closed with its owner.
class Handle {
  public:
    Handle() = default;
    explicit Handle(int descriptor) : descriptor_(descriptor) {}
    Handle(Handle&& other) noexcept : descriptor_(other.release()) {}
    Handle& operator=(Handle&& other) noexcept;
    ~Handle();

    int get() const { return descriptor_; }
    int release() { return std::exchange(descriptor_, -1); }

  private:
    int descriptor_ = -1;
};

// A listening socket with its node, which is removed with the object.
class Node {
  public:
    Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node();

    // Binds and listens. Replaces a node without a listener, but neither a node in use nor anything that is
    // not a socket. Returns an empty text on success, else the reason.
    std::string claim(const platform::HostPath& path, int type, mode_t mode);

    int descriptor() const { return socket_.get(); }

  private:
    platform::HostPath path_;
    struct stat identity_ {};  // so that a node that another process creates later is not removed
    Handle socket_;
};

// A connection to a node. Empty handle and errno on failure.
Handle connectTo(const platform::HostPath& path, int type);

}  // namespace sim
