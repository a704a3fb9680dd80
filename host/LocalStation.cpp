#include "host/LocalStation.h"

#include "api/bacnet/BacGeneral.h"
#include "host/DataFolder.h"
#include "host/StackConfig.h"
#include "host/StationStore.h"
#include "host/bacnet/Call.h"
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/schema/VendorNames.h"

#include <sys/stat.h>
#include <unistd.h>

namespace {

class CRowTaker : public IControlClient {
public:
    explicit CRowTaker(const std::function<void(const std::string&)>& onRow) : m_onRow(onRow) {}

    bool Row(std::string_view json) override {
        m_onRow(std::string(json));
        return true;
    }
    bool IsCancelled() override { return false; } // a signal ends the process

private:
    const std::function<void(const std::string&)>& m_onRow;
};

} // namespace

CLocalStation::CLocalStation(const Config& config, std::string folder)
    : m_config(config), m_folder(std::move(folder)) {}

CLocalStation::~CLocalStation() {
    BACnet = nullptr;
}

bool CLocalStation::Open(bool withNetwork, std::string& error) {
    std::string ignored; // a damaged file is the driver's to put aside; the configuration's identity does
    CStationStore station(m_folder + "/" + STATION_FILE, m_config.identity);
    if (access((m_folder + "/" + STATION_FILE).c_str(), R_OK) == 0)
        station.Load(ignored);
    bacnet::ClientConfig config = StackConfigOf(m_config, m_folder, station);
    config.CaptureFile.clear(); // that of the last run of the driver stays
    for (bacnet::ClientPort& port : config.Ports)
        port.Bbmd.reset(); // a duty of those who stay
    if (withNetwork)
        m_client = bacnet::BacnetClient::Open(config, error);
    else
        m_client = std::make_unique<bacnet::BacnetClient>(config, std::vector<bacnet::ClientLink>());
    if (!m_client) {
        error += "; --config tells which ports to open";
        return false;
    }
    BACnet = m_client.get();
    std::vector<std::string> wrongLines; // which the log of the driver names
    bacnet::LoadVendorNames(m_folder + "/" + m_config.vendorNamesFile, wrongLines);
    CBacGeneral::SetDirFileName(m_folder + "/" + m_config.directoryFile);
    if (access(CBacGeneral::GetDirFileName().c_str(), F_OK) != 0 || m_client->LoadDir())
        return true;
    error = UnacceptedFile(CBacGeneral::GetDirFileName());
    return false;
}

bool CLocalStation::ClaimFolder(std::string& error) {
    if (m_lock.IsHeld())
        return true;
    umask(0077);
    return EnsureFolder(m_folder, error) && m_lock.Acquire(m_folder + "/bdc.lock", error);
}

ControlReply CLocalStation::Run(const ControlRequest& request, const std::function<void(const std::string&)>& onRow) {
    CRowTaker rows(onRow);
    return RunBacnetCommand({*m_client, [this](std::string& error) { return ClaimFolder(error); }}, request, rows);
}
