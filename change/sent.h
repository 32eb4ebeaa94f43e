// What was last sent to the driver and taken: the driver cannot be asked for most of its settings. Kept in a
// file (doc/history.md), for whoever compares a configuration with what the driver has.
//
// A value holds until the system is restarted, the driver or the adapter replaced, or a channel has found the
// driver gone (ENXIO), which the owner of the channel has to report. A restart of the driver that nobody saw
// cannot be told, so each value carries the time when it was sent.
//
// The file may change between any two saves: load it, note and save it while holding the program's lock, and
// as soon as the driver has taken the values, since a process that ends in between leaves the older ones.
#pragma once

#include <ctime>
#include <map>
#include <string>

// What an adapter's values are for. They hold for the same only, none of it empty.
struct DriverIdentity {
    std::string boot;         // platform::bootId()
    std::string revision;     // of the driver
    std::string mac;          // of the adapter
    std::string device = {};  // the access device's node: some systems make it anew with the driver
    bool operator==(const DriverIdentity&) const = default;
};

// As it is now, with what the driver tells of itself and of the adapter.
DriverIdentity driverIdentity(const std::string& revision, const std::string& mac);

struct SentValue {
    std::string text;
    std::string time;  // when it was sent: platform::dateAndTime
};

class LastSent {
  public:
    // Takes what the file holds. Nothing, and a line on the debug log, when it is damaged or of another
    // format; nothing and no line when there is none.
    void load();

    // Replaces the file. 0, or -1 after a line on the debug log and one in syslog: then the file is removed,
    // as far as possible, since it would tell of older values.
    int save() const;

    // The driver has taken these values of a service: key and value. The service's other values stay.
    void note(int adapter, const DriverIdentity& identity, const std::string& service,
              const std::map<std::string, std::string>& values, std::time_t now);

    // From now on nothing is known of the adapter or of all; the reason is a sentence.
    void forget(int adapter, const std::string& reason);
    void forgetAll(const std::string& reason);

    // Nothing is known of a service until the next note().
    void forgetService(int adapter, const std::string& service);

    bool empty() const { return adapters_.empty(); }

    struct Found {
        const SentValue* value = nullptr;  // lives until the object changes
        std::string reason;                // a sentence: why there is none
    };
    Found find(int adapter, const DriverIdentity& now, const std::string& service,
               const std::string& key) const;

  private:
    struct Adapter {
        DriverIdentity identity;
        std::string forgotten;  // the reason why older values are not known
        std::map<std::string, std::map<std::string, SentValue>> services;
    };
    friend struct SentFile;

    std::string forgotten_;  // of all
    std::map<int, Adapter> adapters_;
};
