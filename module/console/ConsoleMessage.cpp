#include "module/console/ConsoleMessage.h"

#include "api/bacnet/Types.h"

#include <utility>

CConsoleMessage::CConsoleMessage(CConsoleMessage&& other) noexcept
    : m_message(other.m_message), m_wParam(other.m_wParam), m_lParam(std::exchange(other.m_lParam, 0)) {}

CConsoleMessage& CConsoleMessage::operator=(CConsoleMessage&& other) noexcept {
    std::swap(m_message, other.m_message);
    std::swap(m_wParam, other.m_wParam);
    std::swap(m_lParam, other.m_lParam);
    return *this;
}

CConsoleMessage::~CConsoleMessage() {
    delete TakeRequest();
}

BACSTAC_DEV_OBJ_REF* CConsoleMessage::TakeRequest() {
    if (m_message != WM_CONSOLE_HISTORY)
        return nullptr;
    return reinterpret_cast<BACSTAC_DEV_OBJ_REF*>(std::exchange(m_lParam, 0));
}
