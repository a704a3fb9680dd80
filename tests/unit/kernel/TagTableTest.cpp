#include "tests/unit/kernel/KernelFixture.h"

#include <cmath>
#include <limits>

using KernelTags = KernelFixture;

namespace {

TagDefinition Cleared() {
    TagDefinition definition{};
    definition.size = sizeof definition;
    return definition;
}

} // namespace

TEST_F(KernelTags, IdsAreDenseFromZero) {
    EXPECT_EQ(Add(Tag("A")), 0U);
    EXPECT_EQ(Add(Tag("B")), 1U);
    EXPECT_EQ(Add(Tag("C")), 2U);
}

TEST_F(KernelTags, DefinitionHoldsWhatTheTagWasMadeWith) {
    TagSettings settings = Tag("Pump 1 B\xC3\xA4r", TAG_TYPE_COUNTER);
    settings.description = "Circulation pump";
    settings.unit = "m\xC2\xB3";
    settings.historyEnabled = true;
    settings.historyCopy = true;
    const std::uint32_t id = Add(settings);
    TagDefinition definition = Cleared();
    std::memset(definition.reserved3, 0xA5, sizeof definition.reserved3);
    ASSERT_EQ(m_kernel.GetTagDefinition(Connect(), id, definition), QL_OK);
    EXPECT_EQ(definition.size, 1468);
    EXPECT_STREQ(definition.name, "Pump 1 B\xC3\xA4r");
    EXPECT_EQ(definition.type, TAG_TYPE_COUNTER);
    EXPECT_STREQ(definition.description, "Circulation pump");
    EXPECT_STREQ(definition.unit, "m\xC2\xB3");
    EXPECT_NE(definition.historyEnabled, 0U);
    EXPECT_EQ(definition.flags, TAG_FLAG_HISTORY_COPY);
    EXPECT_EQ(definition.reserved3[762], 0);
}

TEST_F(KernelTags, DefinitionNeedsTheSizeWord) {
    Add(Tag("A"));
    const std::uint8_t handle = Connect();
    for (const int size : {0, 1, 1467, 1469, 0xFFFF}) {
        TagDefinition definition{};
        definition.size = static_cast<std::uint16_t>(size);
        EXPECT_EQ(m_kernel.GetTagDefinition(handle, 0, definition), QL_INVALID_ARGUMENT) << size;
        EXPECT_STREQ(definition.name, "");
    }
}

TEST_F(KernelTags, LongTextsAreCutAtTheBoundaryOfACharacter) {
    TagSettings settings = Tag("A");
    settings.description = std::string(126, 'd') + "\xC3\xB6";
    settings.unit = std::string(40, 'u');
    Add(settings);
    TagDefinition definition = Cleared();
    ASSERT_EQ(m_kernel.GetTagDefinition(Connect(), 0, definition), QL_OK);
    EXPECT_EQ(definition.description, std::string(126, 'd'));
    EXPECT_EQ(definition.unit, std::string(31, 'u'));
}

TEST_F(KernelTags, AWalkByIndexPassesDeletedTagsAndEndsBehindTheLast) {
    for (const char* name : {"A", "B", "C", "D"}) {
        Add(Tag(name));
    }
    EXPECT_EQ(m_kernel.RemoveTag(1), QL_OK);
    EXPECT_EQ(m_kernel.RemoveTag(3), QL_OK);
    const std::uint8_t gate = Connect();
    std::vector<QLResult> results;
    std::vector<std::string> names;
    QLResult result = QL_OK;
    for (std::uint32_t index = 0; result != QL_NO_SUCH_TAG; ++index) {
        TagDefinition definition = Cleared();
        result = m_kernel.GetTagDefinition(gate, index, definition);
        results.push_back(result);
        if (result == QL_OK) {
            names.emplace_back(definition.name);
        }
    }
    EXPECT_EQ(results, (std::vector<QLResult>{QL_OK, QL_DELETED_TAG, QL_OK, QL_DELETED_TAG, QL_NO_SUCH_TAG}));
    EXPECT_EQ(names, (std::vector<std::string>{"A", "C"}));
}

TEST_F(KernelTags, EnumerationTellsTheRangeOrThatThereIsNoTag) {
    const std::uint8_t gate = Connect();
    std::uint32_t first = 9;
    std::uint32_t count = 9;
    EXPECT_EQ(m_kernel.OpenTagEnumeration(gate, first, count, 0, 0), QL_NO_SUCH_TAG);
    Add(Tag("A"));
    Add(Tag("B"));
    EXPECT_EQ(m_kernel.OpenTagEnumeration(gate, first, count, 0, 0), QL_OK);
    EXPECT_EQ(first, 0U);
    EXPECT_EQ(count, 2U);
    m_kernel.RemoveTag(0);
    EXPECT_EQ(m_kernel.OpenTagEnumeration(gate, first, count, 0, 0), QL_OK);
    m_kernel.RemoveTag(1);
    EXPECT_EQ(m_kernel.OpenTagEnumeration(gate, first, count, 0, 0), QL_NO_SUCH_TAG);
}

TEST_F(KernelTags, StationZeroAndTheLocalStationMeanThisOne) {
    Add(Tag("A"));
    Add(Tag("B", TAG_TYPE_ANALOG, 7.0));
    const std::uint8_t handle = Connect();
    TagDefinition definition = Cleared();
    double value = 0;
    for (const std::uint32_t id : {0x00000001U, 0x00030001U}) {
        EXPECT_EQ(m_kernel.GetTagDefinition(handle, id, definition), QL_OK);
        EXPECT_STREQ(definition.name, "B");
        EXPECT_EQ(m_kernel.GetTagValue(handle, QL_VALUE_AS_DOUBLE, id, value, 0, 0), QL_OK);
        EXPECT_EQ(value, 7.0);
    }
    for (const std::uint32_t id : {0x00010001U, 0x00040001U, 0xFFFF0001U, 0xFFFFFFFFU}) {
        EXPECT_EQ(m_kernel.GetTagDefinition(handle, id, definition), QL_NO_SUCH_TAG);
        EXPECT_EQ(m_kernel.GetTagValue(handle, QL_VALUE_AS_DOUBLE, id, value, 0, 0), QL_NO_SUCH_TAG);
    }
}

TEST_F(KernelTags, IdByNameIsLocalAndExact) {
    Add(Tag("A"));
    Add(Tag("Pump"));
    const std::uint8_t gate = Connect();
    std::uint32_t id = 0;
    EXPECT_EQ(m_kernel.GetTagIdByName(gate, "Pump", id), QL_OK);
    EXPECT_EQ(id, 1U);
    for (const char* name : {"pump", "Pum", "Pump ", "", "PLANT:Pump"}) {
        EXPECT_EQ(m_kernel.GetTagIdByName(gate, name, id), QL_NO_SUCH_TAG) << name;
    }
    EXPECT_EQ(m_kernel.GetTagIdByName(gate, nullptr, id), QL_INVALID_ARGUMENT);
}

TEST_F(KernelTags, IdWithStationTakesNamesWithAndWithoutTheStation) {
    Add(Tag("A"));
    Add(Tag("Pump"));
    const std::uint8_t handle = Connect();
    for (const char* name : {"Pump", "PLANT:Pump"}) {
        std::uint32_t id = 0;
        EXPECT_EQ(m_kernel.GetTagIdWithStation(handle, name, id), QL_OK) << name;
        EXPECT_EQ(id, 0x00030001U);
    }
    std::uint32_t id = 77;
    for (const char* name : {"OTHER:Pump", "plant:Pump", ":Pump", "PLANT:", "PLANT", "PLANT:PLANT:Pump", ""}) {
        EXPECT_EQ(m_kernel.GetTagIdWithStation(handle, name, id), QL_NO_SUCH_TAG) << name;
    }
    EXPECT_EQ(m_kernel.GetTagIdWithStation(handle, nullptr, id), QL_INVALID_ARGUMENT);
    EXPECT_EQ(id, 77U);
}

TEST_F(KernelTags, NamesHaveLimits) {
    std::uint32_t id = 0;
    for (const std::string& name : {std::string(), std::string(48, 'x'), std::string("A:B"), std::string("a\tb")}) {
        EXPECT_EQ(m_kernel.AddTag(Tag(name), id), AddTagResult::BadName) << name;
    }
    EXPECT_EQ(m_kernel.AddTag(Tag(std::string(47, 'x')), id), AddTagResult::Added);
    EXPECT_EQ(m_kernel.AddTag(Tag(std::string(47, 'x')), id), AddTagResult::NameTaken);
}

TEST_F(KernelTags, TypesAndValuesMustFit) {
    std::uint32_t id = 0;
    for (const int type : {0, 3, 5, 7, 65535}) {
        EXPECT_EQ(m_kernel.AddTag(Tag("A", static_cast<std::uint16_t>(type)), id), AddTagResult::BadType);
    }
    EXPECT_EQ(m_kernel.AddTag(Tag("A", TAG_TYPE_TEXT, 1.0), id), AddTagResult::BadValue);
    EXPECT_EQ(m_kernel.AddTag(Tag("A", TAG_TYPE_ANALOG, std::string("1")), id), AddTagResult::BadValue);
    EXPECT_FALSE(m_kernel.FindTag("A"));
}

TEST_F(KernelTags, AnOwnerMayChooseNumbers) {
    TagSettings settings = Tag("A");
    settings.number = 5;
    EXPECT_EQ(Add(settings), 5U);
    EXPECT_EQ(Add(Tag("B")), 6U);
    settings = Tag("C");
    settings.number = 2;
    EXPECT_EQ(Add(settings), 2U);
    const std::uint8_t gate = Connect();
    TagDefinition definition = Cleared();
    EXPECT_EQ(m_kernel.GetTagDefinition(gate, 3, definition), QL_DELETED_TAG);
    std::uint32_t id = 0;
    settings = Tag("D");
    settings.number = 5;
    EXPECT_EQ(m_kernel.AddTag(settings, id), AddTagResult::NumberTaken);
    settings.number = 0xFFFF;
    EXPECT_EQ(m_kernel.AddTag(settings, id), AddTagResult::Full);
}

TEST_F(KernelTags, ARemovedTagsNumberComesBackOnlyUnderItsName) {
    Add(Tag("A"));
    EXPECT_EQ(m_kernel.RemoveTag(0), QL_OK);
    EXPECT_EQ(m_kernel.RemoveTag(0), QL_DELETED_TAG);
    EXPECT_EQ(m_kernel.RemoveTag(1), QL_NO_SUCH_TAG);
    EXPECT_EQ(Add(Tag("B")), 1U);
    TagSettings settings = Tag("C");
    settings.number = 0;
    std::uint32_t id = 0;
    EXPECT_EQ(m_kernel.AddTag(settings, id), AddTagResult::NumberTaken);
    settings = Tag("A", TAG_TYPE_ANALOG, 4.0);
    settings.number = 0;
    EXPECT_EQ(Add(settings), 0U);
    EXPECT_EQ(m_kernel.FindTag("A")->settings.type, TAG_TYPE_ANALOG);
}

TEST_F(KernelTags, AllNumbersCanBeGivenAndTheWalkStillEnds) {
    for (std::uint32_t i = 0; i < 0xFFFF; ++i) {
        ASSERT_EQ(Add(Tag("T" + std::to_string(i))), i);
    }
    std::uint32_t id = 0;
    EXPECT_EQ(m_kernel.AddTag(Tag("more"), id), AddTagResult::Full);
    const std::uint8_t gate = Connect();
    TagDefinition definition = Cleared();
    EXPECT_EQ(m_kernel.GetTagDefinition(gate, 0xFFFE, definition), QL_OK);
    EXPECT_EQ(m_kernel.GetTagDefinition(gate, 0xFFFF, definition), QL_NO_SUCH_TAG);
    EXPECT_EQ(m_kernel.GetTagIdByName(gate, "T65534", id), QL_OK);
    EXPECT_EQ(id, 65534U);
}

TEST_F(KernelTags, ValuesAreReadAsDoubles) {
    const std::uint32_t digital = Add(Tag("D"));
    const std::uint32_t text = Add(Tag("T", TAG_TYPE_TEXT, std::string("on")));
    const std::uint8_t gate = Connect();
    double value = 5.0;
    EXPECT_EQ(m_kernel.GetTagValue(gate, QL_VALUE_AS_DOUBLE, digital, value, 0, 0), QL_NO_VALUE);
    EXPECT_EQ(m_kernel.GetTagValue(gate, QL_VALUE_AS_DOUBLE, text, value, 0, 0), QL_WRONG_TYPE);
    EXPECT_EQ(m_kernel.GetTagValue(gate, QL_VALUE_AS_DOUBLE, 2, value, 0, 0), QL_NO_SUCH_TAG);
    EXPECT_EQ(value, 5.0);
    EXPECT_EQ(m_kernel.SetTagValue(digital, 1.0), QL_OK);
    EXPECT_EQ(m_kernel.GetTagValue(gate, 10, digital, value, 0, 0), QL_INVALID_ARGUMENT);
    EXPECT_EQ(m_kernel.GetTagValue(gate, QL_VALUE_AS_DOUBLE, digital, value, 0, 0), QL_OK);
    EXPECT_EQ(value, 1.0);
    m_kernel.RemoveTag(digital);
    EXPECT_EQ(m_kernel.GetTagValue(gate, QL_VALUE_AS_DOUBLE, digital, value, 0, 0), QL_DELETED_TAG);
}

TEST_F(KernelTags, ValuesAreSetByIdAndByName) {
    const std::uint32_t id = Add(Tag("A", TAG_TYPE_ANALOG));
    const std::uint32_t text = Add(Tag("T", TAG_TYPE_TEXT));
    EXPECT_EQ(m_kernel.SetTagValue("A", 2.5), QL_OK);
    EXPECT_EQ(std::get<double>(m_kernel.FindTag("A")->settings.value), 2.5);
    EXPECT_EQ(m_kernel.SetTagValue("B", 2.5), QL_NO_SUCH_TAG);
    EXPECT_EQ(m_kernel.SetTagValue(9, 2.5), QL_NO_SUCH_TAG);
    EXPECT_EQ(m_kernel.SetTagValue(text, 2.5), QL_WRONG_TYPE);
    EXPECT_EQ(m_kernel.SetTagText(id, "on"), QL_WRONG_TYPE);
    EXPECT_EQ(m_kernel.SetTagText(text, "on"), QL_OK);
    EXPECT_EQ(std::get<std::string>(m_kernel.FindTag("T")->settings.value), "on");
}

TEST_F(KernelTags, TheListShowsTagsInOrderUntilTheVisitorEndsIt) {
    Add(Tag("B", TAG_TYPE_ANALOG, 1.5));
    Add(Tag("A"));
    Add(Tag("C", TAG_TYPE_TEXT, std::string("off")));
    m_kernel.RemoveTag(1);
    std::vector<std::pair<std::uint32_t, std::string>> shown;
    m_kernel.ListTags([&](const TagInfo& tag) {
        shown.emplace_back(tag.id, tag.settings.name);
        m_kernel.SetTagValue("B", 2.0); // the visitor may use the kernel
        return true;
    });
    EXPECT_EQ(shown, (std::vector<std::pair<std::uint32_t, std::string>>{{0, "B"}, {2, "C"}}));
    int visits = 0;
    m_kernel.ListTags([&](const TagInfo&) { return ++visits < 1; });
    EXPECT_EQ(visits, 1);
}
