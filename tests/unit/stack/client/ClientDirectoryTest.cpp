// The live directory as the client's callers see it: the file read again, and what happens when it is damaged.
#include "api/bacnet/Dir.h"
#include "tests/support/TempFolder.h"
#include "tests/unit/stack/client/ClientFixture.h"

#include <fstream>

namespace {

class ClientDirectoryTest : public ClientFixture {
protected:
    ClientDirectoryTest() { CBacGeneral::SetDirFileName(Path()); }
    ~ClientDirectoryTest() override { CBacGeneral::SetDirFileName({}); }

    std::string Path() const { return m_folder.File("site.dir"); }
    void Save(const std::string& name) {
        CBACnetDev device;
        device.SetInst(1234);
        device.SetName(name);
        device.SetAddr(Address(5));
        device.SetVendorId(7);
        CBACnetObj object;
        object.SetId({OBJ_TREND_LOG, 1});
        object.SetName("T1");
        device.AddObj(object);
        CBACnetDir dir;
        dir.AddDev(device);
        ASSERT_TRUE(dir.Save(Path()));
    }
    void Damage() { std::ofstream(Path(), std::ios::binary) << "damaged"; }
    std::string Name() {
        std::string name = "(none)";
        m_client->GetDevName(1234, name);
        return name;
    }

    CTempFolder m_folder;
};

TEST_F(ClientDirectoryTest, TakesEffectWhenItIsReadAgain) {
    EXPECT_EQ(CBacGeneral::GetDirFileName(), Path());
    EXPECT_FALSE(m_client->LoadDir()) << "no file";
    EXPECT_FALSE(m_client->FindDev(1234));
    Save("first");
    ASSERT_TRUE(m_client->LoadDir());
    EXPECT_EQ(Name(), "first");
    EXPECT_EQ(m_client->GetDevAddr(1234), Address(5));
    EXPECT_EQ(m_client->GetDevVendorId(1234), 7U);
    std::vector<BACSTAC_OBJECT_ID> objects;
    m_client->GetObjLst(1234, objects, BACSTAC_ALL_TYPES);
    EXPECT_EQ(objects, (std::vector<BACSTAC_OBJECT_ID>{{OBJ_TREND_LOG, 1}}));
    std::string name;
    EXPECT_TRUE(m_client->GetObjName(1234, {OBJ_TREND_LOG, 1}, name));
    EXPECT_EQ(name, "T1");
    EXPECT_FALSE(m_client->GetObjName(1234, {OBJ_TREND_LOG, 2}, name));
    Save("second");
    EXPECT_EQ(Name(), "first");
    ASSERT_TRUE(m_client->LoadDir());
    EXPECT_EQ(Name(), "second");
    EXPECT_TRUE(m_link->TakeSent().empty()) << "no traffic";
}

TEST_F(ClientDirectoryTest, StaysAsItIsWhenTheFileIsDamagedLater) {
    Save("first");
    Save("second");
    ASSERT_TRUE(m_client->LoadDir());
    Damage();
    EXPECT_FALSE(m_client->LoadDir());
    EXPECT_EQ(Name(), "second");
}

TEST_F(ClientDirectoryTest, StartsFromTheFormerGenerationWhenTheFileIsDamaged) {
    Save("first");
    Save("second");
    Damage();
    EXPECT_TRUE(m_client->LoadDir());
    EXPECT_EQ(Name(), "first");
}

} // namespace
