#include "platform/kernel/users/UserFile.h"

#include "base/Utf8.h"
#include "platform/kernel/users/Password.h"

#include <nlohmann/json.hpp>
#include <sodium.h>

#include <algorithm>
#include <array>

namespace {

using json = nlohmann::json;

constexpr std::string_view HEADER = "bdc-users 1 ";
constexpr std::size_t SALT_SIZE = crypto_generichash_KEYBYTES;
constexpr std::size_t DIGEST_SIZE = 16;
static_assert(DIGEST_SIZE >= crypto_generichash_BYTES_MIN && DIGEST_SIZE <= crypto_generichash_BYTES_MAX);

std::string Hexadecimal(const unsigned char* octets, std::size_t size) {
    std::string text(size * 2 + 1, '\0');
    sodium_bin2hex(text.data(), text.size(), octets, size);
    text.pop_back();
    return text;
}

bool IsHexadecimal(std::string_view text, std::size_t octets) {
    return text.size() == octets * 2 && text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

// BLAKE2b, keyed where there is a key.
std::string Digest(std::string_view text, std::string_view key = {}) {
    std::array<unsigned char, DIGEST_SIZE> digest{};
    crypto_generichash(digest.data(), digest.size(), reinterpret_cast<const unsigned char*>(text.data()), text.size(),
                       reinterpret_cast<const unsigned char*>(key.data()), key.size());
    return Hexadecimal(digest.data(), digest.size());
}

// Throws json::exception or std::out_of_range for a document of another form.
UserData FromJson(const json& document) {
    UserData data;
    data.salt = document.at("salt").get<std::string>();
    for (const auto& [name, user] : document.at("users").items()) {
        UserRecord& record = data.users[name];
        record.hash = user.at("hash").get<std::string>();
        record.groups = user.at("groups").get<std::set<std::string>>();
    }
    for (const auto& [key, failure] : document.at("failures").items())
        data.failures[key] = {failure.at("count").get<std::uint32_t>(), failure.at("last").get<std::int64_t>()};
    return data;
}

bool IsGood(const UserData& data) {
    const auto isGoodUser = [](const auto& entry) {
        return IsGoodName(entry.first, USER_NAME_LIMIT) && IsPasswordHash(entry.second.hash) &&
               std::ranges::all_of(entry.second.groups,
                                   [](const std::string& group) { return IsGoodName(group, GROUP_NAME_LIMIT); });
    };
    const auto isGoodFailure = [](const auto& entry) { return IsHexadecimal(entry.first, DIGEST_SIZE); };
    return IsHexadecimal(data.salt, SALT_SIZE) && std::ranges::all_of(data.users, isGoodUser) &&
           std::ranges::all_of(data.failures, isGoodFailure);
}

} // namespace

bool IsGoodName(std::string_view name, std::size_t limit) {
    if (name.empty() || name.size() > limit || name.front() == ' ' || name.back() == ' ')
        return false;
    while (!name.empty()) {
        const Utf8Character first = FirstUtf8(name);
        if (first.length == 0 || first.point < 0x20 || (first.point >= 0x7F && first.point < 0xA0))
            return false;
        name.remove_prefix(first.length);
    }
    return true;
}

UserData NewUserData() {
    [[maybe_unused]] const int isReady = sodium_init(); // the generator makes itself ready too, or ends the process
    std::array<unsigned char, SALT_SIZE> salt{};
    randombytes_buf(salt.data(), salt.size());
    UserData data;
    data.salt = Hexadecimal(salt.data(), salt.size());
    return data;
}

std::string FailureKey(const UserData& data, std::string_view name) {
    return Digest(name, data.salt);
}

std::string PrintUserFile(const UserData& data) {
    json document = {{"salt", data.salt}, {"users", json::object()}, {"failures", json::object()}};
    for (const auto& [name, record] : data.users)
        document["users"][name] = {{"hash", record.hash}, {"groups", record.groups}};
    for (const auto& [key, failure] : data.failures)
        document["failures"][key] = {{"count", failure.count}, {"last", failure.last}};
    const std::string body = document.dump(2) + "\n";
    return std::string(HEADER) + Digest(body) + "\n" + body;
}

bool ParseUserFile(const std::string& text, UserData& data, std::string& error) {
    const std::size_t lineEnd = text.find('\n');
    if (!text.starts_with("bdc-users ") || lineEnd == std::string::npos) {
        error = "is not a file of users";
        return false;
    }
    if (!text.starts_with(HEADER)) {
        error = "was written by another version of this program";
        return false;
    }
    const std::string body = text.substr(lineEnd + 1);
    if (text.substr(HEADER.size(), lineEnd - HEADER.size()) != Digest(body)) {
        error = "is damaged: its checksum does not match";
        return false;
    }
    try {
        UserData read = FromJson(json::parse(body));
        if (IsGood(read)) {
            data = std::move(read);
            return true;
        }
    } catch (const json::exception&) { // told below
    }
    error = "is damaged: it does not hold what it should";
    return false;
}
