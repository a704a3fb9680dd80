// The product's users as the console sees them: the login dialog, and who is an administrator. Called on the console
// thread only. Names are narrow text in buffers of QL_USER_NAME_SIZE bytes, with their closing NUL.
#pragma once

// Results of UMOpenLoginDlg; any other is an error without a name.
inline constexpr int UM_LOGIN_OK = 0;
inline constexpr int UM_LOGIN_STORE_UNUSABLE = -1005;
inline constexpr int UM_LOGIN_NO_USERS = -1006;
inline constexpr int UM_LOGIN_CANCELLED = -1007;
inline constexpr int UM_LOGIN_REFUSED = -1008;
inline constexpr int UM_LOGIN_DELAYED = -1014;

class QWidget;

class IQLUserManagement {
public:
    virtual ~IQLUserManagement() = default;

    // Lets the operator log in: modal over the window, which may be hidden. name proposes a user on entry and holds the
    // one who logged in when the result is UM_LOGIN_OK. Serves events meanwhile; the console's shutdown rejects the
    // dialog, which then returns UM_LOGIN_CANCELLED.
    virtual int UMOpenLoginDlg(QWidget* window, char* name) = 0;
    virtual bool UMIsUserAdministrator(const char* name) = 0;
};
