#include "host/Runtime.h"

#include "api/bacnet/Log.h"
#include "host/ControlCommands.h"
#include "host/DataFolder.h"
#include "host/Program.h"
#include "host/StackConfig.h"
#include "host/Version.h"
#include "module/console/Globals.h"
#include "module/console/Messages.h"
#include "module/console/SettingsStore.h"
#include "platform/historian/SqliteHistoryStore.h"
#include "platform/kernel/Kernel.h"
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/schema/VendorNames.h"

#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr const char* HISTORY_FILE = "history.db";
constexpr const char* ALARM_RULE_FILE = "alarm-rules.json";
constexpr const char* TAG_NUMBER_FILE = "tag-numbers.json";
constexpr const char* LOG_FOLDER = "log";

constexpr std::uint32_t CONSOLE_START_WAIT = 60000; // ms
constexpr std::uint32_t CONSOLE_END_WAIT = 20000;   // ms
// A running transfer is first told to stop behind the object that it is at, then its requests are cut off.
constexpr auto TRANSFER_STOP_WAIT = 3s;
constexpr auto TRANSFER_CUT_WAIT = 10s;

// "Transfer history on startup" is for the driver to heed.
bool IsTransferWantedAtStart() {
    BDCManager.Lock();
    const bool isWanted = (allPropPages.general.flags & GENERAL_TRANSFER_HISTORY_ON_STARTUP) != 0;
    BDCManager.Unlock();
    return isWanted;
}

} // namespace

CRuntime::CRuntime(const Config& config, std::string folder)
    : m_config(config), m_folder(std::move(folder)), m_settings(m_folder + "/" + m_config.settingsFile),
      m_station(m_folder + "/" + STATION_FILE, m_config.identity), m_users({m_folder + "/" + USERS_FILE, {}, {}}),
      m_userManagement(m_users, m_folder == DefaultDataFolder() ? std::string() : m_folder,
                       [this](const std::string& name) { m_kernel->SetCurrentUserName(name); }) {}

CRuntime::~CRuntime() = default;

bool CRuntime::Open(std::string& error) {
    if (!EnsureFolder(m_folder + "/" + LOG_FOLDER, error))
        return false;
    if (!CQilBAC_ErrLog::Instance().Open(m_folder + "/" + LOG_FOLDER)) {
        error = m_folder + "/" + LOG_FOLDER + ": the log cannot be opened";
        return false;
    }
    LogInf("bdc %s starts, process %d", BDC_VERSION, static_cast<int>(getpid()));
    std::string stationError;
    if (!m_station.Load(stationError))
        LogErr("%s", stationError.c_str());
    m_rules = std::make_unique<CAlarmRuleFile>(m_folder + "/" + ALARM_RULE_FILE);
    return LoadSettings(error) && OpenHistory(error) && OpenKernel(error) && OpenStack(error);
}

bool CRuntime::LoadSettings(std::string& error) {
    std::vector<std::string> notes;
    AllPropPages pages;
    std::vector<CEventFilter> filters = m_station.EventFilters();
    const auto source = m_settings.Load(pages, filters, notes);
    for (const std::string& note : notes)
        LogErr("%s", note.c_str());
    if (source == CSettingsGuard::Source::Unreadable) {
        error = notes.empty() ? "the settings cannot be read" : notes.front();
        return false;
    }
    BDCManager.Lock();
    allPropPages = std::move(pages);
    m_station.EventFilters() = std::move(filters);
    BDCManager.Unlock();
    return true;
}

bool CRuntime::OpenHistory(std::string& error) {
    HistoryError failure;
    m_history = SqliteHistoryStore::Open(m_folder + "/" + HISTORY_FILE, {}, failure);
    error = failure.text;
    return m_history != nullptr;
}

bool CRuntime::OpenKernel(std::string& error) {
    KernelSettings settings;
    settings.stationName = m_config.station;
    settings.stationNumber = m_config.stationNumber;
    settings.storeFailed = [](const std::string& text) { LogErr("Historian: %s", text.c_str()); };
    settings.trace = [](unsigned, const char* text) { LogDebugInfo("%s", text); };
    if (const char* fault = Kernel::Fault(settings)) {
        error = std::string("station: ") + fault;
        return false;
    }
    m_kernel = std::make_unique<Kernel>(std::move(settings), *m_history);
    m_kernel->SetStationActive(m_config.stationActive);
    m_kernel->SetHelpPath(HelpPath());
    m_driver =
        std::make_unique<CFieldDriver>(*m_kernel, m_station, *m_rules, m_settings, m_monitor, m_userManagement,
                                       static_cast<int>(m_config.transferChunk),
                                       [](std::uint32_t tagId, double value) { BDCManager.OnTagChange(tagId, value); });
    CTagNumbers numbers(m_folder + "/" + TAG_NUMBER_FILE);
    return numbers.Load(error) && AddTags(m_config.tags, numbers, *m_kernel, m_driver->GetTagList(), error) &&
           m_driver->Connect(error);
}

bool CRuntime::OpenStack(std::string& error) {
    std::vector<std::string> wrongLines;
    bacnet::LoadVendorNames(m_folder + "/" + m_config.vendorNamesFile, wrongLines);
    for (const std::string& line : wrongLines)
        LogErr("%s", line.c_str());
    CBacGeneral::SetDirFileName(m_folder + "/" + m_config.directoryFile);
    m_client = bacnet::BacnetClient::Open(StackConfigOf(m_config, m_folder, m_station), error);
    if (!m_client)
        return false;
    BACnet = m_client.get();
    if (access(CBacGeneral::GetDirFileName().c_str(), F_OK) == 0 && !m_client->LoadDir())
        LogErr("The directory was not loaded: %s", UnacceptedFile(CBacGeneral::GetDirFileName()).c_str());
    m_client->Announce();
    m_station.SetIdentityListener(
        [this] { m_client->SetIdentity(m_station.GetDeviceInstance(), m_station.GetDeviceName()); });
    m_station.SetNetworkNumberSource([this] { return ToldNetworkNumber(); });
    return true;
}

std::uint16_t CRuntime::ToldNetworkNumber() const {
    for (const bacnet::PortStatus& port : m_client->Networks().Ports())
        if (port.Network == 0)
            return port.ToldNetwork;
    return 0;
}

std::array<std::uint32_t, 2> CRuntime::HistoryIds(std::uint32_t tag) const {
    return {tag, std::uint32_t{m_config.stationNumber} << 16 | (tag & 0xFFFF)};
}

std::uint64_t CRuntime::RecordsOf(const std::vector<HistoryCount>& counts, std::uint32_t tag) const {
    const auto ids = HistoryIds(tag);
    std::uint64_t records = 0;
    for (const HistoryCount& count : counts)
        records += count.tagId == ids[0] || count.tagId == ids[1] ? count.records : 0;
    return records;
}

bool CRuntime::StartConsole(bool show, std::string& error) {
    BDCManager.Start(m_driver.get(), CONSOLE_START_WAIT);
    m_isConsoleStarted = true;
    BDCManager.SetupNetworks();
    if (IsTransferWantedAtStart())
        BDCManager.StartHistoryTransfer(nullptr);
    if (show)
        BDCManager.PostMessageW(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
    m_control = std::make_unique<CControlServer>();
    return m_control->Start(
        m_folder,
        [this](const ControlRequest& request, IControlClient& client) {
            return AnswerControlRequest(*this, request, client);
        },
        {}, error);
}

bool CRuntime::End() {
    bool hasEnded = true;
    m_control.reset();
    if (m_kernel) {
        const std::uint64_t ended = m_monitor.Ended();
        m_kernel->ShutDown();
        if (m_monitor.Latest().running && !m_monitor.WaitForEnd(ended, TRANSFER_STOP_WAIT) && m_client) {
            m_client->Shutdown();
            hasEnded = m_monitor.WaitForEnd(ended, TRANSFER_CUT_WAIT);
        }
    }
    if (m_isConsoleStarted) {
        BDCManager.InitiateShutdownW();
        if (!BDCManager.WaitEnd(CONSOLE_END_WAIT)) {
            LogErr("The console did not end in time");
            hasEnded = false;
        }
        m_driver->Store();
    }
    if (m_client)
        m_client->Shutdown();
    LogInf("bdc ends");
    if (!hasEnded)
        return false;
    if (m_driver)
        m_driver->Disconnect();
    m_station.SetIdentityListener(nullptr);
    m_station.SetNetworkNumberSource(nullptr);
    BACnet = nullptr;
    m_client.reset();
    return true;
}
