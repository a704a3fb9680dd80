#include "module/console/Manager.h"

#include "api/bacnet/Types.h"
#include "api/driver/Driver.h"
#include "module/console/ConsoleMessage.h"
#include "module/console/ConsoleRun.h"
#include "module/console/ConsoleState.h"
#include "module/console/Globals.h"
#include "module/console/Guarded.h"
#include "module/console/MessageSink.h"
#include "module/console/Messages.h"

#include <memory>
#include <utility>

namespace {

constexpr std::uintptr_t DO_IT = 1; // wParam of a job that is asked for, as on a rising edge
constexpr std::uint32_t OBJECT_DEVICE = 8;

// Triggers post to the running console, whichever manager they were registered with.
class CConsoleSink : public IMessageSink {
public:
    void Post(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) override {
        BDCManager.PostMessageW(message, wParam, lParam);
    }
};

// Holds a flag unless it is held already, be it by this very thread.
class CFlagHold {
public:
    explicit CFlagHold(std::atomic_flag& flag)
        : m_flag(flag), m_isHeld(!flag.test_and_set(std::memory_order_acquire)) {}
    ~CFlagHold() {
        if (m_isHeld)
            m_flag.clear(std::memory_order_release);
    }
    CFlagHold(const CFlagHold&) = delete;
    CFlagHold& operator=(const CFlagHold&) = delete;
    bool IsHeld() const { return m_isHeld; }

private:
    std::atomic_flag& m_flag;
    const bool m_isHeld;
};

} // namespace

CBDCManager::CBDCManager() = default;
CBDCManager::~CBDCManager() = default;

CBDCManager::CBDCManager(const CBDCManager& other)
    : m_running(other.m_running.load()), m_driver(other.m_driver.load()), m_triggers(other.m_triggers) {}

CBDCManager& CBDCManager::operator=(const CBDCManager& other) {
    m_running = other.m_running.load();
    m_driver = other.m_driver.load();
    m_triggers = other.m_triggers;
    return *this;
}

void CBDCManager::Start(CDriver* driver, std::uint32_t timeout) {
    // While another thread starts, or this one does further up in a loop that serves events, there is nothing to add.
    const CFlagHold starting(m_starting);
    if (!starting.IsHeld() || m_running)
        return;
    m_driver = driver;
    const std::shared_ptr<IConsoleRun> run = consoleWiring.newRun ? consoleWiring.newRun(*driver) : nullptr;
    SetConsoleRun(run);
    if (run && run->Begin())
        run->WaitStarted(timeout);
    else
        SetConsoleRun(nullptr);
    m_running = true; // last, so that what the tabs trigger while they are built is dropped
}

bool CBDCManager::WaitEnd(std::uint32_t timeout) {
    if (!m_running)
        return true;
    const auto run = GetConsoleRun();
    const bool ended = !run || run->WaitFinished(timeout);
    if (!ended)
        run->Abandon();
    SetConsoleRun(nullptr);
    m_running = false;
    return ended;
}

bool CBDCManager::IsRunning() const {
    return m_running;
}

void CBDCManager::InitiateShutdownW() {
    PostMessageW(WM_CONSOLE_SHUTDOWN, 0, 0);
}

CDriver& CBDCManager::GetDriver() {
    return *m_driver;
}

void CBDCManager::Lock() {
    m_lock.lock();
}

void CBDCManager::Unlock() {
    m_lock.unlock();
}

void CBDCManager::PostMessageW(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) {
    CConsoleMessage posted(message, wParam, lParam); // frees what it carries if it is dropped
    if (!m_running)
        return;
    if (const auto run = GetConsoleRun())
        run->Post(std::move(posted));
}

void CBDCManager::StartTimeSync() {
    PostMessageW(WM_CONSOLE_TIMESYNC, DO_IT, 0);
}

void CBDCManager::StartHistoryTransfer(BACSTAC_DEV_OBJ_REF* request) {
    PostMessageW(WM_CONSOLE_HISTORY, DO_IT, reinterpret_cast<std::intptr_t>(request));
}

void CBDCManager::SetupNetworks() {
    PostMessageW(WM_CONSOLE_SETUPNETWORKS, DO_IT, 0);
}

void CBDCManager::ObjectChanged(unsigned device, const BACSTAC_OBJECT_ID& object) {
    PostMessageW(WM_CONSOLE_OBJECTCHANGED, device, PackObjectId(object.Type, object.Instance));
}

void CBDCManager::OnTagChange(std::uint32_t tagId, double value) {
    CConsoleSink sink;
    m_triggers.OnTagChange(sink, tagId, value);
}

bool CBDCManager::RegisterTriggerTag(const char* name, const char* tagName, unsigned message, std::int32_t lParam) {
    CConsoleSink sink;
    bool isRegistered = false;
    RunGuarded("RegisterTriggerTag",
               [&] { isRegistered = m_triggers.Register(m_driver, sink, name, tagName, message, lParam); });
    return isRegistered;
}

std::vector<std::string> CBDCManager::EnumDigitalTags() {
    CDriver* const driver = m_driver;
    std::vector<std::string> names;
    if (driver)
        RunGuarded("EnumDigitalTags", [&] { names = ::EnumDigitalTags(driver->GetKernel(), driver->GetGateId()); });
    return names;
}

CTriggerTable::Map::iterator CBDCManager::FindTriggerTag(const char* name) {
    return m_triggers.FindTriggerTag(name);
}

BACSTAC_DEV_OBJ_REF* NewTransferRequest(std::uint32_t device, std::uint32_t objectType, std::uint32_t objectInstance) {
    auto request = std::make_unique<BACSTAC_DEV_OBJ_REF>();
    request->ObjectId = {objectType, objectInstance};
    request->DevicePresent = 1;
    request->DeviceId = {OBJECT_DEVICE, device};
    return request.release();
}
