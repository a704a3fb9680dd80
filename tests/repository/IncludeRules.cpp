#include "tests/repository/IncludeRules.h"

#include <algorithm>
#include <regex>
#include <sstream>

namespace {

bool Below(const std::string& path, const std::string& folder) {
    return path == folder || path.rfind(folder + "/", 0) == 0;
}

bool BelowAny(const std::string& path, const std::vector<std::string>& folders) {
    return std::any_of(folders.begin(), folders.end(), [&](const auto& folder) { return Below(path, folder); });
}

std::string StemOf(const std::string& path) {
    return path.substr(0, path.rfind('.'));
}

struct FolderRule {
    std::string folder;
    std::vector<std::string> mayInclude;
};

std::vector<std::string> Stack(const std::vector<std::string>& parts) {
    std::vector<std::string> folders{"api/bacnet", "base"};
    for (const std::string& part : parts)
        folders.push_back("platform/stack/" + part);
    return folders;
}

std::vector<std::string> ServerHalf() {
    std::vector<std::string> folders = Stack({"services", "network", "transport", "codec", "schema"});
    folders.push_back("simulator");
    return folders;
}

// The first rule whose folder holds the file counts. A folder that has no rule fails the test: add it here on purpose.
const std::vector<FolderRule>& FolderRules() {
    static const std::vector<FolderRule> RULES{
        {"api", {"api"}},
        {"base", {"base"}},
        {"module", {"api", "base", "module"}},
        // Inside the stack: client -> transaction -> network -> transport. Services are the pure coding of requests and
        // answers, over codec and schema. Values, texts, the directory and the log know no traffic.
        {"platform/stack/schema", {"api/bacnet", "base", "platform/stack/schema"}},
        {"platform/stack/codec", Stack({"codec", "schema"})},
        {"platform/stack/services", Stack({"services", "codec", "schema"})},
        {"platform/stack/transport", Stack({"transport", "codec", "schema"})},
        {"platform/stack/network", Stack({"network", "transport", "codec", "schema"})},
        {"platform/stack/transaction", Stack({"transaction", "network", "transport", "codec", "schema"})},
        {"platform/stack/value", Stack({"value", "text", "services", "codec", "schema"})},
        {"platform/stack/text", Stack({"value", "text", "codec", "schema"})},
        {"platform/stack/directory", Stack({"directory", "value", "text", "services", "codec", "schema"})},
        {"platform/stack/log", Stack({"log"})},
        {"platform/stack/client", {"api/bacnet", "base", "platform/stack"}},
        {"platform/kernel", {"api/kernel", "base", "platform/kernel"}},
        {"platform/historian", {"api/kernel", "base", "platform/historian"}},
        // The server half of the protocol: it shares what both halves need, never the client.
        {"simulator", ServerHalf()},
        {"host", {"api", "base", "host", "module", "platform", "simulator"}},
        {"bench",
         {"api", "base", "bench", "host", "module", "platform", "simulator", "tests/support",
          "tests/unit/stack/codec"}},
        {"fuzz", {"api", "base", "fuzz", "host", "module", "platform", "simulator", "tests/catalogue"}},
        {"tests", {"api", "base", "bench", "host", "module", "platform", "simulator", "tests"}},
    };
    return RULES;
}

struct LibraryRule {
    std::string prefix; // of the include's target
    std::vector<std::string> folders;
    std::vector<std::string> headers; // the headers, or the folders of headers, that may include it too
};

// Libraries that stay behind a wall: named folders only, and the heavy ones hardly ever in a header. The first rule
// counts.
const std::vector<LibraryRule>& LibraryRules() {
    static const std::vector<LibraryRule> RULES{
        {"CLI/", {"host", "simulator", "bench", "tests"}, {}},
        {"nlohmann/json_fwd.hpp", {"host", "tests"}, {"host", "tests"}},
        {"nlohmann/", {"host", "module", "platform", "bench", "tests"}, {}},
        {"spdlog/", {"platform/stack", "tests"}, {}},
        {"sqlite3.h", {"platform/historian", "bench", "tests"}, {"platform/historian", "bench", "tests"}},
        {"tinyxml.h", {"module", "platform", "tests"}, {"module", "platform", "tests"}},
        {"toml++/", {"host", "simulator", "tests"}, {"simulator/ConfigTable.h", "simulator/ConfigValues.h"}},
        {"toml.hpp", {"host", "simulator", "tests"}, {}},
    };
    return RULES;
}

bool IsQt(const std::string& target) {
    static const std::regex QT(R"(Q[A-Z][A-Za-z]*|Qt[A-Z][A-Za-z]*/.*|q[a-z]+\.h)");
    return std::regex_match(target, QT);
}

} // namespace

CIncludeRules::CIncludeRules(const std::vector<SourceFile>& tree) {
    static const std::regex UI_LIBRARY(R"(bdc_ui_library\s*\(([^)]*)\))");
    for (const SourceFile& file : tree) {
        if (!Below(file.path, "module") || file.path.find("CMakeLists.txt") == std::string::npos)
            continue;
        const std::string folder = file.path.substr(0, file.path.rfind('/') + 1);
        for (std::sregex_iterator it(file.text.begin(), file.text.end(), UI_LIBRARY), end; it != end; ++it) {
            std::istringstream words((*it)[1].str());
            std::string word;
            words >> word; // the target's name
            while (words >> word)
                m_uiStems.insert(folder + StemOf(word));
        }
    }
}

bool CIncludeRules::IsUi(const std::string& path) const {
    return m_uiStems.count(StemOf(path)) != 0;
}

std::string CIncludeRules::ProjectFault(const SourceFile& file, const std::string& target) const {
    const auto& rules = FolderRules();
    const auto rule =
        std::find_if(rules.begin(), rules.end(), [&](const FolderRule& r) { return Below(file.path, r.folder); });
    if (rule == rules.end())
        return "no rule for this folder";
    if (!BelowAny(target, rule->mayInclude))
        return rule->folder + " must not include \"" + target + "\"";
    if (Below(file.path, "module") && !IsUi(file.path) && IsUi(target))
        return "core must not include the ui's \"" + target + "\"";
    return {};
}

std::string CIncludeRules::LibraryFault(const SourceFile& file, const std::string& target) const {
    if (IsQt(target)) {
        const bool allowed = IsUi(file.path) || BelowAny(file.path, {"bench/console", "host", "tests"});
        return allowed ? std::string() : "Qt is for the sources of a ui library, not <" + target + "> here";
    }
    for (const LibraryRule& rule : LibraryRules()) {
        if (target.rfind(rule.prefix, 0) != 0)
            continue;
        if (!BelowAny(file.path, rule.folders))
            return "<" + target + "> does not belong here";
        if (file.IsHeader() && !BelowAny(file.path, rule.headers))
            return "<" + target + "> is for sources, never for a header";
        break;
    }
    return {};
}

std::string CIncludeRules::Fault(const SourceFile& file, const Include& include) const {
    return include.angled ? LibraryFault(file, include.target) : ProjectFault(file, include.target);
}

std::vector<std::string> CIncludeRules::Faults(const SourceFile& file) const {
    std::vector<std::string> faults;
    for (const Include& include : IncludesOf(file.text)) {
        const std::string fault = Fault(file, include);
        if (!fault.empty())
            faults.push_back(file.path + ":" + std::to_string(include.line) + ": " + fault);
    }
    return faults;
}
