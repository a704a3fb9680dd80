#include "module/console/Settings.h"

#include <algorithm>
#include <utility>

HistorySettings::HistorySettings(const HistorySettings& other)
    : selectedDevice(other.selectedDevice), startRange(other.startRange), endRange(other.endRange),
      flushTag(other.flushTag) {
    devices.reserve(other.devices.size());
    for (const auto& device : other.devices)
        devices.push_back(device ? std::make_unique<CDeviceSettings>(*device) : nullptr);
}

HistorySettings& HistorySettings::operator=(HistorySettings other) {
    selectedDevice = std::move(other.selectedDevice);
    devices = std::move(other.devices);
    startRange = other.startRange;
    endRange = other.endRange;
    flushTag = std::move(other.flushTag);
    return *this;
}

bool HistorySettings::operator==(const HistorySettings& other) const {
    const auto same = [](const auto& a, const auto& b) { return a && b ? *a == *b : !a && !b; };
    return selectedDevice == other.selectedDevice && startRange == other.startRange && endRange == other.endRange &&
           flushTag == other.flushTag && std::ranges::equal(devices, other.devices, same);
}
