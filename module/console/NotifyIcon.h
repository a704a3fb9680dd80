// The console's icon in the system's tray: what it shows, and whether it is there. Without a tray it keeps all this and
// shows nothing; the icon comes when a tray appears. Only on the console thread.
#pragma once

#include <cstdint>
#include <string>

enum class BalloonIcon { Information, Warning, Error };

// Texts are narrow. The system's records hold so many UTF-16 units of each, without the closing zero.
inline constexpr std::size_t TRAY_TOOLTIP_LIMIT = 127;
inline constexpr std::size_t TRAY_BALLOON_TEXT_LIMIT = 255;
inline constexpr std::size_t TRAY_BALLOON_TITLE_LIMIT = 63;

struct TrayBalloon {
    std::string title;
    std::string text;
    BalloonIcon icon = BalloonIcon::Information;
    int timeout = 0; // ms

    bool operator==(const TrayBalloon&) const = default;
};

// The system's side.
class ITray {
public:
    virtual ~ITray() = default;
    virtual void Add(std::uint32_t id, const std::string& tooltip) = 0;
    virtual void ShowBalloon(const TrayBalloon& balloon) = 0;
    virtual void Remove() = 0;
};

class CNotifyIcon {
public:
    explicit CNotifyIcon(ITray& tray) : m_tray(tray) {}
    ~CNotifyIcon() { Remove(); }
    CNotifyIcon(const CNotifyIcon&) = delete;
    CNotifyIcon& operator=(const CNotifyIcon&) = delete;

    void SetTooltip(const std::string& text);
    // Shown together with the icon.
    void SetBalloon(const TrayBalloon& balloon);
    void Add(std::uint32_t id);
    void Remove(); // nothing unless it was added

    bool IsAdded() const { return m_id != 0; }

private:
    ITray& m_tray;
    std::uint32_t m_id = 0; // 0: not added
    std::string m_tooltip;
    bool m_hasBalloon = false;
    TrayBalloon m_balloon;
};
