#include "tests/gui/browser/BrowserPage.h"

#include "module/browser/BrowserTree.h"
#include "module/browser/Images.h"
#include "module/browser/ObjBrowserDlg.h"
#include "module/console/GuiOperator.h"

#include <QTest>
#include <QVBoxLayout>

BrowserPage::BrowserPage() {
    CBacGeneral::SetDirFileName(m_folder.File("directory"));
}

BrowserPage::~BrowserPage() {
    OnGui([this] {
        if (m_window)
            m_page->Destroy();
        m_window.reset();
    });
    CBacGeneral::SetDirFileName({});
}

void BrowserPage::PutSite() {
    AddDevice(10, "Beta");
    AddObject(10, {2, 1}, "zone");
    SetValue(10, {2, 1}, PROP_PRESENT_VALUE, FakeValue::Real(21.5F));
    SetValue(10, {2, 1}, PROP_DESCRIPTION, FakeValue::Text("of the\r\nzone"));
    AddDevice(20, "alpha");
    CBACnetDir directory;
    PutDevice(directory, 10, "Beta", 0, {{{2, 1}, "zone"}, {{2, 2}, "Area"}, {{0, 5}, "T"}, {{10, 1}, "File"}});
    PutDevice(directory, 20, "alpha", 0, {});
    for (const unsigned device : {10U, 20U})
        directory.SetDevAddr(device, m_bacnet.GetDevAddr(device));
    Save(directory);
}

void BrowserPage::Save(const CBACnetDir& directory) {
    EXPECT_TRUE(directory.Save(m_folder.File("directory")));
}

void BrowserPage::OpenPage() {
    OnGui([this] {
        m_window = std::make_unique<QWidget>();
        m_page = new CObjBrowserDlg(m_window.get(), m_driver, m_bacnet, *CGuiOperator::Get());
        (new QVBoxLayout(m_window.get()))->addWidget(m_page);
        m_page->Load();
        m_window->resize(900, 450);
        m_window->show();
    });
}

CControls BrowserPage::Page() const {
    return CControls(*m_page);
}

QTreeView& BrowserPage::Tree() const {
    return Page().Get<QTreeView>("Devices and objects");
}

QTreeView& BrowserPage::List() const {
    return Page().Get<QTreeView>("Properties");
}

namespace {

QModelIndex FindBelow(const QAbstractItemModel& model, const QModelIndex& parent, const QString& label) {
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex child = model.index(row, 0, parent);
        if (child.data().toString() == label)
            return child;
        if (const QModelIndex found = FindBelow(model, child, label); found.isValid())
            return found;
    }
    return {};
}

} // namespace

QModelIndex BrowserPage::Item(const std::string& label) const {
    QTreeView& tree = Tree();
    const QModelIndex item = FindBelow(*tree.model(), {}, QString::fromStdString(label));
    for (QModelIndex parent = item.parent(); parent.isValid(); parent = parent.parent())
        tree.expand(parent);
    return item;
}

bool BrowserPage::HasImage(const std::string& label, int image) const {
    const auto shown = Item(label).data(Qt::DecorationRole).value<QIcon>();
    return shown.cacheKey() == BrowserImage(image, STATE_NONE).cacheKey();
}

void BrowserPage::Select(const std::string& label) const {
    const QModelIndex item = Item(label);
    ASSERT_TRUE(item.isValid()) << label;
    Tree().scrollTo(item);
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualRect(item).center());
}

QMenu* BrowserPage::MenuAt(QTreeView& view, const QModelIndex& index) const {
    QWidget& viewport = *view.viewport();
    const QPoint at = index.isValid() ? view.visualRect(index).center() : viewport.rect().bottomRight() - QPoint(5, 5);
    QTest::mousePress(&viewport, Qt::RightButton, {}, at);
    QTest::mouseRelease(&viewport, Qt::RightButton, {}, at);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, viewport.mapToGlobal(at));
    QCoreApplication::sendEvent(&viewport, &event);
    return OpenMenu();
}

Lines BrowserPage::Rows() const {
    const QAbstractItemModel& model = *List().model();
    Lines rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows.push_back(model.index(row, 0).data().toString().toStdString() + " = " +
                       model.index(row, 1).data().toString().toStdString());
    return rows;
}

Lines BrowserPage::SelectedRows() const {
    Lines rows;
    for (const QModelIndex& index : List().selectionModel()->selectedRows())
        rows.push_back(index.data().toString().toStdString());
    return rows;
}

bool BrowserPage::HasRows(std::size_t count) {
    return EventuallyOnGui([this, count] { return Rows().size() == count && List().isEnabled(); });
}
