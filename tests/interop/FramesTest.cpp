// What the client and the devices say, as an independent decoder reads it. Every test also has each of its frames
// decoded without a mark of malformation.
#include "tests/interop/RecordedSite.h"

#include "api/bacnet/Enums.h"
#include "platform/stack/services/ServiceChoice.h"

#include <algorithm>

namespace interop {
namespace {

using bacnet::ConfirmedService;
using Values = std::vector<std::string>;

std::string Number(unsigned number) {
    return std::to_string(number);
}

class DecodedFrames : public RecordedSite {
protected:
    BACSTAC_STATUS ReadName(unsigned device, const BACSTAC_OBJECT_ID& object) {
        char name[256] = {};
        BACSTAC_ERROR error{};
        return Client().ReadProperty(device, object, PROP_OBJECT_NAME, BACSTAC_NO_INDEX, name, sizeof name, &error);
    }
    BACSTAC_STATUS ReadRecords(unsigned device, const BACSTAC_OBJECT_ID& log, const BACSTAC_READ_RANGE_SPEC* spec) {
        BACSTAC_PROPERTY_CONTENTS contents{-1, m_buffer.data(), static_cast<std::uint32_t>(m_buffer.size()), 0};
        BACSTAC_BIT_STRING flags{};
        BACSTAC_ERROR error{};
        unsigned first = 0;
        const BACSTAC_STATUS status =
            Client().ReadRange(device, log, PROP_LOG_BUFFER, BACSTAC_NO_INDEX, spec, &flags, &contents, &error, &first);
        m_records.push_back(contents.ElementCount);
        m_flags.emplace_back();
        for (unsigned bit = 0; bit < flags.BitCount; ++bit)
            m_flags.back() += (flags.Bits[bit / 8] >> bit % 8 & 1) != 0 ? 'T' : 'F';
        return status;
    }

    std::vector<std::uint8_t> m_buffer = std::vector<std::uint8_t>(BACSTAC_CONTENTS_SIZE);
    // Of each answer to ReadRecords, as the client decoded it.
    std::vector<std::uint32_t> m_records;
    std::vector<std::string> m_flags; // "TTF": first item, last item, more items
};

TEST_F(DecodedFrames, DiscoveryHasItsLimitsAndDevices) {
    Values whoIs;
    Values devices;
    for (const Frame& frame : Frames()) {
        if (frame.First("bacapp.unconfirmed_service") == "8")
            whoIs = {frame.First("bacapp.who_is.low_limit"), frame.First("bacapp.who_is.high_limit")};
        if (frame.First("bacapp.unconfirmed_service") == "0")
            devices.push_back(frame.First("bacapp.instance_number"));
    }
    std::ranges::sort(devices);
    EXPECT_EQ(whoIs, (Values{"1000", "1003"}));
    EXPECT_EQ(devices, (Values{"1000", "1001", "1002", "1003"}));
}

TEST_F(DecodedFrames, ReadPropertyIsAnsweredWithAckErrorRejectAndAbort) {
    EXPECT_EQ(ReadName(IP_DEVICE, {OBJ_DEVICE, IP_DEVICE}), BACSTAC_OK);
    EXPECT_EQ(ReadName(ROUTED_DEVICE, {OBJ_DEVICE, ROUTED_DEVICE}), BACSTAC_OK);
    EXPECT_EQ(ReadName(IP_DEVICE, {OBJ_ANALOG_INPUT, 99999}), BACSTAC_STATUS_ERROR);
    Device(IP_DEVICE).SetFault(sim::Fault::Reject(9));
    EXPECT_EQ(ReadName(IP_DEVICE, {OBJ_DEVICE, IP_DEVICE}), BACSTAC_STATUS_REJECT);
    Device(IP_DEVICE).SetFault(sim::Fault::Abort(1));
    EXPECT_EQ(ReadName(IP_DEVICE, {OBJ_DEVICE, IP_DEVICE}), BACSTAC_STATUS_ABORT);

    const std::vector<Frame> requests = Requests(static_cast<int>(ConfirmedService::readProperty));
    ASSERT_EQ(requests.size(), 5U);
    Values instances;
    Values properties;
    Values kinds;
    for (const Frame& request : requests) {
        instances.push_back(request.First("bacapp.instance_number"));
        properties.push_back(request.First("bacapp.property_identifier"));
        const std::vector<Frame> answers = Answers(request);
        kinds.push_back(answers.empty() ? "none" : answers.front().First("bacapp.type"));
    }
    EXPECT_EQ(instances,
              (Values{Number(IP_DEVICE), Number(ROUTED_DEVICE), "99999", Number(IP_DEVICE), Number(IP_DEVICE)}));
    EXPECT_EQ(properties, Values(5, Number(PROP_OBJECT_NAME)));
    EXPECT_EQ(kinds, (Values{"3", "3", "5", "6", "7"}));
    EXPECT_EQ(requests[1].First("bacnet.dnet"), "7");
}

TEST_F(DecodedFrames, ReadRangeOfEveryKindAndInSegments) {
    BACSTAC_READ_RANGE_SPEC spec{};
    for (const BACSTAC_OBJECT_ID& log : {TREND, MULTIPLE}) {
        EXPECT_EQ(ReadRecords(WEAK_DEVICE, log, nullptr), BACSTAC_OK);
        spec.Kind = BACSTAC_RANGE_BY_POSITION;
        spec.ByIndex = {1, 5};
        EXPECT_EQ(ReadRecords(IP_DEVICE, log, &spec), BACSTAC_OK);
        spec.Kind = BACSTAC_RANGE_BY_SEQUENCE;
        spec.ByIndex = {40, -3};
        EXPECT_EQ(ReadRecords(IP_DEVICE, log, &spec), BACSTAC_OK);
        spec.ByTime = {};
        spec.ByTime.Reference = {{2026, 0, 1, 1, 4}, {0, 5, 0, 0}};
        spec.ByTime.Count = 4;
        spec.Kind = BACSTAC_RANGE_BY_TIME;
        EXPECT_EQ(ReadRecords(ROUTED_DEVICE, log, &spec), BACSTAC_OK);
        spec.Kind = BACSTAC_RANGE_BY_TIME_2001;
        EXPECT_EQ(ReadRecords(OLD_DEVICE, log, &spec), BACSTAC_OK);
    }
    const std::vector<Frame> requests = Requests(static_cast<int>(ConfirmedService::readRange));
    ASSERT_EQ(requests.size(), m_records.size());
    for (std::size_t i = 0; i < requests.size(); ++i) {
        const std::vector<Frame> answers = Answers(requests[i]);
        ASSERT_FALSE(answers.empty()) << "request " << i;
        EXPECT_EQ(requests[i].First("bacapp.property_identifier"), Number(PROP_LOG_BUFFER));
        EXPECT_EQ(requests[i].First("bacapp.objectType"), Number(i < 5 ? OBJ_TREND_LOG : OBJ_TREND_LOG_MULTIPLE));
        EXPECT_TRUE(answers.back().Shows("item Count: (Unsigned) " + Number(m_records[i])))
            << "request " << i << ", " << m_records[i] << " records were decoded here";
        EXPECT_TRUE(answers.back().Shows("resultFlags: (Bit String) (" + m_flags[i] + ")"))
            << "request " << i << ", the flags are " << m_flags[i] << " here";
    }
    EXPECT_GT(Answers(requests[0]).size(), 2U) << "a long answer to a device of short APDUs has segments";
}

} // namespace
} // namespace interop
