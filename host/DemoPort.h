// A UDP port for the demonstration alone. Broadcasts on the loopback network reach every process of the machine that
// listens on the same port; so two demonstrations, or one beside a real driver, must not share theirs.
#pragma once

#include "base/FileDescriptor.h"

#include <cstdint>
#include <string>

class CDemoPort {
public:
    // wanted 0: the standard's port, or the next one that nobody uses. The claim lasts as long as this object.
    bool Claim(std::uint16_t wanted, std::string& error);
    std::uint16_t Number() const { return m_number; }

private:
    bool TryClaim(std::uint16_t port);

    CFileDescriptor m_claim;
    std::uint16_t m_number = 0;
};
