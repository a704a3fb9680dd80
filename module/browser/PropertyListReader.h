// Reads the properties of one object on a thread of its own and shows them as they come: one multiple read if the
// device can do it, else one read a property.
//
// All operations are for the console thread. The thread of a read touches nothing of the reader: it posts rows, which
// belong to their read and are dropped once it was stopped. A read that hangs in a device is left behind.
#pragma once

#include "api/bacnet/Types.h"
#include "module/browser/GuiQueue.h"
#include "module/console/Thread.h"

#include <cstdint>
#include <memory>
#include <string>

class CBacGeneral;

struct PropertyRow {
    static constexpr std::int64_t ERROR_ID = -1; // no property: these have 32 bits

    std::string name;
    std::string value; // UTF-8, as the device gave it
    std::int64_t id = ERROR_ID;

    friend bool operator==(const PropertyRow&, const PropertyRow&) = default;
};

// The list and the strip over it. All calls come on the console thread.
class IPropertyListView {
public:
    virtual ~IPropertyListView() = default;
    // Disables the list and shows the strip, its text empty and not cancelled.
    virtual void BeginReading(const std::string& title, unsigned range) = 0;
    virtual void SetSource(const std::string& title, unsigned range) = 0;
    virtual void SetProperty(const std::string& name, unsigned position) = 0;
    virtual void AddRow(const PropertyRow& row) = 0;
    virtual void ClearRows() = 0;
    // Hides the strip, enables the list, and selects the row of the property that was selected last.
    virtual void EndReading() = 0;
};

class CPropertyListReader : public CThread {
public:
    static constexpr unsigned MAX_PROPERTIES = 100;

    // All three outlive the reader; a read that was left behind holds the queue.
    CPropertyListReader(CBacGeneral& bacnet, IPropertyListView& view, std::shared_ptr<IGuiQueue> queue);
    ~CPropertyListReader() override;

    // Ends the read that is under way and starts one of the object. Device 0xFFFFFFFF, or an object without instance,
    // only ends.
    void StartReading(unsigned device, const BACSTAC_OBJECT_ID& object);
    // Waits a moment for the thread, then goes on without it.
    void StopReading();
    // No row comes any more; the thread ends as soon as it can.
    void RequestStop() override;
    // The operator's wish: the list is emptied as soon as the device lets the thread go.
    void Cancel();
    bool IsReading() const;

protected:
    Body GetBody() override;

private:
    struct Reading;
    class CWork;

    static void Finish(Reading& reading);

    CBacGeneral& m_bacnet;
    IPropertyListView& m_view;
    const std::shared_ptr<IGuiQueue> m_queue;
    std::shared_ptr<Reading> m_reading; // the latest
};
