#include "host/login/UserManagement.h"

#include "api/kernel/QLProgramCore.h"
#include "host/login/FirstUserCommand.h"
#include "host/login/LoginDlg.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

// Of a dialog that was not accepted.
int ResultOf(const CLoginDlg& dialog) {
    switch (dialog.GetOutcome()) {
    case LoginOutcome::Unusable:
        return UM_LOGIN_STORE_UNUSABLE;
    case LoginOutcome::Refused:
        return dialog.HasUsedUpAttempts() ? UM_LOGIN_REFUSED : UM_LOGIN_CANCELLED;
    default:
        return UM_LOGIN_CANCELLED;
    }
}

} // namespace

CUserManagement::CUserManagement(CUserStore& store, std::string folder,
                                 std::function<void(const std::string& name)> onLogin)
    : m_store(store), m_folder(std::move(folder)), m_onLogin(std::move(onLogin)) {}

int CUserManagement::UMOpenLoginDlg(QWidget* window, char* name) {
    const auto userCommand = [this, program = NameForShell()](const std::string& user) {
        return FirstUserCommand(program, m_folder, user);
    };
    CLoginDlg dialog(window, m_store, std::string(name, strnlen(name, QL_USER_NAME_SIZE)), userCommand);
    if (dialog.exec() != QDialog::Accepted)
        return ResultOf(dialog);
    const std::string& user = dialog.GetName(); // of at most USER_NAME_LIMIT bytes, since it is a user's
    static_assert(USER_NAME_LIMIT < QL_USER_NAME_SIZE);
    std::fill_n(name, QL_USER_NAME_SIZE, '\0');
    user.copy(name, USER_NAME_LIMIT);
    m_onLogin(user);
    return UM_LOGIN_OK;
}

bool CUserManagement::UMIsUserAdministrator(const char* name) {
    return m_store.IsMember(name, ADMINISTRATOR_GROUP);
}
