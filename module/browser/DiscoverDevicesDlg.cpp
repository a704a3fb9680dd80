#include "module/browser/DiscoverDevicesDlg.h"

#include "api/bacnet/BacGeneral.h"
#include "module/browser/Images.h"
#include "module/console/NarrowText.h"
#include "module/console/Operator.h"
#include "module/widgets/LimitEdit.h"
#include "module/widgets/TickDelegate.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

constexpr int REFRESH_DELAY = 500; // ms behind the last answer or change of a filter
constexpr int NETWORK_DIGITS = 5;
constexpr int INSTANCE_DIGITS = 7;

constexpr struct {
    const char* header;
    int width;
    Qt::AlignmentFlag alignment;
} COLUMNS[CDiscoveredModel::COLUMN_COUNT] = {
    {"Instance", 80, Qt::AlignRight}, {"Network", 60, Qt::AlignRight}, {"Address", 180, Qt::AlignLeft}};

} // namespace

// ---- the list

void CDiscoveredModel::Refresh() {
    beginResetModel();
    m_rows = m_discovery.GetRows();
    endResetModel();
}

void CDiscoveredModel::Tick(CDiscovery::Row& row, bool isTicked) {
    row.isTicked = isTicked;
    m_discovery.SetTicked(row.device, isTicked);
}

void CDiscoveredModel::TickAll(bool isTicked) {
    if (m_rows.empty())
        return;
    for (CDiscovery::Row& row : m_rows)
        Tick(row, isTicked);
    Q_EMIT dataChanged(index(0, INSTANCE), index(static_cast<int>(m_rows.size()) - 1, INSTANCE), {Qt::CheckStateRole});
}

int CDiscoveredModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CDiscoveredModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : COLUMN_COUNT;
}

Qt::ItemFlags CDiscoveredModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    return index.column() == INSTANCE ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant CDiscoveredModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const CDiscovery::Row& row = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        if (index.column() == ADDRESS)
            return FromNarrow(row.address + (row.rival.empty() ? "" : "  (!)"));
        return QString::number(index.column() == INSTANCE ? row.device : row.network);
    case Qt::CheckStateRole:
        return index.column() == INSTANCE ? QVariant(row.isTicked ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::TextAlignmentRole:
        return QVariant(COLUMNS[index.column()].alignment | Qt::AlignVCenter);
    case Qt::ToolTipRole:
        return row.rival.empty() ? FromNarrow(row.address)
                                 : QStringLiteral("Two stations claim instance %1: %2 and %3")
                                       .arg(row.device)
                                       .arg(FromNarrow(row.rival), FromNarrow(row.address));
    default:
        return {};
    }
}

bool CDiscoveredModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || role != Qt::CheckStateRole)
        return false;
    Tick(m_rows[static_cast<std::size_t>(index.row())], value.toInt() == Qt::Checked);
    Q_EMIT dataChanged(index, index, {role});
    return true;
}

QVariant CDiscoveredModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant(COLUMNS[section].alignment | Qt::AlignVCenter);
    return role == Qt::DisplayRole ? QVariant(QString::fromLatin1(COLUMNS[section].header)) : QVariant();
}

// ---- the dialog

CDiscoverDevicesDlg::CDiscoverDevicesDlg(QWidget* parent, CBacGeneral& bacnet, IOperator& op, CDiscovery& discovery)
    : QDialog(parent), m_bacnet(bacnet), m_operator(op), m_discovery(discovery),
      m_model(new CDiscoveredModel(discovery, this)), m_count(new QLabel(QStringLiteral("0"), this)) {
    setWindowTitle(QStringLiteral("Discover devices"));
    const auto newButton = [this](const char* label, auto action) {
        auto* const button = new QPushButton(QString::fromLatin1(label), this);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, action);
        return button;
    };

    auto* const network = NewFilter("&Network", NETWORK_DIGITS, &CDiscovery::SetNetwork);
    auto* const low = NewFilter("&Device range", INSTANCE_DIGITS, &CDiscovery::SetLowLimit);
    auto* const high = NewFilter("to", INSTANCE_DIGITS, &CDiscovery::SetHighLimit);
    auto* const filters = new QHBoxLayout;
    for (CLimitEdit* const edit : {network, low, high}) {
        auto* const label = new QLabel(edit->accessibleName(), this);
        label->setBuddy(edit);
        filters->addWidget(label);
        filters->addWidget(edit);
    }
    filters->addStretch(1);
    filters->addWidget(newButton("Send Who-Is", &CDiscoverDevicesDlg::SendWhoIs));

    auto* const list = new QTreeView(this);
    list->setModel(m_model);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setItemDelegate(new CTickDelegate(list));
    list->setAllColumnsShowFocus(true);
    list->header()->setStretchLastSection(false);
    for (int column = 0; column < CDiscoveredModel::COLUMN_COUNT; ++column)
        list->setColumnWidth(column, COLUMNS[column].width);
    auto* const listLabel = new QLabel(QStringLiteral("Devices who sent I-Am"), this);
    list->setAccessibleName(listLabel->text());

    auto* const ticks = new QHBoxLayout;
    ticks->addWidget(newButton("Select all", [this] { m_model->TickAll(true); }));
    ticks->addWidget(newButton("Unselect all", [this] { m_model->TickAll(false); }));
    ticks->addStretch(1);
    ticks->addWidget(m_count);

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &CDiscoverDevicesDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CDiscoverDevicesDlg::reject);

    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(filters);
    layout->addWidget(listLabel);
    layout->addWidget(list, 1);
    layout->addLayout(ticks);
    layout->addWidget(buttons);

    m_refresh.setInterval(REFRESH_DELAY);
    connect(&m_refresh, &QTimer::timeout, this, &CDiscoverDevicesDlg::Refresh);
    m_handle = m_bacnet.RegisterIAMCallback(this);
}

CDiscoverDevicesDlg::~CDiscoverDevicesDlg() {
    m_bacnet.UnregisterIAMCallback(m_handle); // none is under way behind this
    m_queue->Close();
}

CLimitEdit* CDiscoverDevicesDlg::NewFilter(const char* label, int digits, Filter filter) {
    auto* const edit = new CLimitEdit(this, digits);
    edit->setAccessibleName(QString::fromLatin1(label));
    connect(edit, &QLineEdit::textChanged, this, [this, filter](const QString& text) { SetFilter(filter, text); });
    return edit;
}

void CDiscoverDevicesDlg::SetFilter(Filter filter, const QString& text) {
    (m_discovery.*filter)(ToNarrow(text));
    m_refresh.start();
}

void CDiscoverDevicesDlg::OnIAm(BACSTAC_ADDRESS const& address, unsigned const& deviceInstance) {
    m_queue->Post([this, address, deviceInstance] {
        m_discovery.TakeIAm(address, deviceInstance);
        m_refresh.start();
    });
}

void CDiscoverDevicesDlg::SendWhoIs() {
    if (m_discovery.SendWhoIs() != BACSTAC_OK)
        ShowError(m_operator, "Failed to send WHOIS");
}

void CDiscoverDevicesDlg::Refresh() {
    m_refresh.stop();
    m_model->Refresh();
    m_count->setText(QString::number(m_model->GetRows().size()));
}

// What is on the screen counts: a row that a filter will take away in a moment is still there.
void CDiscoverDevicesDlg::accept() {
    m_picked = m_discovery.GetPicked(m_model->GetRows());
    QDialog::accept();
}
