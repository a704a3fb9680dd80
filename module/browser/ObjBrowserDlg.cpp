#include "module/browser/ObjBrowserDlg.h"

#include "api/driver/Driver.h"
#include "module/browser/DiscoverDevicesDlg.h"
#include "module/browser/Images.h"
#include "module/browser/ProgressDlg.h"
#include "module/browser/PropertyModel.h"
#include "module/browser/TreeModel.h"
#include "module/console/Busy.h"
#include "module/console/NarrowText.h"
#include "module/console/ProgressBarDlg.h"
#include "module/editors/EditPriorityDlg.h"
#include "module/editors/EditProp.h"
#include "module/editors/EditPropertyValue.h"
#include "module/editors/EditUnsignedDlg.h"
#include "module/icons/Icons.h"
#include "module/widgets/InputDlg.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int NAME_WIDTH = 160;
constexpr int VALUE_WIDTH = 250;
constexpr int ID_WIDTH = 50;
constexpr int TREE_WIDTH = 300;
constexpr int HEIGHT = 400;
constexpr unsigned SHORTEST_PERIOD = 5;
constexpr unsigned LONGEST_PERIOD = 3600; // s

// A right click takes its row in addition to what is selected.
class CPropertyView : public QTreeView {
public:
    using QTreeView::QTreeView;

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override {
        const bool isRightPress = event && event->type() == QEvent::MouseButtonPress &&
                                  static_cast<const QMouseEvent*>(event)->button() == Qt::RightButton;
        if (!isRightPress)
            return QTreeView::selectionCommand(index, event);
        return index.isValid() ? QItemSelectionModel::Select | QItemSelectionModel::Rows
                               : QItemSelectionModel::NoUpdate;
    }
};

} // namespace

CObjBrowserDlg::CObjBrowserDlg(QWidget* place, CDriver& driver, CBacGeneral& bacnet, IOperator& op)
    : CConsolePage(place), m_bacnet(bacnet), m_operator(op), m_rows(new CPropertyModel(this)),
      m_rowOrder(new CPropertyOrder(this)) {
    m_browser = std::make_unique<CObjBrowser>(BrowserServices{bacnet, driver.GetIdentity(), m_order, m_queue},
                                              static_cast<IBrowserWindow&>(*this));
    m_commands = std::make_unique<CPropertyCommands>(
        PropertyCommandServices{bacnet, *m_browser, static_cast<IBrowserWindow&>(*this), *this, op});
    m_treeModel = std::make_unique<CBrowserTreeModel>(m_browser->GetTree(), nullptr);
    m_rowOrder->setSourceModel(m_rows);
    auto* const splitter = new QSplitter(this);
    splitter->addWidget(NewTreeSide());
    splitter->addWidget(NewListSide());
    splitter->setSizes({TREE_WIDTH, NAME_WIDTH + VALUE_WIDTH + ID_WIDTH});
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    (new QHBoxLayout(this))->addWidget(splitter);
    setFocusProxy(m_tree);
    MakeTimers();
}

CObjBrowserDlg::~CObjBrowserDlg() {
    m_queue->Close();
}

QPushButton* CObjBrowserDlg::NewButton(const char* label, void (CObjBrowserDlg::*action)()) {
    auto* const button = new QPushButton(QString::fromLatin1(label), this);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, action);
    return button;
}

QWidget* CObjBrowserDlg::NewTreeSide() {
    auto* const side = new QWidget(this);
    m_tree = new QTreeView(side);
    m_tree->setModel(m_treeModel.get());
    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setIconSize(BROWSER_IMAGE_SIZE);
    m_tree->setAccessibleName(QStringLiteral("Devices and objects"));
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_tree, &QWidget::customContextMenuRequested, this, &CObjBrowserDlg::ShowTreeMenu);
    connect(m_tree->selectionModel(), &QItemSelectionModel::selectionChanged, this, &CObjBrowserDlg::RunRefresh);
    connect(m_treeModel.get(), &QAbstractItemModel::modelReset, this, [this] { ExpandFirst({}); });

    auto* const label = new QLabel(QStringLiteral("&Filter"), side);
    m_filter = new QLineEdit(side);
    label->setBuddy(m_filter);
    QAction* const clear = m_filter->addAction(NewIcon(FILTER_CLEAR_ICON), QLineEdit::TrailingPosition);
    clear->setToolTip(QStringLiteral("Clear the filter"));
    connect(clear, &QAction::triggered, m_filter, &QLineEdit::clear);
    connect(m_filter, &QLineEdit::textChanged, this, [this] { m_browser->FilterChanged(); });

    auto* const row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_filter, 1);
    row->addWidget(NewButton("&Discover && scan", &CObjBrowserDlg::RunDiscovery));
    auto* const layout = new QVBoxLayout(side);
    layout->setContentsMargins({});
    layout->addWidget(m_tree, 1);
    layout->addLayout(row);
    return side;
}

QWidget* CObjBrowserDlg::NewListSide() {
    auto* const side = new QWidget(this);
    m_list = new CPropertyView(side);
    m_list->setModel(m_rowOrder);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setExpandsOnDoubleClick(false);
    m_list->setSortingEnabled(true);
    m_list->sortByColumn(CPropertyModel::NAME, Qt::AscendingOrder);
    m_list->setAccessibleName(QStringLiteral("Properties"));
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionsMovable(false);
    m_list->header()->setSectionResizeMode(CPropertyModel::VALUE, QHeaderView::Stretch);
    m_list->setColumnWidth(CPropertyModel::NAME, NAME_WIDTH);
    m_list->setColumnWidth(CPropertyModel::ID, ID_WIDTH);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_list, &QWidget::customContextMenuRequested, this, &CObjBrowserDlg::ShowPropertyMenu);
    connect(m_list, &QAbstractItemView::doubleClicked, this, &CObjBrowserDlg::RunEdit);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, &CObjBrowserDlg::OnRowsChanged);
    auto* const copy = new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C), m_list);
    copy->setContext(Qt::WidgetShortcut);
    connect(copy, &QShortcut::activated, this, &CObjBrowserDlg::CopyText);

    m_strip = new CProgressDlg(side);
    connect(m_strip, &CProgressDlg::Cancelled, this, [this] { m_browser->CancelReading(); });

    m_autoRefresh = new QCheckBox(QStringLiteral("Aut&o refresh"), side);
    connect(m_autoRefresh, &QCheckBox::clicked, this, &CObjBrowserDlg::ToggleAutoRefresh);
    m_edit = NewButton("&Edit...", &CObjBrowserDlg::RunEdit);
    m_zoom = NewButton("&Zoom", &CObjBrowserDlg::RunZoom);
    auto* const row = new QHBoxLayout;
    row->addWidget(m_autoRefresh);
    row->addWidget(NewButton("Refresh &now", &CObjBrowserDlg::RunRefresh));
    row->addStretch(1);
    row->addWidget(m_edit);
    row->addWidget(m_zoom);
    auto* const layout = new QVBoxLayout(side);
    layout->setContentsMargins({});
    layout->addWidget(m_list, 1);
    layout->addLayout(row);
    OnRowsChanged();
    return side;
}

void CObjBrowserDlg::MakeTimers() {
    for (const BrowserTimer timer : {BrowserTimer::Read, BrowserTimer::Refresh, BrowserTimer::Filter})
        connect(&m_timers[static_cast<std::size_t>(timer)], &QTimer::timeout, this,
                [this, timer] { m_browser->OnTimer(timer); });
}

QSize CObjBrowserDlg::sizeHint() const {
    return {TREE_WIDTH + NAME_WIDTH + VALUE_WIDTH + ID_WIDTH, HEIGHT};
}

void CObjBrowserDlg::resizeEvent(QResizeEvent* event) {
    CConsolePage::resizeEvent(event);
    PlaceStrip();
}

void CObjBrowserDlg::Load() {
    m_browser->Start();
}

void CObjBrowserDlg::Destroy() {
    for (QTimer& timer : m_timers)
        timer.stop();
    m_browser->Destroy();
}

// ---- the tree

void CObjBrowserDlg::ExpandFirst(const QModelIndex& parent) {
    for (int row = 0; row < m_treeModel->rowCount(parent); ++row) {
        const QModelIndex child = m_treeModel->index(row, 0, parent);
        if (!m_treeModel->GetItem(child)->startsOpen)
            continue;
        m_tree->setExpanded(child, true);
        ExpandFirst(child);
    }
}

const TreeItem* CObjBrowserDlg::GetSelectedItem() const {
    const QModelIndexList selected = m_tree->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? nullptr : m_treeModel->GetItem(selected.constFirst());
}

void CObjBrowserDlg::ShowTreeMenu(const QPoint& at) {
    const QModelIndex index = m_tree->indexAt(at);
    if (index.isValid())
        m_tree->setCurrentIndex(index);
    QMenu* const menu =
        NewTreeMenu(this, m_treeModel->GetItem(index), [this](BrowserCommand command) { RunCommand(command); });
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(m_tree->viewport()->mapToGlobal(at));
}

void CObjBrowserDlg::RunCommand(BrowserCommand command) {
    if (CBusyScope::IsBusy())
        return;
    switch (command) {
    case BrowserCommand::ScanDevice:
        return m_browser->ScanSelectedDevice();
    case BrowserCommand::ReadObjectsStatus:
        return m_browser->ReadSelectedStatus();
    case BrowserCommand::Zoom:
        return m_commands->Zoom();
    case BrowserCommand::Edit:
        return m_commands->Edit();
    case BrowserCommand::EditArrayItem:
        return m_commands->EditArrayItem();
    case BrowserCommand::SetToNull:
        return m_commands->SetToNull();
    case BrowserCommand::Copy:
        return m_commands->Copy();
    case BrowserCommand::Paste:
        return m_commands->Paste();
    default:
        return; // the other commands are not there yet
    }
}

// ---- the list

void CObjBrowserDlg::ShowPropertyMenu(const QPoint& at) {
    if (!m_list->indexAt(at).isValid())
        return;
    QMenu* const menu = NewPropertyMenu(this, [this](BrowserCommand command) { RunCommand(command); });
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(m_list->viewport()->mapToGlobal(at));
}

std::vector<std::int64_t> CObjBrowserDlg::GetSelectedRows() const {
    QModelIndexList rows = m_list->selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    std::vector<std::int64_t> ids;
    for (const QModelIndex& row : rows)
        ids.push_back(row.data(CPropertyModel::DATA_ROLE).toLongLong());
    return ids;
}

void CObjBrowserDlg::OnRowsChanged() {
    const bool isOne = m_list->selectionModel()->selectedRows().size() == 1;
    m_edit->setEnabled(isOne);
    m_zoom->setEnabled(isOne);
    m_browser->RowsChanged();
}

void CObjBrowserDlg::CopyText() {
    const bool isSelection = m_list->selectionModel()->hasSelection();
    QStringList lines;
    for (int row = 0; row < m_rowOrder->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < CPropertyModel::COLUMN_COUNT; ++column)
            cells += m_rowOrder->index(row, column).data().toString();
        if (!isSelection || m_list->selectionModel()->isRowSelected(row))
            lines += cells.join(u'\t');
    }
    QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

void CObjBrowserDlg::ToggleAutoRefresh() {
    const bool wasOn = !m_autoRefresh->isChecked(); // the click has changed it
    m_autoRefresh->setChecked(wasOn);
    m_autoRefresh->setChecked(m_browser->ToggleAutoRefresh(wasOn));
}

void CObjBrowserDlg::PlaceStrip() {
    m_strip->adjustSize();
    const QRect list = m_list->geometry();
    m_strip->move(list.center() - m_strip->rect().center());
}

void CObjBrowserDlg::BeginReading(const std::string& title, unsigned range) {
    m_list->setEnabled(false);
    m_strip->Reset(FromNarrow(title), range);
    PlaceStrip();
    m_strip->show();
    m_strip->raise();
}

void CObjBrowserDlg::SetSource(const std::string& title, unsigned range) {
    m_strip->SetTitle(FromNarrow(title));
    m_strip->SetRange(range);
}

void CObjBrowserDlg::SetProperty(const std::string& name, unsigned position) {
    m_strip->SetText(FromNarrow(name));
    m_strip->SetPos(position);
}

void CObjBrowserDlg::AddRow(const PropertyRow& row) {
    m_rows->AddRow(row);
}

void CObjBrowserDlg::ClearRows() {
    m_rows->Clear();
    OnRowsChanged();
}

void CObjBrowserDlg::EndReading() {
    m_list->setEnabled(true);
    HideStrip();
    SelectRemembered();
}

void CObjBrowserDlg::SelectRemembered() {
    const int row = m_rows->FindRow(m_browser->GetSelectedProperty());
    if (row < 0)
        return;
    const QModelIndex index = m_rowOrder->mapFromSource(m_rows->index(row, CPropertyModel::NAME));
    m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_list->scrollTo(index);
}

void CObjBrowserDlg::HideStrip() {
    m_strip->hide();
}

// ---- what the logic asks of its window

void CObjBrowserDlg::StartTimer(BrowserTimer timer, unsigned milliseconds) {
    m_timers[static_cast<std::size_t>(timer)].start(static_cast<int>(milliseconds));
}

void CObjBrowserDlg::StopTimer(BrowserTimer timer) {
    m_timers[static_cast<std::size_t>(timer)].stop();
}

bool CObjBrowserDlg::IsServing() const {
    return isVisible() && !CBusyScope::IsBusy();
}

std::string CObjBrowserDlg::GetFilter() const {
    return m_filter->text().toStdString();
}

std::optional<DeviceAddresses> CObjBrowserDlg::PickDevices(CDiscovery& discovery) {
    CDiscoverDevicesDlg dialog(this, m_bacnet, m_operator, discovery);
    return RunModal(dialog) == QDialog::Accepted ? std::optional(dialog.GetPicked()) : std::nullopt;
}

std::optional<unsigned> CObjBrowserDlg::AskRefreshPeriod(unsigned seconds) {
    std::uint32_t period = seconds;
    CInputDlg dialog(this, {QStringLiteral("Refresh period"), QStringLiteral("s"), SHORTEST_PERIOD, LONGEST_PERIOD},
                     &period);
    return RunModal(dialog) == QDialog::Accepted ? std::optional(period) : std::nullopt;
}

std::unique_ptr<IProgress> CObjBrowserDlg::OpenProgress() {
    return std::make_unique<CProgressBarDlg>(this);
}

// ---- what the commands ask the operator

std::optional<PropertyRow> CObjBrowserDlg::GetSelectedRow() const {
    const std::vector<std::int64_t> selected = GetSelectedRows();
    const int row = selected.size() == 1 ? m_rows->FindRow(selected.front()) : -1;
    return row < 0 ? std::nullopt : std::optional(m_rows->GetRow(row));
}

bool CObjBrowserDlg::EditValue(CPropertyValue& value) {
    return EditPropertyValue(this, &value);
}

// The dialog has the priorities from 0 on.
std::optional<unsigned> CObjBrowserDlg::AskPriority(unsigned priority) {
    CEditPriorityDlg dialog(this);
    dialog.Value = static_cast<int>(priority) - 1;
    return dialog.Run() ? std::optional(static_cast<unsigned>(dialog.Value + 1)) : std::nullopt;
}

std::optional<unsigned> CObjBrowserDlg::AskArrayIndex(unsigned index) {
    CEditUnsignedDlg dialog(this);
    dialog.SetLabel("array-index");
    dialog.Low = 1;
    dialog.High = CPropertyCommands::MAX_ARRAY_INDEX;
    dialog.Value = index;
    return dialog.Run() ? std::optional<unsigned>(dialog.Value) : std::nullopt;
}

void CObjBrowserDlg::ShowValue(const std::string& caption, const std::string& text) {
    CEditProp dialog(this, caption, text);
    RunModal(dialog);
}
