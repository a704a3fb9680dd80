#include "bench/console/Browser.h"

#include "bench/Directories.h"
#include "bench/console/Console.h"

#include "module/console/Globals.h"
#include "module/console/Messages.h"
#include "tests/support/FakeBacnet.h"

#include <QKeyEvent>
#include <QTreeView>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

namespace bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr unsigned kDevices = 1000;
constexpr unsigned kObjectsOfADevice = 100;
constexpr int kOpenDevices = 5;
constexpr auto kStatusTime = 10ms;
constexpr auto kKeyTime = 30ms; // between the repetitions of a key
constexpr int kKeys = 40;       // until the key is let go
constexpr auto kStop = 400ms;   // a read begins
constexpr int kWalks = 3;
constexpr auto kAnswersTime = 3s;

// Devices of the directory: they answer for their status in time, and hang in all other reads until they are let go.
// Never destroy them: a thread may still be in a read when the console has gone.
class Devices {
public:
    Devices() {
        for (unsigned device = 1; device <= kDevices; ++device)
            m_bacnet.AddDevice(device);
        m_bacnet.OnCall([this](const std::string& call) {
            m_events.Take();
            ++(call.starts_with("ReadPropertyList") ? m_lists : m_answers);
            std::this_thread::sleep_for(kStatusTime);
            while (m_isHanging && call.starts_with("ReadPropertyList"))
                std::this_thread::sleep_for(kStatusTime);
        });
        BACnet = &m_bacnet;
    }
    void LetGo() { m_isHanging = false; }
    int GetAnswers() const { return m_answers; }
    int GetLists() const { return m_lists; }

private:
    CEventList m_events;
    CFakeBacnet m_bacnet{m_events};
    std::atomic<bool> m_isHanging = true;
    std::atomic<int> m_answers = 0;
    std::atomic<int> m_lists = 0;
};

// Posts to the console thread without a pause; the longest time that one of these waited.
class Heartbeat {
public:
    Heartbeat() {
        m_thread = std::thread([this] {
            while (!m_isOver) {
                const auto posted = Clock::now();
                Console::Do([&] { m_longest = std::max(m_longest, Clock::now() - posted); });
                std::this_thread::sleep_for(1ms);
            }
        });
    }
    double Stop() {
        m_isOver = true;
        m_thread.join();
        return std::chrono::duration<double, std::milli>(m_longest).count();
    }

private:
    std::atomic<bool> m_isOver = false;
    Clock::duration m_longest{};
    std::thread m_thread;
};

QTreeView& FindTree() {
    return Console::Find<QTreeView>("Devices and objects");
}

// The polling begins at once when the page comes for the second time: the first wake finds the beginning.
void ShowPolling(const Devices& devices) {
    BDCManager.PostMessageW(WM_CONSOLE_SHOW, 0, 0);
    while (devices.GetAnswers() == 0) {
        Console::SelectPage("General");
        Console::SelectPage("Browser");
        std::this_thread::sleep_for(10 * kStatusTime);
    }
}

// With the first devices open and the first item selected.
void OpenTree() {
    Console::Do([] {
        QTreeView& tree = FindTree();
        const QModelIndex network = tree.model()->index(0, 0);
        if (tree.model()->rowCount(network) != static_cast<int>(kDevices) || !tree.isVisible())
            Fail("the tree does not show the devices");
        for (int device = 0; device < kOpenDevices; ++device)
            tree.expandRecursively(tree.model()->index(device, 0, network));
        tree.setCurrentIndex(network);
    });
}

void Walk() {
    QTreeView* tree = nullptr;
    Console::Do([&] { tree = &FindTree(); });
    for (int walk = 0; walk < kWalks; ++walk) {
        for (int key = 0; key < kKeys; ++key) {
            QCoreApplication::postEvent(tree, new QKeyEvent(QEvent::KeyPress, Qt::Key_Down, {}, {}, true));
            std::this_thread::sleep_for(kKeyTime);
        }
        std::this_thread::sleep_for(kStop);
    }
}

} // namespace

Pauses MeasurePauses() {
    const auto file = std::filesystem::temp_directory_path() / ("bdc-bench-" + std::to_string(getpid()));
    if (!NewDirectory(kDevices, kObjectsOfADevice).Save(file.string()))
        Fail("the directory cannot be saved");
    CBacGeneral::SetDirFileName(file.string());
    auto* const devices = new Devices; // stays
    Driver driver;
    Pauses pauses{};
    {
        const Console console(driver);
        ShowPolling(*devices);
        OpenTree();
        Heartbeat answers;
        std::this_thread::sleep_for(kAnswersTime);
        pauses.answers = answers.Stop();
        if (devices->GetAnswers() < kAnswersTime / kStatusTime / 2)
            Fail("hardly a status was read");
        Heartbeat walk;
        Walk();
        pauses.walk = walk.Stop();
        if (devices->GetLists() != kWalks)
            Fail("the walk did not begin a read at each stop");
        devices->LetGo();
    }
    std::filesystem::remove(file);
    return pauses;
}

} // namespace bench
