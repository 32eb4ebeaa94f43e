// What the fields of the dialogs take: one row for each kind of field.
#pragma once

#include "toolkit/controls/fieldmask.h"

// A whole address of 20 bytes that is pasted into a prefix or ESI field fills its partner as well.
extern const zFieldMask macAddressField, esiSelectorField, networkPrefixField, ipAddressField;

extern const zFieldMask elanNameField, fourDigitsField;
