#include "platform/stack/transport/Bvll.h"
#include "tests/unit/stack/net/Frames.h"

#include <gtest/gtest.h>

#include <array>

using namespace bacnet;

namespace {

frames::Octets ToOctets(std::span<const std::uint8_t> octets) {
    return {octets.begin(), octets.end()};
}

TEST(Bvll, OriginalUnicastCarriesItsNpdu) {
    BvllMessage message;
    ASSERT_EQ(DecodeBvll(frames::READ_PROPERTY, message), BvllError::none);
    EXPECT_EQ(message.Function, BvlcFunction::original_unicast);
    EXPECT_EQ(message.Payload.size(), 13U);
    EXPECT_EQ(message.Payload[0], 0x01);
}

TEST(Bvll, ForwardedNpduTellsTheOriginatingStation) {
    BvllMessage message;
    ASSERT_EQ(DecodeBvll(frames::FORWARDED_I_AM, message), BvllError::none);
    EXPECT_EQ(message.Function, BvlcFunction::forwarded_npdu);
    EXPECT_EQ(message.Origin, (BipAddress{0x0A000105, 47808}));
    EXPECT_EQ(message.Payload.size(), 16U);
}

TEST(Bvll, AFrameCutAnywhereIsRefused) {
    for (const frames::Octets& frame : {frames::READ_PROPERTY, frames::WHO_IS, frames::FORWARDED_I_AM})
        frames::CutAtEveryOctet(frame, [](std::span<const std::uint8_t> cut) {
            BvllMessage message;
            EXPECT_EQ(DecodeBvll(cut, message), cut.size() < 4 ? BvllError::too_short : BvllError::wrong_length);
        });
}

TEST(Bvll, LengthFieldMustBeTheDatagramsLength) {
    frames::Octets frame = frames::READ_PROPERTY;
    BvllMessage message;
    for (unsigned length = 0; length <= 0xFFFF; ++length) {
        frame[2] = static_cast<std::uint8_t>(length >> 8);
        frame[3] = static_cast<std::uint8_t>(length);
        EXPECT_EQ(DecodeBvll(frame, message), length == frame.size() ? BvllError::none : BvllError::wrong_length);
    }
}

TEST(Bvll, OtherProtocolsOnThePortAreTold) {
    frames::Octets frame = frames::READ_PROPERTY;
    frame[0] = 0x82; // BACnet/IPv6
    BvllMessage message;
    EXPECT_EQ(DecodeBvll(frame, message), BvllError::not_bacnet_ip);
}

TEST(Bvll, EachFunctionIsNamedOrUnknown) {
    for (unsigned function = 0; function <= 0xFF; ++function) {
        // Ten octets behind the header, as long as any function's fixed part.
        frames::Octets frame{0x81, static_cast<std::uint8_t>(function), 0, 14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
        BvllMessage message;
        const BvllError error = DecodeBvll(frame, message);
        if (function > 0x0C)
            EXPECT_EQ(error, BvllError::unknown_function) << function;
        else if (function == 0)
            EXPECT_EQ(error, BvllError::too_short) << "a result has two octets, not ten";
        else
            EXPECT_EQ(error, BvllError::none) << function;
    }
}

TEST(Bvll, ForwardedNpduNeedsItsOrigin) {
    const frames::Octets frame{0x81, 0x04, 0, 9, 10, 0, 1, 5, 0xBA};
    BvllMessage message;
    EXPECT_EQ(DecodeBvll(frame, message), BvllError::too_short);
}

TEST(Bvll, ResultCarriesItsCode) {
    const frames::Octets frame{0x81, 0x00, 0, 6, 0x00, 0x30}; // Register-Foreign-Device NAK
    BvllMessage message;
    ASSERT_EQ(DecodeBvll(frame, message), BvllError::none);
    EXPECT_EQ(message.ResultCode, static_cast<std::uint16_t>(BvlcResult::register_foreign_device_nak));
}

TEST(Bvll, HeadersAreWrittenAsTheyAreRead) {
    const std::array<std::uint8_t, 3> npdu{0x01, 0x00, 0x42};
    Frame frame;
    ASSERT_TRUE(frame.Append(npdu));
    ASSERT_TRUE(PrependForwarded(frame, {0xC0A80102, 0xBAC1}));
    EXPECT_EQ(ToOctets(frame.Octets()),
              (frames::Octets{0x81, 0x04, 0, 13, 192, 168, 1, 2, 0xBA, 0xC1, 0x01, 0x00, 0x42}));
    frame.Clear();
    ASSERT_TRUE(frame.Append(npdu));
    ASSERT_TRUE(PrependBvll(frame, BvlcFunction::original_broadcast));
    EXPECT_EQ(ToOctets(frame.Octets()), (frames::Octets{0x81, 0x0B, 0, 7, 0x01, 0x00, 0x42}));
}

TEST(Bvll, FunctionsOfBroadcastManagementHaveTheirNak) {
    const std::vector<std::pair<BvlcFunction, BvlcResult>> expected{
        {BvlcFunction::write_bdt, BvlcResult::write_bdt_nak},
        {BvlcFunction::read_bdt, BvlcResult::read_bdt_nak},
        {BvlcFunction::register_foreign_device, BvlcResult::register_foreign_device_nak},
        {BvlcFunction::read_fdt, BvlcResult::read_fdt_nak},
        {BvlcFunction::delete_fdt_entry, BvlcResult::delete_fdt_entry_nak},
        {BvlcFunction::distribute_broadcast, BvlcResult::distribute_broadcast_nak},
    };
    for (const auto& [function, nak] : expected) {
        BvlcResult result{};
        ASSERT_TRUE(NakFor(function, result));
        EXPECT_EQ(result, nak);
    }
    BvlcResult result{};
    for (const BvlcFunction function :
         {BvlcFunction::result, BvlcFunction::read_bdt_ack, BvlcFunction::original_unicast, BvlcFunction::secure_bvll})
        EXPECT_FALSE(NakFor(function, result));
}

TEST(BipAddressText, AddressesAreParsedWholeOrNotAtAll) {
    std::uint32_t ip = 0;
    EXPECT_TRUE(ParseIpV4("192.168.1.20", ip));
    EXPECT_EQ(ip, 0xC0A80114U);
    EXPECT_TRUE(ParseIpV4("255.255.255.255", ip));
    ip = 7;
    for (const char* text : {"", "1.2.3", "1.2.3.4.5", "1.2.3.256", "1.2.3.", ".1.2.3", "1.2.3.4 ", " 1.2.3.4",
                             "a.b.c.d", "1.2.-3.4", "1..3.4", "4294967297.0.0.1"})
        EXPECT_FALSE(ParseIpV4(text, ip)) << text;
    EXPECT_EQ(ip, 7U);
    EXPECT_EQ(ToString(BipAddress{0xC0A80114, 47808}), "192.168.1.20:47808");
}

} // namespace
