// The driver's tag table: which BACnet reference each kernel tag stands for. The driver fills it, before the console
// starts, for its polling and change-of-value work; the console only looks things up. It has no lock.
#pragma once

#include "api/bacnet/Types.h"
#include "module/console/Export.h"

#include <compare>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

inline constexpr std::uint32_t TAG_UNSET = 0xFFFFFFFF; // of an id, instance, type or property
inline constexpr std::int32_t TAG_WHOLE_VALUE = -1;    // status bit: the tag holds the property's value

// One tag's BACnet binding.
class BDC_API CTag {
public:
    std::uint32_t tagId = TAG_UNSET; // key of the table
    std::uint16_t reserved1 = 0;     // copied with the record, no meaning here
    std::uint32_t cov = 0;           // not 0: the value comes by change-of-value subscription
    std::uint32_t device = TAG_UNSET;
    std::uint32_t objectType = TAG_UNSET;
    std::uint32_t objectInstance = TAG_UNSET;
    std::uint32_t property = TAG_UNSET;
    std::uint32_t arrayIndex = TAG_UNSET;     // 0xFFFFFFFF: the whole property
    std::int32_t statusBit = TAG_WHOLE_VALUE; // or the bit of the object's Status_Flags that the tag holds
    std::uint8_t reserved2 = 0;               // copied with the record, no meaning here

    // The reference of the record, with its device.
    void GetObjPropRef(BACSTAC_DEV_OBJ_PROP_REF& ref) const;

    bool operator==(const CTag&) const = default;
};

class BDC_API CTagList {
public:
    static const CTag EmptyTag; // what a failed lookup gives

    // Inserts under the record's tag id, or overwrites.
    void RegisterTag(const CTag& tag);
    int GetTagCnt() const;
    // The entry, or EmptyTag. Valid until the table changes.
    const CTag& GetTag(std::uint32_t tagId) const;
    // The lowest id of a tag of exactly this reference and status bit; of the reference's device only the instance
    // counts. False, and tagId as it was, when there is none. Only Status_Flags has tags of single bits.
    bool FindTagForRef(const BACSTAC_DEV_OBJ_PROP_REF& ref, int statusBit, std::uint32_t& tagId) const;
    // Appends, in ascending order, the ids of the tags of this reference that come by change-of-value subscription,
    // whatever their status bit.
    void GetCOVtagIdList(unsigned device, const BACSTAC_OBJ_PROP_REF& ref, std::vector<std::uint32_t>& out) const;

private:
    // A transfer looks up five references for each trend among thousands of tags, so the table is also kept in the
    // order of what is looked for. The first member that is not smaller is the lowest id.
    struct Place {
        std::uint32_t device;
        std::uint32_t objectType;
        std::uint32_t objectInstance;
        std::uint32_t property;
        std::uint32_t arrayIndex;
        std::int32_t statusBit;
        std::uint32_t tagId;

        auto operator<=>(const Place&) const = default;
    };
    static Place PlaceOf(const CTag& tag);

    std::map<std::uint32_t, CTag> m_tags;
    std::set<Place> m_places;
};
