// Segmented answers to ReadRange that come apart: missing, doubled, crossed, endless, with windows of no sense.
#include "tests/catalogue/Entry.h"

#include <algorithm>
#include <memory>

namespace catalogue {

namespace {

// One segment: flags, sequence number, window.
Datagram Segment(std::uint8_t id, std::size_t number, bool more, const Octets& octets, std::uint8_t window = 4) {
    Octets apdu{static_cast<std::uint8_t>(more ? 0x3C : 0x38), id, static_cast<std::uint8_t>(number), window, 0x1A};
    apdu.insert(apdu.end(), octets.begin(), octets.end());
    return ApduDatagram(apdu);
}

// trend-log 1, log-buffer, flags, count, and records without a status: 21.11.2026, hour 0, real 1.0
Octets Records(std::uint8_t count, std::uint8_t claimed) {
    Octets octets{0x0C, 0x05, 0x00, 0x00, 0x01, 0x19, 0x83, 0x3A, 0x05, 0xC0, 0x49, claimed, 0x5E};
    for (std::uint8_t i = 0; i < count; ++i) {
        const Octets record{0x0E, 0xA4, 0x7E, 0x0B, 0x15, 0x06, 0xB4, 0x00, 0x00, i,
                            0x00, 0x0F, 0x1E, 0x2C, 0x3F, 0x80, 0x00, 0x00, 0x1F};
        octets.insert(octets.end(), record.begin(), record.end());
    }
    octets.push_back(0x5F);
    octets.insert(octets.end(), {0x69, 0x11}); // first sequence number 17
    return octets;
}

constexpr std::size_t segmentSize = 20;

// A device that sends its segments as it should, but for what a change does to them.
class Sender {
public:
    explicit Sender(std::uint8_t records, std::size_t size = segmentSize)
        : m_octets(Records(records, records)), m_size(size) {}

    std::size_t Count() const { return (m_octets.size() + m_size - 1) / m_size; }
    Datagram At(std::uint8_t id, std::size_t number, std::uint8_t window = 4) const {
        const std::size_t from = std::min(number * m_size, m_octets.size());
        const std::size_t to = std::min(from + m_size, m_octets.size());
        return Segment(
            id, number, to < m_octets.size(),
            {m_octets.begin() + static_cast<std::ptrdiff_t>(from), m_octets.begin() + static_cast<std::ptrdiff_t>(to)},
            window);
    }
    // What an acknowledgement asks for: the next window from it on.
    std::vector<std::size_t> After(const Octets& ack) {
        const auto ahead = static_cast<std::uint8_t>(ack[2] + 1 - static_cast<std::uint8_t>(m_next));
        if (ahead <= 127)
            m_next += ahead;
        std::vector<std::size_t> window;
        for (std::size_t i = m_next; i < std::min<std::size_t>(Count(), m_next + std::max<std::uint8_t>(ack[3], 1));
             ++i)
            window.push_back(i);
        return window;
    }

private:
    Octets m_octets;
    std::size_t m_size;
    std::size_t m_next = 0;
};

// How a change may spoil what the device sends for one incoming PDU; times counts those.
using Change = std::function<void(std::vector<Datagram>& out, const Sender& sender, std::uint8_t id, unsigned times)>;

Script Segmented(std::uint8_t records, Change change, std::size_t size = segmentSize, std::uint8_t window = 4) {
    auto sender = std::make_shared<Sender>(records, size);
    return [sender, change = std::move(change), window, times = 0U](const Octets& apdu) mutable {
        std::vector<Datagram> out;
        const unsigned type = apdu[0] >> 4;
        std::uint8_t id = 0;
        if (type == 0) {
            id = apdu[2];
            out.push_back(sender->At(id, 0, window));
        } else if (type == 4) {
            id = apdu[1];
            for (const std::size_t number : sender->After(apdu))
                out.push_back(sender->At(id, number, window));
        } else {
            return out;
        }
        if (change)
            change(out, *sender, id, times);
        ++times;
        return out;
    };
}

Script AsItShould() {
    return Segmented(10, {});
}
Script OverMoreThan256() {
    return Segmented(100, {}, 5, 16); // some 380 segments
}
Script OneOctetEach() {
    return Segmented(10, {}, 1, 127);
}
Script EachTwice() {
    return Segmented(10, [](auto& out, const Sender&, std::uint8_t, unsigned) {
        const auto once = out;
        out.insert(out.end(), once.begin(), once.end());
    });
}
Script EachTwiceInARow() {
    return Segmented(10, [](auto& out, const Sender&, std::uint8_t, unsigned) {
        for (Datagram& datagram : out)
            datagram.Times = 2;
    });
}
Script Backwards() {
    return Segmented(10,
                     [](auto& out, const Sender&, std::uint8_t, unsigned) { std::reverse(out.begin(), out.end()); });
}
Script OneLostOnce() {
    return Segmented(10, [](auto& out, const Sender&, std::uint8_t, unsigned times) {
        if (times == 1 && out.size() > 1)
            out.erase(out.begin());
    });
}
Script OneAlwaysLost() {
    return Segmented(10, [](auto& out, const Sender&, std::uint8_t, unsigned) {
        std::erase_if(out, [](const Datagram& each) { return each.Bytes.at(2) == 3; });
    });
}
Script LastLost() {
    return Segmented(10, [](auto& out, const Sender&, std::uint8_t, unsigned) {
        std::erase_if(out, [](const Datagram& each) { return each.Bytes.at(0) == 0x38; });
    });
}
Script FirstOnly() {
    return Segmented(10, [](auto& out, const Sender&, std::uint8_t, unsigned times) {
        if (times != 0)
            out.clear();
    });
}
Script FirstForEver() {
    return Segmented(10, [](auto& out, const Sender& sender, std::uint8_t id, unsigned) { out = {sender.At(id, 0)}; });
}
Script FirstWindowForEver() {
    return Segmented(10, [](auto& out, const Sender& sender, std::uint8_t id, unsigned) {
        out.clear();
        for (std::size_t i = 0; i < 4; ++i)
            out.push_back(sender.At(id, i));
    });
}
Script WindowOfZero() {
    return Segmented(10, {}, segmentSize, 0);
}
Script WindowOf255() {
    return Segmented(10, {}, segmentSize, 255);
}
Script MoreThanTheWindow() {
    return Segmented(10, [](auto& out, const Sender& sender, std::uint8_t id, unsigned times) {
        if (times == 1)
            for (std::size_t i = 5; i < sender.Count(); ++i)
                out.push_back(sender.At(id, i));
    });
}
Script AllAtOnce() {
    return Segmented(10, [](auto& out, const Sender& sender, std::uint8_t id, unsigned times) {
        out.clear();
        for (std::size_t i = 0; times == 0 && i < sender.Count(); ++i)
            out.push_back(sender.At(id, i));
    });
}
Script AbortInTheMiddle() {
    return Segmented(10, [](auto& out, const Sender&, std::uint8_t id, unsigned times) {
        if (times == 2)
            out = {ApduDatagram({0x71, id, 0x09})};
    });
}
Script ErrorInTheMiddle() {
    return Segmented(10, [](auto& out, const Sender&, std::uint8_t id, unsigned times) {
        if (times == 1)
            out.insert(out.begin(), ApduDatagram({0x50, id, 0x1A, 0x91, 0x02, 0x91, 0x20}));
    });
}
Script WholeAnswerInTheMiddle() {
    return Segmented(10, [](auto& out, const Sender&, std::uint8_t id, unsigned times) {
        Octets whole{0x30, id, 0x1A};
        const Octets records = Records(1, 1);
        whole.insert(whole.end(), records.begin(), records.end());
        if (times == 1)
            out.insert(out.begin(), ApduDatagram(whole));
    });
}
Script OtherServiceInTheMiddle() {
    return Segmented(10, [](auto& out, const Sender&, std::uint8_t id, unsigned times) {
        if (times == 1)
            out.insert(out.begin(), ApduDatagram({0x3C, id, 0x01, 0x04, 0x0E, 0xAA, 0xAA}));
    });
}
Script OtherIdInTheMiddle() {
    return Segmented(10, [](auto& out, const Sender& sender, std::uint8_t id, unsigned times) {
        if (times == 1)
            out.insert(out.begin(), sender.At(static_cast<std::uint8_t>(id + 1), 1));
    });
}
Script StrangerInTheMiddle() {
    return Segmented(10, [](auto& out, const Sender&, std::uint8_t id, unsigned times) {
        Datagram foreign = Segment(id, 1, false, {0xAA, 0xAA});
        foreign.Sender = Datagram::From::stranger;
        if (times == 1)
            out.insert(out.begin(), foreign);
    });
}
Script RouterInTheMiddle() {
    return Segmented(10, [](auto& out, const Sender&, std::uint8_t id, unsigned times) {
        Datagram foreign = Segment(id, 1, false, {0xAA, 0xAA});
        foreign.Layer = Datagram::Form::npdu;
        foreign.Bytes.insert(foreign.Bytes.begin(), {0x01, 0x00});
        if (times == 1)
            out.insert(out.begin(), foreign);
    });
}
Script NumbersJump() {
    return Segmented(10, [](auto& out, const Sender&, std::uint8_t, unsigned times) {
        for (Datagram& each : out)
            if (times > 0)
                each.Bytes.at(2) = static_cast<std::uint8_t>(each.Bytes.at(2) + 128);
    });
}
Script MoreAfterTheEnd() {
    return Segmented(10, [](auto& out, const Sender& sender, std::uint8_t id, unsigned) {
        const bool last = !out.empty() && out.back().Bytes.at(0) == 0x38;
        if (last)
            for (unsigned i = 0; i < 50; ++i)
                out.push_back(Segment(id, sender.Count() + i, true, Octets(20, 0xAA)));
    });
}
Script Endless() {
    return Script([next = std::size_t{0}](const Octets& apdu) mutable {
        std::vector<Datagram> out;
        const unsigned type = apdu[0] >> 4;
        if (type != 0 && type != 4)
            return out;
        const std::uint8_t id = apdu[type == 0 ? 2 : 1];
        Octets octets(1300, 0x00);
        if (type == 0) {
            next = 0;
            const Octets start = Records(0, 200);
            std::copy(start.begin(), start.begin() + 13, octets.begin());
        }
        const std::size_t window = type == 0 ? 1 : std::max<std::size_t>(apdu[3], 1);
        for (std::size_t i = 0; i < window; ++i)
            out.push_back(Segment(id, next++, true, octets, 32));
        return out;
    });
}
Script Dribble() { // one octet each time, and never an end: the answer as a whole has a limit of time
    return Script([next = std::size_t{0}](const Octets& apdu) mutable {
        std::vector<Datagram> out;
        const unsigned type = apdu[0] >> 4;
        if (type != 0 && type != 4)
            return out;
        const std::uint8_t id = apdu[type == 0 ? 2 : 1];
        Datagram each = type == 0 ? Segment(id, next++, true, Records(1, 1), 1) : Segment(id, next++, true, {0xAA}, 1);
        each.AfterMs = 20;
        out.push_back(each);
        return out;
    });
}

} // namespace

Table SegmentEntries() {
    constexpr const char* whole = "10 records from 17 first last";
    return {
        {"segments as they should be", ReadRange, "", BACSTAC_OK, whole, AsItShould},
        {"more than 256 segments", ReadRange, "", BACSTAC_OK, "100 records from 17 first last", OverMoreThan256},
        {"segments of one octet", ReadRange, "", BACSTAC_OK, whole, OneOctetEach},
        {"every window sent twice", ReadRange, "", BACSTAC_OK, whole, EachTwice},
        {"every segment sent twice", ReadRange, "", BACSTAC_OK, whole, EachTwiceInARow},
        {"every window backwards", ReadRange, "", BACSTAC_OK, whole, Backwards},
        {"one segment lost once", ReadRange, "", BACSTAC_OK, whole, OneLostOnce},
        {"one segment lost at every attempt", ReadRange, "", BACSTAC_STATUS_TIMEOUT, "", OneAlwaysLost},
        {"last segment lost at every attempt", ReadRange, "", BACSTAC_STATUS_TIMEOUT, "", LastLost},
        {"silence after the first segment", ReadRange, "", BACSTAC_STATUS_TIMEOUT, "", FirstOnly},
        {"first segment for ever", ReadRange, "", BACSTAC_STATUS_TIMEOUT, "", FirstForEver},
        {"first window for ever", ReadRange, "", BACSTAC_STATUS_TIMEOUT, "", FirstWindowForEver},
        {"window of no segments", ReadRange, "", BACSTAC_OK, whole, WindowOfZero},
        {"window of 255 segments", ReadRange, "", BACSTAC_OK, whole, WindowOf255},
        {"more segments than the window", ReadRange, "", BACSTAC_OK, whole, MoreThanTheWindow},
        {"all segments without waiting", ReadRange, "", BACSTAC_OK, whole, AllAtOnce},
        {"abort in the middle of the segments", ReadRange, "", BACSTAC_STATUS_ABORT, "abort: out-of-resources",
         AbortInTheMiddle},
        {"error in the middle of the segments", ReadRange, "", BACSTAC_OK, whole, ErrorInTheMiddle},
        {"whole answer in the middle of the segments", ReadRange, "", BACSTAC_OK, whole, WholeAnswerInTheMiddle},
        {"segment of another service in the middle", ReadRange, "", BACSTAC_OK, whole, OtherServiceInTheMiddle},
        {"segment of another invoke id in the middle", ReadRange, "", BACSTAC_OK, whole, OtherIdInTheMiddle},
        {"segment of a stranger in the middle", ReadRange, "", BACSTAC_OK, whole, StrangerInTheMiddle},
        {"sequence numbers that jump by 128", ReadRange, "", BACSTAC_STATUS_TIMEOUT, "", NumbersJump},
        {"segments after the last one", ReadRange, "", BACSTAC_OK, whole, MoreAfterTheEnd},
        {"segments without end", ReadRange, "", BACSTAC_STATUS_BUFFER_TOO_SMALL, "", Endless},
        {"an octet now and then, without end", ReadRange, "", BACSTAC_STATUS_TIMEOUT, "", Dribble},
        {"segments that begin in the middle", ReadRange, "3C ID 05 04 1A 00*20", BACSTAC_STATUS_INVALID_ANSWER},
        {"segments of no octets", ReadRange, "3C ID 00 04 1A", BACSTAC_STATUS_INVALID_ANSWER},
        {"segment without a window", ReadRange, "3C ID 00", BACSTAC_STATUS_TIMEOUT},
        {"one segment that is all", ReadRange, "38 ID 00 04 1A 0C 05 00 00 01 19 83 3A 05 C0 49 00 5E 5F", BACSTAC_OK,
         "0 records from 0 first last"},
        {"one segment about another log", ReadRange, "3C ID 00 04 1A 0C 05 00 00 02 19 83 3A 05 C0 49 00 5E",
         BACSTAC_STATUS_TIMEOUT},
    };
}

Table RoutedSegmentEntries() {
    constexpr const char* whole = "10 records from 17 first last";
    return {
        {"segments over a router", ReadRange, "", BACSTAC_OK, whole, AsItShould},
        {"segments over a router, one lost once", ReadRange, "", BACSTAC_OK, whole, OneLostOnce},
        {"segments over a router, one always lost", ReadRange, "", BACSTAC_STATUS_TIMEOUT, "", OneAlwaysLost},
        {"segments over a router, of the router itself in the middle", ReadRange, "", BACSTAC_OK, whole,
         RouterInTheMiddle},
        {"segments over a router, aborted in the middle", ReadRange, "", BACSTAC_STATUS_ABORT,
         "abort: out-of-resources", AbortInTheMiddle},
        {"segments over a router without end", ReadRange, "", BACSTAC_STATUS_BUFFER_TOO_SMALL, "", Endless},
    };
}

} // namespace catalogue
