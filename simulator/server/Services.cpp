#include "platform/stack/network/Apdu.h"
#include "simulator/server/Handlers.h"

#include <algorithm>

namespace sim {

using bacnet::ConfirmedService;

std::uint32_t IndexOf(const bacnet::PropertyTarget& target) {
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

struct Row {
    ConfirmedService Service;
    Outcome (*Handler)(const ServiceCall& call);
};

constexpr Row SERVICES[] = {
    {ConfirmedService::acknowledgeAlarm, AcknowledgeAlarm},
    {ConfirmedService::getAlarmSummary, GetAlarmSummary},
    {ConfirmedService::getEnrollmentSummary, GetEnrollmentSummary},
    {ConfirmedService::getEventInformation, GetEventInformation},
    {ConfirmedService::subscribeCov, SubscribeCov},
    {ConfirmedService::subscribeCovProperty, SubscribeCovProperty},
    {ConfirmedService::atomicReadFile, AtomicReadFile},
    {ConfirmedService::atomicWriteFile, AtomicWriteFile},
    {ConfirmedService::addListElement, AddListElement},
    {ConfirmedService::removeListElement, RemoveListElement},
    {ConfirmedService::createObject, CreateObject},
    {ConfirmedService::deleteObject, DeleteObject},
    {ConfirmedService::readProperty, ReadProperty},
    {ConfirmedService::readPropertyConditional, ReadPropertyConditional},
    {ConfirmedService::readPropertyMultiple, ReadPropertyMultiple},
    {ConfirmedService::writeProperty, WriteProperty},
    {ConfirmedService::writePropertyMultiple, WritePropertyMultiple},
    {ConfirmedService::deviceCommunicationControl, DeviceCommunicationControl},
    {ConfirmedService::reinitializeDevice, ReinitializeDevice},
    {ConfirmedService::readRange, ReadRange},
};

} // namespace

Outcome Serve(Device& device, ConfirmedService service, std::span<const std::uint8_t> parameters,
              const AnswerRoom& room, Scratch& scratch, const Requester& from) {
    const auto* const row = std::find_if(std::begin(SERVICES), std::end(SERVICES),
                                         [=](const Row& known) { return known.Service == service; });
    if (row == std::end(SERVICES) || !device.Offers(service))
        return Outcome::Reject(bacnet::REJECT_UNRECOGNIZED_SERVICE);
    return row->Handler({device, parameters, room, scratch, from});
}

} // namespace sim
