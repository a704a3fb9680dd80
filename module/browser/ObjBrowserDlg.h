// The console's Browser page: the tree of devices and objects, and the properties of the selected one. Wiring over
// CObjBrowser and CPropertyCommands. Only on the console thread.
#pragma once

#include "module/browser/BrowserMenus.h"
#include "module/browser/LocaleOrder.h"
#include "module/browser/ObjBrowser.h"
#include "module/browser/PropertyCommands.h"
#include "module/browser/WindowQueue.h"
#include "module/console/ConsolePage.h"

#include <QTimer>

#include <array>
#include <memory>

class CBrowserTreeModel;
class CDriver;
class CProgressDlg;
class CPropertyModel;
class CPropertyOrder;
class IOperator;
class QCheckBox;
class QLineEdit;
class QPushButton;
class QTreeView;

class CObjBrowserDlg : public CConsolePage, private IBrowserWindow, private IPropertyPrompts {
public:
    CObjBrowserDlg(QWidget* place, CDriver& driver, CBacGeneral& bacnet, IOperator& op);
    ~CObjBrowserDlg() override;

    CObjBrowser& GetBrowser() { return *m_browser; }

    void Load() override;
    bool Save() override { return m_browser->SaveDirectory(); }
    void Cancelled() override { m_browser->Cancelled(); }
    void Shown() override { m_browser->SetVisible(true); }
    void Hidden() override { m_browser->SetVisible(false); }
    void Destroy() override;
    void ObjectChanged(unsigned device, const BACSTAC_OBJECT_ID& object) override {
        m_browser->UpdateObject(device, object);
    }

    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* NewTreeSide();
    QWidget* NewListSide();
    QPushButton* NewButton(const char* label, void (CObjBrowserDlg::*action)());
    void MakeTimers();
    void ExpandFirst(const QModelIndex& parent);
    void ShowTreeMenu(const QPoint& at);
    void ShowPropertyMenu(const QPoint& at);
    void RunCommand(BrowserCommand command);
    void RunEdit() { RunCommand(BrowserCommand::Edit); }
    void RunZoom() { RunCommand(BrowserCommand::Zoom); }
    void RunDiscovery() { m_browser->DiscoverAndScan(); }
    void RunRefresh() { m_browser->RefreshPropertyList(); }
    void ToggleAutoRefresh();
    void OnRowsChanged();
    void CopyText();
    void SelectRemembered();
    void PlaceStrip();

    // ---- IBrowserWindow
    void BeginReading(const std::string& title, unsigned range) override;
    void SetSource(const std::string& title, unsigned range) override;
    void SetProperty(const std::string& name, unsigned position) override;
    void AddRow(const PropertyRow& row) override;
    void ClearRows() override;
    void EndReading() override;
    void StartTimer(BrowserTimer timer, unsigned milliseconds) override;
    void StopTimer(BrowserTimer timer) override;
    bool IsServing() const override;
    const TreeItem* GetSelectedItem() const override;
    std::vector<std::int64_t> GetSelectedRows() const override;
    std::string GetFilter() const override;
    void HideStrip() override;
    std::optional<DeviceAddresses> PickDevices(CDiscovery& discovery) override;
    std::optional<unsigned> AskRefreshPeriod(unsigned seconds) override;
    std::unique_ptr<IProgress> OpenProgress() override;

    // ---- IPropertyPrompts
    std::optional<PropertyRow> GetSelectedRow() const override;
    bool EditValue(CPropertyValue& value) override;
    std::optional<unsigned> AskPriority(unsigned priority) override;
    std::optional<unsigned> AskArrayIndex(unsigned index) override;
    void ShowValue(const std::string& caption, const std::string& text) override;
    void ShowLogBuffer(unsigned, const BACSTAC_OBJECT_ID&) override {} // its viewer is not there yet

    CBacGeneral& m_bacnet;
    IOperator& m_operator;
    const CLocaleOrder m_order;
    const std::shared_ptr<CWindowQueue> m_queue = std::make_shared<CWindowQueue>();
    std::array<QTimer, 3> m_timers; // by BrowserTimer
    std::unique_ptr<CObjBrowser> m_browser;
    std::unique_ptr<CPropertyCommands> m_commands;
    std::unique_ptr<CBrowserTreeModel> m_treeModel;
    CPropertyModel* m_rows;
    CPropertyOrder* m_rowOrder;
    QTreeView* m_tree = nullptr;
    QTreeView* m_list = nullptr;
    QLineEdit* m_filter = nullptr;
    QCheckBox* m_autoRefresh = nullptr;
    QPushButton* m_edit = nullptr;
    QPushButton* m_zoom = nullptr;
    CProgressDlg* m_strip = nullptr;
};
