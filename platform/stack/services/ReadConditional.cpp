#include "platform/stack/services/ReadConditional.h"

#include "platform/stack/codec/ValueCodec.h"

namespace bacnet {

namespace {

// Of an answer.
constexpr unsigned objectTag = 0;
constexpr unsigned resultsTag = 1;

// Context tags.
constexpr unsigned criteriaTag = 0;
constexpr int logicTag = 0;
constexpr unsigned listTag = 1;
constexpr int propertyTag = 0;
constexpr int indexTag = 1;
constexpr int relationTag = 2;
constexpr unsigned valueTag = 3;
constexpr unsigned referencesTag = 1;

void PutReference(const BACSTAC_PROPERTY_REF& reference, Writer& writer) {
    writer.Enumerated(reference.Property, propertyTag);
    if (reference.ArrayIndex != static_cast<std::uint32_t>(BACSTAC_NO_INDEX))
        writer.Unsigned(reference.ArrayIndex, indexTag);
}

} // namespace

bool EncodeReadConditional(const BACSTAC_READ_CON_INFO& info, Writer& writer) {
    writer.Opening(criteriaTag);
    writer.Enumerated(info.SelectionLogic, logicTag);
    if (info.CriterionCount != 0) {
        writer.Opening(listTag);
        for (std::uint32_t i = 0; i < info.CriterionCount; ++i) {
            const BACSTAC_SELECTION_CRITERION& criterion = info.Criteria[i];
            PutReference(criterion.Property, writer);
            writer.Enumerated(criterion.Relation, relationTag);
            writer.Opening(valueTag);
            if (!EncodeContents(writer, criterion.Value))
                return false;
            writer.Closing(valueTag);
        }
        writer.Closing(listTag);
    }
    writer.Closing(criteriaTag);
    if (info.PropertyCount != 0) {
        writer.Opening(referencesTag);
        for (std::uint32_t i = 0; i < info.PropertyCount; ++i)
            PutReference(info.Properties[i], writer);
        writer.Closing(referencesTag);
    }
    return true;
}

bool NextSelectedObject(Reader& reader, BACSTAC_OBJECT_ID& object, std::span<const std::uint8_t>& octets) {
    if (!reader.Ok() || reader.AtEnd())
        return false;
    Reader id = reader;
    if (!id.ObjectId(object, objectTag))
        return reader.ObjectId(object, objectTag); // the same fault
    std::span<const std::uint8_t> results;
    octets = {};
    reader.Skip(&octets);
    if (!reader.IsOpening(resultsTag))
        octets = {};
    else if (reader.Skip(&results))
        octets = {octets.data(), octets.size() + results.size()};
    return reader.Ok();
}

} // namespace bacnet
