#include "bench/Harness.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace bench {
namespace {

constexpr int kRuns = 5;

double Ratio(const Figure& figure, const Sample& sample) {
    const double above = figure.better == Better::Higher ? sample.value : sample.limit;
    const double below = figure.better == Better::Higher ? sample.limit : sample.value;
    return below > 0 ? above / below : 0;
}

bool Selected(const Figure& figure, const std::string& name) {
    return figure.name == name || figure.name.substr(0, figure.name.find('/')) == name;
}

} // namespace

const std::vector<Figure>& Figures() {
    static const std::vector<Figure> figures = [] {
        std::vector<Figure> all;
        AddReadPropertyFigures(all);
        AddReadMultipleFigures(all);
        AddFileFigures(all);
        AddDiscoveryFigures(all);
        AddIsolationFigures(all);
        AddReadRangeFigures(all);
        AddCodecFigures(all);
        AddDirectoryFigures(all);
        AddBrowserFigures(all);
        AddPropertyListFigures(all);
        AddPropertyCommandFigures(all);
        AddHistoryFigures(all);
        AddTriggerFigures(all);
        AddConsoleFigures(all);
        AddPeerFigures(all);
        return all;
    }();
    return figures;
}

int PrintTable(const std::vector<std::string>& names) {
    for (const auto& name : names) {
        if (std::ranges::none_of(Figures(), [&](const Figure& f) { return Selected(f, name); })) {
            fmt::print(stderr, "bdc-bench: no figure is named {}\n", name);
            return 2;
        }
    }
    bool allOk = true;
    for (const auto& figure : Figures()) {
        if (!names.empty() && std::ranges::none_of(names, [&](const auto& n) { return Selected(figure, n); }))
            continue;
        std::array<Sample, kRuns> samples;
        std::ranges::generate(samples, figure.measure);
        std::ranges::sort(samples, {}, [&](const Sample& s) { return Ratio(figure, s); });
        const Sample& median = samples[kRuns / 2];
        const double ratio = Ratio(figure, median);
        const bool ok = ratio >= figure.floor;
        allOk = allOk && ok;
        fmt::print("{}\t{:.4g}\t{}\t{:.4g}\t{:.3f}\t{:.3g}\t{}\n", figure.name, median.value, figure.unit, median.limit,
                   ratio, figure.floor, ok ? "ok" : "short");
        std::fflush(stdout);
    }
    return allOk ? 0 : 1;
}

} // namespace bench
