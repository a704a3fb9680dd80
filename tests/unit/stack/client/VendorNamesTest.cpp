#include "platform/stack/schema/VendorNames.h"

#include "api/bacnet/Dir.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <thread>

using namespace bacnet;
using testing::ElementsAre;

namespace {

constexpr const char* SAMPLE = "# Example Controls\n"
                               "260 vendor  Example  Controls#1 Inc. \r\n"
                               "\n"
                               "260 object-type 128 vav-box\n"
                               "\t260\tproperty 512 damper-position   # of the box\n"
                               "260 value 513 1 forced-open\n"
                               "260 value units 300 buckets-a-day\n"
                               "7 object-type 128 k\xC3\xBChler";

std::vector<std::string> FaultsOf(const std::string& text) {
    VendorNames names;
    std::vector<VendorNamesFault> faults;
    names.Parse(text, &faults);
    std::vector<std::string> lines;
    for (const VendorNamesFault& fault : faults)
        lines.push_back(std::to_string(fault.Line) + ": " + fault.Text);
    return lines;
}

std::string Text(const std::string* name) {
    return name == nullptr ? "none" : *name;
}

// Puts the process's tables back.
class VendorNamesTest : public testing::Test {
protected:
    void TearDown() override { SetVendorNames(nullptr); }
};

} // namespace

TEST_F(VendorNamesTest, AreReadFromLines) {
    VendorNames names;
    std::vector<VendorNamesFault> faults;
    names.Parse(SAMPLE, &faults);
    EXPECT_TRUE(faults.empty());
    EXPECT_EQ(Text(names.Vendor(260)), "Example  Controls#1 Inc.");
    EXPECT_EQ(Text(names.Vendor(7)), "none");
    EXPECT_EQ(Text(names.ObjectType(260, 128)), "vav-box");
    EXPECT_EQ(Text(names.ObjectType(7, 128)), "k\xC3\xBChler");
    EXPECT_EQ(Text(names.ObjectType(8, 128)), "none");
    EXPECT_EQ(Text(names.Property(260, 512)), "damper-position");
    EXPECT_EQ(Text(names.Property(260, 513)), "none");
    EXPECT_EQ(Text(names.Value(260, 513, 1)), "forced-open");
    EXPECT_EQ(Text(names.Value(260, 117, 300)), "buckets-a-day");
    EXPECT_EQ(Text(names.Value(260, 117, 62)), "none");
}

TEST_F(VendorNamesTest, OfALaterLineReplaceThoseOfAnEarlierOne) {
    VendorNames names;
    names.Parse("1 property 600 old\n1 property 600 new\n", nullptr);
    names.Parse("\xEF\xBB\xBF"
                "2 property 600 other",
                nullptr);
    EXPECT_EQ(Text(names.Property(1, 600)), "new");
    EXPECT_EQ(Text(names.Property(2, 600)), "other");
}

TEST_F(VendorNamesTest, TellEveryWrongLineAndTakeTheOthers) {
    EXPECT_THAT(FaultsOf("Example\n"
                         "70000 vendor Too Large\n"
                         "1 vendor\n"
                         "1 objecttype 128 x\n"
                         "1 object-type 127 x\n"
                         "1 object-type 1024 x\n"
                         "1 property 85 x\n"
                         "1 property 512\n"
                         "1 property 512 two words\n"
                         "1 value no-such-property 1 x\n"
                         "1 value units -1 x\n"
                         "1 property 512 \xFF\xFE\n"
                         "1 property 512 a\x1b[31m\n"),
                ElementsAre("1: the vendor must be a number from 0 to 65535",
                            "2: the vendor must be a number from 0 to 65535", "3: the vendor's name is missing",
                            "4: \"objecttype\" is not vendor, object-type, property or value",
                            "5: the object type must be a number from 128 to 1023",
                            "6: the object type must be a number from 128 to 1023",
                            "7: the property must be a number from 512 to 4194303", "8: the name is missing",
                            "9: a name is one word", "10: \"no-such-property\" is no property",
                            "11: the value must be a number from 0 to 4294967295", "12: the line is no printable UTF-8",
                            "13: the line is no printable UTF-8"));
    VendorNames names;
    names.Parse(std::string("nonsense\n") + std::string(300, '1') + "\n1 property 600 good\n1 property x y\n", nullptr);
    EXPECT_EQ(Text(names.Property(1, 600)), "good");
}

TEST_F(VendorNamesTest, AreFoundByTheNameFunctions) {
    const auto names = std::make_shared<VendorNames>();
    names->Parse(SAMPLE, nullptr);
    SetVendorNames(names);
    std::string name;
    EXPECT_TRUE(CBACnetDir::GetObjTypeName(128, name, 260));
    EXPECT_EQ(name, "vav-box");
    EXPECT_TRUE(CBACnetDir::GetPropName(512, name, 260));
    EXPECT_EQ(name, "damper-position");
    EXPECT_TRUE(CBACnetDir::GetPropName(85, name, 260)) << "names of the standard hold for every vendor";
    EXPECT_EQ(name, "present-value");
    EXPECT_FALSE(CBACnetDir::GetObjTypeName(128, name, 0)) << "no vendor has no names";
    EXPECT_EQ(name, "128");
    EXPECT_FALSE(CBACnetDir::GetPropName(512, name, 8));
    EXPECT_EQ(name, "512");
    EXPECT_STREQ(CBACnetDir::GetStdObjTypeName(128), "128");
}

TEST_F(VendorNamesTest, AreFoundByTheFilter) {
    const auto names = std::make_shared<VendorNames>();
    names->Parse(SAMPLE, nullptr);
    SetVendorNames(names);
    CBACnetDir dir;
    for (const unsigned vendor : {260U, 8U}) {
        CBACnetDev device;
        device.SetInst(vendor);
        device.SetVendorId(vendor);
        CBACnetObj object;
        object.SetId({128, 1});
        device.AddObj(object);
        dir.AddDev(device);
    }
    CBACnetDir result;
    dir.Filter("VAV", result);
    std::vector<unsigned> devices;
    result.GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    EXPECT_THAT(devices, ElementsAre(260U));
}

TEST_F(VendorNamesTest, ComeFromAFileThatNeedNotBeThere) {
    const CTempFolder folder;
    const std::string path = folder.File("vendor-names.txt");
    std::vector<std::string> errors;
    EXPECT_TRUE(LoadVendorNames(path, errors));
    EXPECT_TRUE(errors.empty());

    std::ofstream(path) << "wrong\n260 object-type 130 chiller\n";
    EXPECT_TRUE(LoadVendorNames(path, errors));
    EXPECT_THAT(errors, ElementsAre(path + ":1: the vendor must be a number from 0 to 65535"));
    EXPECT_EQ(Text(CurrentVendorNames()->ObjectType(260, 130)), "chiller");

    errors.clear();
    EXPECT_FALSE(LoadVendorNames(folder.Path(), errors)) << "a folder is no file";
    EXPECT_EQ(errors.size(), 1U);
    EXPECT_EQ(Text(CurrentVendorNames()->ObjectType(260, 130)), "chiller") << "what is known stays";
}

TEST_F(VendorNamesTest, MayBeReplacedWhileOthersAsk) {
    std::atomic<bool> stop{false};
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i) {
        readers.emplace_back([&] {
            std::string name;
            while (!stop.load()) {
                CBACnetDir::GetPropName(512, name, 260);
                EXPECT_TRUE(name == "512" || name == "damper-position") << name;
            }
        });
    }
    for (int i = 0; i < 200; ++i) {
        const auto names = std::make_shared<VendorNames>();
        if (i % 2 == 0)
            names->Parse(SAMPLE, nullptr);
        SetVendorNames(names);
    }
    stop.store(true);
    for (std::thread& reader : readers)
        reader.join();
}
