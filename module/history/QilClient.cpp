#include "module/history/QilClient.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <system_error>

namespace {

constexpr std::uint32_t QIL_RECEIVE_TIMEOUT = 1000; // ms
constexpr std::uint32_t QIL_STOP_TIMEOUT = 10000;   // ms, of the destructor
constexpr std::uint32_t QIL_WAIT_WITHOUT_LIMIT = 0xFFFFFFFF;
// A kernel that refuses to wait (a connection that is gone) must not turn the receive loop into a busy one.
constexpr std::chrono::milliseconds QIL_FAILURE_PAUSE{100};

} // namespace

// All that the receive thread touches between two handlers.
struct CQilClient::Shared {
    explicit Shared(IQLProgramCore& k) : kernel(k) {}

    IQLProgramCore& kernel;
    std::atomic<std::uint8_t> handle{0};
    std::atomic<bool> stop{false};
    // Written by the receive thread alone. It is not cleared between messages: the code is taken as it stands.
    alignas(8) unsigned char message[QL_MESSAGE_SIZE] = {};

    std::mutex mutex;
    std::condition_variable changed;
    bool ended = false;    // mutex; the thread has left Run
    bool visiting = false; // mutex; the thread is inside the client: in a handler, or on its way into the receive loop
    bool letGo = false;    // mutex; the client does without the thread and may be gone
    std::thread::id handler; // mutex; the thread, if it was one of its handlers that let go

    void Stop() {
        {
            const std::lock_guard lock(mutex);
            stop = true;
        }
        changed.notify_all();
    }
    // False: the thread has not ended within the time. It then touches the client no more.
    bool WaitForEnd(std::uint32_t milliseconds) {
        std::unique_lock lock(mutex);
        const auto hasEnded = [&] { return ended; };
        if (milliseconds == QIL_WAIT_WITHOUT_LIMIT)
            changed.wait(lock, hasEnded);
        else
            changed.wait_for(lock, std::chrono::milliseconds(milliseconds), hasEnded);
        changed.wait(lock, [&] { return ended || !visiting; });
        letGo = !ended;
        return ended;
    }
    // On the receive thread, inside a handler.
    void LetGo() {
        const std::lock_guard lock(mutex);
        letGo = true;
        handler = std::this_thread::get_id();
    }
    // Waits for the handler that let go, unless this is it.
    void WaitForHandler() {
        std::unique_lock lock(mutex);
        if (handler != std::this_thread::get_id())
            changed.wait(lock, [&] { return ended || !visiting; });
    }
    // False: the client may be gone.
    bool BeginVisit() {
        const std::lock_guard lock(mutex);
        visiting = !letGo;
        return visiting;
    }
    void EndVisit() {
        {
            const std::lock_guard lock(mutex);
            visiting = false;
        }
        changed.notify_all();
    }
};

CQilClient::CQilClient(IQLProgramCore& kernel, std::string name)
    : m_kernel(kernel), m_name(std::move(name)), m_shared(std::make_shared<Shared>(kernel)) {}

CQilClient::~CQilClient() {
    StopThread(QIL_STOP_TIMEOUT);
    Disconnect();
}

std::shared_ptr<CQilClient::Shared> CQilClient::GetShared() const {
    const std::lock_guard lock(m_mutex);
    return m_shared;
}

std::uint8_t CQilClient::GetHandle() const {
    return GetShared()->handle;
}

bool CQilClient::Connect() {
    const auto shared = GetShared();
    if (shared->handle != 0)
        return true;
    std::uint8_t handle = 0;
    m_lastResult = m_kernel.Connect(m_name.c_str(), 1, 0, handle);
    if (m_lastResult == QL_OK)
        shared->handle = handle;
    return m_lastResult == QL_OK;
}

bool CQilClient::Disconnect() {
    const auto shared = GetShared();
    if (shared->handle == 0)
        return true;
    m_lastResult = m_kernel.Disconnect(shared->handle);
    shared->handle = 0;
    return m_lastResult == QL_OK;
}

bool CQilClient::IsStationActive() {
    std::uint32_t status = 0;
    m_lastResult = m_kernel.GetStationStatus(GetHandle(), status);
    return m_lastResult == QL_OK && status == 0;
}

bool CQilClient::GetStationName(char* buffer) {
    std::memset(buffer, 0, QL_STATION_NAME_SIZE);
    m_lastResult = m_kernel.GetStationName(GetHandle(), buffer, 0, 0, 0, 0, 0);
    return m_lastResult == QL_OK;
}

bool CQilClient::ReadTagDefinition(std::uint32_t tagId, TagDefinition& definition) {
    definition = TagDefinition{};
    definition.size = sizeof(TagDefinition);
    m_lastResult = m_kernel.GetTagDefinition(GetHandle(), tagId, definition);
    return m_lastResult == QL_OK;
}

bool CQilClient::GetTagIdByName(const std::string& name, std::uint32_t& tagId) {
    char buffer[QL_TAG_NAME_SIZE] = {};
    std::strncpy(buffer, name.c_str(), sizeof buffer - 1);
    m_lastResult = m_kernel.GetTagIdWithStation(GetHandle(), buffer, tagId);
    return m_lastResult == QL_OK;
}

bool CQilClient::StartThread() {
    const std::lock_guard lock(m_mutex);
    if (m_thread.joinable())
        return true;
    const auto shared = m_shared;
    shared->stop = false;
    shared->ended = false;
    shared->visiting = true;
    try {
        m_thread = std::thread([this, shared] {
            Run();
            // From here on the client may be gone.
            {
                const std::lock_guard ended(shared->mutex);
                shared->ended = true;
            }
            shared->changed.notify_all();
        });
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void CQilClient::StopThread(std::uint32_t milliseconds) {
    std::thread thread;
    std::shared_ptr<Shared> shared;
    std::shared_ptr<Shared> leaving;
    {
        const std::lock_guard lock(m_mutex);
        thread.swap(m_thread);
        shared = m_shared;
        leaving = m_leaving;
    }
    if (!thread.joinable()) {
        if (leaving)
            leaving->WaitForHandler();
        return;
    }
    shared->Stop();
    if (thread.get_id() == std::this_thread::get_id()) {
        shared->LetGo();
        leaving = shared;
    } else if (shared->WaitForEnd(milliseconds)) {
        thread.join();
        return;
    }
    thread.detach();
    auto fresh = std::make_shared<Shared>(m_kernel);
    fresh->handle = shared->handle.load();
    fresh->stop = true;
    const std::lock_guard lock(m_mutex);
    m_shared = std::move(fresh);
    m_leaving = std::move(leaving);
}

bool CQilClient::IsAlive() const {
    return !GetShared()->stop;
}

std::uint16_t CQilClient::GetMessageCode() const {
    std::uint16_t code;
    std::memcpy(&code, GetMessageBytes(), sizeof code);
    return code;
}

const unsigned char* CQilClient::GetMessageBytes() const {
    return GetShared()->message;
}

void CQilClient::Run() {
    const auto shared = GetShared();
    shared->EndVisit();
    while (!shared->stop) {
        const QLResult result = shared->kernel.ReceiveMessage(shared->handle, shared->message, QIL_RECEIVE_TIMEOUT);
        if (result == QL_OK || result == QL_MESSAGES_LOST) {
            if (!shared->BeginVisit())
                return;
            std::uint16_t code;
            std::memcpy(&code, shared->message, sizeof code);
            Dispatch(code);
            // The handler may have let go of this thread and destroyed the client: only the shared state is safe now.
            shared->EndVisit();
            if (code == QL_MSG_EXIT)
                shared->Stop();
        } else if (result != QL_TIMEOUT) {
            std::unique_lock lock(shared->mutex);
            shared->changed.wait_for(lock, QIL_FAILURE_PAUSE, [&] { return shared->stop.load(); });
        }
    }
}

void CQilClient::Dispatch(std::uint16_t code) {
    using Handler = void (CQilClient::*)();
    static constexpr struct {
        std::uint16_t code;
        Handler handler;
    } HANDLERS[] = {
        {QL_MSG_EXIT, &CQilClient::OnExit}, {1, &CQilClient::OnMessage1},     {2, &CQilClient::OnMessage2},
        {3, &CQilClient::OnMessage3},       {7, &CQilClient::OnMessage7},     {8, &CQilClient::OnMessage8},
        {9, &CQilClient::OnMessage9},       {10, &CQilClient::OnMessage10},   {11, &CQilClient::OnMessage11},
        {13, &CQilClient::OnMessage13},     {14, &CQilClient::OnMessage14},   {15, &CQilClient::OnMessage15},
        {16, &CQilClient::OnMessage16},     {17, &CQilClient::OnMessage17},   {121, &CQilClient::OnMessage121},
        {122, &CQilClient::OnMessage122},   {123, &CQilClient::OnMessage123}, {124, &CQilClient::OnMessage124},
    };
    for (const auto& entry : HANDLERS) {
        if (entry.code == code) {
            (this->*entry.handler)();
            return;
        }
    }
}
