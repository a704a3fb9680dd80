#include "platform/kernel/users/Password.h"

#include "base/NumberText.h"

#include <sodium.h>

namespace {

constexpr std::uint64_t MEMORY_LIMIT = std::uint64_t{1} << 30;
constexpr std::uint64_t PASSES_LIMIT = 100;
constexpr std::uint64_t MEMORY_UNIT = 1024; // of the text form, in octets

// libsodium asks for it before anything else; it may be called again and again, by any thread.
bool IsReady() {
    return sodium_init() >= 0;
}

// The number behind "NAME=" up to the next "," or "$"; 0 when there is none.
std::uint64_t Parameter(std::string_view hash, std::string_view name) {
    const std::size_t at = hash.find(name);
    if (at == std::string_view::npos)
        return 0;
    const std::string_view rest = hash.substr(at + name.size());
    return ParseAs<std::uint64_t>(rest.substr(0, rest.find_first_of(",$"))).value_or(0);
}

PasswordCost CostOf(std::string_view hash) {
    return {Parameter(hash, "$m=") * MEMORY_UNIT, Parameter(hash, ",t=")};
}

} // namespace

bool HashPassword(std::string_view password, const PasswordCost& cost, std::string& hash) {
    char text[crypto_pwhash_STRBYTES];
    if (!IsReady() || crypto_pwhash_str_alg(text, password.data(), password.size(), cost.passes, cost.memory,
                                            crypto_pwhash_ALG_ARGON2ID13) != 0)
        return false;
    hash = text;
    return true;
}

bool IsPasswordOf(const std::string& hash, std::string_view password) {
    return IsReady() && crypto_pwhash_str_verify(hash.c_str(), password.data(), password.size()) == 0;
}

bool IsPasswordHash(const std::string& hash) {
    if (!hash.starts_with("$argon2id$") || hash.size() >= crypto_pwhash_STRBYTES)
        return false;
    const PasswordCost cost = CostOf(hash);
    return cost.memory <= MEMORY_LIMIT && cost.passes <= PASSES_LIMIT && IsReady() &&
           crypto_pwhash_str_needs_rehash(hash.c_str(), crypto_pwhash_OPSLIMIT_MIN, crypto_pwhash_MEMLIMIT_MIN) >= 0;
}

bool IsCheaper(const std::string& hash, const PasswordCost& cost) {
    const PasswordCost own = CostOf(hash);
    return own.memory < cost.memory || own.passes < cost.passes;
}
