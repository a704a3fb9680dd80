// Which folder may include which: the layering of the project as a table (docs/architecture.md draws it). Includes go
// down only.
#pragma once

#include "tests/repository/Tree.h"

#include <set>
#include <string>
#include <vector>

class CIncludeRules {
public:
    // Learns from the build files which sources of the module belong to a ui library: only those may include Qt.
    explicit CIncludeRules(const std::vector<SourceFile>& tree);

    bool IsUi(const std::string& path) const;
    // What is wrong with this include in this file; empty when it is allowed.
    std::string Fault(const SourceFile& file, const Include& include) const;
    // "path:line: fault" for every include of the file that is not allowed.
    std::vector<std::string> Faults(const SourceFile& file) const;

private:
    std::string ProjectFault(const SourceFile& file, const std::string& target) const;
    std::string LibraryFault(const SourceFile& file, const std::string& target) const;

    std::set<std::string> m_uiStems; // "module/console/ConsoleDlg"
};
