// Reads the next block of a trend's log on a thread of its own while the transfer's thread stores the block before it.
// The transfer's thread owns it and calls it; the reading thread touches the block and the trend only between Start and
// Wait, when the transfer's thread leaves both alone.
#pragma once

#include "api/bacnet/Types.h"
#include "module/history/HistoryModel.h"
#include "module/history/TrendRows.h"

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <thread>

// What one ReadRange gave.
struct TrendBlock {
    explicit TrendBlock(std::size_t capacity) : rows(capacity) {}

    // Reads the entries behind the position in the place of what was there. As CBACnetTrend::Read.
    void Read(const CBACnetTrend& trend, const BACSTAC_DATE_TIME& position);

    CTrendRows rows; // any-values lie in contents
    CContentsBuffer contents;
    bool more = true;
    BACSTAC_STATUS status = BACSTAC_OK;
    BACSTAC_ERROR error{};
};

class CReadAhead {
public:
    CReadAhead() = default;
    CReadAhead(const CReadAhead&) = delete;
    CReadAhead& operator=(const CReadAhead&) = delete;
    ~CReadAhead(); // as Settle; then the thread ends

    // Begins to read the block that follows the position; nothing is under way. trend and block outlive the read.
    // False: there is no thread for it, and nothing was begun.
    bool Start(const CBACnetTrend& trend, const BACSTAC_DATE_TIME& position, TrendBlock& block);
    bool IsUnderWay() const { return m_underWay; }
    // Waits until the block is read. Throws what reading it threw.
    void Wait();
    // Waits as Wait does and drops what comes. Nothing under way: returns at once.
    void Settle() noexcept;

private:
    void Run();

    bool m_underWay = false; // of the transfer's thread
    std::thread m_thread;    // since the first Start

    std::mutex m_mutex; // guards all below
    std::condition_variable m_changed;
    const CBACnetTrend* m_trend = nullptr; // null: nothing to read
    BACSTAC_DATE_TIME m_position{};
    TrendBlock* m_block = nullptr;
    std::exception_ptr m_failure;
    bool m_stop = false;
};
