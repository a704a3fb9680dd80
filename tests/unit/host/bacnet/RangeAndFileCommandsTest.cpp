// readrange, file get and file put.
#include "api/bacnet/Enums.h"
#include "tests/unit/host/bacnet/CommandSite.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>

using Json = nlohmann::json;
using testing::HasSubstr;

class RangeAndFileCommands : public Commands {
protected:
    // Device 2000 is an old one with the log of device 1000: it tells no sequence numbers.
    RangeAndFileCommands() {
        sim::DeviceConfig& old = m_config.Devices[1];
        old.ProtocolRevision = 3;
        old.Segmentation = bacnet::Segmentation::none;
        for (const sim::ObjectConfig& object : m_config.Devices[0].Objects)
            if (object.Id.Type == OBJ_TREND_LOG || object.Id.Type == OBJ_ANALOG_INPUT)
                old.Objects.push_back(object);
    }
};
INSTANTIATE_TEST_SUITE_P(Ways, RangeAndFileCommands, BOTH_WAYS, WayName);

namespace {

constexpr BACSTAC_OBJECT_ID STREAM{OBJ_FILE, 1};
constexpr BACSTAC_OBJECT_ID RECORDS{OBJ_FILE, 2};

std::vector<unsigned> NumbersOf(const Json& result) {
    std::vector<unsigned> numbers;
    for (const Json& record : result["records"])
        numbers.push_back(record["number"].get<unsigned>());
    return numbers;
}

} // namespace

// 300 records fit no single answer.
TEST_P(RangeAndFileCommands, ReadRangeReadsAWholeLogInParts) {
    const std::vector<unsigned> numbers = NumbersOf(RunJson({"readrange", "1000", "trend-log:1"}));
    ASSERT_EQ(numbers.size(), 300U);
    for (unsigned i = 0; i < numbers.size(); ++i)
        ASSERT_EQ(numbers[i], i + 1);
    EXPECT_GT(m_simulator->GetStats()[sim::Counter::readRange], 1U);
}

TEST_P(RangeAndFileCommands, ReadRangeGoesFromAReferenceInBothDirections) {
    EXPECT_EQ(NumbersOf(RunJson({"readrange", "1000", "tl:1", "--position", "5", "--count", "3"})),
              (std::vector<unsigned>{5, 6, 7}));
    EXPECT_EQ(NumbersOf(RunJson({"readrange", "1000", "tl:1", "--position", "5", "--count", "-3"})),
              (std::vector<unsigned>{3, 4, 5}));
    EXPECT_EQ(NumbersOf(RunJson({"readrange", "1000", "tl:1", "--sequence", "299", "--count", "10"})),
              (std::vector<unsigned>{299, 300}));
    EXPECT_EQ(NumbersOf(RunJson({"readrange", "1000", "tl:1", "--time", "2026-01-01 00:10:00", "--count", "2"})),
              (std::vector<unsigned>{12, 13}))
        << "one record a minute from midnight on: those behind 00:10";
    for (const char* reference : {"--sequence", "--position"}) {
        const auto backwards = NumbersOf(RunJson({"readrange", "1000", "tl:1", reference, "300", "--count", "-250"}));
        ASSERT_EQ(backwards.size(), 250U) << reference;
        EXPECT_EQ(backwards.front(), 51U) << "the oldest one first, also when it came with the last answer";
        EXPECT_TRUE(std::is_sorted(backwards.begin(), backwards.end()));
    }
}

TEST_P(RangeAndFileCommands, ReadRangeBackwardsFromNowhereGivesTheNewest) {
    EXPECT_EQ(NumbersOf(RunJson({"readrange", "1000", "tl:1", "--count", "-2"})), (std::vector<unsigned>{299, 300}));
    EXPECT_EQ(NumbersOf(RunJson({"readrange", "1000", "tl:1", "--count", "-1000"})).size(), 300U);
    const ProcessResult list = Run({"readrange", "1000", "device:1000", "object-list", "--count", "-2"});
    EXPECT_EQ(list.code, 2);
    EXPECT_EQ(list.errors, "bdc: a negative --count of a list needs --position\n");
}

TEST_P(RangeAndFileCommands, ReadRangeByTimeGoesThroughTheLogOfAnOldDevice) {
    const Json forward = RunJson({"readrange", "2000", "tl:1", "--time", "2026-01-01 00:10:00", "--count", "250"});
    ASSERT_EQ(forward["records"].size(), 250U);
    EXPECT_EQ(forward["records"][0]["time"], "2026-01-01 00:11:00.00");
    EXPECT_EQ(forward["records"][249]["time"], "2026-01-01 04:20:00.00");
    const Json backward = RunJson({"readrange", "2000", "tl:1", "--time", "2026-01-01 04:00:00", "--count", "-200"});
    ASSERT_EQ(backward["records"].size(), 200U);
    EXPECT_EQ(backward["records"][0]["time"], "2026-01-01 00:40:00.00");
    EXPECT_EQ(backward["records"][199]["time"], "2026-01-01 03:59:00.00");
    EXPECT_TRUE(backward["records"][0]["number"].is_null()) << "it tells none";
}

TEST_P(RangeAndFileCommands, ReadRangePrintsLinesAndCsv) {
    const std::vector<sim::LogRecord> records = Device(1000).Records({OBJ_TREND_LOG, 1});
    ASSERT_FALSE(records.empty());
    const Json first = RunJson({"readrange", "1000", "tl:1", "--count", "1"})["records"][0];
    EXPECT_EQ(first["time"], "2026-01-01 00:00:00.00");
    EXPECT_EQ(first["kind"], "real");
    EXPECT_THAT(Output({"readrange", "1000", "tl:1", "--count", "1"}),
                HasSubstr("         1  2026-01-01 00:00:00.00  real        "));
    EXPECT_THAT(Output({"readrange", "1000", "tl:1", "--count", "1", "--csv"}),
                HasSubstr("number,time,kind,value,status\r\n1,2026-01-01 00:00:00.00,real,"));
}

TEST_P(RangeAndFileCommands, ReadRangeRefusesWrongWords) {
    for (const Words& words :
         {Words{"readrange", "1000", "tl:1", "--position", "1", "--time", "2026-01-01"},
          Words{"readrange", "1000", "tl:1", "--count", "0"}, Words{"readrange", "1000", "tl:1", "--sequence", "-1"},
          Words{"readrange", "1000", "tl:1", "--time", "noon"}, Words{"readrange", "1000", "log"}})
        EXPECT_EQ(Run(words).code, 2) << testing::PrintToString(words);
    const ProcessResult result = Run({"readrange", "1000", "ai:1"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.errors, HasSubstr("device 1000, analog-input:1, log-buffer: error: "));
}

TEST_P(RangeAndFileCommands, FileGetCopiesAStream) {
    EXPECT_EQ(Output({"file", "get", "1000", "1", m_data.File("copy")}), "5004 octets\n");
    EXPECT_EQ(m_data.Get("copy"), Device(1000).FileOctets(STREAM));
}

TEST_P(RangeAndFileCommands, FilePutReplacesAStreamAndCutsOffTheRest) {
    const std::string text = std::string(3000, 'y') + std::string("\0\xFF", 2);
    m_data.Put("new", text);
    EXPECT_EQ(RunJson({"file", "put", "1000", "1", m_data.File("new")}),
              (Json{{"path", m_data.File("new")}, {"octets", 3002}}));
    EXPECT_EQ(Device(1000).FileOctets(STREAM), text);
    m_data.Put("new", "");
    Output({"file", "put", "1000", "1", m_data.File("new")});
    EXPECT_EQ(Device(1000).FileOctets(STREAM), "");
    EXPECT_EQ(Output({"file", "get", "1000", "1", m_data.File("copy")}), "0 octets\n");
    EXPECT_EQ(m_data.Get("copy"), "");
}

TEST_P(RangeAndFileCommands, FilesOfRecordsAreLinesOfHexadecimalPairs) {
    EXPECT_EQ(Output({"file", "get", "1000", "2", m_data.File("copy")}), "3 records, 8 octets\n");
    EXPECT_EQ(m_data.Get("copy"), "6f6e65\n\n7468726565\n");
    m_data.Put("new", "31\n3232\n333333\n34\n");
    Output({"file", "put", "1000", "2", m_data.File("new")});
    EXPECT_EQ(Device(1000).FileRecords(RECORDS), (Words{"1", "22", "333", "4"}));
    m_data.Put("new", "35\n");
    Output({"file", "put", "1000", "2", m_data.File("new")});
    EXPECT_EQ(Device(1000).FileRecords(RECORDS), Words{"5"}) << "what was longer is cut off";
    m_data.Put("new", "3\n");
    EXPECT_EQ(Run({"file", "put", "1000", "2", m_data.File("new")}).code, 2);
}

TEST_P(RangeAndFileCommands, NothingIsReadForACopyThatCannotBeWritten) {
    Device(1000).SetFault(sim::Fault::Error(5, 5).OnlyFor(bacnet::ConfirmedService::atomicReadFile));
    const ProcessResult result = Run({"file", "get", "1000", "1", m_data.File("no folder/copy")});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.errors, HasSubstr("no folder/copy.tmp: cannot be made: No such file or directory"));
}

TEST_P(RangeAndFileCommands, AFileThatCannotBeReadLeavesTheCopyAsItWas) {
    m_data.Put("copy", "former");
    const ProcessResult missing = Run({"file", "get", "1000", "9", m_data.File("copy")});
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.errors, "bdc: device 1000, file:9: error: unknown-object (object)\n");
    Device(1000).SetFault(sim::Fault::Error(5, 5).OnlyFor(bacnet::ConfirmedService::atomicReadFile));
    EXPECT_EQ(Run({"file", "get", "1000", "1", m_data.File("copy")}).code, 1);
    EXPECT_EQ(m_data.Get("copy"), "former");
    EXPECT_FALSE(m_data.Has("copy.tmp"));
    EXPECT_EQ(Run({"file", "put", "1000", "1", m_data.File("no such file")}).code, 1);
    const ProcessResult wrong = Run({"file", "get", "1000", "x", m_data.File("copy")});
    EXPECT_EQ(wrong.code, 2);
    EXPECT_EQ(wrong.errors, "bdc: INSTANCE is a number from 0 to 4194303, not \"x\"\n");
    EXPECT_EQ(Run({"file", "get", "1000", "1"}).code, 2);
}
