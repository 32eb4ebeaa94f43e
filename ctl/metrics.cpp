// metrics: what Prometheus collects of this host, as its text format.
//
// Whatever cannot be read, there is a text, and collect_success says so.
#include "change/pastchanges.h"
#include "change/pending.h"
#include "change/sentrequest.h"
#include "config/pdf_io.h"
#include "ctl/command.h"
#include "ctl/comparison.h"
#include "ctl/past.h"
#include "ctl/state.h"
#include "ctl/unsent.h"
#include "metrics/prometheus.h"
#include "platform/files.h"
#include "platform/safetext.h"
#include "platform/stream.h"
#include "platform/wallclock.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fmt/format.h>
#include <memory>
#include <optional>

using metrics::Detail;
using metrics::Labels;
using metrics::Reading;

namespace {

// By the path of an adapter or service.
Labels labelsOf(const std::string& path) {
    const std::size_t slash = path.find('/');
    Labels labels{{"adapter", path.substr(0, slash)}};
    if (slash != path.npos) labels.push_back({"service", path.substr(slash + 1)});
    return labels;
}

// Whether the files enable a service; nothing: it is always on.
std::optional<bool> isEnabled(const AtmDevices& devices, const ServiceId& service) {
    std::optional<bool> enabled;
    withRecord(service, [&](auto record) {
        const auto& of = record(devices);
        if constexpr (requires { of.enabled; }) enabled = of.enabled != 0;
    });
    return enabled;
}

// The requests of a change that were sent and are about this service.
ChangeRecord sentTo(const std::string& service, const ChangeRecord& record) {
    ChangeRecord sent;
    for (std::size_t i = 0; i < record.requests.size(); ++i) {
        const SentRequest& request = record.requests[i];
        if (request.service == service && request.answer != RequestResult::notSent && !isGivenUp(i, record))
            sent.requests.push_back(request);
    }
    return sent;
}

class Collection {
  public:
    Collection(Session& session, Detail detail) : session_(session), detail_(detail) {}

    std::string text() {
        constexpr Collector collectors[] = {
            {"files", &Collection::files},
            {"driver", &Collection::driver},
            {"differences", &Collection::differences},
            {"history", &Collection::history},
        };
        for (const Collector& collector : collectors) collect(collector);
        return exposition_.text();
    }

  private:
    // Each returns whether all is known that it wants, or throws Failure.
    struct Collector {
        const char* name;
        bool (Collection::*collect)();
    };

    void collect(const Collector& collector) {
        const auto began = std::chrono::steady_clock::now();
        bool success = false;
        try {
            success = (this->*collector.collect)();
        } catch (const Failure&) {
            // It is no success.
        }
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
        const Labels labels{{"collector", collector.name}};
        add("tarvolin_collect_success", labels, success);
        add("tarvolin_collect_duration_seconds", labels, took.count());
    }

    void add(const char* family, const Labels& labels, double value) {
        exposition_.add(family, labels, value);
    }

    bool files() {
        session_.read();
        filesRead_ = true;
        const timespec saved = session_.files.lastWritten();
        add("tarvolin_config_saved_timestamp_seconds", {},
            static_cast<double>(saved.tv_sec) + static_cast<double>(saved.tv_nsec) / 1e9);
        bool whole = true;
        for (const int adapter : session_.adapters())
            for (const ServiceId& service : servicesOf(adapter)) {
                whole &= session_.unknownListOf(service).empty();
                if (const auto enabled = isEnabled(session_.devices, service))
                    add("tarvolin_service_enabled", labelsOf(service.name().path), *enabled);
            }
        return whole;
    }

    bool driver() {
        const Discovery& found = session_.discovery();
        add("tarvolin_up", {}, found.complete);
        if (!found.complete) return false;
        if (!found.version.empty()) add("tarvolin_driver_info", {{"version", found.version}}, 1);
        metrics::Reader reader(session_.channel());
        for (const FoundAdapter& adapter : found.adapters)
            for (const metrics::Place& place : metrics::placesOf(adapter.index)) {
                const Reading reading = reader.read(
                    place, [&](const metrics::Group& group) { return metrics::isTold(group, detail_); });
                if (!reading.absent() || isWanted(readService(metrics::pathOf(place))))
                    metrics::tell(reading, detail_, exposition_);
            }
        if (saysAdapters(found, session_.channel())) tellMissing(found);
        return reader.owed().empty() && !found.version.empty() && saysAdapters(found, session_.channel());
    }

    // Of a service that neither the driver has nor the files enable nothing is to be told.
    bool isWanted(const ServiceId& service) const {
        return filesRead_ && isEnabled(session_.devices, service).value_or(false);
    }

    // Nothing is up on an adapter that the driver has not.
    void tellMissing(const Discovery& found) {
        for (const int adapter : session_.adapters())
            if (std::ranges::count(found.adapters, adapter, &FoundAdapter::index) == 0)
                for (const ServiceId& service : servicesOf(adapter))
                    if (isWanted(service)) add("tarvolin_service_up", labelsOf(service.name().path), 0);
    }

    bool differences() {
        if (!filesRead_) return false;
        const Side inFiles = sideOf(session_.devices, session_.adapters(), session_);
        const Side inDriver = driverSide(session_, session_.devices);
        for (const auto& [path, count] : compare(inFiles, inDriver).counted) {
            const SideService &file = inFiles.services.at(path), &driver = inDriver.services.at(path);
            if (count == 0 && !driver.running && !isWanted(readService(path))) continue;
            if (file.whole && driver.whole)
                add("tarvolin_differences", labelsOf(path), static_cast<double>(count));
        }
        return !inFiles.complaint && !inDriver.complaint;
    }

    bool history() {
        std::vector<unsigned> damaged;
        const std::vector<PastChange> changes = allChanges(&damaged);
        // Only changes newer than the newest unreadable one are used.
        const unsigned unread = damaged.empty() ? 0 : damaged.front();
        std::optional<PendingChange> pending;
        const bool pendingIsKnown = readPendingChange(pending);
        if (pendingIsKnown) add("tarvolin_change_pending", {}, pending.has_value());
        if (!changes.empty() && changes.front().number > unread)
            add("tarvolin_last_change_timestamp_seconds", {},
                static_cast<double>(platform::momentOf(changes.front().read.time)));
        const std::time_t loaded = driverLoaded();
        std::set<std::string> told;
        for (const PastChange& change : changes) {
            if (change.number < unread || platform::momentOf(change.read.time) < loaded) break;
            for (const SentRequest& request : change.read.record.requests) {
                const ChangeRecord sent = sentTo(request.service, change.read.record);
                if (sent.requests.empty() || !told.insert(request.service).second) continue;
                add("tarvolin_change_refused", labelsOf(request.service),
                    driverAnswer(sent) == RequestResult::refused);
            }
        }
        return damaged.empty() && pendingIsKnown;
    }

    Session& session_;
    Detail detail_;
    metrics::Exposition exposition_{metrics::families()};
    bool filesRead_ = false;
};

[[noreturn]] void cannotWrite(const std::string& file, int error) {
    const std::string name = platform::escaped(file);
    throw Failure(Status::notDone, fmt::format("{}: {}", name, std::strerror(error)), name);
}

// Nobody takes old values for present ones: a file that cannot be replaced goes.
void save(const std::string& file, const std::string& text) {
    const platform::HostPath place{file};
    struct stat status {};
    const bool there = platform::files().status(place, status) == 0;
    if (there && !S_ISREG(status.st_mode)) cannotWrite(file, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    ::umask(S_IWGRP | S_IWOTH);  // a new one is for others to read, whatever the umask of who runs this
    if (platform::saveWhole(place, text) == 0) return;
    const int error = errno;
    platform::files().remove(place);
    cannotWrite(file, error);
}

Output write(Session& session, Detail detail, const std::optional<std::string>& file) {
    if (file && file->empty()) throw Failure(Status::usage, "--output needs the name of a file");
    // A timer would fill the log with what check says better.
    engineOutput = [](const std::string&) {};
    std::string text = Collection(session, detail).text();
    Output output;
    if (!file) {
        output.tree.put("metrics", {text, {text.substr(0, text.size() - 1)}});
        return output;
    }
    save(*file, text);
    output.tree.put("output", {platform::escaped(*file), {}});
    return output;
}

}  // namespace

Run addMetrics(CLI::App& command) {
    struct Given {
        std::optional<std::string> file;
        bool rows = false;
    };
    const auto given = std::make_shared<Given>();
    command.add_option("--output", given->file, "Write to this file instead of standard output");
    command.add_flag("--per-vc", given->rows, "Also report each circuit, connection and client");
    return [given](Session& session) {
        return write(session, given->rows ? Detail::rows : Detail::counts, given->file);
    };
}
