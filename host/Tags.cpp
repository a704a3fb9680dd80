#include "host/Tags.h"

#include "base/DurableFile.h"
#include "module/console/Tag.h"
#include "platform/kernel/Kernel.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <algorithm>
#include <set>

namespace {

using Json = nlohmann::json;

constexpr std::size_t MAX_FILE_SIZE = 64 << 20;
constexpr std::uint32_t NUMBERS = 65535; // 0..65534

TagSettings SettingsOf(const TagConfig& tag, std::uint16_t number) {
    TagSettings settings;
    settings.name = tag.name;
    settings.type = tag.type;
    settings.description = tag.description;
    settings.unit = tag.unit;
    settings.historyEnabled = tag.history;
    settings.historyCopy = tag.historyCopy;
    settings.number = number;
    if (tag.type == TAG_TYPE_TEXT)
        settings.value = tag.initialText;
    else
        settings.value = tag.initial;
    return settings;
}

CTag BindingOf(const BacnetReference& reference, std::uint32_t id) {
    CTag tag;
    tag.tagId = id;
    tag.cov = reference.cov ? 1 : 0;
    tag.device = reference.device;
    tag.objectType = reference.objectType;
    tag.objectInstance = reference.objectInstance;
    tag.property = reference.property;
    tag.arrayIndex = reference.index;
    tag.statusBit = reference.statusBit;
    return tag;
}

} // namespace

bool CTagNumbers::Load(std::string& error) {
    if (access(m_path.c_str(), F_OK) != 0)
        return true;
    std::string text;
    if (ReadWholeFile(m_path, MAX_FILE_SIZE, text, &error) != FileRead::Ok)
        return false;
    const Json json = Json::parse(text, nullptr, false);
    bool isGood = json.is_object();
    std::map<std::string, std::uint16_t> numbers;
    std::set<std::uint32_t> given;
    for (auto it = json.begin(); isGood && it != json.end(); ++it) {
        isGood = it->is_number_unsigned() && it->get<std::uint64_t>() < NUMBERS &&
                 given.insert(it->get<std::uint32_t>()).second;
        if (isGood)
            numbers[it.key()] = it->get<std::uint16_t>();
    }
    if (!isGood) {
        error = m_path +
                ": is damaged; it says which number each tag has in the history, so it has to be restored from "
                "a backup, or removed together with the history";
        return false;
    }
    m_numbers = std::move(numbers);
    m_next = given.empty() ? 0 : *given.rbegin() + 1;
    return true;
}

bool CTagNumbers::Save(std::string& error) {
    if (!m_isChanged)
        return true;
    if (!ReplaceWholeFile(m_path, Json(m_numbers).dump(1) + "\n", FileAccess::OwnerOnly, &error))
        return false;
    m_isChanged = false;
    return true;
}

bool CTagNumbers::Get(const std::string& name, std::uint16_t& number) {
    if (const auto found = m_numbers.find(name); found != m_numbers.end()) {
        number = found->second;
        return true;
    }
    if (m_next >= NUMBERS)
        return false;
    number = static_cast<std::uint16_t>(m_next++);
    m_numbers[name] = number;
    m_isChanged = true;
    return true;
}

bool AddTags(const std::vector<TagConfig>& tags, CTagNumbers& numbers, Kernel& kernel, CTagList& table,
             std::string& error) {
    // In ascending order of numbers: the kernel takes what is passed over for deleted slots.
    std::vector<std::pair<std::uint16_t, const TagConfig*>> ordered;
    for (const TagConfig& tag : tags) {
        std::uint16_t number = 0;
        if (!numbers.Get(tag.name, number)) {
            error = "tag \"" + tag.name + "\": all tag numbers of this data folder are used up";
            return false;
        }
        ordered.emplace_back(number, &tag);
    }
    std::sort(ordered.begin(), ordered.end());
    if (!numbers.Save(error))
        return false;
    for (const auto& [number, tag] : ordered) {
        std::uint32_t id = 0;
        const AddTagResult result = kernel.AddTag(SettingsOf(*tag, number), id);
        if (result != AddTagResult::Added) {
            error = "tag \"" + tag->name + "\": " + AddTagResultText(result);
            return false;
        }
        if (tag->bacnet)
            table.RegisterTag(BindingOf(*tag->bacnet, id));
    }
    return true;
}
