// Between the files of AdapterChange.
#pragma once

#include "change/adapterchange.h"
#include "change/history.h"
#include "change/services.h"

// What is read, made and saved in one go.
struct AdapterChange::Round {
    Round(const std::vector<int>& numbers, std::shared_ptr<ReadCache> known)
        : adapters(numbers), editor(nullptr, false, devices, std::move(known)) {}

    void read(const AtmDevices& base) {
        readable = editor.ReadLinks(adapters);
        copyAdapters(adapters, devices, theirs);
        for (const int adapter : adapters) keepUnknown(adapter, editor, base, theirs);
    }

    const std::vector<int>& adapters;
    AtmDevices devices;  // the editor's
    DriverPdfEdit editor;
    AtmDevices theirs;  // as the files have it
    bool readable = false;
    HistoryEntry history;
};
