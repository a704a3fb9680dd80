// The directory: entries, merging, filter, and its file.
#include "api/bacnet/Dir.h"
#include "api/bacnet/Enums.h"
#include "api/bacnet/PropertyValues.h"
#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/directory/Crc32.h"
#include "platform/stack/directory/FoldCase.h"
#include "tests/support/GeneratedValue.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>

namespace {

namespace fs = std::filesystem;

CBACnetObj Object(BACSTAC_OBJECT_ID id, const std::string& name, const std::string& description = {}) {
    CBACnetObj object;
    object.SetId(id);
    object.SetName(name);
    object.SetDesc(description);
    return object;
}

CBACnetDev Device(unsigned instance, const std::string& name, std::uint16_t network = 0) {
    CBACnetDev device;
    device.SetInst(instance);
    device.SetName(name);
    device.SetVendorId(260);
    BACSTAC_ADDRESS address{static_cast<std::uint8_t>(network != 0), 0, network, {127, 0, 0, 5, 0xBA, 0xC0}, 6};
    if (network != 0)
        address = {1, 0, network, {7}, 1};
    device.SetAddr(address);
    return device;
}

// A directory as text, so that tests compare the whole of it.
std::string Dump(const CBACnetDir& dir) {
    std::ostringstream text;
    std::vector<unsigned> devices;
    dir.GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    for (const unsigned instance : devices) {
        const CBACnetDev& device = dir.GetDev(instance);
        std::string address;
        for (const std::uint8_t octet : device.GetAddr().Mac)
            address += std::to_string(octet) + ".";
        text << instance << " \"" << device.GetName() << "\" \"" << device.GetDesc() << "\" vendor "
             << device.GetVendorId() << " at " << int{device.GetAddr().Remote} << "/" << device.GetAddr().Network << "/"
             << address << int{device.GetAddr().MacLength} << "\n";
        for (const CBACnetObj& object : device.GetObjects()) {
            text << "  " << object.GetId().Type << "," << object.GetId().Instance << " \"" << object.GetName()
                 << "\" \"" << object.GetDesc() << "\"" << (object.IsCommandable() ? " commandable" : "");
            if (const auto* values = object.GetPropVals())
                for (const auto& [property, value] : *values)
                    text << " " << property << "=" << value->GetDataType() << ":" << value->ToText(-1);
            text << "\n";
        }
    }
    return text.str();
}

CBACnetDir Sample() {
    CBACnetDir dir;
    CBACnetDev ahu = Device(1234, "L\xC3\xBC"
                                  "ftung 1");
    ahu.SetDesc("Roof");
    ahu.AddObj(Object({OBJ_ANALOG_INPUT, 2}, "Supply Temp", "after the heater"));
    CBACnetObj command = Object({OBJ_BINARY_OUTPUT, 7}, "Fan");
    command.SetCommandable(true);
    ahu.AddObj(command);
    ahu.AddObj(Object({OBJ_ANALOG_INPUT, 1}, "Outdoor \xE2\x82\xAC Temp"));
    dir.AddDev(ahu);
    dir.AddDev(Device(5, "", 7));
    return dir;
}

std::string Contents(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

void Write(const fs::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

// Counts those of its kind that are alive.
class CountedValue : public CPVUnsigned {
public:
    explicit CountedValue(int& alive) : m_alive(alive) { ++m_alive; }
    CountedValue(const CountedValue& other) : CPVUnsigned(other), m_alive(other.m_alive) { ++m_alive; }
    CountedValue& operator=(const CountedValue&) = delete;
    ~CountedValue() override { --m_alive; }
    CPropertyValue* Clone() const override { return new CountedValue(*this); }

private:
    int& m_alive;
};

// ---- entries

TEST(DirectoryTest, OwnsTheValuesThatItIsGiven) {
    int alive = 0;
    {
        CBACnetObj object = Object({0, 1}, "object");
        object.SetPropVal(1000, new CountedValue(alive));
        object.SetPropVal(1001, new CountedValue(alive));
        object.SetPropVal(1000, new CountedValue(alive)); // the former one is deleted
        EXPECT_EQ(alive, 2);
        object.SetPropVal(1001, nullptr);
        EXPECT_EQ(alive, 1);
        const CBACnetObj copy(object);
        EXPECT_EQ(copy.GetPropVals()->size(), 1U);
    }
    EXPECT_EQ(alive, 0);
}

TEST(DirectoryTest, TakesCopiesOfWhatIsAdded) {
    CBACnetDir dir;
    {
        CBACnetDev device = Device(1, "one");
        EXPECT_TRUE(dir.AddDev(device));
        device.SetName("changed");
        CBACnetObj object = Object({0, 1}, "object");
        EXPECT_TRUE(dir.AddObj(1, object));
        object.SetName("changed");
    }
    std::string name;
    EXPECT_TRUE(dir.GetDevName(1, name));
    EXPECT_EQ(name, "one");
    EXPECT_TRUE(dir.GetObjName(1, {0, 1}, name));
    EXPECT_EQ(name, "object");
}

TEST(DirectoryTest, RefusesADeviceTwice) {
    CBACnetDir dir;
    EXPECT_TRUE(dir.AddDev(Device(1, "one")));
    EXPECT_FALSE(dir.AddDev(Device(1, "two")));
    EXPECT_EQ(dir.GetDev(1).GetName(), "one");
}

TEST(DirectoryTest, SaysFalseForEntriesThatAreNotThere) {
    CBACnetDir dir = Sample();
    std::string text = "kept";
    BACSTAC_ADDRESS address{};
    const BACSTAC_OBJECT_ID none{0, 99};
    EXPECT_FALSE(dir.FindDev(99U));
    EXPECT_FALSE(dir.FindDev("nobody"));
    EXPECT_FALSE(dir.DelDev(99));
    EXPECT_FALSE(dir.GetDevName(99, text));
    EXPECT_FALSE(dir.SetDevName(99, "x"));
    EXPECT_FALSE(dir.GetDevDesc(99, text));
    EXPECT_FALSE(dir.SetDevDesc(99, "x"));
    EXPECT_FALSE(dir.GetDevAddr(99, address));
    EXPECT_FALSE(dir.SetDevAddr(99, address));
    EXPECT_FALSE(dir.AddObj(99, Object({0, 1}, "x")));
    EXPECT_FALSE(dir.DelObj(1234, none));
    EXPECT_FALSE(dir.FindObj(1234, none));
    EXPECT_FALSE(dir.FindObj(1234, "nothing"));
    EXPECT_FALSE(dir.GetObjName(1234, none, text));
    EXPECT_FALSE(dir.SetObjName(1234, none, "x"));
    EXPECT_FALSE(dir.GetObjDesc(1234, none, text));
    EXPECT_FALSE(dir.SetObjDesc(1234, none, "x"));
    EXPECT_FALSE(dir.SetObjCommandable(1234, none, true));
    EXPECT_FALSE(dir.IsObjCommandable(1234, none));
    EXPECT_EQ(dir.GetDevVendorId(99), 0U);
    EXPECT_TRUE(dir.GetDev(99).GetObjects().empty());
    EXPECT_EQ(text, "kept");
    EXPECT_EQ(Dump(dir), Dump(Sample()));
}

TEST(DirectoryTest, ChangesAndRemovesEntries) {
    CBACnetDir dir = Sample();
    EXPECT_TRUE(dir.SetDevName(5, "five"));
    EXPECT_TRUE(dir.SetDevDesc(5, "behind a router"));
    EXPECT_TRUE(dir.SetDevAddr(5, {1, 0, 8, {9}, 1}));
    EXPECT_TRUE(dir.SetObjName(1234, {0, 1}, "a"));
    EXPECT_TRUE(dir.SetObjDesc(1234, {0, 1}, "b"));
    EXPECT_TRUE(dir.SetObjCommandable(1234, {0, 1}, true));
    EXPECT_TRUE(dir.DelObj(1234, {0, 2}));
    EXPECT_EQ(Dump(dir), "5 \"five\" \"behind a router\" vendor 260 at 1/8/9.0.0.0.0.0.0.1\n"
                         "1234 \"L\xC3\xBC"
                         "ftung 1\" \"Roof\" vendor 260 at 0/0/127.0.0.5.186.192.0.6\n"
                         "  0,1 \"a\" \"b\" commandable\n"
                         "  4,7 \"Fan\" \"\" commandable\n");
    EXPECT_TRUE(dir.DelDev(1234));
    EXPECT_FALSE(dir.FindDev(1234U));
}

TEST(DirectoryTest, KeepsObjectsInOrderAndReplacesTheSame) {
    CBACnetDev device = Device(1, "d");
    for (const unsigned instance : {5U, 1U, 9U, 3U, 5U})
        device.AddObj(Object({2, instance}, std::to_string(device.GetObjects().size())));
    ASSERT_EQ(device.GetObjects().size(), 4U);
    std::string order;
    for (const CBACnetObj& object : device.GetObjects())
        order += std::to_string(object.GetInst()) + object.GetName() + " ";
    EXPECT_EQ(order, "11 33 54 92 ");
}

TEST(DirectoryTest, GivesTheDeviceTheNameOfItsDeviceObject) {
    CBACnetDev device = Device(1234, "");
    device.AddObj(Object({OBJ_DEVICE, 99}, "another", "no"));
    EXPECT_EQ(device.GetName(), "");
    device.AddObj(Object({OBJ_DEVICE, 1234}, "AHU 1", "Roof"));
    EXPECT_EQ(device.GetName(), "AHU 1");
    EXPECT_EQ(device.GetDesc(), "Roof");
}

TEST(DirectoryTest, ListsNetworksDevicesTypesAndObjects) {
    const CBACnetDir dir = Sample();
    std::vector<unsigned> devices;
    dir.GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    EXPECT_EQ(devices, (std::vector<unsigned>{5, 1234}));
    dir.GetDevLst(devices, 7);
    EXPECT_EQ(devices, (std::vector<unsigned>{5}));
    dir.GetDevLst(devices, 8);
    EXPECT_TRUE(devices.empty());
    EXPECT_EQ(dir.GetNetLst(), (std::map<unsigned short, bool>{{0, false}, {7, true}}));
    std::set<BACSTAC_OBJECT_TYPE> types;
    dir.GetTypeLst(1234, types);
    EXPECT_EQ(types, (std::set<BACSTAC_OBJECT_TYPE>{0, 4}));
    std::vector<BACSTAC_OBJECT_ID> objects;
    dir.GetObjLst(1234, objects, BACSTAC_ALL_TYPES);
    EXPECT_EQ(objects, (std::vector<BACSTAC_OBJECT_ID>{{0, 1}, {0, 2}, {4, 7}}));
    dir.GetObjLst(1234, objects, 4);
    EXPECT_EQ(objects, (std::vector<BACSTAC_OBJECT_ID>{{4, 7}}));
}

TEST(DirectoryTest, CopiesDoNotFollowEachOther) {
    CBACnetDir first = Sample();
    CBACnetDir second = first;
    second.SetDevName(1234, "copy");
    second.SetObjName(1234, {0, 1}, "copy");
    EXPECT_EQ(Dump(first), Dump(Sample()));
    first.DelObj(1234, {4, 7});
    EXPECT_TRUE(second.FindObj(1234, BACSTAC_OBJECT_ID{4, 7}));
    first = second;
    EXPECT_EQ(Dump(first), Dump(second));
    CBACnetDev device = first.GetDev(1234);
    device.FindObj({0, 1})->SetName("only here");
    EXPECT_EQ(Dump(first), Dump(second));
}

// ---- merging

TEST(DirectoryTest, MergesWhatWasScanned) {
    CBACnetDir dir = Sample();
    CBACnetDir scanned;
    CBACnetDev device = Device(1234, "AHU", 9);
    device.AddObj(Object({0, 1}, "New name"));
    device.AddObj(Object({20, 1}, "Trend"));
    scanned.AddDev(device);
    scanned.AddDev(Device(77, "new"));
    EXPECT_TRUE(dir.AddDir(scanned));
    EXPECT_EQ(Dump(dir), "5 \"\" \"\" vendor 260 at 1/7/7.0.0.0.0.0.0.1\n"
                         "77 \"new\" \"\" vendor 260 at 0/0/127.0.0.5.186.192.0.6\n"
                         "1234 \"AHU\" \"Roof\" vendor 260 at 1/9/7.0.0.0.0.0.0.1\n"
                         "  0,1 \"New name\" \"\"\n"
                         "  0,2 \"Supply Temp\" \"after the heater\"\n"
                         "  4,7 \"Fan\" \"\" commandable\n"
                         "  20,1 \"Trend\" \"\"\n");
}

TEST(DirectoryTest, MergingWithItselfChangesNothing) {
    CBACnetDir dir = Sample();
    dir.AddDir(dir);
    EXPECT_EQ(Dump(dir), Dump(Sample()));
}

// ---- filter

std::string Filtered(const std::string& text) {
    CBACnetDir result;
    result.AddDev(Device(1, "left over"));
    Sample().Filter(text, result);
    std::string found;
    std::vector<unsigned> devices;
    result.GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    for (const unsigned device : devices) {
        found += std::to_string(device) + ":";
        for (const CBACnetObj& object : result.GetDev(device).GetObjects())
            found += " " + std::to_string(object.GetId().Type) + "," + std::to_string(object.GetInst());
        found += "; ";
    }
    return found;
}

TEST(DirectoryTest, FiltersByEveryWordInAnyCase) {
    const std::string all = "5:; 1234: 0,1 0,2 4,7; ";
    EXPECT_EQ(Filtered(""), all);
    EXPECT_EQ(Filtered("  \t "), all);
    EXPECT_EQ(Filtered("temp"), "1234: 0,1 0,2; ") << "objects keep their device";
    EXPECT_EQ(Filtered("TEMP supply"), "1234: 0,2; ");
    EXPECT_EQ(Filtered("heater"), "1234: 0,2; ") << "descriptions count";
    EXPECT_EQ(Filtered("L\xC3\x9C"
                       "FTUNG"),
              "1234: 0,1 0,2 4,7; ")
        << "a device keeps all its objects";
    EXPECT_EQ(Filtered("ftung roof"), "1234: 0,1 0,2 4,7; ");
    EXPECT_EQ(Filtered("1234"), "1234: 0,1 0,2 4,7; ") << "instances count";
    EXPECT_EQ(Filtered("nothing"), "");
    EXPECT_EQ(Filtered("temp nothing"), "");
}

TEST(DirectoryTest, FiltersByTypeName) {
    const std::string name = CBACnetDir::GetStdObjTypeName(OBJ_BINARY_OUTPUT);
    EXPECT_EQ(Filtered(name), "1234: 4,7; ");
}

TEST(DirectoryTest, FiltersIntoItself) {
    CBACnetDir dir = Sample();
    dir.Filter("fan", dir);
    std::vector<BACSTAC_OBJECT_ID> objects;
    dir.GetObjLst(1234, objects, BACSTAC_ALL_TYPES);
    EXPECT_EQ(objects, (std::vector<BACSTAC_OBJECT_ID>{{4, 7}}));
}

TEST(FoldCaseTest, FoldsTheAlphabetsOfEurope) {
    const auto fold = [](const char* text) {
        std::string folded;
        bacnet::directory::AppendFolded(folded, text);
        return folded;
    };
    EXPECT_EQ(fold("AZaz09_["), "azaz09_[");
    EXPECT_EQ(fold("\xC3\x84\xC3\x96\xC3\x9C \xC3\x97"), "\xC3\xA4\xC3\xB6\xC3\xBC \xC3\x97");
    EXPECT_EQ(fold("\xC4\x8C\xC5\xBD\xC5\xB8"), "\xC4\x8D\xC5\xBE\xC3\xBF"); // Č Ž Ÿ
    EXPECT_EQ(fold("\xCE\xA9\xCE\x86"), "\xCF\x89\xCE\xAC");                 // Ω Ά
    EXPECT_EQ(fold("\xD0\x96\xD0\x81"), "\xD0\xB6\xD1\x91");                 // Ж Ё
    EXPECT_EQ(fold("\xE2\x82\xAC \xFF\xC3"), "\xE2\x82\xAC \xFF\xC3") << "passes what it does not know";
}

// ---- file

class DirectoryFileTest : public testing::Test {
protected:
    std::string Path() const { return m_folder.Path() + "/netz\xC3\xBC.dir"; }

    CTempFolder m_folder;
};

TEST_F(DirectoryFileTest, LoadsWhatWasSaved) {
    CBACnetDir dir = Sample();
    ASSERT_TRUE(dir.Save(Path()));
    CBACnetDir loaded;
    loaded.AddDev(Device(1, "replaced"));
    ASSERT_TRUE(loaded.Load(Path()));
    EXPECT_EQ(Dump(loaded), Dump(dir));
}

TEST_F(DirectoryFileTest, KeepsNamesOfTheDeviceApartFromItsDeviceObject) {
    CBACnetDir dir;
    CBACnetDev device = Device(1234, "x");
    device.AddObj(Object({OBJ_DEVICE, 1234}, "read", "from the device"));
    dir.AddDev(device);
    dir.SetDevName(1234, "edited");
    ASSERT_TRUE(dir.Save(Path()));
    CBACnetDir loaded;
    ASSERT_TRUE(loaded.Load(Path()));
    EXPECT_EQ(Dump(loaded), Dump(dir));
}

TEST_F(DirectoryFileTest, KeepsExtraValues) {
    CBACnetDir dir = Sample();
    const auto add = [&](BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property, BACSTAC_DATA_TYPE type, void* data,
                         std::uint32_t size, std::uint32_t count) {
        CBACnetObj object = Object(id, "with values");
        CPropertyValue* const value = CPropertyValue::CreateValue(id.Type, property, type, -1);
        ASSERT_NE(value, nullptr) << property;
        EXPECT_TRUE(value->ReadFrom(BACSTAC_PROPERTY_CONTENTS{type, data, size, count})) << property;
        object.SetPropVal(property, value);
        dir.AddObj(1234, object);
    };
    std::uint32_t units = 62;
    add({OBJ_ANALOG_INPUT, 50}, 117, TYPE_ENUMERATED, &units, sizeof units, 1);
    char text[] = "Ein \xC3\x9C";
    add({OBJ_BINARY_INPUT, 50}, 4, TYPE_STRING, text, sizeof text, 1);
    char states[] = "Off\0On\0Auto";
    add({OBJ_MULTI_STATE_INPUT, 50}, 110, TYPE_STRING, states, sizeof states, 3);
    float limit = 99.5F;
    add({OBJ_ANALOG_VALUE, 50}, 65, TYPE_REAL, &limit, sizeof limit, 1);
    BACSTAC_DEV_OBJ_PROP_REF references[2]{};
    references[0] = {{0, 1}, 85, 0xFFFFFFFFU, 0, {8, 0}};
    references[1] = {{0, 2}, 85, 3, 1, {8, 77}};
    add({OBJ_TREND_LOG_MULTIPLE, 50}, 132, TYPE_DEV_OBJ_PROP_REF, references, sizeof references, 2);

    ASSERT_TRUE(dir.Save(Path()));
    CBACnetDir loaded;
    ASSERT_TRUE(loaded.Load(Path()));
    EXPECT_EQ(Dump(loaded), Dump(dir));
    EXPECT_NE(Dump(loaded).find("110=13:"), std::string::npos) << Dump(loaded);
}

TEST_F(DirectoryFileTest, KeepsExtraValuesOfEveryType) {
    CBACnetDir dir = Sample();
    CBACnetObj object = Object({OBJ_ANALOG_VALUE, 60}, "with values");
    std::vector<std::uint8_t> encoded(65536);
    CPropertyContents contents;
    BACSTAC_PROPERTY_ID property = 1000;
    for (const bacnet::TypeInfo& type : bacnet::AllTypes()) {
        for (unsigned seed = 0; seed < 8; ++seed) {
            bacnet::Writer out(encoded);
            testing_support::ValueGenerator(out, seed).Element(type, bacnet::APPLICATION);
            std::unique_ptr<CPropertyValue> value(
                CPropertyValue::CreateValue(OBJ_ANALOG_VALUE, ++property, type.Type, 1));
            if (value == nullptr ||
                bacnet::DecodeElements(out.Written(), type, true, contents) != bacnet::DecodeResult::ok)
                continue;
            ASSERT_TRUE(value->ReadFrom(contents)) << type.Name;
            object.SetPropVal(property, value.release());
        }
    }
    EXPECT_GT(object.GetPropVals()->size(), 400U);
    dir.AddObj(1234, object);
    ASSERT_TRUE(dir.Save(Path()));
    CBACnetDir loaded;
    ASSERT_TRUE(loaded.Load(Path()));
    EXPECT_EQ(Dump(loaded), Dump(dir));
}

TEST_F(DirectoryFileTest, LeavesOutAValueThatHoldsNothing) {
    CBACnetDir dir = Sample();
    CBACnetObj object = Object({OBJ_ANALOG_VALUE, 60}, "odd");
    object.SetPropVal(1000, new CPVAnyPrimitive);
    dir.AddObj(1234, object);
    ASSERT_TRUE(dir.Save(Path())) << "one odd value does not keep all others from being saved";
    CBACnetDir loaded;
    ASSERT_TRUE(loaded.Load(Path()));
    std::string name;
    EXPECT_TRUE(loaded.GetObjName(1234, {OBJ_ANALOG_VALUE, 60}, name));
    EXPECT_EQ(name, "odd");
    EXPECT_EQ(loaded.GetDev(1234).FindObj({OBJ_ANALOG_VALUE, 60})->GetPropVals(), nullptr);
}

TEST_F(DirectoryFileTest, RefusesAMissingFileAndStaysAsItWas) {
    CBACnetDir dir = Sample();
    EXPECT_FALSE(dir.Load(Path()));
    EXPECT_FALSE(dir.Load(m_folder.Path()));
    EXPECT_EQ(Dump(dir), Dump(Sample()));
}

TEST_F(DirectoryFileTest, RefusesAFileCutAtAnyByte) {
    ASSERT_TRUE(Sample().Save(Path()));
    const std::string bytes = Contents(Path());
    CBACnetDir dir;
    dir.AddDev(Device(1, "stays"));
    const std::string before = Dump(dir);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        Write(Path(), bytes.substr(0, length));
        EXPECT_FALSE(dir.Load(Path())) << length;
    }
    Write(Path(), bytes + "x");
    EXPECT_FALSE(dir.Load(Path()));
    EXPECT_EQ(Dump(dir), before);
}

TEST_F(DirectoryFileTest, RefusesAFileWithAnyBitChanged) {
    ASSERT_TRUE(Sample().Save(Path()));
    const std::string bytes = Contents(Path());
    CBACnetDir dir;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::string changed = bytes;
        changed[i] = static_cast<char>(changed[i] ^ (1 << (i % 8)));
        Write(Path(), changed);
        EXPECT_FALSE(dir.Load(Path())) << i;
    }
}

// The checksum keeps accidents out; a payload with lying counts and a fitting checksum must do no harm either.
TEST_F(DirectoryFileTest, SurvivesHostilePayloads) {
    ASSERT_TRUE(Sample().Save(Path()));
    const std::string bytes = Contents(Path());
    const std::size_t head = 12;
    const std::size_t tail = 12;
    const std::string payload = bytes.substr(head, bytes.size() - head - tail);
    const auto load = [&](const std::string& hostile) {
        std::string file = bytes.substr(0, head) + hostile;
        std::uint64_t length = hostile.size();
        for (int i = 0; i < 8; ++i, length >>= 8)
            file += static_cast<char>(length & 0xFF);
        std::uint32_t crc = bacnet::directory::Crc32(hostile);
        for (int i = 0; i < 4; ++i, crc >>= 8)
            file += static_cast<char>(crc & 0xFF);
        Write(Path(), file);
        CBACnetDir dir;
        return dir.Load(Path());
    };
    EXPECT_TRUE(load(payload));
    for (std::size_t length = 1; length < payload.size(); ++length)
        EXPECT_FALSE(load(payload.substr(0, length))) << length;
    for (std::size_t i = 0; i < payload.size(); ++i)
        for (const char value : {'\x00', '\x01', '\x7F', '\xFF'}) {
            std::string changed = payload;
            changed[i] = value;
            load(changed); // may be another good directory
        }
    EXPECT_FALSE(load("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x01"));
    EXPECT_FALSE(load("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"));
}

TEST_F(DirectoryFileTest, KeepsTheFormerGenerationIfItWasGood) {
    CBACnetDir dir = Sample();
    ASSERT_TRUE(dir.Save(Path()));
    EXPECT_FALSE(fs::exists(Path() + ".bak"));
    dir.SetDevName(5, "second");
    ASSERT_TRUE(dir.Save(Path()));
    CBACnetDir former;
    ASSERT_TRUE(former.Load(Path() + ".bak"));
    EXPECT_EQ(Dump(former), Dump(Sample()));

    Write(Path(), "damaged");
    ASSERT_TRUE(dir.Save(Path()));
    ASSERT_TRUE(former.Load(Path() + ".bak")) << "damage does not replace the good generation";
    EXPECT_EQ(Dump(former), Dump(Sample()));
    ASSERT_TRUE(former.Load(Path()));
    EXPECT_EQ(Dump(former), Dump(dir));
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.Path()), fs::directory_iterator()), 2)
        << "no temporary files stay";
}

TEST_F(DirectoryFileTest, LeavesTheFileAloneWhenSavingFails) {
    EXPECT_FALSE(Sample().Save(m_folder.File("missing/file.dir")));
    ASSERT_TRUE(Sample().Save(Path()));
    const std::string before = Contents(Path());
    fs::create_directory(Path() + ".tmp"); // where the new file would be written
    CBACnetDir dir;
    EXPECT_FALSE(dir.Save(Path()));
    EXPECT_EQ(Contents(Path()), before);
}

TEST_F(DirectoryFileTest, SavesAnEmptyDirectory) {
    CBACnetDir dir;
    ASSERT_TRUE(dir.Save(Path()));
    CBACnetDir loaded = Sample();
    ASSERT_TRUE(loaded.Load(Path()));
    EXPECT_EQ(Dump(loaded), "");
}

TEST(Crc32Test, MatchesTheKnownCheckValue) {
    EXPECT_EQ(bacnet::directory::Crc32("123456789"), 0xCBF43926U);
    EXPECT_EQ(bacnet::directory::Crc32("56789", bacnet::directory::Crc32("1234")), 0xCBF43926U);
    EXPECT_EQ(bacnet::directory::Crc32(""), 0U);
}

} // namespace
