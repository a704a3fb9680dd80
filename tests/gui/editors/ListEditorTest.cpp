// The editor of lists and arrays.
#include "tests/gui/editors/Editors.h"

#include <QPushButton>
#include <QTest>
#include <QTreeView>

#include <numeric>
#include <utility>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

constexpr const char* LIST = "Input list of unsigned";
constexpr const char* UNSIGNED = "Input unsigned";

std::unique_ptr<CPVUnsigned> Number(std::uint32_t number) {
    auto value = std::make_unique<CPVUnsigned>();
    value->Value = number;
    return value;
}

void Fill(CPropertyValueList& list, const std::vector<std::uint32_t>& numbers) {
    list.Reset(static_cast<unsigned>(numbers.size()));
    for (unsigned i = 0; i < numbers.size(); ++i)
        list.SetElement(i, Number(numbers[i]).release());
}

std::vector<std::uint32_t> NumbersOf(const CPropertyValueList& list) {
    std::vector<std::uint32_t> numbers;
    for (unsigned i = 0; i < list.GetElementCnt(); ++i)
        numbers.push_back(static_cast<CPVUnsigned*>(list.GetElement(i))->Value);
    return numbers;
}

QTreeView& Elements(const CControls& dialog) {
    return dialog.Get<QTreeView>("Elements");
}

std::vector<std::string> Rows(const CControls& dialog) {
    const QAbstractItemModel& model = *Elements(dialog).model();
    std::vector<std::string> rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows.push_back(model.index(row, 0).data().toString().toStdString());
    return rows;
}

int Selected(const CControls& dialog) {
    const auto rows = Elements(dialog).selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

QPoint PlaceOf(const CControls& dialog, int row) {
    constexpr QPoint INSIDE(5, 5); // the column is wider than what is seen
    return Elements(dialog).visualRect(Elements(dialog).model()->index(row, 0)).topLeft() + INSIDE;
}

void Select(const CControls& dialog, int row) {
    QTest::mouseClick(Elements(dialog).viewport(), Qt::LeftButton, {}, PlaceOf(dialog, row));
}

void DoubleClick(const CControls& dialog, int row) {
    Select(dialog, row);
    QTest::mouseDClick(Elements(dialog).viewport(), Qt::LeftButton, {}, PlaceOf(dialog, row));
}

// Of the buttons that change the list; their names have no mnemonics.
std::vector<std::string> Enabled(const CControls& dialog) {
    std::vector<std::string> enabled;
    for (const char* const name : {"Add", "Edit", "Delete", "Up", "Down"}) {
        const auto& button = dialog.Get<QPushButton>(name);
        EXPECT_EQ(button.text(), QString::fromLatin1(name));
        if (button.isEnabled())
            enabled.emplace_back(name);
    }
    return enabled;
}

class ListEditor : public Editors {
protected:
    void Foretell(const std::string& number) {
        m_script.Do(UNSIGNED, [number](const CControls& dialog) {
            dialog.Type("Value", number);
            PressOk(dialog);
        });
    }
    CPropertyValueList m_list{TYPE_UNSIGNED};
    const Open m_open = Value(m_list);
};

TEST_F(ListEditor, OpensTheEditorOfTheElementsOnADoubleClick) {
    Fill(m_list, {10, 20, 30});
    EXPECT_TRUE(Use(m_open, LIST, [this](const CControls& dialog) {
        EXPECT_THAT(Rows(dialog), ElementsAre("10", "20", "30"));
        EXPECT_EQ(Elements(dialog).model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("#"));
        EXPECT_EQ(Elements(dialog).columnWidth(0), 1024);
        Foretell("21");
        DoubleClick(dialog, 1);
        EXPECT_THAT(Rows(dialog), ElementsAre("10", "21", "30"));
        EXPECT_EQ(Selected(dialog), 1);
        PressOk(dialog);
    }));
    EXPECT_THAT(NumbersOf(m_list), ElementsAre(10, 21, 30));
    EXPECT_THAT(m_events.Take(), ElementsAre(std::string("Dialog(") + LIST + ")", "Dialog(Input unsigned)"));
}

TEST_F(ListEditor, NamesTheProperty) {
    m_list.SetPropId(OBJ_MULTI_STATE_INPUT, 7);
    Use(m_open, LIST, [](const CControls& dialog) {
        EXPECT_THAT(dialog.Texts(), ElementsAre("alarm-values"));
        PressCancel(dialog);
    });
}

// Row 0 is element 1: as element 0, the size of an array, it would have no name.
TEST_F(ListEditor, PrintsTheElementsByTheirNumbers) {
    constexpr BACSTAC_PROPERTY_ID TRACKING_VALUE = 164;
    CPropertyValueList states(TYPE_ENUMERATED);
    states.SetPropId(OBJ_EVENT_ENROLLMENT, TRACKING_VALUE);
    states.Reset(1);
    states.SetElement(0, states.CreateElement());
    Use(Value(states), "Input list of enumerated", [](const CControls& dialog) {
        EXPECT_THAT(Rows(dialog), ElementsAre("quiet"));
        PressCancel(dialog);
    });
}

TEST_F(ListEditor, IsConfirmedWithEnterAmongItsRows) {
    Fill(m_list, {10});
    EXPECT_TRUE(Use(m_open, LIST, [](const CControls& dialog) {
        Select(dialog, 0);
        EXPECT_EQ(dialog.GetRoot().focusWidget(), &Elements(dialog));
        PressKey(Qt::Key_Return);
        EXPECT_FALSE(dialog.GetRoot().isVisible());
    }));
    EXPECT_THAT(m_events.Take(), ElementsAre(std::string("Dialog(") + LIST + ")")) << "Enter edits no row";
}

TEST_F(ListEditor, DrawsAllRowsAgainThatHaveAnotherNumber) {
    Fill(m_list, {10, 20, 30, 40});
    Use(m_open, LIST, [](const CControls& dialog) {
        std::vector<int> drawn;
        QObject::connect(Elements(dialog).model(), &QAbstractItemModel::dataChanged, &Elements(dialog),
                         [&](const QModelIndex& first, const QModelIndex& last) {
                             for (int row = first.row(); row <= last.row(); ++row)
                                 drawn.push_back(row);
                         });
        Select(dialog, 1);
        dialog.Press("Delete");
        EXPECT_THAT(std::exchange(drawn, {}), ElementsAre(1, 2));
        dialog.Press("Up");
        EXPECT_THAT(std::exchange(drawn, {}), UnorderedElementsAre(0, 1));
        dialog.Press("Down");
        EXPECT_THAT(std::exchange(drawn, {}), UnorderedElementsAre(1, 2));
        PressCancel(dialog);
    });
}

TEST_F(ListEditor, FillsAnArrayUpToItsSize) {
    CPropertyValueList array(TYPE_UNSIGNED, 16);
    Fill(array, {7, 8, 9});
    EXPECT_TRUE(Use(Value(array), LIST, [](const CControls& dialog) {
        EXPECT_THAT(Rows(dialog), SizeIs(16));
        EXPECT_EQ(Selected(dialog), 0);
        EXPECT_THAT(Enabled(dialog), ElementsAre("Edit", "Up", "Down"));
        PressOk(dialog);
    }));
    std::vector<std::uint32_t> wanted(16, 0);
    std::iota(wanted.begin(), wanted.begin() + 3, 7);
    EXPECT_EQ(NumbersOf(array), wanted);
}

TEST_F(ListEditor, ShowsAllElementsOfAnArrayThatHasTooMany) {
    CPropertyValueList array(TYPE_UNSIGNED, 2);
    Fill(array, {7, 8, 9});
    EXPECT_TRUE(Use(Value(array), LIST, [](const CControls& dialog) {
        EXPECT_THAT(Rows(dialog), ElementsAre("7", "8", "9"));
        EXPECT_THAT(Enabled(dialog), ElementsAre("Edit", "Up", "Down"));
        PressOk(dialog);
    }));
    EXPECT_THAT(NumbersOf(array), ElementsAre(7, 8, 9));
}

TEST_F(ListEditor, OffersOnlyToAddWhenThereIsNothing) {
    EXPECT_TRUE(Use(m_open, LIST, [](const CControls& dialog) {
        EXPECT_THAT(Rows(dialog), IsEmpty());
        EXPECT_THAT(Enabled(dialog), ElementsAre("Add"));
        PressOk(dialog);
    }));
    EXPECT_EQ(m_list.GetElementCnt(), 0U);
}

TEST_F(ListEditor, AddsACopyOfTheSelectedElementAtTheEnd) {
    Fill(m_list, {10, 20, 30});
    EXPECT_TRUE(Use(m_open, LIST, [this](const CControls& dialog) {
        Select(dialog, 1);
        m_script.Do(UNSIGNED, [](const CControls& inner) {
            PressKey(Qt::Key_End);
            TypeText(*inner.GetRoot().focusWidget(), "5"); // behind what it begins with
            PressOk(inner);
        });
        dialog.Press("Add");
        EXPECT_THAT(Rows(dialog), ElementsAre("10", "20", "30", "205"));
        m_script.Press(UNSIGNED, "Cancel");
        dialog.Press("Add");
        EXPECT_THAT(Rows(dialog), SizeIs(4));
        PressOk(dialog);
    }));
    EXPECT_THAT(NumbersOf(m_list), ElementsAre(10, 20, 30, 205));
}

TEST_F(ListEditor, AddsANewElementWhereNothingIsSelected) {
    EXPECT_TRUE(Use(m_open, LIST, [this](const CControls& dialog) {
        m_script.Press(UNSIGNED, "OK");
        dialog.Press("Add");
        EXPECT_THAT(Rows(dialog), ElementsAre("0"));
        PressOk(dialog);
    }));
    EXPECT_THAT(NumbersOf(m_list), ElementsAre(0));
}

TEST_F(ListEditor, DeletesAndSelectsWhatTookThePlace) {
    Fill(m_list, {10, 20, 30});
    EXPECT_TRUE(Use(m_open, LIST, [](const CControls& dialog) {
        Select(dialog, 1);
        dialog.Press("Delete");
        EXPECT_THAT(Rows(dialog), ElementsAre("10", "30"));
        EXPECT_EQ(Selected(dialog), 1);
        dialog.Press("Delete");
        EXPECT_EQ(Selected(dialog), -1) << "nothing took the place of the last one";
        EXPECT_THAT(Enabled(dialog), ElementsAre("Add"));
        PressOk(dialog);
    }));
    EXPECT_THAT(NumbersOf(m_list), ElementsAre(10));
}

TEST_F(ListEditor, MovesElementsAndStaysOnTheirPlaces) {
    Fill(m_list, {10, 20, 30});
    EXPECT_TRUE(Use(m_open, LIST, [](const CControls& dialog) {
        dialog.Press("Up");
        EXPECT_THAT(Rows(dialog), ElementsAre("10", "20", "30")) << "the first has nothing above it";
        Select(dialog, 1);
        dialog.Press("Up");
        EXPECT_THAT(Rows(dialog), ElementsAre("20", "10", "30"));
        EXPECT_EQ(Selected(dialog), 1);
        dialog.Press("Down");
        EXPECT_THAT(Rows(dialog), ElementsAre("20", "30", "10"));
        EXPECT_EQ(Selected(dialog), 1);
        Select(dialog, 2);
        dialog.Press("Down");
        EXPECT_THAT(Rows(dialog), ElementsAre("20", "30", "10"));
        PressOk(dialog);
    }));
    EXPECT_THAT(NumbersOf(m_list), ElementsAre(20, 30, 10));
}

TEST_F(ListEditor, LeavesTheListOnCancelWhateverWasConfirmedInside) {
    Fill(m_list, {10, 20, 30});
    EXPECT_FALSE(Use(m_open, LIST, [this](const CControls& dialog) {
        for (const int row : {0, 2}) {
            Foretell("77");
            Select(dialog, row);
            dialog.Press("Edit");
        }
        EXPECT_THAT(Rows(dialog), ElementsAre("77", "20", "77"));
        dialog.Press("Delete");
        PressCancel(dialog);
    }));
    EXPECT_THAT(NumbersOf(m_list), ElementsAre(10, 20, 30));
}

TEST_F(ListEditor, DropsWhatWasConfirmedInsideAListThatIsLeftByCancel) {
    CPVSpecialEvent event;
    event.GetTimeValues().Reset(1);
    event.GetTimeValues().SetElement(0, new CPVTimeValue);
    const std::string before = event.ToText(BACSTAC_NO_INDEX);
    EXPECT_TRUE(Use(Value(event), "Input special-event", [this](const CControls& dialog) {
        m_script.Do("Input list of time-value", [this](const CControls& list) {
            const auto rows = Rows(list);
            m_script.Do("Input time-value", [this](const CControls& element) {
                m_script.Do("Input date-time", [](const CControls& time) {
                    time.Choose("&Hour", "09");
                    PressOk(time);
                });
                element.Press("&Time");
                PressOk(element);
            });
            DoubleClick(list, 0);
            EXPECT_NE(Rows(list), rows);
            PressCancel(list);
        });
        dialog.Press("Edit time-value list...");
        PressOk(dialog);
    }));
    EXPECT_EQ(event.ToText(BACSTAC_NO_INDEX), before);
}

// Counts how often its text is made.
class CCounted : public CPVUnsigned {
public:
    explicit CCounted(int& count) : m_count(count) {}
    CPropertyValue* Clone() const override { return new CCounted(*this); }
    using CPVUnsigned::WriteTo;
    bool WriteTo(BACSTAC_PROPERTY_CONTENTS& contents) const override {
        ++m_count;
        return CPVUnsigned::WriteTo(contents);
    }

private:
    int& m_count;
};

TEST_F(ListEditor, MakesTheTextsOfWhatIsSeenAlone) {
    constexpr unsigned MANY = 10'000;
    int count = 0;
    m_list.Reset(MANY);
    for (unsigned i = 0; i < MANY; ++i)
        m_list.SetElement(i, new CCounted(count));
    EXPECT_TRUE(Use(m_open, LIST, [](const CControls& dialog) {
        EXPECT_EQ(Elements(dialog).model()->rowCount(), static_cast<int>(MANY));
        for (int i = 0; i < 3; ++i)
            dialog.Press("Delete");
        Elements(dialog).scrollToBottom();
        QCoreApplication::processEvents();
        PressOk(dialog);
    }));
    EXPECT_EQ(m_list.GetElementCnt(), MANY - 3);
    EXPECT_GT(count, 0);
    EXPECT_LT(count, 1000);
}

} // namespace
