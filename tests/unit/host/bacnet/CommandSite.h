// A simulated site and the built program on it, for tests of the commands that talk to BACnet devices.
#pragma once

#include "simulator/Simulator.h"
#include "tests/support/Loopback.h"
#include "tests/support/TempFolder.h"
#include "tests/unit/host/Process.h"

#include <gtest/gtest.h>
#include <nlohmann/json_fwd.hpp>

#include <memory>
#include <string>
#include <vector>

using Words = std::vector<std::string>;

class CommandSite : public testing::Test {
protected:
    // Devices 1000 (with points, logs and files) and 2000 on IP, device 7001 behind a router on network 7.
    CommandSite();

    void StartSite();
    // `bdc run` on the data folder: commands then go through it.
    void StartInstance();
    ProcessResult Run(const Words& command) const;
    nlohmann::json RunJson(const Words& command) const; // with --json; expects the exit code 0
    // The standard output of a command that has to succeed.
    std::string Output(const Words& command) const;
    std::string AddressText(unsigned host) const;
    sim::Device& Device(unsigned instance) const { return *m_simulator->FindDevice(instance); }

    testing_support::LoopbackBlock m_block;
    sim::SimulatorConfig m_config;
    CTempFolder m_data;
    std::unique_ptr<sim::Simulator> m_simulator;
    std::unique_ptr<CProcess> m_instance;
};

// The same with the command's own stack and through a running instance.
class Commands : public CommandSite, public testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        StartSite();
        if (GetParam() == std::string("Instance"))
            StartInstance();
    }
};

inline const auto BOTH_WAYS = testing::Values("OwnStack", "Instance");
inline std::string WayName(const testing::TestParamInfo<const char*>& info) {
    return info.param;
}
