// One transfer of a station in a process of its own, for tests that kill it or take the disk away from it:
//
//     integration_station_process FOLDER BIND-ADDRESS FIRST-IP PORT TRENDS [FILE-SIZE-LIMIT]
//
// The site is the one that MakeChildSite makes of the numbers. Writes "started" when the transfer begins, then the
// error lines. Ends with 0 without errors, 3 with some, 2 when it cannot run.
#include "tests/integration/ChildSite.h"
#include "tests/integration/Station.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include <sys/resource.h>

namespace {

// As on a full disk: a write beyond fails, and the process lives.
void LimitFileSize(const char* octets) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::strtoull(octets, nullptr, 10);
    setrlimit(RLIMIT_FSIZE, &limit);
}

int Run(int count, char** arguments) {
    integration::StationSettings settings;
    settings.folder = arguments[1];
    settings.bindAddress = arguments[2];
    settings.chunk = integration::CHILD_CHUNK;
    const sim::SimulatorConfig site =
        integration::MakeChildSite(static_cast<std::uint32_t>(std::strtoul(arguments[3], nullptr, 10)),
                                   static_cast<std::uint16_t>(std::strtoul(arguments[4], nullptr, 10)),
                                   static_cast<std::uint32_t>(std::strtoul(arguments[5], nullptr, 10)), 0);
    integration::Station station(site, integration::PlanTags(site), settings);
    if (count > 6)
        LimitFileSize(arguments[6]);
    station.Start();
    std::puts("started");
    std::fflush(stdout);
    int result = 0;
    for (const std::string& line : station.Finish()) {
        if (!line.starts_with("E: "))
            continue;
        std::puts(line.c_str());
        result = 3;
    }
    return result;
}

} // namespace

int main(int count, char** arguments) {
    if (count < 6)
        return 2;
    try {
        return Run(count, arguments);
    } catch (const std::exception& failure) {
        std::puts(failure.what());
        return 2;
    }
}
