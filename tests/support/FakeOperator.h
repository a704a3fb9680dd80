// An operator who answers at once, recorded as "Box(Error, text, error, OK)", "PickFile(path, extension, save)",
// "PickFolder(title, folder)" and "OpenFile(path, folder)". Any thread may ask.
#pragma once

#include "module/console/Operator.h"
#include "tests/support/EventList.h"

class CFakeOperator : public IOperator {
public:
    explicit CFakeOperator(CEventList& events) : m_events(events) {}
    BoxAnswer m_answer = BoxAnswer::Ok;
    std::optional<std::string> m_pick; // of files and folders

    BoxAnswer ShowBox(const OperatorBox& box) override {
        static constexpr const char* ICONS[] = {"error", "information", "question"};
        static constexpr const char* BUTTONS[] = {"OK", "Yes, No, Cancel"};
        m_events.Add("Box(" + box.title + ", " + box.text + ", " + ICONS[static_cast<int>(box.icon)] + ", " +
                     BUTTONS[static_cast<int>(box.buttons)] + ")");
        return m_answer;
    }
    std::optional<std::string> PickFile(const FilePick& pick) override {
        m_events.Add("PickFile(" + pick.path + ", " + pick.extension + (pick.save ? ", save)" : ", open)"));
        return m_pick;
    }
    std::optional<std::string> PickFolder(const std::string& title, const std::string& folder) override {
        m_events.Add("PickFolder(" + title + ", " + folder + ")");
        return m_pick;
    }
    void OpenFile(const std::string& path, const std::string& folder) override {
        m_events.Add("OpenFile(" + path + ", " + folder + ")");
    }

private:
    CEventList& m_events;
};
