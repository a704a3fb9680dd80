#include "platform/stack/schema/VendorNames.h"

#include "base/DurableFile.h"
#include "base/NumberText.h"
#include "base/Utf8.h"
#include "platform/stack/schema/PropertyNames.h"

#include <mutex>
#include <optional>
#include <shared_mutex>

namespace bacnet {
namespace {

constexpr std::uint64_t LONGEST_FILE = std::uint64_t{64} << 20;
constexpr std::size_t LONGEST_LINE = 200;
constexpr unsigned LAST_VENDOR = 65535;
constexpr BACSTAC_OBJECT_TYPE LAST_TYPE = 1023;
constexpr BACSTAC_PROPERTY_ID LAST_PROPERTY = 4194303;
constexpr const char* BLANKS = " \t\r";

// The next field; empty at the end.
std::string_view Field(std::string_view& rest) {
    const std::size_t start = rest.find_first_not_of(BLANKS);
    if (start == std::string_view::npos)
        return rest = {};
    rest.remove_prefix(start);
    const std::string_view field = rest.substr(0, rest.find_first_of(BLANKS));
    rest.remove_prefix(field.size());
    return field;
}

std::string_view WithoutComment(std::string_view line) {
    for (std::size_t at = line.find('#'); at != std::string_view::npos; at = line.find('#', at + 1)) {
        if (at == 0 || line[at - 1] == ' ' || line[at - 1] == '\t')
            return line.substr(0, at);
    }
    return line;
}

std::string_view Trimmed(std::string_view text) {
    const std::size_t start = text.find_first_not_of(BLANKS);
    if (start == std::string_view::npos)
        return {};
    return text.substr(start, text.find_last_not_of(BLANKS) - start + 1);
}

bool IsPrintableUtf8(std::string_view text) {
    while (!text.empty()) {
        const Utf8Character character = FirstUtf8(text);
        const bool control =
            (character.point < 0x20 && character.point != '\t') || (character.point >= 0x7F && character.point < 0xA0);
        if (character.length == 0 || control)
            return false;
        text.remove_prefix(character.length);
    }
    return true;
}

std::optional<std::uint32_t> NumberWithin(std::string_view text, std::uint32_t low, std::uint32_t high) {
    const auto number = ParseU32(text);
    return number && *number >= low && *number <= high ? number : std::nullopt;
}

std::string Range(const char* what, std::uint32_t low, std::uint32_t high) {
    return std::string(what) + " must be a number from " + std::to_string(low) + " to " + std::to_string(high);
}

template <typename Map, typename Key>
const std::string* Find(const Map& map, const Key& key) {
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

} // namespace

// What is wrong with the line; empty when it was taken.
std::string VendorNames::Take(std::string_view line) {
    std::string_view rest = line;
    const auto vendor = NumberWithin(Field(rest), 0, LAST_VENDOR);
    if (!vendor)
        return Range("the vendor", 0, LAST_VENDOR);
    const std::string_view kind = Field(rest);
    if (kind == "vendor") {
        const std::string_view name = Trimmed(rest);
        if (name.empty())
            return "the vendor's name is missing";
        m_vendors[*vendor] = name;
        return {};
    }
    std::optional<BACSTAC_PROPERTY_ID> property;
    if (kind == "value") {
        const std::string_view field = Field(rest);
        property = NumberWithin(field, 0, LAST_PROPERTY);
        if (!property)
            property = FindPropertyId(field);
        if (!property)
            return "\"" + std::string(field) + "\" is no property";
    } else if (kind != "object-type" && kind != "property") {
        return "\"" + std::string(kind) + "\" is not vendor, object-type, property or value";
    }
    const std::string_view numberText = Field(rest);
    const std::string_view name = Field(rest);
    if (name.empty())
        return "the name is missing";
    if (!Field(rest).empty())
        return "a name is one word";
    if (property) {
        const auto number = ParseU32(numberText);
        if (!number)
            return Range("the value", 0, UINT32_MAX);
        m_values[{*vendor, *property, *number}] = name;
    } else if (kind == "property") {
        const auto number = NumberWithin(numberText, FIRST_PROPRIETARY_PROPERTY, LAST_PROPERTY);
        if (!number)
            return Range("the property", FIRST_PROPRIETARY_PROPERTY, LAST_PROPERTY);
        m_properties[{*vendor, *number}] = name;
    } else {
        const auto number = NumberWithin(numberText, FIRST_PROPRIETARY_TYPE, LAST_TYPE);
        if (!number)
            return Range("the object type", FIRST_PROPRIETARY_TYPE, LAST_TYPE);
        m_types[{*vendor, *number}] = name;
    }
    return {};
}

void VendorNames::Parse(std::string_view text, std::vector<VendorNamesFault>* faults) {
    if (text.starts_with("\xEF\xBB\xBF")) // the mark that some editors put in front
        text.remove_prefix(3);
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::size_t end = text.find('\n');
        const std::string_view line = Trimmed(WithoutComment(text.substr(0, end)));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty())
            continue;
        std::string fault;
        if (!IsPrintableUtf8(line))
            fault = "the line is no printable UTF-8";
        else if (line.size() > LONGEST_LINE)
            fault = "the line is too long";
        else
            fault = Take(line);
        if (!fault.empty() && faults != nullptr)
            faults->push_back({number, std::move(fault)});
    }
}

const std::string* VendorNames::Vendor(unsigned vendor) const {
    return Find(m_vendors, vendor);
}

const std::string* VendorNames::ObjectType(unsigned vendor, BACSTAC_OBJECT_TYPE type) const {
    return Find(m_types, std::pair(vendor, type));
}

const std::string* VendorNames::Property(unsigned vendor, BACSTAC_PROPERTY_ID property) const {
    return Find(m_properties, std::pair(vendor, property));
}

const std::string* VendorNames::Value(unsigned vendor, BACSTAC_PROPERTY_ID property, std::uint32_t value) const {
    return Find(m_values, std::tuple(vendor, property, value));
}

namespace {

struct Current {
    std::shared_mutex Lock; // guards Names
    std::shared_ptr<const VendorNames> Names = std::make_shared<VendorNames>();
};

Current& TheCurrent() {
    static Current* const current = new Current; // never destroyed: workers may still ask while the process ends
    return *current;
}

} // namespace

std::shared_ptr<const VendorNames> CurrentVendorNames() {
    Current& current = TheCurrent();
    const std::shared_lock lock(current.Lock);
    return current.Names;
}

void SetVendorNames(std::shared_ptr<const VendorNames> names) {
    Current& current = TheCurrent();
    const std::unique_lock lock(current.Lock);
    current.Names = names != nullptr ? std::move(names) : std::make_shared<VendorNames>();
}

bool LoadVendorNames(const std::string& path, std::vector<std::string>& errors) {
    std::string text;
    std::string error;
    const FileRead read = ReadWholeFile(path, LONGEST_FILE, text, &error);
    if (read == FileRead::Failed) {
        errors.push_back(error);
        return false;
    }
    auto names = std::make_shared<VendorNames>();
    std::vector<VendorNamesFault> faults;
    names->Parse(text, &faults);
    for (const VendorNamesFault& fault : faults)
        errors.push_back(path + ":" + std::to_string(fault.Line) + ": " + fault.Text);
    SetVendorNames(std::move(names));
    return true;
}

} // namespace bacnet
