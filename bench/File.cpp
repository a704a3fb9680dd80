// AtomicReadFile of a large file, read as the console reads one.
#include "bench/Harness.h"
#include "bench/PingPong.h"
#include "bench/Site.h"

#include "api/bacnet/Enums.h"
#include "api/bacnet/Services.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double kSeconds = 1.0;
constexpr std::uint32_t kFileSize = 1024 * 1024;
constexpr std::uint32_t kChunk = 1455; // what fits an answer of 1476 octets
constexpr int kFiles = 10;             // in one measurement
constexpr BACSTAC_OBJECT_ID kFile{OBJ_FILE, 1};
constexpr TripSizes kChunkTrip{24, 1475};

sim::SimulatorConfig OneFile() {
    sim::Counts counts;
    counts.Trends = 0;
    counts.FirstIp = LoopbackBlock();
    sim::SimulatorConfig config = sim::GenerateConfig(counts);
    sim::ObjectConfig object;
    object.Id = kFile;
    object.File.emplace();
    for (std::uint32_t i = 0; i < kFileSize; ++i)
        object.File->Octets += static_cast<char>(i * 7 + i / 251);
    config.Devices[0].Objects.push_back(object);
    return config;
}

// Requests that the file took.
unsigned ReadOnce(CBacGeneral& client, unsigned device, std::string& file) {
    unsigned requests = 0;
    std::uint32_t position = 0;
    for (bool end = false; !end; ++requests) {
        const BACSTAC_READ_FILE_SPEC spec{BACSTAC_FILE_STREAM, static_cast<std::int32_t>(position), kChunk};
        char chunk[kChunk];
        BACSTAC_READ_FILE_RESULT result{};
        result.Stream = {chunk, kChunk, 0};
        if (client.ReadFile(device, kFile, &spec, &result, nullptr) != BACSTAC_OK)
            Fail("the file cannot be read");
        file.replace(position, result.Stream.Length, chunk, result.Stream.Length);
        position += result.Stream.Length;
        end = result.EndOfFile != 0;
    }
    file.resize(position);
    return requests;
}

double ReadRate() {
    const auto config = OneFile();
    const SimulatedSite site(config, kOneCore.server);
    const PinnedScope pinned(kOneCore.client);
    const auto client = OpenClient(config);
    std::string file;
    unsigned requests = 0;
    const auto start = Clock::now();
    for (int i = 0; i < kFiles; ++i)
        requests += ReadOnce(*client, config.Devices[0].Instance, file);
    const std::chrono::duration<double> elapsed = Clock::now() - start;
    if (file != config.Devices[0].Objects.back().File->Octets)
        Fail("the file is not what the device holds");
    return requests / elapsed.count();
}

} // namespace

void AddFileFigures(std::vector<Figure>& figures) {
    figures.push_back({"file/read_1MiB", "reads/s", Better::Higher, 0.6,
                       "a stream of 1 MiB in reads of 1455 octets, beside the bare ping-pong of as many octets; all on "
                       "processor 0",
                       [] {
                           return Sample{ReadRate(), PingPongRate(kOneCore, 1, kSeconds, kChunkTrip)};
                       }});
}

} // namespace bench
