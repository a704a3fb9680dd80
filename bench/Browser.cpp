// The browser's tree over a directory of 100,000 objects.
#include "bench/Directories.h"
#include "bench/Harness.h"
#include "bench/Site.h"

#include "api/bacnet/Dir.h"
#include "module/browser/BrowserTree.h"
#include "module/browser/LocaleOrder.h"

#include <chrono>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned kDevices = 1000;
constexpr unsigned kObjectsOfADevice = 100;

constexpr double kRebuildMilliseconds = 150;
constexpr double kFilterMilliseconds = 250;
constexpr double kMegabytes = 150;

double MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// What a rebuild costs, of everything or of what a filter leaves.
double Rebuild(const std::string& filter) {
    const CBACnetDir directory = NewDirectory(kDevices, kObjectsOfADevice);
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

// Of a tree that the operator has opened to its last item, in megabytes on top of the directory.
double Memory() {
    const CBACnetDir directory = NewDirectory(kDevices, kObjectsOfADevice);
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
}

} // namespace bench
