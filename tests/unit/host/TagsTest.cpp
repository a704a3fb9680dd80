#include "host/Tags.h"
#include "module/console/Tag.h"
#include "platform/historian/MemoryHistoryStore.h"
#include "platform/kernel/Kernel.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace {

TagConfig Tag(const std::string& name, std::uint16_t type = TAG_TYPE_ANALOG) {
    TagConfig tag;
    tag.name = name;
    tag.type = type;
    return tag;
}

class Tags : public testing::Test {
protected:
    // As one start of the driver does; gives the tags' numbers by name.
    std::map<std::string, std::uint32_t> Start(const std::vector<TagConfig>& tags) {
        Kernel kernel(KernelSettings{}, m_history);
        CTagNumbers numbers(m_folder.File("numbers.json"));
        std::string error;
        EXPECT_TRUE(numbers.Load(error)) << error;
        EXPECT_TRUE(AddTags(tags, numbers, kernel, m_table, error)) << error;
        std::map<std::string, std::uint32_t> ids;
        kernel.ListTags([&](const TagInfo& tag) {
            ids[tag.settings.name] = tag.id;
            return true;
        });
        return ids;
    }

    CTempFolder m_folder;
    MemoryHistoryStore m_history;
    CTagList m_table;
};

using Ids = std::map<std::string, std::uint32_t>;

} // namespace

TEST_F(Tags, GetTheirConfiguredProperties) {
    TagConfig analog = Tag("A");
    analog.initial = 21.5;
    analog.unit = "°C";
    analog.description = "Supply";
    analog.history = true;
    analog.bacnet = BacnetReference{};
    analog.bacnet->device = 1000;
    analog.bacnet->objectType = 3;
    analog.bacnet->objectInstance = 7;
    analog.bacnet->property = 111;
    analog.bacnet->statusBit = 2;
    analog.bacnet->cov = true;
    TagConfig text = Tag("T", TAG_TYPE_TEXT);
    text.initialText = "none";

    Kernel kernel(KernelSettings{}, m_history);
    CTagNumbers numbers(m_folder.File("numbers.json"));
    std::string error;
    ASSERT_TRUE(AddTags({analog, text}, numbers, kernel, m_table, error)) << error;
    const auto added = kernel.FindTag("A");
    ASSERT_TRUE(added);
    EXPECT_EQ(std::get<double>(added->settings.value), 21.5);
    EXPECT_EQ(added->settings.unit, "°C");
    EXPECT_EQ(added->settings.description, "Supply");
    EXPECT_TRUE(added->settings.historyEnabled);
    EXPECT_EQ(std::get<std::string>(kernel.FindTag("T")->settings.value), "none");
    EXPECT_EQ(m_table.GetTagCnt(), 1);
    const CTag& binding = m_table.GetTag(added->id);
    EXPECT_EQ(binding.device, 1000U);
    EXPECT_EQ(binding.objectType, 3U);
    EXPECT_EQ(binding.objectInstance, 7U);
    EXPECT_EQ(binding.property, 111U);
    EXPECT_EQ(binding.arrayIndex, TAG_UNSET);
    EXPECT_EQ(binding.statusBit, 2);
    EXPECT_EQ(binding.cov, 1U);
}

TEST_F(Tags, KeepTheirNumbersWhateverTheOrderOfTheConfiguration) {
    EXPECT_EQ(Start({Tag("A"), Tag("B"), Tag("C")}), (Ids{{"A", 0}, {"B", 1}, {"C", 2}}));
    EXPECT_EQ(Start({Tag("C"), Tag("D"), Tag("A")}), (Ids{{"A", 0}, {"C", 2}, {"D", 3}}));
    EXPECT_EQ(Start({Tag("E"), Tag("B")}), (Ids{{"B", 1}, {"E", 4}})) << "B comes back, D's number is not given again";
}

TEST_F(Tags, ADamagedTableOfNumbersIsRefused) {
    for (const char* text :
         {"", "[]", "{\"A\":", R"({"A":"0"})", R"({"A":-1})", R"({"A":65535})", R"({"A":3,"B":3})", R"({"A":1.5})"}) {
        m_folder.Put("numbers.json", text);
        CTagNumbers numbers(m_folder.File("numbers.json"));
        std::string error;
        EXPECT_FALSE(numbers.Load(error)) << text;
        EXPECT_NE(error.find("numbers.json: is damaged"), std::string::npos) << error;
    }
}

TEST_F(Tags, NumbersEndWithTheLast) {
    m_folder.Put("numbers.json", R"({"last":65534})");
    CTagNumbers numbers(m_folder.File("numbers.json"));
    std::string error;
    ASSERT_TRUE(numbers.Load(error)) << error;
    std::uint16_t number = 0;
    EXPECT_TRUE(numbers.Get("last", number));
    EXPECT_EQ(number, 65534U);
    EXPECT_FALSE(numbers.Get("another", number));
}

TEST_F(Tags, NothingIsAddedWhenTheNumbersCannotBeKept) {
    Kernel kernel(KernelSettings{}, m_history);
    CTagNumbers numbers(m_folder.File("none/numbers.json"));
    std::string error;
    EXPECT_FALSE(AddTags({Tag("A")}, numbers, kernel, m_table, error));
    EXPECT_FALSE(kernel.FindTag("A"));
}

TEST_F(Tags, ATagThatTheKernelRefusesIsNamed) {
    Kernel kernel(KernelSettings{}, m_history);
    CTagNumbers numbers(m_folder.File("numbers.json"));
    std::string error;
    EXPECT_FALSE(AddTags({Tag("A:B")}, numbers, kernel, m_table, error));
    EXPECT_EQ(error.rfind("tag \"A:B\": ", 0), 0U) << error;
}
