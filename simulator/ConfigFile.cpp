#include "simulator/ConfigFile.h"

#include "api/bacnet/Enums.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "simulator/ConfigNames.h"
#include "simulator/Profiles.h"

#include <toml++/toml.h>

#include <fstream>
#include <functional>
#include <set>
#include <sstream>

namespace sim {

namespace {

// Faults as lines "FILE:LINE: text"; there are never more than a screenful.
class Faults {
public:
    explicit Faults(std::string name) : m_name(std::move(name)) {}
    void Add(const toml::node& node, const std::string& text) { Add(node.source().begin.line, text); }
    void Add(toml::source_index line, const std::string& text) {
        constexpr unsigned LIMIT = 20;
        if (m_count++ < LIMIT)
            m_text += m_name + ":" + std::to_string(line) + ": " + text + "\n";
    }
    const std::string& Text() const { return m_text; }

private:
    std::string m_name;
    std::string m_text;
    unsigned m_count = 0;
};

// Takes the known keys out of one table, one call each; Finish tells of those that are left.
class Table {
public:
    Table(const toml::table& table, Faults& faults) : m_table(table), m_faults(faults) {}

    const toml::node* Take(std::string_view key) {
        m_known.insert(std::string(key));
        return m_table.get(key);
    }
    const toml::table& Source() const { return m_table; }

    template <typename T>
    void Integer(std::string_view key, std::int64_t low, std::int64_t high, T& target) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        const auto* value = node->as_integer();
        if (value != nullptr && value->get() >= low && value->get() <= high)
            target = static_cast<T>(value->get());
        else
            Fault(*node, key, "has to be a whole number from " + std::to_string(low) + " to " + std::to_string(high));
    }
    void Boolean(std::string_view key, bool& target) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        if (const auto* value = node->as_boolean())
            target = value->get();
        else
            Fault(*node, key, "has to be true or false");
    }
    void Text(std::string_view key, std::string& target) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        if (const auto* value = node->as_string())
            target = value->get();
        else
            Fault(*node, key, "has to be text");
    }
    // A text that parse (text -> optional) understands, or a whole number, which is handed on as its decimal text.
    template <typename Parse, typename T>
    void Word(std::string_view key, const char* what, Parse parse, T& target) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        std::string text;
        if (const auto* value = node->as_string())
            text = value->get();
        else if (const auto* number = node->as_integer())
            text = std::to_string(number->get());
        if (const auto meaning = parse(text))
            target = *meaning;
        else
            Fault(*node, key, std::string("has to be ") + what);
    }
    // The same for a list of texts.
    template <typename Parse, typename T>
    void Words(std::string_view key, const char* what, Parse parse, std::vector<T>& target) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        const toml::array* list = node->as_array();
        if (list == nullptr)
            return Fault(*node, key, std::string("has to be a list of ") + what);
        target.clear();
        for (const toml::node& element : *list) {
            const auto* text = element.as_string();
            const auto meaning = text == nullptr ? decltype(parse(std::string()))() : parse(text->get());
            if (meaning)
                target.push_back(*meaning);
            else
                Fault(element, key, std::string("has to be a list of ") + what);
        }
    }
    // Calls read(Table&) for every table of the list of tables.
    void Tables(std::string_view key, const std::function<void(Table&)>& read) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        const toml::array* list = node->as_array();
        if (list == nullptr || (!list->empty() && !list->is_homogeneous(toml::node_type::table)))
            return Fault(*node, key, "has to be a list of tables");
        for (const toml::node& element : *list) {
            Table table(*element.as_table(), m_faults);
            read(table);
            table.Finish();
        }
    }
    // Calls read(Table&) for the table, if there is one.
    void Single(std::string_view key, const std::function<void(Table&)>& read) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        if (!node->is_table())
            return Fault(*node, key, "has to be a table");
        Table table(*node->as_table(), m_faults);
        read(table);
        table.Finish();
    }
    void Require(std::string_view key) {
        if (!m_table.contains(key))
            m_faults.Add(m_table, "\"" + std::string(key) + "\" is missing");
    }
    void Fault(const toml::node& node, std::string_view key, const std::string& text) {
        m_faults.Add(node, "\"" + std::string(key) + "\" " + text);
    }
    void Finish() {
        for (const auto& [key, node] : m_table)
            if (!m_known.contains(std::string(key.str())))
                m_faults.Add(key.source().begin.line, "unknown key \"" + std::string(key.str()) + "\"");
    }
    Faults& AllFaults() const { return m_faults; }

private:
    const toml::table& m_table;
    Faults& m_faults;
    std::set<std::string> m_known;
};

// ---- values

BACSTAC_DATE DateOf(const toml::date& date) {
    BACSTAC_DATE value{};
    value.Year = date.year;
    value.Month = date.month;
    value.Day = date.day;
    return value;
}

BACSTAC_TIME TimeOf(const toml::time& time) {
    return {time.hour, time.minute, time.second, static_cast<std::uint8_t>(time.nanosecond / 10'000'000)};
}

// Nothing for a date and time that carries a time zone or does not exist.
std::optional<BACSTAC_DATE_TIME> DateTimeOf(const toml::node& node) {
    const auto* value = node.as_date_time();
    if (value == nullptr || value->get().offset)
        return std::nullopt;
    BACSTAC_DATE_TIME result{};
    result.Date = DateOf(value->get().date);
    result.Time = TimeOf(value->get().time);
    const auto known = ToLocalTime(result);
    return known ? std::optional(ToDateTime(*known)) : std::nullopt;
}

std::optional<double> RealOf(const toml::node& node) {
    return node.is_number() ? node.value<double>() : std::nullopt;
}

std::optional<std::int64_t> WholeOf(const toml::node& node, std::int64_t low, std::int64_t high) {
    const auto* value = node.as_integer();
    if (value == nullptr || value->get() < low || value->get() > high)
        return std::nullopt;
    return value->get();
}

// The value of one element; nothing when the node cannot be one.
std::optional<Value> ElementOf(const toml::node& node, BACSTAC_DATA_TYPE type) {
    const auto text = node.value_exact<std::string>();
    const auto from = [](const auto& parsed, auto make) {
        return parsed ? std::optional<Value>(make(*parsed)) : std::nullopt;
    };
    switch (type) {
    case TYPE_BOOLEAN:
        return from(node.value_exact<bool>(), Value::Boolean);
    case TYPE_UNSIGNED:
        return from(WholeOf(node, 0, 0xFFFFFFFF),
                    [](std::int64_t v) { return Value::Unsigned(static_cast<std::uint32_t>(v)); });
    case TYPE_SIGNED:
        return from(WholeOf(node, INT32_MIN, INT32_MAX),
                    [](std::int64_t v) { return Value::Signed(static_cast<std::int32_t>(v)); });
    case TYPE_ENUMERATED:
        return from(WholeOf(node, 0, 0xFFFFFFFF),
                    [](std::int64_t v) { return Value::Enumerated(static_cast<std::uint32_t>(v)); });
    case TYPE_REAL:
        return from(RealOf(node), [](double v) { return Value::Real(static_cast<float>(v)); });
    case TYPE_DOUBLE:
        return from(RealOf(node), Value::Double);
    case TYPE_DATE:
        return from(node.value_exact<toml::date>(), [](const toml::date& v) { return Value::Date(DateOf(v)); });
    case TYPE_TIME:
        return from(node.value_exact<toml::time>(), [](const toml::time& v) { return Value::Time(TimeOf(v)); });
    case TYPE_DATE_TIME:
        return from(DateTimeOf(node), Value::DateTime);
    default:
        break;
    }
    if (!text)
        return std::nullopt;
    switch (type) {
    case TYPE_STRING:
        return Value::String(*text);
    case TYPE_OCTET_STRING:
        return from(OctetsOf(*text), [](const std::vector<std::uint8_t>& v) { return Value::OctetString(v); });
    case TYPE_BIT_STRING:
        return from(BitsOf(*text), [](const BACSTAC_BIT_STRING& v) { return Value::BitString(v); });
    case TYPE_OBJECT_ID:
        return from(ObjectIdOf(*text), Value::ObjectId);
    case TYPE_DEV_OBJ_PROP_REF:
        return from(ReferenceOf(*text), Value::Reference);
    default:
        return std::nullopt;
    }
}

struct TypeWord {
    std::string_view Text;
    BACSTAC_DATA_TYPE Type;
};

// Keys of the form { real = 1.5 }, for values whose type the property does not tell.
constexpr TypeWord TYPE_WORDS[] = {
    {"boolean", TYPE_BOOLEAN},
    {"unsigned", TYPE_UNSIGNED},
    {"signed", TYPE_SIGNED},
    {"real", TYPE_REAL},
    {"double", TYPE_DOUBLE},
    {"octets", TYPE_OCTET_STRING},
    {"text", TYPE_STRING},
    {"bits", TYPE_BIT_STRING},
    {"enumerated", TYPE_ENUMERATED},
    {"date", TYPE_DATE},
    {"time", TYPE_TIME},
    {"object", TYPE_OBJECT_ID},
    {"date-time", TYPE_DATE_TIME},
    {"reference", TYPE_DEV_OBJ_PROP_REF},
};

// { real = 1.5 }, { encoded = "44 3F C0 00 00" }, { null = true }.
std::optional<Value> TypedValueOf(const toml::table& table) {
    if (table.size() != 1)
        return std::nullopt;
    const auto only = table.begin();
    const std::string_view key = only->first.str();
    const toml::node& node = only->second;
    if (key == "null")
        return Value::Null();
    if (key == "encoded") {
        const auto octets = OctetsOf(node.value_or(std::string("?")));
        return octets ? std::optional(Value::Encoded(*octets)) : std::nullopt;
    }
    for (const TypeWord& word : TYPE_WORDS)
        if (word.Text == key)
            return ElementOf(node, word.Type);
    return std::nullopt;
}

std::optional<Value> SingleOf(const toml::node& node, BACSTAC_DATA_TYPE type) {
    if (const toml::table* table = node.as_table())
        return TypedValueOf(*table);
    return ElementOf(node, type);
}

// A property's value: its type is the standard's where there is one, otherwise the value itself has to tell it.
std::optional<Value> PropertyValueOf(const toml::node& node, BACSTAC_OBJECT_TYPE object, BACSTAC_PROPERTY_ID property) {
    const bacnet::PropertyInfo* info = bacnet::FindProperty(object, property);
    const BACSTAC_DATA_TYPE type = info != nullptr ? info->Type : TYPE_NONE;
    const toml::array* list = node.as_array();
    if (list == nullptr)
        return SingleOf(node, type);
    std::vector<Value> elements;
    for (const toml::node& element : *list) {
        const auto value = SingleOf(element, type);
        if (!value)
            return std::nullopt;
        elements.push_back(*value);
    }
    const bool isList = info != nullptr && info->Shape == bacnet::PropertyShape::list;
    return isList ? Value::List(elements) : Value::Array(elements);
}

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

void ReadDatum(Table& table, LogRecord& record) {
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

void ReadTime(Table& table, std::string_view key, LocalTime& target) {
    const toml::node* node = table.Take(key);
    if (node == nullptr)
        return;
    if (const auto time = DateTimeOf(*node))
        target = *ToLocalTime(*time);
    else
        table.Fault(*node, key, "has to be a local date and time");
}

// One datum, or those of a log-multiple record in values.
void ReadRecord(Table& table, std::vector<LogRecord>& records) {
    LogRecord record;
    table.Require("time");
    ReadTime(table, "time", record.Time);
    BACSTAC_BIT_STRING flags{};
    table.Word("status_flags", "four bits, as \"0100\"", BitsOf, flags);
    if (flags.BitCount != 0)
        record.StatusFlags = flags.Bits[0];
    ReadDatum(table, record);
    table.Tables("values", [&record](Table& value) { ReadDatum(value, record); });
    records.push_back(std::move(record));
}

void ReadLog(Table& table, const DeviceConfig& device, ObjectConfig& object) {
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
    table.Tables("record", [&log](Table& record) { ReadRecord(record, log.Records); });
    for (const LogRecord& record : log.Records)
        if (object.Id.Type == OBJ_TREND_LOG && record.Data.size() != 1)
            table.Fault(*table.Source().get("record"), "record", "of a trend log has to hold one value");
}

// Octets that look like nothing in particular, the same every time.
std::string GeneratedOctets(std::uint32_t size, std::uint64_t seed) {
    std::string octets(size, '\0');
    for (std::uint32_t i = 0; i < size; ++i)
        octets[i] = static_cast<char>(MixSeed(seed, i) & 0xFF);
    return octets;
}

// Contents: text, a host's file, or size octets; of a file of records texts, or so many generated ones.
void ReadFile(Table& table, ObjectConfig& object) {
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

// ---- devices

void ReadProperties(Table& table, ObjectConfig& object) {
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

void ReadEvent(Table& table, EventConfig& event) {
    table.Integer("state", 0, 65535, event.State);
    table.Boolean("acked", event.Acked);
    table.Integer("notification_class", 0, 0xFFFFFFFF, event.NotificationClass);
    table.Integer("notify_type", 0, 1, event.NotifyType);
}

void ReadObject(Table& table, DeviceConfig& device) {
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
    table.Single("event", [&object](Table& event) { ReadEvent(event, object.Event.emplace()); });
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

void ReadBackup(Table& table, DeviceConfig& device) {
    BackupConfig& backup = device.Backup.emplace();
    table.Words("files", "objects \"file,1\"", ObjectIdOf, backup.Files);
    for (const BACSTAC_OBJECT_ID& file : backup.Files)
        if (file.Type != OBJ_FILE)
            table.Fault(*table.Source().get("files"), "files", "has to name files");
    table.Integer("preparation", 0, 65535, backup.BackupPreparation);
    backup.RestorePreparation = backup.BackupPreparation;
    table.Integer("restore_preparation", 0, 65535, backup.RestorePreparation);
    table.Integer("completion", 0, 65535, backup.CompletionTime);
    table.Integer("failure_timeout", 0, 65535, backup.FailureTimeout);
    table.Boolean("old_numbers", backup.OldNumbers);
    table.Boolean("without_preparation_times", backup.WithoutPreparationTimes);
}

void ReadFault(Table& table, DeviceConfig& device) {
    sim::Fault fault;
    table.Require("kind");
    table.Word("kind", "a kind of fault", FaultKindOf, fault.Kind);
    table.Integer("delay_ms", 0, 3'600'000, fault.DelayMs);
    table.Integer("every", 1, 1'000'000, fault.Every);
    table.Integer("class", 0, 65535, fault.Class);
    table.Integer("code", 0, 65535, fault.Code);
    table.Integer("reason", 0, 255, fault.Code);
    table.Integer("segments", 0, 65535, fault.Segments);
    table.Integer("octets", 0, 1476, fault.Octets);
    table.Integer("skip", 0, INT64_MAX, fault.Skip);
    table.Integer("times", 0, INT64_MAX, fault.Times);
    table.Word("service", "a service", ServiceOf, fault.Service);
    table.Word("object", "\"type,instance\"", ObjectIdOf, fault.Object);
    device.Faults.push_back(fault);
}

void ReadProfiles(Table& table, DeviceConfig& device) {
    std::vector<const Profile*> profiles;
    const auto named = [](const std::string& name) {
        const Profile* profile = FindProfile(name);
        return profile == nullptr ? std::nullopt : std::optional(profile);
    };
    table.Words("profiles", "names of profiles", named, profiles);
    for (const Profile* profile : profiles)
        profile->Apply(device);
}

// What devices on the IP network and behind routers have in common.
void ReadDevice(Table& table, DeviceConfig& device) {
    table.Require("instance");
    table.Integer("instance", 0, BACSTAC_MAX_INSTANCE - 1, device.Instance);
    table.Text("name", device.Name);
    table.Text("description", device.Description);
    table.Integer("vendor", 0, 65535, device.VendorId);
    table.Integer("protocol_revision", 0, 255, device.ProtocolRevision);
    table.Integer("max_apdu", 50, 1476, device.MaxApdu);
    table.Word("segmentation", "\"both\", \"transmit\", \"receive\" or \"none\"", SegmentationOf, device.Segmentation);
    table.Integer("window", 1, 127, device.WindowSize);
    table.Integer("max_segments", 2, 100'000, device.MaxSegments);
    table.Integer("segment_timeout_ms", 1, 60'000, device.SegmentTimeoutMs);
    table.Integer("segment_retries", 0, 255, device.SegmentRetries);
    table.Words("lacks", "services", ServiceOf, device.LacksServices);
    bool bothForms = false;
    table.Boolean("both_by_time_forms", bothForms);
    device.ByTime = bothForms ? ByTimeForms::both : ByTimeForms::byRevision;
    if (table.Source().contains("creates"))
        table.Words("creates", "object types", ObjectTypeOf, device.Creates.emplace());
    table.Integer("events_per_answer", 0, 1'000'000, device.EventsPerAnswer);
    table.Integer("max_objects", 1, 4'194'304, device.MaxObjects);
    table.Tables("object", [&device](Table& object) { ReadObject(object, device); });
    ReadProfiles(table, device);
    table.Text("password", device.Password);
    table.Integer("restart_ms", 0, 600'000, device.RestartMs);
    table.Single("backup", [&device](Table& backup) { ReadBackup(backup, device); });
    table.Tables("fault", [&device](Table& fault) { ReadFault(fault, device); });
}

void ReadAddress(Table& table, std::uint32_t& ip, std::uint16_t& port) {
    table.Require("address");
    const toml::node* node = table.Take("address");
    if (node != nullptr && !ParseAddress(node->value_or(std::string()), ip, port))
        table.Fault(*node, "address", "has to be an IPv4 address, with a port or without");
}

void ReadNetwork(Table& table, RouterConfig& router) {
    NetworkConfig network;
    table.Require("number");
    table.Integer("number", 1, 65534, network.Number);
    table.Tables("device", [&network](Table& fields) {
        DeviceConfig device;
        device.MaxApdu = 480; // what such a network carries
        fields.Require("mac");
        fields.Integer("mac", 0, 255, device.Mac);
        ReadDevice(fields, device);
        network.Devices.push_back(std::move(device));
    });
    router.Networks.push_back(std::move(network));
}

void ReadSite(Table& table, SimulatorConfig& config) {
    table.Integer("port", 1, 65535, config.Port);
    table.Integer("threads", 1, 64, config.Threads);
    table.Integer("i_am_per_ms", 0, 1'000'000, config.IAmPerMs);
    table.Integer("append_every_ms", 0, 3'600'000, config.AppendEveryMs);
    const auto mode = [](std::string_view text) {
        return text == "broadcast" ? std::optional(IAmMode::broadcast)
               : text == "unicast" ? std::optional(IAmMode::unicast)
                                   : std::nullopt;
    };
    table.Word("i_am", "\"broadcast\" or \"unicast\"", mode, config.IAm);
    table.Tables("device", [&config](Table& fields) {
        DeviceConfig device;
        ReadAddress(fields, device.Ip, device.Port);
        ReadDevice(fields, device);
        config.Devices.push_back(std::move(device));
    });
    table.Tables("router", [&config](Table& fields) {
        RouterConfig router;
        ReadAddress(fields, router.Ip, router.Port);
        fields.Tables("network", [&router](Table& network) { ReadNetwork(network, router); });
        config.Routers.push_back(std::move(router));
    });
}

bool Read(const toml::table& root, const std::string& name, SimulatorConfig& config, std::string& errors) {
    Faults faults(name);
    SimulatorConfig read;
    Table table(root, faults);
    ReadSite(table, read);
    table.Finish();
    errors = faults.Text();
    if (!errors.empty())
        return false;
    config = std::move(read);
    return true;
}

} // namespace

bool ParseConfig(std::string_view text, const std::string& name, SimulatorConfig& config, std::string& errors) {
    try {
        return Read(toml::parse(text, name), name, config, errors);
    } catch (const toml::parse_error& error) {
        errors =
            name + ":" + std::to_string(error.source().begin.line) + ": " + std::string(error.description()) + "\n";
        return false;
    }
}

bool LoadConfig(const std::string& path, SimulatorConfig& config, std::string& errors) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    if (!file || !(text << file.rdbuf())) {
        errors = path + ": cannot be read\n";
        return false;
    }
    return ParseConfig(text.str(), path, config, errors);
}

} // namespace sim
