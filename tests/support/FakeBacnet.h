// BACnet in memory: a directory of devices and objects, property values, log buffers, faults, and the list of events.
// It stands behind CBacGeneral where a test needs no network. Any thread may call the services; the test describes the
// site before, or from a hook.
//
// Each service call is one event, such as "ReadProperty(1234, (20, 5), 132, -1)". Names of objects and devices are
// looked up without an event, lists are not.
#pragma once

#include "api/bacnet/BacGeneral.h"
#include "tests/support/EventList.h"

#include <atomic>
#include <cstring>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// A property's value in the decoded layout of its type.
struct FakeValue {
    BACSTAC_DATA_TYPE type = TYPE_NONE;
    unsigned count = 0;
    std::string bytes;

    template <typename T>
    static FakeValue Of(BACSTAC_DATA_TYPE type, const std::vector<T>& elements) {
        static_assert(std::is_trivially_copyable_v<T>);
        FakeValue value{type, static_cast<unsigned>(elements.size()), std::string(elements.size() * sizeof(T), '\0')};
        if (!elements.empty())
            std::memcpy(value.bytes.data(), elements.data(), value.bytes.size());
        return value;
    }
    static FakeValue Unsigned(std::uint32_t value) { return Of<std::uint32_t>(TYPE_UNSIGNED, {value}); }
    static FakeValue Real(float value) { return Of<float>(TYPE_REAL, {value}); }
    static FakeValue Text(const std::string& text) { return {TYPE_STRING, 1, text + '\0'}; }
};

// One value of a log-multiple record; any is the value of kind 8.
struct FakeLogItem {
    std::uint32_t kind = 0;
    BACSTAC_LOG_VALUE value{};
    FakeValue any{};
};

// One entry of a log buffer. Of a trend log type is the datum's; any is the value of datum BACSTAC_LOG_ANY. Of a
// trend-log-multiple type is the record's, and items are its log data.
struct FakeLogEntry {
    BACSTAC_DATE_TIME time{};
    std::uint32_t type = 0;
    BACSTAC_LOG_VALUE value{};
    FakeValue any{};
    bool hasStatus = false;
    BACSTAC_BIT_STRING statusFlags{};
    std::vector<FakeLogItem> items{};
};

class CFakeBacnet : public CBacGeneral {
public:
    explicit CFakeBacnet(CEventList& events);
    ~CFakeBacnet() override;

    // ---- the site; naming an object that was not added throws std::out_of_range
    void AddDevice(unsigned device, unsigned short network = 0, const std::string& name = {});
    // Protocol_Version and Protocol_Revision of the device object. Without them a device does not answer for them.
    void SetProtocol(unsigned device, unsigned version, unsigned revision);
    void AddObject(unsigned device, BACSTAC_OBJECT_ID const& object, const std::string& name = {});
    void SetValue(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property, FakeValue value);
    // A read of all properties names the property as one that failed; a read of it alone succeeds.
    void LeaveOutOfLists(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property);
    bool GetValue(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property, FakeValue& value);
    void AddLogEntry(unsigned device, BACSTAC_OBJECT_ID const& object, FakeLogEntry entry);
    void AddLogEntries(unsigned device, BACSTAC_OBJECT_ID const& object, const std::vector<FakeLogEntry>& entries);
    void ClearLog(unsigned device, BACSTAC_OBJECT_ID const& object);

    // ---- faults and hooks
    // Calls whose event begins with the text give this status and error, after skip calls went well, so many times
    // (-1: always).
    void SetFault(const std::string& event, BACSTAC_STATUS status, BACSTAC_ERROR const& error = {}, int skip = 0,
                  int times = -1);
    void ClearFaults();
    // Called inside each service call, behind its recording and with no lock held, with its event.
    void OnCall(std::function<void(const std::string&)> hook);
    // ReadRange by time gives entries from the reference on, not only behind it, as some devices do.
    void SetReferenceIncluded(bool included);
    // Reads that are waited for get no answer until it ends or they are given up.
    void SetSilent(bool silent) { m_isSilent = silent; }
    // So many entries more than it was asked for, as a device that does not count.
    void SetSurplus(unsigned entries);

    // ---- CBacGeneral
    int RegisterIAMCallback(CIAMCallback* callback) override;
    void UnregisterIAMCallback(int handle) override;
    // Announces a device to the registered callbacks.
    void AnnounceDevice(BACSTAC_ADDRESS const& address, unsigned device);

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
    BACSTAC_STATUS ReadObjectList(BACSTAC_ADDRESS const&, BACSTAC_OBJECT_ID*, unsigned*, BACSTAC_ERROR*) override;
    BACSTAC_STATUS ReadRange(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                             int arrayIndex, BACSTAC_READ_RANGE_SPEC const* spec, BACSTAC_BIT_STRING* resultFlags,
                             BACSTAC_PROPERTY_CONTENTS* contents, BACSTAC_ERROR* error,
                             unsigned* firstSequenceNumber) override;
    BACSTAC_STATUS ReadPropertyConditional(unsigned, BACSTAC_READ_CON_INFO const*, BACSTAC_RPC_RESULT*,
                                           BACSTAC_ERROR*) override;
    // Event: "WriteProperty(10, (2, 1), 85, -1, 8, 21.5)", the index, the priority, and the value as it prints. What
    // is written is there to be read; a null is only an event.
    BACSTAC_STATUS WriteProperty(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                 int arrayIndex, int priority, BACSTAC_PROPERTY_CONTENTS const& contents,
                                 BACSTAC_ERROR* error) override;
    BACSTAC_STATUS WritePropertyNull(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                     int arrayIndex, int priority, BACSTAC_ERROR* error) override;
    BACSTAC_STATUS CreateObject(unsigned, BACSTAC_OBJECT_SPECIFIER const*, BACSTAC_PROPERTY_VALUE const*, unsigned,
                                BACSTAC_OBJECT_ID*, BACSTAC_ERROR*, unsigned*) override;
    BACSTAC_STATUS DeleteObject(unsigned, BACSTAC_OBJECT_ID const*, BACSTAC_ERROR*) override;
    BACSTAC_STATUS DeviceCommControl(unsigned, unsigned, BACSTAC_DCC_VALUE, const char*, BACSTAC_ERROR*) override;
    BACSTAC_STATUS ReinitializeDevice(unsigned, BACSTAC_REINIT_TYPE, const char*, BACSTAC_ERROR*) override;
    BACSTAC_STATUS ReadFile(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_READ_FILE_SPEC const*,
                            BACSTAC_READ_FILE_RESULT*, BACSTAC_ERROR*) override;
    BACSTAC_STATUS WriteFile(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_WRITE_FILE_SPEC const*,
                             BACSTAC_WRITE_FILE_RESULT*, BACSTAC_ERROR*) override;
    BACSTAC_STATUS GetAlarmSummary(unsigned, BACSTAC_ALARM_SUMMARY*, unsigned, unsigned*, BACSTAC_ERROR*) override;
    BACSTAC_STATUS GetEnrollmentSummary(unsigned, BACSTAC_ENROLLMENT_FILTER const&, BACSTAC_ENROLLMENT_SUMMARY*,
                                        unsigned, unsigned*, BACSTAC_ERROR*) override;
    BACSTAC_STATUS WhoIs(BACSTAC_ADDRESS const& destination, unsigned low, unsigned high) override;
    BACSTAC_STATUS SynchronizeTime(bool utc, BACSTAC_DATE_TIME const&, unsigned const* devices, int count) override;
    bool ReadDeviceTime(unsigned, BACSTAC_DATE_TIME&, int&) override;
    bool IsDeviceEnabled(unsigned) override;
    bool IsNetworkEnabled(unsigned short network) override;
    bool EnableNetwork(unsigned short network) override;
    bool DisableNetwork(unsigned short network) override;
    void GetDevLst(std::vector<unsigned>& devices, unsigned short network) override;
    void GetNetLst(std::map<unsigned short, bool>& networks) override;
    void GetObjLst(unsigned device, std::vector<BACSTAC_OBJECT_ID>& objects, BACSTAC_OBJECT_TYPE type) override;
    bool FindDev(unsigned device) override;
    bool GetDevName(unsigned device, std::string& name) override;
    bool GetObjName(unsigned device, BACSTAC_OBJECT_ID const& object, std::string& name) override;
    BACSTAC_ADDRESS GetDevAddr(unsigned device) override; // the instance in its MAC
    unsigned GetDevVendorId(unsigned device) override;
    bool LoadDir() override;
    BACSTAC_STATUS GetEventInformation(unsigned, BACSTAC_OBJECT_ID const*, BACSTAC_EVENT_SUMMARY*, unsigned, unsigned*,
                                       bool*, BACSTAC_ERROR*) override;
    // Event: "ReadPropertyMultiple(10, (2, 1) 77 28 87[0])".
    BACSTAC_STATUS ReadPropertyMultiple(unsigned device, BACSTAC_ADDRESS const&, BACSTAC_OBJECT_ID const* objects,
                                        BACSTAC_READ_RESULT_ITEM* items, unsigned count, BACSTAC_ERROR* error) override;
    // Event: "WritePropertyMultiple(10, (2, 1), 28 zone, 85@8 21.5)".
    BACSTAC_STATUS WritePropertyMultiple(unsigned device, BACSTAC_ADDRESS const&, BACSTAC_OBJECT_ID const& object,
                                         BACSTAC_PROPERTY_VALUE const* values, unsigned count,
                                         BACSTAC_ERROR* error) override;

private:
    struct Object {
        std::string name;
        std::map<BACSTAC_PROPERTY_ID, FakeValue> values;
        std::vector<FakeLogEntry> log; // ascending in time
        std::set<BACSTAC_PROPERTY_ID> missingInLists;
    };
    struct Device {
        unsigned short network = 0;
        std::string name;
        std::vector<std::pair<BACSTAC_OBJECT_ID, Object>> objects; // in the order of adding

        Object* Find(BACSTAC_OBJECT_ID const& id);
    };
    struct Fault {
        std::string event;
        BACSTAC_STATUS status;
        BACSTAC_ERROR error;
        int skip;
        int times;
    };

    // Records the event and gives the status that a fault has for it.
    BACSTAC_STATUS Call(const std::string& event, BACSTAC_ERROR* error);
    BACSTAC_STATUS Unsupported(const std::string& event, BACSTAC_ERROR* error);
    BACSTAC_STATUS Read(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property, int arrayIndex,
                        BACSTAC_ERROR* error, FakeValue& value);
    BACSTAC_STATUS Store(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                         BACSTAC_PROPERTY_CONTENTS const& contents, BACSTAC_ERROR* error);
    // With the mutex held.
    Object* FindObject(unsigned device, BACSTAC_OBJECT_ID const& object);
    Object& At(unsigned device, BACSTAC_OBJECT_ID const& object); // throws when the site has none
    std::pair<std::size_t, std::size_t> Select(const std::vector<FakeLogEntry>& log,
                                               BACSTAC_READ_RANGE_SPEC const& spec) const;

    CEventList& m_events;
    std::atomic<bool> m_isSilent = false;
    std::recursive_mutex m_announcing; // held while callbacks are called; in front of m_mutex
    mutable std::mutex m_mutex;        // of all below
    std::map<unsigned, Device> m_devices;
    std::vector<unsigned> m_deviceOrder;
    std::map<unsigned short, bool> m_enabledNetworks;
    std::map<int, CIAMCallback*> m_callbacks;
    std::vector<Fault> m_faults;
    std::function<void(const std::string&)> m_hook;
    bool m_referenceIncluded = false;
    unsigned m_surplus = 0;
};
