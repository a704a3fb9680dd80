// Figures: each is measured beside a limit or a peer in the same run.
//
// A figure's measurement gives a pair (value, limit). The table runs each measurement five times and prints the run
// whose ratio is the median. The ratio always says how good the value is: at least the floor is ok.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Sample {
    double value = 0;
    double limit = 0;
};

// How value and limit become a ratio.
enum class Better {
    Higher, // value / limit: a rate beside the rate of a peer
    Lower,  // limit / value: a time or a size beside the most it may be
};

struct Figure {
    std::string name; // group/figure
    std::string unit; // of value and limit
    Better better;
    double floor;     // least ratio that is ok; 0 when the figure is only shown
    std::string what; // one line: what is measured, how it is pinned, what the limit is
    std::function<Sample()> measure;
};

// Every figure of the program, in the order of the table.
const std::vector<Figure>& Figures();

// Prints one tab-separated line a figure: name, value, unit, limit, ratio, floor, "ok" or "short". names selects
// figures by exact name or by group; none selects all. Returns 0 when all are ok, 1 when one is short, 2 when a name is
// unknown.
int PrintTable(const std::vector<std::string>& names);

// One measurement's groups of figures, each in a file of its own.
void AddReadPropertyFigures(std::vector<Figure>& figures);
void AddReadMultipleFigures(std::vector<Figure>& figures);
void AddReadRangeFigures(std::vector<Figure>& figures);
void AddFileFigures(std::vector<Figure>& figures);
void AddDiscoveryFigures(std::vector<Figure>& figures);
void AddIsolationFigures(std::vector<Figure>& figures);
void AddCodecFigures(std::vector<Figure>& figures);
void AddDirectoryFigures(std::vector<Figure>& figures);
void AddBrowserFigures(std::vector<Figure>& figures);
void AddPropertyListFigures(std::vector<Figure>& figures);
void AddPropertyCommandFigures(std::vector<Figure>& figures);
void AddHistoryFigures(std::vector<Figure>& figures);
void AddTriggerFigures(std::vector<Figure>& figures);
void AddConsoleFigures(std::vector<Figure>& figures);
void AddPeerFigures(std::vector<Figure>& figures);

} // namespace bench
