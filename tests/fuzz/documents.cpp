// The reader of documents over hostile ones: a failure, or records whose own document changes them no more.
#include "ctl/document.h"
#include "ctl/listing.h"
#include "ctl/status.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    AtmDevices devices;
    try {
        applyDocument(readDocument({reinterpret_cast<const char*>(bytes), count}), devices);
    } catch (const Failure& failure) {
        if (failure.status() == Status::wrongValue) return 0;
        std::fprintf(stderr, "status %d: %s\n", static_cast<int>(failure.status()), failure.what());
        std::abort();
    }
    std::vector<ServiceId> all;
    for (int adapter = 0; adapter < adapterCount; ++adapter)
        for (const ServiceId& service : servicesOf(adapter)) all.push_back(service);
    const Tree shown = configurationTree(all, devices, [](int) { return false; });
    Json document{{"format", 1}};
    document.update(shown.json());
    AtmDevices again;
    applyDocument(readDocument(document.dump()), again);
    if (configurationTree(all, again, [](int) { return false; }).json() != shown.json()) std::abort();
    return 0;
}
