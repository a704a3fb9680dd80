#include "platform/stack/codec/Writer.h"
#include "simulator/server/Services.h"

namespace sim {

using bacnet::ConfirmedService;

void EncodeError(ConfirmedService service, const Outcome& outcome, bacnet::Writer& to) {
    const bool namesElement = service == ConfirmedService::addListElement ||
                              service == ConfirmedService::removeListElement ||
                              service == ConfirmedService::createObject;
    const bool namesProperty = service == ConfirmedService::writePropertyMultiple;
    if (namesElement || namesProperty)
        to.Opening(0);
    to.Enumerated(outcome.Class);
    to.Enumerated(outcome.Code);
    if (namesElement || namesProperty)
        to.Closing(0);
    if (namesElement)
        to.Unsigned(outcome.FailedElement, 1);
    if (namesProperty) {
        to.Opening(1);
        to.ObjectId(outcome.Failed.Object, 0);
        to.Enumerated(outcome.Failed.Property, 1);
        if (outcome.Failed.ArrayIndex >= 0)
            to.Unsigned(static_cast<std::uint32_t>(outcome.Failed.ArrayIndex), 2);
        to.Closing(1);
    }
}

} // namespace sim
