#include "tests/unit/host/bacnet/CommandSite.h"

#include "api/bacnet/Enums.h"
#include "simulator/Generate.h"

#include <nlohmann/json.hpp>

namespace {

constexpr sim::LocalTime YEAR_2026 = sim::LocalTime{20454} * 24 * 60 * 60 * 100; // its first midnight

sim::ObjectConfig Object(BACSTAC_OBJECT_ID id, const char* name) {
    sim::ObjectConfig object;
    object.Id = id;
    object.Name = name;
    return object;
}

sim::DeviceConfig AirHandlingUnit() {
    sim::DeviceConfig device;
    device.Instance = 1000;
    device.Name = "Air handling unit";
    device.Password = "secret";
    device.RestartMs = 50;
    device.Segmentation = bacnet::Segmentation::none; // what is long has to be asked for in parts
    device.Objects.push_back(Object({OBJ_ANALOG_INPUT, 1}, "Supply temperature"));
    device.Objects.back().Properties.emplace_back(PROP_PRESENT_VALUE, sim::Value::Real(21.5F));
    device.Objects.back().Properties.emplace_back(117, sim::Value::Enumerated(62));
    device.Objects.push_back(Object({OBJ_ANALOG_OUTPUT, 1}, "Valve"));
    device.Objects.push_back(Object({OBJ_ANALOG_VALUE, 1}, "Setpoint"));
    device.Objects.push_back(Object({OBJ_BINARY_OUTPUT, 1}, "Fan"));
    device.Objects.push_back(Object({OBJ_TREND_LOG, 1}, "Supply log"));
    sim::LogConfig& log = device.Objects.back().Log.emplace();
    log.References.push_back({{OBJ_ANALOG_INPUT, 1}, PROP_PRESENT_VALUE, 0xFFFFFFFF, 0, {OBJ_DEVICE, 0}});
    log.Generator.emplace().Base = YEAR_2026;
    log.Generated = 300;
    device.Objects.push_back(Object({OBJ_FILE, 1}, "Stream"));
    device.Objects.back().File.emplace().Octets = std::string(5000, 'x') + std::string("\0end", 4);
    device.Objects.push_back(Object({OBJ_FILE, 2}, "Records"));
    device.Objects.back().File.emplace().OfRecords = true;
    device.Objects.back().File->Records = {"one", "", "three"};
    return device;
}

} // namespace

CommandSite::CommandSite() {
    m_config.Port = m_block.Port();
    m_config.Devices.push_back(AirHandlingUnit());
    m_config.Devices.back().Ip = m_block.Ip(1);
    sim::DeviceConfig other;
    other.Instance = 2000;
    other.Name = "Boiler";
    other.Ip = m_block.Ip(2);
    m_config.Devices.push_back(other);
    sim::RouterConfig router;
    router.Ip = m_block.Ip(3);
    router.Networks.emplace_back().Number = 7;
    sim::DeviceConfig room;
    room.Instance = 7001;
    room.Name = "Room";
    room.Mac = 21;
    router.Networks.back().Devices.push_back(room);
    m_config.Routers.push_back(router);
}

void CommandSite::StartSite() {
    m_data.Put("bdc.toml", "[[network]]\nbind = \"" + m_block.Text(250) +
                               "\"\nport = " + std::to_string(m_block.Port()) +
                               "\nbroadcast = \"127.255.255.255\"\n[stack]\napdu_timeout_ms = 400\nretries = 2\n");
    m_simulator = std::make_unique<sim::Simulator>(m_config);
    std::string error;
    ASSERT_TRUE(m_simulator->Start(error)) << error;
}

void CommandSite::StartInstance() {
    m_instance = std::make_unique<CProcess>(Words{BdcPath(), "run", "--headless", "--data", m_data.Path()},
                                            Words{"XDG_RUNTIME_DIR="});
    ASSERT_TRUE(m_instance->WaitForOutput("bdc runs on ")) << m_instance->Errors();
}

ProcessResult CommandSite::Run(const Words& command) const {
    Words arguments = command;
    arguments.insert(arguments.end(), {"--data", m_data.Path()});
    return RunBdc(arguments);
}

nlohmann::json CommandSite::RunJson(const Words& command) const {
    Words arguments = command;
    arguments.emplace_back("--json");
    const ProcessResult result = Run(arguments);
    EXPECT_EQ(result.code, 0) << result.output;
    EXPECT_EQ(result.errors, "");
    return nlohmann::json::parse(result.output, nullptr, false);
}

std::string CommandSite::Output(const Words& command) const {
    const ProcessResult result = Run(command);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.errors, "");
    return result.output;
}

std::string CommandSite::AddressText(unsigned host) const {
    return m_block.Text(host) + ":" + std::to_string(m_block.Port());
}
