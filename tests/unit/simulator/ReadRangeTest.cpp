// ReadRange of a simulated device, octet by octet, and its answers against the buffer they are read from.
#include "tests/unit/simulator/Site.h"

#include <algorithm>

namespace sim::testing {
namespace {

constexpr LocalTime TEN_O_CLOCK = 178'000'000'000 / 8'640'000 * 8'640'000 + 3'600'000;

ObjectConfig TrendWith(std::vector<LogRecord> records, std::uint32_t initialTotal = 0) {
    ObjectConfig trend;
    trend.Id = {OBJ_TREND_LOG, 1};
    trend.Log.emplace();
    trend.Log->Records = std::move(records);
    trend.Log->InitialTotal = initialTotal;
    return trend;
}

LogRecord At(int minute, LogDatum datum) {
    LogRecord record;
    record.Time = TEN_O_CLOCK + minute * 6000;
    record.Data.push_back(std::move(datum));
    return record;
}

class ReadRange : public ::testing::Test {
protected:
    void StartWith(ObjectConfig object, const DeviceConfig* base = nullptr) {
        DeviceConfig device = base != nullptr ? *base : SmallDevice(Site.Block);
        device.Objects.push_back(std::move(object));
        Site.Config.Devices.push_back(device);
        Site.Start();
    }
    // Three records at 10:00, 10:01 and 10:02 with the values 1, 2 and 3 and sequence numbers 8, 9, 10.
    void StartWithThree(const DeviceConfig* base = nullptr) {
        StartWith(
            TrendWith({At(0, LogDatum::Unsigned(1)), At(1, LogDatum::Unsigned(2)), At(2, LogDatum::Unsigned(3))}, 7),
            base);
    }
    // ReadRange of Log_Buffer (131) of trend log 1 with the range given.
    std::string Range(const std::string& range) { return Site.Ask("00 05 01 1A 0C 05 00 00 01 19 83" + range); }

    RunningSite Site;
};

// The answer up to the result flags.
const std::string HEAD = "30 01 1A 0C 05 00 00 01 19 83 3A 05 ";
// Date 2026-05-28, a Thursday, and the time; then the datum [3] unsigned.
const std::string ONE = "0E A4 7E 05 1C 04 B4 0A 00 00 00 0F 1E 49 01 1F";
const std::string TWO = "0E A4 7E 05 1C 04 B4 0A 01 00 00 0F 1E 49 02 1F";
const std::string THREE = "0E A4 7E 05 1C 04 B4 0A 02 00 00 0F 1E 49 03 1F";
// Result flags: first, last, both, none.
const std::string FIRST = "80 ";
const std::string LAST = "40 ";
const std::string BOTH = "C0 ";
const std::string NONE = "00 ";

std::string Items(const std::string& count, const std::string& items) {
    return "49 " + count + " 5E " + items + (items.empty() ? "" : " ") + "5F";
}

TEST_F(ReadRange, WithoutARangeGivesAll) {
    StartWithThree();
    EXPECT_EQ(Range(""), HEAD + BOTH + Items("03", ONE + " " + TWO + " " + THREE));
}

TEST_F(ReadRange, ByPosition) {
    StartWithThree();
    EXPECT_EQ(Range("3E 21 01 31 02 3F"), HEAD + FIRST + Items("02", ONE + " " + TWO));
    EXPECT_EQ(Range("3E 21 03 31 FE 3F"), HEAD + LAST + Items("02", TWO + " " + THREE));
    EXPECT_EQ(Range("3E 21 02 31 01 3F"), HEAD + NONE + Items("01", TWO));
    EXPECT_EQ(Range("3E 21 04 31 01 3F"), HEAD + NONE + Items("00", ""));
    EXPECT_EQ(Range("3E 21 00 31 01 3F"), HEAD + NONE + Items("00", ""));
    EXPECT_EQ(Range("3E 21 01 31 00 3F"), HEAD + NONE + Items("00", "")); // count 0
}

TEST_F(ReadRange, BySequenceNumberTellsTheFirst) {
    StartWithThree();
    EXPECT_EQ(Range("6E 21 08 31 02 6F"), HEAD + FIRST + Items("02", ONE + " " + TWO) + " 69 08");
    EXPECT_EQ(Range("6E 21 0A 31 FE 6F"), HEAD + LAST + Items("02", TWO + " " + THREE) + " 69 09");
    EXPECT_EQ(Range("6E 21 07 31 05 6F"), HEAD + NONE + Items("00", "")); // no longer there
    EXPECT_EQ(Range("6E 21 0B 31 05 6F"), HEAD + NONE + Items("00", "")); // not yet there
}

TEST_F(ReadRange, ByTimeGivesWhatIsNewerOrOlderThanTheReference) {
    StartWithThree();
    // After 10:00:00.00, three at most.
    EXPECT_EQ(Range("7E A4 7E 05 1C 04 B4 0A 00 00 00 31 03 7F"),
              HEAD + LAST + Items("02", TWO + " " + THREE) + " 69 09");
    // Before 10:01, two at most; the weekday is not given.
    EXPECT_EQ(Range("7E A4 7E 05 1C FF B4 0A 01 00 00 31 FE 7F"), HEAD + FIRST + Items("01", ONE) + " 69 08");
    // From the year 1900 on: all.
    EXPECT_EQ(Range("7E A4 00 01 01 01 B4 00 00 00 00 31 03 7F"),
              HEAD + BOTH + Items("03", ONE + " " + TWO + " " + THREE) + " 69 08");
    // After the last one: nothing.
    EXPECT_EQ(Range("7E A4 7E 05 1C 04 B4 0A 02 00 00 31 03 7F"), HEAD + NONE + Items("00", ""));
    EXPECT_EQ(Range("7E A4 7E 05 1C 04 B4 0A 00 00 00 31 00 7F"), HEAD + NONE + Items("00", ""));
}

TEST_F(ReadRange, ReferenceTimeHasToBeASpecificOne) {
    StartWithThree();
    EXPECT_EQ(Range("7E A4 FF 05 1C FF B4 0A 00 00 00 31 03 7F"), "60 01 06");
    EXPECT_EQ(Range("7E A4 7E 05 1C 04 B4 FF FF FF FF 31 03 7F"), "60 01 06");
}

TEST_F(ReadRange, RevisionFourRefusesTheFormOf2001) {
    DeviceConfig device = SmallDevice(Site.Block);
    device.ProtocolRevision = 4;
    StartWithThree(&device);
    EXPECT_EQ(Range("4E A4 7E 05 1C 04 B4 0A 00 00 00 31 03 4F"), "60 01 04");
    EXPECT_EQ(Range("7E A4 7E 05 1C 04 B4 0A 00 00 00 31 03 7F"),
              HEAD + LAST + Items("02", TWO + " " + THREE) + " 69 09");
}

TEST_F(ReadRange, AnOlderDeviceKnowsOnlyTheFormOf2001AndNoSequenceNumbers) {
    DeviceConfig device = SmallDevice(Site.Block);
    device.ProtocolRevision = 3;
    StartWithThree(&device);
    EXPECT_EQ(Range("4E A4 7E 05 1C 04 B4 0A 00 00 00 31 03 4F"), HEAD + LAST + Items("02", TWO + " " + THREE));
    EXPECT_EQ(Range("7E A4 7E 05 1C 04 B4 0A 00 00 00 31 03 7F"), "60 01 04");
    EXPECT_EQ(Range("6E 21 08 31 02 6F"), "60 01 04");
    EXPECT_EQ(Range("3E 21 01 31 01 3F"), HEAD + FIRST + Items("01", ONE));
}

TEST_F(ReadRange, ADeviceMayBeToldToKnowBothForms) {
    DeviceConfig device = SmallDevice(Site.Block);
    device.ByTime = ByTimeForms::both;
    StartWithThree(&device);
    EXPECT_EQ(Range("4E A4 7E 05 1C 04 B4 0A 01 00 00 31 03 4F"), HEAD + LAST + Items("01", THREE));
    EXPECT_EQ(Range("7E A4 7E 05 1C 04 B4 0A 01 00 00 31 03 7F"), HEAD + LAST + Items("01", THREE) + " 69 0A");
}

TEST_F(ReadRange, AllDatumKindsOfATrendLog) {
    std::vector<LogRecord> records;
    records.push_back(At(0, LogDatum::Status(false, true, false)));
    records.push_back(At(0, LogDatum::Boolean(true)));
    records.push_back(At(0, LogDatum::Real(1.5F)));
    records.push_back(At(0, LogDatum::Enumerated(2)));
    records.push_back(At(0, LogDatum::Unsigned(300)));
    records.push_back(At(0, LogDatum::Signed(-2)));
    BACSTAC_BIT_STRING bits{};
    bits.BitCount = 4;
    bits.Bits[0] = 0x05; // bits 0 and 2
    records.push_back(At(0, LogDatum::BitString(bits)));
    records.push_back(At(0, LogDatum::Null()));
    records.push_back(At(0, LogDatum::Failure(2, 31)));
    records.push_back(At(0, LogDatum::TimeChange(-1.0F)));
    records.push_back(At(0, LogDatum::AnyValue(std::string("\x91\x05", 2))));
    StartWith(TrendWith(records));
    const std::string stamp = "0E A4 7E 05 1C 04 B4 0A 00 00 00 0F ";
    const std::string data[] = {"0A 05 40", "19 01", "2C 3F C0 00 00",    "39 02",          "4A 01 2C",   "59 FE",
                                "6A 04 A0", "78",    "8E 91 02 91 1F 8F", "9C BF 80 00 00", "AE 91 05 AF"};
    for (std::size_t i = 0; i < std::size(data); ++i) {
        const std::string position = ToHex(Octets{static_cast<std::uint8_t>(i + 1)});
        const std::string answer = Range("3E 21 " + position + " 31 01 3F");
        EXPECT_EQ(answer.substr(HEAD.size() + 3), Items("01", stamp + "1E " + data[i] + " 1F")) << i;
    }
}

TEST_F(ReadRange, StatusFlagsFollowTheDatum) {
    LogRecord record = At(0, LogDatum::Null());
    record.StatusFlags = 0x09; // in alarm, out of service
    StartWith(TrendWith({record}));
    EXPECT_EQ(Range(""), HEAD + BOTH + Items("01", "0E A4 7E 05 1C 04 B4 0A 00 00 00 0F 1E 78 1F 2A 04 90"));
}

TEST_F(ReadRange, AllDatumKindsOfALogMultiple) {
    ObjectConfig multiple = TrendWith({});
    multiple.Id.Type = OBJ_TREND_LOG_MULTIPLE;
    LogRecord data = At(1, LogDatum::Boolean(false));
    data.Data.push_back(LogDatum::Real(1.5F));
    data.Data.push_back(LogDatum::Enumerated(2));
    data.Data.push_back(LogDatum::Unsigned(3));
    data.Data.push_back(LogDatum::Signed(-2));
    data.Data.push_back(LogDatum::BitString({4, {5}}));
    data.Data.push_back(LogDatum::Null());
    data.Data.push_back(LogDatum::Failure(2, 31));
    data.Data.push_back(LogDatum::AnyValue(std::string("\x91\x05", 2)));
    multiple.Log->Records = {At(0, LogDatum::Status(true, false, false)), data, At(2, LogDatum::TimeChange(1.0F))};
    StartWith(multiple);
    EXPECT_EQ(Site.Ask("00 05 01 1A 0C 06 C0 00 01 19 83"),
              "30 01 1A 0C 06 C0 00 01 19 83 3A 05 C0 49 03 5E"
              " 0E A4 7E 05 1C 04 B4 0A 00 00 00 0F 1E 0A 05 80 1F"
              " 0E A4 7E 05 1C 04 B4 0A 01 00 00 0F 1E 1E 09 00 1C 3F C0 00 00 29 02 39 03 49 FE 5A 04 A0 68"
              " 7E 91 02 91 1F 7F 8E 91 05 8F 1F 1F"
              " 0E A4 7E 05 1C 04 B4 0A 02 00 00 0F 1E 2C 3F 80 00 00 1F 5F");
}

TEST_F(ReadRange, WhatDoesNotFitIsToldByMoreItems) {
    StartWithThree();
    // 50 octets without segments hold two records, or one with its sequence number: the first ones, or reading
    // backwards the last ones.
    EXPECT_EQ(Site.Ask("00 00 01 1A 0C 05 00 00 01 19 83"), HEAD + "A0 " + Items("02", ONE + " " + TWO));
    EXPECT_EQ(Site.Ask("00 00 01 1A 0C 05 00 00 01 19 83 6E 21 0A 31 FD 6F"),
              HEAD + "60 " + Items("01", THREE) + " 69 0A");
    EXPECT_EQ(Site.Ask("00 00 01 1A 0C 05 00 00 01 19 83 6E 21 09 31 FE 6F"),
              HEAD + "20 " + Items("01", TWO) + " 69 09");
}

TEST_F(ReadRange, ARecordThatNeverFitsIsAborted) {
    StartWith(TrendWith({At(0, LogDatum::AnyValue(std::string(100, '\0')))}));
    EXPECT_EQ(Site.Ask("00 00 01 1A 0C 05 00 00 01 19 83"), "71 01 04");
    EXPECT_EQ(Site.Ask("02 10 01 1A 0C 05 00 00 01 19 83"), "71 01 01");
}

TEST_F(ReadRange, LogPropertiesTellOfTheBuffer) {
    StartWithThree();
    const auto read = [&](const std::string& property) {
        return Site.Ask("00 05 01 0C 0C 05 00 00 01 19" + property).substr(3 * 9);
    };
    EXPECT_EQ(read("85"), "85 3E 11 3F");       // Enable
    EXPECT_EQ(read("90"), "90 3E 10 3F");       // Stop_When_Full
    EXPECT_EQ(read("7E"), "7E 3E 22 03 E8 3F"); // Buffer_Size
    EXPECT_EQ(read("8D"), "8D 3E 21 03 3F");    // Record_Count
    EXPECT_EQ(read("91"), "91 3E 21 0A 3F");    // Total_Record_Count
    // The buffer itself is read with ReadRange only.
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 05 00 00 01 19 83"), "50 01 0C 91 02 91 1B");
}

TEST_F(ReadRange, DisablingLeavesAStatusRecordAndStopsTheLog) {
    StartWithThree();
    Device& device = Site.FirstDevice();
    const BACSTAC_OBJECT_ID trend{OBJ_TREND_LOG, 1};
    EXPECT_TRUE(device.SetLogEnabled(trend, false));
    EXPECT_FALSE(device.Append(trend, At(5, LogDatum::Null())));
    EXPECT_EQ(device.TotalRecordCount(trend), 11U);
    EXPECT_EQ(Range("3E 21 04 31 01 3F"),
              HEAD + LAST + Items("01", "0E A4 7E 05 1C 04 B4 14 1A 28 00 0F 1E 0A 05 80 1F"));
    EXPECT_TRUE(device.SetLogEnabled(trend, true));
    EXPECT_TRUE(device.Append(trend, At(6, LogDatum::Null())));
    EXPECT_EQ(device.Records(trend).size(), 6U);
    EXPECT_TRUE(device.PurgeLog(trend));
    EXPECT_EQ(device.Records(trend).size(), 1U);
    EXPECT_EQ(device.TotalRecordCount(trend), 14U);
    EXPECT_FALSE(device.PurgeLog({OBJ_TREND_LOG, 2}));
}

TEST_F(ReadRange, RefusesWhatHasNoRanges) {
    DeviceConfig device = SmallDevice(Site.Block);
    StartWithThree(&device);
    EXPECT_EQ(Site.Ask("00 05 01 1A 0C 05 00 00 63 19 83"), "50 01 1A 91 01 91 1F");       // unknown object
    EXPECT_EQ(Site.Ask("00 05 01 1A 0C 00 00 00 01 19 83"), "50 01 1A 91 02 91 20");       // unknown property
    EXPECT_EQ(Site.Ask("00 05 01 1A 0C 05 00 00 01 19 83 29 01"), "50 01 1A 91 02 91 32"); // not an array
    EXPECT_EQ(Site.Ask("00 05 01 1A 0C 00 00 00 01 19 55"), "50 01 1A 91 05 91 16");       // not a list
    EXPECT_EQ(Site.Ask("00 05 01 1A 0C 05 00 00 01 19 83 5E 5F"), "60 01 04");             // no such range
    EXPECT_EQ(Site.Ask("00 05 01 1A"), "60 01 05");
}

TEST_F(ReadRange, PlainListsHavePositionsOnly) {
    DeviceConfig device = SmallDevice(Site.Block);
    StartWithThree(&device);
    const Value alarms[] = {Value::Unsigned(1), Value::Unsigned(2), Value::Unsigned(3)};
    constexpr BACSTAC_PROPERTY_ID ALARM_VALUES = 7;
    Site.FirstDevice().SetProperty({OBJ_MULTI_STATE_VALUE, 2}, ALARM_VALUES, Value::List(alarms));
    EXPECT_EQ(Site.Ask("00 05 01 1A 0C 04 C0 00 02 19 07 3E 21 02 31 05 3F"),
              "30 01 1A 0C 04 C0 00 02 19 07 3A 05 40 49 02 5E 21 02 21 03 5F");
    EXPECT_EQ(Site.Ask("00 05 01 1A 0C 04 C0 00 02 19 07 6E 21 02 31 05 6F"), "50 01 1A 91 02 91 8C");
    EXPECT_EQ(Site.Ask("00 05 01 1A 0C 04 C0 00 02 19 07 7E A4 7E 05 1C 04 B4 0A 00 00 00 31 03 7F"),
              "50 01 1A 91 02 91 8D");
}

} // namespace
} // namespace sim::testing
