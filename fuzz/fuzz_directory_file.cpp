// The directory file: octets as the payload of a file whose checksum is right.
#include "platform/stack/directory/Crc32.h"
#include "platform/stack/directory/DirFile.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

std::string Little(std::uint64_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i, value >>= 8)
        text += static_cast<char>(value & 0xFF);
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string path =
        (std::filesystem::temp_directory_path() / ("fuzz-directory-" + std::to_string(::getpid()))).string();
    const std::string payload(reinterpret_cast<const char*>(data), size);
    std::ofstream(path, std::ios::binary)
        << "BACDIR\r\n"
        << Little(1, 4) << payload << Little(size, 8) << Little(bacnet::directory::Crc32(payload), 4);
    bacnet::directory::Devices devices;
    if (!bacnet::directory::ReadFile(path, devices) && !devices.empty())
        std::abort();
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    return 0;
}
