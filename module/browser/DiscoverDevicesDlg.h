// "Discover devices": sends Who-Is, collects the answers and lets the operator pick some. Run it with RunModal; only on
// the console thread.
#pragma once

#include "api/bacnet/Callbacks.h"
#include "module/browser/Discovery.h"
#include "module/browser/WindowQueue.h"

#include <QAbstractTableModel>
#include <QDialog>
#include <QTimer>

#include <memory>
#include <vector>

class CLimitEdit;
class IOperator;
class QLabel;

// The answers that pass the filters.
class CDiscoveredModel : public QAbstractTableModel {
public:
    enum Column { INSTANCE, NETWORK, ADDRESS, COLUMN_COUNT };

    CDiscoveredModel(CDiscovery& discovery, QObject* parent) : QAbstractTableModel(parent), m_discovery(discovery) {}

    void Refresh();
    void TickAll(bool isTicked);
    const std::vector<CDiscovery::Row>& GetRows() const { return m_rows; }

    int rowCount(const QModelIndex& parent) const override;
    int columnCount(const QModelIndex& parent) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void Tick(CDiscovery::Row& row, bool isTicked);

    CDiscovery& m_discovery;
    std::vector<CDiscovery::Row> m_rows;
};

class CDiscoverDevicesDlg : public QDialog, private CIAMCallback {
public:
    CDiscoverDevicesDlg(QWidget* parent, CBacGeneral& bacnet, IOperator& op, CDiscovery& discovery);
    ~CDiscoverDevicesDlg() override;

    const DeviceAddresses& GetPicked() const { return m_picked; } // after OK

    void accept() override;

private:
    using Filter = void (CDiscovery::*)(const std::string&);

    CLimitEdit* NewFilter(const char* label, int digits, Filter filter);
    void SetFilter(Filter filter, const QString& text);
    void OnIAm(BACSTAC_ADDRESS const& address, unsigned const& deviceInstance) override; // of the library's thread
    void SendWhoIs();
    void Refresh();

    CBacGeneral& m_bacnet;
    IOperator& m_operator;
    CDiscovery& m_discovery;
    CDiscoveredModel* const m_model;
    QLabel* const m_count;
    QTimer m_refresh;
    const std::shared_ptr<CWindowQueue> m_queue = std::make_shared<CWindowQueue>();
    int m_handle;
    DeviceAddresses m_picked;
};
