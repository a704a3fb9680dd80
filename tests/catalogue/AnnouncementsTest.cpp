// Announcements that are none, or that nobody can count.
#include "tests/catalogue/Fixture.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <set>
#include <thread>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

namespace catalogue {
namespace {

using namespace std::chrono_literals;

// Instances in the octets of the tables.
constexpr unsigned wrongDevice = 4000000;   // 3D 09 00
constexpr unsigned lenientDevice = 4000256; // 3D 0A 00 and on
constexpr unsigned firstWitness = 256;      // 01 00 and on: what a device announces after the odd thing

class Heard : public CIAMCallback {
public:
    void OnIAm(BACSTAC_ADDRESS const&, unsigned const& device) override {
        const std::lock_guard lock(m_lock);
        m_devices.insert(device);
        m_changed.notify_all();
    }
    bool WaitFor(unsigned device) {
        std::unique_lock lock(m_lock);
        return m_changed.wait_for(lock, 10s, [&] { return m_devices.contains(device); });
    }
    bool Has(unsigned device) {
        const std::lock_guard lock(m_lock);
        return m_devices.contains(device);
    }

private:
    std::mutex m_lock; // guards all below
    std::condition_variable m_changed;
    std::set<unsigned> m_devices;
};

class AnnouncementsTest : public Fixture {
protected:
    AnnouncementsTest() : m_handle(m_client->RegisterIAMCallback(&m_heard)) {}
    ~AnnouncementsTest() override { m_client->UnregisterIAMCallback(m_handle); }

    static std::string Hex(unsigned octet) {
        static constexpr char digits[] = "0123456789ABCDEF";
        return {digits[octet >> 4 & 15], digits[octet & 15]};
    }
    static std::string WitnessOf(unsigned row) {
        const unsigned instance = firstWitness + row;
        return "10 00 C4 02 00 " + Hex(instance >> 8) + " " + Hex(instance) + " 22 05 C4 91 03 22 01 04";
    }
    // Devices that answer Who-Is with these datagrams.
    void AskAll(const std::vector<const char*>& answers) {
        for (unsigned row = 0; row < answers.size(); ++row) {
            SCOPED_TRACE(answers[row]);
            const unsigned host = 10 + row;
            m_peers.Open(host, FromText(std::string(answers[row]) + " | " + WitnessOf(row) + " ; -"));
            EXPECT_EQ(m_client->WhoIs(Address(host), 0, BACSTAC_MAX_INSTANCE), BACSTAC_OK);
            EXPECT_TRUE(m_heard.WaitFor(firstWitness + row));
            EXPECT_TRUE(m_client->FindDev(firstWitness + row));
        }
        const Outcome other = ReadProperty(TargetOf(GOOD_HOST));
        EXPECT_EQ(other.Result, "72.3");
    }

    Heard m_heard;
    int m_handle;
};

TEST_F(AnnouncementsTest, AreDroppedWhenTheyAreNone) {
    AskAll({
        "10 00",                                                            // nothing
        "10 00 C4 02 3D 09",                                                // cut in the device
        "10 00 C4 02 3D 09 00",                                             // no more than the device
        "10 00 C4 02 3D 09 00 22 05 C4",                                    // no segmentation
        "10 00 C4 02 3D 09 00 22 05 C4 91 03",                              // no vendor
        "10 00 C4 00 3D 09 00 22 05 C4 91 03 22 01 04",                     // analog-input
        "10 00 C5 05 00 02 3D 09 00 22 05 C4 91 03 22 01 04",               // device in five octets
        "10 00 0C 02 3D 09 00 22 05 C4 91 03 22 01 04",                     // device in a context tag
        "10 00 24 02 3D 09 00 22 05 C4 91 03 22 01 04",                     // a number for the device
        "10 00 C4 02 3D 09 00 75 05 00 54 65 6D 70 91 03 22 01 04",         // a text for the APDU size
        "10 00 C4 02 3D 09 00 22 05 C4 21 03 22 01 04",                     // a number for the segmentation
        "10 00 C4 02 3D 09 00 22 05 C4 91 03 44 3F 80 00 00",               // a real for the vendor
        "10 00 C4 02 3D 09 00 25 FE FF FF 05 C4 91 03 22 01 04",            // APDU size of 65535 octets
        "10 00 0E*50 C4 02 3D 09 00 22 05 C4 91 03 22 01 04",               // in brackets
        "00 04 07 00 C4 02 3D 09 00 22 05 C4 91 03 22 01 04",               // as a confirmed request
        "10 01 C4 02 3D 09 00 C4 02 3D 09 00 75 05 00 54 65 6D 70",         // I-Have
        "10 08 09 00 19 00 C4 02 3D 09 00",                                 // Who-Is with more behind
        "npdu 01 08 00 05 00 10 00 C4 02 3D 09 00 22 05 C4 91 03 22 01 04", // from no station of a network
        "npdu 02 00 10 00 C4 02 3D 09 00 22 05 C4 91 03 22 01 04",          // NPDU of version 2
        "raw 81 04 00 08 10 00 C4 02",                                      // forwarded, cut
    });
    EXPECT_FALSE(m_client->FindDev(wrongDevice));
    EXPECT_FALSE(m_heard.Has(wrongDevice));
}

TEST_F(AnnouncementsTest, AreTakenWhenOnlyTheirValuesAreOdd) {
    const std::vector<const char*> rows = {
        "10 00 C4 02 3D 0A 00 21 00 91 03 22 01 04",                           // APDU of no octets
        "10 00 C4 02 3D 0A 01 24 FF FF FF FF 91 03 22 01 04",                  // APDU of 4 GB
        "10 00 C4 02 3D 0A 02 22 05 C4 91 63 22 01 04",                        // segmentation 99
        "10 00 C4 02 3D 0A 03 22 05 C4 91 03 23 01 11 70",                     // vendor 70000
        "10 00 C4 02 3D 0A 04 22 05 C4 91 03 22 01 04 AA AA AA",               // octets behind
        "times=100 10 00 C4 02 3D 0A 05 22 05 C4 91 03 22 01 04",              // a hundred times
        "npdu 01 08 00 4D 01 07 10 00 C4 02 3D 0A 06 22 05 C4 91 03 22 01 04", // behind a router that never announced
                                                                               // itself
    };
    AskAll(rows);
    for (unsigned row = 0; row < rows.size(); ++row)
        EXPECT_TRUE(m_client->FindDev(lenientDevice + row)) << rows[row];
    EXPECT_EQ(m_client->GetDevAddr(lenientDevice + 6).Network, 77);
}

TEST_F(AnnouncementsTest, AFloodOfThemLeavesOtherWorkAlone) {
    constexpr unsigned burst = 500; // every ten milliseconds: 50,000 a second
    std::atomic<bool> stop{false};
    std::atomic<unsigned> sent{0};
    std::thread flood([&] {
        const int handle = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        const int yes = 1;
        setsockopt(handle, SOL_SOCKET, SO_BROADCAST, &yes, sizeof yes);
        sockaddr_in from{};
        from.sin_family = AF_INET;
        from.sin_addr.s_addr = htonl(m_block.Ip(200));
        from.sin_port = htons(m_block.Port());
        EXPECT_EQ(bind(handle, reinterpret_cast<const sockaddr*>(&from), sizeof from), 0);
        sockaddr_in to = from;
        to.sin_addr.s_addr = htonl(testing_support::LoopbackBlock::BROADCAST_IP);
        // Original broadcast; I-Am of device 500000 and on, 1476 octets, both segmentations, vendor 260
        Octets frame{0x81, 0x0B, 0x00, 0x14, 0x01, 0x00, 0x10, 0x00, 0xC4, 0x02,
                     0,    0,    0,    0x22, 0x05, 0xC4, 0x91, 0x03, 0x21, 0x04};
        while (!stop) {
            for (unsigned i = 0; i < burst; ++i) {
                const unsigned instance = 500000 + sent++;
                frame[10] = static_cast<std::uint8_t>(instance >> 16);
                frame[11] = static_cast<std::uint8_t>(instance >> 8);
                frame[12] = static_cast<std::uint8_t>(instance);
                sendto(handle, frame.data(), frame.size(), 0, reinterpret_cast<const sockaddr*>(&to), sizeof to);
            }
            std::this_thread::sleep_for(10ms);
        }
        close(handle);
    });
    const auto start = std::chrono::steady_clock::now();
    unsigned reads = 0;
    for (; std::chrono::steady_clock::now() - start < 10s; ++reads) {
        const Outcome outcome = ReadProperty(TargetOf(GOOD_HOST));
        ASSERT_EQ(outcome.Status, BACSTAC_OK) << "after " << reads;
    }
    stop = true;
    flood.join();
    EXPECT_GT(reads, 500U);
    EXPECT_GT(sent.load(), 50000U);
    std::vector<unsigned> devices;
    m_client->GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    EXPECT_GT(devices.size(), 1000U) << "they were heard";
    EXPECT_LE(devices.size(), bacnet::LiveDirectory::MAX_LEARNED) << "and are bounded";
}

} // namespace
} // namespace catalogue
