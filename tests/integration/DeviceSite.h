// Simulated devices and a client that knows where they are, over real UDP.
#pragma once

#include "module/browser/Scan.h"
#include "platform/stack/client/BacnetClient.h"
#include "simulator/Simulator.h"
#include "tests/support/Loopback.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

class DeviceSite : public testing::Test {
protected:
    ~DeviceSite() override;

    // The devices are on the network one behind the other, and the process's client waits for them for 100 ms.
    void Start(std::vector<sim::DeviceConfig> devices);

    testing_support::LoopbackBlock m_block;
    std::unique_ptr<sim::Simulator> m_simulator;
    std::unique_ptr<bacnet::BacnetClient> m_client;
    DeviceAddresses m_addresses;
};
