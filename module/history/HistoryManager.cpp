#include "module/history/HistoryManager.h"

#include "api/driver/Driver.h"
#include "api/kernel/QLProgramCore.h"
#include "module/console/Guarded.h"
#include "module/history/TransferEngine.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

namespace {

constexpr const char* THREAD_NAME = "HistoryManagerTransfer";

// Counts the threads of transfers.
struct Threads {
    std::mutex mutex;
    std::condition_variable ended;
    int count = 0; // mutex

    // Never destroyed: a transfer may end after main has.
    static Threads& Instance() {
        static Threads* instance = new Threads;
        return *instance;
    }
};

class ThreadCount {
public:
    ThreadCount() {
        const std::lock_guard lock(Threads::Instance().mutex);
        ++Threads::Instance().count;
    }
    ThreadCount(const ThreadCount&) = delete;
    ThreadCount& operator=(const ThreadCount&) = delete;
    ~ThreadCount() {
        const std::lock_guard lock(Threads::Instance().mutex);
        --Threads::Instance().count;
        Threads::Instance().ended.notify_all();
    }
};

// The next transfer goes on from the positions that were saved.
void Transfer(const HistoryServices& services, CTransferState& state, const HistorySettings& settings) {
    try {
        CTransferEngine(services, state, settings).Run();
    } catch (const std::exception& failure) {
        state.Error(std::string("Transfer ended: ") + failure.what());
    } catch (...) {
        state.Error("Transfer ended");
    }
}

void RunThread(const HistoryServices& services, CTransferState& state, const HistorySettings& settings) {
    const auto trace = [&services](const char* what) {
        RunGuarded("Driver: GetKernel", [&] {
            services.driver.GetKernel().Trace(QL_TRACE_HISTORY, (std::string(THREAD_NAME) + what).c_str());
        });
    };
    trace(": begin of thread");
    Transfer(services, state, settings);
    state.request.reset();
    state.running = false;
    trace(": end of thread");
    // The last that a transfer does with driver or kernel.
    state.Publish();
}

std::string RequestLine(const TransferRequest* request) {
    if (request == nullptr)
        return "Transfer request for all trend-log";
    const auto number = [](std::uint32_t value) { return std::to_string(static_cast<std::int32_t>(value)); };
    return "Transfer request for trend-log (" + number(request->DeviceId.Instance) + ", (" +
           number(request->ObjectId.Type) + ", " + number(request->ObjectId.Instance) + "))";
}

} // namespace

CBACnetHistoryManager::CBACnetHistoryManager(const HistorySettings* settings, const HistoryServices& services,
                                             std::string statePath)
    : m_settings(settings), m_services(services),
      m_state(std::make_shared<CTransferState>(services.driver, std::move(statePath))) {
    // The driver knows the last transfer time from the beginning.
    m_state->Publish();
}

CBACnetHistoryManager::~CBACnetHistoryManager() = default;

bool CBACnetHistoryManager::StartTransfer(bool manual, TransferRequest* request) {
    std::unique_ptr<TransferRequest> owned(request);
    CBacGeneral::LogInf(RequestLine(request));
    if (m_state->running) {
        m_state->Error("Can't start transfer because already running");
        return false;
    }
    m_state->running = true;
    m_state->abort = false;
    m_state->status.Reset();
    m_state->manual = manual;
    m_state->request = std::move(owned);
    m_state->Publish();
    try {
        auto count = std::make_unique<ThreadCount>();
        std::thread([services = m_services, settings = m_settings, state = m_state,
                     count = std::move(count)]() mutable {
            RunThread(services, *state, *settings);
            state.reset();
            count.reset();
        }).detach();
    } catch (const std::system_error&) {
        m_state->request.reset();
        m_state->running = false;
        m_state->Error("Can't start transfer thread");
        return false;
    }
    return true;
}

void CBACnetHistoryManager::Abort() {
    m_state->abort = true;
}

bool CBACnetHistoryManager::IsRunning() const {
    return m_state->running;
}

const TransferStatus& CBACnetHistoryManager::GetStatus() const {
    return m_state->status;
}

SYSTEM_TIME CBACnetHistoryManager::GetLastTransferTime() const {
    return m_state->GetLastTransferTime();
}

bool WaitForTransfers(std::uint32_t milliseconds) {
    Threads& threads = Threads::Instance();
    std::unique_lock lock(threads.mutex);
    return threads.ended.wait_for(lock, std::chrono::milliseconds(milliseconds), [&] { return threads.count == 0; });
}
