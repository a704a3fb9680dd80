#include "simulator/model/Grammar.h"

#include "platform/stack/codec/CharacterSet.h"
#include "platform/stack/codec/Reader.h"
#include "platform/stack/schema/TypeTable.h"

namespace sim {

namespace {

using bacnet::APPLICATION;
using bacnet::DecodeError;
using bacnet::Member;
using bacnet::MemberForm;
using bacnet::Presence;
using bacnet::Reader;
using bacnet::TagKind;
using bacnet::TypeInfo;
using bacnet::TypeKind;

constexpr std::size_t WEEK_N_DAY_OCTETS = 3;

bool OneElement(Reader& in, const TypeInfo& type, int tag);

template <typename T>
bool Passes(Reader& in, bool (Reader::*read)(T&, int), int tag) {
    T ignored{};
    return (in.*read)(ignored, tag);
}

bool OnePrimitive(Reader& in, BACSTAC_DATA_TYPE type, int tag) {
    switch (type) {
    case TYPE_NULL:
        return in.Null(tag);
    case TYPE_BOOLEAN:
        return Passes(in, &Reader::Boolean, tag);
    case TYPE_UNSIGNED:
        return Passes(in, &Reader::Unsigned64, tag);
    case TYPE_SIGNED:
        return Passes(in, &Reader::Signed, tag);
    case TYPE_REAL:
        return Passes(in, &Reader::Real, tag);
    case TYPE_DOUBLE:
        return Passes(in, &Reader::Double, tag);
    case TYPE_OCTET_STRING:
        return Passes(in, &Reader::OctetString, tag);
    case TYPE_RAW_STRING:
    case TYPE_STRING:
        return Passes(in, &Reader::CharacterString, tag);
    case TYPE_BIT_STRING:
        return Passes(in, &Reader::BitString, tag);
    case TYPE_ENUMERATED:
        return Passes(in, &Reader::Enumerated, tag);
    case TYPE_DATE:
        return Passes(in, &Reader::Date, tag);
    case TYPE_TIME:
        return Passes(in, &Reader::Time, tag);
    case TYPE_OBJECT_ID:
        return Passes(in, &Reader::ObjectId, tag);
    case TYPE_WEEK_N_DAY: {
        std::span<const std::uint8_t> octets;
        return in.OctetString(octets, tag) && (octets.size() == WEEK_N_DAY_OCTETS || in.Fail(DecodeError::badLength));
    }
    default: // a value of any type
        return in.Skip();
    }
}

bool IsNext(const Reader& in, const Member& member) {
    bacnet::Tag tag;
    if (!in.PeekTag(tag))
        return false;
    if (member.Context < 0)
        return tag.Kind == TagKind::application &&
               (member.Type == TYPE_ANY || tag.Number == bacnet::FindType(member.Type)->Tag);
    const bool enclosed = member.Form == MemberForm::list || member.Form == MemberForm::any ||
                          (member.Form == MemberForm::value && !bacnet::IsPrimitiveType(member.Type));
    return tag.Number == member.Context && tag.Kind == (enclosed ? TagKind::opening : TagKind::context);
}

// Elements without a pair of tags around them, up to the end of what they are a part of.
bool UpToTheEnd(Reader& in, const TypeInfo& type) {
    bacnet::Tag tag;
    while (in.PeekTag(tag) && tag.Kind != TagKind::closing)
        if (!OneElement(in, type, APPLICATION))
            return false;
    return in.Ok();
}

bool OneMember(Reader& in, const Member& member) {
    if (member.Optional != Presence::required && !IsNext(in, member))
        return in.Ok();
    std::span<const std::uint8_t> ignored;
    const TypeInfo& type = *bacnet::FindType(member.Type);
    switch (member.Form) {
    case MemberForm::value:
        return OneElement(in, type, member.Context);
    case MemberForm::values:
        while (IsNext(in, member))
            if (!in.Skip())
                return false;
        return in.Ok();
    case MemberForm::string:
        return OnePrimitive(in, member.Type, member.Context);
    case MemberForm::any:
        return member.Context < 0 ? in.Skip() : in.Enclosed(static_cast<unsigned>(member.Context), ignored);
    case MemberForm::list:
        if (member.Context < 0)
            return UpToTheEnd(in, type);
        return in.Enclosed(static_cast<unsigned>(member.Context), ignored) &&
               (SplitElements(ignored, member.Type) || in.Fail(DecodeError::unexpected));
    }
    return false;
}

bool OneAlternative(Reader& in, const TypeInfo& choice) {
    for (const Member& member : choice.Members)
        if (IsNext(in, member))
            return OneMember(in, member);
    bacnet::Tag tag;
    if (choice.OpenType == TYPE_NONE || !in.PeekTag(tag) || tag.Kind != TagKind::context)
        return in.Fail(DecodeError::unexpected);
    return OnePrimitive(in, choice.OpenType, tag.Number);
}

bool OneVariant(Reader& in, const TypeInfo& type) {
    bacnet::Tag tag;
    if (!in.PeekTag(tag))
        return in.Fail(DecodeError::truncated);
    if (tag.Kind == TagKind::context)
        return in.Null(tag.Number);
    if (tag.Kind != TagKind::opening)
        return in.Fail(DecodeError::unexpected);
    const TypeInfo* inner = bacnet::FindAlternative(type, tag.Number);
    return inner == nullptr ? in.Skip() : OneElement(in, *inner, tag.Number);
}

bool Body(Reader& in, const TypeInfo& type) {
    switch (type.Kind) {
    case TypeKind::sequence:
        for (const Member& member : type.Members)
            if (!OneMember(in, member))
                return false;
        return true;
    case TypeKind::choice:
        return OneAlternative(in, type);
    case TypeKind::variant:
        return OneVariant(in, type);
    case TypeKind::address:
        return OnePrimitive(in, TYPE_UNSIGNED, APPLICATION) && OnePrimitive(in, TYPE_OCTET_STRING, APPLICATION);
    case TypeKind::primitive:
        break;
    }
    return in.Fail(DecodeError::unexpected);
}

// A value with its own tags (APPLICATION), or within that context tag.
bool OneElement(Reader& in, const TypeInfo& type, int tag) {
    if (type.Kind == TypeKind::primitive)
        return OnePrimitive(in, type.Type, tag);
    if (tag < 0)
        return Body(in, type);
    const auto number = static_cast<unsigned>(tag);
    return in.Open(number) && Body(in, type) && in.Close(number);
}

bool OneOfType(Reader& in, BACSTAC_DATA_TYPE type) {
    const TypeInfo* info = bacnet::FindType(type);
    return info == nullptr ? in.Skip() : OneElement(in, *info, APPLICATION);
}

} // namespace

std::optional<WireElements> SplitElements(std::span<const std::uint8_t> octets, BACSTAC_DATA_TYPE type) {
    Reader in(octets);
    WireElements elements;
    while (!in.AtEnd()) {
        const std::size_t from = in.Offset();
        if (!OneOfType(in, type) || in.Offset() == from)
            return std::nullopt;
        elements.push_back(octets.subspan(from, in.Offset() - from));
    }
    return elements;
}

bool IsOneOf(std::span<const std::uint8_t> octets, BACSTAC_DATA_TYPE type) {
    Reader in(octets);
    if (type != TYPE_NONE)
        return OneOfType(in, type) && in.AtEnd();
    while (!in.AtEnd())
        if (!in.Skip())
            return false;
    return !octets.empty();
}

int PrimitiveTagOf(std::span<const std::uint8_t> octets) {
    Reader in(octets);
    bacnet::Tag tag;
    const bool primitive = in.PeekTag(tag) && tag.Kind == TagKind::application && in.Skip() && in.AtEnd();
    return primitive ? tag.Number : -1;
}

std::string TextIn(std::span<const std::uint8_t> octets) {
    Reader in(octets);
    std::span<const std::uint8_t> text;
    return in.CharacterString(text) ? bacnet::DecodeText(text) : std::string();
}

std::optional<double> NumberIn(std::span<const std::uint8_t> octets) {
    bacnet::Reader in(octets);
    float real = 0;
    double wide = 0;
    std::uint32_t natural = 0;
    std::int32_t whole = 0;
    switch (PrimitiveTagOf(octets)) {
    case bacnet::TAG_REAL:
        return in.Real(real) ? std::optional<double>(real) : std::nullopt;
    case bacnet::TAG_DOUBLE:
        return in.Double(wide) ? std::optional(wide) : std::nullopt;
    case bacnet::TAG_UNSIGNED:
        return in.Unsigned(natural) ? std::optional<double>(natural) : std::nullopt;
    case bacnet::TAG_ENUMERATED:
        return in.Enumerated(natural) ? std::optional<double>(natural) : std::nullopt;
    case bacnet::TAG_SIGNED:
        return in.Signed(whole) ? std::optional<double>(whole) : std::nullopt;
    default:
        return std::nullopt;
    }
}

} // namespace sim
