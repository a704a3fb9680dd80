#include "tests/repository/Tree.h"

#include <algorithm>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace {

bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool IsLeftOut(const fs::path& relative) {
    static const std::set<std::string> KEPT_HIDDEN{".ci", ".clang-format", ".clang-tidy", ".gitignore", ".github"};
    const std::string name = relative.filename().string();
    if (name.front() == '.')
        return KEPT_HIDDEN.count(name) == 0;
    const bool isTop = !relative.has_parent_path();
    return (isTop && (name.rfind("build", 0) == 0 || name == "demo-data")) || name == "node_modules";
}

std::string ReadWhole(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::string text(static_cast<std::size_t>(fs::file_size(path)), '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return text;
}

} // namespace

bool SourceFile::IsHeader() const {
    return EndsWith(path, ".h");
}

bool SourceFile::IsCode() const {
    return IsHeader() || EndsWith(path, ".cpp");
}

bool SourceFile::IsScript() const {
    return text.rfind("#!", 0) == 0;
}

bool SourceFile::IsText() const {
    static const std::vector<std::string> ENDS{".txt", ".cmake", ".md", ".json", ".toml", ".py", ".js", ".yml"};
    if (path.find("/golden/") != std::string::npos || path.find("/corpus/") != std::string::npos)
        return false;
    return IsCode() || IsScript() ||
           std::any_of(ENDS.begin(), ENDS.end(), [&](const std::string& end) { return EndsWith(path, end); });
}

std::size_t SourceFile::LineCount() const {
    const auto ends = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    return ends + (!text.empty() && text.back() != '\n' ? 1 : 0);
}

std::vector<SourceFile> ReadTree(const fs::path& root) {
    std::vector<SourceFile> files;
    for (auto it = fs::recursive_directory_iterator(root); it != fs::recursive_directory_iterator(); ++it) {
        const fs::path relative = it->path().lexically_relative(root);
        if (IsLeftOut(relative)) {
            if (it->is_directory())
                it.disable_recursion_pending();
            continue;
        }
        if (!it->is_regular_file())
            continue;
        const auto mode = it->status().permissions();
        files.push_back(
            {relative.generic_string(), ReadWhole(it->path()), (mode & fs::perms::owner_exec) != fs::perms::none});
    }
    std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) { return a.path < b.path; });
    return files;
}

std::vector<Include> IncludesOf(const std::string& text) {
    static const std::regex DIRECTIVE(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"].*)");
    std::vector<Include> includes;
    std::istringstream lines(text);
    std::string line;
    for (std::size_t number = 1; std::getline(lines, line); ++number) {
        std::smatch match;
        if (std::regex_match(line, match, DIRECTIVE))
            includes.push_back({number, match[2], match[1] == "<"});
    }
    return includes;
}
