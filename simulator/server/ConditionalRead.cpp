#include "platform/stack/services/ReadPropertyMultiple.h"
#include "simulator/model/Grammar.h"
#include "simulator/server/Handlers.h"
#include "simulator/server/Quirks.h"

#include <algorithm>
#include <compare>

namespace sim {

namespace {

using Octets = std::span<const std::uint8_t>;

// Context tags of ReadPropertyConditional-Request.
constexpr unsigned CRITERIA_TAG = 0;
constexpr unsigned REFERENCES_TAG = 1;
constexpr int LOGIC_TAG = 0;
constexpr unsigned CRITERION_LIST_TAG = 1;
constexpr int PROPERTY_TAG = 0;
constexpr int INDEX_TAG = 1;
constexpr int RELATION_TAG = 2;
constexpr unsigned VALUE_TAG = 3;

enum Logic : std::uint32_t { AND, OR, ALL };
enum Relation : std::uint32_t { EQUAL, NOT_EQUAL, LESS, GREATER, LESS_OR_EQUAL, GREATER_OR_EQUAL };

struct Criterion {
    BACSTAC_PROPERTY_ID Property = 0;
    std::uint32_t Index = WHOLE;
    std::uint32_t Compare = EQUAL;
    Octets Wanted;
};

struct Request {
    std::uint32_t Selection = ALL;
    std::vector<Criterion> Criteria;
    std::vector<bacnet::PropertyTarget> References;
};

bool TakeReference(bacnet::Reader& in, BACSTAC_PROPERTY_ID& property, std::uint32_t& index) {
    index = WHOLE;
    if (!in.Enumerated(property, PROPERTY_TAG))
        return false;
    return !in.IsContext(INDEX_TAG) || in.Unsigned(index, INDEX_TAG);
}

bool Decode(Octets parameters, Request& request) {
    bacnet::Reader in(parameters);
    if (!in.Open(CRITERIA_TAG) || !in.Enumerated(request.Selection, LOGIC_TAG))
        return false;
    if (in.IsOpening(CRITERION_LIST_TAG)) {
        in.Open(CRITERION_LIST_TAG);
        while (in.Ok() && !in.IsClosing(CRITERION_LIST_TAG)) {
            Criterion& criterion = request.Criteria.emplace_back();
            if (!TakeReference(in, criterion.Property, criterion.Index) ||
                !in.Enumerated(criterion.Compare, RELATION_TAG) || !in.Enclosed(VALUE_TAG, criterion.Wanted))
                return false;
        }
        in.Close(CRITERION_LIST_TAG);
    }
    if (!in.Close(CRITERIA_TAG))
        return false;
    if (in.IsOpening(REFERENCES_TAG)) {
        in.Open(REFERENCES_TAG);
        while (in.Ok() && !in.IsClosing(REFERENCES_TAG)) {
            bacnet::PropertyTarget& reference = request.References.emplace_back();
            std::uint32_t index = WHOLE;
            if (!TakeReference(in, reference.Property, index) || (index != WHOLE && index > INT32_MAX))
                return false;
            reference.ArrayIndex = index == WHOLE ? BACSTAC_NO_INDEX : static_cast<std::int32_t>(index);
        }
        in.Close(REFERENCES_TAG);
    }
    return in.Ok() && in.AtEnd();
}

std::partial_ordering Order(Octets present, Octets wanted) {
    const auto a = NumberIn(present);
    const auto b = NumberIn(wanted);
    if (a && b)
        return *a <=> *b;
    return std::lexicographical_compare_three_way(present.begin(), present.end(), wanted.begin(), wanted.end());
}

// An object without the property does not meet a criterion about it.
bool Meets(const Object& object, const Criterion& criterion, Scratch& scratch) {
    bacnet::Writer writer(scratch.Items);
    if (!object.Read(criterion.Property, criterion.Index, writer).Ok() || writer.Overflow())
        return false;
    const std::partial_ordering order = Order(writer.Written(), criterion.Wanted);
    switch (criterion.Compare) {
    case EQUAL:
        return order == 0;
    case NOT_EQUAL:
        return order != 0;
    case LESS:
        return order < 0;
    case GREATER:
        return order > 0;
    case LESS_OR_EQUAL:
        return order <= 0;
    default:
        return order >= 0;
    }
}

bool IsSelected(const Object& object, const Request& request, Scratch& scratch) {
    const auto meets = [&](const Criterion& criterion) { return Meets(object, criterion, scratch); };
    const auto& criteria = request.Criteria;
    if (request.Selection == ALL)
        return true;
    return request.Selection == AND ? std::all_of(criteria.begin(), criteria.end(), meets)
                                    : std::any_of(criteria.begin(), criteria.end(), meets);
}

} // namespace

// Clause 15.6 of the 2004 standard: the answer has the form of a ReadPropertyMultiple's; without references it names
// the objects alone.
Outcome ReadPropertyConditional(const ServiceCall& call) {
    Request request;
    if (!Decode(call.Parameters, request))
        return Malformed(call.Parameters);
    const auto unknown = [](const Criterion& criterion) { return criterion.Compare > GREATER_OR_EQUAL; };
    if (request.Selection > ALL || std::any_of(request.Criteria.begin(), request.Criteria.end(), unknown))
        return Outcome::Reject(REJECT_UNDEFINED_ENUMERATION);
    bacnet::Writer writer = AnswerWriter(call);
    bacnet::RpmAckWriter ack(writer);
    for (const BACSTAC_OBJECT_ID& id : call.Dut.Objects()) {
        const Object& object = *call.Dut.Find(id);
        if (!IsSelected(object, request, call.Memory))
            continue;
        if (request.References.empty())
            writer.ObjectId(id, 0);
        for (bacnet::PropertyTarget reference : request.References) {
            reference.Object = id;
            ack.BeginValue(reference);
            const PropertyError error = ReadOf(call.Dut, object, reference, writer);
            if (error.Ok())
                ack.EndValue();
            else
                ack.ErrorInstead(error.Class, error.Code);
        }
    }
    if (!request.References.empty())
        ack.Finish();
    return Written(writer, call.Room);
}

} // namespace sim
