// Our tables of names beside those of an independent decoder (tshark): every number that it names is compared, but for
// the differences that are listed with their reason. Upper case and all but letters and digits do not count.
#include "platform/stack/schema/Enumerations.h"
#include "tests/interop/Frames.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <map>
#include <memory>
#include <sstream>
#include <string>

using namespace bacnet;

namespace {

using Names = std::map<std::uint32_t, std::string>;

std::string Plain(const std::string& name) {
    std::string plain;
    for (const char c : name) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0)
            plain += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return plain;
}

// The decoder's tables by the name of their field. Its list is tab-separated: "V", field, number, name.
std::map<std::string, Names> DecoderTables() {
    std::map<std::string, Names> tables;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> list(::popen("LC_ALL=C tshark -G values 2>/dev/null", "r"),
                                                               ::pclose);
    char line[1024];
    while (list != nullptr && std::fgets(line, sizeof line, list.get()) != nullptr) {
        std::istringstream fields(line);
        std::string kind;
        std::string field;
        std::string number;
        std::string name;
        std::getline(fields, kind, '\t');
        std::getline(fields, field, '\t');
        std::getline(fields, number, '\t');
        std::getline(fields, name);
        if (kind == "V" && field.starts_with("bacapp."))
            tables[field][static_cast<std::uint32_t>(std::stoul(number, nullptr, 0))] = name;
    }
    return tables;
}

struct Compared {
    const char* Field;
    ENUM_TYPE_ID Type;
    std::size_t AtLeast; // names that the decoder is known to have
};

constexpr Compared COMPARED[] = {
    {"bacapp.objectType", ENUM_OBJECT_TYPE, 65},       {"bacapp.property_identifier", ENUM_PROPERTY_ID, 500},
    {"bacapp.error_class", ENUM_ERROR_CLASS, 8},       {"bacapp.error_code", ENUM_ERROR_CODE, 200},
    {"bacapp.reject_reason", ENUM_REJECT_REASON, 10},  {"bacapp.abort_reason", ENUM_ABORT_REASON, 12},
    {"bacapp.restart_reason", ENUM_RESTART_REASON, 9}, {"bacapp.event_type", ENUM_EVENT_TYPE, 20},
    {"bacapp.to_state", ENUM_EVENT_STATE, 6},          {"bacapp.notify_type", ENUM_NOTIFY_TYPE, 3},
};

struct Difference {
    ENUM_TYPE_ID Type;
    std::uint32_t Number;
    const char* Ours; // null: no name
    const char* Why;
};

constexpr Difference DIFFERENCES[] = {
    {ENUM_PROPERTY_ID, 0, "acked-transitions", "spelt differently there"},
    {ENUM_PROPERTY_ID, 5, "active-vt-sessions", "spelt differently there"},
    {ENUM_PROPERTY_ID, 24, "daylight-savings-status", "spelt differently there"},
    {ENUM_PROPERTY_ID, 122, "vt-classes-supported", "spelt differently there"},
    {ENUM_PROPERTY_ID, 130, "event-time-stamps", "spelt differently there"},
    {ENUM_PROPERTY_ID, 489, "subordinate-relationships", "spelt differently there"},
    {ENUM_PROPERTY_ID, 4194311, "sc-direct-connect-binding", "spelt differently there"},
    {ENUM_PROPERTY_ID, 4194315, "sc-failed-connection-requests", "spelt differently there"},
    {ENUM_PROPERTY_ID, 133, "log-enable", "the property's first name, which the console shows"},
    {ENUM_PROPERTY_ID, 18, nullptr, "a text that says so stands for an unassigned number"},
    {ENUM_PROPERTY_ID, 466, nullptr, "a text that says so stands for an unassigned number"},
    {ENUM_PROPERTY_ID, 194, nullptr, "of drafts, in no edition"},
    {ENUM_PROPERTY_ID, 198, nullptr, "of drafts, in no edition"},
    {ENUM_PROPERTY_ID, 199, nullptr, "of drafts, in no edition"},
    {ENUM_PROPERTY_ID, 200, nullptr, "of drafts, in no edition"},
    {ENUM_PROPERTY_ID, 201, nullptr, "of drafts, in no edition"},
    {ENUM_PROPERTY_ID, 216, nullptr, "of drafts, in no edition"},
    {ENUM_PROPERTY_ID, 217, nullptr, "of drafts, in no edition"},
    {ENUM_PROPERTY_ID, 400, "ip-address", "named with a prefix there"},
    {ENUM_PROPERTY_ID, 401, "ip-default-gateway", "named with a prefix there"},
    {ENUM_PROPERTY_ID, 402, "ip-dhcp-enable", "named with a prefix there"},
    {ENUM_PROPERTY_ID, 403, "ip-dhcp-lease-time", "named with a prefix there"},
    {ENUM_PROPERTY_ID, 404, "ip-dhcp-lease-time-remaining", "named with a prefix there"},
    {ENUM_PROPERTY_ID, 405, "ip-dhcp-server", "named with a prefix there"},
    {ENUM_PROPERTY_ID, 406, "ip-dns-server", "named with a prefix there"},
    {ENUM_PROPERTY_ID, 411, "ip-subnet-mask", "named with a prefix there"},
    {ENUM_ERROR_CODE, 33, "reserved-33", "reserved, and texts without gaps are asked for"},
    {ENUM_EVENT_TYPE, 7, "buffer-ready-old", "taken back, called deprecated there"},
};

const Difference* Known(ENUM_TYPE_ID type, std::uint32_t number) {
    for (const Difference& difference : DIFFERENCES) {
        if (difference.Type == type && difference.Number == number)
            return &difference;
    }
    return nullptr;
}

} // namespace

TEST(NamesBesideTheDecoders, AreTheSame) {
    if (!interop::HasDecoder())
        GTEST_SKIP() << "no tshark on this machine";
    const std::map<std::string, Names> tables = DecoderTables();
    for (const Compared& compared : COMPARED) {
        const auto table = tables.find(compared.Field);
        ASSERT_NE(table, tables.end()) << compared.Field;
        EXPECT_GE(table->second.size(), compared.AtLeast) << compared.Field;
        for (const auto& [number, theirs] : table->second) {
            const char* const name = FindEnumName(compared.Type, number);
            const std::string ours = name == nullptr ? "" : name;
            if (const Difference* const known = Known(compared.Type, number)) {
                EXPECT_EQ(ours, known->Ours == nullptr ? "" : known->Ours) << compared.Field << ' ' << number;
                EXPECT_NE(Plain(ours), Plain(theirs))
                    << compared.Field << ' ' << number << " is the same: " << known->Why;
                continue;
            }
            EXPECT_EQ(Plain(ours), Plain(theirs)) << compared.Field << ' ' << number << " ours \"" << ours << '"';
        }
    }
}
