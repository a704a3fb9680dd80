// Printing of whole values by the type table.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/schema/TypeTable.h"
#include "tests/unit/stack/codec/Hex.h"
#include "tests/unit/stack/text/Printing.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint32_t WHOLE = 0xFFFFFFFFU;

Contents Numbers(std::initializer_list<std::uint32_t> numbers, BACSTAC_DATA_TYPE type = TYPE_UNSIGNED) {
    Contents contents(type, static_cast<std::uint32_t>(numbers.size()));
    for (const std::uint32_t number : numbers)
        contents.Add(number);
    return contents;
}

Contents Texts(std::initializer_list<const char*> texts) {
    Contents contents(TYPE_STRING, static_cast<std::uint32_t>(texts.size()));
    for (const char* text : texts)
        contents.AddText(text);
    return contents;
}

} // namespace

TEST(PrintContents, OfPrimitives) {
    EXPECT_EQ(TextOf(TYPE_NULL, std::uint8_t{0}), "null");
    EXPECT_EQ(TextOf(TYPE_BOOLEAN, std::uint8_t{1}), "true");
    EXPECT_EQ(TextOf(TYPE_UNSIGNED, 4294967295U), "4294967295");
    EXPECT_EQ(TextOf(TYPE_SIGNED, std::int32_t{-7}), "-7");
    EXPECT_EQ(TextOf(TYPE_REAL, 0.1F), "0.1");
    EXPECT_EQ(TextOf(TYPE_DOUBLE, 123456789.125), "123456789.125");
    EXPECT_EQ(TextOf(TYPE_DOUBLE, 16777216.0), "16777216");
    EXPECT_EQ(TextOf(TYPE_ENUMERATED, 7U), "7");
    EXPECT_EQ(TextOf(TYPE_BIT_STRING, Bits({false, true})), "{bit-1}");
    EXPECT_EQ(TextOf(TYPE_DATE, Date(2026, 11, 21)), "21/11/2026");
    EXPECT_EQ(TextOf(TYPE_TIME, BACSTAC_TIME{1, 2, 3, 4}), "01:02:03.04");
    EXPECT_EQ(TextOf(TYPE_OBJECT_ID, BACSTAC_OBJECT_ID{20, 1}), "(trend-log, 1)");
    EXPECT_EQ(Texts({"Zone 1"}).Text(), "Zone 1");
    EXPECT_EQ(Texts({""}).Text(), "");
}

TEST(PrintContents, OfOctetStrings) {
    struct {
        std::uint32_t Length;
        std::uint8_t Octets[4];
    } three{3, {0x0A, 0xB1, 0xFF, 0}}, none{0, {}};
    EXPECT_EQ(TextOf(TYPE_OCTET_STRING, three), "0AB1FF");
    EXPECT_EQ(TextOf(TYPE_OCTET_STRING, none), "");
    three.Length = 1000; // more than the buffer has
    EXPECT_EQ(TextOf(TYPE_OCTET_STRING, three), "?");
    three.Length = 0xFFFFFFFFU;
    EXPECT_EQ(TextOf(TYPE_OCTET_STRING, three), "?");
}

TEST(PrintContents, NamesWhatThePropertyNames) {
    EXPECT_EQ(Numbers({1}, TYPE_ENUMERATED).Text(OBJ_BINARY_INPUT, PROP_PRESENT_VALUE), "active");
    EXPECT_EQ(Numbers({62}, TYPE_ENUMERATED).Text(OBJ_ANALOG_INPUT, 117), "degrees-celsius");
    EXPECT_EQ(Numbers({300}, TYPE_ENUMERATED).Text(OBJ_ANALOG_INPUT, 117), "300");
    EXPECT_EQ(Numbers({8}, TYPE_ENUMERATED).Text(OBJ_DEVICE, PROP_OBJECT_TYPE), "device");
    EXPECT_EQ(Numbers({75, 77, 600}, TYPE_ENUMERATED).Text(OBJ_DEVICE, 371), "{object-identifier, object-name, 600}");
    Contents flags(TYPE_BIT_STRING, 1);
    flags.Add(Bits({false, true, false, false}));
    EXPECT_EQ(flags.Text(OBJ_ANALOG_INPUT, PROP_STATUS_FLAGS), "{fault}");
    EXPECT_EQ(flags.Text(), "{bit-1}");
}

TEST(PrintContents, TakesTheSizeOfAnArrayForANumber) {
    EXPECT_EQ(Numbers({3}).Text(OBJ_DEVICE, 371, 0), "3");
    EXPECT_EQ(Numbers({3}, TYPE_ENUMERATED).Text(OBJ_BINARY_INPUT, PROP_PRESENT_VALUE, 0), "3");
}

TEST(PrintContents, PutsSeveralElementsInBraces) {
    EXPECT_EQ(Numbers({1, 2, 3}).Text(), "{1, 2, 3}");
    EXPECT_EQ(Numbers({1}).Text(), "1");
    EXPECT_EQ(Numbers({}).Text(), "{}");
    EXPECT_EQ(Texts({"Off", "", "On"}).Text(OBJ_MULTI_STATE_INPUT, 110), "{Off, , On}");
}

TEST(PrintContents, WithoutADecodedValueIsNothing) {
    char buffer[8] = "#######";
    for (const BACSTAC_DATA_TYPE type : {TYPE_NONE, TYPE_ANY_PRIMITIVE, TYPE_RAW, 999}) {
        const BACSTAC_PROPERTY_CONTENTS contents{type, nullptr, 0, 0};
        EXPECT_EQ(CBacGeneral::PrintContents(buffer, sizeof buffer, contents, OBJ_NO_TYPE, PROP_NO_PROPERTY, -1), 0);
        EXPECT_STREQ(buffer, "");
    }
}

TEST(PrintContents, SaysWhereElementsLieOutsideTheBuffer) {
    Contents contents = Numbers({1, 2});
    BACSTAC_PROPERTY_CONTENTS all = contents.Get();
    all.ElementCount = 4000000000U;
    EXPECT_EQ(Printed([&](char* b, unsigned n) { return CBacGeneral::PrintContents(b, n, all, 0, 85, -1); }),
              "{1, 2, ?}");
    all = {TYPE_UNSIGNED, all.Buffer, 3, 1};
    EXPECT_EQ(Printed([&](char* b, unsigned n) { return CBacGeneral::PrintContents(b, n, all, 0, 85, -1); }), "?");
    const char unterminated[] = {'a', 'b'};
    Contents text(TYPE_STRING, 1);
    text.Add(unterminated);
    EXPECT_EQ(text.Text(), "?");
}

TEST(PrintContents, TakesForeignTextForWindowsText) {
    EXPECT_EQ(Texts({"Gr\xFC\xDF"
                     "e \x80"})
                  .Text(),
              "Gr\xC3\xBC\xC3\x9F"
              "e \xE2\x82\xAC");
    EXPECT_EQ(Texts({"Gr\xC3\xBC\xC3\x9F"
                     "e"})
                  .Text(),
              "Gr\xC3\xBC\xC3\x9F"
              "e");
}

TEST(PrintContents, OfPriorityArrays) {
    Contents contents(TYPE_ANY, 3);
    contents.Add(BACSTAC_ANY_VALUE{TYPE_NULL, 0, 1, 1});
    contents.Add(BACSTAC_ANY_VALUE{TYPE_ENUMERATED, 48, 4, 1});
    contents.Add(BACSTAC_ANY_VALUE{TYPE_NONE, 0, 0, 0});
    contents.Add(std::uint32_t{1});
    EXPECT_EQ(contents.Text(OBJ_BINARY_OUTPUT, 87), "{null, active, ?}");
    EXPECT_EQ(contents.Text(OBJ_ANALOG_OUTPUT, 87), "{null, 1, ?}");
}

TEST(PrintContents, OfReferences) {
    const BACSTAC_OBJECT_ID input{0, 5};
    EXPECT_EQ(TextOf(TYPE_PROPERTY_REF, BACSTAC_PROPERTY_REF{85, 2}), "present-value[2]");
    EXPECT_EQ(TextOf(TYPE_OBJ_PROP_REF, BACSTAC_OBJ_PROP_REF{input, 85, WHOLE}), "(analog-input, 5, present-value)");
    EXPECT_EQ(TextOf(TYPE_DEV_OBJ_REF, BACSTAC_DEV_OBJ_REF{input, 1, {8, 9}}), "(device, 9, analog-input, 5)");
    EXPECT_EQ(TextOf(TYPE_DEV_OBJ_REF, BACSTAC_DEV_OBJ_REF{input, 0, {8, 0}}), "(analog-input, 5)");
    EXPECT_EQ(TextOf(TYPE_SETPOINT_REF, BACSTAC_SETPOINT_REF{0, {}}), "none");
    EXPECT_EQ(TextOf(TYPE_SETPOINT_REF, BACSTAC_SETPOINT_REF{1, {input, 85, WHOLE}}),
              "(analog-input, 5, present-value)");
    BACSTAC_ADDRESS_BINDING binding{{8, 3}, {}};
    binding.Address.MacLength = 1;
    binding.Address.Mac[0] = 4;
    binding.Address.Network = 5;
    EXPECT_EQ(TextOf(TYPE_ADDRESS_BINDING, binding), "(device, 3, 5/4)");
}

TEST(PrintContents, OfSmallConstructedTypes) {
    EXPECT_EQ(TextOf(TYPE_PRESCALE, BACSTAC_PRESCALE{2, 10}), "{multiplier=2, modulo-divide=10}");
    BACSTAC_SCALE scale{3, {}};
    scale.Signed = -2;
    EXPECT_EQ(TextOf(TYPE_SCALE, scale), "-2");
    scale.Choice = 4;
    scale.Real = 0.01F;
    EXPECT_EQ(TextOf(TYPE_SCALE, scale), "0.01");
    BACSTAC_SHED_LEVEL level{0, {}};
    level.Percent = 80;
    EXPECT_EQ(TextOf(TYPE_SHED_LEVEL, level), "percent=80");
    level.Choice = 2;
    level.Amount = 1.5F;
    EXPECT_EQ(TextOf(TYPE_SHED_LEVEL, level), "amount=1.5");
    EXPECT_EQ(TextOf(TYPE_CLIENT_COV, BACSTAC_CLIENT_COV{0, 0}), "default-increment");
    EXPECT_EQ(TextOf(TYPE_CLIENT_COV, BACSTAC_CLIENT_COV{4, 0.5F}), "0.5");
    EXPECT_EQ(TextOf(TYPE_ERROR, BACSTAC_ERROR_VALUE{2, 32}), "(property, unknown-property)");
    BACSTAC_TIME_STAMP stamp{};
    stamp.Time = {1, 2, 3, 4};
    EXPECT_EQ(TextOf(TYPE_TIME_STAMP, stamp), "01:02:03.04");
    stamp.Choice = 2;
    stamp.DateTime = {Date(2026, 1, 2), {3, 4, 5, 6}};
    EXPECT_EQ(TextOf(TYPE_TIME_STAMP, stamp), "(02/01/2026, 03:04:05.06)");
}

TEST(PrintContents, OfPropertyStates) {
    BACSTAC_PROPERTY_STATE state{1, {}};
    state.Value = 1;
    EXPECT_EQ(TextOf(TYPE_PROPERTY_STATE, state), "active");
    state.Type = 10;
    EXPECT_EQ(TextOf(TYPE_PROPERTY_STATE, state), "square-feet");
    state.Type = 11;
    EXPECT_EQ(TextOf(TYPE_PROPERTY_STATE, state), "1");
    state.Type = 41;
    state.Signed = -3;
    EXPECT_EQ(TextOf(TYPE_PROPERTY_STATE, state), "-3");
    state.Type = 200;
    state.Value = 9;
    EXPECT_EQ(TextOf(TYPE_PROPERTY_STATE, state), "200=9");
}

TEST(PrintContents, LeavesOutWhatIsAbsent) {
    BACSTAC_COV_SUBSCRIPTION subscription{};
    subscription.Recipient = {{0, {{8, 1}}}, 7};
    subscription.Monitored = {{0, 5}, 85, WHOLE};
    subscription.Confirmed = 1;
    subscription.TimeRemaining = 60;
    const std::string without = "{recipient={recipient=(device, 1), process-identifier=7}, "
                                "monitored-property=(analog-input, 5, present-value), "
                                "issue-confirmed-notifications=true, time-remaining=60";
    EXPECT_EQ(TextOf(TYPE_COV_SUBSCRIPTION, subscription), without + "}");
    subscription.Mask = BACSTAC_COV_INCREMENT;
    subscription.Increment = 0.5F;
    EXPECT_EQ(TextOf(TYPE_COV_SUBSCRIPTION, subscription), without + ", cov-increment=0.5}");
}

TEST(PrintContents, OfDestinations) {
    BACSTAC_DESTINATION destination{};
    destination.ValidDays = Bits({true, false, false, false, false, false, true});
    destination.To = {23, 59, 59, 99};
    destination.Recipient.Device = {8, 42};
    destination.ProcessId = 1;
    destination.Transitions = Bits({true, true, true});
    EXPECT_EQ(TextOf(TYPE_DESTINATION, destination),
              "{valid-days={monday, sunday}, from-time=00:00:00.00, to-time=23:59:59.99, recipient=(device, 42), "
              "process-identifier=1, issue-confirmed-notifications=false, "
              "transitions={to-offnormal, to-fault, to-normal}}");
}

TEST(PrintContents, OfSchedules) {
    Contents contents(TYPE_DAILY_SCHEDULE, 2);
    const std::uint32_t monday = contents.Add(BACSTAC_DAILY_SCHEDULE{});
    contents.Add(BACSTAC_DAILY_SCHEDULE{});
    const std::uint32_t values = contents.Add(BACSTAC_TIME_VALUE{});
    contents.Add(BACSTAC_TIME_VALUE{{17, 0, 0, 0}, {TYPE_NULL, 0, 1, 1}});
    const std::uint32_t real = contents.Add(21.5F);
    contents.Replace(values, BACSTAC_TIME_VALUE{{8, 0, 0, 0}, {TYPE_REAL, real, 4, 1}});
    contents.Replace(monday, BACSTAC_DAILY_SCHEDULE{{2, values}});
    EXPECT_EQ(contents.Text(17, 123), "{{(08:00:00.00, 21.5), (17:00:00.00, null)}, {}}");
}

TEST(PrintContents, OfSpecialEvents) {
    Contents contents(TYPE_SPECIAL_EVENT, 1);
    BACSTAC_SPECIAL_EVENT event{};
    event.Period = BACSTAC_PERIOD_REFERENCE;
    event.Calendar = {OBJ_CALENDAR, 1};
    event.Priority = 16;
    contents.Add(event);
    EXPECT_EQ(contents.Text(), "{period=(calendar, 1), list-of-time-values={}, event-priority=16}");
}

TEST(PrintContents, OfEventParameters) {
    Contents contents(TYPE_EVENT_PARAMETER, 1);
    const std::uint32_t record = contents.Add(BACSTAC_EVENT_PARAMETER{});
    const std::uint32_t range = contents.Add(BACSTAC_EP_OUT_OF_RANGE{30, -5, 40.5F, 1});
    contents.Replace(record, BACSTAC_EVENT_PARAMETER{5, {1005, range, sizeof(BACSTAC_EP_OUT_OF_RANGE), 1}});
    EXPECT_EQ(contents.Text(9, 83), "out-of-range={time-delay=30, low-limit=-5, high-limit=40.5, deadband=1}");
    contents.Replace(record, BACSTAC_EVENT_PARAMETER{6, {TYPE_RAW, range, 4, 4}});
    EXPECT_EQ(contents.Text(9, 83), "complex-event-type=1E000000"); // octets, here those of the time delay of 30

    Contents states(TYPE_EVENT_PARAMETER, 1);
    const std::uint32_t first = states.Add(BACSTAC_EVENT_PARAMETER{});
    const std::uint32_t change = states.Add(BACSTAC_EP_CHANGE_OF_STATE{});
    BACSTAC_PROPERTY_STATE state{1, {}};
    state.Value = 1;
    const std::uint32_t values = states.Add(state);
    states.Replace(change, BACSTAC_EP_CHANGE_OF_STATE{10, {1, values}});
    states.Replace(first, BACSTAC_EVENT_PARAMETER{1, {1001, change, sizeof(BACSTAC_EP_CHANGE_OF_STATE), 1}});
    EXPECT_EQ(states.Text(9, 83), "change-of-state={time-delay=10, list-of-values={active}}");
}

TEST(PrintContents, OfLogRecords) {
    BACSTAC_LOG_RECORD record{};
    record.TimeStamp = {Date(2026, 1, 2), {3, 4, 5, 6}};
    record.DatumType = BACSTAC_LOG_REAL;
    record.Value.Real = 21.25F;
    EXPECT_EQ(TextOf(TYPE_LOG_RECORD, record), "{timestamp=(02/01/2026, 03:04:05.06), log-datum=21.25}");
    record.HasStatus = 1;
    record.StatusFlags = Bits({true, false, false, false});
    record.DatumType = BACSTAC_LOG_NULL;
    EXPECT_EQ(TextOf(TYPE_LOG_RECORD, record),
              "{timestamp=(02/01/2026, 03:04:05.06), log-datum=null-value, status-flags={in-alarm}}");
    record.DatumType = 77;
    EXPECT_EQ(TextOf(TYPE_LOG_RECORD, record),
              "{timestamp=(02/01/2026, 03:04:05.06), log-datum=?, status-flags={in-alarm}}");
}

TEST(PrintContents, OfTypesThatComeFromTheTableAlone) {
    constexpr BACSTAC_DATA_TYPE EP = TYPE_EVENT_PARAMETER_FIRST;
    const struct {
        BACSTAC_DATA_TYPE Type;
        const char* Octets;
        const char* Text;
    } values[] = {
        {TYPE_NAME_VALUE, "0B 00 6964", "{name=id, value=none}"},
        {TYPE_NAME_VALUE, "0B 00 6174 A47E030107 B40C050032", "{name=at, value=(01/03/2026, 12:05:00.50)}"},
        {TYPE_VALUE_SOURCE, "08", "none"},
        {TYPE_XY_COLOR, "443E800000 443F000000", "{x-coordinate=0.25, y-coordinate=0.5}"},
        {TYPE_COLOR_COMMAND, "0903 2A0BB8", "{operation=ramp-to-cct, target-color-temperature=3000}"},
        {TYPE_TIMER_STATE_CHANGE, "3E 0901 1C42C80000 3F", "{operation=fade-to, target-level=100}"},
        {TYPE_TIMER_STATE_CHANGE, "1E 0E 2101 0F 1F", "0E21010F"},
        {TYPE_HOST_N_PORT, "0E 1C0A000001 0F 1ABAC0", "{host=0A000001, port=47808}"},
        {TYPE_ASSIGNED_LANDING_CALLS, "0E 0903 1904 0F", "{{floor-number=3, direction=down}}"},
        {TYPE_ACCESS_RULE, "0901 2901 4901", "{time-range-specifier=always, location-specifier=all, enable=true}"},
        {TYPE_FAULT_PARAMETER, "6E 0E 44C2200000 0F 1E 4442C80000 1F 6F",
         "fault-out-of-range={min-normal-value=-40, max-normal-value=100}"},
        {TYPE_EVENT_PARAMETER, "FE16 0905 1E 9101 1F 2E 0C07C00001 1A018B 2F FF16",
         "change-of-timer={time-delay=5, alarm-values={running}, "
         "update-time-reference=(timer, 1, last-state-change)}"},
        {EP + 21, "0905", "5"},
        {TYPE_NOTIFICATION_PARAMETERS, "FE13 0907 1A0440 2E 0955 2E 4442900000 2F 2F FF13",
         "change-of-reliability={reliability=unreliable-other, status-flags={fault}, "
         "property-values={{property=present-value, value=72}}}"},
    };
    for (const auto& value : values) {
        std::array<std::uint8_t, 1024> buffer{};
        BACSTAC_PROPERTY_CONTENTS contents{TYPE_NONE, buffer.data(), buffer.size(), 0};
        ASSERT_EQ(bacnet::DecodeRecords(Hex(value.Octets), value.Type, contents), bacnet::DecodeResult::ok)
            << value.Octets;
        EXPECT_EQ(Printed([&](char* b, unsigned n) {
                      return CBacGeneral::PrintContents(b, n, contents, OBJ_NO_TYPE, PROP_NO_PROPERTY, -1);
                  }),
                  value.Text);
    }
}

TEST(PrintContents, EndsWhereReferencesLeadInACircle) {
    Contents contents(TYPE_ANY, 1);
    contents.Add(BACSTAC_ANY_VALUE{TYPE_ANY, 0, sizeof(BACSTAC_ANY_VALUE), 1});
    EXPECT_EQ(contents.Text(), "?");
    contents.Replace(0, BACSTAC_ANY_VALUE{TYPE_ANY, 0, sizeof(BACSTAC_ANY_VALUE), 1000000});
    EXPECT_FALSE(contents.Text().empty());
}

TEST(PrintContents, OfEveryTypeCopesWithRubbishInCutAndUnalignedBuffers) {
    for (const bacnet::TypeInfo& type : bacnet::AllTypes()) {
        for (const int filling : {0x00, 0xFF, 0x01}) {
            std::vector<std::uint8_t> bytes(513, static_cast<std::uint8_t>(filling));
            for (const std::uint32_t size : {0U, 1U, 4U, 16U, 100U, 512U}) {
                for (const std::uint32_t count : {0U, 1U, 2U, 0xFFFFFFFFU}) {
                    char text[300];
                    const BACSTAC_PROPERTY_CONTENTS contents{type.Type, bytes.data() + 1, size, count};
                    const int length = CBacGeneral::PrintContents(text, sizeof text, contents, 9, 85, -1);
                    EXPECT_EQ(std::strlen(text), static_cast<std::size_t>(length)) << type.Name;
                }
            }
        }
    }
}
