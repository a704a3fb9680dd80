// Each half of segmentation alone: the stack's sending of a request and receiving of one, the simulator's of an answer
// and of a request. A sequence of APDUs, each with an octet for who sent it and how much time passed. What is
// given out must lie within the octets that were put in, and what is kept within its limits.
#include "fuzz/Input.h"
#include "platform/stack/transaction/RequestAssembly.h"
#include "platform/stack/transaction/SegmentSender.h"
#include "simulator/server/SegmentedAnswer.h"
#include "simulator/server/SegmentedRequest.h"

#include <cstdlib>
#include <numeric>

using namespace bacnet;

namespace {

void Require(bool condition) {
    if (!condition)
        std::abort();
}

const std::vector<std::uint8_t>& Payload() {
    static const std::vector<std::uint8_t> payload = [] {
        std::vector<std::uint8_t> octets(1000);
        std::iota(octets.begin(), octets.end(), std::uint8_t{0});
        return octets;
    }();
    return payload;
}

bool Within(std::span<const std::uint8_t> part, std::span<const std::uint8_t> all) {
    return part.empty() || (part.data() >= all.data() && part.data() + part.size() <= all.data() + all.size());
}

void SendWindow(SegmentSender& sender) {
    SegmentSender::Segment segment;
    for (unsigned sent = 0; sender.Next(segment); ++sent)
        Require(sent < 128 && Within(segment.Octets, Payload()) && !segment.Octets.empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const std::size_t segmentSize = input.Octet() + std::size_t{1};
    const TransactionSettings settings;
    SegmentSender sender;
    sender.Begin(Payload(), segmentSize, 100);
    SendWindow(sender);
    RequestAssembly assembly(settings);
    sim::SegmentedAnswer answer;
    sim::SegmentedAnswer::Settings answerSettings;
    answerSettings.SegmentSize = segmentSize;
    answerSettings.Window = 16;
    answer.Start(Payload(), answerSettings);
    sim::SegmentedRequests requests;
    Millis now = 0;

    while (!input.AtEnd()) {
        const auto octets = input.Run();
        const std::uint8_t how = input.Octet();
        now += (how >> 2) * Millis{64};
        Apdu apdu;
        if (DecodeApdu(octets, apdu) != ApduError::none)
            continue;
        PeerKey key;
        key.Length = 1;
        key.Octets[0] = how & 3U;
        sim::Requester requester;
        requester.Link.Ip = how & 3U;
        if (apdu.Type == PduType::segment_ack) {
            const SegmentSender::Step step = sender.OnAck(apdu, now);
            if (step == SegmentSender::Step::complete) {
                Require(sender.AllSent());
                sender.Begin(Payload(), segmentSize, 100);
            }
            SendWindow(sender);
            if (answer.GetState() != sim::SegmentedAnswer::State::sending)
                answer.Start(Payload(), answerSettings);
            const auto burst = answer.OnAck(apdu);
            Require(burst.Count <= 127 && burst.First + burst.Count <= answer.SegmentCount());
            for (std::uint32_t i = burst.First; i < burst.First + burst.Count; ++i)
                Require(!answer.Segment(i).empty());
        } else if (apdu.Type == PduType::confirmed_request && apdu.Segmented) {
            const RequestAssembly::Step step = assembly.OnSegment(key, apdu, now);
            Require(step.Whole == nullptr || step.Whole->Size() <= RequestAssembly::MAX_OCTETS);
            const sim::SegmentedRequests::Step simulated = requests.OnSegment(requester, apdu, {}, now);
            Require(simulated.Whole.size() <= 1500U * 64U);
        } else if (apdu.Type == PduType::abort) {
            assembly.OnAbort(key, apdu.InvokeId);
            requests.OnAbort(requester, apdu.InvokeId);
            const auto burst = answer.OnTimeout();
            Require(burst.First + burst.Count <= answer.SegmentCount());
            sender.Repeat();
            SendWindow(sender);
        }
    }
    return 0;
}
