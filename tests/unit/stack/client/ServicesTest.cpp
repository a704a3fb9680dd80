// Requests and answers of the services: golden octets both ways, cut at every byte, corrupted at every byte.
#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/ErrorAnswer.h"
#include "platform/stack/services/ReadPropertyMultiple.h"
#include "platform/stack/services/ReadRange.h"
#include "platform/stack/services/WhoIs.h"
#include "tests/unit/stack/client/Frames.h"

#include <gtest/gtest.h>

#include <cstring>

namespace bacnet {
namespace {

template <class Encode>
std::string Encoded(Encode encode) {
    std::uint8_t buffer[1476];
    Writer writer(buffer);
    encode(writer);
    EXPECT_FALSE(writer.Overflow());
    return ToHex(writer.Written());
}

const PropertyTarget presentValue{{0, 5}, 85, BACSTAC_NO_INDEX};
const PropertyTarget logBuffer{{20, 1}, 131, BACSTAC_NO_INDEX};

// ---- Who-Is, I-Am

TEST(WhoIsTest, IsEmptyForTheWholeRange) {
    EXPECT_EQ(Encoded([](Writer& w) { EncodeWhoIs({}, w); }), "");
    EXPECT_EQ(Encoded([](Writer& w) { EncodeWhoIs({0, UINT32_MAX}, w); }), "");
    WhoIs request{1, 2};
    ASSERT_TRUE(DecodeWhoIs({}, request));
    EXPECT_TRUE(request.AsksFor(0));
    EXPECT_TRUE(request.AsksFor(4194302));
}

// [0] 3, [1] 4194303
constexpr const char* whoIsLimits = "09 03 1B 3F FF FF";

TEST(WhoIsTest, CarriesBothLimits) {
    EXPECT_EQ(Encoded([](Writer& w) { EncodeWhoIs({3, 4194303}, w); }), whoIsLimits);
    WhoIs request;
    ASSERT_TRUE(DecodeWhoIs(Hex(whoIsLimits), request));
    EXPECT_FALSE(request.AsksFor(2));
    EXPECT_TRUE(request.AsksFor(3));
    CutAtEveryByte(Hex(whoIsLimits), [](std::span<const std::uint8_t> cut) {
        WhoIs partial;
        EXPECT_EQ(DecodeWhoIs(cut, partial), cut.empty());
    });
}

// device 1234, 1476 octets, no segmentation, vendor 260
constexpr const char* iAm = "C4 02 00 04 D2 22 05 C4 91 03 22 01 04";

TEST(IAmTest, TellsWhoItIs) {
    EXPECT_EQ(Encoded([](Writer& w) { EncodeIAm({1234, 1476, 3, 260}, w); }), iAm);
    IAm announcement;
    ASSERT_TRUE(DecodeIAm(Hex(iAm), announcement));
    EXPECT_EQ(announcement.Device, 1234U);
    EXPECT_EQ(announcement.MaxApdu, 1476U);
    EXPECT_EQ(announcement.Segmentation, 3U);
    EXPECT_EQ(announcement.Vendor, 260U);
    CutAtEveryByte(Hex(iAm), [](std::span<const std::uint8_t> cut) {
        IAm partial;
        EXPECT_FALSE(DecodeIAm(cut, partial));
    });
    CorruptEveryByte(Hex(iAm), [](std::span<const std::uint8_t> corrupt) {
        IAm whatever;
        DecodeIAm(corrupt, whatever);
    });
}

TEST(IAmTest, RefusesWhatIsNoDevice) {
    IAm announcement;
    EXPECT_FALSE(DecodeIAm(Hex("C4 00 00 04 D2 22 05 C4 91 03 22 01 04"), announcement)) << "an analog input";
    EXPECT_FALSE(DecodeIAm(Hex("C4 02 3F FF FF 22 05 C4 91 03 22 01 04"), announcement)) << "the wildcard instance";
}

// ---- ReadProperty

// [0] analog-input 5, [1] present-value
constexpr const char* readRequest = "0C 00 00 00 05 19 55";
// the same, [3] real 72.3
constexpr const char* readAck = "0C 00 00 00 05 19 55 3E 44 42 90 99 9A 3F";
// [0] device 2, [1] object-list, [2] index 0
constexpr const char* readElement = "0C 02 00 00 02 19 4C 29 00";

TEST(ReadPropertyTest, EncodesAndDecodesRequests) {
    EXPECT_EQ(Encoded([](Writer& w) { EncodeReadProperty(presentValue, w); }), readRequest);
    EXPECT_EQ(Encoded([](Writer& w) { EncodeReadProperty({{8, 2}, 76, 0}, w); }), readElement);
    PropertyTarget request;
    ASSERT_TRUE(DecodeReadProperty(Hex(readElement), request));
    EXPECT_EQ(request, (PropertyTarget{{8, 2}, 76, 0}));
    CutAtEveryByte(Hex(readElement), [](std::span<const std::uint8_t> cut) {
        PropertyTarget partial;
        EXPECT_EQ(DecodeReadProperty(cut, partial), cut.size() == 7) << cut.size();
    });
    EXPECT_FALSE(DecodeReadProperty(Hex("0C 00 00 00 05 19 55 00"), request)) << "something behind";
}

TEST(ReadPropertyTest, EncodesAndDecodesAnswers) {
    EXPECT_EQ(Encoded([](Writer& w) {
                  BeginReadPropertyAck(presentValue, w);
                  w.Real(72.3F);
                  EndReadPropertyAck(w);
              }),
              readAck);
    ReadPropertyAck ack;
    const Octets octets = Hex(readAck);
    ASSERT_TRUE(DecodeReadPropertyAck(octets, ack));
    EXPECT_TRUE(Answers(presentValue, ack.Target));
    EXPECT_EQ(ToHex(ack.Value), "44 42 90 99 9A");
    CutAtEveryByte(octets, [](std::span<const std::uint8_t> cut) {
        ReadPropertyAck partial;
        EXPECT_FALSE(DecodeReadPropertyAck(cut, partial));
    });
    CorruptEveryByte(octets, [](std::span<const std::uint8_t> corrupt) {
        ReadPropertyAck whatever;
        DecodeReadPropertyAck(corrupt, whatever);
    });
}

TEST(ReadPropertyTest, MatchesAnswersToRequests) {
    EXPECT_FALSE(Answers(presentValue, {{0, 6}, 85, BACSTAC_NO_INDEX}));
    EXPECT_FALSE(Answers(presentValue, {{0, 5}, 77, BACSTAC_NO_INDEX}));
    EXPECT_FALSE(Answers(presentValue, {{0, 5}, 85, 1}));
    EXPECT_TRUE(Answers({{8, 4194303}, 75, -1}, {{8, 77}, 75, -1})) << "whichever device it is";
    EXPECT_FALSE(Answers({{8, 4194303}, 75, -1}, {{0, 77}, 75, -1}));
}

// ---- ReadPropertyMultiple

// [0] analog-input 5 [1]{ [0] present-value, [0] reliability } [0] device 2 [1]{ [0] object-list [1] 1 }
constexpr const char* rpmRequest = "0C 00 00 00 05 1E 09 55 09 67 1F 0C 02 00 00 02 1E 09 4C 19 01 1F";
// [0] analog-input 5 [1]{ [2] present-value [4]{ real 72.3 } [2] reliability [5]{ property, unknown-property } }
// [0] device 2 [1]{ [2] object-list [3] 1 [4]{ device 2 } }
constexpr const char* rpmAck = "0C 00 00 00 05 1E 29 55 4E 44 42 90 99 9A 4F 29 67 5E 91 02 91 20 5F 1F "
                               "0C 02 00 00 02 1E 29 4C 39 01 4E C4 02 00 00 02 4F 1F";

TEST(ReadPropertyMultipleTest, WritesAndWalksRequests) {
    const PropertyTarget targets[] = {presentValue, {{0, 5}, 103, -1}, {{8, 2}, 76, 1}};
    EXPECT_EQ(Encoded([&](Writer& w) {
                  RpmRequestWriter request(w);
                  for (const auto& target : targets)
                      request.Add(target);
                  request.Finish();
              }),
              rpmRequest);
    const Octets octets = Hex(rpmRequest);
    RpmRequestReader request(octets);
    PropertyTarget target;
    for (const auto& expected : targets) {
        ASSERT_TRUE(request.Next(target));
        EXPECT_EQ(target, expected);
    }
    EXPECT_FALSE(request.Next(target));
    EXPECT_TRUE(request.Ok());
}

TEST(ReadPropertyMultipleTest, WritesAndWalksAnswers) {
    EXPECT_EQ(Encoded([](Writer& w) {
                  RpmAckWriter ack(w);
                  ack.BeginValue(presentValue);
                  w.Real(72.3F);
                  ack.EndValue();
                  ack.Error({{0, 5}, 103, -1}, 2, 32);
                  ack.BeginValue({{8, 2}, 76, 1});
                  w.ObjectId({8, 2});
                  ack.EndValue();
                  ack.Finish();
              }),
              rpmAck);
    const Octets octets = Hex(rpmAck);
    RpmAckReader ack(octets);
    RpmResult result;
    ASSERT_TRUE(ack.Next(result));
    EXPECT_EQ(result.Target, presentValue);
    EXPECT_TRUE(result.Success);
    EXPECT_EQ(ToHex(result.Value), "44 42 90 99 9A");
    ASSERT_TRUE(ack.Next(result));
    EXPECT_FALSE(result.Success);
    EXPECT_EQ(result.ErrorClass, 2U);
    EXPECT_EQ(result.ErrorCode, 32U);
    ASSERT_TRUE(ack.Next(result));
    EXPECT_EQ(result.Target, (PropertyTarget{{8, 2}, 76, 1}));
    EXPECT_FALSE(ack.Next(result));
    EXPECT_TRUE(ack.Ok());
}

TEST(ReadPropertyMultipleTest, TakesBackAValueForAnError) {
    EXPECT_EQ(Encoded([](Writer& w) {
                  RpmAckWriter ack(w);
                  ack.BeginValue(presentValue);
                  w.Real(72.3F);
                  ack.EndValue();
                  ack.BeginValue({{0, 6}, 85, -1});
                  w.Real(1.0F);
                  ack.ErrorInstead(1, 31);
                  ack.Finish();
              }),
              "0C 00 00 00 05 1E 29 55 4E 44 42 90 99 9A 4F 1F 0C 00 00 00 06 1E 29 55 5E 91 01 91 1F 5F 1F");
}

TEST(ReadPropertyMultipleTest, PassesOverObjectsWithoutProperties) {
    const Octets octets = Hex("0C 00 00 00 05 1E 1F 0C 00 00 00 06 1E 09 55 1F 0C 00 00 00 07 1E 1F");
    RpmRequestReader request(octets);
    PropertyTarget target;
    ASSERT_TRUE(request.Next(target));
    EXPECT_EQ(target.Object.Instance, 6U);
    EXPECT_FALSE(request.Next(target));
    EXPECT_TRUE(request.Ok());
}

TEST(ReadPropertyMultipleTest, EndsOnDamagedOctets) {
    const auto walk = [](std::span<const std::uint8_t> octets) {
        RpmAckReader ack(octets);
        RpmResult result;
        std::size_t results = 0;
        while (ack.Next(result))
            ++results;
        EXPECT_LE(results, octets.size());
        RpmRequestReader request(octets);
        PropertyTarget target;
        while (request.Next(target)) {}
        return ack.Ok();
    };
    const std::size_t wholeObject = 24;
    CutAtEveryByte(Hex(rpmAck), [&](std::span<const std::uint8_t> cut) {
        EXPECT_EQ(walk(cut), cut.empty() || cut.size() == wholeObject) << cut.size();
    });
    CorruptEveryByte(Hex(rpmAck), walk);
    CorruptEveryByte(Hex(rpmRequest), walk);
}

// ---- ReadRange

BACSTAC_DATE_TIME Time1998() {
    return {{1998, 0, 3, 23, 0}, {19, 52, 34, 0}};
}

struct RangeGolden {
    const char* Name;
    BACSTAC_READ_RANGE_SPEC Range;
    const char* Octets;
};

std::vector<RangeGolden> RangeGoldens() {
    BACSTAC_READ_RANGE_SPEC none{};
    BACSTAC_READ_RANGE_SPEC position{};
    position.Kind = BACSTAC_RANGE_BY_POSITION;
    position.ByIndex = {200, -5};
    BACSTAC_READ_RANGE_SPEC sequence{};
    sequence.Kind = BACSTAC_RANGE_BY_SEQUENCE;
    sequence.ByIndex = {4294967295U, 1000};
    BACSTAC_READ_RANGE_SPEC time{};
    time.Kind = BACSTAC_RANGE_BY_TIME;
    time.ByTime = {Time1998(), 4};
    BACSTAC_READ_RANGE_SPEC time2001{};
    time2001.Kind = BACSTAC_RANGE_BY_TIME_2001;
    time2001.ByTime = {Time1998(), 0};
    return {
        // [0] trend-log 1, [1] log-buffer, and
        {"no range", none, "0C 05 00 00 01 19 83"},
        // [3]{ unsigned 200, integer -5 }
        {"position", position, "0C 05 00 00 01 19 83 3E 21 C8 31 FB 3F"},
        // [6]{ unsigned 4294967295, integer 1000 }
        {"sequence", sequence, "0C 05 00 00 01 19 83 6E 24 FF FF FF FF 32 03 E8 6F"},
        // [7]{ Monday 23 March 1998, 19:52:34.0, integer 4 }
        {"time", time, "0C 05 00 00 01 19 83 7E A4 62 03 17 01 B4 13 34 22 00 31 04 7F"},
        // [4]{ the same, integer 0 }
        {"time 2001", time2001, "0C 05 00 00 01 19 83 4E A4 62 03 17 01 B4 13 34 22 00 31 00 4F"},
    };
}

TEST(ReadRangeTest, EncodesAndDecodesEveryKind) {
    for (const RangeGolden& golden : RangeGoldens()) {
        SCOPED_TRACE(golden.Name);
        EXPECT_EQ(Encoded([&](Writer& w) {
                      EXPECT_TRUE(EncodeReadRange({logBuffer, golden.Range}, w));
                  }),
                  golden.Octets);
        ReadRangeRequest request;
        ASSERT_TRUE(DecodeReadRange(Hex(golden.Octets), request));
        EXPECT_EQ(request.Target, logBuffer);
        EXPECT_EQ(request.Range.Kind, golden.Range.Kind);
        EXPECT_EQ(Encoded([&](Writer& w) { EncodeReadRange(request, w); }), golden.Octets);
        CutAtEveryByte(Hex(golden.Octets), [](std::span<const std::uint8_t> cut) {
            ReadRangeRequest partial;
            EXPECT_EQ(DecodeReadRange(cut, partial), cut.size() == 7);
        });
    }
}

TEST(ReadRangeTest, RefusesKindsThatDoNotExist) {
    BACSTAC_READ_RANGE_SPEC range{};
    std::uint8_t buffer[64];
    for (const std::uint32_t kind : {3U, 6U, 99U}) {
        range.Kind = kind;
        Writer writer(buffer);
        EXPECT_FALSE(EncodeReadRange({logBuffer, range}, writer));
        EXPECT_EQ(writer.Size(), 0U);
    }
}

TEST(ReadRangeTest, SendsAUselessTimeSoThatTheLogIsReadAgain) {
    BACSTAC_READ_RANGE_SPEC range{};
    range.Kind = BACSTAC_RANGE_BY_TIME;
    range.ByTime.Count = 100;
    // year octet 0, month unspecified, day 0, no weekday
    EXPECT_EQ(Encoded([&](Writer& w) {
                  EncodeReadRange({logBuffer, range}, w);
              }),
              "0C 05 00 00 01 19 83 7E A4 00 FF 00 FF B4 00 00 00 00 31 64 7F");
}

TEST(ReadRangeTest, KnowsTheWeekday) {
    EXPECT_EQ(WeekdayOf({1900, 0, 1, 1, 0}), 1U);
    EXPECT_EQ(WeekdayOf({2026, 0, 3, 1, 0}), 7U) << "Sunday is 7";
    EXPECT_EQ(WeekdayOf({2024, 0, 2, 29, 0}), 4U);
    EXPECT_EQ(WeekdayOf({2023, 0, 2, 29, 0}), 0U);
    EXPECT_EQ(WeekdayOf({0xFFFF, 0, 3, 1, 0}), 0U);
    EXPECT_EQ(WeekdayOf({2026, 0, 13, 1, 0}), 0U);
    EXPECT_EQ(WeekdayOf({2026, 0, 3, 255, 0}), 0U);
    EXPECT_EQ(WeekdayOf({2026, 0, 257, 1, 0}), 0U) << "not cut to eight bits";
}

// [0] trend-log 1, [1] log-buffer, [3] first and last, [4] 1 item,
// [5]{ [0]{ 23 March 1998, 19:54:27.0 } [1]{ [2] real 18.0 } [2] status 0000 }, [6] first sequence number 79201
constexpr const char* rangeAck = "0C 05 00 00 01 19 83 3A 05 C0 49 01 "
                                 "5E 0E A4 62 03 17 01 B4 13 36 1B 00 0F 1E 2C 41 90 00 00 1F 2A 04 00 5F "
                                 "6B 01 35 61";

TEST(ReadRangeTest, EncodesAndDecodesAnswers) {
    const Octets octets = Hex(rangeAck);
    ReadRangeAck ack;
    ASSERT_TRUE(DecodeReadRangeAck(octets, ack));
    EXPECT_EQ(ack.Target, logBuffer);
    EXPECT_EQ(ack.Flags.BitCount, 3U);
    EXPECT_EQ(ack.Flags.Bits[0], 0x03);
    EXPECT_EQ(ack.ItemCount, 1U);
    EXPECT_EQ(ack.FirstSequenceNumber, 79201U);
    EXPECT_EQ(ack.Items.size(), 22U);
    EXPECT_EQ(Encoded([&](Writer& w) {
                  BeginReadRangeAck(ack.Target, ack.Flags, ack.ItemCount, w);
                  w.Octets(ack.Items);
                  EndReadRangeAck(true, ack.FirstSequenceNumber, w);
              }),
              rangeAck);
    const std::size_t withoutSequence = octets.size() - 4;
    CutAtEveryByte(octets, [&](std::span<const std::uint8_t> cut) {
        ReadRangeAck partial;
        EXPECT_EQ(DecodeReadRangeAck(cut, partial), cut.size() == withoutSequence) << cut.size();
    });
    CorruptEveryByte(octets, [](std::span<const std::uint8_t> corrupt) {
        ReadRangeAck whatever;
        DecodeReadRangeAck(corrupt, whatever);
    });
}

TEST(ReadRangeTest, GivesNoSequenceNumberWhereTheAnswerHasNone) {
    ReadRangeAck ack;
    ack.FirstSequenceNumber = 5;
    ASSERT_TRUE(DecodeReadRangeAck(Hex("0C 05 00 00 01 19 83 3A 05 00 49 00 5E 5F"), ack));
    EXPECT_EQ(ack.FirstSequenceNumber, 0U);
    EXPECT_TRUE(ack.Items.empty());
}

// ---- errors

TEST(ErrorAnswerTest, IsUnderstoodInEitherForm) {
    ErrorAnswer error;
    // class object, code unknown-object
    ASSERT_TRUE(DecodeErrorAnswer(ConfirmedService::readProperty, Hex("91 01 91 1F"), error));
    EXPECT_EQ(error.Class, 1U);
    EXPECT_EQ(error.Code, 31U);
    EXPECT_EQ(error.FirstFailed, 0U);
    // [0]{ class property, code value-out-of-range } [1] 2
    ASSERT_TRUE(DecodeErrorAnswer(ConfirmedService::createObject, Hex("0E 91 02 91 25 0F 19 02"), error));
    EXPECT_EQ(error.Code, 37U);
    EXPECT_EQ(error.FirstFailed, 2U);
    ASSERT_TRUE(DecodeErrorAnswer(ConfirmedService::createObject, Hex("91 02 91 25"), error));
    EXPECT_EQ(error.FirstFailed, 0U);
    ASSERT_TRUE(DecodeErrorAnswer(ConfirmedService::readProperty, Hex("92 02 00 92 10 00"), error)) << "proprietary";
    EXPECT_EQ(error.Class, 512U);
    EXPECT_FALSE(DecodeErrorAnswer(ConfirmedService::readProperty, Hex("21 01 21 1F"), error)) << "not enumerated";
    EXPECT_FALSE(DecodeErrorAnswer(ConfirmedService::readProperty, {}, error));
    CutAtEveryByte(Hex("0E 91 02 91 25 0F"), [](std::span<const std::uint8_t> cut) {
        ErrorAnswer partial;
        EXPECT_FALSE(DecodeErrorAnswer(ConfirmedService::createObject, cut, partial));
    });
}

TEST(ErrorAnswerTest, IsEncodedInTheFormOfTheService) {
    EXPECT_EQ(Encoded([](Writer& w) {
                  EncodeErrorAnswer(ConfirmedService::readProperty, {1, 31, 0}, w);
              }),
              "91 01 91 1F");
    EXPECT_EQ(Encoded([](Writer& w) {
                  EncodeErrorAnswer(ConfirmedService::createObject, {2, 37, 2}, w);
              }),
              "0E 91 02 91 25 0F 19 02");
}

} // namespace
} // namespace bacnet
