// The devices and objects that a history transfer works on, rebuilt from the BACnet directory during each transfer.
// Only the transfer's thread uses them.
#pragma once

#include "api/bacnet/Types.h"
#include "module/history/TrendRows.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class CBacGeneral;

// What is known of a device's protocol. 0 and 1 are read alike; a device that is forced to 1 is never asked.
inline constexpr std::uint32_t PROTOCOL_UNKNOWN = 0;
inline constexpr std::uint32_t PROTOCOL_FORCED_2001 = 1;
inline constexpr std::uint32_t PROTOCOL_REVISION_4 = 2; // version 1 revision 4 or later

class CBACnetDevice {
public:
    CBACnetDevice(CBacGeneral& bacnet, std::uint32_t instance);

    // ProtocolLevel, found out by reading the device object as long as it is 0. A device that fails to answer, and one
    // of a lower revision, stays at 0 and is asked again at the next read.
    std::uint32_t GetProtocolLevel();
    std::uint32_t GetInstance() const { return m_instance; }
    // The instance as decimal text, by which the settings name a device.
    const std::string& GetText() const { return m_text; }

    std::uint32_t ProtocolLevel = PROTOCOL_UNKNOWN;

private:
    CBacGeneral& m_bacnet;
    const std::uint32_t m_instance;
    const std::string m_text;
};

class CBACnetObject {
public:
    // The name is the directory's, empty when it has none. The device outlives the object.
    CBACnetObject(CBacGeneral& bacnet, CBACnetDevice& device, const BACSTAC_OBJECT_ID& id);

    CBACnetDevice& GetDevice() const { return m_device; }
    const BACSTAC_OBJECT_ID& GetId() const { return m_id; }
    const std::string& GetName() const { return m_name; }

protected:
    CBacGeneral& m_bacnet;

private:
    CBACnetDevice& m_device;
    const BACSTAC_OBJECT_ID m_id;
    std::string m_name;
};

class CBACnetTrend : public CBACnetObject {
public:
    // Reads the trend's log references. There are none when that fails.
    CBACnetTrend(CBacGeneral& bacnet, CBACnetDevice& device, const BACSTAC_OBJECT_ID& id);

    // Each names a device: its own where the object names none.
    const std::vector<BACSTAC_DEV_OBJ_PROP_REF>& GetLogReferences() const { return m_references; }

    // One ReadRange: appends to rows the entries behind the position, oldest first, asking for as many as rows has room
    // for. more becomes false when the device says that the last item is among them. contents is room for the answer;
    // any-values of the rows lie in it. On a status other than 0 rows and more stay as they were.
    BACSTAC_STATUS Read(const BACSTAC_DATE_TIME& position, CTrendRows& rows, bool& more,
                        BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR& error) const;

private:
    std::vector<BACSTAC_DEV_OBJ_PROP_REF> m_references;
};

class CHistoryModel {
public:
    explicit CHistoryModel(CBacGeneral& bacnet) : m_bacnet(bacnet) {}

    // All devices of all networks, in the directory's order. The objects of the old devices are gone.
    void RebuildDeviceList();
    // The device's objects in the place of the device's before: data objects, and trends with their log references (one
    // ReadProperty each).
    void RebuildObjectLists(CBACnetDevice* device);
    // Null when there is none. Of several of one name the first in the list.
    CBACnetDevice* FindDevice(const std::string& text) const;
    CBACnetTrend* FindTrend(const std::string& name) const;

    const std::vector<std::unique_ptr<CBACnetDevice>>& GetDevices() const { return m_devices; }
    const std::vector<std::unique_ptr<CBACnetObject>>& GetDataObjects() const { return m_dataObjects; }
    const std::vector<std::unique_ptr<CBACnetTrend>>& GetTrends() const { return m_trends; }

private:
    CBacGeneral& m_bacnet;
    std::vector<std::unique_ptr<CBACnetDevice>> m_devices;
    std::vector<std::unique_ptr<CBACnetObject>> m_dataObjects;
    std::vector<std::unique_ptr<CBACnetTrend>> m_trends;
};

// A buffer of BACSTAC_CONTENTS_SIZE bytes, not cleared, as contents without a value.
class CContentsBuffer {
public:
    CContentsBuffer();
    BACSTAC_PROPERTY_CONTENTS& Get() { return m_contents; }
    // Contents without a value again, in the same memory.
    void Clear();

private:
    std::unique_ptr<char[]> m_memory;
    BACSTAC_PROPERTY_CONTENTS m_contents{};
};
