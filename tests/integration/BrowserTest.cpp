// The browser's logic over real UDP: scans and property lists of devices that behave well and badly.
#include "api/bacnet/Dir.h"
#include "api/bacnet/Enums.h"
#include "module/browser/BrowserTree.h"
#include "module/browser/ObjectStatus.h"
#include "module/browser/PropertyListReader.h"
#include "module/browser/Scan.h"
#include "tests/integration/DeviceSite.h"
#include "tests/integration/ProfileNames.h"
#include "tests/support/LogSink.h"
#include "tests/unit/browser/BrowserSite.h"
#include "tests/unit/browser/Directories.h"
#include "tests/unit/browser/FakeQueue.h"

#include <chrono>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr unsigned ODD = 1000;  // behaves as the profile says
constexpr unsigned GOOD = 2000; // always well
constexpr unsigned POINTS = 3;
constexpr BACSTAC_OBJECT_ID POINT{OBJ_ANALOG_INPUT, 1};

sim::DeviceConfig NewDevice(unsigned instance) {
    sim::DeviceConfig device;
    device.Instance = instance;
    device.Name = "Device " + std::to_string(instance);
    for (unsigned i = 1; i <= POINTS; ++i) {
        sim::ObjectConfig point;
        point.Id = {OBJ_ANALOG_INPUT, i};
        point.Name = "Point " + std::to_string(i);
        device.Objects.push_back(point);
    }
    return device;
}

} // namespace

class BrowserOverUdp : public DeviceSite, public IPropertyListView {
protected:
    void StartWith(const sim::Profile* profile) {
        std::vector<sim::DeviceConfig> devices{NewDevice(ODD), NewDevice(GOOD)};
        if (profile)
            profile->Apply(devices[0]);
        Start(std::move(devices));
    }

    bool Scan() {
        CFakeProgress progress(m_events);
        return ScanDevices(*m_client, m_addresses, m_directory, progress);
    }
    // The rows of an object's list, as they arrived.
    Lines Read(unsigned device) {
        CPropertyListReader reader(*m_client, *this, m_queue);
        m_rows.Take();
        reader.StartReading(device, POINT);
        EXPECT_TRUE(m_queue->RunUntil([&] { return !reader.IsReading(); }));
        return m_rows.Take();
    }
    std::size_t ObjectsOf(unsigned device) const { return m_directory.GetDev(device).GetObjects().size(); }

    void BeginReading(const std::string&, unsigned) override {}
    void SetSource(const std::string&, unsigned) override {}
    void SetProperty(const std::string&, unsigned) override {}
    void AddRow(const PropertyRow& row) override { m_rows.Add(row.name + " = " + row.value); }
    void ClearRows() override { m_rows.Take(); }
    void EndReading() override {}

    CBACnetDir m_directory;
    CEventList m_events;
    CEventList m_log;
    CLogSink m_sink{m_log};
    CEventList m_rows;
    std::shared_ptr<CFakeQueue> m_queue = std::make_shared<CFakeQueue>();
};

TEST_F(BrowserOverUdp, AScanFindsEveryObjectWithItsName) {
    StartWith(nullptr);
    ASSERT_TRUE(Scan());
    EXPECT_EQ(ObjectsOf(ODD), POINTS + 1);
    EXPECT_EQ(m_directory.GetDev(ODD).GetName(), "Device 1000");
    EXPECT_TRUE(m_directory.FindObj(GOOD, "Point 3"));
    EXPECT_THAT(m_log.Take(), Contains("I: Scan: 2 devices, 8 objects, 0 failures"));
}

TEST_F(BrowserOverUdp, AListHasTheObjectsProperties) {
    StartWith(nullptr);
    const Lines rows = Read(GOOD);
    EXPECT_THAT(rows, Contains("object-name = Point 1"));
    EXPECT_THAT(rows, Contains("object-identifier = (analog-input, 1)"));
    EXPECT_GT(rows.size(), 5U);
}

TEST_F(BrowserOverUdp, AScannedDirectoryShowsTheStatusOfItsObjects) {
    StartWith(nullptr);
    ASSERT_TRUE(Scan());
    CPlainOrder order;
    CBrowserTree tree(order);
    tree.Build(m_directory, 1);
    CFakeProgress progress(m_events);
    ReadObjectsStatus(*m_client, tree, GOOD, progress);
    EXPECT_EQ(tree.FindObject(GOOD, POINT)->image, IMAGE_IN_SERVICE);
    EXPECT_EQ(tree.FindObject(GOOD, POINT)->state, STATE_NORMAL);
}

// Whatever a device does, its neighbour is scanned and read as ever, and neither the scan nor the list hangs.
class BadDevice : public BrowserOverUdp, public testing::WithParamInterface<const char*> {};

TEST_P(BadDevice, SpoilsNothingButItself) {
    StartWith(sim::FindProfile(GetParam()));
    ASSERT_TRUE(Scan());
    EXPECT_EQ(ObjectsOf(GOOD), POINTS + 1);
    EXPECT_THAT(m_log.Take().back(), testing::StartsWith("I: Scan: "));
    EXPECT_THAT(Read(GOOD), Contains("object-name = Point 1"));
    const Lines rows = Read(ODD);
    for (const std::string& row : rows)
        EXPECT_TRUE(rows.size() == 1 || !row.starts_with("error = ")) << row;
}

INSTANTIATE_TEST_SUITE_P(Profiles, BadDevice, testing::ValuesIn(ProfileNames()), ProfileTestName);
