// BACnet stacks of other people, JavaScript packages that run in Node.js, as peers of ours. The scripts in
// tests/interop/node give them one interface; packaging/install-node-packages installs what the lock file there pins.
#pragma once

#include "tests/unit/host/Process.h"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <memory>
#include <string>

namespace interop {

// A folder for the files that scripts read.
class PeerFolder {
public:
    PeerFolder();
    ~PeerFolder();
    PeerFolder(const PeerFolder&) = delete;
    PeerFolder& operator=(const PeerFolder&) = delete;
    std::string Put(const std::string& name, const nlohmann::json& content) const; // gives the path

private:
    std::filesystem::path m_path;
};

// Empty when Node.js and the packages are there, otherwise what is missing and how to get it. A test fails then: a
// machine that cannot talk to other stacks has not run the suite.
std::string WhyNoPeers();

// client.js: does the steps as a client that is bound to address, and gives their results.
nlohmann::json RunSteps(const std::string& package, const std::string& address, std::uint16_t port,
                        const nlohmann::json& steps);

// server.js: a device, from the constructor's end to the destructor.
class NodeDevice {
public:
    NodeDevice(const std::string& package, const std::string& address, std::uint16_t port, unsigned instance,
               const nlohmann::json& objects);
    bool Started() const { return m_started; }

private:
    PeerFolder m_folder;
    CProcess m_process;
    bool m_started;
};

} // namespace interop
