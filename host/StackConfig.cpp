#include "host/StackConfig.h"

#include "host/Config.h"
#include "host/StationStore.h"
#include "host/Version.h"

#include <algorithm>
#include <cstdint>

bacnet::ClientConfig StackConfigOf(const Config& config, const std::string& folder, CStationStore& station) {
    bacnet::ClientConfig stack;
    for (const DeviceConfig& device : config.devices) {
        if (!device.text.empty())
            stack.TextEncodings.emplace(device.instance, device.text);
    }
    for (const NetworkConfig& network : config.networks) {
        bacnet::ClientPort port;
        port.Network = network.number;
        port.BindAddress = network.bind == "0.0.0.0" ? "" : network.bind;
        port.UdpPort = network.port;
        port.BroadcastAddress = network.broadcast;
        port.Foreign = network.foreign;
        port.Bbmd = network.bbmd;
        stack.Ports.push_back(std::move(port));
    }
    stack.Transactions.TimeoutMs = config.stack.apduTimeout;
    stack.Transactions.Retries = static_cast<std::uint8_t>(config.stack.retries);
    // Who wants an answer soon does not wait longer for the way to it.
    stack.Transactions.RouterWaitMs = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(stack.Transactions.RouterWaitMs, stack.Transactions.PatienceMs()));
    if (!config.stack.capture.empty())
        stack.CaptureFile = folder + "/" + config.stack.capture;
    stack.CaptureLimit = std::uint64_t{config.stack.captureLimit} << 20;
    stack.Device.Instance = station.GetDeviceInstance();
    stack.Device.Name = station.GetDeviceName();
    stack.Device.VendorId = config.identity.vendorId;
    stack.Device.VendorName = config.identity.vendorName;
    stack.Device.ModelName = "bdc";
    stack.Device.FirmwareRevision = BDC_VERSION;
    stack.Device.ApplicationVersion = BDC_VERSION;
    stack.Device.Description = config.identity.description;
    stack.Device.Location = config.identity.location;
    return stack;
}
