// The history's state file: first octet the length of the key, then the key, then the file. A write that succeeds is
// read back.
#include "fuzz/ScratchFile.h"
#include "module/history/ProfileFile.h"

#include <algorithm>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const std::size_t length = std::min<std::size_t>(data[0], size - 1);
    const std::string key(reinterpret_cast<const char*>(data) + 1, length);
    const ScratchFile scratch(data + 1 + length, size - 1 - length);
    const std::string& path = scratch.Path();
    const CProfileFile file(path, "Trend position");
    file.Read("HistoryManager", key);
    file.Read("Trend position", key);
    if (!key.empty() && std::ranges::all_of(key, [](unsigned char c) { return c > ' ' && c < 127; })) {
        const std::string value = "01/03/2026 12:05:00.500";
        if (file.Write("Trend position", key, value) && file.Read("Trend position", key) != value)
            std::abort();
    }
    return 0;
}
