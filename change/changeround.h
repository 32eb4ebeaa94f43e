// Between the files of AdapterChange.
#pragma once

#include "change/adapterchange.h"
#include "change/history.h"
#include "change/services.h"

// What is read, made and saved in one go.
struct AdapterChange::Round {
    Round(int number, std::shared_ptr<ReadCache> known)
        : adapter(number), editor(nullptr, false, devices, std::move(known)) {}

    void read(const AtmDevices& base) {
        readable = editor.ReadLink(adapter);
        copyAdapter(adapter, devices, theirs);
        keepUnknown(adapter, editor, base, theirs);
    }

    int adapter;
    AtmDevices devices;  // the editor's
    DriverPdfEdit editor;
    AtmDevices theirs;  // as the files have it
    bool readable = false;
    HistoryEntry history;
};
