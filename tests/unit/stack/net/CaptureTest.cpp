// Recordings, read back octet by octet by a reader of this test's own.
#include "platform/stack/transport/Capture.h"

#include "platform/stack/transport/BipPort.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/Loopback.h"
#include "tests/unit/stack/net/Frames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <thread>

#include <sys/stat.h>

using namespace bacnet;
using frames::Octets;

namespace {

constexpr std::size_t FILE_HEADER = 24;
constexpr std::size_t OVERHEAD = 16 + 20 + 8; // of a record: its own header, that of IP, that of UDP

constexpr BipAddress HERE{0x7F000001, 47808};
constexpr BipAddress THERE{0x0A01FFFE, 47809};

struct Packet {
    std::uint32_t Seconds = 0;
    std::uint32_t Microseconds = 0;
    BipAddress From;
    BipAddress To;
    Octets Data;
};

std::uint32_t Net(const Octets& octets, std::size_t at, std::size_t count) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value = value << 8 | octets.at(at + i);
    return value;
}

std::uint32_t File(const Octets& octets, std::size_t at, std::size_t count) {
    std::uint32_t value = 0;
    for (std::size_t i = count; i > 0; --i)
        value = value << 8 | octets.at(at + i - 1);
    return value;
}

// RFC 1071: a header with its checksum sums up to all ones.
std::uint32_t SumOf(const Octets& octets, std::size_t at, std::size_t count) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < count; i += 2)
        sum += Net(octets, at + i, 2);
    while (sum > 0xFFFF)
        sum = (sum & 0xFFFF) + (sum >> 16);
    return sum;
}

// The packets of a whole file; expects every header to be as the formats want it and nothing to be left over.
std::vector<Packet> Parse(const Octets& octets) {
    EXPECT_GE(octets.size(), FILE_HEADER);
    EXPECT_EQ(File(octets, 0, 4), 0xA1B2C3D4U);
    EXPECT_EQ(File(octets, 4, 2), 2U);
    EXPECT_EQ(File(octets, 6, 2), 4U);
    EXPECT_EQ(File(octets, 20, 4), 101U) << "link type: raw IP";
    std::vector<Packet> packets;
    for (std::size_t at = FILE_HEADER; at < octets.size();) {
        Packet packet;
        packet.Seconds = File(octets, at, 4);
        packet.Microseconds = File(octets, at + 4, 4);
        const std::uint32_t length = File(octets, at + 8, 4);
        EXPECT_EQ(File(octets, at + 12, 4), length);
        at += 16;
        EXPECT_EQ(octets.at(at), 0x45);
        EXPECT_EQ(Net(octets, at + 2, 2), length);
        EXPECT_EQ(octets.at(at + 9), 17) << "protocol: UDP";
        EXPECT_EQ(SumOf(octets, at, 20), 0xFFFFU);
        packet.From = {Net(octets, at + 12, 4), static_cast<std::uint16_t>(Net(octets, at + 20, 2))};
        packet.To = {Net(octets, at + 16, 4), static_cast<std::uint16_t>(Net(octets, at + 22, 2))};
        EXPECT_EQ(Net(octets, at + 24, 2), length - 20) << "length of UDP";
        EXPECT_EQ(Net(octets, at + 26, 2), 0U) << "no checksum of UDP";
        EXPECT_LE(at + length, octets.size());
        if (testing::Test::HasFailure())
            return packets;
        packet.Data.assign(octets.begin() + static_cast<std::ptrdiff_t>(at + 28),
                           octets.begin() + static_cast<std::ptrdiff_t>(at + length));
        packets.push_back(std::move(packet));
        at += length;
    }
    return packets;
}

class Recording : public testing::Test {
protected:
    Recording() {
        std::string folder = (std::filesystem::temp_directory_path() / "bdc-capture-XXXXXX").string();
        m_folder = ::mkdtemp(folder.data());
        m_file = m_folder / "frames.pcap";
    }
    ~Recording() override {
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }

    std::shared_ptr<Capture> Open(std::uint64_t limit = Capture::DEFAULT_LIMIT) {
        Capture::Settings settings;
        settings.File = m_file;
        settings.Limit = limit;
        settings.OnEnd = [this](const std::string& reason) { m_ends.push_back(reason); };
        settings.Now = [this] { return m_now; };
        m_failure.clear();
        return Capture::Open(settings, m_failure);
    }
    Octets Read() const {
        std::ifstream file(m_file, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    std::vector<Packet> Packets() const { return Parse(Read()); }
    unsigned Mode() const {
        struct stat status {};
        EXPECT_EQ(::stat(m_file.c_str(), &status), 0);
        return status.st_mode & 07777U;
    }

    std::filesystem::path m_folder;
    std::filesystem::path m_file;
    std::chrono::system_clock::time_point m_now{std::chrono::seconds(1'795'000'000)};
    std::vector<std::string> m_ends;
    std::string m_failure;
};

TEST_F(Recording, HoldsAddressesAndOctetsInTheirOrder) {
    const auto capture = Open();
    ASSERT_NE(capture, nullptr) << m_failure;
    EXPECT_EQ(Packets().size(), 0U) << "a file without packets is a whole one";
    capture->Record(HERE, THERE, frames::READ_PROPERTY);
    capture->Record(THERE, HERE, frames::FORWARDED_I_AM);
    capture->Record(HERE, THERE, {});
    // Each record is in the file at once: nothing is lost with the process.
    const std::vector<Packet> packets = Packets();
    ASSERT_EQ(packets.size(), 3U);
    EXPECT_EQ(packets[0].From, HERE);
    EXPECT_EQ(packets[0].To, THERE);
    EXPECT_EQ(packets[0].Data, frames::READ_PROPERTY);
    EXPECT_EQ(packets[1].From, THERE);
    EXPECT_EQ(packets[1].To, HERE);
    EXPECT_EQ(packets[1].Data, frames::FORWARDED_I_AM);
    EXPECT_EQ(packets[2].Data, Octets());
}

TEST_F(Recording, HasTheOctetsThatTheFormatWants) {
    const auto capture = Open();
    ASSERT_NE(capture, nullptr) << m_failure;
    m_now += std::chrono::microseconds(7);
    capture->Record({0xC0A80A05, 47808}, {0xC0A80AFF, 47808}, Octets{0x81, 0x0B, 0x00, 0x04});
    const Octets expected{
        0xD4, 0xC3, 0xB2, 0xA1, 0x02, 0x00, 0x04, 0x00, 0x00, 0x00, 0x00, 0x00, // pcap 2.4, UTC
        0x00, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0x00, 0x00, 0x65, 0x00, 0x00, 0x00, // 65535 octets at most, raw IP
        0xC0, 0x86, 0xFD, 0x6A, 0x07, 0x00, 0x00, 0x00,                         // 1795000000.000007
        0x20, 0x00, 0x00, 0x00, 0x20, 0x00, 0x00, 0x00,                         // 32 octets, all of them
        0x45, 0x00, 0x00, 0x20, 0x00, 0x00, 0x40, 0x00, 0x40, 0x11, 0xA4, 0x78, // IPv4, UDP, header checksum
        0xC0, 0xA8, 0x0A, 0x05, 0xC0, 0xA8, 0x0A, 0xFF,                         // 192.168.10.5 to 192.168.10.255
        0xBA, 0xC0, 0xBA, 0xC0, 0x00, 0x0C, 0x00, 0x00,                         // UDP 47808 to 47808, 12 octets
        0x81, 0x0B, 0x00, 0x04};
    EXPECT_EQ(Read(), expected);
}

TEST_F(Recording, ChecksumsHoldForEveryAddress) {
    const auto capture = Open();
    ASSERT_NE(capture, nullptr) << m_failure;
    // Parse checks them. The sums of some of these carry twice, one is all ones.
    for (const std::uint32_t ip : {0U, 1U, 0xFFFFU, 0x10000U, 0x7AB37AB3U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
        for (const std::uint32_t other : {0U, 0xFFFFFFFFU, 0x7F000001U})
            for (std::size_t size = 0; size < 3; ++size)
                capture->Record({ip, 0}, {other, 0xFFFF}, Octets(size, 0xFF));
    EXPECT_EQ(Packets().size(), 8U * 3U * 3U);
}

TEST_F(Recording, TimesAreMicrosecondsOfTheGivenClock) {
    const auto capture = Open();
    ASSERT_NE(capture, nullptr) << m_failure;
    capture->Record(HERE, THERE, Octets{1});
    m_now += std::chrono::microseconds(999'999);
    capture->Record(HERE, THERE, Octets{2});
    m_now += std::chrono::microseconds(1);
    capture->Record(HERE, THERE, Octets{3});
    const std::vector<Packet> packets = Packets();
    ASSERT_EQ(packets.size(), 3U);
    EXPECT_EQ(packets[0].Seconds, 1'795'000'000U);
    EXPECT_EQ(packets[0].Microseconds, 0U);
    EXPECT_EQ(packets[1].Seconds, 1'795'000'000U);
    EXPECT_EQ(packets[1].Microseconds, 999'999U);
    EXPECT_EQ(packets[2].Seconds, 1'795'000'001U);
    EXPECT_EQ(packets[2].Microseconds, 0U);
}

TEST_F(Recording, CutsWhatIsLongerThanAnyDatagram) {
    const auto capture = Open();
    ASSERT_NE(capture, nullptr) << m_failure;
    capture->Record(HERE, THERE, Octets(2048, 0x55));
    capture->Record(HERE, THERE, Octets(60000, 0x66));
    const std::vector<Packet> packets = Packets();
    ASSERT_EQ(packets.size(), 2U);
    EXPECT_EQ(packets[0].Data, Octets(2048, 0x55));
    EXPECT_EQ(packets[1].Data, Octets(2048, 0x66));
}

TEST_F(Recording, EndsForGoodWithTheFirstDatagramBeyondItsLimit) {
    const std::uint64_t two = FILE_HEADER + 2 * (OVERHEAD + 10);
    const auto capture = Open(two + 43);
    ASSERT_NE(capture, nullptr) << m_failure;
    capture->Record(HERE, THERE, Octets(10, 1));
    capture->Record(HERE, THERE, Octets(10, 2));
    EXPECT_EQ(m_ends, std::vector<std::string>());
    capture->Record(HERE, THERE, Octets(10, 3));
    EXPECT_EQ(m_ends, std::vector<std::string>{"the capture file has reached its limit"});
    capture->Record(HERE, THERE, {}); // would still find room
    EXPECT_EQ(m_ends.size(), 1U);
    EXPECT_EQ(Packets().size(), 2U);
    EXPECT_EQ(std::filesystem::file_size(m_file), two);
}

TEST_F(Recording, FillsItsLimitToTheLastOctet) {
    const std::uint64_t two = FILE_HEADER + 2 * (OVERHEAD + 10);
    const auto capture = Open(two);
    ASSERT_NE(capture, nullptr) << m_failure;
    capture->Record(HERE, THERE, Octets(10, 1));
    capture->Record(HERE, THERE, Octets(10, 2));
    EXPECT_EQ(m_ends, std::vector<std::string>());
    EXPECT_EQ(std::filesystem::file_size(m_file), two);
}

TEST_F(Recording, LeavesWholeRecordsOnAFullDisk) {
    const auto capture = Open();
    ASSERT_NE(capture, nullptr) << m_failure;
    const std::uint64_t two = FILE_HEADER + 2 * (OVERHEAD + 100);
    for (const std::uint64_t part : {0U, 1U, 15U, 60U, 143U}) { // of the third record, that the system still takes
        m_ends.clear();
        const auto again = Open();
        ASSERT_NE(again, nullptr) << m_failure;
        {
            const CFileSizeLimit limit(two + part);
            for (int i = 0; i < 4; ++i)
                again->Record(HERE, THERE, Octets(100, 7));
        }
        again->Record(HERE, THERE, Octets(100, 8)); // there is room again, but the recording has ended
        EXPECT_EQ(m_ends, std::vector<std::string>{"the capture file cannot be written any more"}) << part;
        EXPECT_EQ(std::filesystem::file_size(m_file), two) << part;
        EXPECT_EQ(Packets().size(), 2U) << part;
    }
}

TEST_F(Recording, DoesNotStartWhereItsHeaderFindsNoRoom) {
    EXPECT_EQ(Open(FILE_HEADER - 1), nullptr);
    EXPECT_FALSE(std::filesystem::exists(m_file));
    const CFileSizeLimit limit(FILE_HEADER - 1);
    EXPECT_EQ(Open(), nullptr);
    EXPECT_EQ(m_failure, "the capture file \"" + m_file.string() + "\" cannot be written");
}

TEST_F(Recording, SaysWhichFileCannotBeMade) {
    m_file = m_folder / "none" / "frames.pcap";
    EXPECT_EQ(Open(), nullptr);
    EXPECT_EQ(m_failure, "the capture file \"" + m_file.string() + "\" cannot be written");
}

TEST_F(Recording, OverwritesNothingButAFile) {
    m_file = m_folder / "folder";
    std::filesystem::create_directory(m_file);
    EXPECT_EQ(Open(), nullptr);
    EXPECT_TRUE(std::filesystem::is_directory(m_file));
    m_file = m_folder / "pipe";
    ASSERT_EQ(::mkfifo(m_file.c_str(), 0600), 0);
    ASSERT_EQ(::chmod(m_file.c_str(), 0644), 0);
    EXPECT_EQ(Open(), nullptr) << "does not wait for a reader either";
    EXPECT_TRUE(std::filesystem::is_fifo(m_file));
    EXPECT_EQ(Mode(), 0644U);
    EXPECT_EQ(m_ends, std::vector<std::string>());
}

TEST_F(Recording, IsReadByItsOwnerOnly) {
    const mode_t before = ::umask(0);
    const auto capture = Open();
    ::umask(before);
    ASSERT_NE(capture, nullptr) << m_failure;
    EXPECT_EQ(Mode(), 0600U);
}

TEST_F(Recording, ReplacesAnEarlierFileTogetherWithItsReaders) {
    std::ofstream(m_file) << "an earlier recording";
    ASSERT_EQ(::chmod(m_file.c_str(), 0666), 0);
    std::ifstream earlier(m_file);
    const auto capture = Open();
    ASSERT_NE(capture, nullptr) << m_failure;
    capture->Record(HERE, THERE, Octets{1, 2, 3});
    EXPECT_EQ(Mode(), 0600U);
    EXPECT_EQ(Packets().size(), 1U);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(earlier), {}), "an earlier recording");
}

TEST_F(Recording, FollowsNoLinkToAnotherFile) {
    const std::filesystem::path victim = m_folder / "history.db";
    std::ofstream(victim) << "kept";
    std::filesystem::create_symlink(victim, m_file);
    const auto capture = Open();
    ASSERT_NE(capture, nullptr) << m_failure;
    EXPECT_FALSE(std::filesystem::is_symlink(m_file));
    EXPECT_EQ(std::filesystem::file_size(victim), 4U);
}

TEST_F(Recording, KeepsRecordsWholeAndInTheOrderOfEachThread) {
    constexpr unsigned THREADS = 8;
    constexpr std::uint8_t EACH = 200;
    {
        const auto capture = Open();
        ASSERT_NE(capture, nullptr) << m_failure;
        std::vector<std::jthread> threads;
        for (unsigned thread = 0; thread < THREADS; ++thread)
            threads.emplace_back([&, thread] {
                for (std::uint8_t i = 0; i < EACH; ++i)
                    capture->Record({thread, 1}, THERE, Octets(1U + i, i));
            });
    }
    std::map<std::uint32_t, std::size_t> seen;
    for (const Packet& packet : Packets()) {
        const std::size_t number = seen[packet.From.Ip]++;
        ASSERT_EQ(packet.Data, Octets(1U + number, static_cast<std::uint8_t>(number)));
    }
    ASSERT_EQ(seen.size(), THREADS);
    for (const auto& [thread, count] : seen)
        EXPECT_EQ(count, EACH) << "thread " << thread;
}

TEST_F(Recording, TellsItsEndOnceThoughManyThreadsReachIt) {
    const auto capture = Open(FILE_HEADER + 10 * (OVERHEAD + 1));
    ASSERT_NE(capture, nullptr) << m_failure;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 8; ++thread)
            threads.emplace_back([&] {
                for (int i = 0; i < 100; ++i)
                    capture->Record(HERE, THERE, Octets{9});
            });
    }
    EXPECT_EQ(m_ends.size(), 1U);
    EXPECT_EQ(Packets().size(), 10U);
}

TEST_F(Recording, HasWhatTwoPortsSayToEachOtherOnceForEach) {
    const testing_support::LoopbackBlock block;
    const auto capture = Open();
    ASSERT_NE(capture, nullptr) << m_failure;
    BipPort first;
    BipPort second;
    ASSERT_EQ(first.Open({block.Ip(1), block.Port(), block.BROADCAST_IP, 0, capture}), "");
    ASSERT_EQ(second.Open({block.Ip(2), block.Port(), block.BROADCAST_IP, 0, capture}), "");
    const BipAddress one{block.Ip(1), block.Port()};
    const BipAddress two{block.Ip(2), block.Port()};
    Frame frame;
    frame.Append(Octets{0x01, 0x00, 0x42});
    ASSERT_TRUE(first.Send(ToMac(two), frame));
    NpduBatch batch;
    for (int i = 0; i < 200 && batch.Count == 0; ++i)
        second.ReceiveDirected(batch, NpduBatch::CAPACITY, IDataLink::Wait::tick);
    ASSERT_EQ(batch.Count, 1U);
    frame.Clear();
    frame.Append(Octets{0x01, 0x00, 0x43});
    ASSERT_TRUE(second.Broadcast(frame));
    NpduBatch broadcasts;
    for (int i = 0; i < 200 && broadcasts.Count == 0; ++i) {
        first.WaitReadable(~0U, 10);
        first.ReceiveBroadcasts(broadcasts);
    }
    ASSERT_EQ(broadcasts.Count, 1U);

    const Octets unicast{0x81, 0x0A, 0x00, 0x07, 0x01, 0x00, 0x42};
    const Octets broadcast{0x81, 0x0B, 0x00, 0x07, 0x01, 0x00, 0x43};
    const BipAddress all{block.BROADCAST_IP, block.Port()};
    const std::vector<Packet> packets = Packets();
    ASSERT_EQ(packets.size(), 4U) << "sent and received, twice";
    for (const std::size_t i : {0U, 1U}) {
        EXPECT_EQ(packets[i].From, one);
        EXPECT_EQ(packets[i].To, two);
        EXPECT_EQ(packets[i].Data, unicast);
        EXPECT_EQ(packets[2 + i].From, two);
        EXPECT_EQ(packets[2 + i].To, all);
        EXPECT_EQ(packets[2 + i].Data, broadcast);
    }
}

} // namespace
