#include "platform/stack/directory/LiveDirectory.h"

#include <algorithm>
#include <mutex>

namespace bacnet {

struct LiveDirectory::Entry {
    unsigned Instance = 0;
    BACSTAC_ADDRESS Address{};
    unsigned Vendor = 0;
    std::uint16_t MaxApdu = 0;
    std::uint32_t Segmentation = NOT_TOLD;
    bool Known = false; // false: was known once
    bool InFile = false;
    bool Announced = false;                 // by an I-Am since the last load
    mutable std::atomic<bool> Alive{false}; // at Address, as an answer or announcement told last
};

LiveDirectory::LiveDirectory() : m_file(std::make_shared<CBACnetDir>()) {}
LiveDirectory::~LiveDirectory() = default;

const LiveDirectory::Entry* LiveDirectory::Find(unsigned device) const {
    const auto found = m_entries.find(device);
    return found == m_entries.end() || !found->second->Known ? nullptr : found->second.get();
}

bool LiveDirectory::Resolve(unsigned device, Target& target) const {
    const std::shared_lock lock(m_lock);
    const Entry* const entry = Find(device);
    if (entry == nullptr || entry->Address.MacLength == 0)
        return false;
    target = {entry->Address, entry->MaxApdu, const_cast<Entry*>(entry), entry->Instance, entry->Segmentation};
    return true;
}

void LiveDirectory::Confirm(const Target& target) {
    if (target.Device->Alive.load(std::memory_order_relaxed)) // the usual case costs no lock
        return;
    const std::shared_lock lock(m_lock);
    if (target.Device->Address == target.Address)
        target.Device->Alive.store(true, std::memory_order_relaxed);
}

void LiveDirectory::Doubt(const Target& target) {
    const std::shared_lock lock(m_lock);
    if (target.Device->Address == target.Address)
        target.Device->Alive.store(false, std::memory_order_relaxed);
}

LiveDirectory::Learned LiveDirectory::Learn(const IAm& announcement, const BACSTAC_ADDRESS& address,
                                            BACSTAC_ADDRESS& former) {
    const auto maxApdu = static_cast<std::uint16_t>(std::min<std::uint32_t>(announcement.MaxApdu, UINT16_MAX));
    {
        const std::shared_lock lock(m_lock); // most announcements tell nothing new
        const Entry* const entry = Find(announcement.Device);
        if (entry != nullptr && entry->Announced && entry->Address == address && entry->MaxApdu == maxApdu &&
            entry->Segmentation == announcement.Segmentation && entry->Vendor == announcement.Vendor) {
            entry->Alive.store(true, std::memory_order_relaxed);
            return Learned::known;
        }
    }
    const std::unique_lock lock(m_lock);
    auto& slot = m_entries[announcement.Device];
    if (!slot) {
        slot = std::make_unique<Entry>();
        slot->Instance = announcement.Device;
    }
    Entry& entry = *slot;
    Learned learned = Learned::known;
    former = entry.Address;
    if (!entry.Known) {
        if (m_learned >= MAX_LEARNED) {
            if (entry.Address == BACSTAC_ADDRESS{})
                m_entries.erase(announcement.Device); // nobody has seen it
            return Learned::full;
        }
        learned = Learned::added;
        ++m_learned;
    } else if (entry.Address != address && entry.Address.MacLength != 0) {
        if (entry.Alive.load(std::memory_order_relaxed))
            return Learned::duplicate;
        learned = Learned::moved;
    }
    entry.Known = true;
    entry.Announced = true;
    entry.Address = address;
    entry.Vendor = announcement.Vendor;
    entry.MaxApdu = maxApdu;
    entry.Segmentation = announcement.Segmentation;
    entry.Alive.store(true, std::memory_order_relaxed);
    return learned;
}

bool LiveDirectory::Load(const std::string& path) {
    auto file = std::make_shared<CBACnetDir>();
    if (!file->Load(path))
        return false;
    std::vector<unsigned> devices;
    file->GetDevLst(devices, BACSTAC_ALL_NETWORKS);

    const std::unique_lock lock(m_lock);
    for (auto& [instance, entry] : m_entries) {
        entry->InFile = false;
        // Gone from the file since the last load, that is deleted by the user; the device may announce itself again.
        if (m_file->FindDev(instance) && !file->FindDev(instance))
            entry->Known = false;
    }
    for (const unsigned instance : devices) {
        auto& slot = m_entries[instance];
        if (!slot) {
            slot = std::make_unique<Entry>();
            slot->Instance = instance;
        }
        const CBACnetDev& device = file->GetDev(instance);
        if (!slot->Known || slot->Address != device.GetAddr()) {
            slot->Alive.store(false, std::memory_order_relaxed);
            slot->MaxApdu = 0;
            slot->Segmentation = NOT_TOLD;
            slot->Announced = false;
        }
        slot->Known = true;
        slot->InFile = true;
        slot->Address = device.GetAddr();
        slot->Vendor = device.GetVendorId();
    }
    m_learned = static_cast<std::size_t>(std::count_if(m_entries.begin(), m_entries.end(), [](const auto& each) {
        return each.second->Known && !each.second->InFile;
    }));
    m_file = std::move(file);
    m_loaded.store(true);
    return true;
}

std::shared_ptr<const CBACnetDir> LiveDirectory::File() const {
    const std::shared_lock lock(m_lock);
    return m_file;
}

void LiveDirectory::GetDevLst(std::vector<unsigned>& devices, std::uint16_t network) const {
    devices.clear();
    {
        const std::shared_lock lock(m_lock);
        for (const auto& [instance, entry] : m_entries)
            if (entry->Known && (network == BACSTAC_ALL_NETWORKS || entry->Address.Network == network))
                devices.push_back(instance);
    }
    std::sort(devices.begin(), devices.end());
}

void LiveDirectory::GetNetLst(std::map<unsigned short, bool>& networks) const {
    networks.clear();
    const std::shared_lock lock(m_lock);
    for (const auto& [instance, entry] : m_entries)
        if (entry->Known)
            networks.emplace(entry->Address.Network, entry->Address.Remote != 0);
}

bool LiveDirectory::FindDev(unsigned device) const {
    const std::shared_lock lock(m_lock);
    return Find(device) != nullptr;
}

BACSTAC_ADDRESS LiveDirectory::GetDevAddr(unsigned device) const {
    const std::shared_lock lock(m_lock);
    const Entry* const entry = Find(device);
    return entry == nullptr ? BACSTAC_ADDRESS{} : entry->Address;
}

unsigned LiveDirectory::FindByAddress(const BACSTAC_ADDRESS& address) const {
    const std::shared_lock lock(m_lock);
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&address](const auto& each) {
        return each.second->Known && each.second->Address == address;
    });
    return found == m_entries.end() ? BACSTAC_ALL_INSTANCES : found->first;
}

unsigned LiveDirectory::GetDevVendorId(unsigned device) const {
    const std::shared_lock lock(m_lock);
    const Entry* const entry = Find(device);
    return entry == nullptr ? 0 : entry->Vendor;
}

} // namespace bacnet
