#include "module/history/HistoryModel.h"

#include "api/bacnet/BacGeneral.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::uint32_t PROTOCOL_VERSION_1 = 1;
constexpr std::uint32_t FIRST_BY_TIME_REVISION = 4;

bool IsTrend(BACSTAC_OBJECT_TYPE type) {
    return type == OBJ_TREND_LOG || type == OBJ_TREND_LOG_MULTIPLE;
}

bool IsDataObject(BACSTAC_OBJECT_TYPE type) {
    switch (type) {
    case OBJ_ANALOG_INPUT:
    case OBJ_ANALOG_OUTPUT:
    case OBJ_ANALOG_VALUE:
    case OBJ_BINARY_INPUT:
    case OBJ_BINARY_OUTPUT:
    case OBJ_BINARY_VALUE:
    case OBJ_MULTI_STATE_INPUT:
    case OBJ_MULTI_STATE_OUTPUT:
    case OBJ_MULTI_STATE_VALUE:
        return true;
    default:
        return false;
    }
}

} // namespace

CContentsBuffer::CContentsBuffer() : m_memory(std::make_unique_for_overwrite<char[]>(BACSTAC_CONTENTS_SIZE)) {
    Clear();
}

void CContentsBuffer::Clear() {
    m_contents = {TYPE_NONE, m_memory.get(), BACSTAC_CONTENTS_SIZE, 0};
}

CBACnetDevice::CBACnetDevice(CBacGeneral& bacnet, std::uint32_t instance)
    : m_bacnet(bacnet), m_instance(instance), m_text(std::to_string(instance)) {}

std::uint32_t CBACnetDevice::GetProtocolLevel() {
    if (ProtocolLevel != PROTOCOL_UNKNOWN)
        return ProtocolLevel;
    const BACSTAC_OBJECT_ID device{OBJ_DEVICE, m_instance};
    std::uint32_t version = 0;
    std::uint32_t revision = 0;
    if (m_bacnet.ReadProperty(m_instance, device, PROP_PROTOCOL_VERSION, BACSTAC_NO_INDEX, &version, sizeof version,
                              nullptr) != BACSTAC_OK ||
        m_bacnet.ReadProperty(m_instance, device, PROP_PROTOCOL_REVISION, BACSTAC_NO_INDEX, &revision, sizeof revision,
                              nullptr) != BACSTAC_OK)
        return PROTOCOL_UNKNOWN;
    if (version > PROTOCOL_VERSION_1 || (version == PROTOCOL_VERSION_1 && revision >= FIRST_BY_TIME_REVISION))
        ProtocolLevel = PROTOCOL_REVISION_4;
    return ProtocolLevel;
}

CBACnetObject::CBACnetObject(CBacGeneral& bacnet, CBACnetDevice& device, const BACSTAC_OBJECT_ID& id)
    : m_bacnet(bacnet), m_device(device), m_id(id) {
    if (!bacnet.GetObjName(device.GetInstance(), id, m_name))
        m_name.clear();
}

CBACnetTrend::CBACnetTrend(CBacGeneral& bacnet, CBACnetDevice& device, const BACSTAC_OBJECT_ID& id)
    : CBACnetObject(bacnet, device, id) {
    CContentsBuffer buffer;
    BACSTAC_PROPERTY_CONTENTS& contents = buffer.Get();
    if (bacnet.ReadProperty(device.GetInstance(), id, PROP_LOG_DEVICE_OBJECT_PROPERTY, BACSTAC_NO_INDEX, contents,
                            nullptr) != BACSTAC_OK ||
        contents.DataType != TYPE_DEV_OBJ_PROP_REF)
        return;
    m_references.resize(
        std::min<std::size_t>(contents.ElementCount, contents.BufferSize / sizeof(BACSTAC_DEV_OBJ_PROP_REF)));
    if (!m_references.empty())
        std::memcpy(m_references.data(), contents.Buffer, m_references.size() * sizeof(BACSTAC_DEV_OBJ_PROP_REF));
    for (BACSTAC_DEV_OBJ_PROP_REF& reference : m_references) {
        if (reference.DevicePresent == 0) {
            reference.DevicePresent = 1;
            reference.DeviceId = {OBJ_DEVICE, device.GetInstance()};
        }
    }
}

BACSTAC_STATUS CBACnetTrend::Read(const BACSTAC_DATE_TIME& position, CTrendRows& rows, bool& more,
                                  BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR& error) const {
    BACSTAC_READ_RANGE_SPEC spec{};
    spec.Kind =
        GetDevice().GetProtocolLevel() == PROTOCOL_REVISION_4 ? BACSTAC_RANGE_BY_TIME : BACSTAC_RANGE_BY_TIME_2001;
    spec.ByTime.Reference = position;
    spec.ByTime.Count = static_cast<std::int32_t>(rows.GetCapacity());
    BACSTAC_BIT_STRING flags{};
    const BACSTAC_STATUS status = m_bacnet.ReadRange(GetDevice().GetInstance(), GetId(), PROP_LOG_BUFFER,
                                                     BACSTAC_NO_INDEX, &spec, &flags, &contents, &error, nullptr);
    if (status != BACSTAC_OK)
        return status;
    rows.AppendBlock(GetId().Type, contents);
    if (CBacGeneral::TestBitStringBit(flags, BACSTAC_RANGE_LAST_ITEM))
        more = false;
    return BACSTAC_OK;
}

void CHistoryModel::RebuildDeviceList() {
    m_trends.clear();
    m_dataObjects.clear();
    m_devices.clear();
    std::vector<unsigned> devices;
    m_bacnet.GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    for (const unsigned instance : devices)
        m_devices.push_back(std::make_unique<CBACnetDevice>(m_bacnet, instance));
}

void CHistoryModel::RebuildObjectLists(CBACnetDevice* device) {
    m_trends.clear();
    m_dataObjects.clear();
    std::vector<BACSTAC_OBJECT_ID> objects;
    m_bacnet.GetObjLst(device->GetInstance(), objects, BACSTAC_ALL_TYPES);
    for (const BACSTAC_OBJECT_ID& id : objects) {
        if (IsTrend(id.Type))
            m_trends.push_back(std::make_unique<CBACnetTrend>(m_bacnet, *device, id));
        else if (IsDataObject(id.Type))
            m_dataObjects.push_back(std::make_unique<CBACnetObject>(m_bacnet, *device, id));
    }
}

CBACnetDevice* CHistoryModel::FindDevice(const std::string& text) const {
    const auto found =
        std::find_if(m_devices.begin(), m_devices.end(), [&](const auto& device) { return device->GetText() == text; });
    return found == m_devices.end() ? nullptr : found->get();
}

CBACnetTrend* CHistoryModel::FindTrend(const std::string& name) const {
    const auto found =
        std::find_if(m_trends.begin(), m_trends.end(), [&](const auto& trend) { return trend->GetName() == name; });
    return found == m_trends.end() ? nullptr : found->get();
}
