// CQilClient, one named connection to the kernel with a thread that receives the kernel's messages.
//
// A history transfer makes one, connects it, starts its thread and asks IsAlive() while it walks its devices: message 0
// means that the kernel shuts down. One thread owns a client and calls everything but IsAlive, which any thread may
// call; the receive thread calls Run and the handlers, and a handler may call StopThread.
//
// Operations return true exactly when the kernel answered 0, and keep its answer in GetLastResult. They neither log nor
// throw.
//
// The receive thread is never ended by force. StopThread waits for it and then lets go of it: what the thread still
// touches after that is its own, not the client. A subclass that overrides a handler calls StopThread in its own
// destructor, so that no handler runs on a half-destroyed object.
#pragma once

#include "api/kernel/QLProgramCore.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

class CQilClient {
public:
    // The kernel outlives the client, and the last wait of the receive thread (one second) if the client lets go of it.
    CQilClient(IQLProgramCore& kernel, std::string name);
    CQilClient(const CQilClient&) = delete;
    CQilClient& operator=(const CQilClient&) = delete;

    // Slots 0 to 19, an order that others rely on. A handler is called on the receive thread, once for each message
    // with its code, and reads the message with GetMessageBytes. Codes without a handler are ignored.
    virtual ~CQilClient();   // StopThread(10000), Disconnect()
    virtual void OnExit() {} // code 0; the stop flag is set behind the call
    virtual void OnMessage1() {}
    virtual void OnMessage2() {}
    virtual void OnMessage3() {}
    virtual void OnMessage7() {}
    virtual void OnMessage8() {}
    virtual void OnMessage9() {}
    virtual void OnMessage10() {}
    virtual void OnMessage11() {}
    virtual void OnMessage13() {}
    virtual void OnMessage14() {}
    virtual void OnMessage15() {}
    virtual void OnMessage16() {}
    virtual void OnMessage17() {}
    virtual void OnMessage121() {}
    virtual void OnMessage122() {}
    virtual void OnMessage123() {}
    virtual void OnMessage124() {}
    virtual void Run(); // the receive loop; it ends once the stop flag is set

    // True at once when connected already.
    bool Connect();
    // True at once when not connected; the handle is gone whatever the kernel answers.
    bool Disconnect();
    // False when the station is passive and when the kernel does not answer.
    bool IsStationActive();
    // Name of the local station into a buffer of QL_STATION_NAME_SIZE bytes, which is cleared first.
    bool GetStationName(char* buffer);
    // Clears the definition and sets its size word before it asks.
    bool ReadTagDefinition(std::uint32_t tagId, TagDefinition& definition);
    // Id, with the station in its high 16 bits, of "NAME" or "STATION:NAME". A name of QL_TAG_NAME_SIZE bytes and more
    // is cut.
    bool GetTagIdByName(const std::string& name, std::uint32_t& tagId);

    // True at once when there is a thread; false when none can be created.
    bool StartThread();
    // Sets the stop flag, waits for the thread at most so many milliseconds (0xFFFFFFFF: without limit) and lets go of
    // it, in any case behind the return of a handler that is running. Without a thread it returns at once; on the
    // receive thread itself it does not wait.
    void StopThread(std::uint32_t milliseconds);
    // True while the stop flag is clear.
    bool IsAlive() const;

    // For handlers: the message that is being handled. Bytes that it did not fill are those of the message before it.
    std::uint16_t GetMessageCode() const;
    const unsigned char* GetMessageBytes() const; // QL_MESSAGE_SIZE bytes

    IQLProgramCore& GetKernel() const { return m_kernel; }
    std::uint8_t GetHandle() const; // 0 when not connected
    QLResult GetLastResult() const { return m_lastResult; }

private:
    struct Shared;

    std::shared_ptr<Shared> GetShared() const;
    void Dispatch(std::uint16_t code);

    IQLProgramCore& m_kernel;
    const std::string m_name;
    QLResult m_lastResult = QL_OK;
    mutable std::mutex m_mutex;
    std::thread m_thread;              // m_mutex
    std::shared_ptr<Shared> m_shared;  // m_mutex; another one after the receive thread was let go of
    std::shared_ptr<Shared> m_leaving; // m_mutex; of a thread whose handler let go of it
};
