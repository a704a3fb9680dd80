// Tells the dialog that private messages wait for it (CBDCThread::TakeMessage).
#pragma once

#include <QEvent>

class CConsoleEvent : public QEvent {
public:
    CConsoleEvent() : QEvent(GetType()) {}

    static Type GetType() {
        static const Type type = static_cast<Type>(registerEventType());
        return type;
    }
};
