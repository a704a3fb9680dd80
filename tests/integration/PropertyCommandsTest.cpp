// The commands on properties over real UDP, with devices that fail at each of their steps.
#include "api/bacnet/PropertyValues.h"
#include "tests/integration/DeviceSite.h"
#include "tests/integration/ProfileNames.h"
#include "tests/support/FakeOperator.h"
#include "tests/support/FakePropertyWindow.h"
#include "tests/support/TempFolder.h"
#include "tests/unit/browser/Directories.h"
#include "tests/unit/browser/FakeQueue.h"
#include "tests/unit/browser/StationIdentity.h"

#include <gmock/gmock.h>

#include <chrono>

using bacnet::ConfirmedService;
using testing::ElementsAre;
using testing::IsEmpty;
using Lines = CEventList::Lines;
using Rows = std::vector<BACSTAC_PROPERTY_ID>;

namespace {

constexpr unsigned ODD = 1000;  // behaves as the test says
constexpr unsigned GOOD = 2000; // always well
constexpr BACSTAC_OBJECT_ID POINT{OBJ_ANALOG_VALUE, 1};
constexpr BACSTAC_PROPERTY_ID PROPRIETARY = 5000; // the first of many
constexpr unsigned MANY = 100;

sim::DeviceConfig NewDevice(unsigned instance) {
    sim::DeviceConfig device;
    device.Instance = instance;
    sim::ObjectConfig point;
    point.Id = POINT;
    point.Name = "Point";
    point.Description = "north";
    point.Commandable = true;
    point.Properties.emplace_back(PROP_PRESENT_VALUE, sim::Value::Real(21.5F));
    for (unsigned i = 0; i < MANY; ++i)
        point.Properties.emplace_back(PROPRIETARY + i, sim::Value::Unsigned(i));
    device.Objects.push_back(std::move(point));
    return device;
}

} // namespace

class CommandsOverUdp : public DeviceSite {
protected:
    ~CommandsOverUdp() override {
        if (m_browser)
            m_browser->Destroy();
        CBacGeneral::SetDirFileName({});
    }

    void StartWith(const std::function<void(sim::DeviceConfig&)>& spoil) {
        std::vector<sim::DeviceConfig> devices{NewDevice(ODD), NewDevice(GOOD)};
        spoil(devices[0]);
        Start(std::move(devices));
        CBACnetDir directory;
        for (const unsigned device : {ODD, GOOD}) {
            PutDevice(directory, device, "device", 0, {{POINT, "Point"}});
            directory.SetObjCommandable(device, POINT, true);
        }
        CBacGeneral::SetDirFileName(m_folder.File("directory"));
        directory.Save(m_folder.File("directory"));
        m_browser = std::make_unique<CObjBrowser>(BrowserServices{*m_client, m_identity, m_order, m_queue}, m_window);
        m_browser->Start();
        m_commands = std::make_unique<CPropertyCommands>(
            PropertyCommandServices{*m_client, *m_browser, m_window, m_window, m_operator});
    }
    void Select(unsigned device, const Rows& rows) {
        m_window.m_selected = m_browser->GetTree().FindObject(device, POINT);
        m_window.m_rows.assign(rows.begin(), rows.end());
    }
    // The operator types a number into the editor and, when it comes up again, gives up.
    Lines Edit(unsigned device, float number) {
        Select(device, {PROP_PRESENT_VALUE});
        m_window.m_edits = {[number](CPropertyValue& value) {
            if (auto* const real = dynamic_cast<CPVReal*>(&value))
                real->Value = number;
            return true;
        }};
        m_commands->Edit();
        return m_events.Take();
    }
    float PresentValue(unsigned device) {
        float value = 0;
        EXPECT_EQ(
            m_client->ReadProperty(device, POINT, PROP_PRESENT_VALUE, BACSTAC_NO_INDEX, &value, sizeof value, nullptr),
            BACSTAC_OK);
        return value;
    }
    std::uint64_t Requests() const { return m_simulator->GetStats().Requests(); }

    CTempFolder m_folder;
    CStationIdentity m_identity;
    CPlainOrder m_order;
    std::shared_ptr<CFakeQueue> m_queue = std::make_shared<CFakeQueue>();
    CEventList m_events;
    CFakeOperator m_operator{m_events};
    CFakePropertyWindow m_window{m_events};
    std::unique_ptr<CObjBrowser> m_browser;
    std::unique_ptr<CPropertyCommands> m_commands;
};

TEST_F(CommandsOverUdp, AnEditedValueIsInTheDevice) {
    StartWith([](sim::DeviceConfig&) {});
    EXPECT_THAT(Edit(GOOD, 22.5F), ElementsAre("wait", "answer", "edit present-value 21.5", "priority 8", "reload"));
    EXPECT_EQ(PresentValue(GOOD), 22.5F);
    m_commands->SetToNull();
    EXPECT_THAT(m_events.Take(), ElementsAre("priority 8", "reload"));
    EXPECT_EQ(PresentValue(GOOD), 21.5F); // the default
}

TEST_F(CommandsOverUdp, AHundredPropertiesAreOneExchangeEachWay) {
    StartWith([](sim::DeviceConfig&) {});
    Rows rows(MANY);
    std::iota(rows.begin(), rows.end(), PROPRIETARY);
    Select(ODD, rows);
    std::uint64_t before = Requests();
    m_commands->Copy();
    EXPECT_EQ(Requests(), before + 1);
    Select(GOOD, {PROP_PRESENT_VALUE});
    before = Requests();
    m_commands->Paste();
    EXPECT_EQ(Requests(), before + 1);
    EXPECT_THAT(m_events.Take(), ElementsAre("reload"));
}

// ---- a device that fails at one of the steps

namespace {

struct Failure {
    const char* name;
    sim::Fault fault;
    const char* text; // what the operator is told

    friend void PrintTo(const Failure& failure, std::ostream* out) { *out << failure.name; }
};

const Failure FAILURES[] = {
    {"Refuses", sim::Fault::Error(2, 40), "error: write-access-denied (property)"},
    {"Rejects", sim::Fault::Reject(4), "reject: invalid-tag"},
    {"Aborts", sim::Fault::Abort(0), "abort: other"},
    {"IsSilent", sim::Fault::Silent(), "timeout"},
    {"AnswersGarbage", sim::Fault::TruncateTo(1), "timeout"},
};

std::string NameOf(const testing::TestParamInfo<Failure>& info) {
    return info.param.name;
}

} // namespace

class FailingStep : public CommandsOverUdp, public testing::WithParamInterface<Failure> {
protected:
    void StartFailing(ConfirmedService service) {
        StartWith([&](sim::DeviceConfig& device) { device.Faults.push_back(GetParam().fault.OnlyFor(service)); });
    }
    std::string Box(const std::string& words) const {
        return "Box(Error, " + words + "\r\n" + GetParam().text + ", error, OK)";
    }
};

TEST_P(FailingStep, ReadBeforeAnEdit) {
    StartFailing(ConfirmedService::readProperty);
    EXPECT_THAT(Edit(ODD, 22.5F),
                ElementsAre("wait", "answer", Box("ReadProperty"), "show Value of \"row\" from \"Point - 1\": {a, b}"));
    EXPECT_THAT(Edit(GOOD, 22.5F), ElementsAre("wait", "answer", "edit present-value 21.5", "priority 8", "reload"));
}

TEST_P(FailingStep, WriteBehindAnEdit) {
    StartFailing(ConfirmedService::writeProperty);
    EXPECT_THAT(Edit(ODD, 22.5F), ElementsAre("wait", "answer", "edit present-value 21.5", "priority 8",
                                              Box("WriteProperty"), "edit present-value 22.5"));
    m_commands->SetToNull();
    EXPECT_THAT(m_events.Take(), ElementsAre("priority 8", Box("WriteProperty"), "reload"));
}

TEST_P(FailingStep, ReadOfACopy) {
    StartFailing(ConfirmedService::readPropertyMultiple);
    Select(ODD, {PROP_DESCRIPTION, PROP_PRESENT_VALUE});
    m_commands->Copy();
    EXPECT_THAT(m_events.Take(), ElementsAre(Box("Failure reading properties")));
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST_P(FailingStep, WriteOfAPaste) {
    StartFailing(ConfirmedService::writePropertyMultiple);
    Select(GOOD, {PROP_DESCRIPTION, PROP_PRESENT_VALUE});
    m_commands->Copy();
    Select(ODD, {PROP_PRESENT_VALUE});
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), ElementsAre("priority 8", Box("Failure writing properties"), "reload"));
}

INSTANTIATE_TEST_SUITE_P(Failures, FailingStep, testing::ValuesIn(FAILURES), NameOf);

// ---- devices that behave badly all the time

class EditOfBadDevice : public CommandsOverUdp, public testing::WithParamInterface<const char*> {
protected:
    static constexpr auto PATIENCE = std::chrono::seconds(5); // for all of it

    // What may come of an edit, whatever the device does.
    static bool IsAnEdit(const Lines& events) {
        const auto begins = [&](std::size_t at, const char* text) {
            return at < events.size() && events[at].starts_with(text);
        };
        if (!begins(0, "wait") || !begins(1, "answer"))
            return false;
        const std::size_t shown = begins(2, "Box(Error, ReadProperty\r\n") ? 3 : 2;
        if (begins(shown, "show "))
            return events.size() == shown + 1;
        if (shown == 3 || !begins(2, "edit ") || !begins(3, "priority 8"))
            return false;
        return begins(4, "reload")
                   ? events.size() == 5
                   : begins(4, "Box(Error, WriteProperty\r\n") && begins(5, "edit ") && events.size() == 6;
    }
};

TEST_P(EditOfBadDevice, SpoilsNothingButItself) {
    StartWith(sim::FindProfile(GetParam())->Apply);
    const auto begin = std::chrono::steady_clock::now();
    const Lines edit = Edit(ODD, 22.5F);
    EXPECT_TRUE(IsAnEdit(edit)) << testing::PrintToString(edit);
    Select(ODD, {PROP_DESCRIPTION, PROP_PRESENT_VALUE});
    m_commands->Copy();
    m_commands->Paste();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, PATIENCE);
    m_events.Take();
    EXPECT_THAT(Edit(GOOD, 22.5F), ElementsAre("wait", "answer", "edit present-value 21.5", "priority 8", "reload"));
    EXPECT_EQ(PresentValue(GOOD), 22.5F);
}

INSTANTIATE_TEST_SUITE_P(Profiles, EditOfBadDevice, testing::ValuesIn(ProfileNames()), ProfileTestName);
