// The whole console with the browser's page in it, over devices in memory.
#pragma once

#include "tests/gui/browser/BrowserPage.h"

class BrowserConsole : public BrowserPage {
protected:
    BrowserConsole();
    ~BrowserConsole() override;

    // With the page on the screen.
    void OpenConsole();
    // True when the console ended in less than three seconds, or had ended before.
    bool End();

    // ---- on the thread of the windows
    static CControls Window();
};
