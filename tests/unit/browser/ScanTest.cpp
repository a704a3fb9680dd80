// What a scan asks, shows, logs and leaves in the directory.
#include "module/browser/Scan.h"

#include "api/bacnet/Dir.h"
#include "api/bacnet/PropertyValue.h"
#include "module/browser/ObjectReader.h"
#include "tests/support/TempFolder.h"
#include "tests/unit/browser/BrowserSite.h"

using testing::ElementsAre;
using testing::IsEmpty;

class Scan : public BrowserSite {
protected:
    bool Run(const std::vector<unsigned>& devices) {
        DeviceAddresses addresses;
        for (const unsigned device : devices)
            addresses[device] = m_bacnet.GetDevAddr(device);
        return ScanDevices(m_bacnet, addresses, m_directory, m_progress, &m_scanned);
    }
    // The requests of a scan of the object alone.
    std::string RequestFor(BACSTAC_OBJECT_ID id) {
        m_events.Take();
        CBACnetDev device;
        device.SetInst(10);
        CBACnetObj object;
        object.SetId(id);
        ReadObjectInfo(device, object);
        const Lines requests = m_events.Take();
        return requests.size() == 1 ? requests.front() : "not one request";
    }
    const CBACnetObj* Find(unsigned device, BACSTAC_OBJECT_ID id) { return m_directory.GetDev(device).FindObj(id); }
    std::vector<unsigned> Devices() const {
        std::vector<unsigned> devices;
        m_directory.GetDevLst(devices, BACSTAC_ALL_NETWORKS);
        return devices;
    }

    CBACnetDir m_directory;
    CFakeProgress m_progress{m_events};
    std::vector<ScannedDevice> m_scanned;
};

TEST_F(Scan, ReadsDevicesInOrderWithOneRequestAnObject) {
    AddDevice(20, "alpha");
    AddDevice(10, "Beta");
    AddObject(10, {2, 1}, "zone");
    AddObject(10, {2, 2}, "Area");
    ASSERT_TRUE(Run({20, 10}));
    EXPECT_THAT(m_events.Take(),
                ElementsAre("ReadProperty(10, (8, 10), 120, -1)", "0 Device 10 (1/2)|Reading object list",
                            "ReadObjectList(10)", "ReadObjectList(10)",
                            "0 Device 10 (1/2)|Reading (device, 10) name & description",
                            "ReadPropertyMultiple(10, (8, 10) 77 28)",
                            "33 Device 10 (1/2)|Reading (analog-value, 1) name & description",
                            "ReadPropertyMultiple(10, (2, 1) 77 28 87[0] 117)",
                            "66 Device 10 (1/2)|Reading (analog-value, 2) name & description",
                            "ReadPropertyMultiple(10, (2, 2) 77 28 87[0] 117)", "ReadProperty(20, (8, 20), 120, -1)",
                            "0 Device 20 (2/2)|Reading object list", "ReadObjectList(20)", "ReadObjectList(20)",
                            "0 Device 20 (2/2)|Reading (device, 20) name & description",
                            "ReadPropertyMultiple(20, (8, 20) 77 28)"));
    EXPECT_THAT(m_log.Take(), ElementsAre("I: Scan: 2 devices, 4 objects, 0 failures"));
    EXPECT_THAT(Devices(), ElementsAre(10, 20));
    EXPECT_EQ(m_directory.GetDev(10).GetName(), "Beta"); // of its device object
    EXPECT_EQ(Find(10, {2, 2})->GetName(), "Area");
}

TEST_F(Scan, AsksForWhatEachTypeHas) {
    AddDevice(10, "Beta");
    const struct {
        BACSTAC_OBJECT_TYPE type;
        const char* properties;
    } CASES[] = {{0, "77 28 65 69 117"}, {1, "77 28 65 69 117"},  {2, "77 28 87[0] 117"}, {3, "77 28 4 46"},
                 {4, "77 28 4 46"},      {5, "77 28 87[0] 4 46"}, {8, "77 28"},           {10, "77 28"},
                 {13, "77 28 110"},      {14, "77 28 110"},       {17, "77 28 54"},       {19, "77 28 87[0] 110"},
                 {20, "77 28 132"},      {23, "77 28 117"},       {24, "77 28 117"},      {27, "77 28 132"}};
    for (const auto& [type, properties] : CASES)
        EXPECT_EQ(RequestFor({type, 1}),
                  "ReadPropertyMultiple(10, (" + std::to_string(type) + ", 1) " + properties + ")");
}

TEST_F(Scan, ValueObjectsAreCommandableWhenTheyHaveAPriorityArray) {
    AddDevice(10, "Beta");
    AddObject(10, {OBJ_ANALOG_VALUE, 1}, "with");
    SetValue(10, {OBJ_ANALOG_VALUE, 1}, 87, FakeValue::Unsigned(16));
    AddObject(10, {OBJ_ANALOG_VALUE, 2}, "without");
    AddObject(10, {OBJ_ANALOG_OUTPUT, 1}, "output");
    AddObject(10, {OBJ_ANALOG_INPUT, 1}, "input");
    ASSERT_TRUE(Run({10}));
    EXPECT_TRUE(Find(10, {OBJ_ANALOG_VALUE, 1})->IsCommandable());
    EXPECT_FALSE(Find(10, {OBJ_ANALOG_VALUE, 2})->IsCommandable());
    EXPECT_TRUE(Find(10, {OBJ_ANALOG_OUTPUT, 1})->IsCommandable());
    EXPECT_FALSE(Find(10, {OBJ_ANALOG_INPUT, 1})->IsCommandable());
}

TEST_F(Scan, ExtraValuesSurviveTheDirectoryFile) {
    const CTempFolder folder;
    AddDevice(10, "Beta");
    AddObject(10, {OBJ_BINARY_INPUT, 1}, "Door");
    SetValue(10, {OBJ_BINARY_INPUT, 1}, 4, FakeValue::Text("open"));
    SetValue(10, {OBJ_BINARY_INPUT, 1}, 46, FakeValue::Text("closed"));
    ASSERT_TRUE(Run({10}));
    ASSERT_TRUE(m_directory.Save(folder.File("directory")));
    CBACnetDir loaded;
    ASSERT_TRUE(loaded.Load(folder.File("directory")));
    const CPropertyValue* const text = loaded.GetDev(10).FindObj({OBJ_BINARY_INPUT, 1})->GetPropVal(4);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->ToText(BACSTAC_NO_INDEX), "open");
}

TEST_F(Scan, TheVendorIsTakenOverAndMayBeMissing) {
    AddDevice(10, "Beta");
    SetValue(10, Device(10), PROP_VENDOR_IDENTIFIER, FakeValue::Unsigned(260));
    AddDevice(20, "alpha");
    ASSERT_TRUE(Run({10, 20}));
    EXPECT_EQ(m_directory.GetDevVendorId(10), 260U);
    EXPECT_EQ(m_directory.GetDevVendorId(20), 0U);
    EXPECT_THAT(m_log.Take(), ElementsAre("I: Scan: 2 devices, 2 objects, 0 failures"));
}

// By address, since the library need not know the device yet.
TEST_F(Scan, TheVendorIsReadByAddress) {
    class CSite : public CFakeBacnet {
    public:
        using CFakeBacnet::CFakeBacnet;
        using CFakeBacnet::ReadProperty;
        BACSTAC_STATUS ReadProperty(BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID const& object,
                                    BACSTAC_PROPERTY_ID property, int arrayIndex, BACSTAC_PROPERTY_CONTENTS& contents,
                                    BACSTAC_ERROR* error) override {
            EXPECT_EQ(address, GetDevAddr(10));
            EXPECT_EQ(object, ::Device(10));
            EXPECT_EQ(property, PROP_VENDOR_IDENTIFIER);
            EXPECT_EQ(arrayIndex, BACSTAC_NO_INDEX);
            EXPECT_EQ(contents.DataType, TYPE_UNSIGNED);
            EXPECT_EQ(contents.ElementCount, 1U);
            EXPECT_EQ(contents.BufferSize, 4U);
            EXPECT_EQ(error, nullptr);
            ++m_count;
            return BACSTAC_STATUS_TIMEOUT;
        }
        int m_count = 0;
    } site(m_events);
    BACnet = &site;
    site.AddDevice(10);
    ScanDevices(site, {{10, site.GetDevAddr(10)}}, m_directory, m_progress);
    EXPECT_EQ(site.m_count, 1);
    EXPECT_EQ(m_directory.GetDevVendorId(10), 0U);
}

TEST_F(Scan, ADeviceWithoutItsListIsLeftOutAndTheNextGoesOn) {
    for (const unsigned device : {10U, 20U, 30U})
        AddDevice(device, "device");
    m_bacnet.SetFault("ReadObjectList(10)", BACSTAC_STATUS_TIMEOUT);
    m_bacnet.SetFault("ReadObjectList(20)", BACSTAC_STATUS_ABORT, {}, 1);
    ASSERT_TRUE(Run({10, 20, 30}));
    EXPECT_THAT(Devices(), ElementsAre(30));
    EXPECT_THAT(m_log.Take(), ElementsAre("E: Failure reading object count on device 10",
                                          "E: Failure reading object list on device 20",
                                          "I: Scan: 1 devices, 1 objects, 2 failures"));
    ASSERT_EQ(m_scanned.size(), 3U);
    EXPECT_EQ(m_scanned[0].status, BACSTAC_STATUS_TIMEOUT);
    EXPECT_EQ(m_scanned[2].objects, 1U);
}

TEST_F(Scan, AnObjectWithoutItsNameIsLeftOut) {
    AddDevice(10, "Beta");
    AddObject(10, {2, 1}, "");
    SetValue(10, {2, 1}, PROP_DESCRIPTION, FakeValue::Text("has no name"));
    AddObject(10, {2, 2}, "silent");
    AddObject(10, {2, 3}, "good");
    AddObject(10, {2, 4}, "");
    SetValue(10, {2, 4}, PROP_OBJECT_NAME, FakeValue::Unsigned(0x41414141)); // a number for a name
    m_bacnet.SetFault("ReadPropertyMultiple(10, (2, 2)", BACSTAC_STATUS_TIMEOUT);
    ASSERT_TRUE(Run({10}));
    EXPECT_EQ(Find(10, {2, 1}), nullptr);
    EXPECT_EQ(Find(10, {2, 2}), nullptr);
    ASSERT_NE(Find(10, {2, 3}), nullptr); // without description and units
    EXPECT_EQ(Find(10, {2, 3})->GetDesc(), "");
    EXPECT_EQ(Find(10, {2, 4}), nullptr);
    EXPECT_THAT(m_log.Take(), ElementsAre("E: Failure reading name of object (2, 1) on device 10",
                                          "E: Failure reading name & description of object (2, 2) on device 10",
                                          "E: Failure reading name of object (2, 4) on device 10",
                                          "I: Scan: 1 devices, 2 objects, 3 failures"));
}

TEST_F(Scan, ADeviceWithoutReadableObjectsIsKept) {
    AddDevice(10, "Beta");
    m_bacnet.SetFault("ReadPropertyMultiple(10, (8, 10)", BACSTAC_STATUS_TIMEOUT);
    ASSERT_TRUE(Run({10}));
    EXPECT_THAT(Devices(), ElementsAre(10));
    EXPECT_THAT(m_directory.GetDev(10).GetObjects(), IsEmpty());
}

TEST_F(Scan, ACancelDropsEverything) {
    AddDevice(10, "Beta");
    AddDevice(20, "alpha");
    AddObject(20, {2, 1}, "zone");
    m_progress.m_onPump = [this] {
        m_progress.m_isCancelled =
            m_events.Get().back() == "50 Device 20 (2/2)|Reading (analog-value, 1) name & description";
    };
    EXPECT_FALSE(Run({10, 20}));
    EXPECT_THAT(Devices(), IsEmpty());
    EXPECT_EQ(m_events.Take().back(), "50 Device 20 (2/2)|Reading (analog-value, 1) name & description");
    EXPECT_THAT(m_log.Take(), IsEmpty());
}

TEST_F(Scan, NothingIsMergedBeforeTheEnd) {
    AddDevice(10, "Beta");
    AddDevice(20, "alpha");
    m_progress.m_onPump = [this] { EXPECT_THAT(Devices(), IsEmpty()); };
    EXPECT_TRUE(Run({10, 20}));
    EXPECT_THAT(Devices(), ElementsAre(10, 20));
}

TEST_F(Scan, NoDevicesAreASuccess) {
    EXPECT_TRUE(Run({}));
    EXPECT_THAT(m_events.Take(), IsEmpty());
    EXPECT_THAT(m_log.Take(), ElementsAre("I: Scan: 0 devices, 0 objects, 0 failures"));
}

TEST_F(Scan, WhatIsKnownAlreadyIsRenewed) {
    AddDevice(10, "Beta");
    AddObject(10, {2, 1}, "zone");
    ASSERT_TRUE(Run({10}));
    SetValue(10, {2, 1}, PROP_OBJECT_NAME, FakeValue::Text("new zone"));
    ASSERT_TRUE(Run({10}));
    EXPECT_EQ(Find(10, {2, 1})->GetName(), "new zone");
}
