// A whole station as the driver program puts it together: BACnet client over UDP, kernel, SQLite historian, history
// manager. Everything that outlives a run lies in the folder given, so a second station on it goes on from the first.
//
// One at a time in a process: it takes the process's log. Used on one thread.
#pragma once

#include "module/console/Settings.h"
#include "module/history/Clock.h"
#include "module/history/HistoryManager.h"
#include "platform/historian/SqliteHistoryStore.h"
#include "platform/kernel/Kernel.h"
#include "platform/stack/client/BacnetClient.h"
#include "tests/integration/Site.h"
#include "tests/support/FakeDriver.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>

namespace integration {

struct StationSettings {
    std::filesystem::path folder;
    std::string bindAddress;
    int chunk = 100;
    bacnet::TransactionSettings transactions = FastTransactions();
    SqliteHistoryStore::Settings store;

    // A device that keeps silent costs 600 ms.
    static bacnet::TransactionSettings FastTransactions();
};

// Reads and counts what a folder's historical store holds, all tags together. Sorted.
RecordLines StoredRecords(const std::filesystem::path& folder, bool all = true);
inline constexpr const char* STORE_FILE = "history.db";
inline constexpr const char* STATE_FILE = "history.ini";

class Station {
public:
    // Throws std::runtime_error when a part cannot be made. The site need not run yet.
    Station(const sim::SimulatorConfig& site, const std::vector<PlannedTag>& tags, const StationSettings& settings);
    ~Station();
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;

    // Transfers everything and waits for the end. The lines that it logged: "I: ", "E: ", and "T: " for the trace.
    CEventList::Lines Transfer();
    CEventList::Lines Transfer(TransferRequest* request); // owned

    // The parts of Transfer, for tests that do something meanwhile.
    void Start(TransferRequest* request = nullptr);
    CEventList::Lines Finish();
    bool IsRunning() const { return m_manager->IsRunning(); }
    CEventList::Lines LinesSoFar() const { return m_events->Get(); }

    CBACnetHistoryManager& Manager() { return *m_manager; }
    HistorySettings& Settings() { return m_settings; }
    Kernel& GetKernel() { return m_kernel; }
    CFakeDriver& Driver() { return m_driver; }
    RecordLines Stored(bool all = true) const { return StoredRecords(m_folder, all); }
    std::string Position(const std::string& trend) const;

private:
    class ModuleLock final : public IModuleLock {
    public:
        void Lock() override { m_mutex.lock(); }
        void Unlock() override { m_mutex.unlock(); }

    private:
        std::mutex m_mutex;
    };
    void AddTags(const std::vector<PlannedTag>& tags);
    void FillDirectory(const sim::SimulatorConfig& site);

    const std::filesystem::path m_folder;
    const std::shared_ptr<CEventList> m_events; // of the log's sink too
    std::unique_ptr<SqliteHistoryStore> m_store;
    Kernel m_kernel;
    CEventList m_driverEvents;
    CFakeDriver m_driver;
    std::unique_ptr<bacnet::BacnetClient> m_client;
    HistorySettings m_settings;
    ModuleLock m_lock;
    CSystemClock m_clock;
    std::unique_ptr<CBACnetHistoryManager> m_manager;
};

} // namespace integration
