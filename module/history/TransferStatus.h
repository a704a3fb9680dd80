// The progress of a history transfer: the transfer's thread writes it, the History tab and the driver's observer read
// it. Any thread may call any operation.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

class TransferStatus {
public:
    struct VALUES {
        std::uint32_t total = 0;   // objects in the whole configuration
        std::uint32_t current = 0; // objects begun so far
        std::string device;        // being handled now
        std::string object;
        std::uint32_t errorCount = 0;
        std::string lastError; // without the "History: " of the log

        // Whole percent, 0 when there is nothing to do. A transfer of a part never reaches 100.
        std::uint32_t GetPercent() const;
    };

    // Numbers to zero, texts empty.
    void Reset();
    void SetTotal(std::uint32_t total);
    // Counts the object as begun.
    void BeginObject(const std::string& device, const std::string& object);
    void AddError(const std::string& text);
    VALUES Get() const;

private:
    mutable std::mutex m_mutex;
    VALUES m_values; // m_mutex
};
