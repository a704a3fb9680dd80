// What a history transfer works with. All of it outlives every thread of a transfer; WaitForTransfers tells when the
// last one has ended.
#pragma once

class CBacGeneral;
class CDriver;
class IClock;

// The module lock, which guards the settings.
class IModuleLock {
public:
    virtual ~IModuleLock() = default;
    virtual void Lock() = 0;
    virtual void Unlock() = 0;
};

struct HistoryServices {
    CBacGeneral& bacnet;
    CDriver& driver;
    IModuleLock& lock;
    const IClock& clock;
};
