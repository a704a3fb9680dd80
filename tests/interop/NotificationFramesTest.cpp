// What simulated devices send by themselves, as an independent decoder reads it.
#include "simulator/model/Device.h"
#include "tests/interop/Recording.h"
#include "tests/unit/simulator/EventAlgorithms.h"
#include "tests/unit/simulator/Station.h"

#include <gtest/gtest.h>

namespace interop {
namespace {

using sim::Value;

constexpr BACSTAC_OBJECT_ID SOURCE{OBJ_ANALOG_VALUE, 1};
constexpr BACSTAC_OBJECT_ID ENROLLMENT{OBJ_EVENT_ENROLLMENT, 1};
constexpr sim::LocalTime NOW = 178'000'000'000; // 2026-05-28

sim::ObjectConfig Object(BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property, const Value& value) {
    sim::ObjectConfig object;
    object.Id = id;
    object.Properties.emplace_back(property, value);
    return object;
}

Value Encoded(const std::string& hex) {
    return Value::Encoded(sim::testing::Hex(hex));
}

// A device with an enrollment by the algorithm, and two recipients: confirmed and unconfirmed.
sim::DeviceConfig DeviceWith(const sim::testing::Algorithm& algorithm) {
    sim::DeviceConfig device;
    device.Instance = 7;
    device.Objects.push_back(Object(SOURCE, PROP_PRESENT_VALUE, algorithm.Steps[0].Present));
    device.Objects.push_back(Object({OBJ_ANALOG_VALUE, 2}, PROP_PRESENT_VALUE, Value::Real(20)));
    const std::string always = "82 01 FE B4 00 00 00 00 B4 17 3B 3B 63 0C 02 00 00 4D 21 05 ";
    const Value recipients[] = {Encoded(always + "11 82 05 E0"), Encoded(always + "10 82 05 E0")};
    device.Objects.push_back(
        Object({sim::OBJ_NOTIFICATION_CLASS, 1}, sim::PROP_RECIPIENT_LIST, Value::List(recipients)));
    sim::ObjectConfig enrollment =
        Object(ENROLLMENT, sim::PROP_OBJECT_PROPERTY_REFERENCE, Encoded("0C 00 80 00 01 19 55"));
    enrollment.Properties.emplace_back(sim::PROP_EVENT_PARAMETERS, Encoded(algorithm.Parameters));
    enrollment.Properties.emplace_back(sim::PROP_EVENT_TYPE, Value::Enumerated(algorithm.Type));
    device.Objects.push_back(enrollment);
    return device;
}

// Goes through all states of the algorithm, a fault and an acknowledgement.
void Provoke(sim::Device& device, const sim::testing::Algorithm& algorithm) {
    for (const sim::testing::Step& step : algorithm.Steps)
        device.SetProperty(SOURCE, PROP_PRESENT_VALUE, step.Present);
    device.AcknowledgeEvent(ENROLLMENT, sim::Transition::toOffnormal, "me");
    device.SetProperty(ENROLLMENT, sim::PROP_RELIABILITY, Value::Enumerated(7));
}

TEST(NotificationFrames, OfEveryAlgorithmAreReadWithoutObjection) {
    if (!HasDecoder())
        GTEST_SKIP() << "no decoder on this machine";
    Recording recording;
    for (const sim::testing::Algorithm& algorithm : sim::testing::Algorithms()) {
        sim::Device device(DeviceWith(algorithm), [] { return NOW; });
        Provoke(device, algorithm);
        const auto messages = device.TakeMessages();
        EXPECT_GE(messages.size(), 6U) << algorithm.Name;
        for (const sim::Message& message : messages) {
            bacnet::Apdu header;
            header.Type = message.Confirmed ? bacnet::PduType::confirmed_request : bacnet::PduType::unconfirmed_request;
            header.Service = message.Service;
            header.MaxApduCode = 5;
            recording.AddApdu(header, std::span(reinterpret_cast<const std::uint8_t*>(message.Parameters.data()),
                                                message.Parameters.size()));
        }
    }
    const auto frames = recording.DecodeAll();
    ASSERT_EQ(frames.size(), recording.Count());
    for (const Frame& frame : frames)
        EXPECT_EQ(Objection(frame), "") << frame.Text();
}

} // namespace
} // namespace interop
