#include "module/console/PageTabs.h"

#include "module/console/ConsolePage.h"
#include "module/console/ConsoleState.h"
#include "module/console/Guarded.h"

#include <QKeyEvent>
#include <QLabel>
#include <QTabBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

// The least room for a page, in the characters and lines of its font.
constexpr int COLUMNS = 120;
constexpr int LINES = 30;

// What the tab control stretches; the page inside need not follow.
class CPagePlace : public QWidget {
public:
    CPagePlace(CPageTabs* tabs, int page) : QWidget(tabs), m_tabs(*tabs), m_page(page) {}

protected:
    void resizeEvent(QResizeEvent* event) override {
        QWidget::resizeEvent(event);
        m_tabs.Place(m_page, size());
    }

private:
    CPageTabs& m_tabs;
    const int m_page;
};

CConsolePage* NewEmptyPage(QWidget* place) {
    auto* const page = new CConsolePage(place);
    auto* const text = new QLabel(QStringLiteral("There is nothing to set here yet."), page);
    text->setAlignment(Qt::AlignCenter);
    text->setEnabled(false);
    (new QVBoxLayout(page))->addWidget(text);
    return page;
}

} // namespace

CPageTabs::CPageTabs(QWidget* parent) : QTabWidget(parent) {
    tabBar()->setAccessibleName(QStringLiteral("Pages"));
    connect(this, &QTabWidget::currentChanged, this, &CPageTabs::SelectPage);
}

void CPageTabs::Create(CDriver& driver) {
    for (std::size_t i = 0; i < PAGE_COUNT; ++i) {
        auto* const place = new CPagePlace(this, static_cast<int>(i));
        const auto newPage = consoleWiring.newPage[i];
        CConsolePage* page = newPage ? nullptr : NewEmptyPage(place);
        if (newPage && !RunGuarded(PAGE_LABELS[i], [&] { page = newPage(place, driver); }))
            page = new CConsolePage(place);
        page->setVisible(false);
        m_pages[i] = page;
        consolePages[i] = page;
        addTab(place, QString::fromLatin1(PAGE_LABELS[i]));
        RunGuarded(PAGE_LABELS[i], [page] { page->Load(); });
    }
}

void CPageTabs::DestroyPages() {
    m_current = NO_PAGE;
    for (const CONSOLE_PAGE index : PAGES_IN_DESTROY_ORDER) {
        CConsolePage*& page = m_pages[index];
        if (!page)
            continue;
        RunGuarded(PAGE_LABELS[index], [page] { page->Destroy(); });
        consolePages[index] = nullptr;
        delete std::exchange(page, nullptr);
    }
}

void CPageTabs::SelectPage(int page) {
    if (page < NO_PAGE || page >= static_cast<int>(PAGE_COUNT) || page == m_current)
        return;
    if (m_current != NO_PAGE)
        GetPage(m_current)->hide();
    m_current = page;
    if (page == NO_PAGE || !GetPage(page))
        return;
    setCurrentIndex(page);
    GetPage(page)->show();
    GetPage(page)->setFocus(Qt::OtherFocusReason);
}

QSize CPageTabs::sizeHint() const {
    QSize size(COLUMNS * fontMetrics().averageCharWidth(), LINES * fontMetrics().lineSpacing());
    for (const CConsolePage* const page : m_pages)
        if (page)
            size = size.expandedTo(page->sizeHint());
    const QSize tabs = tabBar()->sizeHint();
    return {std::max(size.width(), tabs.width() + tabs.height()), size.height() + tabs.height()};
}

// On its way to the screen the first place is empty at first.
void CPageTabs::Place(int page, const QSize& place) {
    if (place.isEmpty())
        return;
    if (!m_firstSize.isValid())
        m_firstSize = place;
    if (CConsolePage* const widget = GetPage(page))
        widget->setGeometry(QRect(QPoint(0, 0), page == PAGE_BROWSER ? place : m_firstSize));
}

void CPageTabs::keyPressEvent(QKeyEvent* event) {
    event->ignore();
}
