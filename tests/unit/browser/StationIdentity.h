// The station's own identity, of network 7.
#pragma once

#include "api/driver/Identity.h"

class CStationIdentity : public IBacnetIdentity {
public:
    std::uint32_t GetDeviceInstance() override { return 1; }
    void SetDeviceInstance(std::uint32_t) override {}
    std::string GetDeviceName() override { return {}; }
    void SetDeviceName(const std::string&) override {}
    std::uint16_t GetLocalNetworkNumber() override { return 7; }
    std::uint32_t GetProcessIdentifier() override { return 1; }
    void SetProcessIdentifier(std::uint32_t) override {}
};
