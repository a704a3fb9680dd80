#include "module/history/TransferEngine.h"

#include "api/bacnet/BacGeneral.h"
#include "api/driver/Driver.h"
#include "base/Decimal.h"
#include "module/history/Clock.h"
#include "module/history/TagResolver.h"

#include <algorithm>
#include <mutex>

namespace {

constexpr const char* CLIENT_NAME = "BACnetHistoryManager";
constexpr std::uint32_t CLIENT_STOP_TIMEOUT = 10000; // ms

class ModuleLockGuard {
public:
    explicit ModuleLockGuard(IModuleLock& lock) : m_lock(lock) { m_lock.Lock(); }
    ModuleLockGuard(const ModuleLockGuard&) = delete;
    ModuleLockGuard& operator=(const ModuleLockGuard&) = delete;
    ~ModuleLockGuard() { m_lock.Unlock(); }

private:
    IModuleLock& m_lock;
};

class ReadAheadScope {
public:
    explicit ReadAheadScope(CReadAhead& readAhead) : m_readAhead(readAhead) {}
    ReadAheadScope(const ReadAheadScope&) = delete;
    ReadAheadScope& operator=(const ReadAheadScope&) = delete;
    ~ReadAheadScope() { m_readAhead.Settle(); }

private:
    CReadAhead& m_readAhead;
};

std::string WithNumber(const char* text, std::uint32_t number) {
    return std::string(text) + " (" + std::to_string(number) + ")";
}

std::string ErrorText(BACSTAC_STATUS status, const BACSTAC_ERROR& error) {
    std::string text = WithNumber(CBacGeneral::GetStatusString(status), status);
    switch (status) {
    case BACSTAC_STATUS_ERROR:
        return text + " - " + WithNumber(CBacGeneral::GetErrorCodeString(error.Code), error.Code);
    case BACSTAC_STATUS_REJECT:
        return text + " - " + WithNumber(CBacGeneral::GetRejectReasonString(error.Class), error.Class);
    case BACSTAC_STATUS_ABORT:
        return text + " - " + WithNumber(CBacGeneral::GetAbortReasonString(error.Class), error.Class);
    default:
        return text;
    }
}

bool IsLimitedBy(const CDeviceSettings& settings, std::int32_t kind) {
    return settings.limitEnabled != 0 && settings.limitKind == kind;
}

} // namespace

CTransferEngine::CTransferEngine(const HistoryServices& services, CTransferState& state,
                                 const HistorySettings& settings)
    : m_services(services), m_state(state), m_source(settings), m_journal(state.file), m_model(services.bacnet),
      m_client(services.driver.GetKernel(), CLIENT_NAME) {}

bool CTransferEngine::Run() {
    m_state.Info("Start of transfer");
    CopySettings();
    if (!OpenKernel())
        return false;
    m_journal.Recover();
    m_model.RebuildDeviceList();
    for (const auto& settings : m_settings.devices) {
        if (IsStopped())
            break;
        if (settings)
            TransferDevice(*settings);
    }
    m_vfi.Flush();
    if (m_state.abort)
        m_state.Error("Transfer aborted");
    const SYSTEM_TIME now = m_services.clock.GetLocalSystemTime();
    m_state.SetLastTransferTime(now);
    m_state.file.SaveLastTransferTime(now);
    m_state.Info("End of transfer");
    m_vfi.Close();
    m_client.StopThread(CLIENT_STOP_TIMEOUT);
    m_client.Disconnect();
    return true;
}

// The total covers all devices, also when a request narrows the transfer.
void CTransferEngine::CopySettings() {
    {
        const ModuleLockGuard lock(m_services.lock);
        m_settings = m_source;
    }
    std::size_t total = 0;
    for (const auto& settings : m_settings.devices)
        total += settings ? settings->objects.size() : 0;
    m_state.status.SetTotal(static_cast<std::uint32_t>(total));
    m_state.Publish();
}

bool CTransferEngine::OpenKernel() {
    if (!m_client.Connect()) {
        m_state.Error("Connection failure");
        return false;
    }
    if (!m_client.IsStationActive()) {
        m_state.Error("Transfer aborted because station is passive");
        return false;
    }
    m_client.StartThread();
    if (!m_vfi.Open(m_client, QIL_VFI_APPEND, 0)) {
        m_state.Error("VFI open failure");
        return false;
    }
    return true;
}

void CTransferEngine::TransferDevice(const CDeviceSettings& settings) {
    if (m_state.request && DecToU32(settings.device) != m_state.request->DeviceId.Instance)
        return;
    m_state.Info("Transfer for device " + settings.device);
    if (settings.objects.empty()) {
        m_state.Info("Nothing to do on device " + settings.device);
        return;
    }
    CBACnetDevice* const device = m_model.FindDevice(settings.device);
    if (device == nullptr) {
        m_state.Error("Device not found: " + settings.device);
        return;
    }
    if (settings.force2001 != 0)
        device->ProtocolLevel = PROTOCOL_FORCED_2001;
    m_model.RebuildObjectLists(device);

    const std::uint32_t startTick = m_services.clock.TickCount();
    int readCount = m_services.driver.GetTransferChunk();
    if (IsLimitedBy(settings, HISTORY_LIMIT_BY_RECORDS))
        readCount = std::min(readCount, settings.limitValue);
    DeviceRun run{settings, static_cast<std::size_t>(std::max(readCount, 0)), startTick};
    for (const std::string& name : settings.objects) {
        if (run.limitReached || IsStopped())
            break;
        TransferObject(run, name);
    }
}

void CTransferEngine::TransferObject(DeviceRun& run, const std::string& name) {
    m_state.Info("Transfer for object " + name);
    m_state.status.BeginObject(run.settings.device, name);
    m_state.Publish();
    const CBACnetTrend* const trend = m_model.FindTrend(name);
    if (trend == nullptr) {
        m_state.Error("Trend object not found (" + name + ")");
        return;
    }
    const TransferRequest* const request = m_state.request.get();
    if (request != nullptr && request->ObjectId.Instance != BACSTAC_ALL_INSTANCES &&
        request->ObjectId.Instance != trend->GetId().Instance) {
        m_state.Info("Skipping " + name);
        return;
    }
    if (trend->GetLogReferences().empty()) {
        m_state.Error("No log reference found for trend (" + name + ")");
        return;
    }
    const std::vector<HistoryTagRecord> tags =
        CTagResolver(m_client, m_services.driver.GetTagList(), m_state).Resolve(trend->GetLogReferences());

    BACSTAC_DATE_TIME position;
    m_state.file.LoadTrendPosition(name, position);
    m_state.Info("Starting at " + FormatPosition(position));
    ReadBlocks(run, *trend, tags, position);
    m_state.Info("Stopping at " + FormatPosition(position));
    if (m_state.file.SaveTrendPosition(name, position))
        m_journal.Clear();
}

// Moves the position behind each block that was stored.
void CTransferEngine::ReadBlocks(DeviceRun& run, const CBACnetTrend& trend, const std::vector<HistoryTagRecord>& tags,
                                 BACSTAC_DATE_TIME& position) {
    const std::string& name = trend.GetName();
    CRowConverter converter(tags);
    CFixedArray<VfiRecord> records(run.readCount * RECORDS_PER_VALUE * tags.size());
    TrendBlock block(run.readCount);
    const ReadAheadScope readAhead(m_readAhead); // lets go of the block before it is gone
    bool isLong = false;
    while (!m_state.abort && !run.limitReached) {
        if (m_readAhead.IsUnderWay())
            m_readAhead.Wait();
        else
            block.Read(trend, position);
        if (block.status != BACSTAC_OK) {
            m_state.Error("Error reading trend " + name + ": " + ErrorText(block.status, block.error));
            return;
        }
        const std::size_t rows = block.rows.GetSize();
        m_state.Info("Reading " + std::to_string(rows) + " records from trend " + name);
        if (rows == 0)
            return;
        records.Clear();
        converter.Convert(block.rows, block.contents.Get(), records);
        const BACSTAC_DATE_TIME next = block.rows[rows - 1].front().timeStamp;
        const bool isAhead = Compare(next, position) == COMPARE_GREATER;
        const bool more = block.more;
        // From here on the block belongs to the next read. A log that ends with its second block, as most do that are
        // read every day, is never read ahead.
        if (isLong && isAhead && more && IsNextBlockSure(run, trend, rows))
            m_readAhead.Start(trend, next, block);
        isLong = true;
        if (!m_vfi.Write(static_cast<std::uint32_t>(records.GetSize()), records.GetData())) {
            m_state.Error("Error writing to VFI");
            return;
        }
        if (!isAhead) {
            m_state.Info("Next buffer position is before current position " + name);
            return;
        }
        position = next;
        if (!more) {
            m_state.Info("No more items for " + name);
            return;
        }
        CountBlock(run, rows);
        m_journal.Note(name, position);
    }
}

// Whether the block behind one of so many rows will be wanted and costs one request: a limit by time is decided only
// when the block is stored, and a device whose protocol is not known is asked for it at each read.
bool CTransferEngine::IsNextBlockSure(const DeviceRun& run, const CBACnetTrend& trend, std::size_t rows) {
    if (trend.GetDevice().ProtocolLevel == PROTOCOL_UNKNOWN || IsLimitedBy(run.settings, HISTORY_LIMIT_BY_TIME))
        return false;
    return !IsLimitedBy(run.settings, HISTORY_LIMIT_BY_RECORDS) ||
           run.records + static_cast<std::uint32_t>(rows) < static_cast<std::uint32_t>(run.settings.limitValue);
}

// The limits are looked at behind a block that has others behind it, so a trend's last block never counts. Their lines
// are errors on purpose: a limited transfer ends with errors.
void CTransferEngine::CountBlock(DeviceRun& run, std::size_t rows) {
    if (IsLimitedBy(run.settings, HISTORY_LIMIT_BY_TIME)) {
        const std::uint32_t seconds = (m_services.clock.TickCount() - run.startTick) / 1000;
        if (seconds >= static_cast<std::uint32_t>(run.settings.limitValue)) {
            run.limitReached = true;
            m_state.Error("Time limit reached for device " + run.settings.device);
        }
    } else if (IsLimitedBy(run.settings, HISTORY_LIMIT_BY_RECORDS)) {
        run.records += static_cast<std::uint32_t>(rows);
        if (run.records >= static_cast<std::uint32_t>(run.settings.limitValue)) {
            run.limitReached = true;
            m_state.Error("Record count limit reached for device " + run.settings.device);
        }
    }
}
