// The gate between the tray icon and the console: who wants to see the console logs in as an administrator. Plain
// access control; the driver's own WM_CONSOLE_SHOW and the about box do not pass through it.
#pragma once

#include <cstdint>

class IOperator;
class IQLProgramCore;
class IQLUserManagement;
class QWidget;

// What the gate does with the console's window.
class IGatedWindow {
public:
    virtual ~IGatedWindow() = default;
    virtual QWidget* GetWidget() = 0;
    virtual bool IsOnScreen() const = 0;
    // While a modal dialog of the console or the gate itself is open.
    virtual bool IsDisabled() const = 0;
    virtual void SetGateOpen(bool isOpen) = 0; // disables the window for the time of the login
    virtual void ShowInFront() = 0;
};

struct GateServices {
    IQLProgramCore& kernel;
    std::uint8_t gateId;
    IQLUserManagement& users;
    IOperator& op;
};

// Shows the window, after a login unless it is on the screen already. A disabled window stays as it is: a second click
// must not open a second login, and a modal dialog of the console keeps the operator. At most three logins; each that
// fails says so in a box, but for one that the operator gave up.
void PassLoginGate(const GateServices& services, IGatedWindow& window);
