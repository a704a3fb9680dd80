// Copy and paste of a hundred properties by the commands of the browser.
#include "bench/BareExchange.h"
#include "bench/Harness.h"
#include "bench/PingPong.h"
#include "bench/Rate.h"
#include "bench/Site.h"

#include "module/browser/LocaleOrder.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/ReadPropertyMultiple.h"
#include "platform/stack/services/WriteProperty.h"
#include "tests/support/FakeDriver.h"
#include "tests/support/FakeKernel.h"
#include "tests/support/FakeOperator.h"
#include "tests/support/FakePropertyWindow.h"

#include <array>
#include <functional>
#include <memory>
#include <numeric>

namespace bench {
namespace {

constexpr double kSeconds = 1.0;
constexpr double kFloor = 0.5;
constexpr BACSTAC_OBJECT_ID kPoint{OBJ_ANALOG_INPUT, 1};
constexpr BACSTAC_PROPERTY_ID kFirst = 1000; // proprietary ones behind one another
constexpr unsigned kProperties = 100;

sim::SimulatorConfig OneLargePoint() {
    sim::SimulatorConfig config = OneDevice(1);
    for (unsigned i = 0; i < kProperties; ++i)
        config.Devices[0].Objects[0].Properties.emplace_back(kFirst + i, sim::Value::Real(static_cast<float>(i)));
    return config;
}

Datagram BareRead() {
    std::array<std::uint8_t, 1400> parameters{};
    bacnet::Writer writer(parameters);
    bacnet::RpmRequestWriter list(writer);
    for (unsigned i = 0; i < kProperties; ++i)
        list.Add({kPoint, kFirst + i, BACSTAC_NO_INDEX});
    list.Finish();
    return BareRequest(bacnet::ConfirmedService::readPropertyMultiple, writer.Written());
}

Datagram BareWrite() {
    std::array<std::uint8_t, 1400> parameters{};
    bacnet::Writer writer(parameters);
    bacnet::BeginWriteObject(kPoint, writer);
    for (unsigned i = 0; i < kProperties; ++i) {
        bacnet::BeginPropertyValue(kFirst + i, BACSTAC_NO_INDEX, writer);
        writer.Real(static_cast<float>(i));
        bacnet::EndPropertyValue(BACSTAC_NO_PRIORITY, writer);
    }
    bacnet::EndWriteObject(writer);
    return BareRequest(bacnet::ConfirmedService::writePropertyMultiple, writer.Written());
}

class NoQueue final : public IGuiQueue {
public:
    void Post(std::function<void()>) override {}
};

// The commands on an object whose hundred rows are selected.
class Commands {
public:
    Commands(CBacGeneral& bacnet, unsigned device) : m_bacnet(bacnet) {
        TreeItem* parent = nullptr;
        const std::array<std::pair<TreeKind, std::uint32_t>, 4> levels{{{TreeKind::Network, 0},
                                                                        {TreeKind::Device, device},
                                                                        {TreeKind::Type, kPoint.Type},
                                                                        {TreeKind::Object, kPoint.Instance}}};
        for (std::size_t i = 0; i < levels.size(); ++i) {
            std::tie(m_items[i].kind, m_items[i].value) = levels[i];
            m_items[i].parent = std::exchange(parent, &m_items[i]);
        }
        m_window.m_selected = parent;
        m_window.m_rows.resize(kProperties);
        std::iota(m_window.m_rows.begin(), m_window.m_rows.end(), kFirst);
    }
    // The rate of a command, all of whose runs end with these events.
    double Rate(void (CPropertyCommands::*command)(), const CEventList::Lines& events) {
        return CallRate(kSeconds, [&] {
            (m_commands.*command)();
            if (m_events.Take() != events)
                Fail("the command has failed");
        });
    }
    void Copy() { m_commands.Copy(); }

private:
    CBacGeneral& m_bacnet;
    CEventList m_events;
    CEventList m_asked; // of the driver
    CFakeKernel m_kernel{m_asked};
    CFakeDriver m_driver{m_asked, m_kernel};
    CFakeOperator m_operator{m_events};
    CFakePropertyWindow m_window{m_events};
    CLocaleOrder m_order;
    CObjBrowser m_browser{{m_bacnet, m_driver.GetIdentity(), m_order, std::make_shared<NoQueue>()}, m_window};
    CPropertyCommands m_commands{{m_bacnet, m_browser, m_window, m_window, m_operator}};
    std::array<TreeItem, 4> m_items;
};

// The device has a processor of its own.
Sample CommandRate(const std::function<double(Commands&)>& measure, const Datagram& bare) {
    const sim::SimulatorConfig config = OneLargePoint();
    const SimulatedSite site(config, kTwoCores.server);
    const PinnedScope pinned(kTwoCores.client);
    const auto client = OpenClient(config);
    BACnet = client.get();
    Commands commands(*client, config.Devices[0].Instance);
    const double rate = measure(commands);
    BACnet = nullptr;
    return {rate, BareRate(config, {bare})};
}

} // namespace

void AddPropertyCommandFigures(std::vector<Figure>& figures) {
    figures.push_back(
        {"editors/copy_100", "1/s", Better::Higher, kFloor,
         "copies of 100 selected properties, as typed values, beside the one request that is needed made "
         "bare; the device on processor 1, all else on processor 0",
         [] { return CommandRate([](Commands& c) { return c.Rate(&CPropertyCommands::Copy, {}); }, BareRead()); }});
    figures.push_back({"editors/paste_100", "1/s", Better::Higher, kFloor,
                       "pastes of the same 100 values beside their one request made bare", [] {
                           return CommandRate(
                               [](Commands& commands) {
                                   commands.Copy();
                                   return commands.Rate(&CPropertyCommands::Paste, {"reload"});
                               },
                               BareWrite());
                       }});
}

} // namespace bench
