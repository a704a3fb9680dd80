// The editors of event parameters: the event type, and a form for each.
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "module/editors/EditEPOutOfRange.h"
#include "module/editors/EnumNames.h"
#include "tests/gui/editors/Forms.h"

#include <QComboBox>

#include <algorithm>
#include <iterator>
#include <ostream>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

constexpr const char* PARAMETERS = "Input event-parameter";
constexpr const char* REFERENCE = "Input device-object-property";
constexpr BACSTAC_PROPERTY_ID PROP_EVENT_PARAMETERS = 83;

class EventParameters : public Forms {
protected:
    EventParameters() { m_parameters.SetPropId(OBJ_EVENT_ENROLLMENT, PROP_EVENT_PARAMETERS); }
    bool UseParameters(const CDialogScript::Action& use) { return Use(Value(m_parameters), PARAMETERS, use); }
    CPVEventParameter m_parameters;
};

TEST_F(EventParameters, OfferAllEventTypesByName) {
    m_parameters.SetEventType(5);
    UseParameters([](const CControls& form) {
        const auto types = ItemsOf(form.Get<QComboBox>("&Type"));
        EXPECT_THAT(types, ElementsAreArray(EnumNames(CBacGeneral::GetEnumTypeId(37, 9))));
        ASSERT_GE(types.size(), 12U);
        EXPECT_EQ(types[0], "change-of-bitstring");
        EXPECT_EQ(types[11], "unsigned-range");
        EXPECT_EQ(ItemOf(form, "Type"), "out-of-range");
        PressCancel(form);
    });
}

TEST_F(EventParameters, EachTypeOpensItsOwnForm) {
    const std::pair<const char*, const char*> forms[] = {
        {"change-of-bitstring", "Input ep-change-of-bitstring"},
        {"change-of-state", "Input ep-change-of-state"},
        {"change-of-value", "Input ep-change-of-value"},
        {"command-failure", "Input ep-command-failure"},
        {"floating-limit", "Input ep-floating-limit"},
        {"out-of-range", "Input ep-out-of-range"},
        {"change-of-life-safety", "Input ep-change-of-life-safety"},
        {"extended", "Input ep-extended"},
        {"buffer-ready", "Input ep-buffer-ready"},
        {"unsigned-range", "Input ep-unsigned-range"},
    };
    m_parameters.SetEventType(11);
    UseParameters([&](const CControls& form) {
        for (const auto& [type, title] : forms) {
            form.Choose("Type", type);
            Edit(form, "&Value", title, "parameter", PressOk);
        }
        PressCancel(form);
    });
}

TEST_F(EventParameters, TypesWithoutAFormOpenNothing) {
    int last = 0;
    EXPECT_TRUE(UseParameters([&](const CControls& form) {
        auto& types = form.Get<QComboBox>("Type");
        last = types.count() - 1;
        for (int type = 0; type < types.count(); ++type) {
            if (type < 6 || (type > 7 && type < 12))
                continue;
            types.setCurrentIndex(type);
            form.Press("&Value");
        }
        PressOk(form);
    }));
    EXPECT_THAT(m_events.Take(), ElementsAre("Dialog(Input event-parameter)"));
    EXPECT_EQ(m_parameters.GetEventType(), static_cast<std::uint32_t>(last)) << "the device is the judge";
}

TEST_F(EventParameters, ANewTypeTakesTheOldParametersAwayAndTheSameOneDoesNot) {
    m_parameters.SetEventType(5);
    static_cast<CPVEPOutOfRange*>(m_parameters.GetParameters())->Value.TimeDelay = 77;
    const std::string before = OctetsOf(m_parameters);
    EXPECT_TRUE(UseParameters([](const CControls& form) {
        form.Choose("Type", "out-of-range");
        PressOk(form);
    }));
    EXPECT_EQ(OctetsOf(m_parameters), before);
    EXPECT_FALSE(UseParameters([](const CControls& form) {
        form.Choose("Type", "buffer-ready");
        PressCancel(form);
    }));
    EXPECT_EQ(OctetsOf(m_parameters), before);
    EXPECT_TRUE(UseParameters([](const CControls& form) {
        form.Choose("Type", "buffer-ready");
        form.Choose("Type", "out-of-range");
        PressOk(form);
    }));
    EXPECT_EQ(m_parameters.GetEventType(), 5U);
    EXPECT_EQ(static_cast<CPVEPOutOfRange*>(m_parameters.GetParameters())->Value.TimeDelay, 0U);
}

TEST_F(EventParameters, ShowTheParametersOfTheTypeThatIsChosen) {
    CPVEventParameter fresh;
    fresh.SetPropId(OBJ_EVENT_ENROLLMENT, PROP_EVENT_PARAMETERS);
    m_parameters.SetEventType(5);
    UseParameters([&](const CControls& form) {
        for (const auto& [type, name] : {std::pair(11U, "unsigned-range"), {2U, "change-of-value"}}) {
            fresh.SetEventType(type);
            form.Choose("&Type", name);
            EXPECT_EQ(TextOf(form, "Value"), fresh.ToText(BACSTAC_NO_INDEX));
            EXPECT_NE(TextOf(form, "Value"), "");
        }
        PressCancel(form);
    });
}

TEST_F(EventParameters, AnUnknownTypeShowsNoneAndStays) {
    m_parameters.SetEventType(4711);
    EXPECT_TRUE(UseParameters([](const CControls& form) {
        EXPECT_EQ(form.Get<QComboBox>("Type").currentIndex(), -1);
        form.Press("&Value");
        PressOk(form);
    }));
    EXPECT_EQ(m_parameters.GetEventType(), 4711U);
}

TEST_F(EventParameters, CancelOfTheOuterFormDropsWhatTheInnerOneConfirmed) {
    m_parameters.SetEventType(11);
    const std::string before = OctetsOf(m_parameters);
    const auto changeTheDelay = [this](const CControls& form) {
        Edit(form, "&Value", "Input ep-unsigned-range", "parameter", [this](const CControls& range) {
            EXPECT_EQ(Enter(range, "Time delay", "Input unsigned", "time-delay", "30"), "30");
            PressOk(range);
        });
    };
    EXPECT_FALSE(UseParameters([&](const CControls& form) {
        changeTheDelay(form);
        PressCancel(form);
    }));
    EXPECT_EQ(OctetsOf(m_parameters), before);
    EXPECT_TRUE(UseParameters([&](const CControls& form) {
        changeTheDelay(form);
        PressOk(form);
    }));
    EXPECT_EQ(static_cast<CPVEPUnsignedRange*>(m_parameters.GetParameters())->Value.TimeDelay, 30U);
}

// ---- the fields of the forms, each with its editor

struct FormFieldCase {
    BACSTAC_DATA_TYPE type;
    const char* form; // its title
    const char* field;
    const char* editor;
    const char* label;
    const char* hint = "";
};

void PrintTo(const FormFieldCase& row, std::ostream* to) {
    *to << row.form << " " << row.field;
}

constexpr const char* UNSIGNED = "Input unsigned";
constexpr const char* REAL = "Input real";

constexpr FormFieldCase FIELDS[] = {
    {1000, "Input ep-change-of-bitstring", "&Time delay", UNSIGNED, "time-delay", "s"},
    {1000, "Input ep-change-of-bitstring", "&Bit mask", "Input bit-string", "bit-mask"},
    {1001, "Input ep-change-of-state", "&Time delay", UNSIGNED, "time-delay", "s"},
    {1002, "Input ep-change-of-value", "&Time delay", UNSIGNED, "time-delay", "s"},
    {1003, "Input ep-command-failure", "&Time delay", UNSIGNED, "time-delay", "s"},
    {1003, "Input ep-command-failure", "&Feedback property", REFERENCE, "feedback-property"},
    {1004, "Input ep-floating-limit", "&Time delay", UNSIGNED, "time-delay", "s"},
    {1004, "Input ep-floating-limit", "&Setpoint", REFERENCE, "setpoint"},
    {1004, "Input ep-floating-limit", "&Low diff. limit", REAL, "low-limit"},
    {1004, "Input ep-floating-limit", "&High diff. limit", REAL, "high-limit"},
    {1004, "Input ep-floating-limit", "&Dead band", REAL, "dead-band"},
    {1005, "Input ep-out-of-range", "&Time delay", UNSIGNED, "time-delay", "s"},
    {1005, "Input ep-out-of-range", "&Low limit", REAL, "low-limit"},
    {1005, "Input ep-out-of-range", "&High limit", REAL, "high-limit"},
    {1005, "Input ep-out-of-range", "&Dead band", REAL, "dead-band"},
    {1008, "Input ep-change-of-life-safety", "&Time delay", UNSIGNED, "time-delay", "s"},
    {1008, "Input ep-change-of-life-safety", "&Mode property", REFERENCE, "mode-property"},
    {1009, "Input ep-extended", "&Vendor id", UNSIGNED, "vendor-id"},
    {1009, "Input ep-extended", "&Event type", UNSIGNED, "extended-event-type"},
    {1010, "Input ep-buffer-ready", "&Notify threshold", UNSIGNED, "notify-threshold"},
    {1010, "Input ep-buffer-ready", "&Prev. notify count", UNSIGNED, "prev-notify-count"},
    {1011, "Input ep-unsigned-range", "&Time delay", UNSIGNED, "time-delay", "s"},
    {1011, "Input ep-unsigned-range", "&Low limit", UNSIGNED, "low-limit"},
    {1011, "Input ep-unsigned-range", "&High limit", UNSIGNED, "high-limit"},
};

class EventParameterField : public Forms, public ::testing::WithParamInterface<FormFieldCase> {
protected:
    const std::unique_ptr<CPropertyValue> m_value{
        CPropertyValue::CreateValue(OBJ_EVENT_ENROLLMENT, PROP_EVENT_PARAMETERS, GetParam().type, 1)};
};

TEST_P(EventParameterField, HasItsEditorItsLabelAndItsHint) {
    const FormFieldCase& row = GetParam();
    const std::string before = OctetsOf(*m_value);
    EXPECT_TRUE(Use(Value(*m_value), row.form, [&](const CControls& form) {
        Edit(form, row.field, row.editor, row.label, [&](const CControls& editor) {
            const std::string hint = row.hint;
            if (!hint.empty()) {
                EXPECT_EQ(editor.Texts().back(), hint);
            } else if (row.editor == std::string(UNSIGNED)) {
                EXPECT_EQ(editor.Texts().size(), 1U);
            } else if (row.editor == std::string(REFERENCE)) {
                EXPECT_TRUE(editor.Get<QWidget>("Device (optional)").isEnabled());
            }
            PressOk(editor);
        });
        PressOk(form);
    }));
    EXPECT_EQ(OctetsOf(*m_value), before);
}

std::string NameOf(const ::testing::TestParamInfo<FormFieldCase>& row) {
    std::string name = "Type" + std::to_string(row.param.type) + row.param.label;
    std::ranges::replace(name, '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Forms, EventParameterField, ::testing::ValuesIn(FIELDS), NameOf);

std::vector<FormFieldCase> NumberFields() {
    std::vector<FormFieldCase> numbers(std::begin(FIELDS), std::end(FIELDS));
    std::erase_if(numbers, [](const FormFieldCase& row) {
        return row.editor != std::string(UNSIGNED) && row.editor != std::string(REAL);
    });
    return numbers;
}

using EventParameterNumber = EventParameterField;

TEST_P(EventParameterNumber, IsStoredAloneAndTakenBack) {
    const FormFieldCase& row = GetParam();
    const std::string before = OctetsOf(*m_value);
    const auto enter = [&](const char* number) {
        EXPECT_TRUE(Use(Value(*m_value), row.form, [&](const CControls& form) {
            EXPECT_EQ(Enter(form, row.field, row.editor, row.label, number), number);
            PressOk(form);
        }));
    };
    enter("41");
    EXPECT_NE(OctetsOf(*m_value), before);
    enter("0");
    EXPECT_EQ(OctetsOf(*m_value), before);
}

INSTANTIATE_TEST_SUITE_P(Forms, EventParameterNumber, ::testing::ValuesIn(NumberFields()), NameOf);

// ---- what is special to one

class EventParameterForm : public Forms {};

TEST_F(EventParameterForm, CriteriaBeginAnewWithTheirType) {
    CPVEPChangeOfValue value;
    value.Value = {};
    value.Value.BitMask = {4, {5}};
    EXPECT_TRUE(Use(Value(value), "Input ep-change-of-value", [&](const CControls& form) {
        EXPECT_THAT(ItemsOf(form.Get<QComboBox>("Criteria t&ype")), ElementsAre("bit-mask", "increment"));
        EXPECT_EQ(ItemOf(form, "Criteria t&ype"), "bit-mask");
        Edit(form, "Criteria &value", "Input bit-string", "bit-mask criteria", PressOk);
        form.Choose("Criteria t&ype", "increment");
        EXPECT_EQ(TextOf(form, "Criteria value"), "0");
        EXPECT_EQ(Enter(form, "Criteria &value", REAL, "increment criteria", "0.5"), "0.5");
        PressOk(form);
    }));
    EXPECT_EQ(value.Value.Choice, 1U);
    EXPECT_EQ(value.Value.Increment, 0.5F);
    EXPECT_TRUE(Use(Value(value), "Input ep-change-of-value", [](const CControls& form) {
        form.Choose("Criteria t&ype", "bit-mask");
        PressOk(form);
    }));
    EXPECT_EQ(value.Value.Choice, 0U);
    EXPECT_EQ(value.Value.BitMask, BACSTAC_BIT_STRING{});
}

TEST_F(EventParameterForm, ListsAreEditedInPlace) {
    CPVEPChangeOfState states;
    EXPECT_TRUE(Use(Value(states), "Input ep-change-of-state", [&](const CControls& form) {
        EditList(form, "Edit value &list...", "property-state", [&](const CControls& list) {
            m_script.Do("Input property-state", [](const CControls& state) {
                state.Choose("Type", "units");
                PressOk(state);
            });
            list.Press("Add");
            PressOk(list);
        });
        PressOk(form);
    }));
    ASSERT_EQ(states.GetValues().GetElementCnt(), 1U);
    EXPECT_EQ(static_cast<CPVPropertyState*>(states.GetValues().GetElement(0))->Value.Type, 10U);

    CPVEPChangeOfBitString bits;
    EXPECT_FALSE(Use(Value(bits), "Input ep-change-of-bitstring", [&](const CControls& form) {
        EditList(form, "Edit value &list...", "bit-string", [&](const CControls& list) {
            m_script.Press("Input bit-string", "OK");
            list.Press("Add");
            PressOk(list);
        });
        PressCancel(form);
    }));
    EXPECT_EQ(bits.GetValues().GetElementCnt(), 0U);
}

TEST_F(EventParameterForm, LifeSafetyHasTwoLists) {
    CPVEPChangeOfLifeSafety value;
    EXPECT_TRUE(Use(Value(value), "Input ep-change-of-life-safety", [&](const CControls& form) {
        const auto addOne = [&](const CControls& list) {
            m_script.Do("Input enumerated", [](const CControls& state) {
                state.Choose("tracking-value", "tamper-alarm");
                PressOk(state);
            });
            list.Press("Add");
            PressOk(list);
        };
        EditList(form, "Edit li&fe-safety-alarm-values...", "enumerated", addOne);
        EXPECT_EQ(value.GetLifeSafetyAlarmValues().GetElementCnt(), 0U); // not before OK
        EditList(form, "Edit &alarm-values...", "enumerated", addOne);
        EditList(form, "Edit &alarm-values...", "enumerated", addOne);
        PressOk(form);
    }));
    EXPECT_EQ(value.GetLifeSafetyAlarmValues().GetElementCnt(), 1U);
    ASSERT_EQ(value.GetAlarmValues().GetElementCnt(), 2U);
    EXPECT_EQ(value.GetAlarmValues().GetElement(1)->ToText(BACSTAC_NO_INDEX), "tamper-alarm");
}

TEST_F(EventParameterForm, ExtendedParametersAreOfAnyType) {
    CPVEPExtended extended;
    extended.SetPropId(OBJ_EVENT_ENROLLMENT, PROP_EVENT_PARAMETERS);
    EXPECT_TRUE(Use(Value(extended), "Input ep-extended", [&](const CControls& form) {
        EditList(form, "Edit &parameters...", "any-primitive", [&](const CControls& list) {
            m_script.Do("Input any-primitive", [](const CControls& any) {
                EXPECT_EQ(ItemsOf(any.Get<QComboBox>("Type")).size(), 9U);
                any.Choose("Type", "boolean");
                PressOk(any);
            });
            list.Press("Add");
            PressOk(list);
        });
        PressOk(form);
    }));
    ASSERT_EQ(extended.GetParameters().GetElementCnt(), 1U);
    CPropertyContents written(extended.GetDataSize());
    ASSERT_TRUE(extended.WriteTo(written));
    EXPECT_EQ(static_cast<const BACSTAC_EP_EXTENDED*>(written.GetBufferPtr())->Parameters.Count, 1U);
}

// ---- the sets of an out-of-range form

class OutOfRange : public Forms {
protected:
    bool UseSet(CEditEPOutOfRange& dialog, const CDialogScript::Action& use) {
        return Use([&] { return dialog.Run(); }, "Input ep-out-of-range", use);
    }
    // 9 s, low -21.5, high 1e10, dead band -1.
    void EnterAll(const CControls& form) {
        EXPECT_EQ(Enter(form, "Time delay", UNSIGNED, "time-delay", "9"), "9");
        Enter(form, "Low limit", REAL, "low-limit", "-21.5");
        Enter(form, "High limit", REAL, "high-limit", "1e10");
        Enter(form, "Dead band", REAL, "dead-band", "-1");
        PressOk(form);
    }
};

TEST_F(OutOfRange, RealsAreTheSetOfTheDataType) {
    CPVEPOutOfRange value;
    EXPECT_TRUE(Use(Value(value), "Input ep-out-of-range", [this](const CControls& form) { EnterAll(form); }));
    EXPECT_EQ(value.Value.TimeDelay, 9U);
    EXPECT_EQ(value.Value.LowLimit, -21.5F);
    EXPECT_EQ(value.Value.HighLimit, 1e10F);
    EXPECT_EQ(value.Value.DeadBand, -1.0F);
    Use(Value(value), "Input ep-out-of-range", [](const CControls& form) {
        EXPECT_EQ(TextOf(form, "Low limit"), "-21.5");
        EXPECT_EQ(TextOf(form, "High limit"), "1e+10");
        EXPECT_EQ(TextOf(form, "Dead band"), "-1");
        PressCancel(form);
    });
}

TEST_F(OutOfRange, DoublesKeepTheirDigits) {
    OnGui([&] {
        CEditEPOutOfRange dialog(nullptr, 14);
        EXPECT_TRUE(UseSet(dialog, [this](const CControls& form) {
            EXPECT_EQ(Enter(form, "Low limit", REAL, "low-limit", "0.123456789012345"), "0.123456789012345");
            PressOk(form);
        }));
        EXPECT_EQ(dialog.Value.Double.LowLimit, 0.123456789012345);
        EXPECT_EQ(dialog.Value.Real.LowLimit, 0.0F);
    });
}

TEST_F(OutOfRange, SignedLimitsAreCutAndHeldWithinTheirRange) {
    OnGui([&] {
        CEditEPOutOfRange dialog(nullptr, 15);
        dialog.Value.Signed.LowLimit = -5;
        EXPECT_TRUE(UseSet(dialog, [this](const CControls& form) {
            EXPECT_EQ(TextOf(form, "Low limit"), "-5");
            EnterAll(form);
        }));
        EXPECT_EQ(dialog.Value.Signed.TimeDelay, 9U);
        EXPECT_EQ(dialog.Value.Signed.LowLimit, -21);
        EXPECT_EQ(dialog.Value.Signed.HighLimit, INT32_MAX);
        EXPECT_EQ(dialog.Value.Signed.DeadBand, 0U);
    });
}

TEST_F(OutOfRange, UnsignedLimitsToo) {
    OnGui([&] {
        CEditEPOutOfRange dialog(nullptr, 16);
        EXPECT_TRUE(UseSet(dialog, [this](const CControls& form) { EnterAll(form); }));
        EXPECT_EQ(dialog.Value.Unsigned.TimeDelay, 9U);
        EXPECT_EQ(dialog.Value.Unsigned.LowLimit, 0U);
        EXPECT_EQ(dialog.Value.Unsigned.HighLimit, UINT32_MAX);
        EXPECT_EQ(dialog.Value.Real.TimeDelay, 0U);
        EXPECT_EQ(dialog.Value.Signed.TimeDelay, 0U);
    });
}

} // namespace
