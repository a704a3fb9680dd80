// The stack in a command's own process, for commands where no instance runs on the data folder: it opens the ports of
// the configuration, so none but this process may have them. Main thread.
#pragma once

#include "host/Config.h"
#include "host/ControlProtocol.h"
#include "host/LockFile.h"

#include <functional>
#include <memory>
#include <string>

namespace bacnet {
class BacnetClient;
}

class CLocalStation {
public:
    CLocalStation(const Config& config, std::string folder);
    ~CLocalStation();

    // Opens the ports (none of them without withNetwork) and reads the directory, if there is one. Touches no file.
    bool Open(bool withNetwork, std::string& error);
    // Rows go to onRow as they come.
    ControlReply Run(const ControlRequest& request, const std::function<void(const std::string&)>& onRow);

private:
    bool ClaimFolder(std::string& error);

    const Config m_config;
    const std::string m_folder;
    CLockFile m_lock; // from the first change of the directory on
    std::unique_ptr<bacnet::BacnetClient> m_client;
};
