// Encodings that the system knows (iconv), to Unicode. The system's calls are kept in this pair of files. Any thread;
// each keeps the converter that it used last.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace bacnet {

// Name of a code page's encoding by the number that Microsoft gave it, which the standard uses; empty for 0 and 65535.
std::string EncodingOfCodePage(unsigned page);

// The system's name for what users write: "cp932" or "932" for a code page, "utf-8", "iso-8859-1", "ucs-2", "ucs-4"
// (both with the high octet first), "jis-x-0208" for bare pairs of 7-bit octets, and whatever else the system knows.
// Empty when it does not know that.
std::string FindEncoding(const std::string& name);

// Calls put for each character; one that is none gives U+FFFD and costs one octet. False, and nothing is put, when the
// system does not know the encoding. strict: false also where an octet is wrong; the characters before it are put.
bool DecodeEncoding(const std::string& encoding, std::span<const std::uint8_t> octets, bool strict,
                    const std::function<void(char32_t)>& put);

} // namespace bacnet
