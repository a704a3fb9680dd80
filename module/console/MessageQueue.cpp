#include "module/console/MessageQueue.h"

#include <utility>

// A trigger's state is in wParam. A changed object has none: all that its message holds says which one it is.
CMessageQueue::Identity CMessageQueue::IdentityOf(const CConsoleMessage& message) {
    const bool hasState = message.GetMessage() != WM_CONSOLE_OBJECTCHANGED;
    return {message.GetMessage(), message.GetLParam(), hasState ? 0 : message.GetWParam()};
}

void CMessageQueue::Push(CConsoleMessage message) {
    if (m_messages.size() < m_limit) {
        m_late.clear();
        m_messages.push_back(std::move(message));
        return;
    }
    const auto [late, isNew] = m_late.try_emplace(IdentityOf(message), m_popped + m_messages.size());
    if (!isNew && late->second >= m_popped) {
        m_messages[late->second - m_popped] = std::move(message);
    } else if (m_messages.size() < 2 * m_limit || message.GetMessage() == WM_CONSOLE_SHUTDOWN) {
        late->second = m_popped + m_messages.size();
        m_messages.push_back(std::move(message));
    } else {
        m_late.erase(late);
    }
}

std::optional<CConsoleMessage> CMessageQueue::Pop() {
    if (m_messages.empty())
        return std::nullopt;
    std::optional<CConsoleMessage> message(std::move(m_messages.front()));
    m_messages.pop_front();
    ++m_popped;
    return message;
}
