#include "module/history/ConsoleHistory.h"

#include "api/bacnet/BacGeneral.h"
#include "module/console/Globals.h"
#include "module/history/Clock.h"
#include "module/history/HistoryManager.h"

namespace {

class CManagerLock : public IModuleLock {
public:
    void Lock() override { BDCManager.Lock(); }
    void Unlock() override { BDCManager.Unlock(); }
};

class CHistoryStarter : public IHistoryStarter {
public:
    bool StartTransfer(bool manual, BACSTAC_DEV_OBJ_REF* request) override {
        return m_manager.StartTransfer(manual, request);
    }

private:
    // Never destroyed: a transfer may outlive the console.
    static HistoryServices Services() {
        static CManagerLock* const lock = new CManagerLock;
        static CSystemClock* const clock = new CSystemClock;
        return {*BACnet, BDCManager.GetDriver(), *lock, *clock};
    }

    CBACnetHistoryManager m_manager{&allPropPages.history, Services()};
};

} // namespace

std::unique_ptr<IHistoryStarter> NewHistoryStarter() {
    return std::make_unique<CHistoryStarter>();
}
