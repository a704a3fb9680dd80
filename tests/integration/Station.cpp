#include "tests/integration/Station.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace integration {
namespace {

constexpr std::uint32_t WAIT_MS = 100'000;

} // namespace

Station::Station(const sim::SimulatorConfig& site, const std::vector<PlannedTag>& tags, const StationSettings& settings)
    : m_folder(settings.folder), m_parts(site, tags, settings),
      m_manager(&m_parts.Settings(), {m_parts.Client(), m_parts.Driver(), m_lock, m_clock},
                (m_folder / STATE_FILE).string()) {}

Station::~Station() {
    m_manager.Abort();
    WaitForTransfers(WAIT_MS);
}

CEventList::Lines Station::Transfer(TransferRequest* request) {
    Start(request);
    return Finish();
}

void Station::Start(TransferRequest* request) {
    m_parts.Lines().Take();
    if (!m_manager.StartTransfer(false, request))
        throw std::runtime_error("the transfer does not start");
}

CEventList::Lines Station::Finish() {
    if (!WaitForTransfers(WAIT_MS))
        throw std::runtime_error("the transfer does not end");
    return m_parts.Lines().Take();
}

void Station::WaitForLines(const std::string& beginning, std::size_t count) {
    const auto found = [&] {
        const CEventList::Lines lines = m_parts.Lines().Get();
        const auto begins = [&](const std::string& line) { return line.starts_with(beginning); };
        return static_cast<std::size_t>(std::ranges::count_if(lines, begins)) >= count;
    };
    while (IsRunning() && !found())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

std::string Station::Position(const std::string& trend) const {
    BACSTAC_DATE_TIME position{};
    CHistoryState((m_folder / STATE_FILE).string()).LoadTrendPosition(trend, position);
    return FormatPosition(position);
}

} // namespace integration
