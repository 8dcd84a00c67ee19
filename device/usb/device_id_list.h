#pragma once

#include "device/usb/usb_ids.h"

#include <vector>

/// Looks for one of the devices in what Windows lists as plugged in.
/// @param list  identifiers such as USB\VID_1209&PID_0001\5, in whatever case, each ended by 0, and one more 0 behind all
bool namesOneOf(const wchar_t* list, const std::vector<UsbId>& ids);
