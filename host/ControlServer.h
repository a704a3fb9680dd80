// The running instance's end of the control socket: a Unix socket, mode 0600, in the data folder.
//
// One thread accepts and reads; each complete request is answered on a worker thread of its own. Whatever clients do,
// memory and time stay bounded: a request has a greatest size and must arrive within a time, a reply must be taken
// within a time, and when too many connections wait for their request the oldest goes. A request of another user is
// refused.
#pragma once

#include "host/ControlProtocol.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

// What a handler may do with its client while it works. Used on the worker's thread.
class IControlClient {
public:
    virtual ~IControlClient() = default;
    // Sends a JSON document as a row. False: the client has gone or takes too long; the handler ends.
    virtual bool Row(std::string_view json) = 0;
    // True when the client has gone or the server stops; the handler ends.
    virtual bool IsCancelled() = 0;
};

class CControlServer {
public:
    using Handler = std::function<ControlReply(const ControlRequest&, IControlClient&)>;

    struct Limits {
        std::size_t waitingConnections = 32; // whose request is not complete yet
        std::size_t workers = 8;             // requests that are answered at once; more are told to come again
        std::size_t requestBytes = MAX_CONTROL_REQUEST;
        std::chrono::milliseconds requestTime{5000}; // from the connection to the complete request
        std::chrono::milliseconds replyTime{10000};  // for the client to take a block of the reply
    };

    CControlServer();
    ~CControlServer(); // stops

    // Makes the socket FOLDER/control.sock; one that a dead instance left is replaced, so the caller holds the folder's
    // lock. handler is called from many threads at once.
    bool Start(const std::string& folder, Handler handler, const Limits& limits, std::string& error);
    // On return no handler runs and the socket is gone. Handlers see IsCancelled. Harmless when not started.
    void Stop();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};
