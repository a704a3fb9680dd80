// What the browser's page does, without its window: the console's own copy of the directory, the tree over it, the
// list of properties with its timers, scans, and what the console asks of the page. On the console thread.
#pragma once

#include "api/bacnet/Dir.h"
#include "module/browser/BrowserTree.h"
#include "module/browser/DeviceStatusMonitor.h"
#include "module/browser/GuiQueue.h"
#include "module/browser/ProgressSource.h"
#include "module/browser/PropertyListReader.h"
#include "module/browser/Scan.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class CDiscovery;
class IBacnetIdentity;

enum class BrowserTimer { Read, Refresh, Filter };

// What the page's logic needs of its window.
class IBrowserWindow : public IPropertyListView, public IProgressSource {
public:
    // A timer ticks until it is stopped; starting one that runs begins its time anew.
    virtual void StartTimer(BrowserTimer timer, unsigned milliseconds) = 0;
    virtual void StopTimer(BrowserTimer timer) = 0;
    // The page is visible and the console not disabled.
    virtual bool IsServing() const = 0;

    virtual const TreeItem* GetSelectedItem() const = 0; // null for none
    // The data of the selected rows, in the order of the list.
    virtual std::vector<std::int64_t> GetSelectedRows() const = 0;
    virtual std::string GetFilter() const = 0;
    virtual void HideStrip() = 0;

    // Empty when the operator cancels.
    virtual std::optional<DeviceAddresses> PickDevices(CDiscovery& discovery) = 0;
    virtual std::optional<unsigned> AskRefreshPeriod(unsigned seconds) = 0;
};

// What a command works on. It outlives a rebuild of the tree.
struct BrowserSelection : TreeIdentity {
    std::vector<BACSTAC_PROPERTY_ID> properties;
};

// What the page works with; all outlive it.
struct BrowserServices {
    CBacGeneral& bacnet;
    IBacnetIdentity& identity;
    const ILabelOrder& order;
    std::shared_ptr<IGuiQueue> queue; // to the window
};

class CObjBrowser : private IDeviceStatusListener {
public:
    static constexpr unsigned READ_DELAY = 250;   // ms; a quick walk through the tree costs no read
    static constexpr unsigned FILTER_DELAY = 500; // ms
    static constexpr unsigned FIRST_PERIOD = 5;   // s

    CObjBrowser(const BrowserServices& services, IBrowserWindow& window);
    ~CObjBrowser() override;

    CBrowserTree& GetTree() { return m_tree; }
    CBACnetDir& GetDirectory() { return m_dir; }
    BACSTAC_PROPERTY_ID GetSelectedProperty() const { return m_selectedProperty; }

    // ---- the page's life
    void Start();
    void SetVisible(bool isVisible) { m_monitor.SetActive(isVisible); }
    void Destroy();

    // ---- what the console asks
    // The only way, next to UpdateObject, by which the driver sees what was changed here. False when the file could not
    // be written.
    bool SaveDirectory();
    void Cancelled(); // what was not saved goes
    // The device has told of a change of the object: it is read anew. Deliberate: everything else that was not saved is
    // saved with it, and an object that can no longer be read is gone.
    void UpdateObject(unsigned device, const BACSTAC_OBJECT_ID& object);

    // ---- what the window tells
    void OnTimer(BrowserTimer timer);
    void FilterChanged();
    // The one way to load the list again; the read begins a moment later.
    void RefreshPropertyList();
    void RowsChanged(); // another selection in the list
    void CancelReading() { m_reader.Cancel(); }
    // Whether the list refreshes itself from now on.
    bool ToggleAutoRefresh(bool isOn);

    // ---- commands
    void RebuildTree();
    bool GetSelection(BrowserSelection& selection, bool oneRow) const;
    void DiscoverAndScan();
    void ScanSelectedDevice();
    void ReadSelectedStatus();

private:
    void OnDeviceStatus(unsigned device, unsigned status) override;
    void ShowDeviceStatus(unsigned device, unsigned status);
    void Clear();
    void Scan(const DeviceAddresses& devices);

    CBacGeneral& m_bacnet;
    IBacnetIdentity& m_identity;
    IBrowserWindow& m_window;
    const std::shared_ptr<IGuiQueue> m_queue;
    CPropertyListReader m_reader;
    CDeviceStatusMonitor m_monitor;
    CBrowserTree m_tree;
    unsigned m_refreshPeriod = FIRST_PERIOD; // seconds
    BACSTAC_PROPERTY_ID m_selectedProperty;  // the row to select again after each reload
    CBACnetDir m_dir;
};
