// The parts of a station as the driver program puts them together, all but the console's: BACnet client over UDP,
// kernel, SQLite historian, driver with its tags, directory file. Everything that outlives a run lies in the folder
// given, so a second station on it goes on from the first.
//
// One at a time in a process: it takes the process's log and directory file. Used on one thread.
#pragma once

#include "module/console/Settings.h"
#include "platform/historian/SqliteHistoryStore.h"
#include "platform/kernel/Kernel.h"
#include "platform/stack/client/BacnetClient.h"
#include "tests/integration/Site.h"
#include "tests/support/FakeDriver.h"

#include <filesystem>
#include <memory>
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

inline constexpr const char* STORE_FILE = "history.db";

// What a folder's historical store holds, all tags together, sorted.
RecordLines StoredRecords(const std::filesystem::path& folder, bool all = true);

class StationParts {
public:
    // Throws std::runtime_error when a part cannot be made. The site need not run yet.
    StationParts(const sim::SimulatorConfig& site, const std::vector<PlannedTag>& tags,
                 const StationSettings& settings);
    ~StationParts();
    StationParts(const StationParts&) = delete;
    StationParts& operator=(const StationParts&) = delete;

    // What was logged: "I: ", "E: ", "D: ", and "T: " for the kernel's trace.
    CEventList& Lines() { return *m_lines; }
    HistorySettings& Settings() { return m_settings; } // all trends of the site
    Kernel& GetKernel() { return m_kernel; }
    CFakeDriver& Driver() { return m_driver; }
    bacnet::BacnetClient& Client() { return *m_client; }

private:
    void AddTags(const std::vector<PlannedTag>& tags);
    void FillDirectory(const sim::SimulatorConfig& site, const std::string& path);

    const std::shared_ptr<CEventList> m_lines; // of the log's sink too
    std::unique_ptr<SqliteHistoryStore> m_store;
    Kernel m_kernel;
    CEventList m_driverEvents;
    CFakeDriver m_driver;
    std::unique_ptr<bacnet::BacnetClient> m_client;
    HistorySettings m_settings;
};

} // namespace integration
