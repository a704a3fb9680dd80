// The installed tree: it runs from wherever it is put.
#include "tests/support/TempFolder.h"
#include "tests/unit/host/Process.h"

#include <gmock/gmock.h>

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

ProcessResult RunProgram(const std::vector<std::string>& arguments, const std::vector<std::string>& environment = {}) {
    CProcess process(arguments, environment);
    const int code = process.Wait();
    return {code, process.Output(), process.Errors()};
}

class Installation : public ::testing::Test {
protected:
    Installation() {
        const ProcessResult result =
            RunProgram({BDC_CMAKE, "--install", BDC_BINARY_DIR, "--prefix", m_folder.File("first")});
        EXPECT_EQ(result.code, 0) << result.errors;
        std::filesystem::rename(m_folder.File("first"), m_folder.File("moved"));
    }
    std::string Path(const std::string& name) const { return m_folder.File("moved/" + name); }

    CTempFolder m_folder;
};

TEST_F(Installation, HoldsProgramsLibrariesHelpAndTheDesktopsEntry) {
    for (const char* const name :
         {"bin/bdc", "bin/bdcsim", "lib/libbdc.so", "lib/libBCNGen.so", "share/bdc/help/BDC/1.html",
          "share/bdc/help/BDC/9.html", "share/bdc/help/BDC/style.css", "share/applications/bdc.desktop",
          "share/icons/hicolor/scalable/apps/bdc.svg"})
        EXPECT_TRUE(std::filesystem::is_regular_file(Path(name))) << name;
}

TEST_F(Installation, RunsWithItsOwnLibrariesWhereverItIsPut) {
    EXPECT_THAT(RunProgram({Path("bin/bdc"), "--version"}).output, HasSubstr("bdc "));
    EXPECT_EQ(RunProgram({Path("bin/bdcsim"), "--help"}).code, 0);
    const std::string libraries = RunProgram({Path("bin/bdc")}, {"LD_TRACE_LOADED_OBJECTS=1"}).output;
    EXPECT_THAT(libraries, HasSubstr(Path("bin/../lib/libbdc.so")));
    EXPECT_THAT(libraries, HasSubstr(Path("bin/../lib/libBCNGen.so")));
    EXPECT_THAT(libraries, Not(HasSubstr("not found")));
    EXPECT_THAT(libraries, Not(HasSubstr(BDC_BINARY_DIR)));
}

TEST_F(Installation, FindsTheHelpBesideItself) {
    EXPECT_THAT(RunProgram({Path("bin/bdc"), "--help"}).output, HasSubstr(Path("share/bdc/help/BDC/1.html")));
}

TEST_F(Installation, TheDesktopsEntryOpensTheConsole) {
    const std::string entry = m_folder.Get("moved/share/applications/bdc.desktop");
    EXPECT_THAT(entry, HasSubstr("\nExec=bdc open\n"));
    EXPECT_THAT(entry, HasSubstr("\nIcon=bdc\n"));
}

} // namespace
