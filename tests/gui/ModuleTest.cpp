// The module as the driver has it: a shared library of which only the named surface is visible.
#include "module/console/Globals.h"
#include "module/console/Messages.h"
#include "module/console/SettingsStore.h"
#include "module/console/Tag.h"
#include "tests/support/FakeBacGeneral.h"
#include "tests/support/FakeDriver.h"
#include "tests/support/FakeKernel.h"
#include "tests/support/FakeLog.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <sstream>
#include <thread>
#include <vector>

namespace {

// Names of the module's dynamic symbols that others can link to, without their arguments.
std::set<std::string> ExportedNames() {
    std::FILE* const pipe = popen(BDC_NM " -D --defined-only -C " BDC_MODULE_FILE, "r");
    EXPECT_NE(pipe, nullptr);
    std::string output;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe))
        output.push_back(static_cast<char>(c));
    EXPECT_EQ(pclose(pipe), 0);

    std::set<std::string> names;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string address;
        std::string kind;
        std::string name;
        words >> address >> kind >> std::ws;
        std::getline(words, name);
        if (std::isupper(static_cast<unsigned char>(kind[0])))
            names.insert(name.substr(0, name.find_first_of("([")));
    }
    return names;
}

TEST(Module, ShowsItsSurfaceAndNothingElse) {
    const std::set<std::string> expected{
        "BDCManager",
        "CBDCManager::CBDCManager",
        "CBDCManager::EnumDigitalTags",
        "CBDCManager::FillTagList",
        "CBDCManager::FindTriggerTag",
        "CBDCManager::GetDriver",
        "CBDCManager::InitiateShutdownW",
        "CBDCManager::IsRunning",
        "CBDCManager::Lock",
        "CBDCManager::ObjectChanged",
        "CBDCManager::OnTagChange",
        "CBDCManager::PostMessageW",
        "CBDCManager::RegisterTriggerTag",
        "CBDCManager::SetupNetworks",
        "CBDCManager::Start",
        "CBDCManager::StartHistoryTransfer",
        "CBDCManager::StartTimeSync",
        "CBDCManager::Unlock",
        "CBDCManager::WaitEnd",
        "CBDCManager::operator=",
        "CBDCManager::~CBDCManager",
        "CSettingsArchiveError::CSettingsArchiveError",
        "CSettingsArchiveError::~CSettingsArchiveError",
        "CTag::GetObjPropRef",
        "CTagList::EmptyTag",
        "CTagList::FindTagForRef",
        "CTagList::GetCOVtagIdList",
        "CTagList::GetTag",
        "CTagList::GetTagCnt",
        "CTagList::PlaceOf",
        "CTagList::RegisterTag",
        "NewTransferRequest",
        "allPropPages",
        "loadAllProps",
        "storeAllProp",
        "typeinfo for CSettingsArchiveError",
        "typeinfo name for CSettingsArchiveError",
        "vtable for CSettingsArchiveError",
    };
    std::set<std::string> names = ExportedNames();
    std::erase_if(names, [](const std::string& name) { return name.starts_with("__"); }); // of sanitizers
    EXPECT_EQ(names, expected);
}

TEST(Module, TheEmptyTagIsOneObjectInsideAndOutside) {
    const CTagList list;
    EXPECT_EQ(&list.GetTag(1), &CTagList::EmptyTag);
    EXPECT_EQ(CTagList::EmptyTag.tagId, TAG_UNSET);
}

TEST(Module, ItsOneFailureReachesTheDriverWithItsType) {
    AllPropPages copy = allPropPages;
    EXPECT_THROW(storeAllProp("/dev/full", copy), CSettingsArchiveError);
    EXPECT_THROW(storeAllProp("/dev/full", copy), std::runtime_error);
}

// What the driver has around the module. It is never destroyed: a transfer may still use it when its last line was
// seen.
struct Driver {
    CEventList events;
    CFakeLog log{events};
    CFakeBacGeneral bacnet{events};
    CFakeKernel kernel{events};
    CFakeDriver driver{events, kernel};
};

Driver& NewDriver() {
    static auto* const drivers = new std::vector<Driver*>;
    drivers->push_back(new Driver);
    return *drivers->back();
}

TEST(Module, RunsTheConsole) {
    Driver& site = NewDriver();
    BDCManager.Start(&site.driver, 30000);
    EXPECT_TRUE(BDCManager.IsRunning());
    BDCManager.ObjectChanged(1, {8, 2});
    BDCManager.PostMessageW(WM_CONSOLE_SHOW, 0, 0);
    BDCManager.InitiateShutdownW();
    EXPECT_TRUE(BDCManager.WaitEnd(30000));
    const auto events = site.events.Take();
    ASSERT_EQ(events.size(), 8U);
    EXPECT_EQ(events.front(), "I: OnObjectChanged(1, (8, 2))");
    EXPECT_EQ(events[1], "EnableLog(true)"); // the log file page saves at its end
    EXPECT_EQ(events.back(), "SetFilter(4095)");
}

// The state file of the transfer lies in the current directory.
TEST(Module, TransfersHistoryWhenTheDriverAsksForIt) {
    std::string folder = (std::filesystem::temp_directory_path() / "bdc-module-XXXXXX").string();
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder);

    Driver& site = NewDriver();
    BDCManager.Start(&site.driver, 30000);
    BDCManager.StartHistoryTransfer(NewTransferRequest(1234, 20, 5));
    const auto begin = std::chrono::steady_clock::now();
    const auto hasEnded = [&] {
        const auto events = site.events.Get();
        return std::ranges::count(events, "Trace(32, HistoryManagerTransfer: end of thread)") != 0;
    };
    while (!hasEnded() && std::chrono::steady_clock::now() - begin < std::chrono::seconds(20))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    const auto events = site.events.Take();
    EXPECT_THAT(events, ::testing::IsSupersetOf({"I: Transfer request for trend-log (1234, (20, 5))",
                                                 "I: History: Start of transfer", "I: History: End of transfer",
                                                 "Trace(32, HistoryManagerTransfer: end of thread)"}));
    BDCManager.InitiateShutdownW();
    EXPECT_TRUE(BDCManager.WaitEnd(30000));
    EXPECT_TRUE(std::filesystem::exists("BAC_Hist.ini"));

    std::filesystem::current_path(before);
    std::filesystem::remove_all(folder);
}

} // namespace
