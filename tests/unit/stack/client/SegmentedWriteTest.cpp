// Requests that are too long for one APDU: what is asked of a device before, and what it gets.
#include "platform/stack/network/Apdu.h"
#include "tests/unit/stack/client/ClientFixture.h"

#include <map>
#include <string>

namespace {

using bacnet::Apdu;
using bacnet::PduType;

constexpr BACSTAC_OBJECT_ID characterString{40, 1};
constexpr std::uint32_t BOTH = 0;
constexpr std::uint32_t RECEIVE = 2;
constexpr std::uint32_t NONE = 3;

// A device with a Device object of which these properties can be read; it puts segments together, and acknowledges
// whole writes.
class LongWrites : public ClientFixture {
protected:
    void Serve(std::map<std::uint8_t, std::string> deviceProperties) {
        m_link->SetDevice(1, [this, properties = std::move(deviceProperties)](const Octets& octets) {
            std::vector<Octets> answers;
            Apdu request;
            if (DecodeApdu(octets, request) != bacnet::ApduError::none || request.Type != PduType::confirmed_request)
                return answers;
            if (request.Service == 12) { // ReadProperty: the property is the last octet
                m_events += "ask " + std::to_string(octets.back()) + " of " +
                            ToHex(Octets(octets.begin() + 5, octets.begin() + 9)) + "; ";
                const auto property = properties.find(octets.back());
                if (property == properties.end()) // unknown property
                    answers.push_back(WithId(Hex("50 00 0C 91 02 91 20"), octets));
                else if (property->second != "silence")
                    answers.push_back(Ack(octets, [&] {
                        Octets result(octets.begin() + 4, octets.end());
                        for (const std::uint8_t octet : Hex("3E" + property->second + "3F"))
                            result.push_back(octet);
                        return result;
                    }()));
                return answers;
            }
            if (request.Segmented) {
                m_events += std::to_string(request.SequenceNumber) + " ";
                m_written.insert(m_written.end(), request.Payload.begin(), request.Payload.end());
                answers.push_back({0x41, request.InvokeId, request.SequenceNumber, 1});
            } else {
                m_events += "whole ";
                m_written.assign(request.Payload.begin(), request.Payload.end());
            }
            if (!request.MoreFollows)
                answers.push_back({0x20, request.InvokeId, request.Service});
            return answers;
        });
    }
    void Announce(std::uint32_t maxApdu, std::uint32_t segmentation) {
        BACSTAC_ADDRESS former{};
        m_client->Directory().Learn({DeviceAt(1), maxApdu, segmentation, 260}, Address(1), former);
    }
    // Writes so many characters; the status.
    BACSTAC_STATUS Write(std::size_t characters) {
        m_written.clear();
        m_text.assign(characters, 'x');
        for (std::size_t i = 0; i < characters; ++i)
            m_text[i] = static_cast<char>('a' + i % 26);
        const BACSTAC_PROPERTY_CONTENTS contents{TYPE_STRING, m_text.data(), static_cast<unsigned>(m_text.size() + 1),
                                                 1};
        return m_client->WriteProperty(DeviceAt(1), characterString, 85, -1, -1, contents, nullptr);
    }
    bool WroteTheText() const {
        return std::string(m_written.begin(), m_written.end()).find(m_text) != std::string::npos;
    }

    std::string m_events; // on the sending thread, which is the test's
    Octets m_written;
    std::string m_text;
};

TEST_F(LongWrites, ADeviceThatReceivesSegmentsIsAskedHowManyAndGetsThem) {
    Serve({{167, "21 10"}});
    Announce(50, RECEIVE);
    EXPECT_EQ(Write(100), BACSTAC_OK);
    EXPECT_EQ(m_events, "ask 167 of 02 00 00 65; 0 1 2 ");
    EXPECT_TRUE(WroteTheText());
    m_events.clear();
    EXPECT_EQ(Write(60), BACSTAC_OK);
    EXPECT_EQ(m_events, "0 1 ") << "asked once";
    m_events.clear();
    EXPECT_EQ(Write(20), BACSTAC_OK);
    EXPECT_EQ(m_events, "whole ");
}

TEST_F(LongWrites, ADeviceThatDoesNotGetsNothing) {
    Serve({});
    for (const std::uint32_t segmentation : {NONE, std::uint32_t{1}, std::uint32_t{77}}) {
        Announce(50, segmentation);
        EXPECT_EQ(Write(100), BACSTAC_STATUS_TOO_LONG);
    }
    EXPECT_EQ(m_events, "");
}

TEST_F(LongWrites, MoreSegmentsThanItTakesAreNotSent) {
    Serve({{167, "21 02"}});
    Announce(50, BOTH);
    EXPECT_EQ(Write(100), BACSTAC_STATUS_TOO_LONG);
    EXPECT_EQ(Write(60), BACSTAC_OK);
    EXPECT_EQ(m_events, "ask 167 of 02 00 00 65; 0 1 ");
}

TEST_F(LongWrites, ADeviceThatDoesNotSayHowManyGetsWhatThereIs) {
    Serve({});
    Announce(50, BOTH);
    EXPECT_EQ(Write(400), BACSTAC_OK);
    EXPECT_TRUE(WroteTheText());
}

TEST_F(LongWrites, ADeviceThatNeverAnnouncedItselfIsAskedForAllOfIt) {
    Serve({{62, "22 00 C8"}, {107, "91 00"}, {167, "21 20"}});
    Announce(0, bacnet::LiveDirectory::NOT_TOLD);
    EXPECT_EQ(Write(100), BACSTAC_OK);
    EXPECT_EQ(m_events, "whole ") << "what all devices take in one piece is not worth a question";
    m_events.clear();
    EXPECT_EQ(Write(500), BACSTAC_OK);
    EXPECT_EQ(m_events, "ask 62 of 02 00 00 65; ask 107 of 02 00 00 65; ask 167 of 02 00 00 65; 0 1 2 ");
    EXPECT_TRUE(WroteTheText());
}

TEST_F(LongWrites, NonsenseInTheDeviceObjectIsAsGoodAsNothing) {
    Serve({{62, "44 3F C0 00 00"}, {107, "75 03 00 41 42"}});
    Announce(0, bacnet::LiveDirectory::NOT_TOLD);
    EXPECT_EQ(Write(500), BACSTAC_OK);
    EXPECT_EQ(m_events, "ask 62 of 02 00 00 65; ask 107 of 02 00 00 65; whole ");
}

TEST_F(LongWrites, SilenceToTheQuestionIsATimeOut) {
    Serve({{167, "silence"}});
    Announce(50, BOTH);
    EXPECT_EQ(Write(100), BACSTAC_STATUS_TIMEOUT);
    EXPECT_EQ(m_events, "ask 167 of 02 00 00 65; ask 167 of 02 00 00 65; ") << "no segment is sent";
    Serve({{167, "21 20"}});
    EXPECT_EQ(Write(100), BACSTAC_OK) << "and is asked again the next time";
}

} // namespace
