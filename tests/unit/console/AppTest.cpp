// The help: which file is opened for a context.
#include "module/console/App.h"

#include "tests/support/FakeKernel.h"
#include "tests/support/FakeLog.h"
#include "tests/support/FakeOperator.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;

class App : public ::testing::Test {
protected:
    App() {
        m_kernel.m_helpPath = m_folder.File("");
        std::filesystem::create_directory(m_folder.File("BDC"));
    }
    CEventList::Lines ShowHelp(int context) {
        const auto openCompiledHelp = [this](const std::string& path, int asked) {
            m_events.Add("Compiled " + path + " " + std::to_string(asked));
            return m_hasViewer;
        };
        CBDCApp(m_kernel).ShowHelp(context, openCompiledHelp, m_operator);
        return m_events.Take();
    }

    CTempFolder m_folder;
    CEventList m_events;
    CFakeLog m_log{m_events};
    CFakeKernel m_kernel{m_events};
    CFakeOperator m_operator{m_events};
    bool m_hasViewer = true;
};

TEST_F(App, TheHelpFileLiesInTheKernelsHelpPath) {
    m_kernel.m_helpPath = "/usr/share/help/";
    EXPECT_EQ(CBDCApp(m_kernel).GetHelpFilePath(), "/usr/share/help/BDC.CHM");
}

TEST_F(App, AContextIsAPageBesideTheHelpFile) {
    m_folder.Put("BDC/1.html", "page");
    m_folder.Put("BDC/9.html", "page");
    EXPECT_THAT(ShowHelp(1), ElementsAre("GetHelpPath()", "OpenFile(" + m_folder.File("BDC/1.html") + ", )"));
    EXPECT_THAT(ShowHelp(9), ElementsAre("GetHelpPath()", "OpenFile(" + m_folder.File("BDC/9.html") + ", )"));
}

TEST_F(App, ACompiledHelpFileComesFirstWhereThereIsAViewer) {
    m_folder.Put("BDC.CHM", "help");
    m_folder.Put("BDC/9.html", "page");
    const std::string viewer = "Compiled " + m_folder.File("BDC.CHM") + " 9";
    EXPECT_THAT(ShowHelp(9), ElementsAre("GetHelpPath()", viewer));
    m_hasViewer = false;
    EXPECT_THAT(ShowHelp(9), ElementsAre("GetHelpPath()", viewer, "OpenFile(" + m_folder.File("BDC/9.html") + ", )"));
}

TEST_F(App, WithoutHelpThereIsALineInTheLogAndNoMore) {
    EXPECT_THAT(ShowHelp(3), ElementsAre("GetHelpPath()", "D: Help: there is no page " + m_folder.File("BDC/3.html")));
    m_kernel.SetResult("GetHelpPath", QL_INVALID_ARGUMENT);
    EXPECT_THAT(ShowHelp(3), ElementsAre("GetHelpPath()", "D: Help: there is no page BDC/3.html"));
}

} // namespace
