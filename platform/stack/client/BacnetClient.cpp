#include "platform/stack/client/BacnetClient.h"

#include "api/bacnet/Log.h"
#include "platform/stack/client/RequestBuffer.h"
#include "platform/stack/client/Status.h"
#include "platform/stack/codec/CodePage.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/directory/DirFile.h"
#include "platform/stack/services/WhoIs.h"
#include "platform/stack/transport/BipPort.h"
#include "platform/stack/transport/Capture.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <random>

namespace bacnet {

namespace {

constexpr std::uint16_t smallestMaxApdu = 50; // clause 20.1.2.5; a device that claims less cannot mean it
constexpr std::size_t smallRequest = 470;     // octets of parameters, less than the 480 of an MS/TP station

std::string AddressText(const BACSTAC_ADDRESS& address) {
    char text[64];
    CBacGeneral::PrintAddress(text, sizeof text, address);
    return text;
}

std::shared_ptr<Capture> OpenCapture(const ClientConfig& config, std::string& failure) {
    Capture::Settings settings;
    settings.File = config.CaptureFile;
    settings.Limit = config.CaptureLimit;
    settings.OnEnd = [](const std::string& reason) { ::LogErr("%s", reason.c_str()); };
    return Capture::Open(std::move(settings), failure);
}

bool OpenPort(const ClientPort& settings, const std::shared_ptr<Capture>& recorder, std::vector<ClientLink>& links,
              std::string& failure) {
    BipSettings bip;
    bip.Recorder = recorder;
    bip.Port = settings.UdpPort;
    if (!settings.BindAddress.empty() && !ParseIpV4(settings.BindAddress, bip.Ip)) {
        failure = "\"" + settings.BindAddress + "\" is no IPv4 address";
        return false;
    }
    if (!settings.BroadcastAddress.empty() && !ParseIpV4(settings.BroadcastAddress, bip.BroadcastIp)) {
        failure = "\"" + settings.BroadcastAddress + "\" is no IPv4 address";
        return false;
    }
    bip.Foreign = settings.Foreign;
    bip.Bbmd = settings.Bbmd;
    bip.Report = [](bool error, const std::string& text) {
        if (error)
            ::LogErr("%s", text.c_str());
        else
            ::LogInf("%s", text.c_str());
    };
    auto port = std::make_unique<BipPort>();
    failure = port->Open(bip);
    BipPort* const opened = port.get();
    links.push_back({std::move(port), settings.Network, opened});
    return failure.empty();
}

std::vector<BipPort*> BipPortsOf(const std::vector<ClientLink>& links) {
    std::vector<BipPort*> ports;
    for (const ClientLink& link : links)
        ports.push_back(link.Bip);
    return ports;
}

// By the system's names; what it does not know is left out, so that text is what it says.
std::map<std::uint32_t, std::string> KnownEncodings(const std::map<std::uint32_t, std::string>& configured) {
    std::map<std::uint32_t, std::string> known;
    for (const auto& [device, name] : configured) {
        const std::string encoding = FindEncoding(name);
        if (!encoding.empty())
            known.emplace(device, encoding);
        else
            ::LogErr("Device %u: the encoding \"%s\" is not known", device, name.c_str());
    }
    return known;
}

} // namespace

std::unique_ptr<BacnetClient> BacnetClient::Open(const ClientConfig& config, std::string& failure) {
    std::vector<ClientLink> links;
    failure.clear();
    std::shared_ptr<Capture> recorder;
    if (!config.CaptureFile.empty()) {
        recorder = OpenCapture(config, failure);
        if (!recorder)
            return nullptr;
    }
    for (const ClientPort& port : config.Ports)
        if (!OpenPort(port, recorder, links, failure))
            return nullptr;
    if (links.empty()) {
        failure = "no BACnet port is configured";
        return nullptr;
    }
    ClientConfig own = config;
    while (own.Transactions.IdSeed == 0)
        own.Transactions.IdSeed = std::random_device{}();
    auto client = std::make_unique<BacnetClient>(own, std::move(links));
    client->m_network.AskForNumbers();
    return client;
}

BacnetClient::BacnetClient(const ClientConfig& config, std::vector<ClientLink> links, const IClock* clock)
    : m_links(std::move(links)), m_networkAdmin(m_network, BipPortsOf(m_links)),
      m_textEncodings(KnownEncodings(config.TextEncodings)), m_traits(clock != nullptr ? *clock : m_clock),
      m_server(config.Device, config.Transactions),
      m_transactions(
          [this]() -> NetworkLayer& {
              m_network.SetGate([this](std::uint16_t network) { return m_networkStates.IsEnabled(network); });
              m_network.SetReport([](const std::string& text) { ::LogErr("%s", text.c_str()); });
              for (const ClientLink& link : m_links)
                  m_network.AddPort(*link.Link, link.Network);
              return m_network;
          }(),
          config.Transactions, this, clock != nullptr ? *clock : m_clock) {
    m_transactions.Start();
}

BacnetClient::~BacnetClient() {
    Shutdown();
}

void BacnetClient::Shutdown() {
    m_transactions.Shutdown();
}

// ---- exchanges ------------------------------------------------------------------------------------------------------

BACSTAC_STATUS BacnetClient::FindPeer(unsigned device, Peer& peer) const {
    if (!m_directory.Resolve(device, peer))
        return BACSTAC_STATUS_UNKNOWN_DEVICE;
    return m_networkStates.IsEnabled(peer.Address.Network) ? BACSTAC_OK : BACSTAC_STATUS_DISABLED;
}

BACSTAC_STATUS BacnetClient::FindPeer(const BACSTAC_ADDRESS& address, Peer& peer) const {
    peer = {address, 0, nullptr};
    if (address.MacLength == 0 || address.MacLength > sizeof address.Mac)
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    return m_networkStates.IsEnabled(address.Network) ? BACSTAC_OK : BACSTAC_STATUS_DISABLED;
}

const std::string* BacnetClient::TextEncoding(const BACSTAC_ADDRESS& address) const {
    for (const auto& [device, encoding] : m_textEncodings) {
        if (m_directory.GetDevAddr(device) == address)
            return &encoding;
    }
    return nullptr;
}

BACSTAC_STATUS BacnetClient::Exchange(const Peer& peer, ConfirmedService service, std::span<const std::uint8_t> request,
                                      AnswerBuffer& answer, BACSTAC_ERROR* error, AnswerCheck check) {
    CallOptions options;
    options.MaxApdu = peer.MaxApdu == 0 ? std::uint16_t{0} : std::max(peer.MaxApdu, smallestMaxApdu);
    options.Check = check;
    const auto call = [&] {
        return m_transactions.Call(peer.Address, static_cast<std::uint8_t>(service), request, answer, options);
    };
    // What nearly every device takes in one piece is sent to one that has not said what it takes.
    CallResult result{Outcome::request_too_long, 0};
    if (options.MaxApdu != 0 || request.size() <= smallRequest)
        result = call();
    if (result.How == Outcome::request_too_long) {
        const BACSTAC_STATUS status = FindRequestLimits(peer, options);
        if (status != BACSTAC_OK)
            return status;
        result = call();
    }
    return Conclude(peer, service, result, answer.Octets(), error);
}

BACSTAC_STATUS BacnetClient::Conclude(const Peer& peer, ConfirmedService service, const CallResult& result,
                                      std::span<const std::uint8_t> answer, BACSTAC_ERROR* error) {
    if (peer.Device != nullptr) {
        if (result.Answered())
            m_directory.Confirm(peer);
        else if (result.How == Outcome::timeout)
            m_directory.Doubt(peer);
    }
    return ToStatus(result, service, answer, error);
}

BACSTAC_STATUS BacnetClient::FindPeer(unsigned device, const BACSTAC_ADDRESS& address, Peer& peer) const {
    const BACSTAC_STATUS status = FindPeer(device, peer);
    if (address.MacLength == 0 || (status == BACSTAC_OK && peer.Address == address))
        return status;
    return FindPeer(address, peer); // the caller knows better
}

BACSTAC_STATUS BacnetClient::Query(unsigned device, ConfirmedService service, const RequestBuffer& request,
                                   AnswerBuffer& answer, BACSTAC_ERROR* error) {
    Peer peer;
    const BACSTAC_STATUS status = FindPeer(device, peer);
    if (status != BACSTAC_OK)
        return status;
    return request.Out.Overflow() ? BACSTAC_STATUS_TOO_LONG
                                  : Exchange(peer, service, request.Out.Written(), answer, error);
}

BACSTAC_STATUS BacnetClient::Command(const Peer& peer, ConfirmedService service, const RequestBuffer& request,
                                     BACSTAC_ERROR* error) {
    AnswerBuffer answer;
    return request.Out.Overflow() ? BACSTAC_STATUS_TOO_LONG
                                  : Exchange(peer, service, request.Out.Written(), answer, error);
}

BACSTAC_STATUS BacnetClient::Command(unsigned device, ConfirmedService service, const RequestBuffer& request,
                                     BACSTAC_ERROR* error) {
    AnswerBuffer answer;
    return Query(device, service, request, answer, error);
}

// ---- unconfirmed ----------------------------------------------------------------------------------------------------

BACSTAC_STATUS BacnetClient::WhoIs(BACSTAC_ADDRESS const& destination, unsigned low, unsigned high) {
    if (low > high || destination.MacLength > sizeof destination.Mac)
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    const auto enabled = [this](const ClientLink& link) { return m_networkStates.IsEnabled(link.Network); };
    if (destination.Network != BACSTAC_ALL_NETWORKS ? !m_networkStates.IsEnabled(destination.Network)
                                                    : std::none_of(m_links.begin(), m_links.end(), enabled))
        return BACSTAC_STATUS_DISABLED;
    std::uint8_t request[16];
    Writer writer(request);
    EncodeWhoIs({low, high}, writer);
    const Outcome outcome = m_transactions.SendUnconfirmed(
        destination, static_cast<std::uint8_t>(UnconfirmedService::whoIs), writer.Written());
    return ToStatus(outcome);
}

void BacnetClient::Announce() {
    if (!m_server.IsDevice())
        return;
    std::uint8_t request[24];
    Writer writer(request);
    EncodeIAm(m_server.Announcement(), writer);
    const BACSTAC_ADDRESS everybody{1, 0, BACSTAC_ALL_NETWORKS, {}, 0};
    m_transactions.SendUnconfirmed(everybody, static_cast<std::uint8_t>(UnconfirmedService::iAm), writer.Written());
}

void BacnetClient::SetIdentity(std::uint32_t instance, const std::string& name) {
    if (m_server.SetIdentity(instance, name))
        Announce();
}

// On a background thread of the transaction layer.
void BacnetClient::OnRequest(const RequestIndication& request) {
    if (m_transactions.Counters().RequestsDropped.Value() != 0 && !m_loggedDropped.exchange(true))
        ::LogErr("Other stations send requests faster than they are taken: some are dropped");
    if (!request.Confirmed && request.Header.Service == static_cast<std::uint8_t>(UnconfirmedService::iAm))
        OnIAm(request);
    else
        m_server.OnRequest(request, m_transactions);
}

void BacnetClient::OnIAm(const RequestIndication& request) {
    IAm announcement;
    if (!DecodeIAm(request.Header.Payload, announcement))
        return;
    BACSTAC_ADDRESS former{};
    switch (m_directory.Learn(announcement, request.Source, former)) {
    case LiveDirectory::Learned::added:
        m_traits.Forget(request.Source); // another device may have been there
        break;
    case LiveDirectory::Learned::moved:
        m_traits.Forget(request.Source);
        m_traits.Forget(former);
        ::LogInf("Device %u has moved from %s to %s", announcement.Device, AddressText(former).c_str(),
                 AddressText(request.Source).c_str());
        break;
    case LiveDirectory::Learned::duplicate:
        LogDuplicate(announcement.Device, former, request.Source);
        break;
    case LiveDirectory::Learned::full:
        if (!m_loggedFull.exchange(true))
            ::LogErr("More devices announce themselves than are kept: device %u at %s and others are ignored",
                     announcement.Device, AddressText(request.Source).c_str());
        break;
    default:
        break;
    }
    m_callbacks.Notify(request.Source, announcement.Device);
}

void BacnetClient::LogDuplicate(unsigned device, const BACSTAC_ADDRESS& known, const BACSTAC_ADDRESS& other) {
    constexpr std::size_t enough = 1000; // of a flood
    decltype(m_loggedDuplicates)::value_type pair{};
    std::memcpy(pair.data(), &device, sizeof device);
    std::memcpy(pair.data() + sizeof device, &known, sizeof known);
    std::memcpy(pair.data() + sizeof device + sizeof known, &other, sizeof other);
    {
        const std::lock_guard lock(m_loggedLock);
        if (m_loggedDuplicates.size() >= enough || !m_loggedDuplicates.insert(pair).second)
            return;
    }
    ::LogErr("Device instance %u is used twice: %s is kept, %s is ignored", device, AddressText(known).c_str(),
             AddressText(other).c_str());
}

int BacnetClient::RegisterIAMCallback(CIAMCallback* callback) {
    return m_callbacks.Register(callback);
}

void BacnetClient::UnregisterIAMCallback(int handle) {
    m_callbacks.Unregister(handle);
}

// ---- the live directory ---------------------------------------------------------------------------------------------

bool BacnetClient::IsDeviceEnabled(unsigned device) {
    return m_directory.FindDev(device) && m_networkStates.IsEnabled(m_directory.GetDevAddr(device).Network);
}

bool BacnetClient::IsNetworkEnabled(unsigned short network) {
    return m_networkStates.IsEnabled(network);
}

bool BacnetClient::EnableNetwork(unsigned short network) {
    if (network == BACSTAC_ALL_NETWORKS)
        return false;
    m_networkStates.Set(network, true);
    return true;
}

bool BacnetClient::DisableNetwork(unsigned short network) {
    if (network == BACSTAC_ALL_NETWORKS)
        return false;
    m_networkStates.Set(network, false);
    return true;
}

void BacnetClient::GetDevLst(std::vector<unsigned>& devices, unsigned short network) {
    m_directory.GetDevLst(devices, network);
}

void BacnetClient::GetNetLst(std::map<unsigned short, bool>& networks) {
    m_directory.GetNetLst(networks);
}

void BacnetClient::GetObjLst(unsigned device, std::vector<BACSTAC_OBJECT_ID>& objects, BACSTAC_OBJECT_TYPE type) {
    m_directory.File()->GetObjLst(device, objects, type);
}

bool BacnetClient::FindDev(unsigned device) {
    return m_directory.FindDev(device);
}

bool BacnetClient::GetDevName(unsigned device, std::string& name) {
    return m_directory.File()->GetDevName(device, name);
}

bool BacnetClient::GetObjName(unsigned device, BACSTAC_OBJECT_ID const& object, std::string& name) {
    return m_directory.File()->GetObjName(device, object, name);
}

BACSTAC_ADDRESS BacnetClient::GetDevAddr(unsigned device) {
    return m_directory.GetDevAddr(device);
}

unsigned BacnetClient::GetDevVendorId(unsigned device) {
    return m_directory.GetDevVendorId(device);
}

bool BacnetClient::LoadDir() {
    const std::string path = GetDirFileName();
    if (m_directory.Load(path))
        return true;
    // A damaged file at the start costs no more than what changed since the generation before it.
    std::error_code unreadable;
    const std::u8string file(path.begin(), path.end());
    if (!std::filesystem::exists(std::filesystem::path(file), unreadable))
        return false;
    ::LogErr("The directory file %s is damaged", path.c_str());
    if (m_directory.IsLoaded() || !m_directory.Load(directory::BackupPath(path)))
        return false;
    ::LogInf("The directory was read from %s", directory::BackupPath(path).c_str());
    return true;
}

} // namespace bacnet
