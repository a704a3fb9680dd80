// The system's tray. Clicks on the icon come back as WM_CONSOLE_TRAYICON. The toolkit shows the icon as soon as there
// is a tray, also when that comes later than the console. Only on the console thread.
#pragma once

#include "module/console/NotifyIcon.h"

#include <QSystemTrayIcon>

class CSystemTray : public ITray {
public:
    void Add(std::uint32_t id, const std::string& tooltip) override;
    void ShowBalloon(const TrayBalloon& balloon) override;
    void Remove() override;

private:
    QSystemTrayIcon m_icon;
};
