// Who-Is, I-Am and who hears of it.
#include "api/bacnet/Log.h"
#include "platform/stack/client/IAmCallbacks.h"
#include "tests/unit/stack/client/ClientFixture.h"

#include <condition_variable>
#include <thread>

namespace {

// Collects announcements, and lets the test wait for a number of them.
class Listener : public CIAMCallback {
public:
    void OnIAm(BACSTAC_ADDRESS const& address, unsigned const& device) override {
        const std::lock_guard lock(m_lock);
        Heard += std::to_string(device) + "@" + std::to_string(address.Mac[address.MacLength - 3]) + "/" +
                 std::to_string(address.Network) + " ";
        Thread = std::this_thread::get_id();
        ++m_count;
        m_changed.notify_all();
    }
    bool WaitFor(int count) {
        std::unique_lock lock(m_lock);
        return m_changed.wait_for(lock, std::chrono::seconds(5), [&] { return m_count >= count; });
    }
    std::string Heard;
    std::thread::id Thread;

private:
    std::mutex m_lock;
    std::condition_variable m_changed;
    int m_count = 0;
};

// Unconfirmed request, I-Am: device 1234, 480 octets, no segmentation, vendor 260
constexpr const char* iAm = "10 00 C4 02 00 04 D2 22 01 E0 91 03 22 01 04";

class WhoIsClientTest : public ClientFixture {
protected:
    std::string Broadcasts() {
        std::string text;
        for (const auto& sent : m_link->TakeSent())
            if (sent.Destination.Empty())
                text += "[" + ToHex(sent.Npdu) + "]";
        return text;
    }
};

TEST_F(WhoIsClientTest, GoesWhereTheDestinationSays) {
    const BACSTAC_ADDRESS local{};
    const BACSTAC_ADDRESS remote{1, 0, 5, {}, 0};
    const BACSTAC_ADDRESS everybody{1, 0, 65535, {}, 0};
    EXPECT_EQ(m_client->WhoIs(local, 0, 4194303), BACSTAC_OK);
    EXPECT_EQ(Broadcasts(), "[01 00 10 08]");
    EXPECT_EQ(m_client->WhoIs(local, 1, 300), BACSTAC_OK);
    EXPECT_EQ(Broadcasts(), "[01 00 10 08 09 01 1A 01 2C]");
    EXPECT_EQ(m_client->WhoIs(everybody, 0, 4194303), BACSTAC_OK);
    EXPECT_EQ(Broadcasts(), "[01 20 FF FF 00 FF 10 08]");
    EXPECT_EQ(m_client->WhoIs(remote, 0, 4194303), BACSTAC_OK);
    EXPECT_EQ(Broadcasts(), "[01 20 00 05 00 FF 10 08]");
    EXPECT_EQ(m_client->WhoIs(local, 5, 4), BACSTAC_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(m_client->WhoIs(Address(3), 0, 4194303), BACSTAC_OK);
    const auto sent = m_link->TakeSent();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].Destination, ScriptedLink::Mac(3)) << "one station";
}

TEST_F(WhoIsClientTest, LeavesOutNetworksThatAreSwitchedOff) {
    const BACSTAC_ADDRESS local{};
    const BACSTAC_ADDRESS remote{1, 0, 5, {}, 0};
    const BACSTAC_ADDRESS everybody{1, 0, 65535, {}, 0};
    EXPECT_TRUE(m_client->DisableNetwork(5));
    EXPECT_EQ(m_client->WhoIs(remote, 0, 4194303), BACSTAC_STATUS_DISABLED);
    EXPECT_EQ(Broadcasts(), "");
    EXPECT_EQ(m_client->WhoIs(everybody, 0, 4194303), BACSTAC_OK);
    EXPECT_EQ(Broadcasts(), "[01 20 FF FF 00 FF 10 08]");
    EXPECT_TRUE(m_client->DisableNetwork(0));
    EXPECT_EQ(m_client->WhoIs(local, 0, 4194303), BACSTAC_STATUS_DISABLED);
    EXPECT_EQ(m_client->WhoIs(everybody, 0, 4194303), BACSTAC_STATUS_DISABLED) << "its only port hears it too";
    EXPECT_EQ(m_client->WhoIs(Address(3), 0, 4194303), BACSTAC_STATUS_DISABLED);
    EXPECT_TRUE(m_link->TakeSent().empty());
    EXPECT_TRUE(m_client->EnableNetwork(0));
    EXPECT_EQ(m_client->WhoIs(local, 0, 4194303), BACSTAC_OK);
    EXPECT_FALSE(m_client->EnableNetwork(65535)) << "all networks are none";
    EXPECT_FALSE(m_client->DisableNetwork(65535));
    EXPECT_TRUE(m_client->IsNetworkEnabled(4711)) << "also one that nobody has seen";
}

TEST_F(WhoIsClientTest, TellsTheListenersOnAnotherThreadAndLearns) {
    Listener first;
    Listener second;
    const int one = m_client->RegisterIAMCallback(&first);
    const int two = m_client->RegisterIAMCallback(&second);
    EXPECT_EQ(m_client->RegisterIAMCallback(nullptr), -1);
    EXPECT_NE(one, two);
    m_link->Deliver(7, Hex(iAm), true);
    ASSERT_TRUE(first.WaitFor(1));
    ASSERT_TRUE(second.WaitFor(1));
    EXPECT_EQ(first.Heard, "1234@7/0 ");
    EXPECT_NE(first.Thread, std::this_thread::get_id());
    EXPECT_EQ(m_client->GetDevAddr(1234), Address(7));
    EXPECT_EQ(m_client->GetDevVendorId(1234), 260U);

    m_client->UnregisterIAMCallback(one);
    m_client->UnregisterIAMCallback(one);
    m_client->UnregisterIAMCallback(-1);
    m_client->UnregisterIAMCallback(999);
    m_link->Deliver(7, Hex(iAm)); // directed ones count as well
    ASSERT_TRUE(second.WaitFor(2));
    EXPECT_EQ(first.Heard, "1234@7/0 ");
    m_client->UnregisterIAMCallback(two);
}

TEST_F(WhoIsClientTest, LearnsDevicesBehindRouters) {
    Listener listener;
    const int handle = m_client->RegisterIAMCallback(&listener);
    // NPDU: source network 9, station 0A 0B 0C; I-Am
    Octets npdu = Hex("01 08 00 09 03 0A 0B 0C");
    for (const std::uint8_t octet : Hex(iAm))
        npdu.push_back(octet);
    m_link->Deliver(7, npdu, true, true);
    ASSERT_TRUE(listener.WaitFor(1));
    m_client->UnregisterIAMCallback(handle);
    EXPECT_EQ(m_client->GetDevAddr(1234), (BACSTAC_ADDRESS{1, 0, 9, {10, 11, 12}, 3}));
    std::map<unsigned short, bool> networks;
    m_client->GetNetLst(networks);
    EXPECT_EQ(networks, (std::map<unsigned short, bool>{{9, true}}));
    std::vector<unsigned> devices;
    m_client->GetDevLst(devices, 9);
    EXPECT_EQ(devices, std::vector<unsigned>{1234});
}

TEST_F(WhoIsClientTest, KeepsTheKnownDeviceOnADuplicateAndLogsBothOnce) {
    class Sink : public CQilBAC_ErrLog::ISink {
    public:
        void OnLine(CQilBAC_ErrLog::KIND kind, const std::string& text) override {
            const std::lock_guard lock(m_lock);
            if (kind == CQilBAC_ErrLog::KIND_ERROR)
                Lines.push_back(text);
        }
        std::vector<std::string> Lines;

    private:
        std::mutex m_lock;
    };
    const auto sink = std::make_shared<Sink>();
    CQilBAC_ErrLog::Instance().SetSink(sink);
    Listener listener;
    const int handle = m_client->RegisterIAMCallback(&listener);
    // Each pair is told once, however often its devices announce themselves.
    for (const std::uint8_t last : Hex("07 08 08 09 07 08 09"))
        m_link->Deliver(last, Hex(iAm), true);
    ASSERT_TRUE(listener.WaitFor(7));
    m_client->UnregisterIAMCallback(handle);
    CQilBAC_ErrLog::Instance().SetSink(nullptr);
    EXPECT_EQ(m_client->GetDevAddr(1234), Address(7));
    EXPECT_EQ(sink->Lines,
              (std::vector<std::string>{
                  "Device instance 1234 is used twice: 127.0.0.7:47808 is kept, 127.0.0.8:47808 is ignored",
                  "Device instance 1234 is used twice: 127.0.0.7:47808 is kept, 127.0.0.9:47808 is ignored"}));
}

TEST_F(WhoIsClientTest, IgnoresDamagedAnnouncements) {
    Listener listener;
    const int handle = m_client->RegisterIAMCallback(&listener);
    const Octets whole = Hex(iAm);
    for (std::size_t length = 0; length < whole.size(); ++length)
        m_link->Deliver(7, Octets(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)), true);
    m_link->Deliver(7, whole, true);
    ASSERT_TRUE(listener.WaitFor(1));
    EXPECT_EQ(listener.Heard, "1234@7/0 ");
    m_client->UnregisterIAMCallback(handle);
}

TEST(IAmCallbacksTest, UnregisteringWaitsForTheCallUnderWay) {
    class Slow : public CIAMCallback {
    public:
        void OnIAm(BACSTAC_ADDRESS const&, unsigned const&) override {
            Entered = true;
            while (!Leave)
                std::this_thread::yield();
            Left = true;
        }
        std::atomic<bool> Entered{false};
        std::atomic<bool> Leave{false};
        std::atomic<bool> Left{false};
    };
    bacnet::IAmCallbacks callbacks;
    Slow slow;
    const int handle = callbacks.Register(&slow);
    std::thread notifier([&] { callbacks.Notify({}, 1); });
    while (!slow.Entered)
        std::this_thread::yield();
    std::thread releaser([&] { slow.Leave = true; });
    callbacks.Unregister(handle);
    EXPECT_TRUE(slow.Left);
    notifier.join();
    releaser.join();
}

TEST(IAmCallbacksTest, MayUnregisterItselfOrAnotherFromWithin) {
    class Quitter : public CIAMCallback {
    public:
        Quitter(bacnet::IAmCallbacks& callbacks) : m_callbacks(callbacks) {}
        void OnIAm(BACSTAC_ADDRESS const&, unsigned const&) override {
            ++Calls;
            for (const int handle : Handles)
                m_callbacks.Unregister(handle);
        }
        std::vector<int> Handles;
        int Calls = 0;

    private:
        bacnet::IAmCallbacks& m_callbacks;
    };
    bacnet::IAmCallbacks callbacks;
    Quitter quitter(callbacks);
    Quitter other(callbacks);
    quitter.Handles = {callbacks.Register(&quitter), callbacks.Register(&other)};
    callbacks.Notify({}, 1);
    callbacks.Notify({}, 1);
    EXPECT_EQ(quitter.Calls, 1);
    EXPECT_EQ(other.Calls, 0) << "not even in the round that unregistered it";
}

} // namespace
