// The settings of a service as scripts see them: by key, as texts and as JSON.
//
// Texts from the files are printable ASCII here, other bytes as "\xNN". A number that stands for something
// and has no name is "code 7".
#pragma once

#include "ctl/paths.h"
#include "ctl/tree.h"

#include <string>
#include <string_view>
#include <vector>

struct Setting {
    std::string key, text;
    Json json;
    bool readOnly = false;
};

// In the order in which they are shown: what can be set, then what cannot. `macKnown`: the driver has said
// the adapter's address.
std::vector<Setting> settingsOf(const ServiceId& service, const AtmDevices& devices, bool macKnown);

// "pvcs", "clients", or empty: the service has no list.
std::string listOfService(const ServiceId& service);

// Whether a service has a setting, which may be for reading only, or a list of that name.
bool hasKey(const ServiceId& service, std::string_view key);
bool isReadOnly(const ServiceId& service, std::string_view key);

// The names that values of a setting have, such as "true" and "false"; empty: they have none.
std::vector<std::string> valueNames(const ServiceId& service, std::string_view key);

// A text as the JSON value of a setting.
Json settingJson(const ServiceId& service, std::string_view key, const std::string& text);

// Takes a value as it is written in a shell or stands in a document. Failure::usage: there is no such key, or
// it is for reading only; Failure::wrongValue: what a setting of that kind cannot be, unless it is the
// present value.
void setSetting(const KeyPath& path, std::string_view text, AtmDevices& devices);
void setFromJson(const KeyPath& path, const Json& value, AtmDevices& devices);

// A line of the text form: "adapter1/lec2.mtu = 4544", "adapter1/lec2.elanName =".
std::string settingLine(const std::string& where, const std::string& text);
