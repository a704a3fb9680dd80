#include "platform/stack/services/DeviceManagement.h"
#include "simulator/server/Handlers.h"

namespace sim {

namespace {

constexpr PropertyError PASSWORD_FAILURE{CLASS_SECURITY, CODE_PASSWORD_FAILURE};
constexpr PropertyError IN_PROGRESS{CLASS_DEVICE, CODE_CONFIGURATION_IN_PROGRESS};
constexpr PropertyError NOT_SUPPORTED{CLASS_SERVICES, CODE_OPTIONAL_FUNCTIONALITY_NOT_SUPPORTED};
constexpr std::uint32_t LAST_COMMUNICATION = 2;

// BACnetReinitializedStateOfDevice.
enum State : std::uint32_t {
    coldstart = 0,
    warmstart = 1,
    startBackup = 2,
    endBackup = 3,
    startRestore = 4,
    endRestore = 5,
    abortRestore = 6,
    activateChanges = 7,
    lastState = activateChanges,
};

Outcome Restart(const ServiceCall& call, RestartReason reason) {
    if (call.Dut.Backup().IsInProgress(call.Dut.Uptime()))
        return Outcome::Error(IN_PROGRESS);
    Outcome outcome = Outcome::Done();
    outcome.Restarts = true;
    outcome.Reason = reason;
    return outcome;
}

} // namespace

Outcome DeviceCommunicationControl(const ServiceCall& call) {
    bacnet::CommunicationRequest request;
    if (!bacnet::DecodeCommunicationControl(call.Parameters, request))
        return Malformed(call.Parameters);
    if (request.Value > LAST_COMMUNICATION)
        return Outcome::Reject(REJECT_UNDEFINED_ENUMERATION);
    if (!call.Dut.IsPassword(request.Password))
        return Outcome::Error(PASSWORD_FAILURE);
    return Outcome::Of(call.Dut.ControlCommunication(static_cast<Communication>(request.Value), request.Minutes));
}

Outcome ReinitializeDevice(const ServiceCall& call) {
    bacnet::ReinitializeRequest request;
    if (!bacnet::DecodeReinitialize(call.Parameters, request))
        return Malformed(call.Parameters);
    if (request.State > lastState)
        return Outcome::Reject(REJECT_UNDEFINED_ENUMERATION);
    if (!call.Dut.IsPassword(request.Password))
        return Outcome::Error(PASSWORD_FAILURE);
    switch (static_cast<State>(request.State)) {
    case coldstart:
        return Restart(call, RestartReason::coldstart);
    case warmstart:
        return Restart(call, RestartReason::warmstart);
    case startBackup:
        return Outcome::Of(call.Dut.StartBackup());
    case endBackup:
        return Outcome::Of(call.Dut.EndBackup());
    case startRestore:
        return Outcome::Of(call.Dut.StartRestore());
    case endRestore:
        return Outcome::Of(call.Dut.EndRestore());
    case abortRestore:
        return Outcome::Of(call.Dut.AbortRestore());
    case activateChanges:
        break;
    }
    return Outcome::Error(NOT_SUPPORTED);
}

} // namespace sim
