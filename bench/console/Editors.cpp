#include "bench/console/Editors.h"

#include "bench/console/Console.h"

#include "api/bacnet/Dir.h"
#include "api/bacnet/PropertyValues.h"
#include "module/console/Globals.h"
#include "module/console/Messages.h"
#include "tests/support/FakeBacnet.h"

#include <QDialog>
#include <QPushButton>
#include <QTreeView>

#include <fmt/format.h>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr unsigned kDevice = 1;
constexpr BACSTAC_OBJECT_ID kPoint{OBJ_ANALOG_VALUE, 1};
constexpr BACSTAC_PROPERTY_ID kProperty = 5000; // proprietary: it is edited as it is read
constexpr BACSTAC_DATA_TYPE kLastType = 1100;
constexpr std::size_t kFewest = 60; // editors that have to open
constexpr int kOpenings = 3;        // of each, the quickest of which counts: the rest is other work on the processor

void Fill(CPropertyValueList& list, unsigned bytes) {
    const std::unique_ptr<CPropertyValue> element(list.CreateElement());
    list.Reset(bytes / (element->ElementSize() + element->ReferredSize()));
    for (unsigned i = 0; i < list.GetElementCnt(); ++i)
        list.SetElement(i, element->Clone());
}

void Add(std::vector<FakeValue>& values, const CPropertyValue& value) {
    CPropertyContents contents(BACSTAC_CONTENTS_SIZE);
    if (!value.WriteTo(contents))
        Fail("a value cannot be written");
    values.push_back({contents.DataType, contents.ElementCount,
                      std::string(static_cast<const char*>(contents.Buffer), contents.BufferSize)});
}

// A value whose list takes all the room that its record leaves.
template <class Value>
Value WithLongest(CPropertyValueList& (Value::*list)() const) {
    Value value;
    Fill((value.*list)(), BACSTAC_CONTENTS_SIZE - value.GetDataSize());
    return value;
}

// A list of each type that can be an element of one, and the single values that have a length.
std::vector<FakeValue> LargestValues() {
    std::vector<FakeValue> values;
    for (BACSTAC_DATA_TYPE type = TYPE_BOOLEAN; type < kLastType; ++type) {
        if (!std::unique_ptr<CPropertyValue>(CPropertyValue::CreateValue(kPoint.Type, kProperty, type, 1)))
            continue;
        CPropertyValueList list(type);
        Fill(list, BACSTAC_CONTENTS_SIZE);
        Add(values, list);
    }
    CPVString text;
    text.Value.assign(BACSTAC_CONTENTS_SIZE - 1, 'W');
    Add(values, text);
    CPVOctetString octets;
    octets.Value.resize(BACSTAC_CONTENTS_SIZE - octets.GetDataSize());
    Add(values, octets);
    Add(values, WithLongest(&CPVSpecialEvent::GetTimeValues));
    Add(values, WithLongest(&CPVReadAccessSpec::GetProperties));
    Add(values, WithLongest(&CPVReadAccessResult::GetItems));
    Add(values, WithLongest(&CPVEPChangeOfBitString::GetValues));
    Add(values, WithLongest(&CPVEPChangeOfState::GetValues));
    Add(values, WithLongest(&CPVEPChangeOfLifeSafety::GetAlarmValues));
    Add(values, WithLongest(&CPVEPExtended::GetParameters));
    return values;
}

// Takes the time at which an editor that opens has been painted, and cancels it.
class Watch final : public QObject {
public:
    Watch() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* object, QEvent* event) override {
        auto* const dialog = event->type() == QEvent::Show ? qobject_cast<QDialog*>(object) : nullptr;
        if (dialog && dialog->isModal())
            QMetaObject::invokeMethod(
                dialog,
                [this, dialog] {
                    dialog->grab();
                    if (dialog->windowTitle().startsWith(QStringLiteral("Input")))
                        m_painted = Clock::now();
                    dialog->reject();
                },
                Qt::QueuedConnection);
        return false;
    }
    std::optional<Clock::time_point> m_painted;
};

// The only property of the only object is shown and selected.
void ShowProperty() {
    BDCManager.PostMessageW(WM_CONSOLE_SHOW, 0, 0);
    Console::SelectPage("Browser");
    Console::Do([] {
        auto& tree = Console::Find<QTreeView>("Devices and objects");
        tree.expandAll();
        QModelIndex item = tree.model()->index(0, 0);
        while (tree.model()->hasChildren(item))
            item = tree.model()->index(0, 0, item);
        tree.setCurrentIndex(item);
    });
    bool isShown = false;
    for (const auto deadline = Clock::now() + 10s; !isShown && Clock::now() < deadline;) {
        std::this_thread::sleep_for(10ms);
        Console::Do([&] {
            auto& list = Console::Find<QTreeView>("Properties");
            isShown = list.isEnabled() && list.model()->rowCount() == 1;
            if (isShown)
                list.setCurrentIndex(list.model()->index(0, 0));
        });
    }
    if (!isShown)
        Fail("the browser does not show the property");
}

// Milliseconds from the press of Edit; empty when no editor opens.
std::optional<double> OpenEditor() {
    std::optional<double> quickest;
    for (int opening = 0; opening < kOpenings; ++opening)
        Console::Do([&quickest] {
            Watch watch;
            const auto start = Clock::now();
            Console::Find<QPushButton>("&Edit...").click();
            if (!watch.m_painted)
                return;
            const double time = std::chrono::duration<double, std::milli>(*watch.m_painted - start).count();
            quickest = std::min(quickest.value_or(time), time);
        });
    return quickest;
}

void SaveDirectory(const std::string& file) {
    CBACnetDev device;
    device.SetInst(kDevice);
    CBACnetObj point;
    point.SetId(kPoint);
    device.AddObj(point);
    CBACnetDir directory;
    directory.AddDev(device);
    if (!directory.Save(file))
        Fail("the directory cannot be saved");
    CBacGeneral::SetDirFileName(file);
}

} // namespace

double MeasureEditors() {
    const auto file = std::filesystem::temp_directory_path() / fmt::format("bdc-bench-{}", getpid());
    SaveDirectory(file.string());
    CEventList events;
    CFakeBacnet bacnet(events);
    bacnet.AddDevice(kDevice);
    bacnet.AddObject(kDevice, kPoint);
    bacnet.SetValue(kDevice, kPoint, kProperty, FakeValue::Real(1));
    BACnet = &bacnet;
    std::vector<double> times;
    {
        Driver driver;
        const Console console(driver);
        ShowProperty();
        for (FakeValue& value : LargestValues()) {
            bacnet.SetValue(kDevice, kPoint, kProperty, std::move(value));
            if (const std::optional<double> time = OpenEditor())
                times.push_back(*time);
        }
    }
    std::filesystem::remove(file);
    if (times.size() < kFewest)
        Fail(fmt::format("only {} editors have opened", times.size()).c_str());
    return *std::ranges::max_element(times);
}

} // namespace bench
