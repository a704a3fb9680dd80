#include "platform/stack/services/ErrorAnswer.h"

#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/Writer.h"

namespace bacnet {

namespace {

// Services whose Error production names the element that failed, in [1] (clause 21: ChangeList-Error,
// CreateObject-Error, WritePropertyMultiple-Error).
bool NamesElement(ConfirmedService service) {
    return service == ConfirmedService::createObject || service == ConfirmedService::addListElement ||
           service == ConfirmedService::removeListElement || service == ConfirmedService::writePropertyMultiple;
}

} // namespace

bool DecodeErrorAnswer(ConfirmedService service, std::span<const std::uint8_t> parameters, ErrorAnswer& error) {
    Reader reader(parameters);
    ErrorAnswer answer;
    const bool bracketed = reader.IsOpening(0);
    if (bracketed)
        reader.Open(0);
    reader.Enumerated(answer.Class);
    reader.Enumerated(answer.Code);
    if (bracketed)
        reader.Close(0);
    if (!reader.Ok())
        return false;
    if (service != ConfirmedService::writePropertyMultiple && reader.IsContext(1) &&
        !reader.Unsigned(answer.FirstFailed, 1))
        answer.FirstFailed = 0; // class and code count all the same
    error = answer;
    return true;
}

void EncodeErrorAnswer(ConfirmedService service, const ErrorAnswer& error, Writer& writer) {
    const bool bracketed = NamesElement(service);
    if (bracketed)
        writer.Opening(0);
    writer.Enumerated(error.Class);
    writer.Enumerated(error.Code);
    if (!bracketed)
        return;
    writer.Closing(0);
    if (service != ConfirmedService::writePropertyMultiple)
        writer.Unsigned(error.FirstFailed, 1);
}

} // namespace bacnet
