// Each type of value that has an editor: a property of a device is read, changed in the real dialogs by their labels
// and written. Then somebody else reads it: a client of other people, and a bare station that knows only octets.
#include "module/editors/EditPropertyValue.h"
#include "platform/stack/client/BacnetClient.h"
#include "simulator/Museum.h"
#include "simulator/Simulator.h"
#include "simulator/model/Device.h"
#include "simulator/model/Standard.h"
#include "tests/gui/harness/DialogScript.h"
#include "tests/gui/harness/GuiAccess.h"
#include "tests/interop/NodePeer.h"
#include "tests/unit/simulator/Station.h"

#include "api/bacnet/Dir.h"

#include <QTreeView>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace interop {
namespace {

using nlohmann::json;

constexpr unsigned DEVICE = 500;
constexpr const char* PACKAGE = "@bacnet-js/client";
// It gives up in the middle of these; the bare station alone reads them.
const std::set<std::string> NOT_READ_BY_PACKAGE{"exception-schedule", "active-cov-subscriptions"};

// ---- what an operator does

struct Action {
    enum Kind { press, type, choose, tick } kind;
    const char* control;
    const char* text = ""; // what is typed, or the item that is chosen
};

constexpr Action Press(const char* control) {
    return {Action::press, control};
}
constexpr Action Type(const char* control, const char* text) {
    return {Action::type, control, text};
}
constexpr Action Choose(const char* control, const char* item) {
    return {Action::choose, control, item};
}
constexpr Action Tick(const char* bit) {
    return {Action::tick, bit};
}

void Do(const CControls& dialog, const Action& action) {
    switch (action.kind) {
    case Action::press:
        return dialog.Press(action.control);
    case Action::type:
        return dialog.Type(action.control, action.text);
    case Action::choose:
        return dialog.Choose(action.control, action.text);
    case Action::tick: {
        auto& bits = dialog.Only<QTreeView>();
        const auto found = bits.model()->match(bits.model()->index(0, 0), Qt::DisplayRole,
                                               QString::fromLatin1(action.control), 1, Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1) << action.control;
        bits.setCurrentIndex(found.front());
        bits.setFocus();
        return PressKey(Qt::Key_Space);
    }
    }
}

// One dialog, left by OK. A "..." that is pressed opens the next one of the row.
struct Dialog {
    const char* title;
    std::vector<Action> actions;
};

struct EditedProperty {
    std::set<BACSTAC_DATA_TYPE> types; // that the dialogs edit
    BACSTAC_OBJECT_ID object;
    const char* property;
    std::vector<Dialog> dialogs;
    const char* octets; // of the value in the device then
};

void PrintTo(const EditedProperty& row, std::ostream* to) {
    *to << row.object.Type << " " << row.property;
}

constexpr const char* REFERENCE = "Input device-object-property";
constexpr const char* INSTANCE = "Object instance";
constexpr const char* PROPERTY = "&Property id and index (optional)";
constexpr BACSTAC_OBJECT_TYPE OBJ_COMMAND = 7;
constexpr BACSTAC_OBJECT_TYPE OBJ_GROUP = 11;
constexpr BACSTAC_OBJECT_TYPE OBJ_STRUCTURED_VIEW = 29;
constexpr BACSTAC_OBJECT_TYPE OBJ_DATE_VALUE = 42;
constexpr BACSTAC_OBJECT_TYPE OBJ_INTEGER_VALUE = 45;
constexpr BACSTAC_OBJECT_TYPE OBJ_LARGE_ANALOG_VALUE = 46;
constexpr BACSTAC_OBJECT_TYPE OBJ_OCTET_STRING_VALUE = 47;
constexpr BACSTAC_OBJECT_TYPE OBJ_TIME_VALUE = 50;
constexpr BACSTAC_DATA_TYPE EP = TYPE_EVENT_PARAMETER_FIRST;

BACSTAC_OBJECT_ID One(BACSTAC_OBJECT_TYPE type) {
    return {type, type == OBJ_DEVICE ? DEVICE : 1};
}

// The parameters of an event enrollment: its event type's form, and what is done in it and its editors.
EditedProperty Parameters(unsigned eventType, const char* form, std::vector<Action> actions, std::vector<Dialog> more,
                          const char* octets, std::set<BACSTAC_DATA_TYPE> types = {}) {
    types.insert({TYPE_EVENT_PARAMETER, EP + static_cast<BACSTAC_DATA_TYPE>(eventType)});
    std::vector<Dialog> dialogs{{"Input event-parameter", {Press("&Value")}}, {form, std::move(actions)}};
    dialogs.insert(dialogs.end(), more.begin(), more.end());
    return {std::move(types),
            {OBJ_EVENT_ENROLLMENT, sim::EnrollmentOf(eventType)},
            "event-parameters",
            std::move(dialogs),
            octets};
}

const std::vector<EditedProperty>& Properties() {
    static const std::vector<EditedProperty> PROPERTIES{
        {{TYPE_BOOLEAN},
         One(OBJ_ANALOG_INPUT),
         "out-of-service",
         {{"Input boolean", {Choose("out-of-service", "true")}}},
         "11"},
        {{TYPE_UNSIGNED},
         One(OBJ_ANALOG_INPUT),
         "time-delay",
         {{"Input unsigned", {Type("time-delay", "70000")}}},
         "23 01 11 70"},
        {{TYPE_SIGNED},
         One(OBJ_INTEGER_VALUE),
         "high-limit",
         {{"Input signed", {Type("high-limit", "-129")}}},
         "32 FF 7F"},
        {{TYPE_REAL},
         One(OBJ_ANALOG_INPUT),
         "cov-increment",
         {{"Input real", {Type("cov-increment", "1.5")}}},
         "44 3F C0 00 00"},
        {{TYPE_DOUBLE},
         One(OBJ_LARGE_ANALOG_VALUE),
         "cov-increment",
         {{"Input real", {Type("cov-increment", "2.5")}}},
         "55 08 40 04 00 00 00 00 00 00"},
        {{TYPE_OCTET_STRING},
         One(OBJ_OCTET_STRING_VALUE),
         "relinquish-default",
         {{"Input octet string", {Type("relinquish-default", "C0ffee")}}},
         "63 C0 FF EE"},
        {{TYPE_BIT_STRING},
         One(OBJ_ANALOG_INPUT),
         "limit-enable",
         {{"Input bit-string", {Tick("high-limit-enable")}}},
         "82 06 80"},
        {{TYPE_ENUMERATED},
         One(OBJ_ANALOG_INPUT),
         "units",
         {{"Input enumerated", {Choose("units", "percent")}}},
         "91 62"},
        {{TYPE_DATE},
         One(OBJ_DATE_VALUE),
         "relinquish-default",
         {{"Input date-time",
           {Choose("&Month", "November"), Choose("&Day", "21"), Type("&Year", "2026"),
            Choose("Day of &week", "Saturday")}}},
         "A4 7E 0B 15 06"},
        {{TYPE_TIME},
         One(OBJ_TIME_VALUE),
         "relinquish-default",
         {{"Input date-time",
           {Choose("&Hour", "20"), Choose("Mi&n.", "25"), Choose("&Sec.", "*"), Choose("H&und.", "*")}}},
         "B4 14 19 FF FF"},
        {{TYPE_OBJECT_ID},
         One(OBJ_DEVICE),
         "structured-object-list",
         {{"Input list of object-identifier", {Press("Add")}},
          {REFERENCE, {Choose("&Object type && instance", "structured-view"), Type(INSTANCE, "9")}}},
         "C4 00 00 00 01 C4 00 00 00 01 C4 07 40 00 09"},
        {{TYPE_STRING},
         One(OBJ_ANALOG_INPUT),
         "description",
         {{"Input string", {Type("description", "Zürich")}}},
         "75 08 00 5A C3 BC 72 69 63 68"},
        {{TYPE_DATE_TIME},
         One(OBJ_BINARY_INPUT),
         "change-of-state-time",
         {{"Input date-time", {Type("&Year", "2027"), Choose("&Hour", "*")}}},
         "A4 7F 05 01 05 B4 FF 00 00 00"},
        {{TYPE_OBJ_PROP_REF},
         One(sim::OBJ_LOOP),
         "controlled-variable-reference",
         {{REFERENCE, {Type(INSTANCE, "77"), Type(PROPERTY, "103")}}},
         "0C 00 00 00 4D 19 67 29 01"},
        {{TYPE_DATE_RANGE},
         One(sim::OBJ_SCHEDULE),
         "effective-period",
         {{"Input date-range", {Press("&End date")}}, {"Input date-time", {Type("&Year", "2030")}}},
         "A4 FF FF FF FF A4 82 FF FF FF"},
        {{TYPE_CALENDAR_ENTRY, TYPE_WEEK_N_DAY},
         One(OBJ_CALENDAR),
         "date-list",
         {{"Input list of calendar-entry", {Press("Add")}},
          {"Input calendar-entry", {Choose("&Type", "week-and-day"), Press("&Value")}},
          {"Input week-n-day", {Choose("Week", "*Last*")}}},
         "2B FF 06 FF"},
        {{TYPE_TIME_VALUE, TYPE_ANY_PRIMITIVE},
         One(sim::OBJ_SCHEDULE),
         "weekly-schedule",
         {{"Input list of daily-schedule", {Press("Edit")}},
          {"Input list of time-value", {Press("Add")}},
          {"Input time-value", {Press("&Value")}},
          {"Input any-primitive", {Choose("&Type", "real"), Press("&Value")}},
          {"Input real", {Type("weekly-schedule", "21")}}},
         "0E B4 08 00 00 00 44 41 A0 00 00 B4 08 00 00 00 44 41 A8 00 00 0F 0E B4 08 00 00 00 44 41 A0 00 00 0F 0E B4 "
         "08 00 00 00 44 41 A0 00 00 0F 0E B4 08 00 00 00 44 41 A0 00 00 0F 0E B4 08 00 00 00 44 41 A0 00 00 0F 0E B4 "
         "08 00 00 00 44 41 A0 00 00 0F 0E B4 08 00 00 00 44 41 A0 00 00 0F"},
        {{TYPE_SPECIAL_EVENT},
         One(sim::OBJ_SCHEDULE),
         "exception-schedule",
         {{"Input list of special-event", {Press("Add")}},
          {"Input special-event", {Choose("P&eriod", "calendar-reference"), Choose("&Priority", "3")}}},
         "0E 1E A4 7E 05 01 05 A4 7E 05 01 05 1F 0F 2E B4 08 00 00 00 44 41 A0 00 00 2F 39 01 1C 00 00 00 01 2E B4 08 "
         "00 00 00 44 41 A0 00 00 2F 39 01 1C 01 80 00 00 2E B4 08 00 00 00 44 41 A0 00 00 2F 39 03"},
        {{TYPE_RECIPIENT},
         One(OBJ_DEVICE),
         "restart-notification-recipients",
         {{"Input list of recipient", {Press("Add")}},
          {"Input recipient", {Choose("&Type", "address"), Press("&Value")}},
          {"Input address", {Press("&Remote network"), Type("Network", "2001"), Type("&Address", "7")}}},
         "0C 00 00 00 01 1E 21 00 60 1F 1E 22 07 D1 61 07 1F"},
        {{TYPE_SETPOINT_REF},
         One(sim::OBJ_LOOP),
         "setpoint-reference",
         {{"Input setpoint-reference", {Press("&Value")}}, {REFERENCE, {Type(INSTANCE, "8")}}},
         "0E 0C 00 00 00 08 19 00 29 01 0F"},
        {{TYPE_DESTINATION},
         One(sim::OBJ_NOTIFICATION_CLASS),
         "recipient-list",
         {{"Input list of destination", {Press("Add")}},
          {"Input destination", {Press("&Process ID")}},
          {"Input unsigned", {Type("process-id", "4711")}}},
         "82 01 FE B4 00 00 00 00 B4 17 3B 3B 63 0C 02 00 00 00 22 12 67 10 82 05 E0"},
        {{TYPE_TIME_STAMP},
         One(OBJ_ANALOG_VALUE),
         "last-command-time",
         {{"Input time-stamp", {Choose("&Type", "sequence-number"), Press("&Value")}},
          {"Input unsigned", {Type("sequence-number", "258")}}},
         "1A 01 02"},
        {{TYPE_READ_ACCESS_SPEC, TYPE_PROPERTY_REF},
         One(OBJ_GROUP),
         "list-of-group-members",
         {{"Input list of read-access-specification", {Press("Add")}},
          {"Input read-access-spec", {Press("Edit &properties...")}},
          {"Input list of property-reference", {Press("Add")}},
          {REFERENCE, {Type(PROPERTY, "87"), Type("Array index", "16")}}},
         "0C 00 00 00 00 1E 09 57 19 10 1F"},
        {{TYPE_ADDRESS_BINDING},
         One(OBJ_DEVICE),
         "manual-slave-address-binding",
         {{"Input list of address-binding", {Press("Add")}},
          {"Input address-binding", {Press("&Device")}},
          {REFERENCE, {Type(INSTANCE, "21")}}},
         "C4 00 00 00 01 21 00 60 C4 00 00 00 01 21 00 60 C4 00 00 00 15 21 00 60"},
        {{TYPE_DEV_OBJ_PROP_REF},
         One(OBJ_EVENT_ENROLLMENT),
         "object-property-reference",
         {{REFERENCE, {Type("&Device (optional)", "99")}}},
         "0C 00 00 00 01 19 00 29 01 3C 02 00 00 63"},
        {{TYPE_CLIENT_COV},
         One(OBJ_TREND_LOG),
         "client-cov-increment",
         {{"Input client-cov", {Type("client-cov-increment", "0.5")}}},
         "44 3F 00 00 00"},
        {{TYPE_READ_ACCESS_RESULT, TYPE_READ_RESULT_ITEM},
         One(OBJ_GROUP),
         "present-value",
         {{"Input list of read-access-result", {Press("Add")}},
          {"Input read-access-result", {Press("Edit &properties...")}},
          {"Input list of read-result-item", {Press("Add")}},
          {"Input read-result-item", {Press("&Error"), Type("Error &class", "2"), Type("Error c&ode", "32")}}},
         "0C 00 00 00 00 1E 29 55 5E 91 02 91 20 5F 1F"},
        {{TYPE_COV_SUBSCRIPTION},
         One(OBJ_BINARY_VALUE),
         "active-cov-subscriptions",
         {{"Input list of cov-subscription", {Press("Add")}},
          {"Input cov-subscription", {Press("COV &increment")}},
          {"Input real", {Type("cov-increment", "0.5")}}},
         "0E 0E 0C 02 00 00 00 0F 19 00 0F 1E 0C 00 00 00 00 19 55 1F 29 00 39 00 4C 3F 00 00 00"},
        {{TYPE_DEV_OBJ_REF},
         One(OBJ_STRUCTURED_VIEW),
         "represents",
         {{REFERENCE, {Type(INSTANCE, "5")}}},
         "0C 00 00 00 01 1C 00 00 00 05"},
        {{TYPE_PRESCALE},
         One(sim::OBJ_ACCUMULATOR),
         "prescale",
         {{"Input prescale", {Type("&Multiplier", "10"), Type("Modulo &divide", "1000")}}},
         "09 0A 1A 03 E8"},
        {{TYPE_SCALE},
         One(sim::OBJ_ACCUMULATOR),
         "scale",
         {{"Input scale", {Choose("&Type", "signed"), Press("&Value")}},
          {"Input signed", {Type("signed scale", "-2")}}},
         "19 FE"},
        {{TYPE_ACTION_COMMAND},
         One(OBJ_COMMAND),
         "action",
         {{"Input list of action-list", {Press("Add")}},
          {"Input list of action-command", {Press("Add")}},
          {"Input action-command",
           {Choose("&Priority", "8"), Type("Post &delay", "30"), Press("&Quit on failure"), Press("&Value")}},
          {"Input any-primitive", {Choose("&Type", "boolean")}}},
         "0E 1C 00 00 00 00 29 55 4E 10 4F 59 08 69 1E 79 01 89 00 0F"},
        {{TYPE_SHED_LEVEL},
         One(OBJ_LOAD_CONTROL),
         "requested-shed-level",
         {{"Input shed-level", {Choose("&Type", "amount"), Press("&Value")}}, {"Input real", {Type("amount", "2.5")}}},
         "2C 40 20 00 00"},
        Parameters(0, "Input ep-change-of-bitstring", {Press("&Time delay")},
                   {{"Input unsigned", {Type("time-delay", "41")}}}, "0E 09 29 1A 05 E0 2E 82 05 E0 2F 0F"),
        Parameters(1, "Input ep-change-of-state", {Press("Edit value &list...")},
                   {{"Input list of property-state", {Press("Add")}},
                    {"Input property-state", {Choose("&Type", "units"), Press("&Value")}},
                    {"Input enumerated", {Choose("units", "percent")}}},
                   "1E 09 01 1E 19 00 A9 62 1F 1F", {TYPE_PROPERTY_STATE}),
        Parameters(2, "Input ep-change-of-value", {Choose("Criteria t&ype", "increment"), Press("Criteria &value")},
                   {{"Input real", {Type("increment criteria", "0.5")}}}, "2E 09 01 1E 1C 3F 00 00 00 1F 2F"),
        Parameters(3, "Input ep-command-failure", {Press("&Feedback property")}, {{REFERENCE, {Type(INSTANCE, "7")}}},
                   "3E 09 01 1E 0C 00 00 00 07 19 00 29 01 3C 00 00 00 01 1F 3F"),
        Parameters(
            4, "Input ep-floating-limit", {Press("&High diff. limit")}, {{"Input real", {Type("high-limit", "21.5")}}},
            "4E 09 01 1E 0C 00 00 00 01 19 00 29 01 3C 00 00 00 01 1F 2C 41 A0 00 00 3C 41 AC 00 00 4C 41 A0 00 00 4F"),
        Parameters(5, "Input ep-out-of-range", {Press("&Dead band")}, {{"Input real", {Type("dead-band", "0.5")}}},
                   "5E 09 01 1C 41 A0 00 00 2C 41 A0 00 00 3C 3F 00 00 00 5F"),
        Parameters(8, "Input ep-change-of-life-safety", {Press("Edit &alarm-values...")},
                   {{"Input list of enumerated", {Press("Add")}}, {"Input enumerated", {}}},
                   "8E 09 01 1E 91 00 1F 2E 91 00 91 00 2F 3E 0C 00 00 00 01 19 00 29 01 3C 00 00 00 01 3F 8F"),
        Parameters(9, "Input ep-extended", {Press("&Vendor id")}, {{"Input unsigned", {Type("vendor-id", "999")}}},
                   "9E 0A 03 E7 19 01 2E 44 41 A0 00 00 2F 9F"),
        Parameters(10, "Input ep-buffer-ready", {Press("&Notify threshold")},
                   {{"Input unsigned", {Type("notify-threshold", "50")}}}, "AE 09 32 19 01 AF"),
        Parameters(11, "Input ep-unsigned-range", {Press("&High limit")},
                   {{"Input unsigned", {Type("high-limit", "4294967295")}}}, "BE 09 01 19 01 2C FF FF FF FF BF"),
    };
    return PROPERTIES;
}

constexpr BACSTAC_PROPERTY_ID FIRST_PROPRIETARY = 512;

BACSTAC_PROPERTY_ID IdOf(const EditedProperty& row) {
    for (BACSTAC_PROPERTY_ID property = 0; property < FIRST_PROPRIETARY; ++property)
        if (std::string(CBACnetDir::GetStdPropName(property)) == row.property)
            return property;
    ADD_FAILURE() << "no such property";
    return PROP_NO_PROPERTY;
}

class EditedValues : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(WhyNoPeers(), "");
        sim::SimulatorConfig config;
        config.Port = m_block.Port();
        config.Devices.push_back(sim::MuseumDevice(DEVICE));
        config.Devices.back().Ip = m_block.Ip(1);
        // Devices keep this list themselves; in another object it is there to be edited.
        const BACSTAC_OBJECT_ID keeper = One(OBJ_BINARY_VALUE);
        auto& objects = config.Devices.back().Objects;
        std::ranges::find(objects, keeper, &sim::ObjectConfig::Id)
            ->Properties.emplace_back(sim::PROP_ACTIVE_COV_SUBSCRIPTIONS, sim::Value::List({}));
        m_simulator = std::make_unique<sim::Simulator>(config);
        m_simulator->GetDevice(0).Find(keeper)->SetWritable(sim::PROP_ACTIVE_COV_SUBSCRIPTIONS, true);
        std::string failure;
        ASSERT_TRUE(m_simulator->Start(failure)) << failure;
        bacnet::ClientConfig client;
        client.Ports.push_back({0, m_block.Text(250), m_block.Port(), "127.255.255.255"});
        m_client = bacnet::BacnetClient::Open(client, failure);
        ASSERT_TRUE(m_client) << failure;
        BACSTAC_ADDRESS former{};
        m_client->Directory().Learn({DEVICE, 1476, 0, 999}, m_simulator->AddressOf(0), former);
    }

    // As the browser's commands do it.
    void Edit(const EditedProperty& row) {
        const BACSTAC_PROPERTY_ID property = IdOf(row);
        CPropertyContents contents;
        BACSTAC_ERROR error{};
        ASSERT_EQ(m_client->ReadProperty(DEVICE, row.object, property, BACSTAC_NO_INDEX, contents, &error), BACSTAC_OK);
        ASSERT_TRUE(ConvertRaw(contents, row.object.Type, property));
        const std::unique_ptr<CPropertyValue> value(
            CPropertyValue::CreateValue(row.object.Type, property, TYPE_NONE, -1));
        ASSERT_TRUE(value && value->ReadFrom(contents));
        for (const Dialog& dialog : row.dialogs)
            m_script.Do(dialog.title, [&dialog](const CControls& controls) {
                for (const Action& action : dialog.actions)
                    Do(controls, action);
                controls.Press("OK");
            });
        ASSERT_TRUE(OnGui([&] { return EditPropertyValue(nullptr, value.get()); }));
        CPropertyContents edited(value->GetDataSize());
        ASSERT_TRUE(value->WriteTo(edited));
        ASSERT_EQ(m_client->WriteProperty(DEVICE, row.object, property, BACSTAC_NO_INDEX, BACSTAC_NO_PRIORITY, edited,
                                          &error),
                  BACSTAC_OK)
            << error.Class << ":" << error.Code;
    }

    // What the package makes of the properties, in their order.
    json ReadByPackage() {
        json steps = json::array();
        for (const EditedProperty& row : Properties())
            steps.push_back({{"do", "read"},
                             {"to", m_block.Text(1)},
                             {"type", row.object.Type},
                             {"instance", row.object.Instance},
                             {"property", IdOf(row)}});
        const json results = RunSteps(PACKAGE, m_block.Text(2), m_block.Port(), steps);
        EXPECT_EQ(results.size(), steps.size());
        return results;
    }

    // Octets of the value in the answer to a ReadProperty that is made here, octet by octet.
    static std::string ReadOctets(sim::testing::Station& station, const bacnet::BipAddress& device,
                                  const EditedProperty& row) {
        using namespace sim::testing;
        const std::uint32_t id = row.object.Type << 22 | row.object.Instance;
        const BACSTAC_PROPERTY_ID property = IdOf(row);
        Octets what{0x0C, static_cast<std::uint8_t>(id >> 24), static_cast<std::uint8_t>(id >> 16),
                    static_cast<std::uint8_t>(id >> 8), static_cast<std::uint8_t>(id)};
        if (property < 256)
            what.insert(what.end(), {0x19, static_cast<std::uint8_t>(property)});
        else
            what.insert(what.end(),
                        {0x1A, static_cast<std::uint8_t>(property >> 8), static_cast<std::uint8_t>(property)});
        station.Send(device, Unicast("00 05 01 0C " + ToHex(what)));
        const Octets frame = station.Receive();
        const std::string answer = frame.size() < 6 ? "nothing" : ToHex(std::span(frame).subspan(6));
        const std::string head = "30 01 0C " + ToHex(what) + " 3E ";
        if (!answer.starts_with(head) || !answer.ends_with(" 3F"))
            return answer;
        return answer.substr(head.size(), answer.size() - head.size() - 3);
    }

    testing_support::LoopbackBlock m_block;
    std::unique_ptr<sim::Simulator> m_simulator;
    std::unique_ptr<bacnet::BacnetClient> m_client;
    CEventList m_events;
    CDialogScript m_script{m_events};
};

TEST_F(EditedValues, AreInTheDeviceForOthersToRead) {
    const json before = ReadByPackage();
    for (const EditedProperty& row : Properties()) {
        SCOPED_TRACE(testing::PrintToString(row));
        Edit(row);
    }
    const json after = ReadByPackage();
    const bacnet::BipAddress device{m_block.Ip(1), m_block.Port()};
    sim::testing::Station station(bacnet::BipAddress{m_block.Ip(3), m_block.Port()});
    for (std::size_t i = 0; i < Properties().size(); ++i) {
        const EditedProperty& row = Properties()[i];
        SCOPED_TRACE(testing::PrintToString(row));
        EXPECT_EQ(after.at(i).is_array(), !NOT_READ_BY_PACKAGE.contains(row.property)) << after.at(i);
        if (after.at(i).is_array()) {
            EXPECT_NE(after.at(i), before.at(i)) << after.at(i);
        }
        EXPECT_EQ(ReadOctets(station, device, row), row.octets);
    }
}

TEST(EditedTypes, AreAllThatHaveAnEditor) {
    std::set<BACSTAC_DATA_TYPE> edited;
    for (const EditedProperty& row : Properties())
        edited.insert(row.types.begin(), row.types.end());
    std::set<BACSTAC_DATA_TYPE> known;
    for (const EditorEntry& editor : GetEditors())
        known.insert(editor.type);
    EXPECT_EQ(edited, known);
}

} // namespace
} // namespace interop
