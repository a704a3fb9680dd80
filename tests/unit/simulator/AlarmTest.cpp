// Events of a simulated device and the summaries of them, octet by octet.
#include "tests/unit/simulator/Site.h"

#include "simulator/model/Standard.h"

namespace sim::testing {
namespace {

constexpr BACSTAC_OBJECT_ID INPUT{OBJ_ANALOG_INPUT, 1};
constexpr BACSTAC_OBJECT_ID STATES{OBJ_MULTI_STATE_VALUE, 2};
constexpr BACSTAC_OBJECT_ID POINT{OBJ_BINARY_INPUT, 3};
constexpr std::uint32_t OFFNORMAL = 2;
constexpr std::uint32_t HIGH_LIMIT = 3;

// Device 77, process 5; all days and times, all transitions.
const char DESTINATION[] = "82 01 FE B4 00 00 00 00 B4 17 3B 3B 63 0C 02 00 00 4D 21 05 11 82 05 E0";

class Alarms : public ::testing::Test {
protected:
    void SetUp() override {
        DeviceConfig device = SmallDevice(Site.Block);
        ObjectConfig point;
        point.Id = POINT;
        device.Objects.push_back(point);
        ObjectConfig notifications;
        notifications.Id = {OBJ_NOTIFICATION_CLASS, 1};
        const Value priorities[] = {Value::Unsigned(10), Value::Unsigned(20), Value::Unsigned(30)};
        notifications.Properties.emplace_back(PROP_NOTIFICATION_CLASS, Value::Unsigned(1));
        notifications.Properties.emplace_back(PROP_PRIORITY, Value::Array(priorities));
        notifications.Properties.emplace_back(PROP_ACK_REQUIRED, Value::BitString(3, {0}));
        const Octets destination = Hex(DESTINATION);
        const Value destinations[] = {Value::Encoded(destination)};
        notifications.Properties.emplace_back(PROP_RECIPIENT_LIST, Value::List(destinations));
        device.Objects.push_back(notifications);
        Configure(device);
        Site.Config.Devices.push_back(device);
        Site.Start();
    }
    virtual void Configure(DeviceConfig&) {}
    RunningSite Site;
};

const std::string ALARMS = "00 05 01 03";
const std::string NO_TIME = "2E A4 FF FF FF FF B4 FF FF FF FF 2F";
const std::string NOW = "2E A4 7E 05 1C 04 B4 14 1A 28 00 2F";

TEST_F(Alarms, ThereAreNoneAtFirst) {
    EXPECT_EQ(Site.Ask(ALARMS), "30 01 03");
    EXPECT_EQ(Site.Ask("00 05 01 04 09 00"), "30 01 04");
    EXPECT_EQ(Site.Ask("00 05 01 1D"), "30 01 1D 0E 0F 19 00");
    EXPECT_FALSE(Site.FirstDevice().RaiseEvent({OBJ_ANALOG_INPUT, 9}, OFFNORMAL));
}

TEST_F(Alarms, SummaryTellsThoseThatAreNotNormal) {
    ASSERT_TRUE(Site.FirstDevice().RaiseEvent(INPUT, HIGH_LIMIT));
    ASSERT_TRUE(Site.FirstDevice().RaiseEvent(STATES, EVENT_FAULT));
    // Object, state, acknowledged transitions: to-offnormal has to be acknowledged, to-fault has not.
    EXPECT_EQ(Site.Ask(ALARMS), "30 01 03 C4 00 00 00 01 91 03 82 05 60 C4 04 C0 00 02 91 01 82 05 E0");
    ASSERT_TRUE(Site.FirstDevice().AcknowledgeEvent(INPUT, Transition::toOffnormal));
    ASSERT_TRUE(Site.FirstDevice().RaiseEvent(STATES, EVENT_NORMAL));
    EXPECT_EQ(Site.Ask(ALARMS), "30 01 03 C4 00 00 00 01 91 03 82 05 E0");
    EXPECT_EQ(Site.FirstDevice().GetProperty(INPUT, PROP_STATUS_FLAGS), Value::BitString(4, {0}));
    EXPECT_EQ(Site.FirstDevice().GetProperty(STATES, PROP_STATUS_FLAGS), Value::BitString(4, {}));
    EXPECT_EQ(Site.Ask("00 05 01 03 09 00"), "60 01 07");
}

TEST_F(Alarms, AnEventThatIsNoAlarmIsNotInTheAlarmSummary) {
    ASSERT_TRUE(Site.FirstDevice().RaiseEvent(INPUT, HIGH_LIMIT));
    ASSERT_TRUE(Site.FirstDevice().SetProperty(INPUT, PROP_NOTIFY_TYPE, Value::Enumerated(1)));
    EXPECT_EQ(Site.Ask(ALARMS), "30 01 03");
}

// Of the analog input: out-of-range, high limit, priority 10, class 1.
const std::string OF_INPUT = " C4 00 00 00 01 91 05 91 03 21 0A 21 01";
// Of the binary input: change-of-state, normal, priority 30, class 1.
const std::string OF_POINT = " C4 00 C0 00 03 91 01 91 00 21 1E 21 01";

class Enrollments : public Alarms {
protected:
    void SetUp() override {
        Alarms::SetUp();
        ASSERT_TRUE(Site.FirstDevice().RaiseEvent(INPUT, HIGH_LIMIT));
        ASSERT_TRUE(Site.FirstDevice().RaiseEvent(POINT, EVENT_NORMAL));
    }
    std::string Summary(const std::string& filters) { return Site.Ask("00 05 01 04 " + filters).substr(8); }
};

TEST_F(Enrollments, OfAll) {
    EXPECT_EQ(Summary("09 00"), OF_INPUT + OF_POINT);
}

TEST_F(Enrollments, ByAcknowledgement) {
    EXPECT_EQ(Summary("09 01"), OF_POINT);
    EXPECT_EQ(Summary("09 02"), OF_INPUT);
}

TEST_F(Enrollments, ByRecipient) {
    // [1] { [0] { [0] device 77 }, [1] process 5 }
    EXPECT_EQ(Summary("09 00 1E 0E 0C 02 00 00 4D 0F 19 05 1F"), OF_INPUT + OF_POINT);
    EXPECT_EQ(Summary("09 00 1E 0E 0C 02 00 00 4D 0F 19 06 1F"), "");
    EXPECT_EQ(Summary("09 00 1E 0E 0C 02 00 00 4E 0F 19 05 1F"), "");
    EXPECT_EQ(Summary("09 00 1E 0E 1E 21 00 61 4D 1F 0F 19 05 1F"), "");
}

TEST_F(Enrollments, ByState) {
    EXPECT_EQ(Summary("09 00 29 00"), OF_INPUT);            // offnormal
    EXPECT_EQ(Summary("09 00 29 01"), "");                  // fault
    EXPECT_EQ(Summary("09 00 29 02"), OF_POINT);            // normal
    EXPECT_EQ(Summary("09 00 29 03"), OF_INPUT + OF_POINT); // all
    EXPECT_EQ(Summary("09 00 29 04"), OF_INPUT);            // active
}

TEST_F(Enrollments, ByTypePriorityAndClass) {
    EXPECT_EQ(Summary("09 00 39 05"), OF_INPUT);
    EXPECT_EQ(Summary("09 00 4E 09 0B 19 FF 4F"), OF_POINT);
    EXPECT_EQ(Summary("09 00 4E 09 0A 19 0A 4F"), OF_INPUT);
    EXPECT_EQ(Summary("09 00 59 01"), OF_INPUT + OF_POINT);
    EXPECT_EQ(Summary("09 00 59 02"), "");
    EXPECT_EQ(Site.Ask("00 05 01 04"), "60 01 05");
    EXPECT_EQ(Site.Ask("00 05 01 04 29 00"), "60 01 04");
}

TEST_F(Alarms, EventInformationTellsTimesAndPriorities) {
    ASSERT_TRUE(Site.FirstDevice().RaiseEvent(INPUT, HIGH_LIMIT));
    EXPECT_EQ(Site.Ask("00 05 01 1D"), "30 01 1D 0E 0C 00 00 00 01 19 03 2A 05 60 3E " + NOW + " " + NO_TIME + " " +
                                           NO_TIME + " 3F 49 00 5A 05 E0 6E 21 0A 21 14 21 1E 6F 0F 19 00");
}

TEST_F(Alarms, EventInformationKeepsWhatIsNormalButNotAcknowledged) {
    ASSERT_TRUE(Site.FirstDevice().RaiseEvent(INPUT, HIGH_LIMIT));
    ASSERT_TRUE(Site.FirstDevice().RaiseEvent(INPUT, EVENT_NORMAL));
    EXPECT_EQ(Site.Ask("00 05 01 1D").substr(0, 41), "30 01 1D 0E 0C 00 00 00 01 19 00 2A 05 60");
    ASSERT_TRUE(Site.FirstDevice().AcknowledgeEvent(INPUT, Transition::toOffnormal));
    EXPECT_EQ(Site.Ask("00 05 01 1D"), "30 01 1D 0E 0F 19 00");
}

class ManyAlarms : public Alarms {
protected:
    void Configure(DeviceConfig& device) override {
        for (ObjectConfig& object : device.Objects)
            object.Event.emplace().State = OFFNORMAL;
        device.EventsPerAnswer = m_limit;
    }
    // Object identifiers in the answers, and whether more follow, until nothing follows.
    std::vector<std::string> Walk(const std::string& header) {
        std::vector<std::string> seen;
        std::string request = header + " 01 1D";
        for (int i = 0; i < 10; ++i) {
            const std::string answer = Site.Ask(request);
            std::string last;
            for (std::size_t at = answer.find(" 0C "); at != std::string::npos; at = answer.find(" 0C ", at + 4)) {
                last = answer.substr(at + 4, 11);
                seen.push_back(last);
            }
            seen.push_back(answer.substr(answer.size() - 2));
            if (answer.ends_with("19 00"))
                break;
            request = header + " 01 1D 0C " + last;
        }
        return seen;
    }
    std::uint32_t m_limit = 2;
};

TEST_F(ManyAlarms, AreToldInPartsByALimit) {
    EXPECT_EQ(Walk("00 05"),
              (std::vector<std::string>{"00 00 00 01", "04 C0 00 02", "01", "00 C0 00 03", "03 C0 00 01", "00"}));
    EXPECT_EQ(Site.Ask("00 05 01 1D 0C 00 00 00 63"), "50 01 1D 91 01 91 1F");
}

TEST_F(ManyAlarms, AreToldOneByOneWhereNoMoreFits) {
    EXPECT_EQ(Walk("00 01").size(), 8U); // 128 octets take one event
    EXPECT_EQ(Site.Ask("00 00 01 1D"), "71 01 04");
}

TEST_F(ManyAlarms, TheStartingStateComesFromTheConfiguration) {
    EXPECT_EQ(Site.FirstDevice().GetProperty(POINT, PROP_EVENT_STATE), Value::Enumerated(OFFNORMAL));
    EXPECT_EQ(Site.FirstDevice().GetProperty(POINT, PROP_ACKED_TRANSITIONS), Value::BitString(3, {1, 2}));
}

} // namespace
} // namespace sim::testing
