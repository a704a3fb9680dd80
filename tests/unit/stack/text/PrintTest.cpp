// The print functions, each with its texts pinned.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/stack/text/Printing.h"

#include <clocale>
#include <cmath>
#include <limits>
#include <locale>

namespace {

#define PRINTED(function, ...) Printed([&](char* b, unsigned n) { return CBacGeneral::function(b, n, __VA_ARGS__); })

constexpr std::uint32_t WHOLE = 0xFFFFFFFFU;

BACSTAC_ADDRESS Address(std::uint16_t network, std::initializer_list<std::uint8_t> mac) {
    BACSTAC_ADDRESS address{};
    address.Remote = network != 0 ? 1 : 0;
    address.Network = network;
    for (const std::uint8_t octet : mac)
        address.Mac[address.MacLength++] = octet;
    return address;
}

} // namespace

TEST(Print, Booleans) {
    EXPECT_EQ(PRINTED(PrintBoolean, true), "true");
    EXPECT_EQ(PRINTED(PrintBoolean, false), "false");
}

TEST(Print, Integers) {
    EXPECT_EQ(PRINTED(PrintUnsigned, 0U), "0");
    EXPECT_EQ(PRINTED(PrintUnsigned, 4294967295U), "4294967295");
    EXPECT_EQ(PRINTED(PrintSigned, -2147483647 - 1), "-2147483648");
    EXPECT_EQ(PRINTED(PrintSigned, 2147483647), "2147483647");
}

TEST(Print, RealsWithTheDigitsThatTheyHave) {
    EXPECT_EQ(PRINTED(PrintReal, 0.0), "0");
    EXPECT_EQ(PRINTED(PrintReal, 5.0), "5");
    EXPECT_EQ(PRINTED(PrintReal, -21.5), "-21.5");
    EXPECT_EQ(PRINTED(PrintReal, 0.1F), "0.1");
    EXPECT_EQ(PRINTED(PrintReal, 0.1), "0.1");
    EXPECT_EQ(PRINTED(PrintReal, 1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(PRINTED(PrintReal, 1.0F / 3.0F), "0.3333333");
    EXPECT_EQ(PRINTED(PrintReal, 1e-7F), "1e-07");
    EXPECT_EQ(PRINTED(PrintReal, 16777216.0), "1.677722e+07");
    EXPECT_EQ(PRINTED(PrintReal, 16777217.0), "16777217");
    EXPECT_EQ(PRINTED(PrintReal, 1e300), "1e+300");
    EXPECT_EQ(PRINTED(PrintReal, std::numeric_limits<float>::max()), "3.402823e+38");
    EXPECT_EQ(PRINTED(PrintReal, std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(PRINTED(PrintReal, -std::numeric_limits<double>::infinity()), "-inf");
    EXPECT_EQ(PRINTED(PrintReal, std::nan("")), "nan");
    EXPECT_EQ(PRINTED(PrintReal, -std::nan("")), "nan");
}

TEST(Print, EnumeratedValues) {
    EXPECT_EQ(PRINTED(PrintEnum, 2U, ENUM_EVENT_STATE), "offnormal");
    EXPECT_EQ(PRINTED(PrintEnum, 64U, ENUM_EVENT_STATE), "64");
    EXPECT_EQ(PRINTED(PrintEnum, 3U, ENUM_NONE), "3");
    EXPECT_EQ(PRINTED(PrintEnum, 3U, -5), "3");
    EXPECT_EQ(PRINTED(PrintEnum, 133U, ENUM_PROPERTY_ID), "log-enable");
}

TEST(Print, BitStrings) {
    EXPECT_EQ(PRINTED(PrintBitString, Bits({true, false, false, true}), ENUM_STATUS_FLAGS),
              "{in-alarm, out-of-service}");
    EXPECT_EQ(PRINTED(PrintBitString, Bits({false, false}), ENUM_STATUS_FLAGS), "{}");
    EXPECT_EQ(PRINTED(PrintBitString, Bits({}), ENUM_STATUS_FLAGS), "{}");
    EXPECT_EQ(PRINTED(PrintBitString, Bits({true, false, true}), ENUM_NONE), "{bit-0, bit-2}");
    EXPECT_EQ(PRINTED(PrintBitString, Bits({false, false, true, true}), ENUM_LOG_STATUS), "{log-interrupted, bit-3}");
    BACSTAC_BIT_STRING tooLong = Bits({});
    CBacGeneral::SetBitStringBit(tooLong, 95, true);
    tooLong.BitCount = 4000;
    EXPECT_EQ(PRINTED(PrintBitString, tooLong, ENUM_NONE), "{bit-95}");
}

TEST(Print, Dates) {
    EXPECT_EQ(PRINTED(PrintDate, Date(2026, 11, 7, 6)), "07/11/2026");
    EXPECT_EQ(PRINTED(PrintDate, Date(0xFFFF, 0, 255)), "*/*/*");
    EXPECT_EQ(PRINTED(PrintDate, Date(0xFFFF, 0, 0xFFFFFFFFU)), "*/*/*");
    EXPECT_EQ(PRINTED(PrintDate, Date(2026, 14, 32)), "last/even/2026");
    EXPECT_EQ(PRINTED(PrintDate, Date(0xFFFF, 13, 33)), "odd/odd/*");
    EXPECT_EQ(PRINTED(PrintDate, Date(2026, 2, 34)), "even/02/2026");
    EXPECT_EQ(PRINTED(PrintDate, Date(0xFFFF, 12, 255, 1)), "(monday, */12/*)");
    EXPECT_EQ(PRINTED(PrintDate, Date(0xFFFF, 12, 255, 9)), "(9, */12/*)");
    EXPECT_EQ(PRINTED(PrintDate, Date(0, 15, 200)), "200/15/0000");
}

TEST(Print, Times) {
    EXPECT_EQ(PRINTED(PrintTime, BACSTAC_TIME{23, 59, 58, 7}), "23:59:58.07");
    EXPECT_EQ(PRINTED(PrintTime, BACSTAC_TIME{255, 255, 255, 255}), "*:*:*.*");
    EXPECT_EQ(PRINTED(PrintTime, BACSTAC_TIME{8, 0, 255, 255}), "08:00:*.*");
    EXPECT_EQ(PRINTED(PrintTime, BACSTAC_TIME{254, 100, 60, 100}), "254:100:60.100");
}

TEST(Print, DatesWithTimes) {
    EXPECT_EQ(PRINTED(PrintDateTime, (BACSTAC_DATE_TIME{Date(2026, 1, 2, 5), {3, 4, 5, 6}})),
              "(02/01/2026, 03:04:05.06)");
    EXPECT_EQ(PRINTED(PrintDateTime, (BACSTAC_DATE_TIME{Date(0xFFFF, 0, 255, 7), {255, 255, 255, 255}})),
              "(sunday, */*/*, *:*:*.*)");
}

TEST(Print, RangesAndWeeks) {
    EXPECT_EQ(PRINTED(PrintDateRange, (BACSTAC_DATE_RANGE{Date(2026, 1, 2), Date(0xFFFF, 0, 255)})),
              "02/01/2026 - */*/*");
    EXPECT_EQ(PRINTED(PrintWeekNDay, (BACSTAC_WEEK_N_DAY{0, BACSTAC_ANY_WEEK, 0})), "(*, *, *)");
    EXPECT_EQ(PRINTED(PrintWeekNDay, (BACSTAC_WEEK_N_DAY{13, 6, 7})), "(odd, last, sunday)");
    EXPECT_EQ(PRINTED(PrintWeekNDay, (BACSTAC_WEEK_N_DAY{12, 5, 1})), "(december, 29-31, monday)");
    EXPECT_EQ(PRINTED(PrintWeekNDay, (BACSTAC_WEEK_N_DAY{99, 9, 8})), "(99, 9, 8)");
}

TEST(Print, CalendarEntries) {
    BACSTAC_CALENDAR_ENTRY entry{};
    entry.Choice = BACSTAC_CALENDAR_DATE;
    entry.Date = Date(2026, 12, 25);
    EXPECT_EQ(PRINTED(PrintCalendarEntry, entry), "25/12/2026");
    entry.Choice = BACSTAC_CALENDAR_RANGE;
    entry.Range = {Date(2026, 12, 24), Date(2027, 1, 6)};
    EXPECT_EQ(PRINTED(PrintCalendarEntry, entry), "24/12/2026 - 06/01/2027");
    entry.Choice = BACSTAC_CALENDAR_WEEK_N_DAY;
    entry.WeekNDay = {5, 1, 1};
    EXPECT_EQ(PRINTED(PrintCalendarEntry, entry), "(may, 1-7, monday)");
    entry.Choice = 3;
    EXPECT_EQ(PRINTED(PrintCalendarEntry, entry), "?");
}

TEST(Print, ObjectsAndReferences) {
    const BACSTAC_OBJECT_ID input{OBJ_ANALOG_INPUT, 5};
    EXPECT_EQ(PRINTED(PrintObjectID, input), "(analog-input, 5)");
    EXPECT_EQ(PRINTED(PrintObjectID, (BACSTAC_OBJECT_ID{128, 4194303})), "(128, 4194303)");
    EXPECT_EQ(PRINTED(PrintPropReference, (BACSTAC_PROPERTY_REF{85, WHOLE})), "present-value");
    EXPECT_EQ(PRINTED(PrintPropReference, (BACSTAC_PROPERTY_REF{600, 0})), "600[0]");
    EXPECT_EQ(PRINTED(PrintObjPropReference, (BACSTAC_OBJ_PROP_REF{input, 87, 16})),
              "(analog-input, 5, priority-array[16])");
    EXPECT_EQ(PRINTED(PrintDevObjPropReference, (BACSTAC_DEV_OBJ_PROP_REF{input, 85, WHOLE, 0, {8, 0}})),
              "(analog-input, 5, present-value)");
    EXPECT_EQ(PRINTED(PrintDevObjPropReference, (BACSTAC_DEV_OBJ_PROP_REF{input, 85, 3, 1, {8, 1234}})),
              "(device, 1234, analog-input, 5, present-value[3])");
}

TEST(Print, TheLongestReferenceFitsTheBufferOfTheHistory) {
    std::size_t longest = 0;
    for (BACSTAC_OBJECT_TYPE type = 0; type < 128; ++type) {
        for (BACSTAC_PROPERTY_ID property = 0; property < 4194400;
             property = property == 600 ? 4194304 : property + 1) {
            const BACSTAC_DEV_OBJ_PROP_REF reference{{type, 4194303}, property, 4294967294U, 1, {8, 4194303}};
            longest = std::max(longest, PRINTED(PrintDevObjPropReference, reference).size());
        }
    }
    EXPECT_LE(longest, 100U);
    EXPECT_GE(longest, 90U);
}

TEST(Print, Addresses) {
    EXPECT_EQ(PRINTED(PrintAddress, Address(0, {192, 168, 1, 10, 0xBA, 0xC0})), "192.168.1.10:47808");
    EXPECT_EQ(PRINTED(PrintAddress, Address(2001, {7})), "2001/7");
    EXPECT_EQ(PRINTED(PrintAddress, Address(2001, {10, 0, 0, 1, 0, 80})), "2001/10.0.0.1:80");
    EXPECT_EQ(PRINTED(PrintAddress, Address(5, {0x0A, 0xFF, 3})), "5/0AFF03");
    EXPECT_EQ(PRINTED(PrintAddress, Address(0, {1, 2, 3, 4, 5, 6, 7})), "01020304050607");
    EXPECT_EQ(PRINTED(PrintAddress, Address(0, {})), "broadcast");
    EXPECT_EQ(PRINTED(PrintAddress, Address(7, {})), "7/broadcast");
    EXPECT_EQ(PRINTED(PrintAddress, Address(65535, {})), "global-broadcast");
    BACSTAC_ADDRESS damaged = Address(0, {1, 2});
    damaged.MacLength = 200;
    EXPECT_EQ(PRINTED(PrintAddress, damaged), "01020000000000");
}

TEST(Print, Recipients) {
    BACSTAC_RECIPIENT recipient{};
    recipient.Device = {OBJ_DEVICE, 77};
    EXPECT_EQ(PRINTED(PrintRecipient, recipient), "(device, 77)");
    recipient.Choice = 1;
    recipient.Address = Address(3, {9});
    EXPECT_EQ(PRINTED(PrintRecipient, recipient), "3/9");
    recipient.Choice = 2;
    EXPECT_EQ(PRINTED(PrintRecipient, recipient), "?");
}

TEST(Print, EventNotificationsWithAndWithoutTheirContents) {
    Contents contents(TYPE_EVENT_NOTIF, 1);
    BACSTAC_EVENT_NOTIF notification{};
    notification.Mask = BACSTAC_NOTIF_MESSAGE | BACSTAC_NOTIF_FROM_STATE | BACSTAC_NOTIF_PARAMETERS;
    notification.ProcessId = 3;
    notification.Device = {OBJ_DEVICE, 1};
    notification.Object = {OBJ_ANALOG_INPUT, 2};
    notification.TimeStamp.Choice = 1;
    notification.TimeStamp.SequenceNumber = 44;
    notification.NotificationClass = 5;
    notification.Priority = 6;
    notification.EventType = 5;
    notification.ToState = 3;
    const std::uint32_t record = contents.Add(notification);
    notification.MessageOffset = contents.AddText("Too hot");
    BACSTAC_NP_OUT_OF_RANGE parameters{};
    parameters.ExceedingValue = 31.5F;
    parameters.StatusFlags = Bits({true, false, false, false});
    parameters.ExceededLimit = 30;
    notification.Parameters = {5,
                               {TYPE_NOTIFICATION_PARAMETER_FIRST + 5, contents.Add(parameters), sizeof parameters, 1}};
    contents.Replace(record, notification);

    const std::string start = "{process-identifier=3, initiating-device=(device, 1), event-object=(analog-input, 2), "
                              "timestamp=44, notification-class=5, priority=6, event-type=out-of-range, ";
    EXPECT_EQ(PRINTED(PrintEventNotif, notification),
              start + "notify-type=alarm, from-state=normal, to-state=high-limit}");
    const std::string whole = start +
                              "message-text=Too hot, notify-type=alarm, from-state=normal, to-state=high-limit, "
                              "event-values=out-of-range={exceeding-value=31.5, status-flags={in-alarm}, deadband=0, "
                              "exceeded-limit=30}}";
    EXPECT_EQ(PRINTED(PrintEventNotif, notification, contents.Get()), whole);
    EXPECT_EQ(contents.Text(), whole);

    notification.Mask = BACSTAC_NOTIF_MESSAGE;
    notification.MessageOffset = 100000; // outside the contents
    EXPECT_EQ(PRINTED(PrintEventNotif, notification, contents.Get()),
              start + "message-text=, notify-type=alarm, to-state=high-limit}");
}

TEST(Print, NeverDependsOnTheLocale) {
    // Both kinds of locale there are: the C++ one is ours and always there, the C one as far as it is installed.
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const std::locale global = std::locale::global(std::locale(std::locale::classic(), new Comma));
    for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8", "fr_FR"}) {
        if (std::setlocale(LC_ALL, name) != nullptr)
            break;
    }
    EXPECT_EQ(PRINTED(PrintReal, 1234567.5), "1234568");
    EXPECT_EQ(PRINTED(PrintReal, 21.5), "21.5");
    EXPECT_EQ(PRINTED(PrintUnsigned, 1234567U), "1234567");
    EXPECT_EQ(PRINTED(PrintTime, BACSTAC_TIME{1, 2, 3, 4}), "01:02:03.04");
    std::locale::global(global);
    std::setlocale(LC_ALL, before.c_str());
}

// ---- buffers

TEST(PrintBuffer, OfEverySizeHoldsTheStartAndANul) {
    const BACSTAC_DEV_OBJ_PROP_REF reference{{OBJ_ANALOG_INPUT, 5}, 85, 3, 1, {8, 1234}};
    const std::string whole = PRINTED(PrintDevObjPropReference, reference);
    for (unsigned size = 0; size <= whole.size() + 2; ++size) {
        std::vector<char> buffer(whole.size() + 3, '#');
        const int length = CBacGeneral::PrintDevObjPropReference(buffer.data(), size, reference);
        const std::size_t fits = size == 0 ? 0 : std::min<std::size_t>(size - 1, whole.size());
        EXPECT_EQ(static_cast<std::size_t>(length), fits);
        EXPECT_EQ(std::string(buffer.data(), fits), whole.substr(0, fits));
        if (size > 0) {
            EXPECT_EQ(buffer[fits], '\0');
        }
        EXPECT_EQ(buffer[size], '#') << "byte behind a buffer of " << size;
    }
}

TEST(PrintBuffer, MayBeNullWhenItHasNoSize) {
    EXPECT_EQ(CBacGeneral::PrintUnsigned(nullptr, 0, 5), 0);
}

TEST(PrintBuffer, IsCutAtACharacterBoundary) {
    Contents contents(TYPE_STRING, 1);
    contents.AddText("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80z"); // a, a umlaut, euro sign, a smiley, z
    const std::size_t ends[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 11, 11};
    for (unsigned room = 0; room < std::size(ends); ++room) {
        char buffer[32];
        EXPECT_EQ(CBacGeneral::PrintContents(buffer, room + 1, contents.Get(), OBJ_NO_TYPE, PROP_NO_PROPERTY, -1),
                  static_cast<int>(ends[room]));
        EXPECT_EQ(std::strlen(buffer), ends[room]);
    }
}
