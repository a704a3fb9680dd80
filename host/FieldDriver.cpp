#include "host/FieldDriver.h"

#include "api/bacnet/Log.h"
#include "api/kernel/QLProgramCore.h"
#include "module/console/Globals.h"

#include <QtGlobal>

#include <cstddef>
#include <cstring>
#include <exception>

// The driver's picture, which the linker knows of no use of. Not in a namespace, for the macro's sake.
static void LinkPicture() {
    Q_INIT_RESOURCE(driver);
}

namespace {

constexpr const char* CONNECTION_NAME = "BACnetDriver";
constexpr std::uint32_t MESSAGE_WAIT = 10000; // ms

// Holds the module lock.
class CModuleLock {
public:
    CModuleLock() { BDCManager.Lock(); }
    ~CModuleLock() { BDCManager.Unlock(); }
    CModuleLock(const CModuleLock&) = delete;
    CModuleLock& operator=(const CModuleLock&) = delete;
};

} // namespace

CFieldDriver::CFieldDriver(IQLProgramCore& kernel, CStationStore& station, AlarmRuleStore& rules,
                           CSettingsGuard& settings, CHistoryMonitor& history, IQLUserManagement& users,
                           int transferChunk, std::function<void(std::uint32_t tagId, double value)> onTagChange)
    : m_kernel(kernel), m_station(station), m_rules(rules), m_settings(settings), m_history(history), m_users(users),
      m_transferChunk(transferChunk), m_onTagChange(std::move(onTagChange)) {
    LinkPicture();
}

CFieldDriver::~CFieldDriver() {
    Disconnect();
}

bool CFieldDriver::Connect(std::string& error) {
    const QLResult result = m_kernel.Connect(CONNECTION_NAME, 1, 0, m_gate);
    if (result != QL_OK) {
        error = "the kernel refuses the driver's connection (" + std::to_string(result) + ")";
        return false;
    }
    m_stopping = false;
    m_messages = std::thread([this] { ReceiveMessages(); });
    return true;
}

void CFieldDriver::Disconnect() {
    if (!m_messages.joinable())
        return;
    m_stopping = true;
    m_kernel.Disconnect(m_gate); // ends the wait for a message too
    m_messages.join();
    m_gate = 0;
}

std::string CFieldDriver::Store() {
    std::string failures;
    const auto fail = [&failures](const std::string& failure) {
        LogErr("%s", failure.c_str());
        failures += (failures.empty() ? "" : "\r\n") + failure;
    };
    try {
        AllPropPages pages;
        std::string stationError;
        bool isStationSaved = false;
        {
            const CModuleLock lock;
            pages = allPropPages;
            isStationSaved = m_station.Save(stationError);
        }
        std::string settingsError;
        const bool areSettingsSaved = m_settings.Save(pages, settingsError);
        if (!isStationSaved)
            fail("The station's identity and alarms are not saved: " + stationError);
        if (!areSettingsSaved)
            fail("Settings are not saved: " + settingsError);
    } catch (const std::exception& failure) {
        fail(std::string("Settings are not saved: ") + failure.what());
    }
    return failures;
}

void CFieldDriver::SaveSettings() {
    m_saveFailure = Store();
    if (!m_saveFailure.empty())
        m_saveFailure += "\r\nWhat was changed stays in effect, and the next save tries again.";
}

void CFieldDriver::ReceiveMessages() {
    alignas(8) unsigned char buffer[QL_MESSAGE_SIZE];
    // Messages were lost: the values are read again once the queue is empty, because what is left in it is newer than
    // what was lost and must not be seen to go back.
    bool isBehind = false;
    while (!m_stopping) {
        const QLResult result = m_kernel.ReceiveMessage(m_gate, buffer, isBehind ? 0 : MESSAGE_WAIT);
        if (result == QL_TIMEOUT) {
            if (isBehind)
                GiveAllValues();
            isBehind = false;
            continue;
        }
        if (result != QL_OK && result != QL_MESSAGES_LOST) {
            if (m_stopping)
                return;
            LogErr("The kernel gives no messages any more (%u)", unsigned{result});
            return;
        }
        if (result == QL_MESSAGES_LOST) {
            LogErr("Messages of the kernel were lost");
            isBehind = true;
        }
        QLTagChangeMessage message;
        std::memcpy(&message, buffer, sizeof message);
        if (message.code == QL_MSG_EXIT) {
            m_kernelEnded = true;
            return;
        }
        if (message.code == QL_MSG_TAG_CHANGE) {
            double value = 0;
            std::memcpy(&value, reinterpret_cast<const char*>(&message) + offsetof(QLTagChangeMessage, value),
                        sizeof value);
            m_onTagChange(message.tagId, value);
        }
    }
}

void CFieldDriver::GiveAllValues() {
    std::uint32_t first = 0;
    std::uint32_t count = 0;
    if (m_kernel.OpenTagEnumeration(m_gate, first, count, 0, 0) != QL_OK)
        return;
    for (std::uint32_t id = first; id < first + count && !m_stopping; ++id) {
        double value = 0;
        if (m_kernel.GetTagValue(m_gate, QL_VALUE_AS_DOUBLE, id, value, 0, 0) == QL_OK)
            m_onTagChange(id, value);
    }
}
