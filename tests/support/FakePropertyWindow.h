// The browser's window and an operator for the commands on properties. What the operator is asked and shown is
// recorded, as "edit NAME TEXT", "priority 8", "index 1", "show CAPTION: TEXT" and "log 10 20 1"; "wait" and "answer"
// are around a read, and "reload" is the list of properties. One thread.
#pragma once

#include "module/browser/Discovery.h"
#include "module/browser/PropertyCommands.h"
#include "tests/support/EventList.h"

#include <deque>
#include <functional>

class CFakePropertyWindow : public IBrowserWindow, public IPropertyPrompts {
public:
    using Edit = std::function<bool(CPropertyValue&)>;

    explicit CFakePropertyWindow(CEventList& events) : m_events(events) {}

    const TreeItem* m_selected = nullptr;
    std::vector<std::int64_t> m_rows;
    std::string m_text = "{a, b}"; // of each row, whose name is "row"
    // What the operator does with the editors, one after the other; with those that come then, Cancel.
    std::deque<Edit> m_edits;
    std::optional<unsigned> m_priority = 8;
    std::optional<unsigned> m_index;
    bool m_isWaitClosed = false;
    std::function<void()> m_onWait; // whenever messages are served

    // ---- IPropertyPrompts
    std::optional<PropertyRow> GetSelectedRow() const override {
        return m_rows.size() == 1 ? std::optional(PropertyRow{"row", m_text, m_rows.front()}) : std::nullopt;
    }
    bool EditValue(CPropertyValue& value) override {
        m_events.Add("edit " + value.GetPropName() + " " + value.ToText(BACSTAC_NO_INDEX));
        if (m_edits.empty())
            return false;
        const Edit edit = std::move(m_edits.front());
        m_edits.pop_front();
        return edit(value);
    }
    std::optional<unsigned> AskPriority(unsigned priority) override {
        m_events.Add("priority " + std::to_string(priority));
        return m_priority;
    }
    std::optional<unsigned> AskArrayIndex(unsigned index) override {
        m_events.Add("index " + std::to_string(index));
        return m_index;
    }
    void ShowValue(const std::string& caption, const std::string& text) override {
        m_events.Add("show " + caption + ": " + text);
    }
    void ShowLogBuffer(unsigned device, const BACSTAC_OBJECT_ID& object) override {
        m_events.Add("log " + std::to_string(device) + " " + std::to_string(object.Type) + " " +
                     std::to_string(object.Instance));
    }

    // ---- IBrowserWindow
    void StartTimer(BrowserTimer timer, unsigned) override {
        m_events.Add(timer == BrowserTimer::Read ? "reload" : "another timer");
    }
    void StopTimer(BrowserTimer) override {}
    bool IsServing() const override { return true; }
    const TreeItem* GetSelectedItem() const override { return m_selected; }
    std::vector<std::int64_t> GetSelectedRows() const override { return m_rows; }
    std::string GetFilter() const override { return {}; }
    void HideStrip() override {}
    std::optional<DeviceAddresses> PickDevices(CDiscovery&) override { return std::nullopt; }
    std::optional<unsigned> AskRefreshPeriod(unsigned) override { return std::nullopt; }
    std::unique_ptr<IProgress> OpenProgress() override { return std::make_unique<CWait>(*this); }
    void BeginReading(const std::string&, unsigned) override {}
    void SetSource(const std::string&, unsigned) override {}
    void SetProperty(const std::string&, unsigned) override {}
    void AddRow(const PropertyRow&) override {}
    void ClearRows() override {}
    void EndReading() override {}

private:
    class CWait : public IProgress {
    public:
        explicit CWait(CFakePropertyWindow& window) : m_window(window) { m_window.m_events.Add("wait"); }
        ~CWait() override { m_window.m_events.Add("answer"); }
        void SetTitle(const std::string&) override {}
        void SetProgress(const std::string&, unsigned) override {
            if (m_window.m_onWait)
                m_window.m_onWait();
        }
        bool IsCancelled() const override { return m_window.m_isWaitClosed; }
        void ClearCancelled() override {}

    private:
        CFakePropertyWindow& m_window;
    };

    CEventList& m_events;
};
