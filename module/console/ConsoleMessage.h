// One private message on its way to the console dialog. It owns what its parameters point to: a message that is
// dropped, left in a queue or not taken over by its handler frees it.
#pragma once

#include "module/console/Messages.h"

#include <cstdint>

struct BACSTAC_DEV_OBJ_REF;

class CConsoleMessage {
public:
    CConsoleMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam)
        : m_message(message), m_wParam(wParam), m_lParam(lParam) {}
    CConsoleMessage(CConsoleMessage&& other) noexcept;
    CConsoleMessage& operator=(CConsoleMessage&& other) noexcept; // other holds afterwards what this one held
    ~CConsoleMessage();

    unsigned GetMessage() const { return m_message; }
    std::uintptr_t GetWParam() const { return m_wParam; }
    std::intptr_t GetLParam() const { return m_lParam; }
    // The request of a WM_CONSOLE_HISTORY, null for all trend logs; now the caller's to delete.
    BACSTAC_DEV_OBJ_REF* TakeRequest();

private:
    unsigned m_message;
    std::uintptr_t m_wParam;
    std::intptr_t m_lParam;
};
