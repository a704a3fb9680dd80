#include "api/bacnet/Dir.h"
#include "platform/stack/directory/FoldCase.h"
#include "platform/stack/schema/VendorNames.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <string_view>
#include <utility>

namespace {

using bacnet::directory::AppendFolded;

constexpr char fieldEnd = '\n'; // no word holds it: a word never matches across two fields

std::vector<std::string> WordsOf(const std::string& text) {
    std::string folded;
    AppendFolded(folded, text);
    std::vector<std::string> words;
    static constexpr const char* blanks = " \t\r\n\v\f";
    for (std::size_t start = folded.find_first_not_of(blanks); start != std::string::npos;) {
        const std::size_t end = std::min(folded.find_first_of(blanks, start), folded.size());
        words.push_back(folded.substr(start, end - start));
        start = folded.find_first_not_of(blanks, end);
    }
    return words;
}

class Matcher {
public:
    explicit Matcher(const std::string& text) : m_words(WordsOf(text)) {}

    bool MatchesAll() const { return m_words.empty(); }
    bool Device(const CBACnetDev& device) { return Matches(device, {}); }
    bool Object(const CBACnetObj& object, unsigned vendor) {
        return Matches(object, TypeName(object.GetId().Type, vendor));
    }

private:
    bool Matches(const CBACnetObj& entry, std::string_view typeName) {
        m_text.clear();
        AppendFolded(m_text, entry.GetName());
        m_text += fieldEnd;
        AppendFolded(m_text, entry.GetDesc());
        m_text += fieldEnd;
        char digits[16];
        const auto number = std::to_chars(digits, digits + sizeof digits, entry.GetInst());
        m_text.append(digits, number.ptr);
        m_text += fieldEnd;
        m_text += typeName;
        return std::all_of(m_words.begin(), m_words.end(),
                           [this](const std::string& word) { return m_text.find(word) != std::string::npos; });
    }

    std::string_view TypeName(BACSTAC_OBJECT_TYPE type, unsigned vendor) {
        const bool standard = type < bacnet::FIRST_PROPRIETARY_TYPE;
        const auto [at, added] = m_typeNames.try_emplace({type, standard ? 0 : vendor});
        if (added) {
            std::string name;
            CBACnetDir::GetObjTypeName(type, name, vendor);
            AppendFolded(at->second, name);
        }
        return at->second;
    }

    std::vector<std::string> m_words;
    std::map<std::pair<BACSTAC_OBJECT_TYPE, unsigned>, std::string> m_typeNames; // folded, by type and vendor
    std::string m_text; // of the entry at hand, folded; keeps its memory
};

} // namespace

void CBACnetDir::Filter(std::string const& text, CBACnetDir& result) const {
    Matcher matcher(text);
    std::map<unsigned, std::shared_ptr<const CBACnetDev>> kept;
    for (const auto& [instance, device] : m_devices) {
        if (matcher.MatchesAll() || matcher.Device(*device)) {
            kept.emplace_hint(kept.end(), instance, device);
            continue;
        }
        std::vector<const CBACnetObj*> objects;
        for (const CBACnetObj& object : device->GetObjects())
            if (matcher.Object(object, device->GetVendorId()))
                objects.push_back(&object);
        if (objects.empty())
            continue;
        if (objects.size() == device->GetObjects().size()) {
            kept.emplace_hint(kept.end(), instance, device);
            continue;
        }
        auto part = std::make_shared<CBACnetDev>();
        static_cast<CBACnetObj&>(*part) = *device;
        part->SetAddr(device->GetAddr());
        part->SetVendorId(device->GetVendorId());
        part->Reserve(objects.size());
        for (const CBACnetObj* object : objects)
            part->AddObj(*object);
        part->SetName(device->GetName()); // the device object's entry may have its own
        part->SetDesc(device->GetDesc());
        kept.emplace_hint(kept.end(), instance, std::move(part));
    }
    result.m_devices = std::move(kept); // last: result may be this directory
}
