// Octets of a value: decoded by a row of the type table and as a property, encoded again, made a typed value, printed.
// The first octet picks the type, the next three the object type and property, the fifth the size of the buffer.

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/PropertyValue.h"
#include "platform/stack/codec/CharacterSet.h"
#include "platform/stack/codec/ValueCodec.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

using namespace bacnet;

namespace {

constexpr std::size_t HEADER = 5;

void Require(bool condition) {
    if (!condition)
        std::abort();
}

std::vector<std::uint8_t> Encoded(const BACSTAC_PROPERTY_CONTENTS& contents) {
    std::vector<std::uint8_t> octets(65536);
    Writer writer(octets);
    Require(EncodeContents(writer, contents));
    octets.resize(writer.Overflow() ? 0 : writer.Size());
    return octets;
}

void Print(const BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property) {
    for (const unsigned size : {1U, 7U, 101U, 4096U}) {
        std::string text(size, '#');
        const int length = CBacGeneral::PrintContents(text.data(), size, contents, objectType, property, -1);
        Require(length >= 0 && static_cast<unsigned>(length) < size && text[static_cast<std::size_t>(length)] == '\0');
        Require(IsUtf8(std::string_view(text.data(), static_cast<std::size_t>(length))));
    }
}

// What was decoded is encoded, and what that decodes to is the same.
void CodeAgain(const BACSTAC_PROPERTY_CONTENTS& contents) {
    const auto once = Encoded(contents);
    if (once.empty() || contents.DataType < 0)
        return;
    CPropertyContents again;
    Require(DecodeRecords(once, contents.DataType, again) == DecodeResult::ok);
    Require(again.ElementCount == contents.ElementCount);
    Require(Encoded(again) == once);
}

void MakeValue(const BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_OBJECT_TYPE objectType,
               BACSTAC_PROPERTY_ID property) {
    const std::unique_ptr<CPropertyValue> value(
        CPropertyValue::CreateValue(objectType, property, contents.DataType, contents.ElementCount == 1 ? 1 : 0));
    if (value == nullptr || !value->ReadFrom(contents))
        return;
    CPropertyContents written(value->GetDataSize());
    Require(value->WriteTo(written));
    Require(Encoded(written) == Encoded(contents));
    const std::unique_ptr<CPropertyValue> clone(value->Clone());
    Require(clone->ToText(-1) == value->ToText(-1));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < HEADER)
        return 0;
    const std::span<const std::uint8_t> octets(data + HEADER, size - HEADER);
    const auto types = AllTypes();
    const BACSTAC_DATA_TYPE type = types[data[0] % types.size()].Type;
    const BACSTAC_OBJECT_TYPE objectType = data[1];
    const BACSTAC_PROPERTY_ID property = static_cast<BACSTAC_PROPERTY_ID>(data[2] << 8 | data[3]);
    CPropertyContents contents(8U << data[4] % 12);

    const bool decodable = type != TYPE_RAW_STRING;
    if (decodable && DecodeRecords(octets, type, contents) == DecodeResult::ok) {
        CodeAgain(contents);
        Print(contents, objectType, property);
        MakeValue(contents, objectType, property);
    }
    for (const int index : {-1, 0, 1}) {
        const DecodeResult result = DecodeProperty(octets, objectType, property, index, contents);
        Require((result == DecodeResult::raw) == (contents.DataType == TYPE_RAW));
        if (result != DecodeResult::ok && result != DecodeResult::raw)
            continue;
        Encoded(contents);
        if (!ConvertRaw(contents, objectType, property))
            continue;
        Print(contents, objectType, property);
        MakeValue(contents, objectType, property);
    }
    return 0;
}
