// Callbacks of the BACnet access library.
#pragma once

#include "api/bacnet/Export.h"
#include "api/bacnet/Types.h"

// Drives the wait of AsyncReadProperty. All calls come on the thread that called AsyncReadProperty.
class BCN_API CAsyncCallBack {
public:
    virtual ~CAsyncCallBack();
    // Once, when the request has been sent.
    virtual void OnWaitStart() = 0;
    // Repeatedly while the request is pending, every 20 ms at the most; 0 gives the wait up.
    virtual int OnWaitPoll() = 0;
    // Once, when the wait is over, whatever its result.
    virtual void OnWaitEnd() = 0;
};

// Receives the I-Am of every device, on a thread of the library. The receiver returns quickly and hands over to its own
// thread; it may call UnregisterIAMCallback from here only for another handle.
class BCN_API CIAMCallback {
public:
    virtual ~CIAMCallback();
    virtual void OnIAm(BACSTAC_ADDRESS const& address, unsigned const& deviceInstance) = 0;
};

class BCN_API CIAMCallbackHandler {
public:
    virtual ~CIAMCallbackHandler();
    // Handle for UnregisterIAMCallback, -1 when callback is null. The callback stays the caller's.
    virtual int RegisterIAMCallback(CIAMCallback* callback) = 0;
    // On return no call of this callback is under way and none will come. -1 and unknown handles are harmless.
    virtual void UnregisterIAMCallback(int handle) = 0;
};
