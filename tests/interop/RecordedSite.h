// Simulated devices and a client whose datagrams are recorded, each test with a file of its own.
#pragma once

#include "platform/stack/client/BacnetClient.h"
#include "simulator/Generate.h"
#include "simulator/Simulator.h"
#include "tests/interop/Frames.h"
#include "tests/support/Loopback.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace interop {

class RecordedSite : public testing::Test {
protected:
    static constexpr unsigned IP_DEVICE = 1000;
    static constexpr unsigned WEAK_DEVICE = 1001; // APDUs of 206 octets: long answers come in segments
    static constexpr unsigned OLD_DEVICE = 1002;  // of the 2001 standard
    static constexpr unsigned ROUTED_DEVICE = 1003;
    static constexpr BACSTAC_OBJECT_ID TREND{OBJ_TREND_LOG, 1};
    static constexpr BACSTAC_OBJECT_ID MULTIPLE{OBJ_TREND_LOG_MULTIPLE, 1};

    RecordedSite();
    ~RecordedSite() override;
    // Skips the test where there is no decoder, starts the site and finds its devices.
    void SetUp() override;

    // Adds to the site before it starts: devices in the order of their instances.
    virtual void Describe(sim::SimulatorConfig&) {}
    // Whether a frame may have an objection: because the decoder is known to be wrong about it.
    virtual bool IsExempt(const Frame&) const { return false; }

    // Ends the client and has the recording decoded: all frames, none of them with an objection.
    const std::vector<Frame>& Frames();
    // Those of one kind, in their order.
    static constexpr int ANY_SERVICE = -1;
    std::vector<Frame> Requests(int service);
    std::vector<Frame> Answers(const Frame& request); // to a confirmed request, segments included

    sim::Device& Device(unsigned instance) { return *m_simulator->FindDevice(instance); }
    bacnet::BacnetClient& Client() { return *m_client; }

    testing_support::LoopbackBlock m_block;
    std::filesystem::path m_folder;
    std::unique_ptr<sim::Simulator> m_simulator;
    std::unique_ptr<bacnet::BacnetClient> m_client;
    std::vector<Frame> m_frames;
};

} // namespace interop
