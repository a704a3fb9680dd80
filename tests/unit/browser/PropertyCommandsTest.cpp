// What the commands on properties send, ask and show, in which order.
#include "api/bacnet/PropertyValues.h"
#include "tests/support/FakeOperator.h"
#include "tests/support/FakePropertyWindow.h"
#include "tests/support/TempFolder.h"
#include "tests/unit/browser/BrowserSite.h"
#include "tests/unit/browser/Directories.h"
#include "tests/unit/browser/FakeQueue.h"
#include "tests/unit/browser/StationIdentity.h"

using Rows = std::vector<BACSTAC_PROPERTY_ID>;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr BACSTAC_OBJECT_ID VALUE{OBJ_ANALOG_VALUE, 1};  // commandable
constexpr BACSTAC_OBJECT_ID INPUT{OBJ_ANALOG_INPUT, 5};  // not commandable
constexpr BACSTAC_OBJECT_ID REMOTE{OBJ_ANALOG_VALUE, 7}; // on another device
constexpr BACSTAC_OBJECT_ID STATES{OBJ_MULTI_STATE_VALUE, 3};
constexpr BACSTAC_PROPERTY_ID OUT_OF_SERVICE = 81;
constexpr BACSTAC_PROPERTY_ID PRIORITY_ARRAY = 87;
constexpr BACSTAC_PROPERTY_ID STATE_TEXT = 110;
constexpr BACSTAC_PROPERTY_ID UNITS = 117;
constexpr BACSTAC_PROPERTY_ID PROPRIETARY = 5000;
constexpr BACSTAC_ERROR DENIED{2, 2, 40}; // write-access-denied

void PutReal(CPropertyValue& value, float number) {
    dynamic_cast<CPVReal&>(value).Value = number;
}

} // namespace

// Boxes, dialogs, calls and reloads are in one list.
class PropertyCommands : public BrowserSite {
protected:
    PropertyCommands() {
        CBacGeneral::SetDirFileName(m_folder.File("directory"));
        AddDevice(10, "Beta");
        AddDevice(20, "alpha");
        for (const auto& [device, object] : {std::pair(10U, VALUE), std::pair(10U, INPUT), std::pair(20U, REMOTE)}) {
            AddObject(device, object, "zone");
            SetValue(device, object, PROP_PRESENT_VALUE, FakeValue::Real(21.5F));
            SetValue(device, object, PROP_DESCRIPTION, FakeValue::Text("north"));
            SetValue(device, object, OUT_OF_SERVICE, FakeValue::Of<std::uint8_t>(TYPE_BOOLEAN, {0}));
        }
        AddObject(10, STATES, "fan");
        SetValue(10, STATES, STATE_TEXT, FakeValue::Text("on"));
        CBACnetDir directory;
        PutDevice(directory, 10, "Beta", 0, {{VALUE, "zone"}, {INPUT, "zone"}, {STATES, "fan"}});
        PutDevice(directory, 20, "alpha", 0, {{REMOTE, "zone"}});
        directory.SetObjCommandable(10, VALUE, true);
        directory.SetObjCommandable(20, REMOTE, true);
        directory.Save(m_folder.File("directory"));
        m_browser = std::make_unique<CObjBrowser>(BrowserServices{m_bacnet, m_identity, m_order, m_queue}, m_window);
        m_browser->Start();
        m_commands = std::make_unique<CPropertyCommands>(
            PropertyCommandServices{m_bacnet, *m_browser, m_window, m_window, m_operator});
        Select(10, VALUE, {PROP_PRESENT_VALUE});
        m_events.Take();
    }
    ~PropertyCommands() override {
        m_browser->Destroy();
        CBacGeneral::SetDirFileName({});
    }

    void Select(unsigned device, BACSTAC_OBJECT_ID object, const Rows& rows) {
        m_window.m_selected = m_browser->GetTree().FindObject(device, object);
        m_window.m_rows.assign(rows.begin(), rows.end());
    }
    // What the operator does with the editors, one after the other; with those that come then, Cancel.
    void Type(float number) {
        m_window.m_edits.push_back([number](CPropertyValue& value) {
            PutReal(value, number);
            return true;
        });
    }
    void PressOk(std::function<void()> meanwhile = [] {}) {
        m_window.m_edits.push_back([meanwhile](CPropertyValue&) {
            meanwhile();
            return true;
        });
    }
    // Beginning with the read, without it.
    Lines AfterRead(const std::string& read) {
        Lines events = m_events.Take();
        const Lines expected{"wait", "ReadProperty(" + read + ")", "answer"};
        EXPECT_EQ(Lines(events.begin(), events.begin() + std::min<std::ptrdiff_t>(3, std::ssize(events))), expected);
        events.erase(events.begin(), events.begin() + std::min<std::ptrdiff_t>(3, std::ssize(events)));
        return events;
    }
    static std::string Box(const std::string& words, BACSTAC_STATUS status, const BACSTAC_ERROR& error = {}) {
        return "Box(Error, " + words + "\r\n" + CBacGeneral::GetErrorText(status, &error) + ", error, OK)";
    }

    CTempFolder m_folder;
    CStationIdentity m_identity;
    CPlainOrder m_order;
    std::shared_ptr<CFakeQueue> m_queue = std::make_shared<CFakeQueue>();
    CFakeOperator m_operator{m_events};
    CFakePropertyWindow m_window{m_events};
    std::unique_ptr<CObjBrowser> m_browser;
    std::unique_ptr<CPropertyCommands> m_commands;
};

// ---- editing

TEST_F(PropertyCommands, AnEditAsksForTheValueFirstAndThePriorityThen) {
    Type(22.5F);
    m_commands->Edit();
    EXPECT_THAT(AfterRead("10, (2, 1), 85, -1"), ElementsAre("edit present-value 21.5", "priority 8",
                                                             "WriteProperty(10, (2, 1), 85, -1, 8, 22.5)", "reload"));
}

TEST_F(PropertyCommands, TheLastPriorityIsProposed) {
    Type(22.5F);
    m_window.m_priority = 16;
    m_commands->Edit();
    m_events.Take();
    m_commands->SetToNull();
    EXPECT_THAT(m_events.Take(), ElementsAre("priority 16", "WritePropertyNull(10, (2, 1), 85, -1, 16)", "reload"));
}

TEST_F(PropertyCommands, ACancelledPriorityReturnsToTheEditor) {
    Type(22.5F);
    m_window.m_priority.reset();
    m_commands->Edit();
    EXPECT_THAT(AfterRead("10, (2, 1), 85, -1"),
                ElementsAre("edit present-value 21.5", "priority 8", "edit present-value 22.5"));
    m_commands->SetToNull();
    EXPECT_THAT(m_events.Take(), ElementsAre("priority 8"));
}

TEST_F(PropertyCommands, ACancelledEditorWritesNothing) {
    m_commands->Edit();
    EXPECT_THAT(AfterRead("10, (2, 1), 85, -1"), ElementsAre("edit present-value 21.5"));
}

TEST_F(PropertyCommands, ObjectsThatCannotBeCommandedHaveNoPriority) {
    Select(10, INPUT, {PROP_PRESENT_VALUE});
    Type(22.5F);
    m_commands->Edit();
    EXPECT_THAT(AfterRead("10, (0, 5), 85, -1"),
                ElementsAre("edit present-value 21.5", "WriteProperty(10, (0, 5), 85, -1, -1, 22.5)", "reload"));
}

TEST_F(PropertyCommands, OtherPropertiesOfACommandableObjectHaveNoPriority) {
    Select(10, VALUE, {OUT_OF_SERVICE});
    PressOk();
    m_commands->Edit();
    EXPECT_THAT(AfterRead("10, (2, 1), 81, -1"),
                ElementsAre("edit out-of-service false", "WriteProperty(10, (2, 1), 81, -1, -1, false)", "reload"));
    m_commands->SetToNull();
    EXPECT_THAT(m_events.Take(), ElementsAre("WritePropertyNull(10, (2, 1), 81, -1, -1)", "reload"));
}

TEST_F(PropertyCommands, AFailedWriteOpensTheEditorWithWhatWasTyped) {
    m_bacnet.SetFault("WriteProperty", BACSTAC_STATUS_ERROR, DENIED, 0, 2);
    Select(10, INPUT, {PROP_PRESENT_VALUE});
    Type(22.5F);
    Type(23.5F);
    PressOk();
    m_commands->Edit();
    const std::string box = Box("WriteProperty", BACSTAC_STATUS_ERROR, DENIED);
    EXPECT_THAT(AfterRead("10, (0, 5), 85, -1"),
                ElementsAre("edit present-value 21.5", "WriteProperty(10, (0, 5), 85, -1, -1, 22.5)", box,
                            "edit present-value 22.5", "WriteProperty(10, (0, 5), 85, -1, -1, 23.5)", box,
                            "edit present-value 23.5", "WriteProperty(10, (0, 5), 85, -1, -1, 23.5)", "reload"));
}

TEST_F(PropertyCommands, AFailedReadIsReportedAndTheTextShown) {
    m_bacnet.SetFault("ReadProperty", BACSTAC_STATUS_TIMEOUT);
    m_commands->Edit();
    EXPECT_THAT(AfterRead("10, (2, 1), 85, -1"), ElementsAre(Box("ReadProperty", BACSTAC_STATUS_TIMEOUT),
                                                             "show Value of \"row\" from \"zone - 1\": {a, b}"));
}

TEST_F(PropertyCommands, AClosedWaitGivesTheReadUp) {
    m_window.m_isWaitClosed = true;
    m_commands->Edit();
    EXPECT_THAT(m_events.Take(), ElementsAre("wait", "answer", Box("ReadProperty", BACSTAC_STATUS_CANCELLED),
                                             "show Value of \"row\" from \"zone - 1\": {a, b}"));
}

TEST_F(PropertyCommands, WhatCannotBeDecodedIsShownWithoutABox) {
    SetValue(10, VALUE, PROP_PRESENT_VALUE, {TYPE_NONE, 0, "?"});
    m_commands->Edit();
    EXPECT_THAT(AfterRead("10, (2, 1), 85, -1"), ElementsAre("show Value of \"row\" from \"zone - 1\": {a, b}"));
}

TEST_F(PropertyCommands, WhatCannotBeAValueIsShownWithoutABox) {
    SetValue(10, VALUE, PROP_PRESENT_VALUE, {999, 1, "????????"});
    m_commands->Edit();
    EXPECT_THAT(AfterRead("10, (2, 1), 85, -1"), ElementsAre("show Value of \"row\" from \"zone - 1\": {a, b}"));
}

TEST_F(PropertyCommands, AProprietaryPropertyIsEditedAsItWasRead) {
    Select(10, VALUE, {PROPRIETARY});
    for (const auto& [value, text] :
         {std::pair(FakeValue::Real(1.5F), "1.5"), std::pair(FakeValue::Of<float>(TYPE_REAL, {1.5F, 2}), "{1.5, 2}"),
          std::pair(FakeValue::Of<float>(TYPE_REAL, {}), "{}")}) {
        SetValue(10, VALUE, PROPRIETARY, value);
        PressOk();
        m_commands->Edit();
        const Lines events = AfterRead("10, (2, 1), 5000, -1");
        ASSERT_EQ(events.size(), 3U);
        EXPECT_THAT(events[0], testing::EndsWith(std::string(" ") + text));
        EXPECT_EQ(events[1], std::string("WriteProperty(10, (2, 1), 5000, -1, -1, ") + text + ")");
    }
}

// Otherwise an OK would write a default that the device never had.
TEST_F(PropertyCommands, AnotherTypeThanTheStandardsIsEditedAsItWasRead) {
    SetValue(10, VALUE, PROP_PRESENT_VALUE, FakeValue::Unsigned(7));
    PressOk();
    m_commands->Edit();
    EXPECT_THAT(AfterRead("10, (2, 1), 85, -1"),
                ElementsAre("edit present-value 7", "priority 8", "WriteProperty(10, (2, 1), 85, -1, 8, 7)", "reload"));
}

TEST_F(PropertyCommands, ALogBufferIsSeenWithoutReadingIt) {
    Select(10, VALUE, {PROP_LOG_BUFFER});
    m_commands->Edit();
    EXPECT_THAT(m_events.Take(), ElementsAre("log 10 2 1"));
}

TEST_F(PropertyCommands, CommandsOnOneRowNeedOneRow) {
    for (const auto& rows : {Rows{}, Rows{PROP_PRESENT_VALUE, PROP_DESCRIPTION}}) {
        Select(10, VALUE, rows);
        m_commands->Edit();
        m_commands->EditArrayItem();
        m_commands->SetToNull();
        m_commands->Zoom();
    }
    m_window.m_selected = nullptr;
    m_window.m_rows = {PROP_PRESENT_VALUE};
    m_commands->Edit();
    m_commands->EditArrayItem();
    m_commands->SetToNull();
    m_commands->Zoom();
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

// ---- the selection meanwhile

TEST_F(PropertyCommands, ASelectionThatChangesDuringTheReadIsWrittenTo) {
    m_window.m_onWait = [this] { Select(20, REMOTE, {PROP_PRESENT_VALUE}); };
    PressOk();
    m_commands->Edit();
    EXPECT_THAT(AfterRead("10, (2, 1), 85, -1"), ElementsAre("edit present-value 21.5", "priority 8",
                                                             "WriteProperty(20, (2, 7), 85, -1, 8, 21.5)", "reload"));
}

TEST_F(PropertyCommands, ATreeThatIsRebuiltMeanwhileIsNoHarm) {
    const auto rebuild = [this] {
        m_window.m_selected = nullptr;
        m_window.m_rows.clear();
        m_browser->RebuildTree();
    };
    m_window.m_onWait = rebuild;
    Type(22.5F);
    m_commands->Edit();
    EXPECT_THAT(AfterRead("10, (2, 1), 85, -1"), ElementsAre("edit present-value 21.5", "edit present-value 22.5"));
    m_window.m_onWait = {};
    Select(10, VALUE, {PROP_PRESENT_VALUE});
    PressOk(rebuild);
    m_commands->Edit();
    EXPECT_THAT(AfterRead("10, (2, 1), 85, -1"), ElementsAre("edit present-value 21.5", "edit present-value 21.5"));
    m_window.m_isWaitClosed = true;
    m_window.m_onWait = rebuild;
    Select(10, VALUE, {PROP_PRESENT_VALUE});
    m_commands->Edit();
    EXPECT_THAT(m_events.Take(), ElementsAre("wait", "answer", Box("ReadProperty", BACSTAC_STATUS_CANCELLED)));
}

// ---- an element

TEST_F(PropertyCommands, AnElementIsEditedByItsIndex) {
    Select(10, STATES, {STATE_TEXT});
    m_window.m_index = 3;
    PressOk();
    m_commands->EditArrayItem();
    EXPECT_THAT(m_events.Take(),
                ElementsAre("index 1", "wait", "ReadProperty(10, (19, 3), 110, 3)", "answer", "edit state-text on",
                            "WriteProperty(10, (19, 3), 110, 3, -1, on)", "reload"));
    m_window.m_index.reset();
    m_commands->EditArrayItem();
    EXPECT_THAT(m_events.Take(), ElementsAre("index 3"));
}

TEST_F(PropertyCommands, AnElementIsOneValueOfAList) {
    Select(10, STATES, {STATE_TEXT});
    m_window.m_index = 1;
    m_window.m_edits.push_back([](CPropertyValue& value) {
        EXPECT_FALSE(value.IsCollection());
        return false;
    });
    m_commands->EditArrayItem();
    m_window.m_edits.push_back([](CPropertyValue& value) {
        EXPECT_TRUE(value.IsCollection());
        return false;
    });
    m_commands->Edit();
    EXPECT_THAT(m_window.m_edits, IsEmpty());
}

TEST_F(PropertyCommands, AnElementThatCannotBeReadIsNotShown) {
    Select(10, VALUE, {PRIORITY_ARRAY});
    m_window.m_index = 17;
    m_bacnet.SetFault("ReadProperty", BACSTAC_STATUS_TIMEOUT, {}, 0, 1);
    m_commands->EditArrayItem();
    EXPECT_THAT(m_events.Take(), ElementsAre("index 1", "wait", "ReadProperty(10, (2, 1), 87, 17)", "answer",
                                             Box("ReadProperty", BACSTAC_STATUS_TIMEOUT)));
    SetValue(10, VALUE, PRIORITY_ARRAY, {TYPE_NONE, 0, "?"});
    m_commands->EditArrayItem();
    EXPECT_THAT(m_events.Take(), ElementsAre("index 17", "wait", "ReadProperty(10, (2, 1), 87, 17)", "answer"));
}

TEST_F(PropertyCommands, AnElementIsEditedUntilItIsWritten) {
    m_bacnet.SetFault("WriteProperty", BACSTAC_STATUS_TIMEOUT, {}, 0, 1);
    Select(10, INPUT, {PROP_PRESENT_VALUE});
    m_window.m_index = 2;
    Type(1);
    PressOk();
    m_commands->EditArrayItem();
    EXPECT_THAT(m_events.Take(),
                ElementsAre("index 1", "wait", "ReadProperty(10, (0, 5), 85, 2)", "answer", "edit present-value 21.5",
                            "WriteProperty(10, (0, 5), 85, 2, -1, 1)", Box("WriteProperty", BACSTAC_STATUS_TIMEOUT),
                            "edit present-value 1", "WriteProperty(10, (0, 5), 85, 2, -1, 1)", "reload"));
}

// ---- null

TEST_F(PropertyCommands, ANullThatIsRefusedReloadsTheList) {
    m_bacnet.SetFault("WritePropertyNull", BACSTAC_STATUS_ERROR, DENIED);
    m_commands->SetToNull();
    EXPECT_THAT(m_events.Take(), ElementsAre("priority 8", "WritePropertyNull(10, (2, 1), 85, -1, 8)",
                                             Box("WriteProperty", BACSTAC_STATUS_ERROR, DENIED), "reload"));
}

// ---- looking

TEST_F(PropertyCommands, ALookSendsNothing) {
    m_commands->Zoom();
    EXPECT_THAT(m_events.Take(), ElementsAre("show Value of \"row\" from \"zone - 1\": {a, b}"));
}

// ---- copy and paste

TEST_F(PropertyCommands, OneValueGoesToTheSelectedProperty) {
    Select(10, VALUE, {PROP_PRESENT_VALUE});
    m_commands->Copy();
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadPropertyMultiple(10, (2, 1) 85)"));
    Select(10, INPUT, {PROP_DESCRIPTION});
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), ElementsAre("WriteProperty(10, (0, 5), 28, -1, -1, 21.5)", "reload"));
}

TEST_F(PropertyCommands, OneValueNeedsOneRow) {
    m_commands->Copy();
    m_events.Take();
    for (const auto& rows : {Rows{}, Rows{PROP_PRESENT_VALUE, PROP_DESCRIPTION}}) {
        Select(10, VALUE, rows);
        m_commands->Paste();
    }
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST_F(PropertyCommands, OneValueThatIsRefusedIsReportedOnce) {
    m_commands->Copy();
    m_bacnet.SetFault("WriteProperty", BACSTAC_STATUS_ERROR, DENIED);
    m_events.Take();
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), ElementsAre("priority 8", "WriteProperty(10, (2, 1), 85, -1, 8, 21.5)",
                                             Box("WriteProperty", BACSTAC_STATUS_ERROR, DENIED)));
}

TEST_F(PropertyCommands, SeveralValuesGoToTheirOwnPropertiesOfAnotherDevice) {
    Select(10, VALUE, {PROP_DESCRIPTION, PROP_PRESENT_VALUE, OUT_OF_SERVICE});
    m_commands->Copy();
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadPropertyMultiple(10, (2, 1) 28 85 81)"));
    Select(20, REMOTE, {PROP_OBJECT_NAME});
    m_commands->Paste();
    EXPECT_THAT(
        m_events.Take(),
        ElementsAre("priority 8", "WritePropertyMultiple(20, (2, 7), 28 north, 85@8 21.5, 81 false)", "reload"));
}

TEST_F(PropertyCommands, SeveralValuesForWhatCannotBeCommandedHaveNoPriority) {
    Select(10, VALUE, {PROP_DESCRIPTION, PROP_PRESENT_VALUE});
    m_commands->Copy();
    m_events.Take();
    Select(10, INPUT, {PROP_PRESENT_VALUE});
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), ElementsAre("WritePropertyMultiple(10, (0, 5), 28 north, 85 21.5)", "reload"));
}

TEST_F(PropertyCommands, SeveralValuesWithoutAPresentValueHaveNoPriority) {
    Select(10, VALUE, {PROP_DESCRIPTION, OUT_OF_SERVICE});
    m_commands->Copy();
    m_events.Take();
    Select(10, VALUE, {PROP_PRESENT_VALUE});
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), ElementsAre("WritePropertyMultiple(10, (2, 1), 28 north, 81 false)", "reload"));
}

TEST_F(PropertyCommands, ACancelledPriorityPastesNothing) {
    Select(10, VALUE, {PROP_DESCRIPTION, PROP_PRESENT_VALUE});
    m_commands->Copy();
    m_events.Take();
    m_window.m_priority.reset();
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), ElementsAre("priority 8"));
    Select(10, VALUE, {});
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST_F(PropertyCommands, SeveralValuesThatAreRefusedReloadTheList) {
    Select(10, VALUE, {PROP_DESCRIPTION, OUT_OF_SERVICE});
    m_commands->Copy();
    m_bacnet.SetFault("WritePropertyMultiple", BACSTAC_STATUS_ERROR, DENIED);
    m_events.Take();
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(),
                ElementsAre("WritePropertyMultiple(10, (2, 1), 28 north, 81 false)",
                            Box("Failure writing properties", BACSTAC_STATUS_ERROR, DENIED), "reload"));
}

TEST_F(PropertyCommands, ARefusedPropertyIsLeftOutOfTheCopy) {
    Select(10, VALUE, {PROP_DESCRIPTION, UNITS, OUT_OF_SERVICE});
    m_commands->Copy();
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadPropertyMultiple(10, (2, 1) 28 117 81)"));
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), ElementsAre("WritePropertyMultiple(10, (2, 1), 28 north, 81 false)", "reload"));
}

TEST_F(PropertyCommands, WhatIsNoValueIsLeftOutOfTheCopy) {
    SetValue(10, VALUE, UNITS, {TYPE_NONE, 0, "?"});
    SetValue(10, VALUE, PRIORITY_ARRAY, {999, 1, "????????"});
    Select(10, VALUE, {UNITS, PRIORITY_ARRAY, PROP_DESCRIPTION});
    m_commands->Copy();
    m_events.Take();
    Select(10, VALUE, {PROP_DESCRIPTION});
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), ElementsAre("WriteProperty(10, (2, 1), 28, -1, -1, north)", "reload"));
}

TEST_F(PropertyCommands, AFailedCopyLeavesNothingToPaste) {
    m_commands->Copy();
    m_bacnet.SetFault("ReadPropertyMultiple", BACSTAC_STATUS_TIMEOUT);
    m_events.Take();
    m_commands->Copy();
    EXPECT_THAT(m_events.Take(), ElementsAre("ReadPropertyMultiple(10, (2, 1) 85)",
                                             Box("Failure reading properties", BACSTAC_STATUS_TIMEOUT)));
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), IsEmpty());
}

TEST_F(PropertyCommands, ACopyOfNothingKeepsWhatWasCopied) {
    m_commands->Copy();
    Select(10, VALUE, {});
    m_commands->Copy();
    m_events.Take();
    Select(10, INPUT, {PROP_PRESENT_VALUE});
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), ElementsAre("WriteProperty(10, (0, 5), 85, -1, -1, 21.5)", "reload"));
}

TEST_F(PropertyCommands, ACopyCanBePastedAgain) {
    m_commands->Copy();
    m_events.Take();
    Select(10, INPUT, {PROP_PRESENT_VALUE});
    m_commands->Paste();
    m_browser->RebuildTree();
    Select(20, REMOTE, {PROP_PRESENT_VALUE});
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), ElementsAre("WriteProperty(10, (0, 5), 85, -1, -1, 21.5)", "reload", "priority 8",
                                             "WriteProperty(20, (2, 7), 85, -1, 8, 21.5)", "reload"));
}

TEST_F(PropertyCommands, AListIsCopiedWhole) {
    SetValue(10, VALUE, PROPRIETARY, FakeValue::Of<std::uint32_t>(TYPE_UNSIGNED, {1, 2, 3}));
    SetValue(10, VALUE, PROPRIETARY + 1, FakeValue::Of<std::uint32_t>(TYPE_UNSIGNED, {}));
    Select(10, VALUE, {PROPRIETARY, PROPRIETARY + 1});
    m_commands->Copy();
    m_events.Take();
    m_commands->Paste();
    EXPECT_THAT(m_events.Take(), ElementsAre("WritePropertyMultiple(10, (2, 1), 5000 {1, 2, 3}, 5001 {})", "reload"));
}
