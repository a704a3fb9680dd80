// The fields of an address: as many bytes as it has, and numbers whose low bits count.
#include "module/editors/AddressFields.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

namespace {

using testing::ElementsAre;

constexpr BACSTAC_ADDRESS STATION{1, 0, 2001, {10, 0, 0, 7, 0xBA, 0xC0, 0}, 6};

std::string Octets(const BACSTAC_ADDRESS& value) {
    std::string text;
    for (unsigned i = 0; i < value.MacLength; ++i)
        text += std::to_string(value.Mac[i]) + ".";
    return text;
}

// The address with other texts for its bytes.
BACSTAC_ADDRESS WithMac(const std::array<std::string, MAC_FIELDS>& mac) {
    AddressTexts texts = ShowAddress(STATION);
    texts.mac = mac;
    BACSTAC_ADDRESS value = STATION;
    StoreAddress(texts, value);
    return value;
}

TEST(AddressFields, ShowAsManyBytesAsThereAre) {
    const AddressTexts texts = ShowAddress(STATION);
    EXPECT_TRUE(texts.isRemote);
    EXPECT_EQ(texts.network, "2001");
    EXPECT_THAT(texts.mac, ElementsAre("10", "0", "0", "7", "186", "192", ""));
}

TEST(AddressFields, TheFirstEmptyFieldEndsTheAddress) {
    EXPECT_EQ(Octets(WithMac({"1", "2", "", "4", "5", "6", "7"})), "1.2.");
    EXPECT_EQ(Octets(WithMac({"", "2", "3", "4", "5", "6", "7"})), "");
    EXPECT_EQ(Octets(WithMac({"1", "2", "3", "4", "5", "6", "7"})), "1.2.3.4.5.6.7.");
}

TEST(AddressFields, WhatLiesBehindAShorterAddressIsZero) {
    const BACSTAC_ADDRESS value = WithMac({"9", "", "", "", "", "", ""});
    EXPECT_THAT(value.Mac, ElementsAre(9, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(value.MacLength, 1U);
    EXPECT_EQ(value.Network, 2001U);
}

TEST(AddressFields, TheLowBitsCount) {
    EXPECT_EQ(Octets(WithMac({"300", "256", "999", "x", "", "", ""})), "44.0.231.0.");
    AddressTexts texts = ShowAddress(STATION);
    BACSTAC_ADDRESS value = STATION;
    texts.network = "65537";
    StoreAddress(texts, value);
    EXPECT_EQ(value.Network, 1U);
}

TEST(AddressFields, AStationThatIsNotRemoteKeepsItsNetworkNumber) {
    AddressTexts texts = ShowAddress(STATION);
    texts.isRemote = false;
    BACSTAC_ADDRESS value = STATION;
    StoreAddress(texts, value);
    EXPECT_EQ(value.Remote, 0U);
    EXPECT_EQ(value.Network, 2001U);
}

TEST(AddressFields, WhatNobodyTouchedStaysWhateverItIs) {
    std::mt19937 random(4711);
    for (int round = 0; round < 1000; ++round) {
        BACSTAC_ADDRESS value;
        std::generate_n(reinterpret_cast<unsigned char*>(&value), sizeof value,
                        [&] { return static_cast<unsigned char>(random()); });
        const BACSTAC_ADDRESS before = value;
        StoreAddress(ShowAddress(value), value);
        EXPECT_EQ(std::memcmp(&value, &before, sizeof value), 0);
    }
}

} // namespace
