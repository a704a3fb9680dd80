// The BACnet services over our own stack: the implementation of the contract in api/bacnet/BacGeneral.h. It owns the
// ports, the network layer and the transaction layer, and the live directory.
//
// Made and ended by the host on one thread; everything between from any thread at any time. Services look up the
// device, send through the transaction layer and decode the answer, all on the caller's thread and without a lock.
#pragma once

#include "api/bacnet/BacGeneral.h"
#include "platform/stack/client/ClientConfig.h"
#include "platform/stack/client/DeviceServer.h"
#include "platform/stack/client/IAmCallbacks.h"
#include "platform/stack/client/NetworkAdmin.h"
#include "platform/stack/client/NetworkStates.h"
#include "platform/stack/client/PeerTraits.h"
#include "platform/stack/directory/LiveDirectory.h"
#include "platform/stack/services/ReadProperty.h"
#include "platform/stack/services/ServiceChoice.h"
#include "platform/stack/transaction/TransactionLayer.h"

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace bacnet {

class RequestBuffer;

// A data link and the number of the network that it is on.
struct ClientLink {
    std::unique_ptr<IDataLink> Link;
    std::uint16_t Network = 0;
    BipPort* Bip = nullptr; // Link, when it is one
};

class BacnetClient final : public CBacGeneral, private IRequestHandler {
public:
    // Opens the ports of the configuration. Null, with the reason in failure, when one cannot be opened.
    static std::unique_ptr<BacnetClient> Open(const ClientConfig& config, std::string& failure);
    // Over links that are open already. clock is borrowed; the system's when null.
    BacnetClient(const ClientConfig& config, std::vector<ClientLink> links, const IClock* clock = nullptr);
    // No thread may be in a call any more; Shutdown sees to it that calls end.
    ~BacnetClient() override;

    // Pending and later calls end at once with BACSTAC_STATUS_SHUTDOWN.
    void Shutdown();

    TransactionLayer& Transactions() { return m_transactions; }
    LiveDirectory& Directory() { return m_directory; }
    NetworkAdmin& Networks() { return m_networkAdmin; }
    // Sends an I-Am to all networks, as a device does when it starts.
    void Announce();
    // What the station as a device is called from now on; announced when it changes.
    void SetIdentity(std::uint32_t instance, const std::string& name);

    // Where a request to a device goes: its address and what it accepts. Device is null for an address that stands for
    // itself. Not 0 when the device is unknown or disabled.
    using Peer = LiveDirectory::Target;
    BACSTAC_STATUS FindPeer(unsigned device, Peer& peer) const;
    BACSTAC_STATUS FindPeer(const BACSTAC_ADDRESS& address, Peer& peer) const;

    // What the text of the device at an address is encoded in, for a TextScope; null where it is what it says.
    const std::string* TextEncoding(const BACSTAC_ADDRESS& address) const;

    // One confirmed exchange. answer holds the service's result after BACSTAC_OK.
    BACSTAC_STATUS Exchange(const Peer& peer, ConfirmedService service, std::span<const std::uint8_t> request,
                            AnswerBuffer& answer, BACSTAC_ERROR* error, AnswerCheck check = nullptr);
    // What an exchange did, for callers of the asynchronous path: the status, the detail, and what it tells about the
    // device.
    BACSTAC_STATUS Conclude(const Peer& peer, ConfirmedService service, const CallResult& result,
                            std::span<const std::uint8_t> answer, BACSTAC_ERROR* error);

    // ---- the contract; see api/bacnet/BacGeneral.h

    BACSTAC_STATUS ReadProperty(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                int arrayIndex, void* buffer, unsigned size, BACSTAC_ERROR* error) override;
    BACSTAC_STATUS ReadProperty(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                int arrayIndex, BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR* error) override;
    BACSTAC_STATUS ReadProperty(BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID const& object,
                                BACSTAC_PROPERTY_ID property, int arrayIndex, BACSTAC_PROPERTY_CONTENTS& contents,
                                BACSTAC_ERROR* error) override;
    BACSTAC_STATUS AsyncReadProperty(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                     int arrayIndex, BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR* error,
                                     CAsyncCallBack& callback) override;
    BACSTAC_STATUS ReadPropertyList(BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID const& object,
                                    BACSTAC_READ_RESULT_ITEM* items, unsigned* count, BACSTAC_ERROR* error) override;
    BACSTAC_STATUS ReadObjectList(BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID* objects, unsigned* count,
                                  BACSTAC_ERROR* error) override;
    BACSTAC_STATUS ReadRange(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                             int arrayIndex, BACSTAC_READ_RANGE_SPEC const* spec, BACSTAC_BIT_STRING* resultFlags,
                             BACSTAC_PROPERTY_CONTENTS* contents, BACSTAC_ERROR* error,
                             unsigned* firstSequenceNumber) override;
    BACSTAC_STATUS ReadPropertyMultiple(unsigned device, BACSTAC_ADDRESS const& address,
                                        BACSTAC_OBJECT_ID const* objects, BACSTAC_READ_RESULT_ITEM* items,
                                        unsigned count, BACSTAC_ERROR* error) override;

    BACSTAC_STATUS WriteProperty(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                 int arrayIndex, int priority, BACSTAC_PROPERTY_CONTENTS const& contents,
                                 BACSTAC_ERROR* error) override;
    BACSTAC_STATUS WritePropertyNull(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                     int arrayIndex, int priority, BACSTAC_ERROR* error) override;
    BACSTAC_STATUS WritePropertyMultiple(unsigned device, BACSTAC_ADDRESS const& address,
                                         BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_VALUE const* values,
                                         unsigned count, BACSTAC_ERROR* error) override;

    BACSTAC_STATUS ReadPropertyConditional(unsigned device, BACSTAC_READ_CON_INFO const* info,
                                           BACSTAC_RPC_RESULT* result, BACSTAC_ERROR* error) override;
    BACSTAC_STATUS CreateObject(unsigned device, BACSTAC_OBJECT_SPECIFIER const* specifier,
                                BACSTAC_PROPERTY_VALUE const* values, unsigned count, BACSTAC_OBJECT_ID* newObject,
                                BACSTAC_ERROR* error, unsigned* firstFailed) override;
    BACSTAC_STATUS DeleteObject(unsigned device, BACSTAC_OBJECT_ID const* object, BACSTAC_ERROR* error) override;
    BACSTAC_STATUS DeviceCommControl(unsigned device, unsigned duration, BACSTAC_DCC_VALUE value, const char* password,
                                     BACSTAC_ERROR* error) override;
    BACSTAC_STATUS ReinitializeDevice(unsigned device, BACSTAC_REINIT_TYPE type, const char* password,
                                      BACSTAC_ERROR* error) override;
    BACSTAC_STATUS ReadFile(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_READ_FILE_SPEC const* spec,
                            BACSTAC_READ_FILE_RESULT* result, BACSTAC_ERROR* error) override;
    BACSTAC_STATUS WriteFile(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_WRITE_FILE_SPEC const* spec,
                             BACSTAC_WRITE_FILE_RESULT* result, BACSTAC_ERROR* error) override;
    BACSTAC_STATUS GetAlarmSummary(unsigned device, BACSTAC_ALARM_SUMMARY* summaries, unsigned capacity,
                                   unsigned* count, BACSTAC_ERROR* error) override;
    BACSTAC_STATUS GetEnrollmentSummary(unsigned device, BACSTAC_ENROLLMENT_FILTER const& filter,
                                        BACSTAC_ENROLLMENT_SUMMARY* summaries, unsigned capacity, unsigned* count,
                                        BACSTAC_ERROR* error) override;
    BACSTAC_STATUS GetEventInformation(unsigned device, BACSTAC_OBJECT_ID const* lastReceived,
                                       BACSTAC_EVENT_SUMMARY* events, unsigned capacity, unsigned* count, bool* more,
                                       BACSTAC_ERROR* error) override;

    BACSTAC_STATUS WhoIs(BACSTAC_ADDRESS const& destination, unsigned low, unsigned high) override;
    BACSTAC_STATUS SynchronizeTime(bool utc, BACSTAC_DATE_TIME const& time, unsigned const* devices,
                                   int count) override;
    bool ReadDeviceTime(unsigned device, BACSTAC_DATE_TIME& time, int& offset) override;

    bool IsDeviceEnabled(unsigned device) override;
    bool IsNetworkEnabled(unsigned short network) override;
    bool EnableNetwork(unsigned short network) override;
    bool DisableNetwork(unsigned short network) override;

    void GetDevLst(std::vector<unsigned>& devices, unsigned short network) override;
    void GetNetLst(std::map<unsigned short, bool>& networks) override;
    void GetObjLst(unsigned device, std::vector<BACSTAC_OBJECT_ID>& objects, BACSTAC_OBJECT_TYPE type) override;
    bool FindDev(unsigned device) override;
    bool GetDevName(unsigned device, std::string& name) override;
    bool GetObjName(unsigned device, BACSTAC_OBJECT_ID const& object, std::string& name) override;
    BACSTAC_ADDRESS GetDevAddr(unsigned device) override;
    unsigned GetDevVendorId(unsigned device) override;
    bool LoadDir() override;

    int RegisterIAMCallback(CIAMCallback* callback) override;
    void UnregisterIAMCallback(int handle) override;

private:
    void OnRequest(const RequestIndication& request) override;
    void OnIAm(const RequestIndication& request);
    void LogDuplicate(unsigned device, const BACSTAC_ADDRESS& known, const BACSTAC_ADDRESS& other);

    // What the device takes when a request is long: as it has announced, else as its device object says. options
    // receives it. Not 0 when the device is silent.
    BACSTAC_STATUS FindRequestLimits(const Peer& peer, CallOptions& options);
    BACSTAC_STATUS ReadLimits(const Peer& peer, RequestLimits& limits);
    BACSTAC_STATUS ReadLimit(const Peer& peer, BACSTAC_PROPERTY_ID property, std::uint32_t& value);
    // The address that the caller gives, or the device's where it gives none.
    BACSTAC_STATUS FindPeer(unsigned device, const BACSTAC_ADDRESS& address, Peer& peer) const;
    // Exchanges of services whose answer carries nothing.
    BACSTAC_STATUS Command(const Peer& peer, ConfirmedService service, const RequestBuffer& request,
                           BACSTAC_ERROR* error);
    BACSTAC_STATUS Command(unsigned device, ConfirmedService service, const RequestBuffer& request,
                           BACSTAC_ERROR* error);
    BACSTAC_STATUS Query(unsigned device, ConfirmedService service, const RequestBuffer& request, AnswerBuffer& answer,
                         BACSTAC_ERROR* error);
    BACSTAC_STATUS Write(const Peer& peer, const PropertyTarget& target, int priority,
                         BACSTAC_PROPERTY_CONTENTS const& contents, BACSTAC_ERROR* error);
    BACSTAC_STATUS WriteTogether(const Peer& peer, BACSTAC_OBJECT_ID const& object,
                                 BACSTAC_PROPERTY_VALUE const* values, unsigned count, BACSTAC_ERROR* error);
    BACSTAC_STATUS WriteMany(const Peer& peer, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_VALUE const* values,
                             unsigned count, BACSTAC_ERROR* error);
    BACSTAC_STATUS ReadEncoded(const Peer& peer, const PropertyTarget& target, AnswerBuffer& answer,
                               std::span<const std::uint8_t>& value, BACSTAC_ERROR* error);
    BACSTAC_STATUS ReadContents(const Peer& peer, const PropertyTarget& target, BACSTAC_PROPERTY_CONTENTS& contents,
                                BACSTAC_ERROR* error);
    BACSTAC_STATUS ReadMany(const Peer& peer, BACSTAC_OBJECT_ID const* objects, BACSTAC_READ_RESULT_ITEM* items,
                            unsigned count, BACSTAC_ERROR* error);
    BACSTAC_STATUS ReadSingly(const Peer& peer, BACSTAC_OBJECT_ID const* objects, BACSTAC_READ_RESULT_ITEM* items,
                              unsigned count, BACSTAC_ERROR* error);
    BACSTAC_STATUS ReadTogether(const Peer& peer, BACSTAC_OBJECT_ID const* objects, BACSTAC_READ_RESULT_ITEM* items,
                                unsigned count, BACSTAC_ERROR* error);
    // What the object says it has; empty where it does not say.
    BACSTAC_STATUS ListedProperties(const Peer& peer, BACSTAC_OBJECT_ID const& object,
                                    std::vector<BACSTAC_PROPERTY_ID>& properties, BACSTAC_ERROR* error);
    BACSTAC_STATUS ReadListInParts(const Peer& peer, BACSTAC_OBJECT_ID const& object, BACSTAC_READ_RESULT_ITEM* items,
                                   unsigned* count, BACSTAC_ERROR* error);
    BACSTAC_STATUS CountObjects(const Peer& peer, const BACSTAC_OBJECT_ID& device, unsigned& count,
                                BACSTAC_ERROR* error);
    BACSTAC_STATUS ListObjectsWhole(const Peer& peer, const BACSTAC_OBJECT_ID& device, BACSTAC_OBJECT_ID* objects,
                                    unsigned capacity, unsigned& count, BACSTAC_ERROR* error);
    BACSTAC_STATUS ListObjectsByIndex(const Peer& peer, const BACSTAC_OBJECT_ID& device, BACSTAC_OBJECT_ID* objects,
                                      unsigned capacity, unsigned& count, BACSTAC_ERROR* error);

    const SteadyClock m_clock;
    std::vector<ClientLink> m_links;
    NetworkLayer m_network;
    NetworkAdmin m_networkAdmin;
    LiveDirectory m_directory;
    const std::map<std::uint32_t, std::string> m_textEncodings; // by device
    IAmCallbacks m_callbacks;
    NetworkStates m_networkStates;
    PeerTraits m_traits;
    DeviceServer m_server;
    std::mutex m_loggedLock;
    // m_loggedLock: instance and the addresses of two claimants that the log has, so that it has each pair once.
    std::set<std::array<std::uint8_t, sizeof(unsigned) + 2 * sizeof(BACSTAC_ADDRESS)>> m_loggedDuplicates;
    std::atomic<bool> m_loggedFull{false};
    std::atomic<bool> m_loggedDropped{false};
    TransactionLayer m_transactions; // last: its threads use all of the others
};

} // namespace bacnet
