// The browser's tree over a directory of 100,000 objects, and its list's first row.
#include "bench/Harness.h"
#include "bench/Site.h"

#include "api/bacnet/Dir.h"
#include "api/bacnet/Enums.h"
#include "module/browser/BrowserTree.h"
#include "module/browser/LocaleOrder.h"
#include "module/browser/PropertyListReader.h"

#include <fmt/format.h>

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned kDevices = 1000;
constexpr unsigned kObjectsOfADevice = 100;

constexpr double kRebuildMilliseconds = 150;
constexpr double kFilterMilliseconds = 250;
constexpr double kMegabytes = 150;
constexpr double kFirstRowMilliseconds = 30;

CBACnetDir MakeDirectory() {
    CBACnetDir directory;
    for (unsigned device = 1; device <= kDevices; ++device) {
        CBACnetDev made;
        made.SetInst(device);
        made.SetName(fmt::format("Building {} controller {}", device / 20, device % 20));
        for (unsigned object = 1; object <= kObjectsOfADevice; ++object) {
            CBACnetObj point;
            point.SetId({object % 2 != 0 ? OBJ_ANALOG_INPUT : OBJ_BINARY_VALUE, object});
            point.SetName(fmt::format("AHU{:02}.Zone{:03}.SupplyAirTemp", device % 100, object));
            made.AddObj(std::move(point));
        }
        directory.AddDev(made);
    }
    return directory;
}

double MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// What a rebuild costs, of everything or of what a filter leaves.
double Rebuild(const std::string& filter) {
    const CBACnetDir directory = MakeDirectory();
    const CLocaleOrder order;
    CBrowserTree tree(order);
    tree.Build(directory, 1); // there is one before
    const auto start = Clock::now();
    CBACnetDir shown = directory;
    if (!filter.empty())
        directory.Filter(filter, shown);
    tree.Build(shown, 1);
    const double milliseconds = MillisecondsSince(start);
    if (tree.GetDevices().size() != kDevices)
        Fail("devices are missing in the tree");
    return milliseconds;
}

double BytesInUse() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

// Of a tree that the operator has opened to its last item, in megabytes on top of the directory.
double Memory() {
    const CBACnetDir directory = MakeDirectory();
    const CLocaleOrder order;
    const double before = BytesInUse();
    CBrowserTree tree(order);
    tree.Build(directory, 1);
    std::size_t objects = 0;
    for (const auto& [device, item] : tree.GetDevices())
        for (const auto& type : tree.GetChildren(*item))
            objects += tree.GetChildren(*type).size();
    if (objects != std::size_t{kDevices} * kObjectsOfADevice)
        Fail("objects are missing in the tree");
    return (BytesInUse() - before) / 1e6;
}

// A window that notes its first row; what is posted to it is run at once.
class FirstRow final : public IPropertyListView, public IGuiQueue {
public:
    void Post(std::function<void()> call) override {
        const std::lock_guard lock(m_mutex);
        call();
    }
    void BeginReading(const std::string&, unsigned) override {}
    void SetSource(const std::string&, unsigned) override {}
    void SetProperty(const std::string&, unsigned) override {}
    void AddRow(const PropertyRow&) override {
        if (m_first == Clock::time_point())
            m_first = Clock::now();
    }
    void ClearRows() override {}
    void EndReading() override {
        m_isOver = true;
        m_end.notify_all();
    }
    Clock::time_point Wait() {
        std::unique_lock lock(m_mutex);
        m_end.wait_for(lock, std::chrono::seconds(10), [this] { return m_isOver; });
        return m_first;
    }

private:
    std::recursive_mutex m_mutex; // guards all below
    std::condition_variable_any m_end;
    bool m_isOver = false;
    Clock::time_point m_first;
};

// From the start of a read to its first row, less the device's answer to the same request.
double FirstRowMilliseconds() {
    sim::Counts counts;
    counts.Trends = 0;
    counts.Points = 1;
    counts.OnlyReal = true;
    counts.FirstIp = LoopbackBlock();
    const sim::SimulatorConfig config = sim::GenerateConfig(counts);
    const SimulatedSite site(config, -1);
    const auto client = OpenClient(config);
    const unsigned device = config.Devices[0].Instance;
    constexpr BACSTAC_OBJECT_ID kPoint{OBJ_ANALOG_INPUT, 1};
    std::uint32_t units = 0;
    const auto asked = Clock::now();
    if (client->ReadProperty(device, kPoint, 117, BACSTAC_NO_INDEX, &units, sizeof units, nullptr) != BACSTAC_OK)
        Fail("the device does not answer");
    const double answer = MillisecondsSince(asked);
    const auto view = std::make_shared<FirstRow>();
    CPropertyListReader reader(*client, *view, view);
    const auto start = Clock::now();
    reader.StartReading(device, kPoint);
    const Clock::time_point first = view->Wait();
    if (first == Clock::time_point())
        Fail("no row came");
    return std::max(0.001, std::chrono::duration<double, std::milli>(first - start).count() - answer);
}

void Add(std::vector<Figure>& figures, const char* name, const char* unit, double limit, const char* what,
         std::function<double()> measure) {
    figures.push_back({name, unit, Better::Lower, 1, what, [measure = std::move(measure), limit] {
                           return Sample{measure(), limit};
                       }});
}

} // namespace

void AddBrowserFigures(std::vector<Figure>& figures) {
    Add(figures, "browser/rebuild_100k", "ms", kRebuildMilliseconds,
        "the tree over 100,000 objects on 1,000 devices built anew, beside 150 ms", [] { return Rebuild(""); });
    Add(figures, "browser/filter_100k", "ms", kFilterMilliseconds,
        "the same behind a filter that leaves each device, beside 250 ms", [] { return Rebuild("zone007 supply"); });
    Add(figures, "browser/memory_100k", "MB", kMegabytes,
        "memory of the same tree opened to its last item, on top of the directory's, beside 150 MB", Memory);
    Add(figures, "browser/first_row", "ms", kFirstRowMilliseconds,
        "from the start of a property list to its first row, less one answer of the device, beside 30 ms",
        FirstRowMilliseconds);
}

} // namespace bench
