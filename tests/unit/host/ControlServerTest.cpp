#include "host/ControlServer.h"
#include "host/ControlClient.h"
#include "host/ControlSocket.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

using namespace std::chrono_literals;

namespace {

void NoRows(const std::string&) {
    FAIL() << "a row was not expected";
}

// A connection that says what it likes.
class CRawClient {
public:
    explicit CRawClient(const std::string& folder) : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        EXPECT_EQ(WithControlAddress(folder, m_socket.Get(), connect), 0);
    }
    void Send(const std::string& bytes) { SendAll(m_socket.Get(), bytes, ControlClock::now() + 5s); }
    // Everything until the server closes.
    std::string ReadToEnd() {
        std::string text;
        char block[4096];
        while (WaitFor(m_socket.Get(), POLLIN, ControlClock::now() + 20s)) {
            const ssize_t count = recv(m_socket.Get(), block, sizeof block, 0);
            if (count <= 0)
                return text;
            text.append(block, static_cast<std::size_t>(count));
        }
        ADD_FAILURE() << "the server did not close";
        return text;
    }
    bool IsClosed() {
        char byte = 0;
        return recv(m_socket.Get(), &byte, 1, MSG_PEEK | MSG_DONTWAIT) == 0;
    }

private:
    CFileDescriptor m_socket;
};

class ControlServer : public testing::Test {
protected:
    // A handler that uses a test's own variables is stopped by the test's end.
    void Start(CControlServer::Handler handler) {
        std::string error;
        ASSERT_TRUE(m_server.Start(m_folder.Path(), std::move(handler), m_limits, error)) << error;
    }
    void StartEcho() {
        Start([](const ControlRequest& request, IControlClient&) {
            return ControlReply{EXIT_DONE, {}, "\"" + request.command + "\""};
        });
    }
    ControlReply Ask(const std::string& command) {
        return CControlClient::Ask(m_folder.Path(), {command, {}}, NoRows, 20s);
    }

    CTempFolder m_folder;
    CControlServer::Limits m_limits;
    CControlServer m_server;
};

} // namespace

TEST_F(ControlServer, AnswersARequest) {
    StartEcho();
    const ControlReply reply = Ask("status");
    EXPECT_EQ(reply.code, EXIT_DONE);
    EXPECT_EQ(reply.error, "");
    EXPECT_EQ(reply.result, "\"status\"");
}

TEST_F(ControlServer, SocketIsForTheUserOnlyAndGoesWithTheServer) {
    StartEcho();
    struct stat status {};
    ASSERT_EQ(stat(m_folder.File("control.sock").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    m_server.Stop();
    EXPECT_FALSE(m_folder.Has("control.sock"));
    const ControlReply reply = Ask("status");
    EXPECT_EQ(reply.code, EXIT_FAILED);
    EXPECT_EQ(reply.error, m_folder.Path() + ": no instance is running here");
}

TEST_F(ControlServer, ReplacesTheSocketOfADeadInstance) {
    {
        const CFileDescriptor dead(socket(AF_UNIX, SOCK_STREAM, 0));
        ASSERT_EQ(WithControlAddress(m_folder.Path(), dead.Get(), bind), 0);
    }
    EXPECT_EQ(Ask("status").error, m_folder.Path() + ": no instance is running here");
    StartEcho();
    EXPECT_EQ(Ask("status").code, EXIT_DONE);
}

TEST_F(ControlServer, WorksInAFolderWhosePathIsLongerThanASocketAddress) {
    std::string path = m_folder.Path();
    while (path.size() < 300) {
        path += "/a folder with a long name";
        std::filesystem::create_directory(path);
    }
    std::string error;
    ASSERT_TRUE(m_server.Start(
        path, [](const ControlRequest&, IControlClient&) { return ControlReply{}; }, m_limits, error))
        << error;
    EXPECT_EQ(CControlClient::Ask(path, {"status", {}}, NoRows).code, EXIT_DONE);
}

TEST_F(ControlServer, GivesRowsInOrderBeforeTheReply) {
    Start([](const ControlRequest&, IControlClient& client) {
        for (int i = 0; i < 50000; ++i) {
            if (!client.Row(std::to_string(i)))
                return ControlReply{EXIT_FAILED, "client lost", {}};
        }
        return ControlReply{EXIT_PARTLY, "as far as it goes", {}};
    });
    int expected = 0;
    const ControlReply reply = CControlClient::Ask(m_folder.Path(), {"query", {}}, [&](const std::string& row) {
        EXPECT_EQ(row, std::to_string(expected));
        ++expected;
    });
    EXPECT_EQ(expected, 50000);
    EXPECT_EQ(reply.code, EXIT_PARTLY);
    EXPECT_EQ(reply.error, "as far as it goes");
}

TEST_F(ControlServer, TellsWhatIsWrongWithABadRequest) {
    StartEcho();
    CRawClient client(m_folder.Path());
    client.Send("GET / HTTP/1.1\r\n");
    EXPECT_EQ(client.ReadToEnd(), "{\"code\":2,\"error\":\"bad request: not JSON\"}\n");
}

TEST_F(ControlServer, ARequestMayComeInPieces) {
    StartEcho();
    CRawClient client(m_folder.Path());
    for (const char byte : EncodeRequest({"status", {}}))
        client.Send(std::string(1, byte));
    EXPECT_EQ(client.ReadToEnd(), "{\"code\":0,\"result\":\"status\"}\n");
}

TEST_F(ControlServer, RefusesARequestThatIsTooLong) {
    m_limits.requestBytes = 1000;
    StartEcho();
    CRawClient endless(m_folder.Path());
    endless.Send(std::string(2000, 'x'));
    EXPECT_EQ(endless.ReadToEnd(), "{\"code\":1,\"error\":\"request is longer than 1000 bytes\"}\n");
    EXPECT_EQ(Ask("status").code, EXIT_DONE);
}

TEST_F(ControlServer, LetsGoOfAClientThatSendsNothing) {
    m_limits.requestTime = 50ms;
    StartEcho();
    CRawClient silent(m_folder.Path());
    silent.Send("{\"command\":");
    EXPECT_EQ(silent.ReadToEnd(), "");
}

TEST_F(ControlServer, AnswersWhileManyClientsSendNothing) {
    m_limits.requestTime = 60s;
    m_limits.waitingConnections = 4;
    StartEcho();
    std::vector<std::unique_ptr<CRawClient>> silent;
    for (int i = 0; i < 20; ++i)
        silent.push_back(std::make_unique<CRawClient>(m_folder.Path()));
    EXPECT_EQ(Ask("status").code, EXIT_DONE);
    EXPECT_TRUE(silent.front()->IsClosed()) << "the oldest made room";
}

TEST_F(ControlServer, LetsGoOfAClientThatDoesNotTakeItsReply) {
    m_limits.replyTime = 50ms;
    std::atomic<int> rows{0};
    std::atomic<bool> isLost{false};
    Start([&](const ControlRequest& request, IControlClient& client) {
        if (request.command == "status")
            return ControlReply{};
        while (client.Row("\"" + std::string(1000, 'x') + "\""))
            ++rows;
        isLost = true;
        return ControlReply{};
    });
    CRawClient deaf(m_folder.Path());
    deaf.Send(EncodeRequest({"query", {}}));
    EXPECT_EQ(Ask("status").code, EXIT_DONE);
    const auto deadline = ControlClock::now() + 20s;
    while (!isLost && ControlClock::now() < deadline)
        std::this_thread::sleep_for(1ms);
    EXPECT_TRUE(isLost);
    m_server.Stop();
    EXPECT_LT(rows, 10000) << "more was kept for the client than a socket's buffer and one block";
}

TEST_F(ControlServer, TellsClientsToComeAgainWhenAllWorkersAreBusy) {
    m_limits.workers = 2;
    std::mutex lock;
    std::condition_variable changed;
    int begun = 0;
    bool mayEnd = false;
    Start([&](const ControlRequest&, IControlClient&) {
        std::unique_lock guard(lock);
        ++begun;
        changed.notify_all();
        changed.wait(guard, [&] { return mayEnd; });
        return ControlReply{};
    });
    CRawClient first(m_folder.Path());
    CRawClient second(m_folder.Path());
    first.Send(EncodeRequest({"a", {}}));
    second.Send(EncodeRequest({"b", {}}));
    {
        std::unique_lock guard(lock);
        ASSERT_TRUE(changed.wait_for(guard, 20s, [&] { return begun == 2; }));
    }
    EXPECT_EQ(Ask("c").error, "too many requests at once, try again");
    {
        const std::lock_guard guard(lock);
        mayEnd = true;
    }
    changed.notify_all();
    EXPECT_EQ(first.ReadToEnd(), "{\"code\":0}\n");
    EXPECT_EQ(second.ReadToEnd(), "{\"code\":0}\n");
    m_server.Stop();
}

TEST_F(ControlServer, StopEndsAHandlerThatWaits) {
    std::atomic<bool> isRunning{false};
    Start([&](const ControlRequest&, IControlClient& client) {
        isRunning = true;
        while (!client.IsCancelled())
            std::this_thread::sleep_for(1ms);
        return ControlReply{};
    });
    CRawClient client(m_folder.Path());
    client.Send(EncodeRequest({"wait", {}}));
    while (!isRunning)
        std::this_thread::sleep_for(1ms);
    m_server.Stop();
    client.ReadToEnd(); // whether the reply still came through or not
}

TEST_F(ControlServer, AHandlerSeesThatItsClientHasGone) {
    std::atomic<bool> hasSeen{false};
    Start([&](const ControlRequest&, IControlClient& client) {
        while (!client.IsCancelled())
            std::this_thread::sleep_for(1ms);
        hasSeen = true;
        return ControlReply{};
    });
    {
        CRawClient client(m_folder.Path());
        client.Send(EncodeRequest({"wait", {}}));
    }
    const auto deadline = ControlClock::now() + 20s;
    while (!hasSeen && ControlClock::now() < deadline)
        std::this_thread::sleep_for(1ms);
    EXPECT_TRUE(hasSeen);
    m_server.Stop();
}

TEST_F(ControlServer, ServesManyClientsAtOnce) {
    m_limits.workers = 64;
    StartEcho();
    std::atomic<int> answered{0};
    std::vector<std::thread> clients;
    for (int i = 0; i < 8; ++i) {
        clients.emplace_back([&, i] {
            for (int j = 0; j < 50; ++j) {
                const std::string command = std::to_string(i) + "-" + std::to_string(j);
                answered += Ask(command).result == "\"" + command + "\"" ? 1 : 0;
            }
        });
    }
    for (std::thread& client : clients)
        client.join();
    EXPECT_EQ(answered, 400);
}

TEST_F(ControlServer, ClientReportsAnInstanceThatDoesNotAnswer) {
    std::atomic<bool> mayEnd{false};
    Start([&](const ControlRequest&, IControlClient&) {
        while (!mayEnd)
            std::this_thread::sleep_for(1ms);
        return ControlReply{};
    });
    EXPECT_EQ(CControlClient::Ask(m_folder.Path(), {"status", {}}, NoRows, 50ms).error, "the instance does not answer");
    mayEnd = true;
    m_server.Stop();
}
