// The directory that the services use: which device has which address. It joins the directory file, as it was loaded
// last, with what I-Am announcements tell. Any thread at any time; readers never wait for a load, which is done aside
// and then put in place.
#pragma once

#include "api/bacnet/Dir.h"
#include "api/bacnet/Types.h"
#include "platform/stack/services/WhoIs.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <shared_mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace bacnet {

class LiveDirectory {
public:
    // Announced devices beyond the file's that are kept, so that a flood of announcements costs bounded memory.
    static constexpr std::size_t MAX_LEARNED = 100000;

    LiveDirectory();
    ~LiveDirectory();
    LiveDirectory(const LiveDirectory&) = delete;
    LiveDirectory& operator=(const LiveDirectory&) = delete;

    // Where a request to a device goes. Entry names the device in Confirm and Doubt; it is valid as long as the
    // directory.
    struct Entry;
    static constexpr std::uint32_t NOT_TOLD = UINT32_MAX;
    struct Target {
        BACSTAC_ADDRESS Address{};
        std::uint16_t MaxApdu = 0; // octets that the device accepts; 0 when it never announced itself
        Entry* Device = nullptr;
        unsigned Instance = BACSTAC_MAX_INSTANCE; // of the device; this one stands for any
        std::uint32_t Segmentation = NOT_TOLD;    // as announced
    };
    bool Resolve(unsigned device, Target& target) const;

    // An answer came from the address that Resolve gave: the device lives there.
    void Confirm(const Target& target);
    // The device kept silent there: it may have moved.
    void Doubt(const Target& target);

    enum class Learned : std::uint8_t {
        known,     // nothing new
        added,     // a device that the file does not have
        moved,     // the device was not alive at its former address
        duplicate, // another device, alive, has this instance: it stays
        full,      // no room for more
    };
    // former receives the address that the directory has, for moved and duplicate.
    Learned Learn(const IAm& announcement, const BACSTAC_ADDRESS& address, BACSTAC_ADDRESS& former);

    // Reads the file aside and puts it in place. Addresses of the file hold from then on; devices that neither it nor
    // an announcement since the former load knows are gone. False leaves everything as it was.
    bool Load(const std::string& path);
    bool IsLoaded() const { return m_loaded.load(); } // once at least
    // The file's directory as it was loaded last. Never null.
    std::shared_ptr<const CBACnetDir> File() const;

    // Lists over both, ascending.
    void GetDevLst(std::vector<unsigned>& devices, std::uint16_t network) const;
    void GetNetLst(std::map<unsigned short, bool>& networks) const;
    bool FindDev(unsigned device) const;
    BACSTAC_ADDRESS GetDevAddr(unsigned device) const; // all zero when unknown
    // The device at an address; BACSTAC_ALL_INSTANCES when none is known there. Looks at every device.
    unsigned FindByAddress(const BACSTAC_ADDRESS& address) const;
    unsigned GetDevVendorId(unsigned device) const;

private:
    const Entry* Find(unsigned device) const;

    mutable std::shared_mutex m_lock; // guards all below; held for look-ups and single changes only
    std::unordered_map<unsigned, std::unique_ptr<Entry>> m_entries; // never removed, Entry::Known tells
    std::shared_ptr<const CBACnetDir> m_file;
    std::size_t m_learned = 0; // entries that the file does not have
    std::atomic<bool> m_loaded{false};
};

} // namespace bacnet
