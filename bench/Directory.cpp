// A directory of a million objects: its file, its filter and its memory.
#include "bench/Child.h"
#include "bench/Directories.h"
#include "bench/Harness.h"
#include "bench/Site.h"

#include "api/bacnet/Dir.h"
#include "api/bacnet/Enums.h"

#include <fmt/format.h>

#include <malloc.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned kDevices = 1000;
constexpr unsigned kObjectsOfADevice = 1000;
constexpr double kObjects = double{kDevices} * kObjectsOfADevice;

constexpr double kFileSeconds = 2;
constexpr double kFilterSeconds = 0.5;
constexpr double kBytesOfAnObject = 300;
constexpr double kBytesOfACopy = 30;

// Seconds of the steps, and bytes of memory, of one process.
struct Result {
    double save = 0;
    double load = 0;
    double filter = 0;
    double bytesOfAnObject = 0;
    double bytesOfACopy = 0;
};

template <class Work>
double Seconds(Work work) {
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

Result Run(const std::string& path) {
    Result result;
    {
        const CBACnetDir made = NewDirectory(kDevices, kObjectsOfADevice);
        result.save = Seconds([&] {
            if (!made.Save(path))
                Fail("the directory cannot be saved");
        });
    }
    malloc_trim(0);
    const double empty = BytesInUse();
    CBACnetDir loaded;
    result.load = Seconds([&] {
        if (!loaded.Load(path))
            Fail("the directory cannot be loaded");
    });
    const double one = BytesInUse();
    result.bytesOfAnObject = (one - empty) / kObjects;
    const CBACnetDir copy = loaded;
    result.bytesOfACopy = (BytesInUse() - one) / kObjects;
    CBACnetDir filtered;
    result.filter = Seconds([&] { copy.Filter("zone007 supply", filtered); });
    std::vector<BACSTAC_OBJECT_ID> found;
    filtered.GetObjLst(kDevices, found, BACSTAC_ALL_TYPES);
    if (found.size() != 1 || !copy.FindObj(1, BACSTAC_OBJECT_ID{OBJ_BINARY_VALUE, 2}))
        Fail("the directory is not what was saved");
    return result;
}

// In a process of its own, whose memory is the directory's.
Result Measure() {
    const std::string path =
        (std::filesystem::temp_directory_path() / fmt::format("bdc-bench-{}.directory", getpid())).string();
    int ends[2];
    if (pipe(ends) != 0)
        Fail("no pipe");
    const Child child([&] {
        const Result result = Run(path);
        if (write(ends[1], &result, sizeof result) != sizeof result)
            std::_Exit(2);
    });
    Result result;
    close(ends[1]);
    const bool complete = read(ends[0], &result, sizeof result) == sizeof result;
    close(ends[0]);
    std::filesystem::remove(path);
    if (!complete)
        Fail("the directory was not measured");
    return result;
}

void Add(std::vector<Figure>& figures, const char* name, const char* unit, double limit, const char* what,
         double Result::*field) {
    figures.push_back({name, unit, Better::Lower, 1, what, [field, limit] { return Sample{Measure().*field, limit}; }});
}

} // namespace

void AddDirectoryFigures(std::vector<Figure>& figures) {
    Add(figures, "directory/load_1M", "s", kFileSeconds, "the file of 1,000,000 objects on 1,000 devices, beside 2 s",
        &Result::load);
    Add(figures, "directory/save_1M", "s", kFileSeconds, "the same, written durably, beside 2 s", &Result::save);
    Add(figures, "directory/filter_1M", "s", kFilterSeconds, "two words, one object in a thousand found, beside 0.5 s",
        &Result::filter);
    Add(figures, "directory/bytes_per_object", "B", kBytesOfAnObject,
        "memory of an object with name and description, beside 300 B", &Result::bytesOfAnObject);
    Add(figures, "directory/bytes_per_copied_object", "B", kBytesOfACopy,
        "memory that a copy of the directory adds, per object, beside 30 B", &Result::bytesOfACopy);
}

} // namespace bench
