// The editors of dates and times.
#include "module/editors/MemberEditors.h"
#include "tests/gui/editors/Editors.h"

#include <QComboBox>
#include <QLineEdit>

#include <cstring>

namespace {

using ::testing::ElementsAre;

constexpr const char* DATE_TIME = "Input date-time";
constexpr const char* WEEK_N_DAY = "Input week-n-day";
constexpr BACSTAC_DATE_TIME ANY{{BACSTAC_ANY_YEAR, 0, BACSTAC_ANY_MONTH, BACSTAC_ANY_DAY, BACSTAC_ANY_WEEKDAY},
                                {255, 255, 255, 255}};
constexpr BACSTAC_DATE_TIME CHRISTMAS{{2026, 0, 12, 24, 4}, {18, 30, 0, 7}};

template <class Record>
bool AreSame(const Record& one, const Record& other) {
    return std::memcmp(&one, &other, sizeof one) == 0;
}

std::string ItemIn(const CControls& dialog, const std::string& label) {
    return dialog.Get<QComboBox>(label).currentText().toStdString();
}

std::string YearIn(const CControls& dialog) {
    return dialog.Get<QLineEdit>("&Year").text().toStdString();
}

std::vector<std::string> Shown(const CControls& dialog) {
    std::vector<std::string> shown;
    for (const char* const label : {"Day of &week", "&Day", "&Month"})
        shown.push_back(ItemIn(dialog, label));
    shown.push_back(YearIn(dialog));
    for (const char* const label : {"&Hour", "Mi&n.", "&Sec.", "H&und."})
        shown.push_back(ItemIn(dialog, label));
    return shown;
}

class DateEditor : public Editors {
protected:
    CPVDate m_date;
    const Open m_open = Value(m_date);
};

class TimeEditor : public Editors {
protected:
    CPVTime m_time;
    const Open m_open = Value(m_time);
};

class DateTimeEditor : public Editors {
protected:
    // What the record is after an untouched OK.
    BACSTAC_DATE_TIME Confirm(const BACSTAC_DATE_TIME& value) {
        m_value.Value = value;
        EXPECT_TRUE(Use(m_open, DATE_TIME, PressOk));
        return m_value.Value;
    }
    CPVDateTime m_value;
    const Open m_open = Value(m_value);
};

TEST_F(DateTimeEditor, ShowsBothHalves) {
    std::vector<std::string> shown;
    const auto look = [&](const CControls& dialog) {
        shown = Shown(dialog);
        PressCancel(dialog);
    };
    m_value.Value = CHRISTMAS;
    Use(m_open, DATE_TIME, look);
    EXPECT_THAT(shown, ElementsAre("Thursday", "24", "December", "2026", "18", "30", "00", "07"));
    m_value.Value = ANY;
    Use(m_open, DATE_TIME, look);
    EXPECT_THAT(shown, ElementsAre("*Any*", "*Any*", "*Any*", "", "*", "*", "*", "*"));
}

TEST_F(DateTimeEditor, StoresWhatIsChosen) {
    m_value.Value = ANY;
    EXPECT_TRUE(Use(m_open, DATE_TIME, [](const CControls& dialog) {
        dialog.Choose("Day of &week", "Thursday");
        dialog.Choose("&Day", "24");
        dialog.Choose("&Month", "December");
        dialog.Type("&Year", "2026");
        dialog.Choose("&Hour", "18");
        dialog.Choose("Mi&n.", "30");
        dialog.Choose("&Sec.", "00");
        dialog.Choose("H&und.", "07");
        PressOk(dialog);
    }));
    EXPECT_TRUE(AreSame(m_value.Value, CHRISTMAS));
    EXPECT_TRUE(Use(m_open, DATE_TIME, [](const CControls& dialog) {
        for (const char* const label : {"Day of &week", "&Day", "&Month"})
            dialog.Choose(label, "*Any*");
        dialog.Type("&Year", "");
        for (const char* const label : {"&Hour", "Mi&n.", "&Sec.", "H&und."})
            dialog.Choose(label, "*");
        PressOk(dialog);
    }));
    EXPECT_TRUE(AreSame(m_value.Value, ANY));
}

// The first, the last and how many items each list has.
TEST_F(DateTimeEditor, EachListHasItsOwnNumbers) {
    const struct {
        const char* label;
        const char* first;
        const char* last;
        std::size_t count;
    } lists[] = {
        {"Day of &week", "*Any*", "Sunday", 8},
        {"&Day", "*Any*", "*Even*", 35},
        {"&Month", "*Any*", "*Even*", 15},
        {"&Hour", "*", "23", 25},
        {"Mi&n.", "*", "59", 61},
        {"&Sec.", "*", "59", 61},
        {"H&und.", "*", "99", 101},
    };
    Use(m_open, DATE_TIME, [&](const CControls& dialog) {
        for (const auto& list : lists) {
            const auto items = ItemsOf(dialog.Get<QComboBox>(list.label));
            ASSERT_EQ(items.size(), list.count) << list.label;
            EXPECT_EQ(items.front(), list.first);
            EXPECT_EQ(items.back(), list.last);
        }
        PressCancel(dialog);
    });
}

TEST_F(DateEditor, ADayThatItsMonthDoesNotHaveStays) {
    constexpr BACSTAC_DATE IMPOSSIBLE{2026, 0, 2, 31, BACSTAC_ANY_WEEKDAY};
    m_date.Value = IMPOSSIBLE;
    EXPECT_TRUE(Use(m_open, DATE_TIME, [](const CControls& dialog) {
        EXPECT_THAT(Shown(dialog), ElementsAre("*Any*", "31", "February", "2026", "", "", "", ""));
        PressOk(dialog);
    }));
    EXPECT_TRUE(AreSame(m_date.Value, IMPOSSIBLE));
}

TEST_F(DateEditor, HasTheOddDaysOfTheStandard) {
    const struct {
        const char* day;
        const char* month;
        std::uint32_t dayNumber;
        std::uint32_t monthNumber;
    } cases[] = {{"*Last*", "*Even*", 32, 14}, {"*Odd*", "*Odd*", 33, 13}, {"*Even*", "January", 34, 1}};
    for (const auto& one : cases) {
        EXPECT_TRUE(Use(m_open, DATE_TIME, [&](const CControls& dialog) {
            dialog.Choose("&Day", one.day);
            dialog.Choose("&Month", one.month);
            PressOk(dialog);
        }));
        EXPECT_EQ(m_date.Value.Day, one.dayNumber);
        EXPECT_EQ(m_date.Value.Month, one.monthNumber);
    }
}

TEST_F(DateEditor, ItsYearIsTheFullOne) {
    for (const auto& [text, year] : {std::pair("", 0xFFFF), {"12", 12}, {"9999", 9999}, {"+26", 26}}) {
        Accept(m_open, DATE_TIME, "&Year", text);
        EXPECT_EQ(m_date.Value.Year, year);
    }
    for (const char* const text : {"20x6", " ", "-12", "2,0"})
        Refuse(m_open, DATE_TIME, "&Year", text, "Invalid year");
    Use(m_open, DATE_TIME, [](const CControls& dialog) {
        dialog.Type("&Year", "20267");
        EXPECT_EQ(YearIn(dialog), "2026") << "four characters at most";
        PressCancel(dialog);
    });
}

TEST_F(DateTimeEditor, LeavesToTheByteWhatNobodyTouched) {
    BACSTAC_DATE_TIME odd{};
    std::memset(&odd, 0x99, sizeof odd);
    EXPECT_TRUE(AreSame(Confirm(odd), odd));
    BACSTAC_DATE_TIME late = CHRISTMAS;
    late.Date.Month = 99;
    late.Date.Day = 0;
    late.Date.Reserved = 7;
    late.Time.Hour = 77;
    EXPECT_TRUE(AreSame(Confirm(late), late));

    m_value.Value = odd;
    EXPECT_TRUE(Use(m_open, DATE_TIME, [](const CControls& dialog) {
        EXPECT_EQ(ItemIn(dialog, "&Hour"), "") << "none stands for it";
        dialog.Choose("&Sec.", "00");
        PressOk(dialog);
    }));
    odd.Time.Second = 0;
    EXPECT_TRUE(AreSame(m_value.Value, odd)) << "the second alone changes";
}

TEST_F(DateEditor, HasNoTime) {
    m_date.Value = CHRISTMAS.Date;
    EXPECT_TRUE(Use(m_open, DATE_TIME, [](const CControls& dialog) {
        EXPECT_THAT(Shown(dialog), ElementsAre("Thursday", "24", "December", "2026", "", "", "", ""));
        EXPECT_FALSE(dialog.Get<QWidget>("&Hour").isEnabled());
        EXPECT_EQ(dialog.GetRoot().focusWidget(), &dialog.Get<QWidget>("Day of &week"));
        PressKey(Qt::Key_Return);
    }));
    EXPECT_TRUE(AreSame(m_date.Value, CHRISTMAS.Date));
}

TEST_F(TimeEditor, HasNoDate) {
    m_time.Value = CHRISTMAS.Time;
    EXPECT_TRUE(Use(m_open, DATE_TIME, [](const CControls& dialog) {
        EXPECT_THAT(Shown(dialog), ElementsAre("", "", "", "", "18", "30", "00", "07"));
        for (const char* const label : {"Day of &week", "&Day", "&Month", "&Year"})
            EXPECT_FALSE(dialog.Get<QWidget>(label).isEnabled()) << label;
        EXPECT_EQ(dialog.GetRoot().focusWidget(), &dialog.Get<QWidget>("&Hour"));
        dialog.Choose("&Hour", "*");
        PressOk(dialog);
    }));
    EXPECT_TRUE(AreSame(m_time.Value, BACSTAC_TIME{255, 30, 0, 7}));
}

TEST_F(Editors, ADateRangeIsTwoDates) {
    CPVDateRange range;
    range.Value = {CHRISTMAS.Date, ANY.Date};
    const auto text = [](const CControls& dialog, const char* label) {
        return dialog.Get<QLineEdit>(label).text().toStdString();
    };
    EXPECT_TRUE(Use(Value(range), "Input date-range", [&](const CControls& dialog) {
        EXPECT_EQ(text(dialog, "Start date"), DATE_EDITOR.print(CHRISTMAS.Date));
        EXPECT_EQ(text(dialog, "End date"), DATE_EDITOR.print(ANY.Date));
        m_script.Do(DATE_TIME, [](const CControls& inner) {
            EXPECT_THAT(inner.Texts().front(), "end-date");
            EXPECT_FALSE(inner.Get<QWidget>("&Hour").isEnabled());
            inner.Type("&Year", "1999");
            PressOk(inner);
        });
        dialog.Press("&End date");
        EXPECT_EQ(range.Value.End.Year, BACSTAC_ANY_YEAR) << "nothing changes before OK";
        for (const auto& [year, press] : {std::pair("1998", &PressCancel), {"2030", &PressOk}}) {
            EXPECT_EQ(text(dialog, "Start date"), DATE_EDITOR.print(CHRISTMAS.Date));
            m_script.Do(DATE_TIME, [&](const CControls& inner) {
                EXPECT_THAT(inner.Texts().front(), "start-date");
                EXPECT_FALSE(inner.Get<QWidget>("&Hour").isEnabled());
                inner.Type("&Year", year);
                press(inner);
            });
            dialog.Press("&Start date");
        }
        BACSTAC_DATE start = CHRISTMAS.Date;
        start.Year = 2030;
        EXPECT_EQ(text(dialog, "Start date"), DATE_EDITOR.print(start));
        BACSTAC_DATE end = ANY.Date;
        end.Year = 1999;
        EXPECT_EQ(text(dialog, "End date"), DATE_EDITOR.print(end));
        PressOk(dialog);
    }));
    EXPECT_EQ(range.Value.Start.Year, 2030);
    EXPECT_EQ(range.Value.End.Year, 1999) << "before the start: nobody looks";
}

TEST_F(Editors, AWeekAndDayHasThreeLists) {
    CPVWeekNDay value;
    value.Value = {BACSTAC_ANY_MONTH, BACSTAC_ANY_WEEK, BACSTAC_ANY_WEEKDAY};
    EXPECT_TRUE(Use(Value(value), WEEK_N_DAY, [](const CControls& dialog) {
        for (const char* const label : {"&Month", "&Week", "&Day of week"})
            EXPECT_EQ(ItemIn(dialog, label), "*Any*");
        dialog.Choose("&Month", "*Odd*");
        dialog.Choose("&Week", "*Last*");
        dialog.Choose("&Day of week", "Sunday");
        PressOk(dialog);
    }));
    EXPECT_TRUE(AreSame(value.Value, BACSTAC_WEEK_N_DAY{13, 6, 7}));
    EXPECT_TRUE(Use(Value(value), WEEK_N_DAY, [](const CControls& dialog) {
        dialog.Choose("&Week", "*Any*");
        PressOk(dialog);
    }));
    EXPECT_TRUE(AreSame(value.Value, BACSTAC_WEEK_N_DAY{13, BACSTAC_ANY_WEEK, 7}));
    value.Value = {99, 0, 8};
    EXPECT_TRUE(Use(Value(value), WEEK_N_DAY, PressOk));
    EXPECT_TRUE(AreSame(value.Value, BACSTAC_WEEK_N_DAY{99, 0, 8}));
}

} // namespace
