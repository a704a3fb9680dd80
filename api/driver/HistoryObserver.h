// What the driver may learn of the history transfer while it runs, for status displays outside the console.
#pragma once

#include <cstdint>
#include <string>

struct HistoryStatus {
    bool running = false;
    std::uint32_t total = 0;   // objects in the whole configuration
    std::uint32_t current = 0; // objects begun so far
    std::string device;        // being handled now, UTF-8
    std::string object;
    std::uint32_t errorCount = 0;
    std::string lastError;        // without the "History: " in front
    std::string lastTransferTime; // "dd/mm/yyyy hh:mm:ss.mmm" local, empty: never
};

// Called on the threads of the console and of the transfer, one call at a time, never with a lock of the module held.
// The receiver copies what it needs and returns quickly.
class IHistoryObserver {
public:
    virtual ~IHistoryObserver() = default;
    virtual void OnHistoryStatus(const HistoryStatus& status) = 0;
};
