// A whole history transfer: 1,000,000 records of 20 trends, from simulated devices over UDP into SQLite.
#include "bench/BareHistory.h"
#include "bench/Harness.h"
#include "bench/PingPong.h"
#include "bench/Site.h"

#include "api/bacnet/Dir.h"
#include "api/bacnet/Log.h"
#include "module/console/Settings.h"
#include "module/history/Clock.h"
#include "module/history/HistoryManager.h"
#include "platform/historian/SqliteHistoryStore.h"
#include "platform/kernel/Kernel.h"
#include "tests/support/FakeDriver.h"

#include <fmt/format.h>

#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <memory>
#include <mutex>
#include <string>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kTrends = 20;
constexpr std::uint64_t kRecordsOfATrend = 50'000;
constexpr double kRecords = static_cast<double>(kTrends * kRecordsOfATrend);
constexpr double kPeakLimitMegabytes = 150;

sim::Counts Site() {
    sim::Counts counts;
    counts.Trends = kTrends;
    counts.Records = kRecordsOfATrend;
    counts.OnlyReal = true;
    counts.FirstIp = LoopbackBlock();
    return counts;
}

class ModuleLock final : public IModuleLock {
public:
    void Lock() override { m_mutex.lock(); }
    void Unlock() override { m_mutex.unlock(); }

private:
    std::mutex m_mutex;
};

class EndOfTransfer final : public CQilBAC_ErrLog::ISink {
public:
    void OnLine(CQilBAC_ErrLog::KIND, const std::string& text) override {
        if (text == "History: End of transfer")
            m_end.set_value(Clock::now());
    }
    Clock::time_point Wait() {
        auto end = m_end.get_future();
        if (end.wait_for(std::chrono::minutes(5)) != std::future_status::ready)
            Fail("the transfer does not end");
        return end.get();
    }

private:
    std::promise<Clock::time_point> m_end;
};

struct Result {
    double seconds = 0;
    double peakMegabytes = 0;
};

// The station: kernel, historian, stack and history manager, as the driver program puts them together.
class Station {
public:
    Station(const sim::Counts& counts, const std::filesystem::path& folder)
        : m_store(OpenStore(folder)), m_kernel(Settings(), *m_store), m_driver(m_events, m_kernel),
          m_client(OpenClient(counts)), m_statePath((folder / "history.ini").string()) {
        SelectTrends(counts, folder);
    }

    // The time from the start of the transfer to the line that tells its end; behind it the transfer only waits until
    // its connection to the kernel has closed.
    double Transfer() {
        CBACnetHistoryManager manager(&m_settings, {*m_client, m_driver, m_lock, m_clock}, m_statePath);
        const auto end = std::make_shared<EndOfTransfer>();
        CBacGeneral::Log().SetSink(end);
        const auto start = Clock::now();
        manager.StartTransfer(false, nullptr);
        const double seconds = std::chrono::duration<double>(end->Wait() - start).count();
        CBacGeneral::Log().SetSink(nullptr);
        WaitForTransfers(10'000);
        Check(manager);
        return seconds;
    }

private:
    static KernelSettings Settings() {
        KernelSettings settings;
        settings.stationName = "BENCH";
        settings.stationNumber = 1;
        return settings;
    }

    static std::unique_ptr<SqliteHistoryStore> OpenStore(const std::filesystem::path& folder) {
        HistoryError error;
        auto store = SqliteHistoryStore::Open(folder / "history.db", {}, error);
        if (!store)
            Fail(error.text);
        return store;
    }

    // Directory, tags and settings: everything the transfer needs to find the trends and their tags.
    void SelectTrends(const sim::Counts& counts, const std::filesystem::path& folder) {
        const auto config = sim::GenerateConfig(counts);
        const sim::DeviceConfig& site = config.Devices.front();
        CBACnetDev device;
        device.SetInst(site.Instance);
        device.SetAddr(m_client->GetDevAddr(site.Instance));
        auto selected = std::make_unique<CDeviceSettings>();
        selected->device = std::to_string(site.Instance);
        for (const auto& object : site.Objects) {
            if (!object.Log)
                continue;
            CBACnetObj trend;
            trend.SetId(object.Id);
            trend.SetName(object.Name);
            device.AddObj(trend);
            selected->objects.push_back(object.Name);
            AddTag(site.Instance, object);
        }
        m_settings.devices.push_back(std::move(selected));
        CBACnetDir directory;
        directory.AddDev(device);
        const std::string path = (folder / "directory").string();
        CBacGeneral::SetDirFileName(path);
        if (!directory.Save(path) || !m_client->LoadDir())
            Fail("the directory file cannot be written");
    }

    void AddTag(std::uint32_t device, const sim::ObjectConfig& trend) {
        const BACSTAC_DEV_OBJ_PROP_REF& logged = trend.Log->References.front();
        std::uint32_t id = 0;
        TagSettings settings;
        settings.name = trend.Name;
        settings.type = TAG_TYPE_ANALOG;
        if (m_kernel.AddTag(settings, id) != AddTagResult::Added)
            Fail("a tag cannot be added");
        CTag tag;
        tag.tagId = id;
        tag.device = device;
        tag.objectType = logged.ObjectId.Type;
        tag.objectInstance = logged.ObjectId.Instance;
        tag.property = logged.Property;
        m_driver.m_tags.RegisterTag(tag);
    }

    void Check(const CBACnetHistoryManager& manager) {
        HistoryError error;
        std::vector<HistoryCount> counts;
        m_store->Count(counts, error);
        std::uint64_t stored = 0;
        for (const auto& count : counts)
            stored += count.records;
        if (stored != kTrends * kRecordsOfATrend)
            Fail(fmt::format("{} records were stored; {}", stored, manager.GetStatus().Get().lastError));
    }

    std::unique_ptr<SqliteHistoryStore> m_store;
    Kernel m_kernel;
    CEventList m_events;
    CFakeDriver m_driver;
    std::unique_ptr<bacnet::BacnetClient> m_client;
    const std::string m_statePath;
    HistorySettings m_settings;
    ModuleLock m_lock;
    CSystemClock m_clock;
};

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "bdc-bench-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            Fail("no temporary folder");
        m_path = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(m_path); }
    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

// In a process of its own, so that its peak memory is the transfer's.
Result RunTransfer() {
    const sim::Counts counts = Site();
    const TemporaryFolder folder;
    const SimulatedSite site(counts, -1);
    int pipeEnds[2];
    if (pipe(pipeEnds) != 0)
        Fail("no pipe");
    const Child child([&] {
        Result result;
        result.seconds = Station(counts, folder.Path()).Transfer();
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        result.peakMegabytes = static_cast<double>(usage.ru_maxrss) / 1024;
        if (write(pipeEnds[1], &result, sizeof result) != sizeof result)
            std::_Exit(2);
    });
    Result result;
    close(pipeEnds[1]);
    const bool complete = read(pipeEnds[0], &result, sizeof result) == sizeof result;
    close(pipeEnds[0]);
    if (!complete)
        Fail("the transfer failed");
    return result;
}

Sample MeasureTransfer() {
    const double rate = kRecords / RunTransfer().seconds;
    const TemporaryFolder folder;
    const double bare =
        kRecords / BareInsertSeconds((folder.Path() / "bare.db").string(), kTrends, kRecordsOfATrend, 100);
    return {rate, bare};
}

} // namespace

void AddHistoryFigures(std::vector<Figure>& figures) {
    figures.push_back({"history/end_to_end", "records/s", Better::Higher, 0.5,
                       "1,000,000 records of 20 trends over UDP into SQLite, beside a bare loop that inserts the same "
                       "rows, 100 in a transaction, as durable; nothing is pinned",
                       MeasureTransfer});
    figures.push_back({"history/peak_memory", "MB", Better::Lower, 1.0,
                       "peak memory of the station in that transfer, beside 150 MB", [] {
                           return Sample{RunTransfer().peakMegabytes, kPeakLimitMegabytes};
                       }});
}

} // namespace bench
