#include "tests/gui/editors/RandomValue.h"

#include "module/editors/NumberChecks.h"
#include "module/editors/OctetText.h"
#include "platform/stack/codec/ValueCodec.h"
#include "platform/stack/schema/TypeTable.h"
#include "tests/support/GeneratedValue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

namespace {

using namespace bacnet;

constexpr BACSTAC_DATA_TYPE PRIMITIVES[] = {TYPE_BOOLEAN, TYPE_UNSIGNED,   TYPE_REAL, TYPE_STRING,
                                            TYPE_DATE,    TYPE_ENUMERATED, TYPE_TIME, TYPE_BIT_STRING};

// What a device might send.
void Generate(CPropertyValue& value, unsigned seed) {
    BACSTAC_DATA_TYPE type = value.GetDataType();
    if (type == TYPE_ANY_PRIMITIVE)
        type = PRIMITIVES[seed % std::size(PRIMITIVES)];
    std::vector<std::uint8_t> encoded(65536);
    Writer out(encoded);
    testing_support::ValueGenerator(out, seed).Element(*FindType(type));
    if (out.Size() == 0) // a reference that is absent
        return;
    CPropertyContents contents;
    EXPECT_EQ(DecodeRecords(out.Written(), type, contents), DecodeResult::ok);
    EXPECT_TRUE(value.ReadFrom(contents));
}

// Of the record alone: its parts are values of their own.
void Scramble(CPropertyValue& value, std::mt19937& random) {
    const auto octet = [&] { return static_cast<unsigned char>(random()); };
    if (auto* const text = dynamic_cast<CPVString*>(&value)) {
        text->Value.resize(random() % 300);
        std::ranges::generate(text->Value, [&] { return static_cast<char>(octet() | 1); });
    } else if (auto* const octets = dynamic_cast<CPVOctetString*>(&value)) {
        octets->Value.resize(random() % 300);
        std::ranges::generate(octets->Value, octet);
    } else if (auto* const record = static_cast<unsigned char*>(value.GetDataPtr())) {
        // Words of small numbers among them, so that some choices are those that there are.
        constexpr unsigned WORD = 4;
        for (unsigned at = 0; at < static_cast<CPVElement&>(value).ElementSize(); ++at) {
            const bool isSmall = at % WORD == 0 ? random() % 2 == 0 : record[at - 1] == 0;
            record[at] = !isSmall ? octet() : at % WORD == 0 ? static_cast<unsigned char>(random() % 16) : 0;
        }
    }
}

double Confirmed(double value, RealSize size) {
    return *CheckReal(FormatReal(value, size), size, value).value;
}

} // namespace

ValuePtr NewValue(BACSTAC_DATA_TYPE type) {
    return ValuePtr(CPropertyValue::CreateValue(OBJ_NO_TYPE, PROP_NO_PROPERTY, type, 1));
}

ValuePtr RandomValue(BACSTAC_DATA_TYPE type, unsigned seed) {
    ValuePtr value = NewValue(type);
    std::mt19937 random(seed);
    if (seed % 2 == 0)
        Generate(*value, seed / 2);
    else
        Scramble(*value, random);
    // The one number that an editor insists on.
    if (auto* const event = dynamic_cast<CPVSpecialEvent*>(value.get()))
        event->Value.Priority = 1 + event->Value.Priority % 16;
    return value;
}

void PrintTo(const ValueBytes& bytes, std::ostream* to) {
    *to << FormatOctets(bytes.record) << ' ' << bytes.text;
}

ValueBytes BytesOf(CPropertyValue& value) {
    ValueBytes bytes;
    if (const auto* const text = dynamic_cast<CPVString*>(&value)) {
        bytes.record.assign(text->Value.begin(), text->Value.end());
    } else if (const auto* const octets = dynamic_cast<CPVOctetString*>(&value)) {
        bytes.record = octets->Value;
    } else if (const auto* const any = dynamic_cast<CPVAnyPrimitive*>(&value)) {
        if (any->GetValue())
            return BytesOf(*any->GetValue());
    } else if (const auto* const record = static_cast<unsigned char*>(value.GetDataPtr())) {
        bytes.record.assign(record, record + static_cast<CPVElement&>(value).ElementSize());
    }
    bytes.text = value.ToText(BACSTAC_NO_INDEX);
    return bytes;
}

ValueBytes Untouched(const CPropertyValue& value) {
    const ValuePtr after(value.Clone());
    if (auto* const real = dynamic_cast<CPVReal*>(after.get()))
        real->Value = Narrowed(Confirmed(real->Value, RealSize::Single), real->Value);
    if (auto* const real = dynamic_cast<CPVDouble*>(after.get()))
        real->Value = Confirmed(real->Value, RealSize::Double);
    if (auto* const cov = dynamic_cast<CPVClientCOV*>(after.get()); cov && cov->Value.Choice == TYPE_REAL)
        cov->Value.Value = Narrowed(Confirmed(cov->Value.Value, RealSize::Single), cov->Value.Value);
    return BytesOf(*after);
}
