#include "module/console/NotifyIcon.h"

#include "base/Utf8.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

// As much of the text as fits into so many UTF-16 units, without splitting a character.
std::string Cut(const std::string& text, std::size_t limit) {
    std::string_view rest = text;
    std::size_t units = 0;
    while (!rest.empty()) {
        const Utf8Character first = FirstUtf8(rest);
        units += first.point > 0xFFFF ? 2 : 1;
        if (units > limit)
            break;
        rest.remove_prefix(std::max<std::size_t>(first.length, 1));
    }
    return text.substr(0, text.size() - rest.size());
}

} // namespace

void CNotifyIcon::SetTooltip(const std::string& text) {
    m_tooltip = Cut(text, TRAY_TOOLTIP_LIMIT);
}

void CNotifyIcon::SetBalloon(const TrayBalloon& balloon) {
    m_balloon = balloon;
    m_balloon.title = Cut(balloon.title, TRAY_BALLOON_TITLE_LIMIT);
    m_balloon.text = Cut(balloon.text, TRAY_BALLOON_TEXT_LIMIT);
    m_hasBalloon = true;
}

void CNotifyIcon::Add(std::uint32_t id) {
    m_id = id;
    m_tray.Add(id, m_tooltip);
    if (m_hasBalloon)
        m_tray.ShowBalloon(m_balloon);
}

void CNotifyIcon::Remove() {
    if (std::exchange(m_id, 0) != 0)
        m_tray.Remove();
}
