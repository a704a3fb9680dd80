// Many ReadProperty requests outstanding at once, from one thread. All functions and completions run on the thread that
// owns the reader; nothing is allocated for a request.
//
//   AsyncReader reader(client);
//   for (MyRead& read : reads) reader.Submit(device, read);
//   while (reader.Outstanding() != 0) reader.Poll(100);
#pragma once

#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/transaction/AsyncCaller.h"

namespace bacnet {

// One read. The owner derives from it, sets Target and Contents, submits it, and leaves it alone until OnRead; from
// there it may be submitted again.
class AsyncRead : private AsyncRequest {
public:
    PropertyTarget Target;
    BACSTAC_PROPERTY_CONTENTS Contents{}; // the owner's buffer; the value after BACSTAC_OK
    BACSTAC_STATUS Status = BACSTAC_OK;
    BACSTAC_ERROR Error{};

    // The end, good or bad, exactly once for each Submit that returned BACSTAC_OK.
    virtual void OnRead() = 0;

private:
    friend class AsyncReader;
    void OnDone(const CallResult& result) final;

    static constexpr std::size_t REQUEST_SIZE = 32;
    BacnetClient* m_client = nullptr;
    BacnetClient::Peer m_peer;
    std::uint8_t m_request[REQUEST_SIZE];
};

class AsyncReader {
public:
    explicit AsyncReader(BacnetClient& client) : m_client(client), m_caller(client.Transactions()) {}

    // Not BACSTAC_OK when the read cannot be sent (an unknown or disabled device): OnRead is not called then.
    BACSTAC_STATUS Submit(unsigned device, AsyncRead& read);
    // Sends, receives and completes; see AsyncCaller::Poll.
    std::size_t Poll(int timeoutMs) { return m_caller.Poll(timeoutMs); }
    std::size_t Outstanding() const { return m_caller.Outstanding(); }
    // Ends all with BACSTAC_STATUS_CANCELLED, as the destructor does.
    void Cancel() { m_caller.Cancel(); }

private:
    BacnetClient& m_client;
    AsyncCaller m_caller;
};

} // namespace bacnet
