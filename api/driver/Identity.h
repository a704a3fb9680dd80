// The station's BACnet identity and the user access choices, both kept by the driver. Called from the console thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class IBacnetIdentity {
public:
    virtual ~IBacnetIdentity() = default;

    virtual std::uint32_t GetDeviceInstance() = 0; // 0..4194302
    virtual void SetDeviceInstance(std::uint32_t instance) = 0;
    virtual std::string GetDeviceName() = 0; // UTF-8
    virtual void SetDeviceName(const std::string& name) = 0;
    virtual std::uint16_t GetLocalNetworkNumber() = 0; // shown for network 0
    virtual std::uint32_t GetProcessIdentifier() = 0;
    virtual void SetProcessIdentifier(std::uint32_t identifier) = 0;
};

class IUserAccess {
public:
    virtual ~IUserAccess() = default;

    virtual std::string GetGroupName() = 0; // UTF-8
    virtual void SetGroupName(const std::string& name) = 0;
    virtual std::vector<std::string> GetGroupNames() = 0;
};
