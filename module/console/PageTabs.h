// The console's tab control with its pages. The page called Browser follows the size of the control; the others keep
// the size of their first layout. Only on the console thread.
#pragma once

#include "module/console/ConsolePages.h"

#include <QTabWidget>

#include <array>

class CConsolePage;
class CDriver;

class CPageTabs : public QTabWidget {
    Q_OBJECT

public:
    explicit CPageTabs(QWidget* parent);

    // Makes all pages and loads them, under the module lock. A page that no other folder provides is empty.
    void Create(CDriver& driver);
    // In the order of destruction; the caller holds the module lock.
    void DestroyPages();

    CConsolePage* GetPage(int page) const { return m_pages[static_cast<std::size_t>(page)]; }
    // NO_PAGE when none is shown.
    int GetCurrentPage() const { return m_current; }
    // Shows the page and gives it the focus; NO_PAGE only hides the current one. Other numbers, and that of the current
    // page, change nothing.
    void SelectPage(int page);

    // The size that all pages have room in.
    QSize sizeHint() const override;

    // Gives a page the size it has in its place.
    void Place(int page, const QSize& place);

protected:
    // The console has keys of its own for walking through the pages, which work wherever the focus is.
    void keyPressEvent(QKeyEvent* event) override;

private:
    std::array<CConsolePage*, PAGE_COUNT> m_pages{}; // owned by the toolkit until DestroyPages
    int m_current = NO_PAGE;
    QSize m_firstSize; // of the first place that was laid out; not valid before
};
