// A private message in the toolkit's queue. All are posted with one priority, so they come in the order of posting,
// also in modal loops and pumps. An event that is never delivered frees what its message carries.
#pragma once

#include "module/console/ConsoleMessage.h"

#include <QEvent>

#include <utility>

class CConsoleEvent : public QEvent {
public:
    explicit CConsoleEvent(CConsoleMessage message) : QEvent(GetType()), m_message(std::move(message)) {}

    CConsoleMessage& GetConsoleMessage() { return m_message; }
    static Type GetType() {
        static const Type type = static_cast<Type>(registerEventType());
        return type;
    }

private:
    CConsoleMessage m_message;
};
