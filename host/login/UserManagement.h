// The product's users for the console: the login dialog over the users' file.
#pragma once

#include "api/kernel/UserManagement.h"
#include "platform/kernel/users/UserStore.h"

#include <functional>
#include <string>

inline constexpr const char* USERS_FILE = "users"; // in the data folder

class CUserManagement : public IQLUserManagement {
public:
    // onLogin gets the name of each user who logs in, on the console thread. folder is the data folder as the command
    // line has to name it, empty when it need not. store outlives this.
    CUserManagement(CUserStore& store, std::string folder, std::function<void(const std::string& name)> onLogin);

    int UMOpenLoginDlg(QWidget* window, char* name) override;
    bool UMIsUserAdministrator(const char* name) override;

private:
    CUserStore& m_store;
    const std::string m_folder;
    const std::function<void(const std::string&)> m_onLogin;
};
