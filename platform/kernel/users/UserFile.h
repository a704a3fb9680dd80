// The form of the file that holds the station's users: a line "bdc-users 1 CHECK", with a checksum over what follows,
// and a JSON document. Whoever reads it learns no password and no name that was tried without being a user's.
#pragma once

#include "platform/kernel/users/LoginDelay.h"

#include <map>
#include <set>
#include <string>
#include <string_view>

struct UserRecord {
    std::string hash; // of the password (Password.h)
    std::set<std::string> groups;

    bool operator==(const UserRecord&) const = default;
};

struct UserData {
    std::string salt;                              // hexadecimal, of the keys below
    std::map<std::string, UserRecord> users;       // by name
    std::map<std::string, LoginFailures> failures; // by FailureKey

    bool operator==(const UserData&) const = default;
};

inline constexpr std::size_t USER_NAME_LIMIT = 87;  // octets
inline constexpr std::size_t GROUP_NAME_LIMIT = 64; // octets

// Valid UTF-8 of 1 to limit octets, without control characters and without blanks at the ends.
bool IsGoodName(std::string_view name, std::size_t limit);

// A file without users, with a salt of its own.
UserData NewUserData();
// What failed logins under this name are counted under, whether there is such a user or not.
std::string FailureKey(const UserData& data, std::string_view name);

std::string PrintUserFile(const UserData& data);
// False, with what is wrong in one line, when anything in the text is not as PrintUserFile writes it; data is left
// alone then.
bool ParseUserFile(const std::string& text, UserData& data, std::string& error);
