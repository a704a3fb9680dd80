#include "tests/interop/NodePeer.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace interop {

namespace {

constexpr const char* SCRIPTS = BDC_SOURCE_DIR "/tests/interop/node/";
constexpr const char* INSTALLED = BDC_SOURCE_DIR "/build/node";

std::vector<std::string> Command(const char* script, const std::string& package, const std::string& file) {
    return {"/usr/bin/env", "node", std::string(SCRIPTS) + script, package, file};
}

// Dates of JavaScript are in the process' time zone.
std::vector<std::string> Environment() {
    return {std::string("NODE_PATH=") + INSTALLED + "/node_modules", "TZ=UTC0", "NODE_OPTIONS=", "DEBUG="};
}

nlohmann::json Site(const std::string& address, std::uint16_t port) {
    return {{"bind", address}, {"port", port}};
}

} // namespace

PeerFolder::PeerFolder() {
    std::string folder = (std::filesystem::temp_directory_path() / "bdc-peers-XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    m_path = folder;
}

PeerFolder::~PeerFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string PeerFolder::Put(const std::string& name, const nlohmann::json& content) const {
    const std::filesystem::path file = m_path / name;
    std::ofstream(file) << content.dump();
    return file.string();
}

std::string WhyNoPeers() {
    if (std::system("node --version >/dev/null 2>&1") != 0)
        return "Node.js is not installed: ./test installs it (packaging/install-packages test)";
    if (!std::filesystem::exists(std::string(INSTALLED) + "/installed.json"))
        return "the packages to talk to are not installed: ./test installs them (packaging/install-node-packages)";
    return {};
}

nlohmann::json RunSteps(const std::string& package, const std::string& address, std::uint16_t port,
                        const nlohmann::json& steps) {
    const PeerFolder folder;
    nlohmann::json request = Site(address, port);
    request["steps"] = steps;
    CProcess process(Command("client.js", package, folder.Put("steps.json", request)), Environment());
    EXPECT_EQ(process.Wait(), 0) << package << "\n" << process.Errors();
    return nlohmann::json::parse(process.Output(), nullptr, false);
}

NodeDevice::NodeDevice(const std::string& package, const std::string& address, std::uint16_t port, unsigned instance,
                       const nlohmann::json& objects)
    : m_process(Command("server.js", package,
                        m_folder.Put("device.json",
                                     [&] {
                                         nlohmann::json site = Site(address, port);
                                         site["device"] = instance;
                                         site["objects"] = objects;
                                         return site;
                                     }())),
                Environment()),
      m_started(m_process.WaitForOutput("ready\n")) {
    EXPECT_TRUE(m_started) << package << "\n" << m_process.Errors();
}

} // namespace interop
