// Request blocks that change the running driver: one class per service.
//
// A block is made on an open channel for one adapter (Link) and is used for request after request; each
// request carries exactly the bytes of its structure, and nothing left over from an earlier one. Every
// operation sends its requests, waits, and returns 0, or -1 with the reason in header().Resp. What is sent is
// traced on the debug log; nothing is shown to the user here.
#pragma once

#include "driver/reqparam.h"
#include "driver/requests.h"
#include "driver/requeststructs.h"

#include <cstdint>
#include <span>

class Enabler : public reqParam {
  public:
    // Starts the service with the settings that the data area holds.
    virtual int Enable();
    // Stops it.
    virtual int Disable();

  protected:
    Enabler(DriverChannel& channel, std::uint8_t link, RequestId enable, RequestId disable);

    // Traces the request and sends it with this data.
    int send(RequestId id, std::span<const std::uint8_t> data = {});

    // Sends what the data area holds: `size` bytes, header included, of which the driver reads `input`.
    int sendArea(std::uint16_t type, std::uint16_t size, std::uint16_t input);

  private:
    std::uint16_t enableType_;
    std::uint16_t disableType_;
    std::uint16_t enableSize_;
};

enum class PvcChange { add, modify, remove };

// LAN Emulation Clients. `unit`: 0 to 3.
class LecRequest : public Enabler {
  public:
    LecRequest(DriverChannel& channel, std::uint8_t link);

    // Starts the client, or starts it again; it has no PVCs then.
    int start(std::uint8_t unit, const AtmLEC& settings);
    int stop(std::uint8_t unit);
    int changePvc(std::uint8_t unit, PvcChange change, const AtmBridgedPvc& pvc);
};

// LAN Emulation Servers. `unit`: 0 to 7. The driver refuses to start a running server; stop it first.
class LesRequest : public Enabler {
  public:
    LesRequest(DriverChannel& channel, std::uint8_t link);

    int start(std::uint8_t unit, const AtmLES& settings);
    int stop(std::uint8_t unit);
};

// The Classical IP client.
class IpRequest : public Enabler {
  public:
    IpRequest(DriverChannel& channel, std::uint8_t link);

    int start(const AtmIP1577& settings);
    int stop();
    int changePvc(PvcChange change, const AtmRoutedPvc& pvc);
};

// The LAN Emulation Configuration Server. The overloads with `link` and `unit` also set the adapter and unit
// of all later requests.
class lecsRequest : public Enabler {
  public:
    lecsRequest(DriverChannel& channel, std::uint8_t link);

    // Stops the server, loads the settings, and starts it unless loading failed. A driver that does not
    // answer gets no further request.
    int enable(const lecs_req& settings);
    int disable();
    int go();
    int restart();  // the same as go()
    int addClient(const lecs_req& mapping);
    int delClient(const lecs_req& mapping);

    int enable(std::uint8_t link, std::uint8_t unit, const lecs_req& settings) {
        return addressed(link, unit).enable(settings);
    }
    int disable(std::uint8_t link, std::uint8_t unit) { return addressed(link, unit).disable(); }
    int go(std::uint8_t link, std::uint8_t unit) { return addressed(link, unit).go(); }
    int restart(std::uint8_t link, std::uint8_t unit) { return addressed(link, unit).restart(); }
    int addClient(std::uint8_t link, std::uint8_t unit, const lecs_req& mapping) {
        return addressed(link, unit).addClient(mapping);
    }
    int delClient(std::uint8_t link, std::uint8_t unit, const lecs_req& mapping) {
        return addressed(link, unit).delClient(mapping);
    }

  private:
    lecsRequest& addressed(std::uint8_t link, std::uint8_t unit) {
        header().Link = link;
        header().Unit = unit;
        return *this;
    }
};

// The switches of the driver's own traces. A read-only channel is sufficient.
class TraceRequest : public Enabler {
  public:
    enum Component : std::uint8_t { accessInterface = 1, signalling = 2, ilmi = 4 };

    explicit TraceRequest(DriverChannel& channel);

    int switchTrace(Component component, bool on);
};
