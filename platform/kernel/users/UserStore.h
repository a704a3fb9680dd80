// The station's users: names, passwords and groups, in a file of their own (UserFile.h, mode 0600). There are no users
// until somebody adds one, and no password that works without being set.
//
// Several processes may work on one file: each operation reads it anew, and writers take turns by a lock on PATH.lock.
// Any thread may call. Login, Add and SetPassword take the time that the password's hash is meant to take (100 ms and
// more) and 64 MiB of memory. An operation that fails leaves the file as it was and tells why in one line.
#pragma once

#include "platform/kernel/users/Password.h"
#include "platform/kernel/users/UserFile.h"

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

inline constexpr const char* ADMINISTRATOR_GROUP = "administrator";
inline constexpr std::size_t PASSWORD_MINIMUM = 8;  // octets
inline constexpr std::size_t PASSWORD_LIMIT = 1024; // octets

enum class LoginOutcome {
    Ok,
    Refused,  // no such user or not the password: nobody can tell which, not by the time it takes either
    Delayed,  // too soon after a failed login; the password was not looked at
    NoUsers,  // there is no user yet
    Unusable, // the file is damaged or cannot be read: nobody can log in
};

inline constexpr const char* NO_USERS_TEXT =
    "There is no user yet. The command \"bdc user add NAME --administrator\" makes one.";
std::string LoginDelayText(std::int64_t seconds);

struct LoginResult {
    LoginOutcome outcome = LoginOutcome::Refused;
    std::int64_t wait = 0; // seconds until the next attempt is looked at
    std::string text;      // for people; empty when the login is good
};

struct UserInfo {
    std::string name;
    std::vector<std::string> groups; // ascending
};

class CUserStore {
public:
    struct Settings {
        std::string path;
        PasswordCost cost;
        std::function<std::int64_t()> now; // seconds since 1970; empty: the system's
    };
    explicit CUserStore(Settings settings);

    bool Add(const std::string& name, std::string_view password, std::string& error);
    bool SetPassword(const std::string& name, std::string_view password, std::string& error);
    bool Remove(const std::string& name, std::string& error);
    // Into the group, or out of it.
    bool SetMember(const std::string& name, const std::string& group, bool isMember, std::string& error);
    // In ascending order of names.
    bool List(std::vector<UserInfo>& users, std::string& error) const;

    // A hash that costs less than new ones is replaced when its password comes by.
    LoginResult Login(const std::string& name, std::string_view password);
    // False also when the file cannot be read.
    bool IsMember(const std::string& name, const std::string& group) const;

private:
    enum class FileState { Good, Missing, Bad };
    FileState Read(UserData& data, std::string& error) const;
    bool Change(const std::function<bool(UserData& data, std::string& error)>& change, std::string& error) const;
    std::string GetNobody();
    bool Begin(const std::string& name, std::string& hash, LoginResult& result);
    void Succeed(const std::string& name, std::string_view password, const std::string& hash);
    LoginFailures FailuresOf(const UserData& data, const std::string& key) const;
    bool Hash(std::string_view password, std::string& hash, std::string& error) const;

    const Settings m_settings;
    mutable std::mutex m_mutex;
    std::string m_nobody; // m_mutex; the hash that an unknown user's password is held against, to take as long
    // What could not be written (a full disk) still delays while this process lives.
    std::map<std::string, LoginFailures> m_unwritten; // m_mutex
};
