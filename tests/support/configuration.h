// What the files below the present root hold, as tests compare it.
#pragma once

#include "config/driverpdf.h"

inline AtmDevices inFiles() {
    AtmDevices devices;
    EXPECT_TRUE(DriverPdfEdit(nullptr, false, devices).ReadPdf());
    return devices;
}

// One field of each entry of a list.
template <class Entry, class Field> std::vector<int> each(Field field, const std::vector<Entry>& list) {
    std::vector<int> values;
    for (const Entry& entry : list) values.push_back(entry.*field);
    return values;
}
