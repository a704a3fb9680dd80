// A running simulation, a folder and the means to make stations for it.
#pragma once

#include "tests/integration/Station.h"
#include "tests/support/Loopback.h"
#include "tests/unit/history/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

namespace integration {

class TransferFixture : public ::testing::Test {
protected:
    TransferFixture() {
        counts.FirstIp = block.Ip(10);
        counts.Port = block.Port();
        counts.BaseInstance = 1234;
        counts.Records = 150;
        settings.folder = folder.GetPath();
        settings.bindAddress = block.Text(1);
    }

    // Starts the site of the counts, changed as told, and plans its tags.
    void StartSite(StatusTags statusTags = StatusTags::none,
                   const std::function<void(sim::SimulatorConfig&)>& change = {}) {
        site = MakeSite(counts);
        if (change)
            change(site);
        tags = PlanTags(site, statusTags);
        simulator = std::make_unique<sim::Simulator>(site);
        std::string error;
        ASSERT_TRUE(simulator->Start(error)) << error;
    }
    // One device 1234 with one trend "T1" for the tag "TK".
    void StartSmallSite() {
        counts.OnlyReal = true;
        StartSite(StatusTags::none, [](sim::SimulatorConfig& made) { made.Devices[0].Objects.back().Name = "T1"; });
        tags[0].name = "TK";
    }
    std::unique_ptr<Station> NewStation() const { return std::make_unique<Station>(site, tags, settings); }

    RecordLines Expected(std::size_t newest = ~std::size_t{0}) const {
        return ExpectedRecords(*simulator, site, tags, newest);
    }
    sim::Device& Device(std::size_t index = 0) const { return simulator->GetDevice(index); }

    testing_support::LoopbackBlock block;
    TemporaryFolder folder;
    sim::Counts counts;
    StationSettings settings;
    sim::SimulatorConfig site;
    std::vector<PlannedTag> tags;
    std::unique_ptr<sim::Simulator> simulator;
};

inline constexpr BACSTAC_OBJECT_ID FIRST_TREND{OBJ_TREND_LOG, 1};

// Lines that begin with "E: ".
inline CEventList::Lines ErrorsOf(const CEventList::Lines& lines) {
    CEventList::Lines errors;
    for (const std::string& line : lines)
        if (line.starts_with("E: "))
            errors.push_back(line);
    return errors;
}

} // namespace integration
