#include "module/browser/PropertyListReader.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Dir.h"
#include "api/bacnet/PropertyValue.h"
#include "api/bacnet/Requests.h"
#include "base/HeapWatch.h"
#include "module/browser/ContentsRoom.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace {

// The window stands still for no longer than this, even when the device hangs.
constexpr std::uint32_t STOP_WAIT = 20; // ms

constexpr unsigned STRIP_RANGE = 100;

constexpr std::size_t KEPT_BYTES = 512 * 1024; // by an idle page, of the room of a read

bool HasLogBuffer(BACSTAC_OBJECT_TYPE type) {
    return type == OBJ_TREND_LOG || type == OBJ_TREND_LOG_MULTIPLE || type == OBJ_EVENT_LOG;
}

std::string NameOf(BACSTAC_PROPERTY_ID property, unsigned vendor) {
    std::string name;
    CBACnetDir::GetPropName(property, name, vendor);
    return name;
}

} // namespace

struct CPropertyListReader::Reading {
    const unsigned device;
    const BACSTAC_OBJECT_ID object;
    IPropertyListView* view; // of the console thread; null once the read is over for the operator
    std::atomic<bool> isStopped = false;
    std::atomic<bool> isCancelled = false;
    // Of the read's thread, as long as it lives.
    std::array<BACSTAC_READ_RESULT_ITEM, MAX_PROPERTIES> items{};
    std::optional<CContentsRoom> room;

    Reading(unsigned ofDevice, const BACSTAC_OBJECT_ID& ofObject, IPropertyListView& onView)
        : device(ofDevice), object(ofObject), view(&onView), room(MAX_PROPERTIES) {
        for (unsigned i = 0; i < MAX_PROPERTIES; ++i)
            items[i].Contents = (*room)[i];
    }
    bool MustEnd() const { return isStopped || isCancelled; }
};

// What the read's thread does.
class CPropertyListReader::CWork {
public:
    CWork(std::shared_ptr<Reading> reading, std::shared_ptr<IGuiQueue> queue, CBacGeneral& bacnet)
        : m_reading(std::move(reading)), m_queue(std::move(queue)), m_bacnet(bacnet) {}

    void Run();

private:
    // Where the rows come from.
    struct Source {
        bool isList = false; // the device's own list with its values, else the standard's list of the type
        unsigned count = 0;
        const BACSTAC_PROPERTY_ID* properties = nullptr;
    };

    bool FindSource(Source& source);
    bool ShowProperties(const Source& source);
    void ShowProperty(BACSTAC_READ_RESULT_ITEM* item, BACSTAC_PROPERTY_ID property, const std::string& name);
    void AddRow(std::string name, std::string value, std::int64_t id);
    // Runs on the console thread while this read is the one on the screen; not before Flush, which is due whenever a
    // device may take its time.
    void Show(std::function<void(Reading&)> call) { m_calls.push_back(std::move(call)); }
    void Flush();

    const std::shared_ptr<Reading> m_reading;
    const std::shared_ptr<IGuiQueue> m_queue;
    CBacGeneral& m_bacnet;
    CPropertyContents m_single{BACSTAC_CONTENTS_SIZE};
    CPropertyContents m_text{BACSTAC_CONTENTS_SIZE};
    std::vector<std::function<void(Reading&)>> m_calls;
};

void CPropertyListReader::CWork::Flush() {
    m_queue->Post([reading = m_reading, calls = std::exchange(m_calls, {})] {
        for (const auto& call : calls)
            if (reading->view)
                call(*reading);
    });
}

void CPropertyListReader::CWork::AddRow(std::string name, std::string value, std::int64_t id) {
    Show([row = PropertyRow{std::move(name), std::move(value), id}](Reading& reading) {
        if (!reading.isStopped)
            reading.view->AddRow(row);
    });
}

// False when there are no properties to show.
bool CPropertyListReader::CWork::FindSource(Source& source) {
    BACSTAC_ERROR error{};
    unsigned count = MAX_PROPERTIES;
    const BACSTAC_STATUS status = m_bacnet.ReadPropertyList(m_bacnet.GetDevAddr(m_reading->device), m_reading->object,
                                                            m_reading->items.data(), &count, &error);
    if (status != BACSTAC_OK && !CRPMRequest::CanFallbackToRP(status, error)) {
        if (!m_reading->MustEnd())
            AddRow("error", CBacGeneral::GetErrorText(status, &error), PropertyRow::ERROR_ID);
        return false;
    }
    // One property that failed is no list: the device refuses in its own way.
    source.isList = status == BACSTAC_OK && (count != 1 || m_reading->items[0].Success != 0);
    source.count =
        source.isList ? std::min(count, MAX_PROPERTIES) : CBacGeneral::GetObjectPropsNumber(m_reading->object.Type);
    source.properties = CBacGeneral::GetObjectPropList(m_reading->object.Type);
    return true;
}

// False when the read was ended before it got through.
bool CPropertyListReader::CWork::ShowProperties(const Source& source) {
    // A read that was left behind asks nothing more: whom it would ask may be gone.
    const unsigned vendor = m_reading->isStopped ? 0 : m_bacnet.GetDevVendorId(m_reading->device);
    Show([count = source.count](Reading& reading) { reading.view->SetSource("Reading property:", count); });
    for (unsigned i = 0; i < source.count; ++i) {
        if (m_reading->MustEnd()) {
            Show([](Reading& reading) { reading.view->ClearRows(); });
            return false;
        }
        BACSTAC_READ_RESULT_ITEM* const item = source.isList ? &m_reading->items[i] : nullptr;
        const BACSTAC_PROPERTY_ID property = item ? item->Property : source.properties[i];
        const std::string name = NameOf(property, vendor);
        Show([name, i](Reading& reading) { reading.view->SetProperty(name, i); });
        ShowProperty(item, property, name);
    }
    return true;
}

void CPropertyListReader::CWork::ShowProperty(BACSTAC_READ_RESULT_ITEM* item, BACSTAC_PROPERTY_ID property,
                                              const std::string& name) {
    const BACSTAC_OBJECT_ID& object = m_reading->object;
    BACSTAC_PROPERTY_CONTENTS* contents = &m_single;
    if (item && item->Success != 0) {
        contents = &item->Contents;
    } else if (property != PROP_LOG_BUFFER) {
        Flush();
        if (m_bacnet.ReadProperty(m_reading->device, object, property, BACSTAC_NO_INDEX, m_single, nullptr) !=
            BACSTAC_OK)
            return;
    } // A log buffer cannot be read as a whole. Deliberate: its row then has what the last single read left.
    if (contents->DataType < 0 || !ConvertRaw(*contents, object.Type, property))
        return;
    auto* const text = static_cast<char*>(m_text.GetBufferPtr());
    CBacGeneral::PrintContents(text, m_text.GetBufferSize(), *contents, object.Type, property, BACSTAC_NO_INDEX);
    AddRow(name, ansi_to_utf8(text), property);
}

void CPropertyListReader::CWork::Run() {
    const CHeapWatch heap;
    Source source;
    if (FindSource(source) && ShowProperties(source) && HasLogBuffer(m_reading->object.Type))
        AddRow(NameOf(PROP_LOG_BUFFER, 0), "...", PROP_LOG_BUFFER);
    m_reading->room.reset();
    heap.GiveBack(KEPT_BYTES);
    Show(Finish);
    Flush();
}

// ---- the reader

CPropertyListReader::CPropertyListReader(CBacGeneral& bacnet, IPropertyListView& view, std::shared_ptr<IGuiQueue> queue)
    : CThread("PropertyListReader"), m_bacnet(bacnet), m_view(view), m_queue(std::move(queue)) {}

CPropertyListReader::~CPropertyListReader() {
    StopReading();
}

void CPropertyListReader::StartReading(unsigned device, const BACSTAC_OBJECT_ID& object) {
    StopReading();
    if (device == BACSTAC_ALL_INSTANCES || object.Instance == BACSTAC_ALL_INSTANCES)
        return;
    m_view.BeginReading("Reading property list...", STRIP_RANGE);
    m_reading = std::make_shared<Reading>(device, object, m_view);
    if (!Start(0, 0))
        Finish(*m_reading);
}

void CPropertyListReader::StopReading() {
    StopAndWait(STOP_WAIT);
    CloseThread();
    if (m_reading)
        Finish(*m_reading);
    m_reading.reset();
}

void CPropertyListReader::RequestStop() {
    if (m_reading)
        m_reading->isStopped = true;
}

void CPropertyListReader::Cancel() {
    if (m_reading)
        m_reading->isCancelled = true;
}

bool CPropertyListReader::IsReading() const {
    return m_reading && m_reading->view;
}

// Once, however often it is called.
void CPropertyListReader::Finish(Reading& reading) {
    if (IPropertyListView* const view = std::exchange(reading.view, nullptr))
        view->EndReading();
}

CThread::Body CPropertyListReader::GetBody() {
    return [reading = m_reading, queue = m_queue, &bacnet = m_bacnet](CThreadRun& run) {
        CWork(reading, queue, bacnet).Run();
        run.Close();
    };
}
