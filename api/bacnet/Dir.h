// The directory of known devices and objects, as a value: a complete copy with a life of its own and a file form. One
// thread at a time uses one object. Names and descriptions are UTF-8.
//
// Copies share their devices until one of them changes: copying a large directory costs little.
#pragma once

#include "api/bacnet/Export.h"
#include "api/bacnet/Types.h"

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

class CPropertyValue;

// One object. Extra property values are owned.
class BCN_API CBACnetObj {
public:
    CBACnetObj();
    CBACnetObj(const CBACnetObj& other);
    CBACnetObj(CBACnetObj&& other) noexcept;
    CBACnetObj& operator=(const CBACnetObj& other);
    CBACnetObj& operator=(CBACnetObj&& other) noexcept;
    virtual ~CBACnetObj();

    void SetId(BACSTAC_OBJECT_ID const& id) { m_id = id; }
    BACSTAC_OBJECT_ID const& GetId() const { return m_id; }
    void SetInst(unsigned instance) { m_id.Instance = instance; }
    unsigned GetInst() const { return m_id.Instance; }
    void SetName(const std::string& name) { m_name = name; }
    const std::string& GetName() const { return m_name; }
    void SetDesc(const std::string& description) { m_description = description; }
    const std::string& GetDesc() const { return m_description; }
    void SetCommandable(bool commandable) { m_commandable = commandable; }
    bool IsCommandable() const { return m_commandable; }

    // Takes ownership of the value; null removes the entry.
    void SetPropVal(BACSTAC_PROPERTY_ID property, CPropertyValue* value);
    const CPropertyValue* GetPropVal(BACSTAC_PROPERTY_ID property) const; // null when there is none
    using PropertyValues = std::map<BACSTAC_PROPERTY_ID, std::unique_ptr<CPropertyValue>>;
    const PropertyValues* GetPropVals() const { return m_values.get(); } // null when there are none

private:
    BACSTAC_OBJECT_ID m_id{};
    bool m_commandable = false;
    std::string m_name;
    std::string m_description;
    std::unique_ptr<PropertyValues> m_values;
};

// One device: its own identity as an object of type 8, its address, its vendor and its objects.
class BCN_API CBACnetDev : public CBACnetObj {
public:
    CBACnetDev();
    CBACnetDev(const CBACnetDev&) = default;
    CBACnetDev(CBACnetDev&&) noexcept = default;
    CBACnetDev& operator=(const CBACnetDev&) = default;
    CBACnetDev& operator=(CBACnetDev&&) noexcept = default;
    ~CBACnetDev() override;

    void SetAddr(BACSTAC_ADDRESS const& address) { m_address = address; }
    BACSTAC_ADDRESS const& GetAddr() const { return m_address; }
    void SetVendorId(unsigned vendor) { m_vendor = vendor; }
    unsigned GetVendorId() const { return m_vendor; }
    // Copies the object; one with the same identifier is replaced. The device object of this device also gives the
    // device its name and description.
    bool AddObj(CBACnetObj const& object);
    bool AddObj(CBACnetObj&& object);
    void Reserve(std::size_t objects) { m_objects.reserve(objects); } // room for as many in all
    bool DelObj(BACSTAC_OBJECT_ID const& id);
    CBACnetObj* FindObj(BACSTAC_OBJECT_ID const& id); // null when unknown; valid until objects are added or removed
    const CBACnetObj* FindObj(BACSTAC_OBJECT_ID const& id) const;
    const std::vector<CBACnetObj>& GetObjects() const { return m_objects; } // ascending by identifier

private:
    BACSTAC_ADDRESS m_address{};
    unsigned m_vendor = 0;
    std::vector<CBACnetObj> m_objects;
};

class BCN_API CBACnetDir {
public:
    CBACnetDir();
    CBACnetDir(const CBACnetDir& other);
    CBACnetDir& operator=(const CBACnetDir& other);
    ~CBACnetDir();

    // path is UTF-8. False leaves the directory (Load) or the file (Save) as it was. Save writes a temporary file,
    // makes it durable and renames it.
    bool Load(const std::string& path);
    bool Save(const std::string& path) const;
    // Merges: a device or object that both have takes the other's fields, what only this one has stays.
    bool AddDir(CBACnetDir const& other);
    // The devices and objects that match every blank-separated word of text, in any case. A device that matches keeps
    // all its objects, an object that matches keeps its device.
    void Filter(std::string const& text, CBACnetDir& result) const;

    void GetNetLst(std::map<unsigned short, bool>& networks) const; // network to remote flag
    std::map<unsigned short, bool> const& GetNetLst() const;
    void GetDevLst(std::vector<unsigned>& devices, unsigned short network) const; // ascending
    void GetTypeLst(unsigned device, std::set<BACSTAC_OBJECT_TYPE>& types) const;
    void GetObjLst(unsigned device, std::vector<BACSTAC_OBJECT_ID>& objects,
                   BACSTAC_OBJECT_TYPE type) const; // ascending

    bool AddDev(CBACnetDev const& device); // false when the instance is there already
    bool DelDev(unsigned device);
    bool FindDev(unsigned device) const;
    bool FindDev(const std::string& name) const;
    const CBACnetDev& GetDev(unsigned device) const; // an empty device when unknown
    bool GetDevName(unsigned device, std::string& name) const;
    bool SetDevName(unsigned device, const std::string& name);
    bool GetDevDesc(unsigned device, std::string& description) const;
    bool SetDevDesc(unsigned device, const std::string& description);
    bool GetDevAddr(unsigned device, BACSTAC_ADDRESS& address) const;
    bool SetDevAddr(unsigned device, BACSTAC_ADDRESS const& address);
    unsigned GetDevVendorId(unsigned device) const;

    bool AddObj(unsigned device, CBACnetObj const& object);
    bool DelObj(unsigned device, BACSTAC_OBJECT_ID const& id);
    bool FindObj(unsigned device, BACSTAC_OBJECT_ID const& id) const;
    bool FindObj(unsigned device, const std::string& name) const;
    bool GetObjName(unsigned device, BACSTAC_OBJECT_ID const& id, std::string& name) const;
    bool SetObjName(unsigned device, BACSTAC_OBJECT_ID const& id, const std::string& name);
    bool GetObjDesc(unsigned device, BACSTAC_OBJECT_ID const& id, std::string& description) const;
    bool SetObjDesc(unsigned device, BACSTAC_OBJECT_ID const& id, const std::string& description);
    bool IsObjCommandable(unsigned device, BACSTAC_OBJECT_ID const& id) const;
    bool SetObjCommandable(unsigned device, BACSTAC_OBJECT_ID const& id, bool commandable);

    // Tables of the standard, and of vendors (docs/vendor-names.md) where a vendor is asked for; 0 has no names of its
    // own. An unknown number gives its decimal text; false then.
    static const char* GetStdObjTypeName(BACSTAC_OBJECT_TYPE type);
    static const char* GetStdPropName(BACSTAC_PROPERTY_ID property);
    static bool GetObjTypeName(BACSTAC_OBJECT_TYPE type, std::string& name, unsigned vendor);
    static bool GetPropName(BACSTAC_PROPERTY_ID property, std::string& name, unsigned vendor);
    static const char* GetDataTypeString(BACSTAC_DATA_TYPE type);
    static BACSTAC_DATA_TYPE GetStdPropType(BACSTAC_PROPERTY_ID property, BACSTAC_OBJECT_TYPE type); // -1 when none
    static int GetStdEventType(BACSTAC_OBJECT_TYPE type); // -1 when the type has no standard event algorithm
    static bool IsObjectTypeAlwaysCommandable(BACSTAC_OBJECT_TYPE type);
    static bool IsObjectTypePossiblyCommandable(BACSTAC_OBJECT_TYPE type);
    static void AddrToStr(BACSTAC_ADDRESS const& address, std::string& text);

private:
    CBACnetDev* Writable(unsigned device); // unshares; null when unknown

    std::map<unsigned, std::shared_ptr<const CBACnetDev>> m_devices;
    mutable std::map<unsigned short, bool> m_networks; // rebuilt by the lists
};
