// Rules that hold for the whole repository: layering, file sizes, line ends, executable scripts.
#include "tests/repository/IncludeRules.h"
#include "tests/repository/Tree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace {

constexpr std::size_t MAX_LINES = 700;

// Pure data tables: their length is their content's.
const std::set<std::string> LONG_TABLES{
    "platform/stack/schema/EnumTables.h",
    "platform/stack/schema/TypeTable.cpp",
};

const std::vector<SourceFile>& Tree() {
    static const std::vector<SourceFile> TREE = ReadTree(BDC_SOURCE_DIR);
    return TREE;
}

using Lines = std::vector<std::string>;

} // namespace

TEST(Repository, IncludesGoDownOnly) {
    const CIncludeRules rules(Tree());
    Lines faults;
    for (const SourceFile& file : Tree()) {
        if (!file.IsCode())
            continue;
        for (const std::string& fault : rules.Faults(file))
            faults.push_back(fault);
    }
    EXPECT_EQ(faults, Lines());
}

TEST(Repository, NoSourceIsLongerThanItsLimit) {
    Lines faults;
    for (const SourceFile& file : Tree()) {
        if (file.IsCode() && file.LineCount() > MAX_LINES && LONG_TABLES.count(file.path) == 0)
            faults.push_back(file.path + ": " + std::to_string(file.LineCount()) + " lines");
    }
    EXPECT_EQ(faults, Lines());
}

TEST(Repository, EveryExemptTableExists) {
    Lines left(LONG_TABLES.begin(), LONG_TABLES.end());
    for (const SourceFile& file : Tree())
        std::erase(left, file.path);
    EXPECT_EQ(left, Lines()) << "take these off the list";
}

TEST(Repository, TextHasNoTabsAndUnixLineEnds) {
    Lines faults;
    for (const SourceFile& file : Tree()) {
        if (!file.IsText())
            continue;
        if (file.text.find('\t') != std::string::npos)
            faults.push_back(file.path + ": tab");
        if (file.text.find('\r') != std::string::npos)
            faults.push_back(file.path + ": carriage return");
        if (!file.text.empty() && file.text.back() != '\n')
            faults.push_back(file.path + ": no newline at the end");
    }
    EXPECT_EQ(faults, Lines());
}

TEST(Repository, ScriptsAreExecutable) {
    Lines faults;
    std::size_t scripts = 0;
    for (const SourceFile& file : Tree()) {
        scripts += file.IsScript() ? 1 : 0;
        if (file.IsScript() && !file.executable)
            faults.push_back(file.path);
    }
    EXPECT_EQ(faults, Lines());
    EXPECT_GE(scripts, 4U) << "run, test, .ci/run and packaging/install-packages were not seen";
}

TEST(Repository, HeadersAreGuardedByPragmaOnce) {
    Lines faults;
    for (const SourceFile& file : Tree()) {
        if (file.IsHeader() && file.text.find("#pragma once\n") == std::string::npos)
            faults.push_back(file.path);
    }
    EXPECT_EQ(faults, Lines());
}

// ---- the checks themselves, on trees made up here

namespace {

SourceFile File(std::string path, std::string text) {
    return {std::move(path), std::move(text), false};
}

// A module with one ui library of which Dlg.cpp is a source, and the faults of one file put into it.
Lines FaultsOf(const std::string& path, const std::string& text) {
    const std::vector<SourceFile> tree{File("module/console/CMakeLists.txt",
                                            "bdc_core_library(console_core Logic.cpp)\n"
                                            "bdc_ui_library(console_ui\n  Dlg.cpp\n  Page.cpp)\n")};
    return CIncludeRules(tree).Faults(File(path, text));
}

} // namespace

TEST(IncludeRules, FindDirectivesWithTheirLines) {
    const auto includes = IncludesOf("// #include \"no\"\n#include \"a/b.h\" // why\n  #  include <vector>\nint x;\n");
    ASSERT_EQ(includes.size(), 2U);
    EXPECT_EQ(includes[0].line, 2U);
    EXPECT_EQ(includes[0].target, "a/b.h");
    EXPECT_FALSE(includes[0].angled);
    EXPECT_EQ(includes[1].target, "vector");
    EXPECT_TRUE(includes[1].angled);
}

TEST(IncludeRules, RefuseEveryStepUp) {
    EXPECT_THAT(FaultsOf("api/driver/Driver.h", "#include \"module/console/Logic.h\"\n"),
                testing::ElementsAre("api/driver/Driver.h:1: api must not include \"module/console/Logic.h\""));
    EXPECT_EQ(FaultsOf("platform/kernel/Kernel.cpp", "#include \"module/console/Logic.h\"\n").size(), 1U);
    EXPECT_EQ(FaultsOf("platform/kernel/Kernel.cpp", "#include \"platform/stack/client/Client.h\"\n").size(), 1U);
    EXPECT_EQ(FaultsOf("module/console/Logic.cpp", "#include \"platform/kernel/Kernel.h\"\n").size(), 1U);
    EXPECT_EQ(FaultsOf("module/console/Dlg.cpp", "#include \"host/Runtime.h\"\n").size(), 1U);
    EXPECT_EQ(FaultsOf("simulator/Device.cpp", "#include \"platform/stack/client/Client.h\"\n").size(), 1U);
    EXPECT_EQ(FaultsOf("platform/stack/codec/Reader.h", "#include \"platform/stack/network/Npdu.h\"\n").size(), 1U);
    EXPECT_EQ(FaultsOf("host/Runtime.cpp", "#include \"tests/support/Fake.h\"\n").size(), 1U);
    EXPECT_EQ(FaultsOf("elsewhere/X.cpp", "#include \"api/bacnet/Types.h\"\n").size(), 1U);
}

TEST(IncludeRules, RefuseIncludesThatAreNotFromTheRoot) {
    EXPECT_EQ(FaultsOf("host/Runtime.cpp", "#include \"Config.h\"\n").size(), 1U);
    EXPECT_EQ(FaultsOf("host/Runtime.cpp", "#include \"../api/bacnet/Types.h\"\n").size(), 1U);
}

TEST(IncludeRules, AllowEveryStepDown) {
    EXPECT_EQ(FaultsOf("module/console/Logic.cpp", "#include \"api/driver/Driver.h\"\n#include <vector>\n"), Lines());
    EXPECT_EQ(FaultsOf("module/console/Dlg.cpp", "#include \"module/console/Logic.h\"\n"), Lines());
    EXPECT_EQ(FaultsOf("platform/stack/client/Client.cpp", "#include \"platform/stack/codec/Reader.h\"\n"), Lines());
    EXPECT_EQ(FaultsOf("host/Runtime.cpp", "#include \"platform/kernel/Kernel.h\"\n"), Lines());
}

TEST(IncludeRules, KeepQtInTheUiLibraries) {
    EXPECT_EQ(FaultsOf("module/console/Dlg.h", "#include <QDialog>\n#include <QtCore/QString>\n"), Lines());
    EXPECT_EQ(FaultsOf("module/console/Logic.cpp", "#include <QString>\n").size(), 1U);
    EXPECT_EQ(FaultsOf("module/console/Logic.cpp", "#include \"module/console/Dlg.h\"\n").size(), 1U);
    EXPECT_EQ(FaultsOf("platform/kernel/Kernel.cpp", "#include <QtCore/qglobal.h>\n").size(), 1U);
}

TEST(IncludeRules, KeepHeavyLibrariesOutOfHeadersAndOfOtherFolders) {
    EXPECT_EQ(FaultsOf("host/Config.cpp", "#include <toml++/toml.h>\n"), Lines());
    EXPECT_EQ(FaultsOf("host/Config.h", "#include <toml++/toml.h>\n").size(), 1U);
    EXPECT_EQ(FaultsOf("platform/kernel/Kernel.cpp", "#include <sqlite3.h>\n").size(), 1U);
    EXPECT_EQ(FaultsOf("module/console/Logic.cpp", "#include <spdlog/spdlog.h>\n").size(), 1U);
}

TEST(SourceFile, CountsALastLineWithoutItsEnd) {
    EXPECT_EQ(File("a.h", "").LineCount(), 0U);
    EXPECT_EQ(File("a.h", "x\ny\n").LineCount(), 2U);
    EXPECT_EQ(File("a.h", "x\ny").LineCount(), 2U);
}
