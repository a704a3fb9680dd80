#include "platform/stack/codec/Reader.h"
#include "platform/stack/services/WriteProperty.h"
#include "simulator/server/Handlers.h"

namespace sim {

namespace {

constexpr unsigned LIST_TAG = 3; // of AddListElement-Request and RemoveListElement-Request

// False for a priority that does not exist.
bool ToCommand(const bacnet::WriteRequest& request, WriteCommand& command) {
    command.Property = request.Target.Property;
    command.Index = IndexOf(request.Target);
    command.Value = request.Value;
    command.Priority = request.Priority == BACSTAC_NO_PRIORITY ? PRIORITIES : request.Priority;
    return command.Priority >= 1 && command.Priority <= PRIORITIES;
}

Outcome ChangeList(const ServiceCall& call, Device::ChangeElements change) {
    bacnet::Reader request(call.Parameters);
    bacnet::PropertyTarget target;
    WriteCommand command;
    if (!bacnet::DecodePropertyTarget(request, target) || !request.Enclosed(LIST_TAG, command.Value) ||
        !request.AtEnd())
        return Malformed(call.Parameters);
    command.Property = target.Property;
    command.Index = IndexOf(target);
    std::uint32_t failed = 0;
    const PropertyError error = call.Dut.ChangeList(target.Object, change, command, failed);
    return error.Ok() ? Outcome::Done() : Outcome::Error(error, failed);
}

} // namespace

Outcome WriteProperty(const ServiceCall& call) {
    bacnet::WriteRequest request;
    if (!bacnet::DecodeWriteProperty(call.Parameters, request))
        return Malformed(call.Parameters);
    WriteCommand command;
    if (!ToCommand(request, command))
        return Outcome::Reject(REJECT_PARAMETER_OUT_OF_RANGE);
    return Outcome::Of(call.Dut.Write(request.Target.Object, command));
}

// In order, up to the first that cannot be written; those before it stay written (clause 15.10.2). A request that is
// not encoded right changes nothing.
Outcome WritePropertyMultiple(const ServiceCall& call) {
    bacnet::WriteRequest request;
    WriteCommand command;
    bool any = false;
    bacnet::WpmRequestReader check(call.Parameters);
    while (check.Next(request)) {
        any = true;
        if (!ToCommand(request, command))
            return Outcome::Reject(REJECT_PARAMETER_OUT_OF_RANGE);
    }
    if (!check.Ok() || !any)
        return Malformed(call.Parameters);
    bacnet::WpmRequestReader values(call.Parameters);
    while (values.Next(request)) {
        ToCommand(request, command);
        const PropertyError error = call.Dut.Write(request.Target.Object, command);
        if (!error.Ok()) {
            Outcome outcome = Outcome::Error(error);
            outcome.Failed = request.Target;
            return outcome;
        }
    }
    return Outcome::Done();
}

Outcome AddListElement(const ServiceCall& call) {
    return ChangeList(call, &Object::AddElements);
}

Outcome RemoveListElement(const ServiceCall& call) {
    return ChangeList(call, &Object::RemoveElements);
}

} // namespace sim
