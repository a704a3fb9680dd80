#include "api/bacnet/Dir.h"
#include "api/bacnet/Enums.h"
#include "api/bacnet/PropertyValue.h"
#include "platform/stack/directory/DirFile.h"

#include <algorithm>
#include <atomic>

// ---- CBACnetObj -----------------------------------------------------------------------------------------------------

CBACnetObj::CBACnetObj() = default;
CBACnetObj::CBACnetObj(CBACnetObj&&) noexcept = default;
CBACnetObj& CBACnetObj::operator=(CBACnetObj&&) noexcept = default;
CBACnetObj::~CBACnetObj() = default;

CBACnetObj::CBACnetObj(const CBACnetObj& other)
    : m_id(other.m_id), m_commandable(other.m_commandable), m_name(other.m_name), m_description(other.m_description) {
    if (!other.m_values)
        return;
    m_values = std::make_unique<PropertyValues>();
    for (const auto& [property, value] : *other.m_values)
        m_values->emplace(property, std::unique_ptr<CPropertyValue>(value->Clone()));
}

CBACnetObj& CBACnetObj::operator=(const CBACnetObj& other) {
    if (this != &other)
        *this = CBACnetObj(other);
    return *this;
}

void CBACnetObj::SetPropVal(BACSTAC_PROPERTY_ID property, CPropertyValue* value) {
    if (value != nullptr) {
        if (!m_values)
            m_values = std::make_unique<PropertyValues>();
        auto& held = (*m_values)[property];
        if (held.get() != value)
            held.reset(value);
    } else if (m_values) {
        m_values->erase(property);
        if (m_values->empty())
            m_values.reset();
    }
}

const CPropertyValue* CBACnetObj::GetPropVal(BACSTAC_PROPERTY_ID property) const {
    if (!m_values)
        return nullptr;
    const auto found = m_values->find(property);
    return found == m_values->end() ? nullptr : found->second.get();
}

// ---- CBACnetDev -----------------------------------------------------------------------------------------------------

namespace {

auto LowerBound(auto& objects, BACSTAC_OBJECT_ID const& id) {
    return std::lower_bound(
        objects.begin(), objects.end(), id,
        [](const CBACnetObj& object, BACSTAC_OBJECT_ID const& key) { return object.GetId() < key; });
}

// The fields of an entry that a scan may not have read stay as they were.
void TakeFields(CBACnetObj& mine, const CBACnetObj& other) {
    if (!other.GetName().empty())
        mine.SetName(other.GetName());
    if (!other.GetDesc().empty())
        mine.SetDesc(other.GetDesc());
    mine.SetCommandable(other.IsCommandable());
    if (const auto* values = other.GetPropVals())
        for (const auto& [property, value] : *values)
            mine.SetPropVal(property, value->Clone());
}

} // namespace

CBACnetDev::CBACnetDev() {
    SetId({OBJ_DEVICE, 0});
}
CBACnetDev::~CBACnetDev() = default;

bool CBACnetDev::AddObj(CBACnetObj const& object) {
    return AddObj(CBACnetObj(object));
}

bool CBACnetDev::AddObj(CBACnetObj&& object) {
    const BACSTAC_OBJECT_ID id = object.GetId();
    if (id == GetId()) {
        SetName(object.GetName());
        SetDesc(object.GetDesc());
    }
    if (m_objects.empty() || m_objects.back().GetId() < id) { // object lists and files come in order
        m_objects.push_back(std::move(object));
        return true;
    }
    const auto at = LowerBound(m_objects, id);
    if (at->GetId() == id)
        *at = std::move(object);
    else
        m_objects.insert(at, std::move(object));
    return true;
}

bool CBACnetDev::DelObj(BACSTAC_OBJECT_ID const& id) {
    const auto at = LowerBound(m_objects, id);
    if (at == m_objects.end() || at->GetId() != id)
        return false;
    m_objects.erase(at);
    return true;
}

CBACnetObj* CBACnetDev::FindObj(BACSTAC_OBJECT_ID const& id) {
    const auto at = LowerBound(m_objects, id);
    return at == m_objects.end() || at->GetId() != id ? nullptr : &*at;
}

const CBACnetObj* CBACnetDev::FindObj(BACSTAC_OBJECT_ID const& id) const {
    const auto at = LowerBound(m_objects, id);
    return at == m_objects.end() || at->GetId() != id ? nullptr : &*at;
}

// ---- CBACnetDir -----------------------------------------------------------------------------------------------------

CBACnetDir::CBACnetDir() = default;
CBACnetDir::CBACnetDir(const CBACnetDir&) = default;
CBACnetDir& CBACnetDir::operator=(const CBACnetDir&) = default;
CBACnetDir::~CBACnetDir() = default;

bool CBACnetDir::Load(const std::string& path) {
    std::vector<std::shared_ptr<const CBACnetDev>> devices;
    if (!bacnet::directory::ReadFile(path, devices))
        return false;
    m_devices.clear();
    for (auto& device : devices)
        m_devices.emplace_hint(m_devices.end(), device->GetInst(), std::move(device));
    return true;
}

bool CBACnetDir::Save(const std::string& path) const {
    std::vector<std::shared_ptr<const CBACnetDev>> devices;
    devices.reserve(m_devices.size());
    for (const auto& [instance, device] : m_devices)
        devices.push_back(device);
    return bacnet::directory::WriteFile(path, devices);
}

bool CBACnetDir::AddDir(CBACnetDir const& other) {
    for (const auto& [instance, theirs] : other.m_devices) {
        const auto found = m_devices.find(instance);
        if (found == m_devices.end()) {
            m_devices.emplace(instance, theirs);
            continue;
        }
        if (found->second == theirs)
            continue;
        CBACnetDev* mine = Writable(instance);
        TakeFields(*mine, *theirs);
        if (theirs->GetAddr() != BACSTAC_ADDRESS{})
            mine->SetAddr(theirs->GetAddr());
        if (theirs->GetVendorId() != 0)
            mine->SetVendorId(theirs->GetVendorId());
        for (const CBACnetObj& object : theirs->GetObjects()) {
            if (CBACnetObj* known = mine->FindObj(object.GetId()))
                TakeFields(*known, object);
            else
                mine->AddObj(object);
        }
    }
    return true;
}

void CBACnetDir::GetNetLst(std::map<unsigned short, bool>& networks) const {
    networks.clear();
    for (const auto& [instance, device] : m_devices)
        networks.emplace(device->GetAddr().Network, device->GetAddr().Remote != 0);
}

std::map<unsigned short, bool> const& CBACnetDir::GetNetLst() const {
    GetNetLst(m_networks);
    return m_networks;
}

void CBACnetDir::GetDevLst(std::vector<unsigned>& devices, unsigned short network) const {
    devices.clear();
    for (const auto& [instance, device] : m_devices)
        if (network == BACSTAC_ALL_NETWORKS || device->GetAddr().Network == network)
            devices.push_back(instance);
}

void CBACnetDir::GetTypeLst(unsigned device, std::set<BACSTAC_OBJECT_TYPE>& types) const {
    types.clear();
    for (const CBACnetObj& object : GetDev(device).GetObjects())
        types.insert(types.end(), object.GetId().Type);
}

void CBACnetDir::GetObjLst(unsigned device, std::vector<BACSTAC_OBJECT_ID>& objects, BACSTAC_OBJECT_TYPE type) const {
    objects.clear();
    for (const CBACnetObj& object : GetDev(device).GetObjects())
        if (type == BACSTAC_ALL_TYPES || object.GetId().Type == type)
            objects.push_back(object.GetId());
}

namespace {

// Whether an entry is ours alone. The count can only fall behind our back, never rise: the fence makes a former
// holder's last reads happen before our writes. The thread sanitizer knows no fences; there each change makes a copy.
bool IsOwnedAlone(const std::shared_ptr<const CBACnetDev>& device) {
#if defined(__SANITIZE_THREAD__)
    return device == nullptr;
#else
    if (device.use_count() > 1)
        return false;
    std::atomic_thread_fence(std::memory_order_acquire);
    return true;
#endif
}

} // namespace

CBACnetDev* CBACnetDir::Writable(unsigned device) {
    const auto found = m_devices.find(device);
    if (found == m_devices.end())
        return nullptr;
    if (!IsOwnedAlone(found->second))
        found->second = std::make_shared<CBACnetDev>(*found->second);
    return const_cast<CBACnetDev*>(found->second.get()); // made as a non-const CBACnetDev everywhere
}

bool CBACnetDir::AddDev(CBACnetDev const& device) {
    const auto [at, added] = m_devices.try_emplace(device.GetInst());
    if (added)
        at->second = std::make_shared<CBACnetDev>(device);
    return added;
}

bool CBACnetDir::DelDev(unsigned device) {
    return m_devices.erase(device) != 0;
}

bool CBACnetDir::FindDev(unsigned device) const {
    return m_devices.contains(device);
}

bool CBACnetDir::FindDev(const std::string& name) const {
    return std::any_of(m_devices.begin(), m_devices.end(),
                       [&](const auto& entry) { return entry.second->GetName() == name; });
}

const CBACnetDev& CBACnetDir::GetDev(unsigned device) const {
    static const CBACnetDev none;
    const auto found = m_devices.find(device);
    return found == m_devices.end() ? none : *found->second;
}

bool CBACnetDir::GetDevName(unsigned device, std::string& name) const {
    const auto found = m_devices.find(device);
    if (found == m_devices.end())
        return false;
    name = found->second->GetName();
    return true;
}

bool CBACnetDir::SetDevName(unsigned device, const std::string& name) {
    CBACnetDev* const entry = Writable(device);
    if (entry != nullptr)
        entry->SetName(name);
    return entry != nullptr;
}

bool CBACnetDir::GetDevDesc(unsigned device, std::string& description) const {
    const auto found = m_devices.find(device);
    if (found == m_devices.end())
        return false;
    description = found->second->GetDesc();
    return true;
}

bool CBACnetDir::SetDevDesc(unsigned device, const std::string& description) {
    CBACnetDev* const entry = Writable(device);
    if (entry != nullptr)
        entry->SetDesc(description);
    return entry != nullptr;
}

bool CBACnetDir::GetDevAddr(unsigned device, BACSTAC_ADDRESS& address) const {
    const auto found = m_devices.find(device);
    if (found == m_devices.end())
        return false;
    address = found->second->GetAddr();
    return true;
}

bool CBACnetDir::SetDevAddr(unsigned device, BACSTAC_ADDRESS const& address) {
    CBACnetDev* const entry = Writable(device);
    if (entry != nullptr)
        entry->SetAddr(address);
    return entry != nullptr;
}

unsigned CBACnetDir::GetDevVendorId(unsigned device) const {
    return GetDev(device).GetVendorId();
}

bool CBACnetDir::AddObj(unsigned device, CBACnetObj const& object) {
    CBACnetDev* const entry = Writable(device);
    return entry != nullptr && entry->AddObj(object);
}

bool CBACnetDir::DelObj(unsigned device, BACSTAC_OBJECT_ID const& id) {
    return FindObj(device, id) && Writable(device)->DelObj(id);
}

bool CBACnetDir::FindObj(unsigned device, BACSTAC_OBJECT_ID const& id) const {
    return GetDev(device).FindObj(id) != nullptr;
}

bool CBACnetDir::FindObj(unsigned device, const std::string& name) const {
    const auto& objects = GetDev(device).GetObjects();
    return std::any_of(objects.begin(), objects.end(),
                       [&](const CBACnetObj& object) { return object.GetName() == name; });
}

bool CBACnetDir::GetObjName(unsigned device, BACSTAC_OBJECT_ID const& id, std::string& name) const {
    const CBACnetObj* const object = GetDev(device).FindObj(id);
    if (object != nullptr)
        name = object->GetName();
    return object != nullptr;
}

bool CBACnetDir::SetObjName(unsigned device, BACSTAC_OBJECT_ID const& id, const std::string& name) {
    if (!FindObj(device, id))
        return false;
    Writable(device)->FindObj(id)->SetName(name);
    return true;
}

bool CBACnetDir::GetObjDesc(unsigned device, BACSTAC_OBJECT_ID const& id, std::string& description) const {
    const CBACnetObj* const object = GetDev(device).FindObj(id);
    if (object != nullptr)
        description = object->GetDesc();
    return object != nullptr;
}

bool CBACnetDir::SetObjDesc(unsigned device, BACSTAC_OBJECT_ID const& id, const std::string& description) {
    if (!FindObj(device, id))
        return false;
    Writable(device)->FindObj(id)->SetDesc(description);
    return true;
}

bool CBACnetDir::IsObjCommandable(unsigned device, BACSTAC_OBJECT_ID const& id) const {
    const CBACnetObj* const object = GetDev(device).FindObj(id);
    return object != nullptr && object->IsCommandable();
}

bool CBACnetDir::SetObjCommandable(unsigned device, BACSTAC_OBJECT_ID const& id, bool commandable) {
    if (!FindObj(device, id))
        return false;
    Writable(device)->FindObj(id)->SetCommandable(commandable);
    return true;
}
