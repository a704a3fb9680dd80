#include "module/console/SystemTray.h"

#include "module/console/Globals.h"
#include "module/console/Messages.h"
#include "module/console/NarrowText.h"
#include "module/icons/Icons.h"

void CSystemTray::Add(std::uint32_t id, const std::string& tooltip) {
    m_icon.setIcon(NewIcon(CONSOLE_ICON));
    m_icon.setToolTip(FromNarrow(tooltip));
    QObject::connect(&m_icon, &QSystemTrayIcon::activated, &m_icon, [id](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            BDCManager.PostMessageW(WM_CONSOLE_TRAYICON, id, TRAY_LEFT_BUTTON_UP);
        else if (reason == QSystemTrayIcon::Context)
            BDCManager.PostMessageW(WM_CONSOLE_TRAYICON, id, TRAY_RIGHT_BUTTON_UP);
    });
    m_icon.show();
}

void CSystemTray::ShowBalloon(const TrayBalloon& balloon) {
    static constexpr QSystemTrayIcon::MessageIcon ICONS[] = {QSystemTrayIcon::Information, QSystemTrayIcon::Warning,
                                                             QSystemTrayIcon::Critical};
    if (QSystemTrayIcon::supportsMessages())
        m_icon.showMessage(FromNarrow(balloon.title), FromNarrow(balloon.text), ICONS[static_cast<int>(balloon.icon)],
                           balloon.timeout);
}

void CSystemTray::Remove() {
    m_icon.hide();
}
