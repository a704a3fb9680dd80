// The console: how long it takes to start and to hear a message, what it costs while nobody uses it, and how long its
// window stands still. Measured in a program of its own, bdc-bench-console, so that no other figure is taken in a
// process that has loaded Qt.
#include "bench/Harness.h"
#include "bench/Site.h"

#include <fmt/format.h>

#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>

namespace bench {
namespace {

// The number at this place of what the program prints.
double Probe(const char* what, unsigned place) {
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const std::string command =
        fmt::format("QT_QPA_PLATFORM=offscreen '{}' {}", (folder / "bdc-bench-console").string(), what);
    std::FILE* const pipe = popen(command.c_str(), "r");
    std::array<double, 2> numbers{};
    const int count = pipe == nullptr ? 0 : std::fscanf(pipe, "%lf %lf", &numbers[0], &numbers[1]);
    if (pipe == nullptr || pclose(pipe) != 0 || count <= static_cast<int>(place))
        Fail("bdc-bench-console does not tell how the console does");
    return numbers[place];
}

struct ConsoleFigure {
    const char* name;
    const char* unit;
    const char* probe;
    unsigned place;
    double limit;
    const char* what;
};

constexpr ConsoleFigure kFigures[] = {
    {"console/start", "ms", "start", 0, 400,
     "from Start to the hidden console with nine pages, on the offscreen platform, in a new process each time; beside "
     "400 ms"},
    {"console/post", "us", "post", 0, 100,
     "from PostMessageW to its handler on the console thread: median of 500 posts, 2 ms apart; beside 100 us"},
    {"console/idle_cpu", "ms/s", "idle", 0, 5,
     "processor time of a process with an idle console, of 2 s; beside 5 ms a second"},
    {"console/memory", "MB", "idle", 1, 120, "resident memory of a process with an idle console; beside 120 MB"},
    {"browser/key_held", "ms", "browser", 0, 50,
     "longest pause of the window while the key is held in the tree of 100,000 objects, with stops at devices that "
     "hang in a read; beside 50 ms"},
    {"browser/status_answers", "ms", "browser", 1, 50,
     "longest pause of the window while 100 devices a second answer for their status; beside 50 ms"},
    {"editors/open_largest", "ms", "editors", 0, 100,
     "from the press of Edit to the painted dialog, on a value of 131072 bytes: the slowest of all lists and single "
     "values, each the quickest of three openings; beside 100 ms"},
};

} // namespace

void AddConsoleFigures(std::vector<Figure>& figures) {
    for (const ConsoleFigure& figure : kFigures)
        figures.push_back({figure.name, figure.unit, Better::Lower, 1, figure.what, [&figure]() -> Sample {
                               return {Probe(figure.probe, figure.place), figure.limit};
                           }});
}

} // namespace bench
