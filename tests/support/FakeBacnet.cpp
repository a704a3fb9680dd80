#include "tests/support/FakeBacnet.h"

#include "api/bacnet/Enums.h"
#include "tests/support/FakeLogBuffer.h"

#include <algorithm>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <stdexcept>
#include <thread>

namespace {

constexpr unsigned ERROR_CLASS_OBJECT = 1;
constexpr unsigned ERROR_CODE_UNKNOWN_OBJECT = 31;
constexpr unsigned ERROR_CLASS_PROPERTY = 2;
constexpr unsigned ERROR_CODE_UNKNOWN_PROPERTY = 32;

std::string Text(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string Text(const char* format, ...) {
    char buffer[256];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    return buffer;
}

std::string Text(BACSTAC_OBJECT_ID const& id) {
    return Text("(%u, %u)", id.Type, id.Instance);
}

std::string Text(BACSTAC_READ_RANGE_SPEC const& spec) {
    if (spec.Kind == BACSTAC_RANGE_BY_TIME || spec.Kind == BACSTAC_RANGE_BY_TIME_2001) {
        const BACSTAC_DATE_TIME& time = spec.ByTime.Reference;
        return Text("%u, %02u/%02u/%04u %02u:%02u:%02u.%02u, %d", spec.Kind, time.Date.Day, time.Date.Month,
                    time.Date.Year, time.Time.Hour, time.Time.Minute, time.Time.Second, time.Time.Hundredths,
                    spec.ByTime.Count);
    }
    if (spec.Kind == BACSTAC_RANGE_ALL)
        return "0";
    return Text("%u, %u, %d", spec.Kind, spec.ByIndex.Reference, spec.ByIndex.Count);
}

std::string Text(BACSTAC_PROPERTY_CONTENTS const& contents, BACSTAC_OBJECT_ID const& object,
                 BACSTAC_PROPERTY_ID property, int arrayIndex) {
    if (contents.DataType < 0)
        return "nothing";
    std::string text(256, '\0');
    text.resize(static_cast<std::size_t>(CBacGeneral::PrintContents(text.data(), static_cast<unsigned>(text.size()),
                                                                    contents, object.Type, property, arrayIndex)));
    return text;
}

BACSTAC_STATUS Fail(BACSTAC_ERROR* error, unsigned errorClass, unsigned code) {
    if (error != nullptr)
        *error = {2, errorClass, code};
    return BACSTAC_STATUS_ERROR;
}

BACSTAC_STATUS Fill(const FakeValue& value, BACSTAC_PROPERTY_CONTENTS& contents) {
    if (value.bytes.size() > contents.BufferSize)
        return BACSTAC_STATUS_BUFFER_TOO_SMALL;
    std::copy(value.bytes.begin(), value.bytes.end(), static_cast<char*>(contents.Buffer));
    contents.DataType = value.type;
    contents.ElementCount = value.count;
    return BACSTAC_OK;
}

unsigned InstanceOf(BACSTAC_ADDRESS const& address) {
    unsigned instance = 0;
    std::memcpy(&instance, address.Mac, sizeof instance);
    return instance;
}

} // namespace

CFakeBacnet::CFakeBacnet(CEventList& events) : m_events(events) {}

CFakeBacnet::~CFakeBacnet() = default;

CFakeBacnet::Object* CFakeBacnet::Device::Find(BACSTAC_OBJECT_ID const& id) {
    const auto found =
        std::find_if(objects.begin(), objects.end(), [&](const auto& object) { return object.first == id; });
    return found == objects.end() ? nullptr : &found->second;
}

CFakeBacnet::Object* CFakeBacnet::FindObject(unsigned device, BACSTAC_OBJECT_ID const& object) {
    const auto found = m_devices.find(device);
    return found == m_devices.end() ? nullptr : found->second.Find(object);
}

CFakeBacnet::Object& CFakeBacnet::At(unsigned device, BACSTAC_OBJECT_ID const& object) {
    Object* const found = FindObject(device, object);
    if (found == nullptr)
        throw std::out_of_range("the site has no such object: " + Text(object));
    return *found;
}

void CFakeBacnet::AddDevice(unsigned device, unsigned short network, const std::string& name) {
    {
        const std::lock_guard lock(m_mutex);
        Device& added = m_devices[device];
        added.network = network;
        added.name = name;
        m_deviceOrder.push_back(device);
    }
    AddObject(device, {OBJ_DEVICE, device}, name);
}

void CFakeBacnet::SetProtocol(unsigned device, unsigned version, unsigned revision) {
    SetValue(device, {OBJ_DEVICE, device}, PROP_PROTOCOL_VERSION, FakeValue::Unsigned(version));
    SetValue(device, {OBJ_DEVICE, device}, PROP_PROTOCOL_REVISION, FakeValue::Unsigned(revision));
}

void CFakeBacnet::AddObject(unsigned device, BACSTAC_OBJECT_ID const& object, const std::string& name) {
    const std::lock_guard lock(m_mutex);
    m_devices.at(device).objects.push_back({object, Object{name, {}, {}, {}}});
}

void CFakeBacnet::SetValue(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                           FakeValue value) {
    const std::lock_guard lock(m_mutex);
    At(device, object).values[property] = std::move(value);
}

void CFakeBacnet::LeaveOutOfLists(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property) {
    const std::lock_guard lock(m_mutex);
    At(device, object).missingInLists.insert(property);
}

bool CFakeBacnet::GetValue(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                           FakeValue& value) {
    const std::lock_guard lock(m_mutex);
    Object* const found = FindObject(device, object);
    if (found == nullptr || found->values.count(property) == 0)
        return false;
    value = found->values[property];
    return true;
}

void CFakeBacnet::AddLogEntry(unsigned device, BACSTAC_OBJECT_ID const& object, FakeLogEntry entry) {
    const std::lock_guard lock(m_mutex);
    At(device, object).log.push_back(std::move(entry));
}

void CFakeBacnet::AddLogEntries(unsigned device, BACSTAC_OBJECT_ID const& object,
                                const std::vector<FakeLogEntry>& entries) {
    for (const FakeLogEntry& entry : entries)
        AddLogEntry(device, object, entry);
}

void CFakeBacnet::ClearLog(unsigned device, BACSTAC_OBJECT_ID const& object) {
    const std::lock_guard lock(m_mutex);
    At(device, object).log.clear();
}

void CFakeBacnet::SetFault(const std::string& event, BACSTAC_STATUS status, BACSTAC_ERROR const& error, int skip,
                           int times) {
    const std::lock_guard lock(m_mutex);
    m_faults.push_back({event, status, error, skip, times});
}

void CFakeBacnet::ClearFaults() {
    const std::lock_guard lock(m_mutex);
    m_faults.clear();
}

void CFakeBacnet::OnCall(std::function<void(const std::string&)> hook) {
    const std::lock_guard lock(m_mutex);
    m_hook = std::move(hook);
}

void CFakeBacnet::SetReferenceIncluded(bool included) {
    const std::lock_guard lock(m_mutex);
    m_referenceIncluded = included;
}

void CFakeBacnet::SetSurplus(unsigned entries) {
    const std::lock_guard lock(m_mutex);
    m_surplus = entries;
}

BACSTAC_STATUS CFakeBacnet::Call(const std::string& event, BACSTAC_ERROR* error) {
    m_events.Add(event);
    std::function<void(const std::string&)> hook;
    {
        const std::lock_guard lock(m_mutex);
        hook = m_hook;
    }
    if (hook)
        hook(event);
    const std::lock_guard lock(m_mutex);
    for (Fault& fault : m_faults) {
        if (event.rfind(fault.event, 0) != 0 || fault.times == 0)
            continue;
        if (fault.skip > 0) {
            --fault.skip;
            continue;
        }
        if (fault.times > 0)
            --fault.times;
        if (error != nullptr)
            *error = fault.error;
        return fault.status;
    }
    return BACSTAC_OK;
}

BACSTAC_STATUS CFakeBacnet::Unsupported(const std::string& event, BACSTAC_ERROR* error) {
    const BACSTAC_STATUS status = Call(event, error);
    return status == BACSTAC_OK ? BACSTAC_STATUS_NOT_SUPPORTED : status;
}

int CFakeBacnet::RegisterIAMCallback(CIAMCallback* callback) {
    if (callback == nullptr)
        return -1;
    const std::lock_guard lock(m_mutex);
    const int handle = m_callbacks.empty() ? 0 : m_callbacks.rbegin()->first + 1;
    m_callbacks[handle] = callback;
    return handle;
}

void CFakeBacnet::UnregisterIAMCallback(int handle) {
    const std::lock_guard announcing(m_announcing); // none is under way behind this
    const std::lock_guard lock(m_mutex);
    m_callbacks.erase(handle);
}

void CFakeBacnet::AnnounceDevice(BACSTAC_ADDRESS const& address, unsigned device) {
    const std::lock_guard announcing(m_announcing);
    std::map<int, CIAMCallback*> callbacks;
    {
        const std::lock_guard lock(m_mutex);
        callbacks = m_callbacks;
    }
    for (const auto& [handle, callback] : callbacks)
        callback->OnIAm(address, device);
}

// ---- services

BACSTAC_STATUS CFakeBacnet::Read(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                 int arrayIndex, BACSTAC_ERROR* error, FakeValue& value) {
    const BACSTAC_STATUS status =
        Call(Text("ReadProperty(%u, ", device) + Text(object) + Text(", %u, %d)", property, arrayIndex), error);
    if (status != BACSTAC_OK)
        return status;
    const std::lock_guard lock(m_mutex);
    if (m_devices.count(device) == 0)
        return BACSTAC_STATUS_UNKNOWN_DEVICE;
    Object* const found = FindObject(device, object);
    if (found == nullptr)
        return Fail(error, ERROR_CLASS_OBJECT, ERROR_CODE_UNKNOWN_OBJECT);
    const auto stored = found->values.find(property);
    if (stored == found->values.end())
        return Fail(error, ERROR_CLASS_PROPERTY, ERROR_CODE_UNKNOWN_PROPERTY);
    value = stored->second;
    return BACSTAC_OK;
}

BACSTAC_STATUS CFakeBacnet::Store(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                  BACSTAC_PROPERTY_CONTENTS const& contents, BACSTAC_ERROR* error) {
    if (contents.DataType < 0)
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    const std::lock_guard lock(m_mutex);
    Object* const found = FindObject(device, object);
    if (found == nullptr)
        return Fail(error, ERROR_CLASS_OBJECT, ERROR_CODE_UNKNOWN_OBJECT);
    const std::string bytes(static_cast<const char*>(contents.Buffer), contents.BufferSize);
    found->values[property] = {contents.DataType, contents.ElementCount, bytes};
    return BACSTAC_OK;
}

BACSTAC_STATUS CFakeBacnet::ReadProperty(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                         int arrayIndex, void* buffer, unsigned size, BACSTAC_ERROR* error) {
    FakeValue value;
    const BACSTAC_STATUS status = Read(device, object, property, arrayIndex, error, value);
    if (status != BACSTAC_OK)
        return status;
    if (value.bytes.size() > size)
        return BACSTAC_STATUS_BUFFER_TOO_SMALL;
    std::copy(value.bytes.begin(), value.bytes.end(), static_cast<char*>(buffer));
    return BACSTAC_OK;
}

BACSTAC_STATUS CFakeBacnet::ReadProperty(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                         int arrayIndex, BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR* error) {
    FakeValue value;
    const BACSTAC_STATUS status = Read(device, object, property, arrayIndex, error, value);
    return status == BACSTAC_OK ? Fill(value, contents) : status;
}

BACSTAC_STATUS CFakeBacnet::ReadProperty(BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID const& object,
                                         BACSTAC_PROPERTY_ID property, int arrayIndex,
                                         BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR* error) {
    return ReadProperty(InstanceOf(address), object, property, arrayIndex, contents, error);
}

BACSTAC_STATUS CFakeBacnet::AsyncReadProperty(unsigned device, BACSTAC_OBJECT_ID const& object,
                                              BACSTAC_PROPERTY_ID property, int arrayIndex,
                                              BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR* error,
                                              CAsyncCallBack& callback) {
    callback.OnWaitStart();
    bool isWaiting = callback.OnWaitPoll() != 0;
    while (isWaiting && m_isSilent) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        isWaiting = callback.OnWaitPoll() != 0;
    }
    const BACSTAC_STATUS status =
        isWaiting ? ReadProperty(device, object, property, arrayIndex, contents, error) : BACSTAC_STATUS_CANCELLED;
    callback.OnWaitEnd();
    return status;
}

BACSTAC_STATUS CFakeBacnet::ReadPropertyList(BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID const& object,
                                             BACSTAC_READ_RESULT_ITEM* items, unsigned* count, BACSTAC_ERROR* error) {
    const unsigned device = InstanceOf(address);
    const BACSTAC_STATUS status =
        Call(Text("ReadPropertyList(%u, ", device) + Text(object) + Text(", %u)", *count), error);
    if (status != BACSTAC_OK)
        return status;
    const std::lock_guard lock(m_mutex);
    Object* const found = FindObject(device, object);
    if (found == nullptr)
        return Fail(error, ERROR_CLASS_OBJECT, ERROR_CODE_UNKNOWN_OBJECT);
    unsigned given = 0;
    for (const auto& [property, value] : found->values) {
        if (given == *count)
            break;
        BACSTAC_READ_RESULT_ITEM& item = items[given++];
        item.Property = property;
        item.ArrayIndex = BACSTAC_NO_INDEX;
        item.Success = found->missingInLists.count(property) == 0 && Fill(value, item.Contents) == BACSTAC_OK ? 1 : 0;
    }
    *count = given;
    return BACSTAC_OK;
}

BACSTAC_STATUS CFakeBacnet::ReadObjectList(BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID* objects, unsigned* count,
                                           BACSTAC_ERROR* error) {
    const unsigned device = InstanceOf(address);
    const BACSTAC_STATUS status = Call(Text("ReadObjectList(%u)", device), error);
    if (status != BACSTAC_OK)
        return status;
    const std::lock_guard lock(m_mutex);
    const auto found = m_devices.find(device);
    if (found == m_devices.end())
        return BACSTAC_STATUS_TIMEOUT;
    const auto& known = found->second.objects;
    if (objects != nullptr) {
        if (known.size() > *count)
            return BACSTAC_STATUS_BUFFER_TOO_SMALL;
        std::transform(known.begin(), known.end(), objects, [](const auto& object) { return object.first; });
    }
    *count = static_cast<unsigned>(known.size());
    return BACSTAC_OK;
}

// First and last index, the end not included, of the entries that are asked for.
std::pair<std::size_t, std::size_t> CFakeBacnet::Select(const std::vector<FakeLogEntry>& log,
                                                        BACSTAC_READ_RANGE_SPEC const& spec) const {
    if (spec.Kind == BACSTAC_RANGE_ALL)
        return {0, log.size()};
    std::size_t reference = 0; // index of the first entry that a positive count gives
    int count = 0;
    if (spec.Kind == BACSTAC_RANGE_BY_TIME || spec.Kind == BACSTAC_RANGE_BY_TIME_2001) {
        count = spec.ByTime.Count;
        const COMPARAISON first = m_referenceIncluded ? COMPARE_EQUAL : COMPARE_GREATER;
        const auto found = std::find_if(log.begin(), log.end(), [&](const FakeLogEntry& entry) {
            return Compare(entry.time, spec.ByTime.Reference) >= first;
        });
        reference = static_cast<std::size_t>(found - log.begin());
    } else {
        // Positions and, in a log that never lost an entry, sequence numbers count from 1.
        count = spec.ByIndex.Count;
        if (spec.ByIndex.Reference == 0 || spec.ByIndex.Reference > log.size())
            return {0, 0};
        reference = spec.ByIndex.Reference - (count < 0 ? 0 : 1);
    }
    const auto amount = static_cast<std::size_t>(std::abs(static_cast<long>(count))) + m_surplus;
    if (count < 0)
        return {reference - std::min(amount, reference), reference};
    return {reference, reference + (count == 0 ? 0 : std::min(amount, log.size() - reference))};
}

BACSTAC_STATUS CFakeBacnet::ReadRange(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                      int arrayIndex, BACSTAC_READ_RANGE_SPEC const* spec,
                                      BACSTAC_BIT_STRING* resultFlags, BACSTAC_PROPERTY_CONTENTS* contents,
                                      BACSTAC_ERROR* error, unsigned* firstSequenceNumber) {
    const BACSTAC_STATUS status = Call(Text("ReadRange(%u, ", device) + Text(object) +
                                           Text(", %u, %d, ", property, arrayIndex) + Text(*spec) + ")",
                                       error);
    if (status != BACSTAC_OK)
        return status;
    const std::lock_guard lock(m_mutex);
    Object* const found = FindObject(device, object);
    if (found == nullptr)
        return Fail(error, ERROR_CLASS_OBJECT, ERROR_CODE_UNKNOWN_OBJECT);
    if (property != PROP_LOG_BUFFER)
        return Fail(error, ERROR_CLASS_PROPERTY, ERROR_CODE_UNKNOWN_PROPERTY);
    const auto [first, end] = Select(found->log, *spec);
    const std::size_t filled = FillLogBuffer(object.Type, found->log, first, end, *contents);
    *resultFlags = {};
    SetBitStringBit(*resultFlags, BACSTAC_RANGE_FIRST_ITEM, filled > 0 && first == 0);
    SetBitStringBit(*resultFlags, BACSTAC_RANGE_LAST_ITEM, filled > 0 && first + filled == found->log.size());
    SetBitStringBit(*resultFlags, BACSTAC_RANGE_MORE_ITEMS, first + filled < end);
    if (firstSequenceNumber != nullptr)
        *firstSequenceNumber =
            filled == 0 || spec->Kind == BACSTAC_RANGE_BY_TIME_2001 ? 0 : static_cast<unsigned>(first) + 1;
    return BACSTAC_OK;
}

BACSTAC_STATUS CFakeBacnet::ReadPropertyConditional(unsigned device, BACSTAC_READ_CON_INFO const*, BACSTAC_RPC_RESULT*,
                                                    BACSTAC_ERROR* error) {
    return Unsupported(Text("ReadPropertyConditional(%u)", device), error);
}

BACSTAC_STATUS CFakeBacnet::WriteProperty(unsigned device, BACSTAC_OBJECT_ID const& object,
                                          BACSTAC_PROPERTY_ID property, int arrayIndex, int priority,
                                          BACSTAC_PROPERTY_CONTENTS const& contents, BACSTAC_ERROR* error) {
    const BACSTAC_STATUS status = Call(Text("WriteProperty(%u, ", device) + Text(object) +
                                           Text(", %u, %d, %d, ", property, arrayIndex, priority) +
                                           Text(contents, object, property, arrayIndex) + ")",
                                       error);
    return status == BACSTAC_OK ? Store(device, object, property, contents, error) : status;
}

BACSTAC_STATUS CFakeBacnet::WritePropertyNull(unsigned device, BACSTAC_OBJECT_ID const& object,
                                              BACSTAC_PROPERTY_ID property, int arrayIndex, int priority,
                                              BACSTAC_ERROR* error) {
    return Call(Text("WritePropertyNull(%u, ", device) + Text(object) +
                    Text(", %u, %d, %d)", property, arrayIndex, priority),
                error);
}

BACSTAC_STATUS CFakeBacnet::CreateObject(unsigned device, BACSTAC_OBJECT_SPECIFIER const* specifier,
                                         BACSTAC_PROPERTY_VALUE const*, unsigned count, BACSTAC_OBJECT_ID*,
                                         BACSTAC_ERROR* error, unsigned*) {
    return Unsupported(Text("CreateObject(%u, %u, (%u, %u), %u)", device, specifier->ByIdentifier, specifier->Type,
                            specifier->Instance, count),
                       error);
}

BACSTAC_STATUS CFakeBacnet::DeleteObject(unsigned device, BACSTAC_OBJECT_ID const* object, BACSTAC_ERROR* error) {
    return Unsupported(Text("DeleteObject(%u, ", device) + Text(*object) + ")", error);
}

BACSTAC_STATUS CFakeBacnet::DeviceCommControl(unsigned device, unsigned duration, BACSTAC_DCC_VALUE value, const char*,
                                              BACSTAC_ERROR* error) {
    return Unsupported(Text("DeviceCommControl(%u, %u, %u)", device, duration, static_cast<unsigned>(value)), error);
}

BACSTAC_STATUS CFakeBacnet::ReinitializeDevice(unsigned device, BACSTAC_REINIT_TYPE type, const char*,
                                               BACSTAC_ERROR* error) {
    return Unsupported(Text("ReinitializeDevice(%u, %u)", device, static_cast<unsigned>(type)), error);
}

BACSTAC_STATUS CFakeBacnet::ReadFile(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_READ_FILE_SPEC const*,
                                     BACSTAC_READ_FILE_RESULT*, BACSTAC_ERROR* error) {
    return Unsupported(Text("ReadFile(%u, ", device) + Text(object) + ")", error);
}

BACSTAC_STATUS CFakeBacnet::WriteFile(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_WRITE_FILE_SPEC const*,
                                      BACSTAC_WRITE_FILE_RESULT*, BACSTAC_ERROR* error) {
    return Unsupported(Text("WriteFile(%u, ", device) + Text(object) + ")", error);
}

BACSTAC_STATUS CFakeBacnet::GetAlarmSummary(unsigned device, BACSTAC_ALARM_SUMMARY*, unsigned, unsigned*,
                                            BACSTAC_ERROR* error) {
    return Unsupported(Text("GetAlarmSummary(%u)", device), error);
}

BACSTAC_STATUS CFakeBacnet::GetEnrollmentSummary(unsigned device, BACSTAC_ENROLLMENT_FILTER const&,
                                                 BACSTAC_ENROLLMENT_SUMMARY*, unsigned, unsigned*,
                                                 BACSTAC_ERROR* error) {
    return Unsupported(Text("GetEnrollmentSummary(%u)", device), error);
}

BACSTAC_STATUS CFakeBacnet::WhoIs(BACSTAC_ADDRESS const& destination, unsigned low, unsigned high) {
    return Call(Text("WhoIs(%u/%u, %u, %u)", destination.Remote, destination.Network, low, high), nullptr);
}

BACSTAC_STATUS CFakeBacnet::SynchronizeTime(bool utc, BACSTAC_DATE_TIME const&, unsigned const* devices, int count) {
    std::string list;
    for (int i = 0; i < count; ++i)
        list += Text(i == 0 ? "%u" : ", %u", devices[i]);
    return Call(Text("SynchronizeTime(%d, [", utc ? 1 : 0) + list + "])", nullptr);
}

bool CFakeBacnet::ReadDeviceTime(unsigned device, BACSTAC_DATE_TIME&, int&) {
    Call(Text("ReadDeviceTime(%u)", device), nullptr);
    return false;
}

bool CFakeBacnet::IsDeviceEnabled(unsigned device) {
    unsigned short network = 0;
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_devices.find(device);
        if (found == m_devices.end())
            return false;
        network = found->second.network;
    }
    return IsNetworkEnabled(network);
}

bool CFakeBacnet::IsNetworkEnabled(unsigned short network) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_enabledNetworks.find(network);
    return found == m_enabledNetworks.end() || found->second;
}

bool CFakeBacnet::EnableNetwork(unsigned short network) {
    if (Call(Text("EnableNetwork(%u)", network), nullptr) != BACSTAC_OK)
        return false;
    const std::lock_guard lock(m_mutex);
    m_enabledNetworks[network] = true;
    return true;
}

bool CFakeBacnet::DisableNetwork(unsigned short network) {
    if (Call(Text("DisableNetwork(%u)", network), nullptr) != BACSTAC_OK)
        return false;
    const std::lock_guard lock(m_mutex);
    m_enabledNetworks[network] = false;
    return true;
}

// ---- directory

void CFakeBacnet::GetDevLst(std::vector<unsigned>& devices, unsigned short network) {
    Call(Text("GetDevLst(%u)", network), nullptr);
    const std::lock_guard lock(m_mutex);
    devices.clear();
    for (const unsigned device : m_deviceOrder)
        if (network == BACSTAC_ALL_NETWORKS || m_devices[device].network == network)
            devices.push_back(device);
}

void CFakeBacnet::GetNetLst(std::map<unsigned short, bool>& networks) {
    const std::lock_guard lock(m_mutex);
    networks.clear();
    for (const auto& [instance, device] : m_devices)
        networks[device.network] = device.network != 0;
}

void CFakeBacnet::GetObjLst(unsigned device, std::vector<BACSTAC_OBJECT_ID>& objects, BACSTAC_OBJECT_TYPE type) {
    Call(Text("GetObjLst(%u, %d)", device, static_cast<int>(type)), nullptr);
    const std::lock_guard lock(m_mutex);
    objects.clear();
    const auto found = m_devices.find(device);
    if (found == m_devices.end())
        return;
    for (const auto& [id, object] : found->second.objects)
        if (type == BACSTAC_ALL_TYPES || id.Type == type)
            objects.push_back(id);
}

bool CFakeBacnet::FindDev(unsigned device) {
    const std::lock_guard lock(m_mutex);
    return m_devices.count(device) != 0;
}

bool CFakeBacnet::GetDevName(unsigned device, std::string& name) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_devices.find(device);
    if (found == m_devices.end() || found->second.name.empty())
        return false;
    name = found->second.name;
    return true;
}

bool CFakeBacnet::GetObjName(unsigned device, BACSTAC_OBJECT_ID const& object, std::string& name) {
    const std::lock_guard lock(m_mutex);
    Object* const found = FindObject(device, object);
    if (found == nullptr || found->name.empty())
        return false;
    name = found->name;
    return true;
}

BACSTAC_ADDRESS CFakeBacnet::GetDevAddr(unsigned device) {
    BACSTAC_ADDRESS address{};
    const std::lock_guard lock(m_mutex);
    const auto found = m_devices.find(device);
    if (found == m_devices.end())
        return address;
    address.Network = found->second.network;
    address.Remote = address.Network != 0 ? 1 : 0;
    std::memcpy(address.Mac, &device, sizeof device);
    address.MacLength = 6;
    return address;
}

unsigned CFakeBacnet::GetDevVendorId(unsigned) {
    return 0;
}

bool CFakeBacnet::LoadDir() {
    return Call("LoadDir()", nullptr) == BACSTAC_OK;
}

BACSTAC_STATUS CFakeBacnet::GetEventInformation(unsigned device, BACSTAC_OBJECT_ID const*, BACSTAC_EVENT_SUMMARY*,
                                                unsigned, unsigned*, bool*, BACSTAC_ERROR* error) {
    return Unsupported(Text("GetEventInformation(%u)", device), error);
}

BACSTAC_STATUS CFakeBacnet::ReadPropertyMultiple(unsigned device, BACSTAC_ADDRESS const&,
                                                 BACSTAC_OBJECT_ID const* objects, BACSTAC_READ_RESULT_ITEM* items,
                                                 unsigned count, BACSTAC_ERROR* error) {
    std::string event = Text("ReadPropertyMultiple(%u", device);
    for (unsigned i = 0; i < count; ++i) {
        if (i == 0 || objects[i] != objects[i - 1])
            event += ", " + Text(objects[i]);
        event +=
            Text(items[i].ArrayIndex == BACSTAC_NO_INDEX ? " %u" : " %u[%d]", items[i].Property, items[i].ArrayIndex);
    }
    const BACSTAC_STATUS status = Call(event + ")", error);
    if (status != BACSTAC_OK)
        return status;
    const std::lock_guard lock(m_mutex);
    if (m_devices.count(device) == 0)
        return BACSTAC_STATUS_UNKNOWN_DEVICE;
    for (unsigned i = 0; i < count; ++i) {
        const Object* const found = FindObject(device, objects[i]);
        items[i].Success = 0;
        if (found == nullptr)
            continue;
        if (const auto value = found->values.find(items[i].Property); value != found->values.end())
            items[i].Success = Fill(value->second, items[i].Contents) == BACSTAC_OK ? 1 : 0;
    }
    return BACSTAC_OK;
}

BACSTAC_STATUS CFakeBacnet::WritePropertyMultiple(unsigned device, BACSTAC_ADDRESS const&,
                                                  BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_VALUE const* values,
                                                  unsigned count, BACSTAC_ERROR* error) {
    std::string event = Text("WritePropertyMultiple(%u, ", device) + Text(object);
    for (const BACSTAC_PROPERTY_VALUE& value : std::span(values, count)) {
        event += Text(", %u", value.Property);
        if (value.Priority != BACSTAC_NO_PRIORITY)
            event += Text("@%d", value.Priority);
        event += " " + Text(value.Contents, object, value.Property, value.ArrayIndex);
    }
    BACSTAC_STATUS status = Call(event + ")", error);
    for (unsigned i = 0; i < count && status == BACSTAC_OK; ++i)
        status = Store(device, object, values[i].Property, values[i].Contents, error);
    return status;
}
