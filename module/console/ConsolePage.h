// A page of the console, as the console drives it. Only on the console thread.
//
// The console makes all pages in the order of their tabs while it holds the module lock, keeps them for its whole run,
// and destroys them in an order of its own, again under the lock. A page lives on while the window is hidden: its
// timers run and private messages are served.
#pragma once

#include <QWidget>

struct BACSTAC_OBJECT_ID;

class CConsolePage : public QWidget {
    Q_OBJECT

public:
    explicit CConsolePage(QWidget* parent);

    // The controls take over the settings. Called once, when the page has its final place; the page's triggers are
    // registered here.
    virtual void Load() {}
    // The settings take over the controls, and what has changed is applied. False when something could not be stored.
    virtual bool Save() { return true; }
    // The operator left the console with Cancel.
    virtual void Cancelled() {}
    // A device has told the driver of a change of the object.
    virtual void ObjectChanged(unsigned /*device*/, const BACSTAC_OBJECT_ID& /*object*/) {}
    // The page comes on the screen or goes from it, by the choice of a tab or with the window. A window that is only
    // minimized counts as on the screen.
    virtual void Shown() {}
    virtual void Hidden() {}
    // The end is near; the widget goes right after.
    virtual void Destroy() {}

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    bool m_isOnScreen = false;
};
