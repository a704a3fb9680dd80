// The directory that calls use: the file joined with what devices announce.
#include "platform/stack/directory/LiveDirectory.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <thread>

namespace bacnet {
namespace {

using Learned = LiveDirectory::Learned;

BACSTAC_ADDRESS Address(std::uint8_t last, std::uint16_t network = 0) {
    if (network != 0)
        return {1, 0, network, {last}, 1};
    return {0, 0, 0, {127, 0, 0, last, 0xBA, 0xC0}, 6};
}

class LiveDirectoryTest : public testing::Test {
protected:
    Learned Learn(unsigned device, const BACSTAC_ADDRESS& address, std::uint32_t maxApdu = 1476) {
        return m_directory.Learn({device, maxApdu, 3, 260}, address, m_former);
    }
    void Load(std::initializer_list<std::pair<unsigned, BACSTAC_ADDRESS>> devices) {
        CBACnetDir dir;
        for (const auto& [instance, address] : devices) {
            CBACnetDev device;
            device.SetInst(instance);
            device.SetAddr(address);
            device.SetVendorId(7);
            dir.AddDev(device);
        }
        const std::string path = m_folder.File("dir");
        ASSERT_TRUE(dir.Save(path));
        ASSERT_TRUE(m_directory.Load(path));
    }
    std::vector<unsigned> Devices(std::uint16_t network = BACSTAC_ALL_NETWORKS) const {
        std::vector<unsigned> devices;
        m_directory.GetDevLst(devices, network);
        return devices;
    }

    CTempFolder m_folder;
    LiveDirectory m_directory;
    BACSTAC_ADDRESS m_former{};
};

TEST_F(LiveDirectoryTest, KnowsNobodyAtFirst) {
    LiveDirectory::Target target;
    EXPECT_FALSE(m_directory.Resolve(5, target));
    EXPECT_FALSE(m_directory.FindDev(5));
    EXPECT_EQ(m_directory.GetDevAddr(5), BACSTAC_ADDRESS{});
    EXPECT_EQ(m_directory.GetDevVendorId(5), 0U);
    EXPECT_TRUE(Devices().empty());
    EXPECT_EQ(m_directory.FindByAddress(Address(1)), BACSTAC_ALL_INSTANCES);
}

TEST_F(LiveDirectoryTest, LearnsFromAnnouncements) {
    EXPECT_EQ(Learn(5, Address(1), 480), Learned::added);
    EXPECT_EQ(Learn(5, Address(1), 480), Learned::known);
    EXPECT_EQ(Learn(6, Address(2, 7)), Learned::added);
    LiveDirectory::Target target;
    ASSERT_TRUE(m_directory.Resolve(5, target));
    EXPECT_EQ(target.Address, Address(1));
    EXPECT_EQ(target.MaxApdu, 480);
    EXPECT_EQ(m_directory.GetDevVendorId(5), 260U);
    EXPECT_EQ(Devices(), (std::vector<unsigned>{5, 6}));
    EXPECT_EQ(Devices(7), (std::vector<unsigned>{6}));
    EXPECT_EQ(m_directory.FindByAddress(Address(2, 7)), 6U);
    std::map<unsigned short, bool> networks;
    m_directory.GetNetLst(networks);
    EXPECT_EQ(networks, (std::map<unsigned short, bool>{{0, false}, {7, true}}));
}

TEST_F(LiveDirectoryTest, KeepsTheDeviceThatIsAliveOnADuplicate) {
    Learn(5, Address(1));
    EXPECT_EQ(Learn(5, Address(2)), Learned::duplicate);
    EXPECT_EQ(m_former, Address(1));
    EXPECT_EQ(m_directory.GetDevAddr(5), Address(1));
}

TEST_F(LiveDirectoryTest, FollowsADeviceThatMoved) {
    Learn(5, Address(1));
    LiveDirectory::Target target;
    ASSERT_TRUE(m_directory.Resolve(5, target));
    m_directory.Doubt(target);
    EXPECT_EQ(Learn(5, Address(2)), Learned::moved);
    EXPECT_EQ(m_former, Address(1));
    EXPECT_EQ(m_directory.GetDevAddr(5), Address(2));
    m_directory.Doubt(target); // a late time-out at the former address tells nothing about the new one
    EXPECT_EQ(Learn(5, Address(3)), Learned::duplicate);
}

TEST_F(LiveDirectoryTest, TakesAnAddressOfTheFileAsAliveOnceItAnswered) {
    Load({{5, Address(1)}});
    LiveDirectory::Target target;
    ASSERT_TRUE(m_directory.Resolve(5, target));
    EXPECT_EQ(target.MaxApdu, 0);
    m_directory.Confirm(target);
    EXPECT_EQ(Learn(5, Address(2)), Learned::duplicate);
}

TEST_F(LiveDirectoryTest, CorrectsAnAddressOfTheFileThatNeverAnswered) {
    Load({{5, Address(1)}});
    EXPECT_EQ(Learn(5, Address(2)), Learned::moved);
    EXPECT_EQ(m_directory.GetDevAddr(5), Address(2));
}

TEST_F(LiveDirectoryTest, LetsTheFileRuleWhenItIsLoaded) {
    Learn(5, Address(1));
    Learn(6, Address(6));
    Load({{5, Address(9)}, {7, Address(7)}});
    EXPECT_EQ(m_directory.GetDevAddr(5), Address(9)) << "what the user has just saved";
    EXPECT_EQ(Devices(), (std::vector<unsigned>{5, 6, 7})) << "announced devices stay";
    Load({{5, Address(9)}});
    EXPECT_EQ(Devices(), (std::vector<unsigned>{5, 6})) << "what the user deleted is gone";
    LiveDirectory::Target target;
    EXPECT_FALSE(m_directory.Resolve(7, target));
    EXPECT_EQ(Learn(7, Address(7)), Learned::added) << "until it announces itself";
}

TEST_F(LiveDirectoryTest, StaysAsItIsWhenTheFileCannotBeRead) {
    Load({{5, Address(1)}});
    EXPECT_FALSE(m_directory.Load(m_folder.File("missing")));
    EXPECT_EQ(Devices(), (std::vector<unsigned>{5}));
    EXPECT_TRUE(m_directory.File()->FindDev(5U));
}

TEST_F(LiveDirectoryTest, BoundsAFlood) {
    for (unsigned device = 0; device < LiveDirectory::MAX_LEARNED; ++device)
        ASSERT_EQ(Learn(device, Address(1)), Learned::added);
    EXPECT_EQ(Learn(4000000, Address(1)), Learned::full);
    EXPECT_FALSE(m_directory.FindDev(4000000));
    EXPECT_EQ(Learn(5, Address(1)), Learned::known) << "known ones go on";
}

TEST_F(LiveDirectoryTest, ServesReadersWhileItLearnsAndLoads) {
    Load({{5, Address(1)}});
    std::atomic<bool> stop{false};
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i)
        readers.emplace_back([&] {
            while (!stop) {
                LiveDirectory::Target target;
                ASSERT_TRUE(m_directory.Resolve(5, target));
                m_directory.Confirm(target);
                m_directory.Doubt(target);
                std::vector<unsigned> devices;
                m_directory.GetDevLst(devices, BACSTAC_ALL_NETWORKS);
                ASSERT_FALSE(devices.empty());
                ASSERT_TRUE(m_directory.File()->FindDev(5U));
            }
        });
    for (unsigned i = 0; i < 50; ++i) {
        Learn(5, Address(static_cast<std::uint8_t>(1 + i % 2)));
        Learn(100 + i, Address(3));
        Load({{5, Address(1)}});
    }
    stop = true;
    for (auto& reader : readers)
        reader.join();
}

} // namespace
} // namespace bacnet
