#include "module/history/ReadAhead.h"

#include <system_error>
#include <utility>

void TrendBlock::Read(const CBACnetTrend& trend, const BACSTAC_DATE_TIME& position) {
    rows.Clear();
    contents.Clear();
    more = true;
    error = {};
    status = trend.Read(position, rows, more, contents.Get(), error);
}

CReadAhead::~CReadAhead() {
    Settle();
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

bool CReadAhead::Start(const CBACnetTrend& trend, const BACSTAC_DATE_TIME& position, TrendBlock& block) {
    if (!m_thread.joinable()) {
        try {
            m_thread = std::thread([this] { Run(); });
        } catch (const std::system_error&) {
            return false;
        }
    }
    {
        const std::lock_guard lock(m_mutex);
        m_trend = &trend;
        m_position = position;
        m_block = &block;
    }
    m_changed.notify_all();
    m_underWay = true;
    return true;
}

void CReadAhead::Wait() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_trend == nullptr; });
    m_underWay = false;
    if (m_failure)
        std::rethrow_exception(std::exchange(m_failure, nullptr));
}

void CReadAhead::Settle() noexcept {
    if (!m_underWay)
        return;
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_trend == nullptr; });
    m_underWay = false;
    m_failure = nullptr;
}

void CReadAhead::Run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [&] { return m_stop || m_trend != nullptr; });
        if (m_stop)
            return;
        lock.unlock();
        std::exception_ptr failure;
        try {
            m_block->Read(*m_trend, m_position);
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        m_failure = failure;
        m_trend = nullptr;
        m_changed.notify_all();
    }
}
