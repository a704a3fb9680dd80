// docs/bacnet.md tells what is supported of the standard. What it tells of services, object types and properties is
// written by this test from the tables and the sources that decide it: run it with BDC_WRITE_LEDGER set to write the
// parts between the marks anew.
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Dir.h"
#include "platform/stack/client/ClientConfig.h"
#include "platform/stack/client/OwnDeviceObject.h"
#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/schema/Enumerations.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/schema/PropertyNames.h"
#include "platform/stack/value/ValueFactory.h"
#include "simulator/model/ServicesSupported.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace bacnet;

namespace {

namespace fs = std::filesystem;

constexpr std::size_t WIDTH = 118;
constexpr BACSTAC_PROPERTY_ID PROP_SERVICES_SUPPORTED = 97;

std::string ReadText(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

fs::path Source(const std::string& path) {
    return fs::path(BDC_SOURCE_DIR) / path;
}

// "getEventInformation" to "get-event-information".
std::string Hyphenated(const std::string& name) {
    std::string text;
    for (const char c : name) {
        if (std::isupper(static_cast<unsigned char>(c)) != 0)
            text += '-';
        text += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return text;
}

// Services that the client's sources send: those it names, but in comparisons, which are of requests that come in, and
// where it serves its own device.
std::set<std::string> Initiated() {
    std::set<std::string> services;
    for (const auto& entry : fs::directory_iterator(Source("platform/stack/client"))) {
        const std::string file = entry.path().filename().string();
        if (!file.ends_with(".cpp") || file == "Status.cpp")
            continue;
        std::istringstream lines(ReadText(entry.path()));
        for (std::string line; std::getline(lines, line);) {
            static const std::regex named("(Confirmed|Unconfirmed)Service::([a-zA-Z]+)");
            if (line.find("==") != std::string::npos)
                continue;
            for (std::sregex_iterator it(line.begin(), line.end(), named), end; it != end; ++it) {
                if ((*it)[1] == "Unconfirmed" || file != "DeviceServer.cpp")
                    services.insert(Hyphenated((*it)[2]));
            }
        }
    }
    return services;
}

BACSTAC_BIT_STRING BitsOf(std::span<const std::uint8_t> encoded) {
    CPropertyContents contents(256);
    EXPECT_EQ(DecodeRecords(encoded, TYPE_BIT_STRING, contents), DecodeResult::ok);
    BACSTAC_BIT_STRING bits{};
    std::memcpy(&bits, contents.Buffer, sizeof bits);
    return bits;
}

// As its device object tells.
BACSTAC_BIT_STRING StationExecutes() {
    OwnDevice device;
    device.Instance = 1;
    const OwnDeviceObject object(device, {}, 1);
    std::uint8_t octets[64];
    Writer writer(octets);
    EXPECT_EQ(object.Write({object.Id(), PROP_SERVICES_SUPPORTED, BACSTAC_NO_INDEX}, writer).Code, 0U);
    return BitsOf(writer.Written());
}

BACSTAC_BIT_STRING SimulatorExecutes() {
    return BitsOf(sim::ServicesSupported(sim::DeviceConfig()).Wire());
}

std::string ServicesTable() {
    std::set<std::string> initiated = Initiated();
    const BACSTAC_BIT_STRING station = StationExecutes();
    const BACSTAC_BIT_STRING simulator = SimulatorExecutes();
    std::ostringstream out;
    out << "| service | initiated | executed by the station | executed by `bdcsim` |\n|---|---|---|---|\n";
    const auto mark = [](bool is) { return is ? "yes" : ""; };
    for (std::uint32_t bit = 0; bit < EnumCount(ENUM_SERVICES_SUPPORTED); ++bit) {
        const std::string name = FindEnumName(ENUM_SERVICES_SUPPORTED, bit);
        out << "| " << name << " | " << mark(initiated.erase(name) != 0) << " | "
            << mark(CBacGeneral::TestBitStringBit(station, bit)) << " | "
            << mark(CBacGeneral::TestBitStringBit(simulator, bit)) << " |\n";
    }
    EXPECT_TRUE(initiated.empty()) << *initiated.begin() << " has no bit";
    return out.str();
}

// Words with commas, broken into lines.
void PutList(std::ostream& out, const std::string& title, const std::vector<std::string>& words) {
    if (words.empty())
        return;
    std::string line = title;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string word = words[i] + (i + 1 < words.size() ? "," : ".");
        if (line.size() + 1 + word.size() > WIDTH) {
            out << line << '\n';
            line = word;
        } else {
            line += ' ' + word;
        }
    }
    out << line << "\n\n";
}

std::string ObjectTypesText() {
    std::ostringstream out;
    for (const ObjectTypeInfo& type : AllObjectTypes()) {
        out << "### " << type.Type << ' ' << type.Name << "\n\n";
        if (type.EventType != NO_EVENT_TYPE)
            out << "Intrinsic reporting: " << FindEnumName(ENUM_EVENT_TYPE, static_cast<std::uint32_t>(type.EventType))
                << ".\n";
        if (type.IsCommandable != Commandable::never)
            out << (type.IsCommandable == Commandable::always ? "Commandable.\n"
                                                              : "Commandable where it has a priority array.\n");
        std::vector<std::string> required;
        std::vector<std::string> optional;
        for (const PropertyInfo& property : type.Properties) {
            const std::string name = FindPropertyName(property.Property);
            (property.Required ? required : optional).push_back(name + (property.Writable ? " (writable)" : ""));
        }
        PutList(out, "Required:", required);
        PutList(out, "Optional:", optional);
    }
    return out.str();
}

std::string ValueText(const PropertyInfo& info) {
    std::string text = CBACnetDir::GetDataTypeString(info.Type);
    if (info.Shape != PropertyShape::single)
        text = (info.Shape == PropertyShape::array ? "array of " : "list of ") + text;
    if (NewValue(info.Type) == nullptr)
        text += ", shown only";
    return text;
}

std::string PropertiesTable() {
    std::set<BACSTAC_PROPERTY_ID> properties;
    for (const ObjectTypeInfo& type : AllObjectTypes()) {
        for (const PropertyInfo& property : type.Properties)
            properties.insert(property.Property);
    }
    std::ostringstream out;
    out << "| number | property | value |\n|---|---|---|\n";
    for (const BACSTAC_PROPERTY_ID property : properties) {
        std::vector<std::string> values;
        for (const ObjectTypeInfo& type : AllObjectTypes()) {
            for (const PropertyInfo& row : type.Properties) {
                if (row.Property == property && std::find(values.begin(), values.end(), ValueText(row)) == values.end())
                    values.push_back(ValueText(row));
            }
        }
        out << "| " << property << " | " << FindPropertyName(property) << " | ";
        for (std::size_t i = 0; i < values.size(); ++i)
            out << (i == 0 ? "" : "; ") << values[i];
        out << " |\n";
    }
    return out.str();
}

// Puts text between the marks of a part; the document without them fails the test.
void Replace(std::string& document, const std::string& part, const std::string& text) {
    const std::string begin = "<!-- " + part + ": written by a test -->\n";
    const std::string end = "<!-- end of " + part + " -->\n";
    const std::size_t from = document.find(begin);
    const std::size_t to = document.find(end);
    ASSERT_NE(from, std::string::npos) << part;
    ASSERT_NE(to, std::string::npos) << part;
    document.replace(from + begin.size(), to - from - begin.size(), '\n' + text + '\n');
}

} // namespace

TEST(Ledger, TellsWhatTheTablesHold) {
    const fs::path path = Source("docs/bacnet.md");
    const std::string document = ReadText(path);
    std::string fresh = document;
    Replace(fresh, "services", ServicesTable());
    Replace(fresh, "object types", ObjectTypesText());
    Replace(fresh, "properties", PropertiesTable());
    if (std::getenv("BDC_WRITE_LEDGER") != nullptr)
        std::ofstream(path, std::ios::binary) << fresh;
    else
        EXPECT_TRUE(fresh == document) << "docs/bacnet.md is behind: run this test with BDC_WRITE_LEDGER=1";
}
