#include "module/console/LoginGate.h"

#include "api/kernel/QLProgramCore.h"
#include "api/kernel/UserManagement.h"
#include "module/console/Guarded.h"
#include "module/console/Operator.h"

#include <cstring>

namespace {

constexpr int ATTEMPTS = 3;
constexpr const char* DEFAULT_USER = "user";

const char* FailureText(int result) {
    switch (result) {
    case UM_LOGIN_DELAYED:
    case UM_LOGIN_REFUSED:
    case UM_LOGIN_NO_USERS:
    case UM_LOGIN_STORE_UNUSABLE:
        return "Login failed";
    default:
        return "Login error";
    }
}

bool LogIn(const GateServices& services, QWidget* window) {
    char name[QL_USER_NAME_SIZE] = {};
    std::strcpy(name, DEFAULT_USER);
    services.kernel.GetCurrentUserName(services.gateId, name);
    for (int attempt = 0; attempt < ATTEMPTS; ++attempt) {
        const int result = services.users.UMOpenLoginDlg(window, name);
        if (result == UM_LOGIN_CANCELLED)
            return false;
        if (result != UM_LOGIN_OK) {
            ShowError(services.op, FailureText(result));
            return false;
        }
        if (services.users.UMIsUserAdministrator(name))
            return true;
        ShowError(services.op, "This user is not member of administrator group");
    }
    return false;
}

} // namespace

void PassLoginGate(const GateServices& services, IGatedWindow& window) {
    if (window.IsDisabled())
        return;
    if (!window.IsOnScreen()) {
        window.SetGateOpen(true);
        bool isIn = false;
        RunGuarded("Login", [&] { isIn = LogIn(services, window.GetWidget()); });
        window.SetGateOpen(false);
        if (!isIn)
            return;
    }
    window.ShowInFront();
}
