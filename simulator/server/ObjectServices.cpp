#include "platform/stack/services/Objects.h"
#include "platform/stack/services/WriteProperty.h"
#include "simulator/model/Creation.h"
#include "simulator/server/Handlers.h"

namespace sim {

// All or nothing (clause 15.3.2): the object exists with all its initial values, or does not exist. Which value is the
// reason is told by its number.
Outcome CreateObject(const ServiceCall& call) {
    bacnet::CreateRequest request;
    if (!bacnet::DecodeCreateObject(call.Parameters, request))
        return Malformed(call.Parameters);
    ObjectConfig object;
    object.Id.Type = request.Specifier.Type;
    PropertyError error = call.Dut.ChooseIdentifier(request.Specifier, object.Id);
    if (!error.Ok())
        return Outcome::Error(error);
    std::uint32_t number = 0;
    bacnet::Reader values(request.Values);
    while (!values.AtEnd()) {
        bacnet::WriteRequest value;
        if (!bacnet::DecodePropertyValue(values, value))
            return Malformed(call.Parameters);
        ++number;
        WriteCommand given;
        given.Property = value.Target.Property;
        given.Index = IndexOf(value.Target);
        given.Value = value.Value;
        error = given.Property == PROP_OBJECT_NAME && call.Dut.IsNameTaken(given.Value)
                    ? PropertyError{CLASS_PROPERTY, CODE_DUPLICATE_NAME}
                    : AddInitialValue(given, object);
        if (!error.Ok())
            return Outcome::Error(error, number);
    }
    error = call.Dut.Create(object);
    if (!error.Ok())
        return Outcome::Error(error);
    bacnet::Writer writer = AnswerWriter(call);
    bacnet::EncodeCreateObjectAck(object.Id, writer);
    return Written(writer, call.Room);
}

Outcome DeleteObject(const ServiceCall& call) {
    BACSTAC_OBJECT_ID id{};
    if (!bacnet::DecodeDeleteObject(call.Parameters, id))
        return Malformed(call.Parameters);
    return Outcome::Of(call.Dut.Delete(id));
}

} // namespace sim
