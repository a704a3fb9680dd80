// `bdc demo`: a site of simulated devices on the loopback network, and the main job run on it: a tag goes from 0 to 1,
// and the records of all trend logs land in the history, from where the last run stopped.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

struct DemoOptions {
    bool once = false;     // end when the transfer is done
    bool headless = false; // no window
    bool json = false;
    std::optional<unsigned> devices; // see DemoCounts; what is not given is as in the last run
    std::optional<unsigned> trends;
    std::optional<unsigned> records;
    std::uint16_t port = 0; // UDP; 0: the standard's, or the next free one
    std::string data;       // folder; empty: the default one
};

// Exit code: EXIT_DONE only if every device was found and the history holds exactly the records of the logs.
int RunDemo(const DemoOptions& options);
