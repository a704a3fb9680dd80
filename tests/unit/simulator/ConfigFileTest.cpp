#include "simulator/ConfigFile.h"

#include "simulator/model/Device.h"

#include <gtest/gtest.h>

#include <memory>

namespace sim {
namespace {

SimulatorConfig Good(const std::string& text) {
    SimulatorConfig config;
    std::string errors;
    EXPECT_TRUE(ParseConfig(text, "site.toml", config, errors)) << errors;
    EXPECT_EQ(errors, "");
    return config;
}

std::string Errors(const std::string& text) {
    SimulatorConfig config;
    config.Port = 4711;
    std::string errors;
    EXPECT_FALSE(ParseConfig(text, "site.toml", config, errors));
    EXPECT_EQ(config.Port, 4711) << "a failed read changes nothing";
    return errors;
}

// One object of a device, as a device keeps it.
std::unique_ptr<Device> DeviceWith(const std::string& object) {
    const SimulatorConfig config =
        Good("[[device]]\ninstance = 1\naddress = \"127.1.0.1\"\n[[device.object]]\n" + object);
    return config.Devices.empty() ? nullptr : std::make_unique<Device>(config.Devices[0], [] { return LocalTime{0}; });
}

TEST(ConfigFile, AnEmptyDescriptionIsAnEmptySite) {
    const SimulatorConfig config = Good("");
    EXPECT_EQ(config.Port, 47808);
    EXPECT_TRUE(config.Devices.empty());
}

TEST(ConfigFile, ReadsTheSite) {
    const SimulatorConfig config = Good(R"(
port = 50000
threads = 3
append_every_ms = 250
i_am = "unicast"
i_am_per_ms = 7

[[device]]
instance = 1234
address = "127.3.2.1:47809"
name = "Käthe"
description = "plant room"
vendor = 42
protocol_revision = 2
max_apdu = 206
segmentation = "none"
window = 4
segment_timeout_ms = 100
segment_retries = 1
lacks = ["read-property-multiple"]
both_by_time_forms = true

[[router]]
address = "127.3.2.9"
[[router.network]]
number = 5
[[router.network.device]]
instance = 501
mac = 17
[[router.network.device]]
instance = 502
mac = 0
max_apdu = 50
)");
    EXPECT_EQ(config.Port, 50000);
    EXPECT_EQ(config.Threads, 3U);
    EXPECT_EQ(config.AppendEveryMs, 250U);
    EXPECT_EQ(config.IAm, IAmMode::unicast);
    EXPECT_EQ(config.IAmPerMs, 7U);
    ASSERT_EQ(config.Devices.size(), 1U);
    const DeviceConfig& device = config.Devices[0];
    EXPECT_EQ(device.Instance, 1234U);
    EXPECT_EQ(device.Ip, 0x7F030201U);
    EXPECT_EQ(device.Port, 47809);
    EXPECT_EQ(device.Name, "Käthe");
    EXPECT_EQ(device.Description, "plant room");
    EXPECT_EQ(device.VendorId, 42U);
    EXPECT_EQ(device.ProtocolRevision, 2U);
    EXPECT_EQ(device.MaxApdu, 206U);
    EXPECT_EQ(device.Segmentation, bacnet::Segmentation::none);
    EXPECT_EQ(device.WindowSize, 4);
    EXPECT_EQ(device.SegmentTimeoutMs, 100U);
    EXPECT_EQ(device.SegmentRetries, 1U);
    EXPECT_EQ(device.LacksServices.size(), 1U);
    EXPECT_EQ(device.ByTime, ByTimeForms::both);
    ASSERT_EQ(config.Routers.size(), 1U);
    EXPECT_EQ(config.Routers[0].Ip, 0x7F030209U);
    ASSERT_EQ(config.Routers[0].Networks.size(), 1U);
    EXPECT_EQ(config.Routers[0].Networks[0].Number, 5);
    ASSERT_EQ(config.Routers[0].Networks[0].Devices.size(), 2U);
    EXPECT_EQ(config.Routers[0].Networks[0].Devices[0].Mac, 17);
    EXPECT_EQ(config.Routers[0].Networks[0].Devices[0].MaxApdu, 480U);
    EXPECT_EQ(config.Routers[0].Networks[0].Devices[1].MaxApdu, 50U);
}

TEST(ConfigFile, PropertiesHaveTheTypesOfTheStandard) {
    const auto device = DeviceWith(R"(
type = "analog-input"
instance = 3
name = "T1"
[device.object.properties]
present-value = 21
units = 64
description = "supply"
status-flags = "0100"
out-of-service = true
event-time-stamps = [{ encoded = "3E 2E" }, { encoded = "3F" }]
600 = { double = 2.5 }
)");
    const BACSTAC_OBJECT_ID id{OBJ_ANALOG_INPUT, 3};
    EXPECT_EQ(device->GetProperty(id, PROP_OBJECT_NAME), Value::String("T1"));
    EXPECT_EQ(device->GetProperty(id, PROP_PRESENT_VALUE), Value::Real(21.0F));
    EXPECT_EQ(device->GetProperty(id, PROP_UNITS), Value::Enumerated(64));
    EXPECT_EQ(device->GetProperty(id, PROP_DESCRIPTION), Value::String("supply"));
    EXPECT_EQ(device->GetProperty(id, PROP_STATUS_FLAGS), Value::BitString(4, {1}));
    EXPECT_EQ(device->GetProperty(id, PROP_OUT_OF_SERVICE), Value::Boolean(true));
    EXPECT_EQ(device->GetProperty(id, 600), Value::Double(2.5));
    EXPECT_EQ(device->GetProperty(id, 130)->Count(), 2U);
}

TEST(ConfigFile, PresentValuesFollowTheObjectType) {
    const auto value = [](const std::string& type, const std::string& number) {
        const auto device =
            DeviceWith("type = \"" + type + "\"\ninstance = 1\nproperties = { present-value = " + number + " }");
        return device->GetProperty(device->ObjectList().at(1), PROP_PRESENT_VALUE);
    };
    EXPECT_EQ(value("binary-value", "1"), Value::Enumerated(1));
    EXPECT_EQ(value("multi-state-input", "3"), Value::Unsigned(3));
    EXPECT_EQ(value("analog-output", "-0.5"), Value::Real(-0.5F));
}

TEST(ConfigFile, ListsAndArraysAreToldApartByTheStandard) {
    const auto device = DeviceWith(R"(
type = "multi-state-value"
instance = 2
[device.object.properties]
state-text = ["a", "b"]
alarm-values = [1, 3]
)");
    const BACSTAC_OBJECT_ID id{OBJ_MULTI_STATE_VALUE, 2};
    EXPECT_EQ(device->GetProperty(id, PROP_STATE_TEXT)->GetShape(), Shape::array);
    EXPECT_EQ(device->GetProperty(id, 7)->GetShape(), Shape::list);
    EXPECT_EQ(device->GetProperty(id, 7)->Count(), 2U);
}

TEST(ConfigFile, ReadsTrendLogs) {
    const auto device = DeviceWith(R"(
type = "trend-log"
instance = 7
capacity = 50
initial_total = 1000
records = 10
interval = 300
start = 2026-03-01T12:00:00.5
kinds = ["unsigned"]
references = ["analog-input,1,present-value"]
record = [
  { time = 2026-04-01T00:00:00, real = 1.5, status_flags = "1000" },
  { time = 2026-04-01T00:00:01, failure = [2, 31] },
  { time = 2026-04-01T00:00:02, status = "010" },
]
)");
    const BACSTAC_OBJECT_ID id{OBJ_TREND_LOG, 7};
    const std::vector<LogRecord> records = device->Records(id);
    ASSERT_EQ(records.size(), 13U);
    EXPECT_EQ(device->TotalRecordCount(id), 1013U);
    EXPECT_EQ(records[1].Time - records[0].Time, 30000);
    EXPECT_EQ(ToDateTime(records[0].Time).Time.Hundredths, 50);
    EXPECT_EQ(records[0].Data.at(0).Kind, BACSTAC_LOG_UNSIGNED);
    EXPECT_EQ(records[10].Data.at(0).Value.Real, 1.5F);
    EXPECT_EQ(records[10].StatusFlags, 1);
    EXPECT_EQ(records[11].Data.at(0).Value.Failure.Code, 31U);
    EXPECT_FALSE(records[12].IsData());
    EXPECT_NE(device->GetProperty(id, PROP_LOG_DEVICE_OBJECT_PROPERTY), std::nullopt);
}

TEST(ConfigFile, ReadsTrendLogMultiples) {
    const auto device = DeviceWith(R"(
type = "trend-log-multiple"
instance = 1
references = ["analog-input,1,present-value", "binary-input,2,85,99"]
records = 2
kinds = ["real", "enumerated"]
[[device.object.record]]
time = 2027-01-01T00:00:00
values = [{ real = 1.0 }, { null = true }, { any = "91 05" }]
)");
    const std::vector<LogRecord> records = device->Records({OBJ_TREND_LOG_MULTIPLE, 1});
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0].Data.size(), 2U);
    ASSERT_EQ(records[2].Data.size(), 3U);
    EXPECT_EQ(records[2].Data[2].Any, std::string("\x91\x05"));
    const auto references = device->GetProperty({OBJ_TREND_LOG_MULTIPLE, 1}, PROP_LOG_DEVICE_OBJECT_PROPERTY);
    ASSERT_TRUE(references);
    EXPECT_EQ(references->Count(), 2U);
}

TEST(ConfigFile, ReadsFaults) {
    const SimulatorConfig config = Good(R"(
[[device]]
instance = 1
address = "127.1.0.1"
[[device.fault]]
kind = "slow"
delay_ms = 200
service = "read-range"
object = "trend-log,3"
skip = 2
times = 5
[[device.fault]]
kind = "abort"
reason = 4
)");
    ASSERT_EQ(config.Devices[0].Faults.size(), 2U);
    const Fault& slow = config.Devices[0].Faults[0];
    EXPECT_EQ(slow.Kind, FaultKind::slow);
    EXPECT_EQ(slow.DelayMs, 200U);
    EXPECT_EQ(slow.Service, bacnet::ConfirmedService::readRange);
    EXPECT_EQ(slow.Object, (BACSTAC_OBJECT_ID{OBJ_TREND_LOG, 3}));
    EXPECT_EQ(slow.Skip, 2U);
    EXPECT_EQ(slow.Times, 5U);
    EXPECT_EQ(config.Devices[0].Faults[1].Code, 4U);
}

TEST(ConfigFile, TellsFileAndLineOfEachFault) {
    EXPECT_EQ(Errors("port = 70000\nprot = 1\nthreads = \"two\"\n"),
              "site.toml:1: \"port\" has to be a whole number from 1 to 65535\n"
              "site.toml:3: \"threads\" has to be a whole number from 1 to 64\n"
              "site.toml:2: unknown key \"prot\"\n");
    EXPECT_EQ(Errors("\n\n[[device]]\ninstance = 1\n"), "site.toml:3: \"address\" is missing\n");
    EXPECT_EQ(Errors("[[device]]\naddress = \"300.1.1.1\"\ninstance = 4194303\n"),
              "site.toml:2: \"address\" has to be an IPv4 address, with a port or without\n"
              "site.toml:3: \"instance\" has to be a whole number from 0 to 4194302\n");
    EXPECT_EQ(Errors("device = 5\n"), "site.toml:1: \"device\" has to be a list of tables\n");
    EXPECT_EQ(Errors("[device]\n").substr(0, 12), "site.toml:1:");
}

TEST(ConfigFile, TellsSyntaxFaultsWithTheirLine) {
    EXPECT_EQ(Errors("port = 1\nthreads = = 2\n").substr(0, 13), "site.toml:2: ");
}

std::string ObjectErrors(const std::string& object) {
    return Errors("[[device]]\ninstance = 1\naddress = \"127.1.0.1\"\n[[device.object]]\n" + object);
}

TEST(ConfigFile, RefusesValuesThatDoNotFitTheirProperty) {
    EXPECT_EQ(ObjectErrors("type = 0\ninstance = 1\nproperties = { present-value = \"warm\" }"),
              "site.toml:7: \"present-value\" is not a value of that property\n");
    EXPECT_EQ(ObjectErrors("type = 0\ninstance = 1\nproperties = { present-vlaue = 1.0 }"),
              "site.toml:7: no property is called \"present-vlaue\"\n");
    EXPECT_EQ(ObjectErrors("type = 0\ninstance = 1\nproperties = { 600 = 5 }"),
              "site.toml:7: \"600\" is not a value of that property\n");
    EXPECT_EQ(ObjectErrors("type = 0\ninstance = 1\nproperties = { status-flags = \"01x0\" }"),
              "site.toml:7: \"status-flags\" is not a value of that property\n");
    EXPECT_EQ(ObjectErrors("type = \"analogue-input\"\ninstance = 1\n"),
              "site.toml:5: \"type\" has to be an object type, by name or number\n");
    EXPECT_EQ(ObjectErrors("type = 0\ninstance = 1\n[[device.object]]\ntype = 0\ninstance = 1\n"),
              "site.toml:7: the device has this object already\n");
}

TEST(ConfigFile, RefusesRecordsThatALogCannotHold) {
    const std::string trend = "type = 20\ninstance = 1\n";
    EXPECT_EQ(ObjectErrors(trend + "record = [{ real = 1.0 }]"), "site.toml:7: \"time\" is missing\n");
    EXPECT_EQ(ObjectErrors(trend + "record = [{ time = 2026-02-30T00:00:00, real = 1.0 }]").substr(0, 13),
              "site.toml:7: ");
    EXPECT_EQ(ObjectErrors(trend + "record = [{ time = 2026-02-03T00:00:00Z, real = 1.0 }]"),
              "site.toml:7: \"time\" has to be a local date and time\n");
    EXPECT_EQ(ObjectErrors(trend + "record = [{ time = 2026-02-03T00:00:00, real = \"x\" }]"),
              "site.toml:7: \"real\" cannot be logged so\n"
              "site.toml:7: \"record\" of a trend log has to hold one value\n");
    EXPECT_EQ(ObjectErrors(trend + "kinds = [\"real\", \"real\"]"),
              "site.toml:7: \"kinds\" of a trend log has to be one kind\n");
    EXPECT_EQ(ObjectErrors(trend + "kinds = [\"rael\"]").substr(0, 60),
              std::string("site.toml:7: \"kinds\" has to be a list of kinds of logged values\n").substr(0, 60));
}

TEST(ConfigFile, EveryCutOfADescriptionIsReadOrRefused) {
    const std::string whole =
        "port = 50000\n[[device]]\ninstance = 1\naddress = \"127.1.0.1\"\n[[device.object]]\n"
        "type = \"trend-log\"\ninstance = 1\nrecord = [{ time = 2026-04-01T00:00:00, real = 1.5 }]\n";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        SimulatorConfig config;
        std::string errors;
        const bool good = ParseConfig(std::string_view(whole).substr(0, length), "site.toml", config, errors);
        EXPECT_EQ(good, errors.empty()) << length;
    }
}

TEST(ConfigFile, TheExampleCanBeRead) {
    SimulatorConfig config;
    std::string errors;
    EXPECT_TRUE(LoadConfig(std::string(BDC_SOURCE_DIR) + "/simulator/examples/building.toml", config, errors))
        << errors;
    EXPECT_EQ(config.Devices.size(), 3U);
    EXPECT_EQ(config.Routers.at(0).Networks.at(0).Devices.size(), 2U);
}

TEST(ConfigFile, ReadsWhatClientsWorkOn) {
    const SimulatorConfig config = Good(R"(
[[device]]
instance = 1
address = "127.3.2.1"
password = "p"
restart_ms = 7
creates = ["calendar"]
max_objects = 9
events_per_answer = 2
profiles = ["apdu-50", "restarts"]
[device.backup]
files = ["file,4"]
preparation = 3
restore_preparation = 4
completion = 5
failure_timeout = 6
old_numbers = true
[[device.object]]
type = "file"
instance = 1
access = "record"
file_records = ["a", "b"]
max_size = 100
file_read_only = true
[[device.object]]
type = "file"
instance = 2
size = 1000
[[device.object]]
type = "analog-value"
instance = 1
commandable = true
permanent = true
all_properties = true
read_only = ["present-value"]
[device.object.event]
state = 2
acked = true
notification_class = 5
notify_type = 1
)");
    ASSERT_EQ(config.Devices.size(), 1U);
    const DeviceConfig& device = config.Devices[0];
    EXPECT_EQ(device.Password, "p");
    EXPECT_EQ(device.RestartMs, 7U);
    EXPECT_EQ(device.Creates, std::vector<BACSTAC_OBJECT_TYPE>{OBJ_CALENDAR});
    EXPECT_EQ(device.MaxObjects, 9U);
    EXPECT_EQ(device.EventsPerAnswer, 2U);
    EXPECT_EQ(device.MaxApdu, 50U);
    EXPECT_EQ(device.Faults.size(), 1U);
    ASSERT_TRUE(device.Backup.has_value());
    EXPECT_EQ(device.Backup->Files, (std::vector<BACSTAC_OBJECT_ID>{{OBJ_FILE, 4}}));
    EXPECT_EQ(device.Backup->BackupPreparation, 3U);
    EXPECT_EQ(device.Backup->RestorePreparation, 4U);
    EXPECT_EQ(device.Backup->CompletionTime, 5U);
    EXPECT_EQ(device.Backup->FailureTimeout, 6U);
    EXPECT_TRUE(device.Backup->OldNumbers);
    ASSERT_EQ(device.Objects.size(), 3U);
    const FileConfig& records = *device.Objects[0].File;
    EXPECT_TRUE(records.OfRecords);
    EXPECT_EQ(records.Records, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(records.MaxSize, 100U);
    EXPECT_TRUE(records.ReadOnly);
    EXPECT_EQ(device.Objects[1].File->Octets.size(), 1000U);
    const ObjectConfig& value = device.Objects[2];
    EXPECT_TRUE(value.Commandable && value.Permanent && value.AllProperties);
    EXPECT_EQ(value.ReadOnly, std::vector<BACSTAC_PROPERTY_ID>{PROP_PRESENT_VALUE});
    ASSERT_TRUE(value.Event.has_value());
    EXPECT_EQ(value.Event->State, 2U);
    EXPECT_TRUE(value.Event->Acked);
    EXPECT_EQ(value.Event->NotificationClass, 5U);
    EXPECT_EQ(value.Event->NotifyType, 1U);
}

TEST(ConfigFile, TheControllerCanBeRead) {
    SimulatorConfig config;
    std::string errors;
    ASSERT_TRUE(LoadConfig(std::string(BDC_SOURCE_DIR) + "/simulator/examples/controller.toml", config, errors))
        << errors;
    ASSERT_EQ(config.Devices.size(), 2U);
    const Device device(config.Devices[0], [] { return LocalTime{0}; });
    EXPECT_EQ(device.ObjectList().size(), 13U); // with the device and the file that the backup makes
    EXPECT_EQ(device.Records({OBJ_EVENT_LOG, 1}).size(), 10U);
    EXPECT_EQ(device.GetProperty({OBJ_ANALOG_VALUE, 1}, 104), Value::Real(21.5F)); // relinquish-default
    EXPECT_TRUE(config.Devices[1].Quirks.WrongCharacterSet);
}

TEST(ConfigFile, AMissingFileIsTold) {
    SimulatorConfig config;
    std::string errors;
    EXPECT_FALSE(LoadConfig("/nonexistent/site.toml", config, errors));
    EXPECT_EQ(errors, "/nonexistent/site.toml: cannot be read\n");
}

} // namespace
} // namespace sim
