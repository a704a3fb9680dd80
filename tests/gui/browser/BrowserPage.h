// The browser's page in a window of its own, over devices in memory. The tests run on a thread of their own.
#pragma once

#include "tests/gui/harness/Controls.h"
#include "tests/gui/harness/DialogScript.h"
#include "tests/gui/harness/GuiAccess.h"
#include "tests/support/FakeDriver.h"
#include "tests/support/FakeKernel.h"
#include "tests/support/TempFolder.h"
#include "tests/unit/browser/BrowserSite.h"
#include "tests/unit/browser/Directories.h"

#include <QTreeView>

#include <memory>

class CObjBrowserDlg;

class BrowserPage : public BrowserSite {
protected:
    BrowserPage();
    ~BrowserPage() override;

    // Device 10 "Beta" with (2, 1) "zone", (2, 2) "Area", (0, 5) "T" and a file; device 20 "alpha".
    void Open() {
        PutSite();
        OpenPage();
    }
    void PutSite();
    void Save(const CBACnetDir& directory); // as the file that the page loads
    void OpenPage();

    // ---- on the thread of the windows
    bool HasImage(const std::string& label, int image) const;
    CControls Page() const;
    QTreeView& Tree() const;
    QTreeView& List() const;
    // The item with that label, opened down to; invalid when there is none.
    QModelIndex Item(const std::string& label) const;
    void Select(const std::string& label) const;
    // A right click, and the menu that it opens.
    QMenu* MenuAt(QTreeView& view, const QModelIndex& index) const;
    Lines Rows() const; // "name = value" in the order of the list
    Lines SelectedRows() const;

    // ---- on the test's thread
    bool HasRows(std::size_t count);

    CTempFolder m_folder;
    CFakeKernel m_kernel{m_asked};
    CFakeDriver m_driver{m_asked, m_kernel};
    CEventList m_asked; // of the driver, and the dialogs
    std::unique_ptr<QWidget> m_window;
    CObjBrowserDlg* m_page = nullptr; // the window's
};
