// The station as a device of its own: what it answers to whom.
#include "tests/unit/stack/client/ClientFixture.h"

#include <chrono>
#include <cstdio>
#include <thread>

namespace {

class OwnDeviceTest : public ClientFixture {
protected:
    OwnDeviceTest() {
        bacnet::OwnDevice device;
        device.Instance = 77;
        device.Name = "Station";
        device.VendorId = 260;
        device.ModelName = "Console";
        Restart(device);
    }
    // Sends an APDU as station 5 and waits for the answer.
    std::string Ask(const char* apdu, bool broadcast = false) {
        m_link->TakeSent();
        m_link->Deliver(5, Hex(apdu), broadcast);
        for (int i = 0; i < 500; ++i) {
            for (const auto& sent : m_link->TakeSent())
                return ToHex(std::span(sent.Npdu).subspan(2));
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return "silence";
    }
};

TEST_F(OwnDeviceTest, AnswersWhoIsInItsRange) {
    const std::string announcement = "10 00 C4 02 00 00 4D 22 05 C4 91 02 22 01 04";
    EXPECT_EQ(Ask("10 08", true), announcement);
    EXPECT_EQ(Ask("10 08 09 4D 19 4D", true), announcement);
    m_link->Deliver(5, Hex("10 08 09 4E 19 4F"), true); // 78 to 79
    EXPECT_EQ(Ask("10 08", true), announcement);
    EXPECT_EQ(m_link->TakeSent().size(), 0U) << "one answer";
}

TEST_F(OwnDeviceTest, AnswersReadProperty) {
    // [0] device 77, [1] object-name: "Station"
    EXPECT_EQ(Ask("00 05 01 0C 0C 02 00 00 4D 19 4D"),
              "30 01 0C 0C 02 00 00 4D 19 4D 3E 75 08 00 53 74 61 74 69 6F 6E 3F");
    EXPECT_EQ(Ask("00 05 02 0C 0C 02 3F FF FF 19 4B"), "30 02 0C 0C 02 00 00 4D 19 4B 3E C4 02 00 00 4D 3F")
        << "by the wildcard";
    EXPECT_EQ(Ask("00 05 03 0C 0C 02 00 00 4D 19 4C 29 00"), "30 03 0C 0C 02 00 00 4D 19 4C 29 00 3E 21 01 3F");
    EXPECT_EQ(Ask("00 05 04 0C 0C 02 00 00 4D 19 4C 29 02"), "50 04 0C 91 02 91 2A") << "invalid array index";
    EXPECT_EQ(Ask("00 05 05 0C 0C 02 00 00 4D 19 4D 29 01"), "50 05 0C 91 02 91 32") << "not an array";
    EXPECT_EQ(Ask("00 05 06 0C 0C 00 00 00 01 19 55"), "50 06 0C 91 01 91 1F") << "unknown object";
    EXPECT_EQ(Ask("00 05 07 0C 0C 02 00 00 4D 19 55"), "50 07 0C 91 02 91 20") << "unknown property";
    EXPECT_EQ(Ask("00 05 08 0C 0C 02"), "60 08 04") << "invalid tag";
    EXPECT_EQ(Ask("00 05 09 0F 0C 02"), "60 09 09") << "unrecognized service";
    EXPECT_EQ(Ask("0C 05 0A 00 10 0C 0C 02"), "41 0A 00 10") << "the first of several segments";
}

TEST_F(OwnDeviceTest, AnswersReadPropertyMultiple) {
    // device 77: object-name, priority-array
    EXPECT_EQ(Ask("00 05 01 0E 0C 02 00 00 4D 1E 09 4D 09 57 1F"),
              "30 01 0E 0C 02 00 00 4D 1E 29 4D 4E 75 08 00 53 74 61 74 69 6F 6E 4F 29 57 5E 91 02 91 20 5F 1F");
    const std::string all = Ask("00 05 02 0E 0C 02 00 00 4D 1E 09 08 1F");
    EXPECT_EQ(all.substr(0, 8), "30 02 0E");
    EXPECT_NE(all.find("29 4D 4E 75 08"), std::string::npos);
    EXPECT_EQ(Ask("00 00 03 0E 0C 02 00 00 4D 1E 09 08 1F"), "71 03 04") << "too much for 50 octets";
}

TEST_F(OwnDeviceTest, IsNoDeviceWithoutAnInstance) {
    Restart({});
    EXPECT_EQ(Ask("00 05 01 0C 0C 02 3F FF FF 19 4B"), "60 01 09");
    m_link->Deliver(5, Hex("10 08"), true);
    EXPECT_EQ(Ask("00 05 02 0C 0C 02 3F FF FF 19 4B"), "60 02 09") << "and silent on Who-Is";
}

TEST_F(OwnDeviceTest, AnnouncesItself) {
    m_link->TakeSent();
    m_client->Announce();
    const auto sent = m_link->TakeSent();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(ToHex(sent[0].Npdu), "01 20 FF FF 00 FF 10 00 C4 02 00 00 4D 22 05 C4 91 02 22 01 04");
}

TEST_F(OwnDeviceTest, AnswersWhoHasByIdentifierAndByName) {
    // I-Have: device 77, device 77, "Station"
    const std::string have = "10 01 C4 02 00 00 4D C4 02 00 00 4D 75 08 00 53 74 61 74 69 6F 6E";
    EXPECT_EQ(Ask("10 07 2C 02 00 00 4D", true), have);
    EXPECT_EQ(Ask("10 07 3D 08 00 53 74 61 74 69 6F 6E", true), have);
    EXPECT_EQ(Ask("10 07 09 4D 19 4D 3D 08 00 53 74 61 74 69 6F 6E", true), have) << "with limits 77 and 77";
    EXPECT_EQ(Ask("10 07 3D 0F 04 00 53 00 74 00 61 00 74 00 69 00 6F 00 6E", true), have) << "in UCS-2";
    // Not its range, not its identifier, not its name, damaged: silence, and the next one is answered.
    for (const char* other : {"10 07 09 4E 19 4F 2C 02 00 00 4D", "10 07 2C 02 00 00 4E", "10 07 2C 00 00 00 4D",
                              "10 07 3D 08 00 73 74 61 74 69 6F 6E", "10 07", "10 07 2C 02 00 00",
                              "10 07 09 00 2C 02 00 00 4D", "10 07 2C 02 00 00 4D 00"})
        m_link->Deliver(5, Hex(other), true);
    EXPECT_EQ(Ask("10 07 2C 02 00 00 4D", true), have);
    EXPECT_TRUE(m_link->TakeSent().empty());
}

TEST_F(OwnDeviceTest, SaysWhichServicesItServes) {
    // protocol-services-supported: bits 12, 14, 26, 33, 34 of 41
    EXPECT_EQ(Ask("00 05 01 0C 0C 02 00 00 4D 19 61"),
              "30 01 0C 0C 02 00 00 4D 19 61 3E 85 07 07 00 0A 00 20 60 00 3F");
    // Every confirmed service beyond those is rejected as unrecognized, and so is what is no service.
    for (int service = 0; service < 256; ++service) {
        if (service == 12 || service == 14)
            continue;
        char request[16];
        std::snprintf(request, sizeof request, "00 05 07 %02X", static_cast<unsigned>(service));
        EXPECT_EQ(Ask(request), "60 07 09") << service;
    }
}

TEST_F(OwnDeviceTest, RejectsWhatItCannotUnderstandWithTheReason) {
    EXPECT_EQ(Ask("00 05 01 0C"), "60 01 05") << "missing parameter";
    EXPECT_EQ(Ask("00 05 02 0C 0C 02 00 00 4D"), "60 02 05");
    EXPECT_EQ(Ask("00 05 03 0C 0C 02 00 00 4D 19 4D 39 01"), "60 03 07") << "too many arguments";
    EXPECT_EQ(Ask("00 05 04 0C 1C 02 00 00 4D 19 4D"), "60 04 04") << "invalid tag";
    EXPECT_EQ(Ask("00 05 05 0E"), "60 05 05");
    EXPECT_EQ(Ask("00 05 06 0E 0C 02 00 00 4D 19 4D"), "60 06 04");
}

TEST_F(OwnDeviceTest, AnswersGroupsOfPropertiesAndFaultsOneByOne) {
    const std::string required = Ask("00 05 01 0E 0C 02 00 00 4D 1E 09 69 1F");
    const std::string optional = Ask("00 05 01 0E 0C 02 00 00 4D 1E 09 50 1F");
    EXPECT_NE(required.find("29 4D 4E 75 08"), std::string::npos) << "object-name";
    EXPECT_EQ(required.find("29 1C 4E"), std::string::npos) << "description is not required";
    EXPECT_EQ(optional, "30 01 0E 0C 02 00 00 4D 1E 29 1C 4E 71 00 4F 29 3A 4E 71 00 4F 1F")
        << "description and location, both empty";
    // analog-input 1: present-value and ALL; device 77: present-value, object-list[2], object-name
    EXPECT_EQ(Ask("00 05 02 0E 0C 00 00 00 01 1E 09 55 09 08 1F 0C 02 00 00 4D 1E 09 55 09 4C 19 02 09 4D 1F"),
              "30 02 0E 0C 00 00 00 01 1E 29 55 5E 91 01 91 1F 5F 29 08 5E 91 01 91 1F 5F 1F "
              "0C 02 00 00 4D 1E 29 55 5E 91 02 91 20 5F 29 4C 39 02 5E 91 02 91 2A 5F "
              "29 4D 4E 75 08 00 53 74 61 74 69 6F 6E 4F 1F");
    EXPECT_EQ(Ask("00 05 03 0E 0C 02 3F FF FF 1E 09 4B 1F"), "30 03 0E 0C 02 00 00 4D 1E 29 4B 4E C4 02 00 00 4D 4F 1F")
        << "by the wildcard";
}

TEST_F(OwnDeviceTest, EveryPropertyItListsCanBeRead) {
    // property-list, then each of its elements
    Octets list = Hex(Ask("00 05 01 0C 0C 02 00 00 4D 1A 01 73").c_str());
    ASSERT_GT(list.size(), 14U);
    std::vector<unsigned> listed;
    for (std::size_t at = 12; at + 1 < list.size(); ++at) { // behind 3E
        const std::size_t length = list[at] & 0x07U;
        unsigned value = 0;
        for (std::size_t i = 1; i <= length; ++i)
            value = value << 8 | list.at(at + i);
        listed.push_back(value);
        at += length;
    }
    EXPECT_GE(listed.size(), 20U);
    for (const unsigned property : listed) {
        char request[64];
        std::snprintf(request, sizeof request, "00 05 02 0C 0C 02 00 00 4D 1A %02X %02X", property >> 8,
                      property & 0xFF);
        EXPECT_EQ(Ask(request).substr(0, 8), "30 02 0C") << property;
    }
}

TEST_F(OwnDeviceTest, TakesANewIdentityAndAnnouncesIt) {
    m_link->TakeSent();
    m_client->SetIdentity(77, "Station");
    EXPECT_TRUE(m_link->TakeSent().empty()) << "nothing new";
    m_client->SetIdentity(78, "Annex");
    const auto sent = m_link->TakeSent();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(ToHex(sent[0].Npdu), "01 20 FF FF 00 FF 10 00 C4 02 00 00 4E 22 05 C4 91 02 22 01 04");
    // object-name; database-revision has gone up
    EXPECT_EQ(Ask("00 05 01 0C 0C 02 3F FF FF 19 4D"), "30 01 0C 0C 02 00 00 4E 19 4D 3E 75 06 00 41 6E 6E 65 78 3F");
    EXPECT_EQ(Ask("00 05 02 0C 0C 02 00 00 4E 19 9B"), "30 02 0C 0C 02 00 00 4E 19 9B 3E 21 02 3F");
    EXPECT_EQ(Ask("00 05 03 0C 0C 02 00 00 4D 19 4D"), "50 03 0C 91 01 91 1F") << "the former one is gone";
    m_client->SetIdentity(4194303, "Annex");
    EXPECT_TRUE(m_link->TakeSent().empty()) << "the instance that is none";
    EXPECT_EQ(Ask("00 05 04 0C 0C 02 3F FF FF 19 4B"), "60 04 09");
}

TEST_F(OwnDeviceTest, IsNotDisturbedByHostileRequests) {
    std::uint32_t state = 7;
    const auto random = [&state] {
        state = state * 1664525 + 1013904223;
        return static_cast<std::uint8_t>(state >> 24);
    };
    const Octets multiple = Hex("00 05 02 0E 0C 02 00 00 4D 1E 09 08 09 4D 19 01 1F");
    for (int i = 0; i < 2000; ++i) {
        Octets request = i % 2 == 0 ? multiple : Hex("10 07 09 00 1B 3F FF FF 3D 08 00 53 74 61 74 69 6F 6E");
        for (int change = i % 3; change >= 0; --change)
            request[4 + random() % (request.size() - 4)] = random();
        request.resize(4 + random() % (request.size() - 3));
        m_link->Deliver(5, request, i % 2 != 0);
    }
    m_link->Deliver(6, Hex("00 05 63 0C 0C 02 00 00 4D 19 4B"));
    std::string last;
    for (int i = 0; i < 2500 && last != "30 63 0C 0C 02 00 00 4D 19 4B 3E C4 02 00 00 4D 3F"; ++i) {
        for (const auto& sent : m_link->TakeSent())
            if (sent.Destination == ScriptedLink::Mac(6))
                last = ToHex(std::span(sent.Npdu).subspan(2));
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    EXPECT_EQ(last, "30 63 0C 0C 02 00 00 4D 19 4B 3E C4 02 00 00 4D 3F");
}

} // namespace
