#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/services/ReadPropertyMultiple.h"
#include "simulator/server/Handlers.h"
#include "simulator/server/Quirks.h"

namespace sim {

using bacnet::PropertyTarget;

namespace {

// Writes the answers to the references of a multiple read, one by one.
class MultipleAnswer {
public:
    MultipleAnswer(Device& device, bacnet::Writer& writer) : m_device(device), m_writer(writer), m_ack(writer) {}

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
        const PropertyError error = ReadOf(m_device, object, target, m_writer);
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

    Device& m_device;
    bacnet::Writer& m_writer;
    bacnet::RpmAckWriter m_ack;
};

} // namespace

Outcome ReadProperty(const ServiceCall& call) {
    PropertyTarget target;
    if (!bacnet::DecodeReadProperty(call.Parameters, target))
        return Malformed(call.Parameters);
    const Object* object = call.Dut.Find(target.Object);
    if (object == nullptr)
        return Outcome::Error(UNKNOWN_OBJECT);
    target.Object = object->Id();
    bacnet::Writer writer = AnswerWriter(call);
    bacnet::BeginReadPropertyAck(target, writer);
    const PropertyError error = ReadOf(call.Dut, *object, target, writer);
    if (!error.Ok())
        return Outcome::Error(error);
    bacnet::EndReadPropertyAck(writer);
    return Written(writer, call.Room);
}

Outcome ReadPropertyMultiple(const ServiceCall& call) {
    bacnet::RpmRequestReader request(call.Parameters);
    bacnet::Writer writer = AnswerWriter(call);
    MultipleAnswer answer(call.Dut, writer);
    PropertyTarget target;
    bool any = false;
    // The whole request is looked at even when the answer is too long already: a malformed one is rejected.
    while (request.Next(target)) {
        any = true;
        if (!writer.Overflow())
            answer.Answer(target);
    }
    if (!request.Ok())
        return Malformed(call.Parameters);
    if (!any)
        return Outcome::Reject(REJECT_MISSING_REQUIRED_PARAMETER);
    answer.Finish();
    return Written(writer, call.Room);
}

} // namespace sim
