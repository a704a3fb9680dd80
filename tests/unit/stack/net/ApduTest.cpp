#include "platform/stack/network/Apdu.h"
#include "tests/unit/stack/net/Frames.h"

#include <gtest/gtest.h>

using namespace bacnet;

namespace {

void ExpectSame(const Apdu& read, const Apdu& written) {
    EXPECT_EQ(read.Type, written.Type);
    EXPECT_EQ(read.Segmented, written.Segmented);
    EXPECT_EQ(read.MoreFollows, written.MoreFollows);
    EXPECT_EQ(read.SegmentedResponseAccepted, written.SegmentedResponseAccepted);
    EXPECT_EQ(read.SegmentsAccepted, written.SegmentsAccepted);
    EXPECT_EQ(read.MaxApduCode, written.MaxApduCode);
    EXPECT_EQ(read.FromServer, written.FromServer);
    EXPECT_EQ(read.Negative, written.Negative);
    EXPECT_EQ(read.InvokeId, written.InvokeId);
    EXPECT_EQ(read.SequenceNumber, written.SequenceNumber);
    EXPECT_EQ(read.WindowSize, written.WindowSize);
    EXPECT_EQ(read.Service, written.Service);
    EXPECT_EQ(read.Reason, written.Reason);
}

// Every type, with every field that it has set to something.
std::vector<Apdu> Samples() {
    std::vector<Apdu> samples;
    Apdu request;
    request.Type = PduType::confirmed_request;
    request.SegmentedResponseAccepted = true;
    request.SegmentsAccepted = MaxSegments::more_than_64;
    request.MaxApduCode = 5;
    request.InvokeId = 200;
    request.Service = 12;
    samples.push_back(request);
    request.Segmented = true;
    request.MoreFollows = true;
    request.SequenceNumber = 255;
    request.WindowSize = 16;
    samples.push_back(request);
    Apdu unconfirmed;
    unconfirmed.Service = 8;
    samples.push_back(unconfirmed);
    Apdu simple;
    simple.Type = PduType::simple_ack;
    simple.InvokeId = 1;
    simple.Service = 15;
    samples.push_back(simple);
    Apdu complex;
    complex.Type = PduType::complex_ack;
    complex.InvokeId = 2;
    complex.Service = 14;
    samples.push_back(complex);
    complex.Segmented = true;
    complex.SequenceNumber = 3;
    complex.WindowSize = 127;
    samples.push_back(complex);
    complex.MoreFollows = true;
    samples.push_back(complex);
    Apdu ack;
    ack.Type = PduType::segment_ack;
    ack.InvokeId = 2;
    ack.SequenceNumber = 9;
    ack.WindowSize = 4;
    samples.push_back(ack);
    ack.Negative = true;
    ack.FromServer = true;
    samples.push_back(ack);
    Apdu error;
    error.Type = PduType::error;
    error.InvokeId = 4;
    error.Service = 12;
    samples.push_back(error);
    Apdu reject;
    reject.Type = PduType::reject;
    reject.InvokeId = 5;
    reject.Reason = 9;
    samples.push_back(reject);
    Apdu abort;
    abort.Type = PduType::abort;
    abort.InvokeId = 6;
    abort.Reason = 4;
    samples.push_back(abort);
    abort.FromServer = true;
    samples.push_back(abort);
    return samples;
}

TEST(Apdu, EachTypeIsWrittenAsItIsRead) {
    for (const Apdu& sample : Samples()) {
        Frame frame;
        ASSERT_TRUE(PrependApdu(frame, sample));
        EXPECT_EQ(frame.Size(), ApduHeaderSize(sample));
        Apdu read;
        ASSERT_EQ(DecodeApdu(frame.Octets(), read), ApduError::none);
        ExpectSame(read, sample);
        EXPECT_TRUE(read.Payload.empty());
    }
}

TEST(Apdu, AHeaderCutAnywhereIsRefusedAndLeavesTheResultAlone) {
    for (const Apdu& sample : Samples()) {
        Frame frame;
        ASSERT_TRUE(PrependApdu(frame, sample));
        for (std::size_t length = 0; length < frame.Size(); ++length) {
            Apdu read;
            read.InvokeId = 77;
            EXPECT_EQ(DecodeApdu(frame.Octets().first(length), read), ApduError::too_short);
            EXPECT_EQ(read.InvokeId, 77);
        }
    }
}

TEST(Apdu, ReadPropertyRequestIsTheKnownFrame) {
    Apdu header;
    header.Type = PduType::confirmed_request;
    header.SegmentedResponseAccepted = true;
    header.SegmentsAccepted = MaxSegments::more_than_64;
    header.MaxApduCode = MaxApduToCode(MAX_APDU_IP);
    header.InvokeId = 1;
    header.Service = 12;
    Frame frame;
    ASSERT_TRUE(frame.Append(std::span(frames::READ_PROPERTY).subspan(10)));
    ASSERT_TRUE(PrependApdu(frame, header));
    EXPECT_EQ(frames::Octets(frame.Octets().begin(), frame.Octets().end()),
              frames::Octets(frames::READ_PROPERTY.begin() + 6, frames::READ_PROPERTY.end()));
}

TEST(Apdu, ReservedTypesAreRefused) {
    for (unsigned type = 8; type < 16; ++type) {
        const frames::Octets octets{static_cast<std::uint8_t>(type << 4), 0, 0, 0, 0, 0, 0};
        Apdu read;
        EXPECT_EQ(DecodeApdu(octets, read), ApduError::unknown_type);
    }
}

TEST(Apdu, AcknowledgementAndAbortHaveNoPayload) {
    // Octets behind them are ignored, as the standard lets PDUs grow.
    const frames::Octets ack{0x40, 0x01, 0x02, 0x03, 0xAA};
    Apdu read;
    ASSERT_EQ(DecodeApdu(ack, read), ApduError::none);
    EXPECT_TRUE(read.Payload.empty());
}

TEST(Apdu, MaximumLengthsHaveTheirCodes) {
    const std::vector<std::uint16_t> sizes{50, 128, 206, 480, 1024, 1476};
    for (std::uint8_t code = 0; code < 16; ++code)
        EXPECT_EQ(MaxApduFromCode(code), code < sizes.size() ? sizes[code] : 0);
    EXPECT_EQ(MaxApduToCode(0), 0);
    EXPECT_EQ(MaxApduToCode(127), 0);
    EXPECT_EQ(MaxApduToCode(128), 1);
    EXPECT_EQ(MaxApduToCode(1475), 4);
    EXPECT_EQ(MaxApduToCode(1476), 5);
    EXPECT_EQ(MaxApduToCode(65535), 5);
}

TEST(Frame, HasNoMoreRoomThanItHas) {
    Frame frame;
    EXPECT_EQ(frame.Append(Frame::CAPACITY + 1), nullptr);
    EXPECT_NE(frame.Append(Frame::CAPACITY), nullptr);
    EXPECT_EQ(frame.Append(1), nullptr);
    EXPECT_NE(frame.Prepend(Frame::HEADROOM), nullptr);
    EXPECT_EQ(frame.Prepend(1), nullptr);
    frame.DropHeaders(Frame::CAPACITY);
    EXPECT_EQ(frame.Size(), Frame::CAPACITY);
}

} // namespace
