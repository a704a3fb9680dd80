#include "module/console/Tag.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::uint32_t OBJECT_DEVICE = 8;
constexpr std::uint32_t PROP_STATUS_FLAGS = 111;
constexpr std::uint32_t DEVICE_PRESENT = 1;

} // namespace

constinit const CTag CTagList::EmptyTag{};

void CTag::GetObjPropRef(BACSTAC_DEV_OBJ_PROP_REF& ref) const {
    ref = {};
    ref.ObjectId = {objectType, objectInstance};
    ref.Property = property;
    ref.ArrayIndex = arrayIndex;
    ref.DevicePresent = DEVICE_PRESENT;
    ref.DeviceId = {OBJECT_DEVICE, device};
}

CTagList::Place CTagList::PlaceOf(const CTag& tag) {
    return {tag.device, tag.objectType, tag.objectInstance, tag.property, tag.arrayIndex, tag.statusBit, tag.tagId};
}

void CTagList::RegisterTag(const CTag& tag) {
    const auto [it, inserted] = m_tags.try_emplace(tag.tagId, tag);
    if (!inserted) {
        m_places.erase(PlaceOf(it->second));
        it->second = tag;
    }
    m_places.insert(PlaceOf(tag));
}

int CTagList::GetTagCnt() const {
    return static_cast<int>(m_tags.size());
}

const CTag& CTagList::GetTag(std::uint32_t tagId) const {
    const auto it = m_tags.find(tagId);
    return it != m_tags.end() ? it->second : EmptyTag;
}

bool CTagList::FindTagForRef(const BACSTAC_DEV_OBJ_PROP_REF& ref, int statusBit, std::uint32_t& tagId) const {
    if (statusBit != TAG_WHOLE_VALUE && ref.Property != PROP_STATUS_FLAGS)
        return false;
    Place wanted{
        ref.DeviceId.Instance, ref.ObjectId.Type, ref.ObjectId.Instance, ref.Property, ref.ArrayIndex, statusBit, 0};
    const auto it = m_places.lower_bound(wanted);
    if (it == m_places.end())
        return false;
    wanted.tagId = it->tagId;
    if (*it != wanted)
        return false;
    tagId = it->tagId;
    return true;
}

void CTagList::GetCOVtagIdList(unsigned device, const BACSTAC_OBJ_PROP_REF& ref,
                               std::vector<std::uint32_t>& out) const {
    Place wanted{device,
                 ref.ObjectId.Type,
                 ref.ObjectId.Instance,
                 ref.Property,
                 ref.ArrayIndex,
                 std::numeric_limits<std::int32_t>::min(),
                 0};
    const auto begin = m_places.lower_bound(wanted);
    wanted.statusBit = std::numeric_limits<std::int32_t>::max();
    wanted.tagId = std::numeric_limits<std::uint32_t>::max();
    const auto end = m_places.upper_bound(wanted);

    const auto appended = static_cast<std::ptrdiff_t>(out.size());
    for (auto it = begin; it != end; ++it)
        if (GetTag(it->tagId).cov != 0)
            out.push_back(it->tagId);
    std::sort(out.begin() + appended, out.end()); // the places stand in the order of the status bit
}
