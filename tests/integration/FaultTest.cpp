// Transfers from devices that misbehave: every error line as it stands, nothing lost, nothing taken twice.
#include "tests/integration/TransferFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>

namespace integration {
namespace {

using bacnet::ConfirmedService;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* TIMEOUT_LINE = "E: History: Error reading trend T1: timeout (1)";
constexpr std::size_t RECORDS = 550; // six blocks

class FaultTest : public TransferFixture {
protected:
    FaultTest() { counts.Records = RECORDS; }

    void Misbehave(const sim::Fault& fault) { Device().SetFault(fault.OnlyFor(ConfirmedService::readRange)); }
    // The records of the blocks that were read before the fault.
    RecordLines Oldest(std::size_t count) const {
        RecordLines lines = Expected();
        lines.resize(count); // of one tag, and so in the order of time
        return lines;
    }
    // The faults end, and the next transfer completes what is stored.
    void ExpectCompletion(Station& station) {
        Device().ClearFaults();
        EXPECT_THAT(ErrorsOf(station.Transfer()), IsEmpty());
        EXPECT_EQ(Difference(Expected(), station.Stored()), "");
    }
    // A transfer with that fault of all answers to ReadRange is not to be told from one without.
    void ExpectUnharmed(const sim::Fault& fault) {
        StartSmallSite();
        Misbehave(fault);
        const auto station = NewStation();
        EXPECT_THAT(ErrorsOf(station->Transfer()), IsEmpty());
        EXPECT_EQ(Difference(Expected(), station->Stored()), "");
        ExpectCompletion(*station);
    }
    // The third block cannot be had: it ends the trend with this line behind what was stored before.
    void ExpectEndBehindTwoBlocks(const sim::Fault& fault, const std::string& line) {
        StartSmallSite();
        Misbehave(fault.After(2));
        const auto station = NewStation();
        EXPECT_THAT(ErrorsOf(station->Transfer()), ElementsAre(line));
        EXPECT_EQ(Difference(Oldest(200), station->Stored()), "");
        EXPECT_EQ(station->Position("T1"), "01/01/2026 03:19:00.010");
        ExpectCompletion(*station);
    }
};

TEST_F(FaultTest, ADeviceThatIsSilentFromTheStartDoesNotKeepOthersFromBeingRead) {
    counts.Devices = 2;
    StartSite();
    Device(0).SetFault(sim::Fault::Silent());
    const auto station = NewStation();
    EXPECT_THAT(ErrorsOf(station->Transfer()),
                ElementsAre("E: History: No log reference found for trend (1234 Trend 1)"));
    EXPECT_EQ(station->Stored().size(), RECORDS);
    EXPECT_EQ(station->Position("1234 Trend 1"), "01/01/1900 00:00:00.000");
    ExpectCompletion(*station);
}

TEST_F(FaultTest, ADeviceThatGoesSilentEndsItsTrendBehindWhatIsStored) {
    ExpectEndBehindTwoBlocks(sim::Fault::Silent(), TIMEOUT_LINE);
}

TEST_F(FaultTest, ADeviceThatGoesSilentWithinAnAnswerEndsItsTrendBehindWhatIsStored) {
    ExpectEndBehindTwoBlocks(sim::Fault::SilentAfterSegments(1), TIMEOUT_LINE);
}

TEST_F(FaultTest, AnErrorEndsTheTrendWithItsCode) {
    ExpectEndBehindTwoBlocks(sim::Fault::Error(2, 31),
                             "E: History: Error reading trend T1: error (64) - unknown-object (31)");
}

TEST_F(FaultTest, ARejectEndsTheTrendWithItsReason) {
    ExpectEndBehindTwoBlocks(sim::Fault::Reject(9),
                             "E: History: Error reading trend T1: reject (65) - unrecognized-service (9)");
}

TEST_F(FaultTest, AnAbortEndsTheTrendWithItsReason) {
    ExpectEndBehindTwoBlocks(sim::Fault::Abort(4),
                             "E: History: Error reading trend T1: abort (66) - segmentation-not-supported (4)");
}

TEST_F(FaultTest, AnswersForOtherInvokeIdsAreNoAnswers) {
    ExpectEndBehindTwoBlocks(sim::Fault::WrongInvokeId(), TIMEOUT_LINE);
}

TEST_F(FaultTest, AnswersFromOtherAddressesAreNoAnswers) {
    ExpectEndBehindTwoBlocks(sim::Fault::WrongSource(), TIMEOUT_LINE);
}

// Some devices send from another port than the one they receive on: the address alone names them.
TEST_F(FaultTest, AnswersFromAnotherPortOfTheDeviceCount) {
    ExpectUnharmed(sim::Fault::WrongPort());
}

TEST_F(FaultTest, AnswersThatAreCutEndTheTrend) {
    ExpectEndBehindTwoBlocks(sim::Fault::TruncateTo(12), "E: History: Error reading trend T1: invalid answer (6)");
}

TEST_F(FaultTest, OneAnswerForAnotherInvokeIdCostsARepetition) {
    ExpectUnharmed(sim::Fault::WrongInvokeId().After(1).ForTimes(1));
}

TEST_F(FaultTest, OneAnswerFromAnotherAddressCostsARepetition) {
    ExpectUnharmed(sim::Fault::WrongSource().After(1).ForTimes(1));
}

TEST_F(FaultTest, AnswersThatComeTwiceCountOnce) {
    ExpectUnharmed(sim::Fault::Duplicate());
}

// The answer to the request and the one to its repetition come together.
TEST_F(FaultTest, AnswersThatComeLateAfterARepetitionCountOnce) {
    ExpectUnharmed(sim::Fault::LateAfterRetry());
}

// The answer to each repetition comes while the next block has been asked for already.
TEST_F(FaultTest, ALateAnswerIsNotTakenForTheNextRequest) {
    ExpectUnharmed(sim::Fault::Slow(400));
}

TEST_F(FaultTest, AnAnswerLaterThanAllRepetitionsIsNotTakenForANewRequest) {
    StartSmallSite();
    Misbehave(sim::Fault::Slow(700).After(2).ForTimes(2));
    const auto station = NewStation();
    EXPECT_THAT(ErrorsOf(station->Transfer()), ElementsAre(TIMEOUT_LINE));
    EXPECT_EQ(Difference(Oldest(200), station->Stored()), "");
    ExpectCompletion(*station);
}

TEST_F(FaultTest, EveryThirdAnswerMayBeLost) {
    ExpectUnharmed(sim::Fault::DropEvery(3));
}

TEST_F(FaultTest, ATrendThatCannotBeReadDoesNotKeepTheOthersOfItsDeviceFromBeingRead) {
    counts.Trends = 3;
    StartSite();
    const BACSTAC_OBJECT_ID second{OBJ_TREND_LOG, 2};
    Device().SetFault(sim::Fault::Error(1, 25).OnlyOn(second).OnlyFor(ConfirmedService::readRange));
    const auto station = NewStation();
    EXPECT_THAT(ErrorsOf(station->Transfer()),
                ElementsAre("E: History: Error reading trend 1234 Trend 2: error (64) - operational-problem (25)"));
    EXPECT_EQ(station->Stored().size(), 2 * RECORDS);
    ExpectCompletion(*station);
}

// Between the two transfers the ring goes on; what is still there when the device is back is stored.
TEST_F(FaultTest, WhatARingStillHoldsAfterASilenceIsStored) {
    counts.Capacity = RECORDS;
    StartSmallSite();
    Misbehave(sim::Fault::Silent().After(2));
    const auto station = NewStation();
    station->Transfer();
    RecordLines expected = station->Stored();
    ASSERT_EQ(expected.size(), 200U);
    Device().ClearFaults();
    Device().GenerateAll(250); // of the records 201 to 550 the first 50 are lost
    EXPECT_THAT(ErrorsOf(station->Transfer()), IsEmpty());
    std::ranges::copy(Expected(), std::back_inserter(expected));
    std::ranges::sort(expected);
    EXPECT_EQ(Difference(expected, station->Stored()), "");
}

} // namespace
} // namespace integration
