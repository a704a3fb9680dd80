#include "simulator/server/Services.h"

#include "platform/stack/network/Apdu.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/services/ReadPropertyMultiple.h"
#include "simulator/server/RangeAnswer.h"

#include <algorithm>

namespace sim {

using bacnet::ConfirmedService;
using bacnet::PropertyTarget;

std::uint32_t IndexOf(const PropertyTarget& target) {
    return target.ArrayIndex < 0 ? WHOLE : static_cast<std::uint32_t>(target.ArrayIndex);
}

Outcome Malformed(std::span<const std::uint8_t> parameters) {
    return Outcome::Reject(parameters.empty() ? REJECT_MISSING_REQUIRED_PARAMETER : REJECT_INVALID_TAG);
}

Outcome TooLong(const AnswerRoom& room) {
    return Outcome::Abort(room.Segmentation ? bacnet::ABORT_BUFFER_OVERFLOW : bacnet::ABORT_SEGMENTATION_NOT_SUPPORTED);
}

bacnet::Writer AnswerWriter(const AnswerRoom& room, Scratch& scratch) {
    return bacnet::Writer(std::span(scratch.Answer).first(std::min(room.Octets, scratch.Answer.size())));
}

Outcome Written(const bacnet::Writer& writer, const AnswerRoom& room) {
    return writer.Overflow() ? TooLong(room) : Outcome::Ack(writer.Written());
}

namespace {

Outcome ReadProperty(const Device& device, std::span<const std::uint8_t> parameters, const AnswerRoom& room,
                     Scratch& scratch) {
    PropertyTarget target;
    if (!bacnet::DecodeReadProperty(parameters, target))
        return Malformed(parameters);
    const Object* object = device.Find(target.Object);
    if (object == nullptr)
        return Outcome::Error(UNKNOWN_OBJECT);
    target.Object = object->Id();
    bacnet::Writer writer = AnswerWriter(room, scratch);
    bacnet::BeginReadPropertyAck(target, writer);
    const PropertyError error = object->Read(target.Property, IndexOf(target), writer);
    if (!error.Ok())
        return Outcome::Error(error);
    bacnet::EndReadPropertyAck(writer);
    return Written(writer, room);
}

// Writes the answers to the references of a multiple read, one by one.
class MultipleAnswer {
public:
    MultipleAnswer(const Device& device, bacnet::Writer& writer) : m_device(device), m_writer(writer), m_ack(writer) {}

    void Answer(PropertyTarget target) {
        const Object* object = m_device.Find(target.Object);
        if (object == nullptr) {
            m_ack.Error(target, UNKNOWN_OBJECT.Class, UNKNOWN_OBJECT.Code);
            return;
        }
        target.Object = object->Id();
        if (target.Property == PROP_ALL || target.Property == PROP_REQUIRED || target.Property == PROP_OPTIONAL)
            AnswerGroup(*object, target);
        else
            AnswerOne(*object, target);
    }

    void Finish() { m_ack.Finish(); }

private:
    void AnswerOne(const Object& object, const PropertyTarget& target) {
        m_ack.BeginValue(target);
        const PropertyError error = object.Read(target.Property, IndexOf(target), m_writer);
        if (error.Ok())
            m_ack.EndValue();
        else
            m_ack.ErrorInstead(error.Class, error.Code);
    }

    // Clause 15.7.3.1: Property_List is in none of the groups.
    void AnswerGroup(const Object& object, PropertyTarget target) {
        const BACSTAC_PROPERTY_ID group = target.Property;
        for (const BACSTAC_PROPERTY_ID property : object.Properties()) {
            if (group != PROP_ALL && IsRequired(object, property) != (group == PROP_REQUIRED))
                continue;
            target.Property = property;
            AnswerOne(object, target);
        }
    }

    static bool IsRequired(const Object& object, BACSTAC_PROPERTY_ID property) {
        const bacnet::PropertyInfo* info = bacnet::FindProperty(object.Id().Type, property);
        return info != nullptr && info->Required;
    }

    const Device& m_device;
    bacnet::Writer& m_writer;
    bacnet::RpmAckWriter m_ack;
};

Outcome ReadPropertyMultiple(const Device& device, std::span<const std::uint8_t> parameters, const AnswerRoom& room,
                             Scratch& scratch) {
    bacnet::RpmRequestReader request(parameters);
    bacnet::Writer writer = AnswerWriter(room, scratch);
    MultipleAnswer answer(device, writer);
    PropertyTarget target;
    bool any = false;
    // The whole request is looked at even when the answer is too long already: a malformed one is rejected.
    while (request.Next(target)) {
        any = true;
        if (!writer.Overflow())
            answer.Answer(target);
    }
    if (!request.Ok())
        return Malformed(parameters);
    if (!any)
        return Outcome::Reject(REJECT_MISSING_REQUIRED_PARAMETER);
    answer.Finish();
    return Written(writer, room);
}

} // namespace

Outcome Serve(const Device& device, ConfirmedService service, std::span<const std::uint8_t> parameters,
              const AnswerRoom& room, Scratch& scratch) {
    if (device.Offers(service)) {
        if (service == ConfirmedService::readProperty)
            return ReadProperty(device, parameters, room, scratch);
        if (service == ConfirmedService::readPropertyMultiple)
            return ReadPropertyMultiple(device, parameters, room, scratch);
        if (service == ConfirmedService::readRange)
            return AnswerReadRange(device, parameters, room, scratch);
    }
    return Outcome::Reject(bacnet::REJECT_UNRECOGNIZED_SERVICE);
}

} // namespace sim
