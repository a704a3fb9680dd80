// The help: which file is opened for a context.
#include "module/console/App.h"

#include "module/console/Desktop.h"
#include "tests/support/FakeKernel.h"
#include "tests/support/FakeLog.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;

class RecordingDesktop : public IDesktop {
public:
    explicit RecordingDesktop(CEventList& events) : m_events(events) {}
    void Open(const std::string& path) override { m_events.Add("Open " + path); }
    bool OpenCompiledHelp(const std::string& path, int context) override {
        m_events.Add("Compiled " + path + " " + std::to_string(context));
        return m_hasViewer;
    }
    bool m_hasViewer = true;

private:
    CEventList& m_events;
};

class App : public ::testing::Test {
protected:
    App() {
        m_kernel.m_helpPath = m_folder.File("");
        std::filesystem::create_directory(m_folder.File("BDC"));
    }
    CEventList::Lines ShowHelp(int context) {
        CBDCApp(m_kernel).ShowHelp(context, m_desktop);
        return m_events.Take();
    }

    CTempFolder m_folder;
    CEventList m_events;
    CFakeLog m_log{m_events};
    CFakeKernel m_kernel{m_events};
    RecordingDesktop m_desktop{m_events};
};

TEST_F(App, TheHelpFileLiesInTheKernelsHelpPath) {
    m_kernel.m_helpPath = "/usr/share/help/";
    EXPECT_EQ(CBDCApp(m_kernel).GetHelpFilePath(), "/usr/share/help/BDC.CHM");
}

TEST_F(App, AContextIsAPageBesideTheHelpFile) {
    m_folder.Put("BDC/1.html", "page");
    m_folder.Put("BDC/9.html", "page");
    EXPECT_THAT(ShowHelp(1), ElementsAre("GetHelpPath()", "Open " + m_folder.File("BDC/1.html")));
    EXPECT_THAT(ShowHelp(9), ElementsAre("GetHelpPath()", "Open " + m_folder.File("BDC/9.html")));
}

TEST_F(App, ACompiledHelpFileComesFirstWhereThereIsAViewer) {
    m_folder.Put("BDC.CHM", "help");
    m_folder.Put("BDC/9.html", "page");
    const std::string viewer = "Compiled " + m_folder.File("BDC.CHM") + " 9";
    EXPECT_THAT(ShowHelp(9), ElementsAre("GetHelpPath()", viewer));
    m_desktop.m_hasViewer = false;
    EXPECT_THAT(ShowHelp(9), ElementsAre("GetHelpPath()", viewer, "Open " + m_folder.File("BDC/9.html")));
}

TEST_F(App, WithoutHelpThereIsALineInTheLogAndNoMore) {
    EXPECT_THAT(ShowHelp(3), ElementsAre("GetHelpPath()", "D: Help: there is no page " + m_folder.File("BDC/3.html")));
    m_kernel.SetResult("GetHelpPath", QL_INVALID_ARGUMENT);
    EXPECT_THAT(ShowHelp(3), ElementsAre("GetHelpPath()", "D: Help: there is no page BDC/3.html"));
}

} // namespace
