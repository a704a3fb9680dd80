// The manager without a console: a scripted run takes the place of the console thread.
#include "module/console/ConsoleRun.h"
#include "module/console/ConsoleState.h"
#include "module/console/Globals.h"
#include "module/console/Messages.h"
#include "module/console/SettingsStore.h"
#include "tests/support/FakeDriver.h"
#include "tests/support/FakeKernel.h"
#include "tests/support/FakeLog.h"

#include <gmock/gmock.h>

#include <future>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Records what the manager asks of the run.
class ScriptedRun : public IConsoleRun {
public:
    struct Script {
        CEventList events;
        bool begins = true;
        bool finishes = true;
        std::function<void()> whileStarting;
    };
    explicit ScriptedRun(Script& script) : m_script(script) {}

    bool Begin() override {
        m_script.events.Add("Begin()");
        return m_script.begins;
    }
    bool WaitStarted(std::uint32_t timeout) override {
        m_script.events.Add("WaitStarted(" + std::to_string(timeout) + ")");
        if (m_script.whileStarting)
            m_script.whileStarting();
        return true;
    }
    bool WaitFinished(std::uint32_t timeout) override {
        m_script.events.Add("WaitFinished(" + std::to_string(timeout) + ")");
        return m_script.finishes;
    }
    void Abandon() override { m_script.events.Add("Abandon()"); }
    void Post(CConsoleMessage message) override {
        char text[64];
        std::snprintf(text, sizeof(text), "Post(0x%X, %ju, %jd)", message.GetMessage(),
                      static_cast<std::uintmax_t>(message.GetWParam()),
                      static_cast<std::intmax_t>(message.GetMessage() == WM_CONSOLE_HISTORY ? message.GetLParam() != 0
                                                                                            : message.GetLParam()));
        m_script.events.Add(text);
    }

private:
    Script& m_script;
};

ScriptedRun::Script* g_script = nullptr;

class Manager : public ::testing::Test {
protected:
    Manager() {
        g_script = &m_script;
        consoleWiring.newRun = [](CDriver&) -> std::shared_ptr<IConsoleRun> {
            return std::make_shared<ScriptedRun>(*g_script);
        };
    }
    ~Manager() override {
        BDCManager.WaitEnd(0);
        consoleWiring = {};
    }
    CEventList::Lines Take() { return m_script.events.Take(); }
    void Start() {
        BDCManager.Start(&m_driver, 10000);
        Take();
    }

    ScriptedRun::Script m_script;
    CEventList m_kernelEvents;
    CFakeLog m_log{m_kernelEvents};
    CFakeKernel m_kernel{m_kernelEvents};
    CFakeDriver m_driver{m_kernelEvents, m_kernel};
};

TEST_F(Manager, RunsBetweenStartAndWaitEnd) {
    EXPECT_FALSE(BDCManager.IsRunning());
    m_script.whileStarting = [] { EXPECT_FALSE(BDCManager.IsRunning()); };
    BDCManager.Start(&m_driver, 10000);
    EXPECT_TRUE(BDCManager.IsRunning());
    EXPECT_EQ(&BDCManager.GetDriver(), &m_driver);
    BDCManager.InitiateShutdownW();
    EXPECT_TRUE(BDCManager.IsRunning());
    EXPECT_TRUE(BDCManager.WaitEnd(5000));
    EXPECT_FALSE(BDCManager.IsRunning());
    EXPECT_THAT(Take(), ElementsAre("Begin()", "WaitStarted(10000)", "Post(0x464, 0, 0)", "WaitFinished(5000)"));
}

TEST_F(Manager, ASecondStartChangesNothing) {
    Start();
    CFakeDriver other(m_kernelEvents, m_kernel);
    BDCManager.Start(&other, 10000);
    EXPECT_THAT(Take(), IsEmpty());
    EXPECT_EQ(&BDCManager.GetDriver(), &m_driver);
}

TEST_F(Manager, AStartInsideAStartIsNothing) {
    m_script.whileStarting = [this] {
        m_script.whileStarting = nullptr;
        std::async(std::launch::async, [this] { BDCManager.Start(&m_driver, 1); }).wait();
    };
    BDCManager.Start(&m_driver, 10000);
    EXPECT_THAT(Take(), ElementsAre("Begin()", "WaitStarted(10000)"));
}

TEST_F(Manager, CanBeStartedAgain) {
    Start();
    EXPECT_TRUE(BDCManager.WaitEnd(1));
    BDCManager.Start(&m_driver, 2);
    EXPECT_TRUE(BDCManager.IsRunning());
    EXPECT_THAT(Take(), ElementsAre("WaitFinished(1)", "Begin()", "WaitStarted(2)"));
}

TEST_F(Manager, WaitEndWhileNotRunningIsNothing) {
    EXPECT_TRUE(BDCManager.WaitEnd(5000));
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(Manager, WaitEndAbandonsARunThatDoesNotEnd) {
    Start();
    m_script.finishes = false;
    EXPECT_FALSE(BDCManager.WaitEnd(300));
    EXPECT_FALSE(BDCManager.IsRunning());
    BDCManager.StartTimeSync();
    EXPECT_THAT(Take(), ElementsAre("WaitFinished(300)", "Abandon()"));
}

// The driver sees a running console also when there is no thread for it; its end has nothing to wait for.
TEST_F(Manager, RunsWithoutAThreadToo) {
    m_script.begins = false;
    BDCManager.Start(&m_driver, 10000);
    EXPECT_TRUE(BDCManager.IsRunning());
    BDCManager.InitiateShutdownW();
    EXPECT_TRUE(BDCManager.WaitEnd(5000));
    EXPECT_FALSE(BDCManager.IsRunning());
    EXPECT_THAT(Take(), ElementsAre("Begin()"));
}

TEST_F(Manager, PostsWhatTheDriverAsksFor) {
    Start();
    BDCManager.StartTimeSync();
    BDCManager.SetupNetworks();
    BDCManager.StartHistoryTransfer(nullptr);
    BDCManager.StartHistoryTransfer(NewTransferRequest(1234, 20, 5));
    BDCManager.PostMessageW(WM_CONSOLE_SHOW, 7, -8);
    BDCManager.PostMessageW(0x46E, 1, 1);
    BDCManager.ObjectChanged(1, {8, 1});
    BDCManager.ObjectChanged(0xFFFFFFFF, {1023, 4194303});
    BDCManager.ObjectChanged(1, {1024, 5}); // ten bits of the type survive
    EXPECT_THAT(Take(), ElementsAre("Post(0x468, 1, 0)", "Post(0x46C, 1, 0)", "Post(0x466, 1, 0)", "Post(0x466, 1, 1)",
                                    "Post(0x465, 7, -8)", "Post(0x46E, 1, 1)", "Post(0x46D, 1, 33554433)",
                                    "Post(0x46D, 4294967295, -1)", "Post(0x46D, 1, 5)"));
}

// The requests are freed, which the address sanitizer checks.
TEST_F(Manager, DropsWhatComesWhileItDoesNotRun) {
    const auto askForAll = [] {
        BDCManager.InitiateShutdownW();
        BDCManager.StartTimeSync();
        BDCManager.StartHistoryTransfer(nullptr);
        BDCManager.StartHistoryTransfer(NewTransferRequest(1, 20, 5));
        BDCManager.SetupNetworks();
        BDCManager.ObjectChanged(1, {8, 1});
        BDCManager.PostMessageW(WM_CONSOLE_SHOW, 0, 0);
        BDCManager.PostMessageW(WM_CONSOLE_HISTORY, 0, reinterpret_cast<std::intptr_t>(NewTransferRequest(1, 20, 5)));
    };
    askForAll();
    Start();
    EXPECT_THAT(Take(), IsEmpty());
    BDCManager.WaitEnd(0);
    Take();
    askForAll();
    EXPECT_THAT(Take(), IsEmpty());
}

TEST_F(Manager, ARequestNamesItsDeviceAndObject) {
    const std::unique_ptr<BACSTAC_DEV_OBJ_REF> request(NewTransferRequest(1234, 20, 5));
    EXPECT_EQ(request->ObjectId, (BACSTAC_OBJECT_ID{20, 5}));
    EXPECT_EQ(request->DevicePresent, 1U);
    EXPECT_EQ(request->DeviceId, (BACSTAC_OBJECT_ID{8, 1234}));
}

TEST_F(Manager, TheObjectIdentifierSurvivesItsPacking) {
    EXPECT_EQ(PackObjectId(1023, 4194303), -1);
    EXPECT_EQ(UnpackObjectType(-1), 1023U);
    EXPECT_EQ(UnpackObjectInstance(-1), 4194303U);
    EXPECT_EQ(UnpackObjectType(PackObjectId(8, 1)), 8U);
    EXPECT_EQ(UnpackObjectInstance(PackObjectId(8, 1)), 1U);
}

TEST_F(Manager, AChangedTagBecomesAMessageOnlyWhileItRuns) {
    m_kernel.AddTag(17, "T", 1);
    Start();
    EXPECT_TRUE(BDCManager.RegisterTriggerTag("X", "T", WM_CONSOLE_NETWORK, 2));
    BDCManager.OnTagChange(17, 0);
    BDCManager.OnTagChange(17, 1);
    EXPECT_THAT(Take(), ElementsAre("Post(0x469, 0, 2)", "Post(0x469, 1, 2)"));

    BDCManager.WaitEnd(0);
    Take();
    m_kernelEvents.Take();
    BDCManager.OnTagChange(17, 0);
    EXPECT_THAT(m_kernelEvents.Take(), ElementsAre("D: BACnet: Info, Triggering down X"));
    EXPECT_THAT(Take(), IsEmpty());

    Start(); // the trigger survived
    BDCManager.OnTagChange(17, 1);
    EXPECT_THAT(Take(), ElementsAre("Post(0x469, 1, 2)"));
    EXPECT_TRUE(BDCManager.RegisterTriggerTag("X", nullptr, 0, 0));
}

TEST_F(Manager, FindsATriggerByName) {
    class Open : public CBDCManager {
    public:
        using CBDCManager::CBDCManager;
        using CBDCManager::FindTriggerTag;
        explicit Open(const CBDCManager& other) : CBDCManager(other) {}
    };
    m_kernel.AddTag(17, "T", 1);
    Start();
    ASSERT_TRUE(BDCManager.RegisterTriggerTag("X", "T", WM_CONSOLE_BACKUP, 0));
    Open copy(BDCManager);
    EXPECT_EQ(copy.FindTriggerTag("X")->first, 17U);
    EXPECT_EQ(copy.FindTriggerTag("X")->second.message, WM_CONSOLE_BACKUP);
    EXPECT_TRUE(BDCManager.RegisterTriggerTag("X", nullptr, 0, 0));
}

TEST_F(Manager, ListsTheDigitalTagsOfTheDriversKernel) {
    EXPECT_THAT(CBDCManager().EnumDigitalTags(), IsEmpty());
    m_kernel.AddTag(0, "A");
    Start();
    EXPECT_THAT(BDCManager.EnumDigitalTags(), ElementsAre("A"));
}

TEST_F(Manager, TheLockIsRecursive) {
    BDCManager.Lock();
    BDCManager.Lock();
    BDCManager.Unlock();
    auto other = std::async(std::launch::async, [] {
        BDCManager.Lock();
        BDCManager.Unlock();
    });
    EXPECT_EQ(other.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    BDCManager.Unlock();
    other.wait();
}

TEST_F(Manager, ACopyHasALockOfItsOwn) {
    Start();
    CBDCManager copy(BDCManager);
    CBDCManager assigned;
    assigned = copy;
    EXPECT_TRUE(copy.IsRunning());
    EXPECT_TRUE(assigned.IsRunning());
    EXPECT_EQ(&assigned.GetDriver(), &m_driver);
    copy.Lock();
    std::async(std::launch::async, [] {
        BDCManager.Lock();
        BDCManager.Unlock();
    }).wait();
    copy.Unlock();
}

// The driver decides about the lock, and may have another thread hold it.
TEST_F(Manager, TheSettingsFileIsReadAndWrittenWithoutTheLock) {
    BDCManager.Lock();
    std::async(std::launch::async, [] {
        std::vector<CEventFilter> filters;
        EXPECT_FALSE(loadAllProps("/nonexistent/settings", allPropPages, filters));
        EXPECT_FALSE(storeAllProp("/nonexistent/settings", allPropPages));
    }).wait();
    BDCManager.Unlock();
}

TEST_F(Manager, MessagesFreeWhatNobodyTook) {
    const auto message = [] {
        return CConsoleMessage(WM_CONSOLE_HISTORY, 1, reinterpret_cast<std::intptr_t>(NewTransferRequest(1, 20, 5)));
    };
    message();
    CConsoleMessage moved = message();
    const CConsoleMessage last(std::move(moved));
    EXPECT_NE(last.GetLParam(), 0);
    CConsoleMessage taken = message();
    const std::unique_ptr<BACSTAC_DEV_OBJ_REF> request(taken.TakeRequest());
    EXPECT_NE(request, nullptr);
    EXPECT_EQ(taken.TakeRequest(), nullptr);
    EXPECT_EQ(CConsoleMessage(WM_CONSOLE_RESTORE, 1, 5).TakeRequest(), nullptr); // no pointer
}

} // namespace
