// Password hashes: Argon2id (RFC 9106) in its text form, "$argon2id$v=19$m=65536,t=3,p=1$SALT$HASH". Any thread; each
// call takes the time and the memory that the hash asks for.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct PasswordCost {
    std::uint64_t memory = std::uint64_t{64} << 20; // octets
    std::uint64_t passes = 3;
};

// False: there is not enough memory.
bool HashPassword(std::string_view password, const PasswordCost& cost, std::string& hash);
// Also false when there is not enough memory.
bool IsPasswordOf(const std::string& hash, std::string_view password);
// A hash of the text form, with a cost that this machine can pay (1 GiB, 100 passes): a file may hold anything.
bool IsPasswordHash(const std::string& hash);
// The hash costs less memory or fewer passes than new ones do.
bool IsCheaper(const std::string& hash, const PasswordCost& cost);
