// Users that log in by script, recorded as "Login(name proposed)" and "IsAdministrator(name)".
#pragma once

#include "api/kernel/QLProgramCore.h"
#include "api/kernel/UserManagement.h"
#include "tests/support/EventList.h"

#include <cstring>
#include <deque>
#include <functional>
#include <string>

class CFakeUsers : public IQLUserManagement {
public:
    struct Login {
        int result;
        std::string user; // who logs in; a name that begins with "admin" is an administrator's
    };
    explicit CFakeUsers(CEventList& events) : m_events(events) {}
    std::deque<Login> m_logins;              // what the next logins give; when there is none, the operator gives up
    std::function<void(QWidget*)> m_onLogin; // called inside each login with its window

    int UMOpenLoginDlg(QWidget* window, char* name) override {
        m_events.Add(std::string("Login(") + name + ")");
        if (m_onLogin)
            m_onLogin(window);
        if (m_logins.empty())
            return UM_LOGIN_CANCELLED;
        const Login login = m_logins.front();
        m_logins.pop_front();
        std::memset(name, 0xAA, QL_USER_NAME_SIZE); // the whole buffer is the callee's
        std::strcpy(name, login.user.c_str());
        return login.result;
    }
    bool UMIsUserAdministrator(const char* name) override {
        m_events.Add(std::string("IsAdministrator(") + name + ")");
        return std::strncmp(name, "admin", 5) == 0;
    }

private:
    CEventList& m_events;
};
