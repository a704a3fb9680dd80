// The settings file: what was read can be written and read again, and is then the same.
#include "fuzz/ScratchFile.h"
#include "module/console/SettingsStore.h"

#include <cstdlib>
#include <iterator>
#include <vector>

namespace {

std::string Stored(const std::string& path, AllPropPages& pages) {
    if (!storeAllProp(path.c_str(), pages))
        std::abort();
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ScratchFile scratch(data, size);
    const std::string& path = scratch.Path();
    AllPropPages pages;
    std::vector<CEventFilter> filters;
    try {
        if (!loadAllProps(path.c_str(), pages, filters))
            std::abort(); // it can be read, whatever it holds
    } catch (const CSettingsArchiveError&) {
        return 0; // ends inside a value
    }
    const std::string first = Stored(path, pages);
    AllPropPages again;
    if (!loadAllProps(path.c_str(), again, filters) || Stored(path, again) != first)
        std::abort();
    return 0;
}
