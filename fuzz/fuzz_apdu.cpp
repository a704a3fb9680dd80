// A sequence of APDUs, each behind an octet with its length and one with the time that passed: the header decoded and
// encoded again, and all of them fed to one transaction, whose answer must stay within its limit.

#include "platform/stack/network/Apdu.h"
#include "platform/stack/transaction/Transaction.h"

#include <cstdlib>

using namespace bacnet;

namespace {

constexpr std::size_t LIMIT = 4096;
constexpr std::uint8_t SERVICE = 12;

void Require(bool condition) {
    if (!condition)
        std::abort();
}

void RoundTrip(const Apdu& apdu) {
    Frame frame;
    if (!frame.Append(apdu.Payload))
        return;
    Require(PrependApdu(frame, apdu));
    Require(frame.Size() == ApduHeaderSize(apdu) + apdu.Payload.size());
    Apdu again;
    Require(DecodeApdu(frame.Octets(), again) == ApduError::none);
    Require(again.Type == apdu.Type && again.Segmented == apdu.Segmented && again.MoreFollows == apdu.MoreFollows &&
            again.SegmentedResponseAccepted == apdu.SegmentedResponseAccepted &&
            again.SegmentsAccepted == apdu.SegmentsAccepted && again.MaxApduCode == apdu.MaxApduCode &&
            again.FromServer == apdu.FromServer && again.Negative == apdu.Negative && again.InvokeId == apdu.InvokeId &&
            again.SequenceNumber == apdu.SequenceNumber && again.WindowSize == apdu.WindowSize &&
            again.Service == apdu.Service && again.Reason == apdu.Reason);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::span<const std::uint8_t> rest(data, size);
    AnswerBuffer answer(LIMIT);
    Transaction transaction;
    const TransactionSettings settings;
    Millis now = 0;
    transaction.Begin(settings, SERVICE, {}, {}, answer, now);
    while (rest.size() >= 2) {
        now += rest[1] * 16;
        const std::size_t length = std::min<std::size_t>(rest[0], rest.size() - 2);
        const auto octets = rest.subspan(2, length);
        rest = rest.subspan(2 + length);

        Reply reply;
        if (transaction.OnTime(now, reply) == Transaction::Due::nothing)
            Require(transaction.Deadline() > now);
        Apdu apdu;
        if (DecodeApdu(octets, apdu) != ApduError::none)
            continue;
        RoundTrip(apdu);
        const bool wasDone = transaction.Done();
        const bool taken = transaction.OnPdu(apdu, now, reply);
        Require(!(wasDone && taken));
        Require(answer.Size() <= LIMIT);
        Require(!reply.Send || !reply.Header.FromServer);
        if (transaction.Done())
            transaction.Begin(settings, SERVICE, {}, {}, answer, now);
    }
    return 0;
}
