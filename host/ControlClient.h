// A command's end of the control socket. Blocks the caller.
#pragma once

#include "host/ControlProtocol.h"

#include <chrono>
#include <functional>
#include <string>

class CControlClient {
public:
    // Whether an instance accepts requests on this data folder.
    static bool HasInstance(const std::string& folder);

    // Asks the instance on this data folder; rows are given to onRow (a JSON document each) as they come. When no
    // instance answers, or silence lasts longer than the time, the reply's code is EXIT_FAILED and its error says so.
    static ControlReply Ask(const std::string& folder, const ControlRequest& request,
                            const std::function<void(const std::string&)>& onRow,
                            std::chrono::milliseconds silence = std::chrono::seconds(30));
};
