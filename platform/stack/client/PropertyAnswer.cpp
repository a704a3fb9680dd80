#include "platform/stack/client/PropertyAnswer.h"

#include "platform/stack/client/Values.h"
#include "platform/stack/codec/Reader.h"

namespace bacnet {

bool IsOfSameProperty(std::span<const std::uint8_t> request, std::span<const std::uint8_t> answer) {
    Reader requestReader(request);
    Reader answerReader(answer);
    PropertyTarget requested;
    PropertyTarget answered;
    return !DecodePropertyTarget(answerReader, answered) ||
           (DecodePropertyTarget(requestReader, requested) && Answers(requested, answered));
}

bool ReadAnswer(std::span<const std::uint8_t> answer, const PropertyTarget& target,
                std::span<const std::uint8_t>& value) {
    ReadPropertyAck ack;
    if (!DecodeReadPropertyAck(answer, ack) || !Answers(target, ack.Target))
        return false;
    value = ack.Value;
    return true;
}

BACSTAC_STATUS ReadAnswerInto(std::span<const std::uint8_t> answer, const PropertyTarget& target,
                              BACSTAC_PROPERTY_CONTENTS& contents) {
    std::span<const std::uint8_t> value;
    return ReadAnswer(answer, target, value) ? ValueInto(value, target, contents) : BACSTAC_STATUS_INVALID_ANSWER;
}

} // namespace bacnet
