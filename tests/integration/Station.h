// A station with the history transfer, without the console.
#pragma once

#include "module/history/Clock.h"
#include "module/history/HistoryManager.h"
#include "tests/integration/StationParts.h"

#include <mutex>

namespace integration {

inline constexpr const char* STATE_FILE = "history.ini";

class Station {
public:
    Station(const sim::SimulatorConfig& site, const std::vector<PlannedTag>& tags, const StationSettings& settings);
    ~Station(); // aborts

    // Transfers everything, or what is requested (owned), and waits for the end. Gives the lines that it logged.
    CEventList::Lines Transfer(TransferRequest* request = nullptr);
    // The two halves of it, for tests that do something meanwhile.
    void Start(TransferRequest* request = nullptr);
    CEventList::Lines Finish();
    bool IsRunning() const { return m_manager.IsRunning(); }
    // Waits until the transfer has logged so many lines of this beginning, or has ended.
    void WaitForLines(const std::string& beginning, std::size_t count);

    CBACnetHistoryManager& Manager() { return m_manager; }
    StationParts& Parts() { return m_parts; }
    RecordLines Stored(bool all = true) const { return StoredRecords(m_folder, all); }
    std::string Position(const std::string& trend) const; // as the state file has it

private:
    class ModuleLock final : public IModuleLock {
    public:
        void Lock() override { m_mutex.lock(); }
        void Unlock() override { m_mutex.unlock(); }

    private:
        std::mutex m_mutex;
    };

    const std::filesystem::path m_folder;
    StationParts m_parts;
    ModuleLock m_lock;
    CSystemClock m_clock;
    CBACnetHistoryManager m_manager;
};

} // namespace integration
