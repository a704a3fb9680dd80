#include "platform/kernel/users/UserStore.h"

#include "base/DurableFile.h"
#include "base/FileLock.h"

#include <algorithm>
#include <ctime>
#include <utility>

namespace {

constexpr std::uint64_t FILE_LIMIT = 16U << 20;
constexpr std::size_t FAILURES_LIMIT = 1000; // kept for names that no user has
constexpr std::uint32_t LOCK_TIMEOUT = 5000; // ms

constexpr const char* REFUSED = "The user name or the password is wrong.";

std::int64_t SystemNow() {
    return std::time(nullptr);
}

bool IsGoodPassword(std::string_view password, std::string& error) {
    if (password.size() >= PASSWORD_MINIMUM && password.size() <= PASSWORD_LIMIT)
        return true;
    error = "a password has " + std::to_string(PASSWORD_MINIMUM) + " to " + std::to_string(PASSWORD_LIMIT) + " bytes";
    return false;
}

bool IsGood(const std::string& name, std::size_t limit, const char* what, std::string& error) {
    if (IsGoodName(name, limit))
        return true;
    error = std::string("the name of a ") + what + " has 1 to " + std::to_string(limit) +
            " bytes of UTF-8, no control characters and no blanks at its ends";
    return false;
}

UserRecord* Find(UserData& data, const std::string& name, std::string& error) {
    const auto user = data.users.find(name);
    if (user != data.users.end())
        return &user->second;
    error = "there is no user \"" + name + "\"";
    return nullptr;
}

// Keeps what concerns users; of the rest the latest.
void DropOldFailures(UserData& data, std::int64_t now) {
    std::erase_if(data.failures, [now](const auto& entry) { return AreForgotten(entry.second, now); });
    if (data.failures.size() <= FAILURES_LIMIT)
        return;
    std::set<std::string> kept;
    for (const auto& [name, user] : data.users)
        kept.insert(FailureKey(data, name));
    std::vector<std::pair<std::int64_t, std::string>> others;
    for (const auto& [key, failures] : data.failures) {
        if (!kept.contains(key))
            others.emplace_back(failures.last, key);
    }
    std::ranges::sort(others);
    const std::size_t surplus = std::min(others.size(), data.failures.size() - FAILURES_LIMIT);
    for (std::size_t i = 0; i < surplus; ++i)
        data.failures.erase(others[i].second);
}

} // namespace

std::string LoginDelayText(std::int64_t seconds) {
    return "A login has failed. Try again in " + std::to_string(seconds) + (seconds == 1 ? " second." : " seconds.");
}

CUserStore::CUserStore(Settings settings)
    : m_settings{std::move(settings.path), settings.cost,
                 settings.now ? std::move(settings.now) : std::function<std::int64_t()>(SystemNow)} {}

CUserStore::FileState CUserStore::Read(UserData& data, std::string& error) const {
    std::string text;
    switch (ReadWholeFile(m_settings.path, FILE_LIMIT, text, &error)) {
    case FileRead::Missing:
        return FileState::Missing;
    case FileRead::Failed:
        return FileState::Bad;
    case FileRead::Ok:
        break;
    }
    std::string fault;
    if (ParseUserFile(text, data, fault))
        return FileState::Good;
    error = m_settings.path + ": " + fault;
    return FileState::Bad;
}

bool CUserStore::Change(const std::function<bool(UserData&, std::string&)>& change, std::string& error) const {
    CFileLock lock;
    if (!lock.Acquire(m_settings.path + ".lock", LOCK_TIMEOUT, error))
        return false;
    UserData data;
    const FileState state = Read(data, error);
    if (state == FileState::Bad)
        return false;
    if (state == FileState::Missing)
        data = NewUserData();
    if (!change(data, error))
        return false;
    DropOldFailures(data, m_settings.now());
    return ReplaceWholeFile(m_settings.path, PrintUserFile(data), FileAccess::OwnerOnly, &error);
}

bool CUserStore::Hash(std::string_view password, std::string& hash, std::string& error) const {
    if (HashPassword(password, m_settings.cost, hash))
        return true;
    error = "there is not enough memory for the hash of the password";
    return false;
}

bool CUserStore::Add(const std::string& name, std::string_view password, std::string& error) {
    UserRecord record;
    if (!IsGood(name, USER_NAME_LIMIT, "user", error) || !IsGoodPassword(password, error) ||
        !Hash(password, record.hash, error))
        return false;
    return Change(
        [&](UserData& data, std::string& fault) {
            if (data.users.try_emplace(name, record).second)
                return true;
            fault = "there is a user \"" + name + "\" already";
            return false;
        },
        error);
}

bool CUserStore::SetPassword(const std::string& name, std::string_view password, std::string& error) {
    std::string hash;
    if (!IsGoodPassword(password, error) || !Hash(password, hash, error))
        return false;
    return Change(
        [&](UserData& data, std::string& fault) {
            UserRecord* const user = Find(data, name, fault);
            if (user == nullptr)
                return false;
            user->hash = hash;
            data.failures.erase(FailureKey(data, name));
            return true;
        },
        error);
}

bool CUserStore::Remove(const std::string& name, std::string& error) {
    return Change(
        [&](UserData& data, std::string& fault) {
            if (Find(data, name, fault) == nullptr)
                return false;
            data.users.erase(name);
            return true;
        },
        error);
}

bool CUserStore::SetMember(const std::string& name, const std::string& group, bool isMember, std::string& error) {
    if (!IsGood(group, GROUP_NAME_LIMIT, "group", error))
        return false;
    return Change(
        [&](UserData& data, std::string& fault) {
            UserRecord* const user = Find(data, name, fault);
            if (user == nullptr)
                return false;
            if (isMember) {
                user->groups.insert(group);
                return true;
            }
            if (user->groups.erase(group) != 0)
                return true;
            fault = "\"" + name + "\" is no member of \"" + group + "\"";
            return false;
        },
        error);
}

bool CUserStore::List(std::vector<UserInfo>& users, std::string& error) const {
    UserData data;
    if (Read(data, error) == FileState::Bad)
        return false;
    users.clear();
    for (const auto& [name, record] : data.users)
        users.push_back({name, {record.groups.begin(), record.groups.end()}});
    return true;
}

bool CUserStore::IsMember(const std::string& name, const std::string& group) const {
    UserData data;
    std::string ignored;
    if (Read(data, ignored) != FileState::Good)
        return false;
    const auto user = data.users.find(name);
    return user != data.users.end() && user->second.groups.contains(group);
}

LoginFailures CUserStore::FailuresOf(const UserData& data, const std::string& key) const {
    const auto written = data.failures.find(key);
    LoginFailures failures = written != data.failures.end() ? written->second : LoginFailures{};
    const std::lock_guard lock(m_mutex);
    const auto unwritten = m_unwritten.find(key);
    if (unwritten != m_unwritten.end() && unwritten->second.count > failures.count)
        failures = unwritten->second;
    return failures;
}

LoginResult CUserStore::Login(const std::string& name, std::string_view password) {
    const std::string nobody = GetNobody();
    LoginResult result;
    std::string hash;
    if (!Begin(name, hash, result))
        return result;
    const bool isUser = !hash.empty();
    if (!isUser)
        hash = nobody;
    if (IsPasswordOf(hash, password) && isUser) {
        Succeed(name, password, hash);
        return {LoginOutcome::Ok, 0, {}};
    }
    return {LoginOutcome::Refused, 0, REFUSED};
}

// Made at the first login, whoever's that is.
std::string CUserStore::GetNobody() {
    const std::lock_guard lock(m_mutex);
    std::string ignored;
    if (m_nobody.empty())
        Hash("nobody's password", m_nobody, ignored);
    return m_nobody;
}

// Counts the attempt as failed before the password is looked at, so that attempts at the same time gain nothing.
// hash stays empty for an unknown user. False: the login ends here.
bool CUserStore::Begin(const std::string& name, std::string& hash, LoginResult& result) {
    bool mayGoOn = false;
    std::string key;
    LoginFailures counted;
    const auto look = [&](UserData& data, std::string&) {
        if (data.users.empty()) {
            result = {LoginOutcome::NoUsers, 0, NO_USERS_TEXT};
            return false;
        }
        const std::int64_t now = m_settings.now();
        key = FailureKey(data, name);
        LoginFailures failures = FailuresOf(data, key);
        const std::int64_t wait = LoginDelay(failures, now);
        if (wait > 0) {
            result = {LoginOutcome::Delayed, wait, LoginDelayText(wait)};
            const bool clockWasSetBack = failures.last > now;
            failures.last = std::min(failures.last, now);
            data.failures[key] = failures;
            return clockWasSetBack;
        }
        const auto user = data.users.find(name);
        if (user != data.users.end())
            hash = user->second.hash;
        mayGoOn = true;
        counted = {AreForgotten(failures, now) ? 1 : failures.count + 1, now};
        data.failures[key] = counted;
        return true;
    };
    std::string error;
    const bool isWritten = Change(look, error);
    if (mayGoOn && !isWritten) {
        // The operators of a plant are not locked out by a full disk.
        const std::lock_guard lock(m_mutex);
        m_unwritten[key] = counted;
    }
    if (!mayGoOn && result.text.empty())
        result = {LoginOutcome::Unusable, 0, "Nobody can log in. " + error};
    return mayGoOn;
}

void CUserStore::Succeed(const std::string& name, std::string_view password, const std::string& hash) {
    std::string fresh;
    std::string ignored;
    if (IsCheaper(hash, m_settings.cost))
        Hash(password, fresh, ignored);
    std::string key;
    Change(
        [&](UserData& data, std::string&) {
            key = FailureKey(data, name);
            data.failures.erase(key);
            const auto user = data.users.find(name);
            // Not when somebody has set another password meanwhile.
            if (!fresh.empty() && user != data.users.end() && user->second.hash == hash)
                user->second.hash = fresh;
            return true;
        },
        ignored);
    const std::lock_guard lock(m_mutex);
    m_unwritten.erase(key);
}
