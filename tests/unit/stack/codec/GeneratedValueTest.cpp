// Values of every row of the type table, made from the table itself: what it says can be encoded is decoded, and
// encoded again to the same octets.
#include "platform/stack/codec/ValueCodec.h"

#include "api/bacnet/PropertyValue.h"
#include "platform/stack/codec/CharacterSet.h"
#include "tests/unit/stack/codec/Hex.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

using namespace bacnet;

namespace {

class Generator {
public:
    Generator(Writer& out, unsigned seed) : m_out(out), m_random(seed) {}

    void Element(const TypeInfo& type, int tag) {
        if (type.Kind == TypeKind::primitive) {
            Primitive(type.Type == TYPE_ANY ? PrimitiveType() : type.Type, tag);
            return;
        }
        if (tag >= 0)
            m_out.Opening(static_cast<unsigned>(tag));
        Body(type);
        if (tag >= 0)
            m_out.Closing(static_cast<unsigned>(tag));
    }

private:
    std::uint32_t Pick(std::uint32_t count) { return static_cast<std::uint32_t>(m_random()) % count; }
    // Small, large and in between.
    std::uint32_t Number() { return static_cast<std::uint32_t>(m_random()) >> Pick(32); }

    BACSTAC_DATA_TYPE PrimitiveType() {
        const BACSTAC_DATA_TYPE types[] = {
            TYPE_NULL,   TYPE_BOOLEAN,    TYPE_UNSIGNED,   TYPE_SIGNED, TYPE_REAL, TYPE_DOUBLE,   TYPE_OCTET_STRING,
            TYPE_STRING, TYPE_BIT_STRING, TYPE_ENUMERATED, TYPE_DATE,   TYPE_TIME, TYPE_OBJECT_ID};
        return types[Pick(std::size(types))];
    }

    void Primitive(BACSTAC_DATA_TYPE type, int tag) {
        std::uint8_t octets[20];
        for (std::uint8_t& octet : octets)
            octet = static_cast<std::uint8_t>(m_random());
        switch (type) {
        case TYPE_NULL:
            return m_out.Null(tag);
        case TYPE_BOOLEAN:
            return m_out.Boolean(Pick(2) != 0, tag);
        case TYPE_UNSIGNED:
            return m_out.Unsigned(Number(), tag);
        case TYPE_SIGNED:
            return m_out.Signed(static_cast<std::int32_t>(Number()) * (Pick(2) != 0 ? 1 : -1), tag);
        case TYPE_REAL:
            return m_out.Real(static_cast<float>(Number()) / 7.0F, tag);
        case TYPE_DOUBLE:
            return m_out.Double(Number() / 7.0, tag);
        case TYPE_OCTET_STRING:
            return m_out.OctetString({octets, Pick(20)}, tag);
        case TYPE_STRING:
        case TYPE_RAW_STRING: {
            octets[0] = CHARSET_LATIN1;
            return m_out.CharacterString(DecodeText({octets, 1 + Pick(19)}), tag);
        }
        case TYPE_BIT_STRING: {
            BACSTAC_BIT_STRING bits{};
            bits.BitCount = Pick(97);
            std::copy_n(octets, sizeof(bits.Bits), bits.Bits);
            return m_out.BitString(bits, tag);
        }
        case TYPE_ENUMERATED:
            return m_out.Enumerated(Number(), tag);
        case TYPE_DATE:
            return m_out.Date({static_cast<std::uint16_t>(1900 + Pick(255)), 0, Pick(15), Pick(36), Pick(8)}, tag);
        case TYPE_TIME:
            return m_out.Time({octets[0], octets[1], octets[2], octets[3]}, tag);
        case TYPE_OBJECT_ID:
            return m_out.ObjectId({Pick(1024), Pick(4194304)}, tag);
        case TYPE_WEEK_N_DAY: {
            const std::uint8_t week[] = {static_cast<std::uint8_t>(1 + Pick(14)),
                                         static_cast<std::uint8_t>(1 + Pick(6)),
                                         static_cast<std::uint8_t>(Pick(2) != 0 ? 255 : 1)};
            return m_out.OctetString(week, tag);
        }
        default:
            ADD_FAILURE() << "no primitive " << type;
        }
    }

    void Body(const TypeInfo& type) {
        switch (type.Kind) {
        case TypeKind::sequence:
            for (const Member& member : type.Members) {
                if (member.Optional == Presence::required || Pick(2) != 0)
                    Write(member);
            }
            break;
        case TypeKind::choice:
            Write(type.Members[Pick(static_cast<std::uint32_t>(type.Members.size()))]);
            break;
        case TypeKind::variant: {
            const std::uint32_t number = Pick(30);
            const TypeInfo* inner = FindType(type.VariantBase + static_cast<BACSTAC_DATA_TYPE>(number));
            if (inner != nullptr) {
                Element(*inner, static_cast<int>(number));
            } else {
                m_out.Opening(number);
                m_out.Unsigned(Number());
                m_out.Real(1.0F, 3);
                m_out.Closing(number);
            }
            break;
        }
        case TypeKind::address: {
            const std::uint8_t mac[] = {1, 2, 3, 4, 5, 6, 7};
            m_out.Unsigned(Pick(65536));
            m_out.OctetString({mac, Pick(8)});
            break;
        }
        case TypeKind::primitive:
            break;
        }
    }

    void Write(const Member& member) {
        const TypeInfo& type = *FindType(member.Type);
        switch (member.Form) {
        case MemberForm::value:
            return Element(type, member.Context);
        case MemberForm::text:
            return Primitive(TYPE_STRING, member.Context);
        case MemberForm::any:
            if (member.Context < 0)
                return Primitive(PrimitiveType(), APPLICATION);
            m_out.Opening(static_cast<unsigned>(member.Context));
            for (std::uint32_t i = Pick(4); i > 0; --i) // of differing types, mostly
                Primitive(PrimitiveType(), APPLICATION);
            m_out.Closing(static_cast<unsigned>(member.Context));
            return;
        case MemberForm::list:
            m_out.Opening(static_cast<unsigned>(member.Context));
            for (std::uint32_t i = Pick(5); i > 0; --i)
                Element(type, APPLICATION);
            m_out.Closing(static_cast<unsigned>(member.Context));
            return;
        }
    }

    Writer& m_out;
    std::mt19937 m_random;
};

} // namespace

TEST(GeneratedValues, OfEveryTypeSurviveDecodingAndEncoding) {
    std::vector<std::uint8_t> encoded(65536);
    std::vector<std::uint8_t> again(65536);
    CPropertyContents contents;
    for (const TypeInfo& type : AllTypes()) {
        if (type.Type == TYPE_RAW_STRING)
            continue; // is never decoded to
        for (unsigned seed = 0; seed < 200; ++seed) {
            Writer out(encoded);
            Generator generator(out, seed);
            // Only a setpoint reference may be nothing at all; it stands alone, and an empty one has its own test.
            const bool alone = type.Type == TYPE_SETPOINT_REF;
            const std::uint32_t count = alone ? 1 : 1 + seed % 4;
            for (std::uint32_t i = 0; i < count; ++i)
                generator.Element(type, APPLICATION);
            ASSERT_FALSE(out.Overflow());
            if (alone && out.Size() == 0)
                continue;
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
