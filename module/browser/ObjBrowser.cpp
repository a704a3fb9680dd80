#include "module/browser/ObjBrowser.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Log.h"
#include "api/driver/Identity.h"
#include "module/browser/Discovery.h"
#include "module/browser/ObjectReader.h"
#include "module/browser/ObjectStatus.h"

namespace {

constexpr std::uint32_t MONITOR_STOP_WAIT = 1000; // ms

} // namespace

CObjBrowser::CObjBrowser(const BrowserServices& services, IBrowserWindow& window)
    : m_bacnet(services.bacnet), m_identity(services.identity), m_window(window), m_queue(services.queue),
      m_reader(services.bacnet, window, services.queue), m_monitor(services.bacnet), m_tree(services.order),
      m_selectedProperty(PROP_PRESENT_VALUE) {
    m_dir.Load(CBacGeneral::GetDirFileName());
}

CObjBrowser::~CObjBrowser() = default;

void CObjBrowser::Start() {
    RebuildTree();
    m_monitor.StartMonitor(this);
}

void CObjBrowser::Destroy() {
    Clear();
    m_monitor.StopAndWait(MONITOR_STOP_WAIT);
}

// ---- the directory

bool CObjBrowser::SaveDirectory() {
    const std::string path = CBacGeneral::GetDirFileName();
    const bool isSaved = m_dir.Save(path);
    if (!isSaved)
        LogErr("Failure writing the directory file %s", path.c_str());
    m_bacnet.LoadDir();
    return isSaved;
}

void CObjBrowser::Cancelled() {
    m_dir.Load(CBacGeneral::GetDirFileName());
    RebuildTree();
}

void CObjBrowser::UpdateObject(unsigned device, const BACSTAC_OBJECT_ID& object) {
    if (!m_dir.FindDev(device))
        return;
    CBACnetDev owner;
    owner.SetInst(device);
    owner.SetAddr(m_dir.GetDev(device).GetAddr());
    m_dir.DelObj(device, object);
    CBACnetObj renewed;
    renewed.SetId(object);
    if (ReadObjectInfo(owner, renewed))
        m_dir.AddObj(device, renewed);
    SaveDirectory();
    RebuildTree();
}

// ---- the tree

void CObjBrowser::Clear() {
    m_monitor.ClearDevices();
    m_tree.Clear();
    m_reader.StopReading();
    m_window.ClearRows();
}

void CObjBrowser::RebuildTree() {
    Clear();
    const std::string filter = m_window.GetFilter();
    CBACnetDir shown;
    if (filter.empty())
        shown = m_dir;
    else
        m_dir.Filter(filter, shown);
    m_tree.Build(shown, m_identity.GetLocalNetworkNumber());
    for (const auto& [device, item] : m_tree.GetDevices())
        m_monitor.AddDevice(device);
}

void CObjBrowser::FilterChanged() {
    Clear();
    m_window.StartTimer(BrowserTimer::Filter, FILTER_DELAY);
}

void CObjBrowser::OnDeviceStatus(unsigned device, unsigned status) {
    m_queue->Post([this, device, status] { ShowDeviceStatus(device, status); });
}

void CObjBrowser::ShowDeviceStatus(unsigned device, unsigned status) {
    TreeItem* const item = m_tree.FindDevice(device);
    if (item && item->image != static_cast<int>(status))
        m_tree.SetImages(*item, static_cast<int>(status), STATE_NONE);
}

// ---- the list

void CObjBrowser::RefreshPropertyList() {
    m_reader.RequestStop();
    m_window.HideStrip();
    m_window.ClearRows();
    m_window.StartTimer(BrowserTimer::Read, READ_DELAY);
}

// A tick that finds the console disabled or the page hidden is passed over; the timer goes on.
void CObjBrowser::OnTimer(BrowserTimer timer) {
    if (!m_window.IsServing())
        return;
    if (timer == BrowserTimer::Refresh) {
        RefreshPropertyList();
        return;
    }
    m_window.StopTimer(timer);
    if (timer == BrowserTimer::Filter) {
        RebuildTree();
        return;
    }
    TreeIdentity identity;
    if (ResolveItem(m_window.GetSelectedItem(), true, identity))
        m_reader.StartReading(identity.device, identity.object);
}

void CObjBrowser::RowsChanged() {
    const std::vector<std::int64_t> rows = m_window.GetSelectedRows();
    if (rows.size() == 1 && rows.front() != PropertyRow::ERROR_ID)
        m_selectedProperty = static_cast<BACSTAC_PROPERTY_ID>(rows.front());
}

bool CObjBrowser::ToggleAutoRefresh(bool isOn) {
    if (isOn) {
        m_window.StopTimer(BrowserTimer::Refresh);
        return false;
    }
    const std::optional<unsigned> period = m_window.AskRefreshPeriod(m_refreshPeriod);
    if (!period)
        return false;
    m_refreshPeriod = *period;
    m_window.StartTimer(BrowserTimer::Refresh, m_refreshPeriod * 1000);
    return true;
}

// ---- commands

bool CObjBrowser::GetSelection(BrowserSelection& selection, bool oneRow) const {
    selection = {};
    if (!ResolveItem(m_window.GetSelectedItem(), true, selection))
        return false;
    for (const std::int64_t row : m_window.GetSelectedRows())
        selection.properties.push_back(static_cast<BACSTAC_PROPERTY_ID>(row));
    return oneRow ? selection.properties.size() == 1 : !selection.properties.empty();
}

void CObjBrowser::Scan(const DeviceAddresses& devices) {
    std::unique_ptr<IProgress> progress = m_window.OpenProgress();
    const bool isMerged = ScanDevices(m_bacnet, devices, m_dir, *progress);
    progress.reset();
    if (isMerged)
        RebuildTree();
}

void CObjBrowser::DiscoverAndScan() {
    CDiscovery discovery(m_bacnet, m_identity.GetLocalNetworkNumber());
    if (const std::optional<DeviceAddresses> devices = m_window.PickDevices(discovery))
        Scan(*devices);
}

void CObjBrowser::ScanSelectedDevice() {
    TreeIdentity identity;
    BACSTAC_ADDRESS address{};
    if (ResolveItem(m_window.GetSelectedItem(), true, identity) && m_dir.GetDevAddr(identity.device, address))
        Scan({{identity.device, address}});
}

void CObjBrowser::ReadSelectedStatus() {
    TreeIdentity identity;
    if (!ResolveItem(m_window.GetSelectedItem(), false, identity))
        return;
    const std::unique_ptr<IProgress> progress = m_window.OpenProgress();
    ReadObjectsStatus(m_bacnet, m_tree, identity.device, *progress);
}
