// Objects that report by themselves, event enrollments by their algorithms, and what recipients are told.
#include "simulator/model/Device.h"
#include "tests/unit/simulator/EventAlgorithms.h"
#include "tests/unit/simulator/Station.h"

#include <array>
#include <memory>

namespace sim::testing {
namespace {

constexpr BACSTAC_OBJECT_ID INPUT{OBJ_ANALOG_INPUT, 1};
constexpr BACSTAC_OBJECT_ID SOURCE{OBJ_ANALOG_VALUE, 1};
constexpr BACSTAC_OBJECT_ID OTHER{OBJ_ANALOG_VALUE, 2};
constexpr BACSTAC_OBJECT_ID TREND{OBJ_TREND_LOG, 1};
constexpr BACSTAC_OBJECT_ID EVENTS{OBJ_EVENT_LOG, 1};
constexpr BACSTAC_OBJECT_ID CLASS{OBJ_NOTIFICATION_CLASS, 1};
constexpr BACSTAC_OBJECT_ID ENROLLMENT{OBJ_EVENT_ENROLLMENT, 1};

// Monday, 16 November 2026, 6:00.
const LocalTime START = *ToLocalTime({{2026, 0, 11, 16, 0}, {6, 0, 0, 0}});

Value Encoded(const std::string& hex) {
    return Value::Encoded(Hex(hex));
}

// Device 77, process 5; all days and times, unconfirmed, all transitions.
const char ALWAYS[] = "82 01 FE B4 00 00 00 00 B4 17 3B 3B 63 0C 02 00 00 4D 21 05 10 82 05 E0";

class Events : public ::testing::Test {
protected:
    void SetUp() override {
        m_config.Instance = 7;
        ObjectConfig& classObject = Add(CLASS);
        const Value priorities[] = {Value::Unsigned(10), Value::Unsigned(20), Value::Unsigned(30)};
        classObject.Properties.emplace_back(PROP_PRIORITY, Value::Array(priorities));
        classObject.Properties.emplace_back(PROP_ACK_REQUIRED, Value::BitString(3, {0}));
        SetRecipients({ALWAYS});
        Add(EVENTS);
    }
    ObjectConfig& Add(BACSTAC_OBJECT_ID id) {
        ObjectConfig object;
        object.Id = id;
        return m_config.Objects.emplace_back(std::move(object));
    }
    void SetRecipients(const std::vector<std::string>& destinations) {
        std::vector<Value> list;
        for (const std::string& destination : destinations)
            list.push_back(Encoded(destination));
        m_config.Objects[0].Properties.emplace_back(PROP_RECIPIENT_LIST, Value::List(list));
    }
    // An analog input with limits 5 and 60, deadband 1 and 10 seconds' delay.
    ObjectConfig& AddInput() {
        ObjectConfig& input = Add(INPUT);
        input.Name = "Supply";
        input.IntrinsicReporting = true;
        return input;
    }
    Device& Dut() {
        if (m_device == nullptr)
            m_device = std::make_unique<Device>(m_config, [this] { return m_now; });
        return *m_device;
    }
    std::uint32_t State(BACSTAC_OBJECT_ID id = INPUT) {
        std::uint32_t state = 99;
        bacnet::Reader(Dut().GetProperty(id, PROP_EVENT_STATE)->Wire()).Enumerated(state);
        return state;
    }
    std::uint32_t StateAfter(unsigned seconds, BACSTAC_OBJECT_ID id = INPUT) {
        m_now += seconds * HUNDREDTHS_PER_SECOND;
        Dut().Run();
        return State(id);
    }
    void SetValue(const Value& value, BACSTAC_OBJECT_ID id = INPUT) {
        Dut().SetProperty(id, PROP_PRESENT_VALUE, value);
    }
    // "type from>to" of each notification in the event log.
    std::vector<std::string> Log() {
        std::vector<std::string> lines;
        for (const LogRecord& record : Dut().Records(EVENTS)) {
            const Octets octets(record.Data[0].Any.begin(), record.Data[0].Any.end());
            bacnet::Reader in(octets);
            std::array<std::uint32_t, 12> numbers{};
            bacnet::Tag tag;
            while (in.PeekTag(tag) && tag.Number < 12)
                if (tag.Kind == bacnet::TagKind::opening || tag.Number == 1 || tag.Number == 2 || tag.Number == 7)
                    in.Skip();
                else
                    in.Unsigned(numbers[tag.Number], tag.Number);
            lines.push_back(std::to_string(numbers[6]) + " " + std::to_string(numbers[10]) + ">" +
                            std::to_string(numbers[11]));
        }
        return lines;
    }

    LocalTime m_now = START;
    DeviceConfig m_config;
    std::unique_ptr<Device> m_device;
};

// ---- objects that report by themselves

TEST_F(Events, AnInputReportsAValueThatStaysOutOfItsLimits) {
    AddInput();
    SetValue(Value::Real(61));
    EXPECT_EQ(State(), EVENT_NORMAL);
    EXPECT_EQ(StateAfter(9), EVENT_NORMAL);
    EXPECT_EQ(StateAfter(1), EVENT_HIGH_LIMIT);
    EXPECT_EQ(Dut().GetProperty(INPUT, PROP_STATUS_FLAGS), Value::BitString(4, {0}));
    EXPECT_EQ(Dut().GetProperty(INPUT, PROP_ACKED_TRANSITIONS), Value::BitString(3, {1, 2}));
    SetValue(Value::Real(59.5F)); // within the deadband
    EXPECT_EQ(StateAfter(100), EVENT_HIGH_LIMIT);
    SetValue(Value::Real(58));
    EXPECT_EQ(StateAfter(10), EVENT_NORMAL);
    SetValue(Value::Real(4));
    EXPECT_EQ(StateAfter(10), EVENT_LOW_LIMIT);
    EXPECT_EQ(Log(), (std::vector<std::string>{"5 0>3", "5 3>0", "5 0>4"}));
}

TEST_F(Events, AValueThatComesBackInTimeIsNotReported) {
    AddInput();
    SetValue(Value::Real(61));
    EXPECT_EQ(StateAfter(9), EVENT_NORMAL);
    SetValue(Value::Real(50));
    EXPECT_EQ(StateAfter(1), EVENT_NORMAL);
    SetValue(Value::Real(61));
    EXPECT_EQ(StateAfter(9), EVENT_NORMAL); // the delay starts anew
    SetValue(Value::Real(62));
    EXPECT_EQ(StateAfter(1), EVENT_HIGH_LIMIT); // and goes on while the value stays out
    EXPECT_EQ(Log().size(), 1U);
}

TEST_F(Events, ALimitThatIsNotEnabledIsNone) {
    AddInput().Properties.emplace_back(PROP_LIMIT_ENABLE, Value::BitString(2, {0})); // the low one
    SetValue(Value::Real(61));
    EXPECT_EQ(StateAfter(100), EVENT_NORMAL);
    SetValue(Value::Real(1));
    EXPECT_EQ(StateAfter(100), EVENT_LOW_LIMIT);
}

TEST_F(Events, ALimitThatIsWrittenIsLookedAtOnce) {
    AddInput().Properties.emplace_back(PROP_TIME_DELAY, Value::Unsigned(0));
    EXPECT_EQ(State(), EVENT_NORMAL);
    const Value limit = Value::Real(15);
    {
        const auto lock = Dut().Lock();
        EXPECT_TRUE(Dut().Write(INPUT, {PROP_HIGH_LIMIT, WHOLE, limit.Wire(), PRIORITIES}).Ok());
    }
    EXPECT_EQ(State(), EVENT_HIGH_LIMIT);
}

TEST_F(Events, TheWayBackMayHaveADelayOfItsOwn) {
    ObjectConfig& input = AddInput();
    input.Properties.emplace_back(PROP_TIME_DELAY, Value::Unsigned(0));
    input.Properties.emplace_back(PROP_TIME_DELAY_NORMAL, Value::Unsigned(30));
    SetValue(Value::Real(61));
    EXPECT_EQ(State(), EVENT_HIGH_LIMIT);
    SetValue(Value::Real(20));
    EXPECT_EQ(StateAfter(29), EVENT_HIGH_LIMIT);
    EXPECT_EQ(StateAfter(1), EVENT_NORMAL);
}

TEST_F(Events, AFaultComesFirstAndAtOnce) {
    AddInput();
    Dut().SetProperty(INPUT, PROP_RELIABILITY, Value::Enumerated(1)); // no sensor
    EXPECT_EQ(State(), EVENT_FAULT);
    SetValue(Value::Real(61));
    EXPECT_EQ(StateAfter(100), EVENT_FAULT);
    Dut().SetProperty(INPUT, PROP_RELIABILITY, Value::Enumerated(0));
    EXPECT_EQ(State(), EVENT_NORMAL);
    EXPECT_EQ(StateAfter(10), EVENT_HIGH_LIMIT);
    EXPECT_EQ(Log(), (std::vector<std::string>{"19 0>1", "19 1>0", "5 0>3"}));
}

TEST_F(Events, AnOldDeviceTellsFaultsByItsOwnType) {
    m_config.ProtocolRevision = 12;
    AddInput();
    Dut().SetProperty(INPUT, PROP_RELIABILITY, Value::Enumerated(1));
    EXPECT_EQ(Log(), (std::vector<std::string>{"5 0>1"}));
}

TEST_F(Events, WithoutDetectionNothingIsAnEvent) {
    ObjectConfig& input = AddInput();
    input.Properties.emplace_back(PROP_TIME_DELAY, Value::Unsigned(0));
    input.Properties.emplace_back(PROP_EVENT_DETECTION_ENABLE, Value::Boolean(true));
    SetValue(Value::Real(61));
    EXPECT_EQ(State(), EVENT_HIGH_LIMIT);
    Dut().SetProperty(INPUT, PROP_EVENT_DETECTION_ENABLE, Value::Boolean(false));
    EXPECT_EQ(State(), EVENT_NORMAL);
    EXPECT_EQ(Log().size(), 1U);
}

TEST_F(Events, ABinaryInputReportsItsAlarmValue) {
    const BACSTAC_OBJECT_ID id{OBJ_BINARY_INPUT, 2}; // starts inactive
    Add(id).IntrinsicReporting = true;
    SetValue(Value::Enumerated(1), id);
    EXPECT_EQ(StateAfter(10, id), EVENT_OFFNORMAL);
    SetValue(Value::Enumerated(0), id);
    EXPECT_EQ(StateAfter(10, id), EVENT_NORMAL);
    EXPECT_EQ(Log(), (std::vector<std::string>{"1 0>2", "1 2>0"}));
}

TEST_F(Events, AMultiStateValueReportsItsAlarmValues) {
    const BACSTAC_OBJECT_ID id{OBJ_MULTI_STATE_VALUE, 1};
    ObjectConfig& object = Add(id);
    object.IntrinsicReporting = true;
    const Value alarms[] = {Value::Unsigned(3), Value::Unsigned(4)};
    object.Properties.emplace_back(PROP_ALARM_VALUES, Value::List(alarms));
    SetValue(Value::Unsigned(3), id);
    EXPECT_EQ(StateAfter(10, id), EVENT_OFFNORMAL);
    SetValue(Value::Unsigned(4), id); // another alarm
    EXPECT_EQ(StateAfter(10, id), EVENT_OFFNORMAL);
    SetValue(Value::Unsigned(1), id);
    EXPECT_EQ(StateAfter(10, id), EVENT_NORMAL);
    EXPECT_EQ(Log(), (std::vector<std::string>{"1 0>2", "1 2>2", "1 2>0"}));
}

TEST_F(Events, AnOutputReportsThatItsCommandFails) {
    const BACSTAC_OBJECT_ID id{OBJ_BINARY_OUTPUT, 2};
    Add(id).IntrinsicReporting = true;
    const Value active = Value::Enumerated(1);
    {
        const auto lock = Dut().Lock();
        EXPECT_TRUE(Dut().Write(id, {PROP_PRESENT_VALUE, WHOLE, active.Wire(), 8}).Ok());
    }
    EXPECT_EQ(StateAfter(10, id), EVENT_OFFNORMAL);
    Dut().SetProperty(id, PROP_FEEDBACK_VALUE, active);
    EXPECT_EQ(StateAfter(10, id), EVENT_NORMAL);
    EXPECT_EQ(Log(), (std::vector<std::string>{"3 0>2", "3 2>0"}));
}

TEST_F(Events, AStateThatWasSetStaysUntilSomethingChanges) {
    AddInput().Event = EventConfig{EVENT_HIGH_LIMIT, false, 1, 0};
    EXPECT_EQ(StateAfter(100), EVENT_HIGH_LIMIT);
    SetValue(Value::Real(30));
    EXPECT_EQ(StateAfter(10), EVENT_NORMAL);
    EXPECT_TRUE(Dut().RaiseEvent(INPUT, EVENT_LOW_LIMIT));
    EXPECT_EQ(StateAfter(100), EVENT_LOW_LIMIT);
}

// ---- what recipients are told

class Notifications : public Events {
protected:
    void SetUp() override {
        Events::SetUp();
        AddInput().Properties.emplace_back(PROP_TIME_DELAY, Value::Unsigned(0));
    }
    std::vector<std::string> Told() {
        std::vector<std::string> all;
        for (const Message& message : Dut().TakeMessages())
            all.push_back(ToHex(std::span(reinterpret_cast<const std::uint8_t*>(message.Parameters.data()),
                                          message.Parameters.size())));
        return all;
    }
};

TEST_F(Notifications, AreEncodedWhole) {
    SetValue(Value::Real(61));
    const auto messages = Dut().TakeMessages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].To.Choice, 0U);
    EXPECT_EQ(messages[0].To.Device, (BACSTAC_OBJECT_ID{OBJ_DEVICE, 77}));
    EXPECT_FALSE(messages[0].Confirmed);
    EXPECT_EQ(messages[0].Service, 3); // UnconfirmedEventNotification
    const Octets octets(messages[0].Parameters.begin(), messages[0].Parameters.end());
    EXPECT_EQ(ToHex(octets),
              "09 05 1C 02 00 00 07 2C 00 00 00 01 "                            // process, device, object
              "3E 2E A4 7E 0B 10 01 B4 06 00 00 00 2F 3F "                      // time stamp
              "49 01 59 0A 69 05 "                                              // class, priority, out-of-range
              "7D 13 00 53 75 70 70 6C 79 3A 20 68 69 67 68 2D 6C 69 6D 69 74 " // "Supply: high-limit"
              "89 00 99 01 A9 00 B9 03 " // alarm, wants acknowledgement, from, to
              "CE 5E 0C 42 74 00 00 1A 04 80 2C 3F 80 00 00 3C 42 70 00 00 5F CF");
    EXPECT_EQ(Dut().Records(EVENTS).size(), 1U);
    EXPECT_FALSE(Dut().HasMessages());
}

TEST_F(Notifications, AreSentOnlyOfEnabledTransitions) {
    Dut().SetProperty(INPUT, PROP_EVENT_ENABLE, Value::BitString(3, {2})); // to normal
    SetValue(Value::Real(61));
    EXPECT_EQ(Told().size(), 0U);
    EXPECT_EQ(State(), EVENT_HIGH_LIMIT);
    SetValue(Value::Real(30));
    EXPECT_EQ(Told().size(), 1U);
}

TEST_F(Notifications, GoToRecipientsOfTheDayTheTimeAndTheTransition) {
    const std::string days[] = {"82 01 FE", "82 01 80", "82 01 7E"}; // all, Mondays, all but Mondays
    const std::string rest = " 0C 02 00 00 4D 21 0";
    SetRecipients({days[0] + " B4 05 00 00 00 B4 06 00 00 00" + rest + "1 10 82 05 E0",   // until now
                   days[0] + " B4 06 00 00 01 B4 17 3B 3B 63" + rest + "2 10 82 05 E0",   // soon
                   days[1] + " B4 FF FF FF FF B4 FF FF FF FF" + rest + "3 11 82 05 E0",   // today, confirmed
                   days[2] + " B4 00 00 00 00 B4 17 3B 3B 63" + rest + "4 10 82 05 E0",   // not today
                   days[0] + " B4 00 00 00 00 B4 17 3B 3B 63" + rest + "5 10 82 05 60"}); // not to offnormal
    m_config.Objects[0].Properties.erase(m_config.Objects[0].Properties.begin() + 2);
    SetValue(Value::Real(61));
    const auto messages = Dut().TakeMessages();
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0].Parameters[1], 1);
    EXPECT_EQ(messages[1].Parameters[1], 3);
    EXPECT_TRUE(messages[1].Confirmed);
    EXPECT_EQ(messages[1].Service, 2); // ConfirmedEventNotification
    SetValue(Value::Real(30));
    EXPECT_EQ(Dut().TakeMessages().size(), 3U);
}

TEST_F(Notifications, OfAnAcknowledgementHaveNoValues) {
    SetValue(Value::Real(61));
    Told();
    EXPECT_TRUE(Dut().AcknowledgeEvent(INPUT, Transition::toOffnormal, "me"));
    EXPECT_EQ(Dut().GetProperty(INPUT, PROP_ACKED_TRANSITIONS), Value::BitString(3, {0, 1, 2}));
    EXPECT_EQ(Told(), (std::vector<std::string>{
                          "09 05 1C 02 00 00 07 2C 00 00 00 01 3E 2E A4 7E 0B 10 01 B4 06 00 00 00 2F 3F 49 01 59 0A "
                          "69 05 7D 13 00 61 63 6B 6E 6F 77 6C 65 64 67 65 64 20 62 79 20 6D 65 89 02 B9 03"}));
}

TEST_F(Notifications, HaveTheTextThatTheObjectGives) {
    const Value given[] = {Value::String("too hot"), Value::String(""), Value::String("")};
    const Value told[] = {Value::String(""), Value::String(""), Value::String("")};
    Dut().SetProperty(INPUT, PROP_EVENT_MESSAGE_TEXTS_CONFIG, Value::Array(given));
    Dut().SetProperty(INPUT, PROP_EVENT_MESSAGE_TEXTS, Value::Array(told));
    SetValue(Value::Real(61));
    EXPECT_NE(Told().at(0).find("00 74 6F 6F 20 68 6F 74"), std::string::npos);
    EXPECT_EQ(TextIn(Dut().GetProperty(INPUT, PROP_EVENT_MESSAGE_TEXTS)->Element(0)), "too hot");
    SetValue(Value::Real(30));
    EXPECT_EQ(TextIn(Dut().GetProperty(INPUT, PROP_EVENT_MESSAGE_TEXTS)->Element(2)), "Supply: normal");
}

TEST_F(Notifications, ThatNobodyTakesAreKeptUpToALimit) {
    for (unsigned i = 0; i < 600; ++i) {
        SetValue(Value::Real(61));
        SetValue(Value::Real(30));
    }
    EXPECT_EQ(Told().size(), 1000U);
}

// ---- event enrollments

class Enrollment : public Events {
protected:
    void Enroll(const std::string& reference, const std::string& parameters) {
        ObjectConfig& enrollment = Add(ENROLLMENT);
        enrollment.Properties.emplace_back(PROP_OBJECT_PROPERTY_REFERENCE, Encoded(reference));
        enrollment.Properties.emplace_back(PROP_EVENT_PARAMETERS, Encoded(parameters));
    }
    std::string LastValues() {
        const std::string octets = Dut().Records(EVENTS).back().Data[0].Any;
        const std::string hex = ToHex(std::span(reinterpret_cast<const std::uint8_t*>(octets.data()), octets.size()));
        const std::size_t at = hex.find(" CE ");
        return at == std::string::npos ? "none" : hex.substr(at + 4, hex.size() - at - 7);
    }
};

class EnrollmentBy : public Enrollment, public ::testing::WithParamInterface<Algorithm> {};

TEST_P(EnrollmentBy, FollowsTheValue) {
    const Algorithm& algorithm = GetParam();
    ObjectConfig& source = Add(SOURCE);
    source.Properties.emplace_back(PROP_PRESENT_VALUE, algorithm.Steps[0].Present);
    Add(OTHER).Properties.emplace_back(PROP_PRESENT_VALUE, Value::Real(20));
    Enroll("0C 00 80 00 01 19 55", algorithm.Parameters);
    m_config.Objects.back().Properties.emplace_back(PROP_EVENT_TYPE, Value::Enumerated(algorithm.Type));
    std::vector<std::string> expected;
    std::uint32_t state = EVENT_NORMAL;
    for (const Step& step : algorithm.Steps) {
        SetValue(step.Present, SOURCE);
        EXPECT_EQ(State(ENROLLMENT), step.State) << expected.size();
        if (step.State != state) {
            expected.push_back(std::to_string(algorithm.Type) + " " + std::to_string(state) + ">" +
                               std::to_string(step.State));
            if (expected.size() == 1) {
                EXPECT_EQ(LastValues(), algorithm.Values);
            }
        }
        state = step.State;
    }
    EXPECT_EQ(Log(), expected);
}

INSTANTIATE_TEST_SUITE_P(All, EnrollmentBy, ::testing::ValuesIn(Algorithms()),
                         [](const auto& algorithm) { return std::string(algorithm.param.Name); });

TEST_F(Enrollment, ByChangeOfValueIsAlwaysNormalAndReportsEachStep) {
    Add(SOURCE).Properties.emplace_back(PROP_PRESENT_VALUE, Value::Real(20));
    Enroll("0C 00 80 00 01 19 55", "2E 09 00 1E 1C 40 00 00 00 1F 2F"); // by 2
    m_config.Objects.back().Properties.emplace_back(PROP_EVENT_TYPE, Value::Enumerated(2));
    for (const float value : {21.5F, 22.0F, 23.0F, 19.0F})
        SetValue(Value::Real(value), SOURCE);
    EXPECT_EQ(Log(), (std::vector<std::string>{"2 0>0", "2 0>0"}));
    EXPECT_EQ(LastValues(), "2E 0E 1C 41 98 00 00 0F 1A 04 00 2F");
}

TEST_F(Enrollment, ByBufferReadyCountsRecords) {
    Add(TREND);
    Enroll("0C 05 00 00 01 19 83", "AE 09 03 19 00 AF"); // every 3 records
    m_config.Objects.back().Properties.emplace_back(PROP_EVENT_TYPE, Value::Enumerated(10));
    for (unsigned i = 0; i < 7; ++i)
        Dut().Append(TREND, {START, {LogDatum::Real(1)}, {}});
    EXPECT_EQ(Log(), (std::vector<std::string>{"10 0>0", "10 0>0"}));
    EXPECT_EQ(LastValues(), "AE 0E 0C 05 00 00 01 19 83 0F 19 03 29 06 AF");
}

TEST_F(Enrollment, OfTypeNoneReportsNothing) {
    Add(SOURCE);
    Enroll("0C 00 80 00 01 19 55", "F8 14");
    SetValue(Value::Real(1000), SOURCE);
    EXPECT_TRUE(Log().empty());
}

TEST_F(Enrollment, WaitsForItsDelayAndStartsWithWhatItFinds) {
    Add(SOURCE).Properties.emplace_back(PROP_PRESENT_VALUE, Value::Real(50));
    Enroll("0C 00 80 00 01 19 55", "5E 09 05 1C 41 20 00 00 2C 41 F0 00 00 3C 40 00 00 00 5F"); // 5 seconds
    EXPECT_EQ(State(ENROLLMENT), EVENT_NORMAL);
    EXPECT_EQ(StateAfter(4, ENROLLMENT), EVENT_NORMAL);
    EXPECT_EQ(StateAfter(1, ENROLLMENT), EVENT_HIGH_LIMIT);
}

TEST_F(Enrollment, TakesItsTypeFromWrittenParameters) {
    Add(SOURCE).Properties.emplace_back(PROP_PRESENT_VALUE, Value::Real(20));
    Enroll("0C 00 80 00 01 19 55", "F8 14");
    const Value parameters = Encoded("5E 09 00 1C 41 20 00 00 2C 41 70 00 00 3C 40 00 00 00 5F"); // 10 to 15
    {
        const auto lock = Dut().Lock();
        EXPECT_TRUE(Dut().Write(ENROLLMENT, {PROP_EVENT_PARAMETERS, WHOLE, parameters.Wire(), PRIORITIES}).Ok());
    }
    EXPECT_EQ(Dut().GetProperty(ENROLLMENT, PROP_EVENT_TYPE), Value::Enumerated(5));
    EXPECT_EQ(State(ENROLLMENT), EVENT_HIGH_LIMIT);
}

TEST_F(Enrollment, OfWhatIsNotThereStaysAsItIs) {
    Enroll("0C 00 80 00 63 19 55", "5E 09 00 1C 41 20 00 00 2C 41 F0 00 00 3C 40 00 00 00 5F");
    EXPECT_EQ(StateAfter(100, ENROLLMENT), EVENT_NORMAL);
    Dut().RemoveObject(ENROLLMENT);
    EXPECT_FALSE(Dut().GetProperty(ENROLLMENT, PROP_EVENT_STATE));
}

TEST_F(Enrollment, OfEnrollmentsThatWatchEachOtherComesToAnEnd) {
    // Each is offnormal while the other is normal: they never come to rest.
    Enroll("0C 02 40 00 02 19 24", "1E 09 00 1E 89 00 1F 1F");
    ObjectConfig second = m_config.Objects.back();
    second.Id.Instance = 2;
    second.Properties[0].second = Encoded("0C 02 40 00 01 19 24");
    second.Properties[1].second = Encoded("1E 09 00 1E 89 02 1F 1F");
    m_config.Objects.push_back(second);
    EXPECT_FALSE(Dut().Records(EVENTS).empty());
}

} // namespace
} // namespace sim::testing
