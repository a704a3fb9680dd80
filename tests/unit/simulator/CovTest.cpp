// Subscriptions to changes of value, octet by octet.
#include "simulator/server/Services.h"
#include "tests/unit/simulator/Site.h"

namespace sim::testing {
namespace {

constexpr BACSTAC_OBJECT_ID INPUT{OBJ_ANALOG_INPUT, 1};
constexpr BACSTAC_OBJECT_ID STATES{OBJ_MULTI_STATE_VALUE, 2};
constexpr BACSTAC_OBJECT_ID DEVICE{OBJ_DEVICE, 1234};

class Cov : public ::testing::Test {
protected:
    void SetUp() override {
        m_config.Instance = 1234;
        ObjectConfig input;
        input.Id = INPUT;
        input.Properties.emplace_back(PROP_PRESENT_VALUE, Value::Real(20));
        input.Properties.emplace_back(PROP_COV_INCREMENT, Value::Real(0.5F));
        ObjectConfig states;
        states.Id = STATES;
        states.Properties.emplace_back(PROP_PRESENT_VALUE, Value::Unsigned(1));
        m_config.Objects = {input, states};
        m_dut = std::make_unique<Device>(m_config, [this] { return m_now; });
    }
    // "done", "error 1 31" or "reject 4".
    std::string Ask(bacnet::ConfirmedService service, const std::string& parameters) {
        static Scratch scratch;
        const auto lock = m_dut->Lock();
        const Outcome outcome = Serve(*m_dut, service, Hex(parameters), {1476, false}, scratch, m_from);
        if (outcome.What == Outcome::Kind::done)
            return "done";
        return outcome.What == Outcome::Kind::error
                   ? "error " + std::to_string(outcome.Class) + " " + std::to_string(outcome.Code)
                   : "reject " + std::to_string(outcome.Code);
    }
    std::string Subscribe(const std::string& parameters) {
        return Ask(bacnet::ConfirmedService::subscribeCov, parameters);
    }
    std::string SubscribeProperty(const std::string& parameters) {
        return Ask(bacnet::ConfirmedService::subscribeCovProperty, parameters);
    }
    std::vector<std::string> Told() {
        std::vector<std::string> all;
        for (const Message& message : m_dut->TakeMessages())
            all.push_back(std::string(message.Confirmed ? "confirmed " : "") +
                          ToHex(std::span(reinterpret_cast<const std::uint8_t*>(message.Parameters.data()),
                                          message.Parameters.size())));
        return all;
    }
    void Set(BACSTAC_OBJECT_ID id, const Value& value) { m_dut->SetProperty(id, PROP_PRESENT_VALUE, value); }
    void Pass(unsigned seconds) {
        m_now += seconds * HUNDREDTHS_PER_SECOND;
        m_dut->Run();
    }
    std::string Active() {
        std::uint8_t octets[512];
        bacnet::Writer writer(octets);
        EXPECT_TRUE(m_dut->Find(DEVICE)->Read(PROP_ACTIVE_COV_SUBSCRIPTIONS, WHOLE, writer).Ok());
        return ToHex(writer.Written());
    }

    LocalTime m_now = 178'000'000'000;
    Requester m_from{{0x7F010203, 47808}, 0, {}};
    DeviceConfig m_config;
    std::unique_ptr<Device> m_dut;
};

// Process 5, analog input 1, unconfirmed, 60 seconds.
const char SUBSCRIPTION[] = "09 05 1C 00 00 00 01 29 00 39 3C";

std::string Told20(const std::string& remaining) {
    return "09 05 1C 02 00 04 D2 2C 00 00 00 01 " + remaining +
           " 4E 09 55 2E 44 41 A0 00 00 2F 09 6F 2E 82 04 00 2F 4F";
}

TEST_F(Cov, TellsAtOnceAndThenWhatMovesByTheIncrement) {
    EXPECT_EQ(Subscribe(SUBSCRIPTION), "done");
    EXPECT_EQ(Told(), (std::vector<std::string>{Told20("39 3C")}));
    Set(INPUT, Value::Real(20.4F));
    EXPECT_TRUE(Told().empty());
    Pass(10);
    Set(INPUT, Value::Real(20.5F));
    EXPECT_EQ(Told(), (std::vector<std::string>{"09 05 1C 02 00 04 D2 2C 00 00 00 01 39 32 4E 09 55 2E 44 41 A4 00 00 "
                                                "2F 09 6F 2E 82 04 00 2F 4F"}));
    Set(INPUT, Value::Real(20.1F));
    EXPECT_TRUE(Told().empty());
}

TEST_F(Cov, TellsOfStatusFlagsAndOfEachStateOfOthers) {
    EXPECT_EQ(Subscribe("09 05 1C 04 C0 00 02 29 01 39 00"), "done"); // confirmed, for good
    EXPECT_EQ(Told().size(), 1U);
    Set(STATES, Value::Unsigned(2));
    EXPECT_EQ(Told(), (std::vector<std::string>{"confirmed 09 05 1C 02 00 04 D2 2C 04 C0 00 02 39 00 4E 09 55 2E 21 02 "
                                                "2F 09 6F 2E 82 04 00 2F 4F"}));
    const Value on = Value::Boolean(true);
    {
        const auto lock = m_dut->Lock();
        EXPECT_TRUE(m_dut->Write(STATES, {PROP_OUT_OF_SERVICE, WHOLE, on.Wire(), PRIORITIES}).Ok());
    }
    EXPECT_EQ(Told(), (std::vector<std::string>{"confirmed 09 05 1C 02 00 04 D2 2C 04 C0 00 02 39 00 4E 09 55 2E 21 02 "
                                                "2F 09 6F 2E 82 04 10 2F 4F"}));
    m_dut->SetProperty(STATES, PROP_DESCRIPTION, Value::String("text"));
    EXPECT_TRUE(Told().empty());
}

TEST_F(Cov, EndsWithItsLifetimeAndByCancelling) {
    EXPECT_EQ(Subscribe(SUBSCRIPTION), "done");
    EXPECT_TRUE(m_dut->IsAtWork());
    Pass(59);
    EXPECT_EQ(Subscribe(SUBSCRIPTION), "done"); // renewed
    Pass(59);
    EXPECT_NE(Active(), "");
    Pass(1);
    EXPECT_EQ(Active(), "");
    EXPECT_EQ(Subscribe(SUBSCRIPTION), "done");
    EXPECT_EQ(Subscribe("09 05 1C 00 00 00 01"), "done");
    EXPECT_EQ(Active(), "");
    EXPECT_EQ(Subscribe("09 05 1C 00 00 00 01"), "done"); // nothing to cancel
    EXPECT_EQ(Told().size(), 3U);
}

TEST_F(Cov, IsListedBySubscriberAndProcess) {
    EXPECT_EQ(Subscribe(SUBSCRIPTION), "done");
    EXPECT_EQ(Active(), "0E 0E 1E 21 00 65 06 7F 01 02 03 BA C0 1F 0F 19 05 0F "
                        "1E 0C 00 00 00 01 19 55 1F 29 00 39 3C");
    m_from = {m_from.Link, 9, bacnet::MacAddress(Octets{0x21})};
    EXPECT_EQ(Subscribe(SUBSCRIPTION), "done");
    EXPECT_EQ(Told().size(), 2U);
    Set(INPUT, Value::Real(30));
    EXPECT_EQ(m_dut->TakeMessages().at(1).To.Address, (BACSTAC_ADDRESS{1, 0, 9, {0x21}, 1}));
}

TEST_F(Cov, OfAPropertyHasItsOwnIncrement) {
    // Present value of the input with an increment of 2; element 3 of the state texts.
    EXPECT_EQ(SubscribeProperty("09 06 1C 00 00 00 01 29 00 39 00 4E 09 55 4F 5C 40 00 00 00"), "done");
    EXPECT_EQ(SubscribeProperty("09 06 1C 04 C0 00 02 29 00 39 00 4E 09 6E 19 03 4F"), "done");
    const auto first = Told();
    ASSERT_EQ(first.size(), 2U);
    EXPECT_EQ(first[1], "09 06 1C 02 00 04 D2 2C 04 C0 00 02 39 00 4E 09 6E 19 03 2E 75 05 00 68 69 67 68 2F 09 6F 2E "
                        "82 04 00 2F 4F");
    Set(INPUT, Value::Real(21.9F));
    EXPECT_TRUE(Told().empty());
    Set(INPUT, Value::Real(22));
    EXPECT_EQ(Told().size(), 1U);
    EXPECT_EQ(SubscribeProperty("09 06 1C 00 00 00 01 4E 09 55 4F"), "done"); // cancelled
    Set(INPUT, Value::Real(30));
    EXPECT_TRUE(Told().empty());
}

TEST_F(Cov, RefusesWhatCannotBeWatched) {
    EXPECT_EQ(Subscribe("09 05 1C 00 00 00 63 29 00 39 00"), "error 1 31");
    EXPECT_EQ(Subscribe("09 05 1C 02 00 04 D2 29 00 39 00"), "error 1 45"); // the device has no present value
    EXPECT_EQ(SubscribeProperty("09 05 1C 00 00 00 01 29 00 39 00 4E 19 00 4F"), "reject 4");
    EXPECT_EQ(SubscribeProperty("09 05 1C 00 00 00 01 29 00 39 00 4E 0A 03 00 4F"), "error 2 32");
    EXPECT_EQ(Subscribe("09 05 1C 00 00 00 01 39 3C"), "reject 5"); // a lifetime alone
    EXPECT_EQ(Subscribe("09 05"), "reject 4");
    EXPECT_EQ(Subscribe(""), "reject 5");
    EXPECT_TRUE(Told().empty());
}

TEST_F(Cov, ForgetsObjectsThatAreGone) {
    EXPECT_EQ(Subscribe(SUBSCRIPTION), "done");
    EXPECT_TRUE(m_dut->RemoveObject(INPUT));
    EXPECT_EQ(Active(), "");
    EXPECT_FALSE(m_dut->IsAtWork());
}

TEST(CovOverTheNetwork, FollowsTheAcknowledgement) {
    RunningSite site;
    site.Config.Devices = {SmallDevice(site.Block)};
    site.Start();
    EXPECT_EQ(site.Ask("00 05 01 05 09 05 1C 04 C0 00 02 29 01 39 3C"), "20 01 05");
    EXPECT_EQ(site.NextApdu(), "00 05 00 01 09 05 1C 02 00 04 D2 2C 04 C0 00 02 39 3C 4E 09 55 2E 21 03 2F 09 6F 2E 82 "
                               "04 00 2F 4F");
    site.Me().Send(site.DeviceAddress(), Unicast("20 00 01"));
    EXPECT_EQ(site.Ask("00 05 02 0F 0C 04 C0 00 02 19 55 3E 21 02 3F"), "20 02 0F");
    EXPECT_EQ(site.NextApdu().substr(0, 11), "00 05 01 01");
}

} // namespace
} // namespace sim::testing
