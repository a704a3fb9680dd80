// Values of every row of the type table, made from the table itself: what it says can be encoded is decoded, and
// encoded again to the same octets.
#include "platform/stack/codec/ValueCodec.h"

#include "api/bacnet/PropertyValue.h"
#include "tests/support/GeneratedValue.h"
#include "tests/unit/stack/codec/GoldenValues.h"
#include "tests/unit/stack/codec/Hex.h"

#include <gtest/gtest.h>

#include <vector>

using namespace bacnet;

TEST(GeneratedValues, OfEveryTypeSurviveDecodingAndEncoding) {
    std::vector<std::uint8_t> encoded(65536);
    std::vector<std::uint8_t> again(65536);
    CPropertyContents contents;
    for (const TypeInfo& type : AllTypes()) {
        if (type.Type == TYPE_RAW_STRING)
            continue; // is never decoded to
        for (unsigned seed = 0; seed < 200; ++seed) {
            Writer out(encoded);
            testing_support::ValueGenerator generator(out, seed);
            const bool alone = StandsAlone(type.Type);
            const std::uint32_t count = alone ? 1 : 1 + seed % 4;
            for (std::uint32_t i = 0; i < count; ++i)
                generator.Element(type, APPLICATION);
            ASSERT_FALSE(out.Overflow());
            if (alone && out.Size() == 0)
                continue; // has its own test
            DecodeFault fault;
            ASSERT_EQ(DecodeRecords(out.Written(), type.Type, contents, &fault), DecodeResult::ok)
                << type.Name << " " << seed << ": " << DecodeErrorText(fault.Error) << " at " << fault.Offset << " of "
                << ToHex(encoded.data(), out.Size());
            EXPECT_EQ(contents.ElementCount, count) << type.Name << " " << seed;
            Writer back(again);
            ASSERT_TRUE(EncodeContents(back, contents)) << type.Name << " " << seed;
            ASSERT_EQ(ToHex(again.data(), back.Size()), ToHex(encoded.data(), out.Size())) << type.Name << " " << seed;
        }
    }
}
