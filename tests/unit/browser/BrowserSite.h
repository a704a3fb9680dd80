// Fake devices with a recorder around them, for tests of the browser's logic.
#pragma once

#include "api/bacnet/Enums.h"
#include "module/console/Progress.h"
#include "tests/support/FakeBacnet.h"
#include "tests/support/LogSink.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using Lines = CEventList::Lines;

inline constexpr BACSTAC_OBJECT_ID Device(unsigned instance) {
    return {OBJ_DEVICE, instance};
}

// Records the progress as "percent text" with "|" for a line break.
class CFakeProgress : public IProgress {
public:
    explicit CFakeProgress(CEventList& events) : m_events(events) {}

    void SetTitle(const std::string&) override {}
    void SetProgress(const std::string& text, unsigned percent) override {
        std::string line = std::to_string(percent) + " " + text;
        if (const auto at = line.find("\r\n"); at != std::string::npos)
            line.replace(at, 2, "|");
        m_events.Add(line);
        if (m_onPump)
            m_onPump();
    }
    bool IsCancelled() const override { return m_isCancelled || m_isEnding; }
    void ClearCancelled() override { m_isCancelled = false; }

    CEventList& m_events;
    std::function<void()> m_onPump;
    bool m_isCancelled = false;
    bool m_isEnding = false;
};

// The devices of a test. They stay behind it: so may a thread that hung in one and was given up.
struct FakeSite {
    CEventList events; // calls and progress
    CFakeBacnet bacnet{events};
    std::atomic<bool> isHanging = false;
    std::atomic<bool> hasHung = false;

    static FakeSite& New() {
        static auto& all = *new std::vector<std::unique_ptr<FakeSite>>;
        return *all.emplace_back(std::make_unique<FakeSite>());
    }
};

class BrowserSite : public testing::Test {
protected:
    BrowserSite() { BACnet = &m_bacnet; }
    ~BrowserSite() override {
        LetGo();
        m_bacnet.OnCall({});
        BACnet = nullptr;
    }

    void AddDevice(unsigned device, const std::string& name, unsigned short network = 0) {
        m_bacnet.AddDevice(device, network, name);
        Name(device, Device(device), name);
    }
    void AddObject(unsigned device, BACSTAC_OBJECT_ID id, const std::string& name) {
        m_bacnet.AddObject(device, id, name);
        Name(device, id, name);
    }
    void SetValue(unsigned device, BACSTAC_OBJECT_ID id, BACSTAC_PROPERTY_ID property, const FakeValue& value) {
        m_bacnet.SetValue(device, id, property, value);
    }
    // Calls whose event begins with the text hang until they are let go.
    void Hang(const std::string& event) {
        m_site.hasHung = false;
        m_site.isHanging = true;
        m_bacnet.OnCall([&site = m_site, event](const std::string& call) {
            if (!call.starts_with(event))
                return;
            site.hasHung = true;
            while (site.isHanging)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        });
    }
    bool HasHung() const { return m_site.hasHung; }
    void LetGo() { m_site.isHanging = false; }

    FakeSite& m_site = FakeSite::New();
    CEventList& m_events = m_site.events;
    CFakeBacnet& m_bacnet = m_site.bacnet;
    CEventList m_log;
    CLogSink m_sink{m_log};

private:
    void Name(unsigned device, BACSTAC_OBJECT_ID id, const std::string& name) {
        if (!name.empty())
            SetValue(device, id, PROP_OBJECT_NAME, FakeValue::Text(name));
    }
};
