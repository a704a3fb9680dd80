// CBDCManager, through which the driver runs the console. All of it may be called from any thread of the driver; only
// Start, WaitEnd and Lock wait.
//
// The driver loads allPropPages first, then calls Start, later SetupNetworks and what else it needs, and ends with
// InitiateShutdownW and WaitEnd. What it asks for is posted to the console thread as a private message (Messages.h) and
// dropped while the console is not running.
//
// Globals.h has the one instance that the module uses, BDCManager.
#pragma once

#include "module/console/Export.h"
#include "module/console/TriggerTags.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

class CDriver;
class QComboBox;
struct BACSTAC_DEV_OBJ_REF;
struct BACSTAC_OBJECT_ID;

class BDC_API CBDCManager {
public:
    CBDCManager();
    // Copies the fields; the copy has a lock of its own.
    CBDCManager(const CBDCManager& other);
    CBDCManager& operator=(const CBDCManager& other);
    ~CBDCManager();

    // Starts the console and waits until it is built, for at most timeout milliseconds (0xFFFFFFFF: without limit, 0:
    // not at all). The console counts as running afterwards in any case, and a console that is late is finished in the
    // background. Nothing happens while it runs. driver must outlive the run. On the thread of the host's own
    // QApplication events are served meanwhile.
    void Start(CDriver* driver, std::uint32_t timeout);
    // Waits for the end of the console that InitiateShutdownW asked for. False when the timeout passes: the console is
    // abandoned then. It does not run afterwards in any case, and can be started again.
    bool WaitEnd(std::uint32_t timeout);
    bool IsRunning() const;
    void InitiateShutdownW();
    // The driver given to the last Start. Not to be called before that.
    CDriver& GetDriver();

    // The one lock of the module, recursive. It guards allPropPages and the building and tearing down of the console's
    // tabs.
    void Lock();
    void Unlock();

    // Posts to the console dialog. The request in lParam of a WM_CONSOLE_HISTORY belongs to the message.
    void PostMessageW(unsigned message, std::uintptr_t wParam, std::intptr_t lParam);
    void StartTimeSync();
    // Takes ownership of the request in every case. It comes from NewTransferRequest; null means all trend logs.
    void StartHistoryTransfer(BACSTAC_DEV_OBJ_REF* request);
    // Registers the control tags of the networks; called when the driver's BACnet side is up.
    void SetupNetworks();
    void ObjectChanged(unsigned device, const BACSTAC_OBJECT_ID& object);

    // A tag's new value (TriggerTags.h). Short: it costs the driver one look-up and at most one post.
    void OnTagChange(std::uint32_t tagId, double value);
    bool RegisterTriggerTag(const char* name, const char* tagName, unsigned message, std::int32_t lParam);
    // Fills the list with the tags that can be triggers, behind the row "<None>". Only on the console thread.
    void FillTagList(QComboBox& combo);
    // The names of these tags, in the kernel's order.
    std::vector<std::string> EnumDigitalTags();

protected:
    // The trigger of this name in the table, or the table's end. Valid until the next registration.
    CTriggerTable::Map::iterator FindTriggerTag(const char* name);

private:
    std::atomic<bool> m_running{false};
    std::atomic<CDriver*> m_driver{nullptr}; // not owned
    std::recursive_mutex m_lock;
    CTriggerTable m_triggers;
    std::atomic_flag m_starting; // set for the length of a Start
};

// A request for StartHistoryTransfer: one object, or with instance 0xFFFFFFFF all trends of the device. Throws
// std::bad_alloc.
BDC_API BACSTAC_DEV_OBJ_REF* NewTransferRequest(std::uint32_t device, std::uint32_t objectType,
                                                std::uint32_t objectInstance);
