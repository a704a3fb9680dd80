// The fields of the editor of station addresses. Pure functions, any thread.
#pragma once

#include "api/bacnet/Types.h"

#include <array>
#include <string>

inline constexpr std::size_t MAC_FIELDS = 7;

struct AddressTexts {
    bool isRemote;
    std::string network;
    std::array<std::string, MAC_FIELDS> mac; // one byte each, in decimal; the address ends before the first empty one
};

AddressTexts ShowAddress(const BACSTAC_ADDRESS& value);

// There is no bad text: of a number the low bits count, what is none is 0. What shows as the value does is left alone.
void StoreAddress(const AddressTexts& texts, BACSTAC_ADDRESS& value);
