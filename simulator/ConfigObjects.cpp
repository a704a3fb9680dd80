#include "simulator/ConfigObjects.h"

#include "api/bacnet/Enums.h"
#include "simulator/ConfigNames.h"
#include "simulator/ConfigValues.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace sim {

namespace {

// ---- logs

// { real = 1.5 } as a logged value; failure = [class, code], time_change in seconds, status as three bits.
std::optional<LogDatum> DatumOf(std::string_view kind, const toml::node& node) {
    const auto bits = BitsOf(node.value_or(std::string("?")));
    if (kind == "boolean" && node.is_boolean())
        return LogDatum::Boolean(node.value_or(false));
    if (kind == "real" && node.is_number())
        return LogDatum::Real(static_cast<float>(node.value_or(0.0)));
    if (kind == "time_change" && node.is_number())
        return LogDatum::TimeChange(static_cast<float>(node.value_or(0.0)));
    if (kind == "enumerated" || kind == "unsigned") {
        const auto number = WholeOf(node, 0, 0xFFFFFFFF);
        if (!number)
            return std::nullopt;
        const auto value = static_cast<std::uint32_t>(*number);
        return kind == "unsigned" ? LogDatum::Unsigned(value) : LogDatum::Enumerated(value);
    }
    if (const auto number = WholeOf(node, INT32_MIN, INT32_MAX); kind == "signed" && number)
        return LogDatum::Signed(static_cast<std::int32_t>(*number));
    if (kind == "bits" && bits)
        return LogDatum::BitString(*bits);
    if (kind == "status" && bits && bits->BitCount == 3)
        return LogDatum::Status((bits->Bits[0] & 1) != 0, (bits->Bits[0] & 2) != 0, (bits->Bits[0] & 4) != 0);
    if (kind == "null")
        return LogDatum::Null();
    if (const auto octets = OctetsOf(node.value_or(std::string("?"))); kind == "any" && octets)
        return LogDatum::AnyValue(std::string(octets->begin(), octets->end()));
    const toml::array* pair = node.as_array();
    if (kind == "failure" && pair != nullptr && pair->size() == 2) {
        const auto errorClass = WholeOf((*pair)[0], 0, 65535);
        const auto code = WholeOf((*pair)[1], 0, 65535);
        if (errorClass && code)
            return LogDatum::Failure(static_cast<std::uint32_t>(*errorClass), static_cast<std::uint32_t>(*code));
    }
    return std::nullopt;
}

void ReadDatum(ConfigTable& table, LogRecord& record) {
    constexpr std::string_view KINDS[] = {"boolean", "real", "enumerated",  "unsigned", "signed", "bits",
                                          "null",    "any",  "time_change", "failure",  "status"};
    for (const std::string_view kind : KINDS) {
        const toml::node* node = table.Take(kind);
        if (node == nullptr)
            continue;
        if (const auto datum = DatumOf(kind, *node))
            record.Data.push_back(*datum);
        else
            table.Fault(*node, kind, "cannot be logged so");
    }
}

void ReadTime(ConfigTable& table, std::string_view key, LocalTime& target) {
    const toml::node* node = table.Take(key);
    if (node == nullptr)
        return;
    if (const auto time = DateTimeOf(*node))
        target = *ToLocalTime(*time);
    else
        table.Fault(*node, key, "has to be a local date and time");
}

// One datum, or those of a log-multiple record in values.
void ReadRecord(ConfigTable& table, std::vector<LogRecord>& records) {
    LogRecord record;
    table.Require("time");
    ReadTime(table, "time", record.Time);
    BACSTAC_BIT_STRING flags{};
    table.Word("status_flags", "four bits, as \"0100\"", BitsOf, flags);
    if (flags.BitCount != 0)
        record.StatusFlags = flags.Bits[0];
    ReadDatum(table, record);
    table.Tables("values", [&record](ConfigTable& value) { ReadDatum(value, record); });
    records.push_back(std::move(record));
}

void ReadLog(ConfigTable& table, const DeviceConfig& device, ObjectConfig& object) {
    LogConfig& log = object.Log.emplace();
    table.Integer("capacity", 1, 0xFFFFFFFE, log.Capacity);
    table.Integer("initial_total", 0, 0xFFFFFFFF, log.InitialTotal);
    table.Boolean("enabled", log.Enabled);
    table.Boolean("stop_when_full", log.StopWhenFull);
    table.Words("references", "texts \"type,instance,property\"", ReferenceOf, log.References);
    GeneratorConfig& generator = log.Generator.emplace();
    generator.Seed = MixSeed(device.Instance, std::uint64_t{object.Id.Type} << 32 | object.Id.Instance);
    generator.Base = DEFAULT_RECORD_BASE;
    generator.Kinds.assign(std::max<std::size_t>(log.References.size(), 1), BACSTAC_LOG_REAL);
    generator.WithStatusFlags = object.Id.Type == OBJ_TREND_LOG;
    table.Integer("records", 0, INT64_MAX, log.Generated);
    table.Integer("seed", 0, INT64_MAX, generator.Seed);
    table.Integer("status_every", 0, INT64_MAX, generator.StatusEvery);
    table.Words("kinds", "kinds of logged values", DatumKindOf, generator.Kinds);
    if (object.Id.Type == OBJ_TREND_LOG && generator.Kinds.size() != 1)
        table.Fault(*table.Source().get("kinds"), "kinds", "of a trend log has to be one kind");
    ReadTime(table, "start", generator.Base);
    std::uint32_t seconds = 60;
    table.Integer("interval", 1, 86400, seconds);
    generator.Interval = seconds * HUNDREDTHS_PER_SECOND;
    table.Tables("record", [&log](ConfigTable& record) { ReadRecord(record, log.Records); });
    for (const LogRecord& record : log.Records)
        if (object.Id.Type == OBJ_TREND_LOG && record.Data.size() != 1)
            table.Fault(*table.Source().get("record"), "record", "of a trend log has to hold one value");
}

// ---- files

// Octets that look like nothing in particular, the same every time.
std::string GeneratedOctets(std::uint32_t size, std::uint64_t seed) {
    std::string octets(size, '\0');
    for (std::uint32_t i = 0; i < size; ++i)
        octets[i] = static_cast<char>(MixSeed(seed, i) & 0xFF);
    return octets;
}

// Contents: text, a host's file, or size octets; of a file of records texts, or so many generated ones.
void ReadFile(ConfigTable& table, ObjectConfig& object) {
    FileConfig& file = object.File.emplace();
    std::string access = "stream";
    std::string from;
    std::uint32_t size = 0;
    std::uint32_t count = 0;
    table.Text("access", access);
    table.Text("file_type", file.Type);
    table.Boolean("file_read_only", file.ReadOnly);
    table.Integer("max_size", 0, 0x7FFFFFFF, file.MaxSize);
    table.Text("text", file.Octets);
    table.Text("from", from);
    table.Integer("size", 0, 0x7FFFFFFF, size);
    table.Integer("record_count", 0, 1'000'000, count);
    const auto asText = [](const std::string& text) { return std::optional(text); };
    table.Words("file_records", "texts", asText, file.Records);
    if (access != "stream" && access != "record")
        table.Fault(*table.Source().get("access"), "access", "has to be \"stream\" or \"record\"");
    file.OfRecords = access == "record";
    if (!from.empty()) {
        std::ifstream source(from, std::ios::binary);
        std::ostringstream content;
        if (!source || !(content << source.rdbuf()))
            table.Fault(*table.Source().get("from"), "from", "names a file that cannot be read");
        file.Octets = content.str();
    }
    if (size > 0 && !file.OfRecords)
        file.Octets = GeneratedOctets(size, object.Id.Instance);
    for (std::uint32_t i = 0; i < count; ++i)
        file.Records.push_back(GeneratedOctets(size, MixSeed(object.Id.Instance, i)));
}

// ---- all objects

void ReadProperties(ConfigTable& table, ObjectConfig& object) {
    const toml::node* node = table.Take("properties");
    if (node == nullptr)
        return;
    const toml::table* properties = node->as_table();
    if (properties == nullptr)
        return table.Fault(*node, "properties", "has to be a table");
    for (const auto& [key, content] : *properties) {
        const auto property = PropertyOf(key.str());
        if (!property) {
            table.AllFaults().Add(key.source().begin.line, "no property is called \"" + std::string(key.str()) + "\"");
            continue;
        }
        if (auto value = PropertyValueOf(content, object.Id.Type, *property))
            object.Properties.emplace_back(*property, std::move(*value));
        else
            table.Fault(content, key.str(), "is not a value of that property");
    }
}

void ReadEvent(ConfigTable& table, EventConfig& event) {
    table.Integer("state", 0, 65535, event.State);
    table.Boolean("acked", event.Acked);
    table.Integer("notification_class", 0, 0xFFFFFFFF, event.NotificationClass);
    table.Integer("notify_type", 0, 1, event.NotifyType);
}

} // namespace

void ReadObject(ConfigTable& table, DeviceConfig& device) {
    ObjectConfig object;
    table.Require("type");
    table.Require("instance");
    table.Word("type", "an object type, by name or number", ObjectTypeOf, object.Id.Type);
    table.Integer("instance", 0, BACSTAC_MAX_INSTANCE - 1, object.Id.Instance);
    table.Text("name", object.Name);
    table.Text("description", object.Description);
    table.Boolean("intrinsic_reporting", object.IntrinsicReporting);
    table.Boolean("commandable", object.Commandable);
    table.Boolean("all_properties", object.AllProperties);
    table.Boolean("permanent", object.Permanent);
    table.Single("event", [&object](ConfigTable& event) { ReadEvent(event, object.Event.emplace()); });
    table.Words("read_only", "properties", PropertyOf, object.ReadOnly);
    if (object.Id.Type == OBJ_TREND_LOG || object.Id.Type == OBJ_TREND_LOG_MULTIPLE || object.Id.Type == OBJ_EVENT_LOG)
        ReadLog(table, device, object);
    if (object.Id.Type == OBJ_FILE)
        ReadFile(table, object);
    ReadProperties(table, object);
    for (const ObjectConfig& other : device.Objects)
        if (other.Id == object.Id)
            table.AllFaults().Add(table.Source(), "the device has this object already");
    device.Objects.push_back(std::move(object));
}

} // namespace sim
