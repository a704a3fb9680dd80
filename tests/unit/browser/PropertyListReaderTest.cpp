// What the reader of property lists asks and shows.
#include "module/browser/PropertyListReader.h"

#include "tests/unit/browser/BrowserSite.h"
#include "tests/unit/browser/FakeQueue.h"

#include <unistd.h>

#include <fstream>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;

using namespace std::chrono_literals;

namespace {

[[maybe_unused]] std::size_t ResidentBytes() {
    std::size_t size = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

} // namespace

class PropertyList : public BrowserSite, public IPropertyListView {
protected:
    static constexpr BACSTAC_OBJECT_ID ZONE{OBJ_ANALOG_VALUE, 1};

    PropertyList() {
        AddDevice(10, "Beta");
        AddObject(10, ZONE, "zone");
        m_reader = std::make_unique<CPropertyListReader>(m_bacnet, *this, m_queue);
    }

    // Reads to the end.
    Lines Read(BACSTAC_OBJECT_ID object = ZONE) {
        m_shown.Take();
        m_reader->StartReading(10, object);
        EXPECT_TRUE(m_queue->RunUntil([this] { return !m_reader->IsReading(); }));
        return m_shown.Take();
    }
    // The rows alone.
    Lines Rows(BACSTAC_OBJECT_ID object = ZONE) {
        Lines rows;
        for (std::string& line : Read(object))
            if (line.starts_with("row "))
                rows.push_back(line.substr(4));
        return rows;
    }
    bool WaitUntilHung() {
        return m_queue->RunUntil([this] { return HasHung(); });
    }

    void BeginReading(const std::string& title, unsigned range) override {
        m_shown.Add("begin " + title + " " + std::to_string(range));
    }
    void SetSource(const std::string& title, unsigned range) override {
        m_shown.Add(title + " " + std::to_string(range));
    }
    void SetProperty(const std::string& name, unsigned position) override {
        m_shown.Add("at " + std::to_string(position) + " " + name);
    }
    void AddRow(const PropertyRow& row) override {
        m_shown.Add("row " + row.name + " = " + row.value + " #" + std::to_string(row.id));
    }
    void ClearRows() override { m_shown.Add("clear"); }
    void EndReading() override { m_shown.Add("end"); }

    CEventList m_shown;
    std::shared_ptr<CFakeQueue> m_queue = std::make_shared<CFakeQueue>();
    std::unique_ptr<CPropertyListReader> m_reader;
};

TEST_F(PropertyList, OneRequestGivesAllRows) {
    SetValue(10, ZONE, PROP_PRESENT_VALUE, FakeValue::Real(21.5F));
    EXPECT_THAT(Read(),
                ElementsAre("begin Reading property list... 100", "Reading property: 2", "at 0 object-name",
                            "row object-name = zone #77", "at 1 present-value", "row present-value = 21.5 #85", "end"));
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadPropertyList(10, (2, 1), 100)"));
}

TEST_F(PropertyList, WhatFailedInTheListIsReadSingly) {
    SetValue(10, ZONE, PROP_DESCRIPTION, FakeValue::Text("long"));
    m_bacnet.LeaveOutOfLists(10, ZONE, PROP_DESCRIPTION);
    SetValue(10, ZONE, PROP_PRESENT_VALUE, FakeValue::Real(1));
    m_bacnet.LeaveOutOfLists(10, ZONE, PROP_PRESENT_VALUE);
    m_bacnet.SetFault("ReadProperty(10, (2, 1), 85", BACSTAC_STATUS_ERROR);
    EXPECT_THAT(Rows(), ElementsAre("description = long #28", "object-name = zone #77"));
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadPropertyList(10, (2, 1), 100)", "ReadProperty(10, (2, 1), 28, -1)",
                                             "ReadProperty(10, (2, 1), 85, -1)"));
}

TEST_F(PropertyList, AFailureWithoutAnotherWayIsARow) {
    m_bacnet.SetFault("ReadPropertyList", BACSTAC_STATUS_TIMEOUT);
    const std::string text = CBacGeneral::GetErrorText(BACSTAC_STATUS_TIMEOUT, nullptr);
    EXPECT_THAT(Read(), ElementsAre("begin Reading property list... 100", "row error = " + text + " #-1", "end"));
}

// Reject, unrecognized service.
constexpr BACSTAC_ERROR NO_SUCH_SERVICE{1, 9, 0};

TEST_F(PropertyList, ADeviceWithoutListsIsReadByTheStandardsList) {
    SetValue(10, ZONE, PROP_PRESENT_VALUE, FakeValue::Real(1));
    m_bacnet.SetFault("ReadPropertyList", BACSTAC_STATUS_REJECT, NO_SUCH_SERVICE);
    EXPECT_THAT(Rows(), testing::UnorderedElementsAre("object-name = zone #77", "present-value = 1 #85"));
    EXPECT_EQ(m_events.Take().size(), 1U + CBacGeneral::GetObjectPropsNumber(OBJ_ANALOG_VALUE));
}

TEST_F(PropertyList, OneFailedItemIsARefusal) {
    m_bacnet.LeaveOutOfLists(10, ZONE, PROP_OBJECT_NAME);
    EXPECT_THAT(Rows(), ElementsAre("object-name = zone #77"));
    EXPECT_EQ(m_events.Take().size(), 1U + CBacGeneral::GetObjectPropsNumber(OBJ_ANALOG_VALUE));
}

TEST_F(PropertyList, OneGoodItemIsAList) {
    EXPECT_THAT(Rows(), ElementsAre("object-name = zone #77"));
    EXPECT_EQ(m_events.Take().size(), 1U);
}

TEST_F(PropertyList, AHundredPropertiesAreTheMost) {
    for (unsigned i = 0; i < 120; ++i)
        SetValue(10, ZONE, 1000 + i, FakeValue::Unsigned(i));
    EXPECT_EQ(Rows().size(), 100U);
}

TEST_F(PropertyList, RowsHaveTheNumbersOfProprietaryProperties) {
    SetValue(10, ZONE, 0xFFFFFFFF, FakeValue::Unsigned(5)); // not to be taken for the row of an error
    EXPECT_THAT(Rows(), testing::Contains("4294967295 = 5 #4294967295"));
}

TEST_F(PropertyList, AValueThatIsNoneHasNoRow) {
    SetValue(10, ZONE, PROP_PRESENT_VALUE, {TYPE_NONE, 0, {}});
    EXPECT_THAT(Rows(), ElementsAre("object-name = zone #77"));
}

TEST_F(PropertyList, LogsEndWithARowForTheirBuffer) {
    for (const BACSTAC_OBJECT_TYPE type : {OBJ_TREND_LOG, OBJ_EVENT_LOG, OBJ_TREND_LOG_MULTIPLE}) {
        AddObject(10, {type, 1}, "log");
        EXPECT_THAT(Rows({type, 1}), ElementsAre("object-name = log #77", "log-buffer = ... #131"));
    }
}

TEST_F(PropertyList, ABufferThatFailedShowsWhatTheLastSingleReadLeft) {
    constexpr BACSTAC_OBJECT_ID LOG{OBJ_TREND_LOG, 1};
    AddObject(10, LOG, "log");
    m_bacnet.LeaveOutOfLists(10, LOG, PROP_OBJECT_NAME);
    SetValue(10, LOG, PROP_LOG_BUFFER, FakeValue::Unsigned(1));
    m_bacnet.LeaveOutOfLists(10, LOG, PROP_LOG_BUFFER);
    EXPECT_THAT(Rows(LOG), ElementsAre("object-name = log #77", "log-buffer = log #131", "log-buffer = ... #131"));
    EXPECT_THAT(m_events.Take(),
                ElementsAre("ReadPropertyList(10, (20, 1), 100)", "ReadProperty(10, (20, 1), 77, -1)"));
}

TEST_F(PropertyList, ABufferThatFailedFirstHasItsLastRowOnly) {
    constexpr BACSTAC_OBJECT_ID LOG{OBJ_TREND_LOG, 1};
    AddObject(10, LOG, "log");
    SetValue(10, LOG, PROP_LOG_BUFFER, FakeValue::Unsigned(1));
    m_bacnet.LeaveOutOfLists(10, LOG, PROP_LOG_BUFFER);
    EXPECT_THAT(Rows(LOG), ElementsAre("object-name = log #77", "log-buffer = ... #131"));
}

TEST_F(PropertyList, ACancelLeavesAnEmptyListAndNoError) {
    constexpr BACSTAC_OBJECT_ID LOG{OBJ_TREND_LOG, 1};
    AddObject(10, LOG, "log");
    m_bacnet.LeaveOutOfLists(10, LOG, PROP_OBJECT_NAME);
    SetValue(10, LOG, PROP_RECORD_COUNT, FakeValue::Unsigned(1));
    Hang("ReadProperty(");
    m_reader->StartReading(10, LOG);
    ASSERT_TRUE(WaitUntilHung());
    m_reader->Cancel();
    LetGo();
    ASSERT_TRUE(m_queue->RunUntil([this] { return !m_reader->IsReading(); }));
    EXPECT_THAT(m_shown.Take(), ElementsAre("begin Reading property list... 100", "Reading property: 2",
                                            "at 0 object-name", "row object-name = log #77", "clear", "end"));
}

TEST_F(PropertyList, ACancelDuringTheFirstRequestShowsNoError) {
    m_bacnet.SetFault("ReadPropertyList", BACSTAC_STATUS_TIMEOUT);
    Hang("ReadPropertyList");
    m_reader->StartReading(10, ZONE);
    ASSERT_TRUE(WaitUntilHung());
    m_reader->Cancel();
    LetGo();
    ASSERT_TRUE(m_queue->RunUntil([this] { return !m_reader->IsReading(); }));
    EXPECT_THAT(m_shown.Take(), ElementsAre("begin Reading property list... 100", "end"));
}

TEST_F(PropertyList, RowsComeBeforeTheLastSingleRead) {
    m_bacnet.SetFault("ReadPropertyList", BACSTAC_STATUS_REJECT, NO_SUCH_SERVICE);
    Hang("ReadProperty(10, (2, 1), 85");
    SetValue(10, ZONE, PROP_PRESENT_VALUE, FakeValue::Real(1));
    m_reader->StartReading(10, ZONE);
    EXPECT_TRUE(m_queue->RunUntil([this] {
        const Lines shown = m_shown.Get();
        return std::ranges::find(shown, "row object-name = zone #77") != shown.end();
    }));
    EXPECT_TRUE(m_reader->IsReading());
    LetGo();
}

TEST_F(PropertyList, TypesAndNoDeviceOnlyEndTheRead) {
    m_reader->StartReading(10, {OBJ_ANALOG_VALUE, 0xFFFFFFFF});
    m_reader->StartReading(0xFFFFFFFF, ZONE);
    EXPECT_FALSE(m_reader->IsReading());
    EXPECT_THAT(m_shown.Take(), IsEmpty());
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // these have a heap of their own
// 100 rooms of 131,072 bytes, all of them in use.
TEST_F(PropertyList, AReadGivesItsMemoryBack) {
    constexpr BACSTAC_PROPERTY_ID FIRST = 1000;
    constexpr BACSTAC_PROPERTY_ID LAST = FIRST + 98;
    for (BACSTAC_PROPERTY_ID property = FIRST; property <= LAST; ++property)
        SetValue(10, ZONE, property, {TYPE_STRING, 1, std::string(BACSTAC_CONTENTS_SIZE, '\0')}); // an empty text
    m_bacnet.LeaveOutOfLists(10, ZONE, LAST);
    Read(); // what a first read leaves behind for all others
    const std::size_t idle = ResidentBytes();
    for (int read = 0; read < 3; ++read) {
        Hang("ReadProperty(10, (2, 1), " + std::to_string(LAST));
        m_reader->StartReading(10, ZONE);
        ASSERT_TRUE(WaitUntilHung());
        EXPECT_GT(ResidentBytes(), idle + 95 * BACSTAC_CONTENTS_SIZE);
        LetGo();
        ASSERT_TRUE(m_queue->RunUntil([this] { return !m_reader->IsReading(); }));
        EXPECT_LT(ResidentBytes(), idle + (1U << 20));
    }
}
#endif

TEST_F(PropertyList, AStopShowsNothingMoreOfTheRead) {
    SetValue(10, ZONE, PROP_PRESENT_VALUE, FakeValue::Real(1));
    m_reader->StartReading(10, ZONE);
    ASSERT_TRUE(m_reader->Wait(10000)); // its rows wait in the queue
    m_reader->RequestStop();
    m_queue->Run();
    const Lines shown = m_shown.Take();
    EXPECT_THAT(shown, testing::Not(testing::Contains(testing::StartsWith("row "))));
    EXPECT_EQ(shown.back(), "end");
}

TEST_F(PropertyList, AHungReadIsLeftBehindAndTheNextOneGoesOn) {
    AddObject(10, {OBJ_ANALOG_INPUT, 5}, "T");
    Hang("ReadPropertyList(10, (2, 1)");
    m_reader->StartReading(10, ZONE);
    ASSERT_TRUE(WaitUntilHung());
    const auto begin = std::chrono::steady_clock::now();
    m_reader->StartReading(10, {OBJ_ANALOG_INPUT, 5});
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 100ms + 400ms); // a margin for a busy machine
    ASSERT_TRUE(m_queue->RunUntil([this] { return !m_reader->IsReading(); }));
    LetGo();
    std::this_thread::sleep_for(20ms); // the first one comes back, late
    m_queue->Run();
    EXPECT_THAT(m_shown.Take(),
                ElementsAre("begin Reading property list... 100", "end", "begin Reading property list... 100",
                            "Reading property: 1", "at 0 object-name", "row object-name = T #77", "end"));
}

TEST_F(PropertyList, TheReaderMayGoDuringARead) {
    Hang("ReadPropertyList");
    m_reader->StartReading(10, ZONE);
    ASSERT_TRUE(WaitUntilHung());
    const auto begin = std::chrono::steady_clock::now();
    m_reader.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 100ms + 400ms);
    EXPECT_THAT(m_shown.Take(), ElementsAre("begin Reading property list... 100", "end"));
    LetGo();
    std::this_thread::sleep_for(20ms);
    m_queue->Run();
    EXPECT_THAT(m_shown.Take(), IsEmpty());
}
