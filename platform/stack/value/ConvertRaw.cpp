#include "api/bacnet/BacGeneral.h"
#include "platform/stack/codec/CharacterSet.h"
#include "platform/stack/codec/Elements.h"
#include "platform/stack/codec/ValueCodec.h"

#include <vector>

using namespace bacnet;

namespace {

void Undecoded(BACSTAC_PROPERTY_CONTENTS& contents) {
    contents.DataType = TYPE_NONE;
    contents.ElementCount = 0;
}

// Raw strings, one behind the other, into texts in their place.
bool ConvertStrings(BACSTAC_PROPERTY_CONTENTS& contents) {
    std::string texts;
    const bool whole = ForEachElement(BufferView::Of(contents), *FindType(TYPE_RAW_STRING), 0, contents.ElementCount,
                                      [&](const std::uint8_t* element) {
                                          const auto size = LoadAs<std::uint32_t>(element);
                                          texts += DecodeText({element + sizeof(size), size});
                                          texts += '\0';
                                          return texts.size() <= contents.BufferSize;
                                      });
    if (!whole) {
        Undecoded(contents);
        return false;
    }
    std::memcpy(contents.Buffer, texts.data(), texts.size());
    contents.DataType = TYPE_STRING;
    return true;
}

} // namespace

bool ConvertRaw(BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property) {
    if (contents.DataType == TYPE_RAW_STRING)
        return ConvertStrings(contents);
    if (contents.DataType != TYPE_RAW)
        return contents.DataType >= 0;
    if (contents.ElementCount > contents.BufferSize) {
        Undecoded(contents);
        return false;
    }
    const auto* octets = static_cast<const std::uint8_t*>(contents.Buffer);
    const std::vector<std::uint8_t> encoded(octets, octets + contents.ElementCount);
    return DecodeProperty(encoded, objectType, property, BACSTAC_NO_INDEX, contents) == DecodeResult::ok;
}
