// The project's files as the repository tests see them: everything below the source folder except what is built, hidden
// or kept by a run. No git metadata is needed.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

struct SourceFile {
    std::string path; // relative to the source folder, with "/"
    std::string text;
    bool executable = false;

    bool IsCode() const; // C++ source or header
    bool IsHeader() const;
    bool IsScript() const; // begins with "#!"
    bool IsText() const;   // code, scripts, build files, documents: what people edit as text
    std::size_t LineCount() const;
};

// Ascending by path.
std::vector<SourceFile> ReadTree(const std::filesystem::path& root);

struct Include {
    std::size_t line; // from 1
    std::string target;
    bool angled; // <target>, not "target"
};

// The include directives of a text, wherever they stand; those in comments and strings that span lines too.
std::vector<Include> IncludesOf(const std::string& text);
