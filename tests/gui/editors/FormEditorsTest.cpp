// The forms of destinations, subscriptions, time stamps, quantities, states and commands.
#include "api/bacnet/Enums.h"
#include "module/editors/EditRealDlg.h"
#include "module/widgets/SpinEdit.h"
#include "tests/gui/editors/Forms.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QTreeView>

#include <cstring>

namespace {

using ::testing::ElementsAre;

constexpr const char* REFERENCE = "Input device-object-property";
constexpr std::uint32_t WHOLE = 0xFFFFFFFFU;

// ---- destinations

class Destination : public Forms {
protected:
    Destination() {
        BACSTAC_DESTINATION& value = m_destination.Value;
        value = {};
        value.ValidDays = {7, {0x7F}};
        value.From = {0, 0, 0, 0};
        value.To = {23, 59, 59, 99};
        value.Recipient.Device = {OBJ_DEVICE, 4711};
        value.ProcessId = 7;
        value.Transitions = {3, {7}};
    }
    bool UseDestination(const CDialogScript::Action& use) {
        return Use(Value(m_destination), "Input destination", use);
    }
    CPVDestination m_destination;
};

TEST_F(Destination, ShowsItsFields) {
    UseDestination([](const CControls& form) {
        EXPECT_EQ(TextOf(form, "From time"), "00:00:00.00");
        EXPECT_EQ(TextOf(form, "To time"), "23:59:59.99");
        EXPECT_EQ(TextOf(form, "Recipient"), "(device, 4711)");
        EXPECT_EQ(TextOf(form, "Process ID"), "7");
        EXPECT_EQ(TextOf(form, "Conf. notif."), "false");
        EXPECT_EQ(TextOf(form, "Valid days"), "{monday, tuesday, wednesday, thursday, friday, saturday, sunday}");
        EXPECT_EQ(TextOf(form, "Transitions"), "{to-offnormal, to-fault, to-normal}");
        PressCancel(form);
    });
}

TEST_F(Destination, EachFieldHasItsEditor) {
    EXPECT_TRUE(UseDestination([&](const CControls& form) {
        Edit(form, "&Valid days", "Input bit-string", "valid-days", [](const CControls& days) {
            const QAbstractItemModel& bits = *days.Only<QTreeView>().model();
            EXPECT_EQ(bits.rowCount(), 7);
            EXPECT_EQ(bits.index(0, 0).data().toString(), QStringLiteral("monday"));
            PressKey(Qt::Key_Space); // on the first one
            PressOk(days);
        });
        EXPECT_EQ(TextOf(form, "Valid days"), "{tuesday, wednesday, thursday, friday, saturday, sunday}");
        Edit(form, "&From time", "Input date-time", "from-time", [](const CControls& time) {
            EXPECT_FALSE(time.Get<QWidget>("&Month").isEnabled());
            time.Choose("&Hour", "08");
            PressOk(time);
        });
        EXPECT_EQ(TextOf(form, "From time"), "08:00:00.00");
        Edit(form, "&To time", "Input date-time", "to-time", [](const CControls& time) {
            time.Choose("&Hour", "*");
            PressOk(time);
        });
        Edit(form, "&Recipient", "Input recipient", "recipient", [](const CControls& recipient) {
            recipient.Choose("Type", "address");
            PressOk(recipient);
        });
        EXPECT_EQ(Enter(form, "Process ID", "Input unsigned", "process-id", "4294967295"), "4294967295");
        Edit(form, "&Conf. notif.", "Input boolean", "issue-conf-notification", [](const CControls& boolean) {
            boolean.Choose("issue-conf-notification", "true");
            PressOk(boolean);
        });
        EXPECT_EQ(TextOf(form, "Conf. notif."), "true");
        Edit(form, "Tran&sitions", "Input bit-string", "transitions", PressOk);
        PressOk(form);
    }));
    const BACSTAC_DESTINATION& value = m_destination.Value;
    EXPECT_EQ(value.From.Hour, 8U);
    EXPECT_EQ(value.To.Hour, BACSTAC_ANY_TIME);
    EXPECT_EQ(value.Recipient.Choice, 1U);
    EXPECT_EQ(value.ProcessId, 4294967295U);
    EXPECT_EQ(value.Confirmed, 1U);
    EXPECT_EQ(value.ValidDays, (BACSTAC_BIT_STRING{7, {0x7E}}));
    EXPECT_EQ(value.Transitions, (BACSTAC_BIT_STRING{3, {7}}));
}

TEST_F(Destination, ACancelledFieldStaysAsItWas) {
    const std::string before = OctetsOf(m_destination);
    EXPECT_TRUE(UseDestination([&](const CControls& form) {
        Edit(form, "&Process ID", "Input unsigned", "process-id", [](const CControls& number) {
            number.Type("process-id", "1");
            PressCancel(number);
        });
        EXPECT_EQ(TextOf(form, "Process ID"), "7");
        PressOk(form);
    }));
    EXPECT_EQ(OctetsOf(m_destination), before);
}

TEST_F(Destination, CancelDropsAllFields) {
    const std::string before = OctetsOf(m_destination);
    EXPECT_FALSE(UseDestination([&](const CControls& form) {
        Enter(form, "Process ID", "Input unsigned", "process-id", "1");
        PressCancel(form);
    }));
    EXPECT_EQ(OctetsOf(m_destination), before);
}

// ---- subscriptions

class Subscription : public Forms {
protected:
    Subscription() { m_subscription.Value = {}; }
    bool UseSubscription(const CDialogScript::Action& use) {
        return Use(Value(m_subscription), "Input cov-subscription", use);
    }
    CPVCOVSubscription m_subscription;
};

TEST_F(Subscription, AnEmptyIncrementIsNoneAndANumberIsOne) {
    m_subscription.Value.Mask = 0x82; // the other bits stay
    EXPECT_TRUE(UseSubscription([&](const CControls& form) {
        EXPECT_EQ(TextOf(form, "COV increment"), "");
        EXPECT_EQ(Enter(form, "COV increment", "Input real", "cov-increment", "0.5"), "0.5");
        PressOk(form);
    }));
    EXPECT_EQ(m_subscription.Value.Mask, 0x83U);
    EXPECT_EQ(m_subscription.Value.Increment, 0.5F);
    EXPECT_TRUE(UseSubscription([&](const CControls& form) {
        EXPECT_EQ(TextOf(form, "COV increment"), "0.5");
        EXPECT_EQ(Enter(form, "COV increment", "Input real", "cov-increment", ""), "");
        PressOk(form);
    }));
    EXPECT_EQ(m_subscription.Value.Mask, 0x82U);
}

TEST_F(Subscription, EachFieldHasItsEditor) {
    EXPECT_TRUE(UseSubscription([&](const CControls& form) {
        Edit(form, "&Recipient", "Input recipient", "recipient", PressOk);
        EXPECT_EQ(Enter(form, "Process ID", "Input unsigned", "process-id", "3"), "3");
        Edit(form, "&Monitored property", REFERENCE, "monitored-property", [](const CControls& reference) {
            EXPECT_FALSE(reference.Get<QWidget>("Device (optional)").isEnabled());
            reference.Type("Object instance", "9");
            PressOk(reference);
        });
        form.Press("&Confirmed notifications");
        EXPECT_EQ(Enter(form, "Time remaining", "Input unsigned", "time-remaining", "60"), "60");
        PressOk(form);
    }));
    const BACSTAC_COV_SUBSCRIPTION& value = m_subscription.Value;
    EXPECT_EQ(value.Recipient.ProcessId, 3U);
    EXPECT_EQ(value.Monitored.ObjectId.Instance, 9U);
    EXPECT_EQ(value.Confirmed, 1U);
    EXPECT_EQ(value.TimeRemaining, 60U);
    EXPECT_EQ(value.Mask, 0U);
}

// ---- time stamps

class TimeStamp : public Forms {
protected:
    bool UseStamp(const CDialogScript::Action& use) { return Use(Value(m_stamp), "Input time-stamp", use); }
    CPVTimeStamp m_stamp;
};

TEST_F(TimeStamp, BeginsWithZerosOnEachChoice) {
    m_stamp.Value.Choice = 2;
    m_stamp.Value.DateTime = {{2026, 0, 11, 21, 6}, {1, 2, 3, 4}};
    EXPECT_TRUE(UseStamp([&](const CControls& form) {
        EXPECT_THAT(ItemsOf(form.Get<QComboBox>("Type")), ElementsAre("time", "sequence-number", "date-time"));
        form.Choose("Type", "time");
        EXPECT_EQ(TextOf(form, "Value"), "00:00:00.00");
        Edit(form, "&Value", "Input date-time", "time", [](const CControls& time) {
            EXPECT_FALSE(time.Get<QWidget>("&Month").isEnabled());
            PressOk(time);
        });
        form.Choose("Type", "sequence-number");
        EXPECT_EQ(TextOf(form, "Value"), "0");
        EXPECT_EQ(Enter(form, "&Value", "Input unsigned", "sequence-number", "7"), "7");
        PressOk(form);
    }));
    EXPECT_EQ(m_stamp.Value.Choice, 1U);
    EXPECT_EQ(m_stamp.Value.SequenceNumber, 7U);
    EXPECT_TRUE(UseStamp([&](const CControls& form) {
        form.Choose("Type", "date-time");
        Edit(form, "&Value", "Input date-time", "date-time", [](const CControls& dateTime) {
            EXPECT_TRUE(dateTime.Get<QWidget>("&Month").isEnabled());
            EXPECT_TRUE(dateTime.Get<QWidget>("&Hour").isEnabled());
            PressCancel(dateTime);
        });
        PressOk(form);
    }));
    constexpr BACSTAC_DATE_TIME ZERO{};
    EXPECT_EQ(std::memcmp(&m_stamp.Value.DateTime, &ZERO, sizeof ZERO), 0);
}

// ---- quantities

class Quantities : public Forms {};

TEST_F(Quantities, AScaleIsSignedOrReal) {
    CPVScale scale;
    scale.Value.Choice = TYPE_SIGNED;
    scale.Value.Signed = -5;
    EXPECT_TRUE(Use(Value(scale), "Input scale", [&](const CControls& form) {
        EXPECT_EQ(TextOf(form, "Value"), "-5");
        EXPECT_THAT(ItemsOf(form.Get<QComboBox>("Type")), ElementsAre("signed", "real"));
        form.Choose("Type", "real");
        EXPECT_EQ(TextOf(form, "Value"), "0");
        Edit(form, "&Value", "Input real", "real scale", [](const CControls& real) {
            real.Type("real scale", "0.1");
            PressOk(real);
        });
        PressOk(form);
    }));
    EXPECT_EQ(scale.Value.Choice, 4U);
    EXPECT_EQ(scale.Value.Real, 0.1F);
    EXPECT_TRUE(Use(Value(scale), "Input scale", [&](const CControls& form) {
        form.Choose("Type", "signed");
        Edit(form, "&Value", "Input signed", "signed scale", PressOk);
        PressOk(form);
    }));
    EXPECT_EQ(scale.Value.Choice, 3U);
    EXPECT_EQ(scale.Value.Signed, 0);
}

TEST_F(Quantities, AScaleOfAnotherTypeStays) {
    CPVScale scale;
    scale.Value.Choice = 9;
    scale.Value.Signed = 77;
    EXPECT_TRUE(Use(Value(scale), "Input scale", [](const CControls& form) {
        EXPECT_EQ(form.Get<QComboBox>("Type").currentIndex(), -1);
        EXPECT_EQ(TextOf(form, "Value"), "");
        form.Press("&Value");
        PressOk(form);
    }));
    EXPECT_EQ(scale.Value.Choice, 9U);
    EXPECT_EQ(scale.Value.Signed, 77);
    EXPECT_THAT(m_events.Take(), ElementsAre("Dialog(Input scale)"));
}

TEST_F(Quantities, AShedLevelBeginsWithTheWholeLoad) {
    CPVShedLevel level;
    level.Value.Choice = 1;
    level.Value.Level = 3;
    EXPECT_TRUE(Use(Value(level), "Input shed-level", [&](const CControls& form) {
        EXPECT_EQ(TextOf(form, "Value"), "3");
        EXPECT_THAT(ItemsOf(form.Get<QComboBox>("Type")), ElementsAre("percent", "level", "amount"));
        form.Choose("Type", "percent");
        EXPECT_EQ(TextOf(form, "Value"), "100");
        Edit(form, "&Value", "Input unsigned", "percent", [](const CControls& percent) {
            EXPECT_THAT(percent.Texts(), ElementsAre("percent", "%"));
            PressOk(percent);
        });
        form.Choose("Type", "amount");
        EXPECT_EQ(TextOf(form, "Value"), "0");
        Edit(form, "&Value", "Input real", "amount", PressOk);
        form.Choose("Type", "level");
        Edit(form, "&Value", "Input unsigned", "level", [](const CControls& number) {
            EXPECT_THAT(number.Texts(), ElementsAre("level"));
            PressOk(number);
        });
        PressOk(form);
    }));
    EXPECT_EQ(level.Value.Choice, 1U);
    EXPECT_EQ(level.Value.Level, 0U);
}

TEST_F(Quantities, APrescaleWantsTwoNumbers) {
    CPVPrescale prescale;
    prescale.Value = {10, 100};
    EXPECT_FALSE(Use(Value(prescale), "Input prescale", [](const CControls& form) {
        const auto isRefused = [&](const char* field, const char* text) {
            form.Get<QWidget>(field == std::string("&Multiplier") ? "Modulo &divide" : "&Multiplier").setFocus();
            form.Type(field, text);
            form.GetRoot().setFocus();
            PressOk(form);
            EXPECT_TRUE(form.GetRoot().isVisible());
            return form.GetRoot().focusWidget() == &form.Get<QWidget>(field);
        };
        EXPECT_TRUE(isRefused("&Multiplier", "12x"));
        EXPECT_FALSE(isRefused("&Multiplier", "")); // the focus stays where it is
        form.Type("&Multiplier", "1");
        EXPECT_TRUE(isRefused("Modulo &divide", "9999999999"));
        EXPECT_FALSE(isRefused("Modulo &divide", ""));
        PressCancel(form);
    }));
    EXPECT_EQ(prescale.Value.Multiplier, 10U);
    EXPECT_THAT(m_events.Take(), ElementsAre("Dialog(Input prescale)"));
    EXPECT_TRUE(Use(Value(prescale), "Input prescale", [](const CControls& form) {
        form.Type("&Multiplier", "42949672959"); // one digit too many
        form.Type("Modulo &divide", "2147483646");
        PressKey(Qt::Key_Up);
        PressKey(Qt::Key_Up);
        PressOk(form);
    }));
    EXPECT_EQ(prescale.Value.Multiplier, 4294967295U);
    EXPECT_EQ(prescale.Value.ModuloDivide, 2147483647U);
}

// ---- states

class PropertyState : public Forms {
protected:
    bool UseState(const CDialogScript::Action& use) { return Use(Value(m_state), "Input property-state", use); }
    CPVPropertyState m_state;
};

TEST_F(PropertyState, HasTheNamesOfItsKind) {
    m_state.Value.Type = 11;
    m_state.Value.Value = 1;
    EXPECT_TRUE(UseState([&](const CControls& form) {
        EXPECT_EQ(ItemsOf(form.Get<QComboBox>("Type")).size(), 16U);
        EXPECT_EQ(ItemOf(form, "Type"), "unsigned-value");
        EXPECT_EQ(TextOf(form, "Value"), "1");
        Edit(form, "&Value", "Input unsigned", "Value", PressOk);
        form.Choose("Type", "binary-value");
        EXPECT_EQ(TextOf(form, "Value"), "active");
        form.Choose("Type", "system-status");
        EXPECT_EQ(TextOf(form, "Value"), "operational-read-only");
        Edit(form, "&Value", "Input enumerated", "system-status", [](const CControls& state) {
            state.Choose("system-status", "download-required");
            PressOk(state);
        });
        EXPECT_EQ(TextOf(form, "Value"), "download-required");
        PressOk(form);
    }));
    EXPECT_EQ(m_state.Value.Type, 9U);
    EXPECT_EQ(m_state.Value.Value, 2U);
}

TEST_F(PropertyState, ABooleanHasNoPropertyToBeCalledBy) {
    m_state.Value.Type = 0;
    m_state.Value.Value = 0;
    EXPECT_TRUE(UseState([&](const CControls& form) {
        Edit(form, "&Value", "Input boolean", "Value", [](const CControls& boolean) {
            boolean.Choose("Value", "true");
            PressOk(boolean);
        });
        EXPECT_EQ(TextOf(form, "Value"), "true");
        PressOk(form);
    }));
    EXPECT_EQ(m_state.Value.Value, 1U);
}

TEST_F(PropertyState, KindsBeyondTheListStay) {
    m_state.Value.Type = 63;
    m_state.Value.Value = 12345;
    EXPECT_TRUE(UseState([](const CControls& form) {
        EXPECT_EQ(form.Get<QComboBox>("Type").currentIndex(), -1);
        EXPECT_EQ(TextOf(form, "Value"), "");
        form.Press("&Value");
        PressOk(form);
    }));
    EXPECT_EQ(m_state.Value.Type, 63U);
    EXPECT_EQ(m_state.Value.Value, 12345U);
    EXPECT_THAT(m_events.Take(), ElementsAre("Dialog(Input property-state)"));
}

// ---- commands

class ActionCommand : public Forms {
protected:
    ActionCommand() {
        BACSTAC_ACTION_COMMAND& value = m_command.Value;
        value.Reference = {{OBJ_BINARY_VALUE, 7}, PROP_PRESENT_VALUE, WHOLE, 0, {OBJ_DEVICE, 0}};
        value.Priority = 8;
        auto* const number = new CPVEnumerated;
        number->Value = 1;
        m_command.GetValue().Assign(number);
    }
    bool UseCommand(const CDialogScript::Action& use) { return Use(Value(m_command), "Input action-command", use); }
    CPVActionCommand m_command;
};

TEST_F(ActionCommand, ItsValueIsOneOfTheProperty) {
    EXPECT_TRUE(UseCommand([&](const CControls& form) {
        EXPECT_EQ(TextOf(form, "Value"), "active");
        Edit(form, "&Property", REFERENCE, "property", [](const CControls& reference) {
            EXPECT_TRUE(reference.Get<QWidget>("Device (optional)").isEnabled());
            reference.Choose("Property id and index (optional)", "reliability");
            PressOk(reference);
        });
        EXPECT_EQ(TextOf(form, "Value"), "no-sensor");
        Edit(form, "&Value", "Input any-primitive", "value", [&](const CControls& any) {
            Edit(any, "&Value", "Input enumerated", "reliability", [](const CControls& number) {
                number.Choose("reliability", "no-fault-detected");
                PressOk(number);
            });
            PressOk(any);
        });
        EXPECT_EQ(TextOf(form, "Value"), "no-fault-detected");
        PressOk(form);
    }));
    EXPECT_EQ(m_command.Value.Reference.Property, 103U);
    EXPECT_EQ(static_cast<CPVEnumerated*>(m_command.GetValue().GetValue())->Value, 0U);
}

TEST_F(ActionCommand, AStarIsNoPriority) {
    EXPECT_TRUE(UseCommand([](const CControls& form) {
        EXPECT_EQ(form.Get<QComboBox>("&Priority").count(), 17);
        EXPECT_EQ(ItemOf(form, "&Priority"), "8");
        form.Choose("&Priority", "*");
        PressOk(form);
    }));
    EXPECT_EQ(m_command.Value.Priority, -1);
    EXPECT_TRUE(UseCommand([](const CControls& form) {
        EXPECT_EQ(ItemOf(form, "&Priority"), "*");
        form.Choose("&Priority", "16");
        PressOk(form);
    }));
    EXPECT_EQ(m_command.Value.Priority, 16);
    m_command.Value.Priority = 99;
    EXPECT_TRUE(UseCommand(PressOk));
    EXPECT_EQ(m_command.Value.Priority, 99);
}

TEST_F(ActionCommand, ABadDelayCannotBeConfirmed) {
    m_command.Value.Mask = 1;
    EXPECT_TRUE(UseCommand([](const CControls& form) {
        EXPECT_EQ(TextOf(form, "Post &delay"), "");
        form.Type("Post &delay", "12345678901");
        EXPECT_EQ(TextOf(form, "Post &delay"), "1234567890");
        form.Type("Post &delay", "12x");
        EXPECT_FALSE(IsEnabled(form, "OK"));
        form.Type("Post &delay", "0");
        EXPECT_TRUE(IsEnabled(form, "OK"));
        PressOk(form);
    }));
    EXPECT_EQ(m_command.Value.Mask, 3U);
    EXPECT_EQ(m_command.Value.PostDelay, 0U);
    EXPECT_TRUE(UseCommand([](const CControls& form) {
        EXPECT_EQ(TextOf(form, "Post &delay"), "0");
        form.Type("Post &delay", "");
        EXPECT_TRUE(IsEnabled(form, "OK"));
        PressOk(form);
    }));
    EXPECT_EQ(m_command.Value.Mask, 1U);
}

TEST_F(ActionCommand, HasTwoFlags) {
    EXPECT_TRUE(UseCommand([](const CControls& form) {
        form.Press("&Quit on failure");
        form.Press("&Write successful");
        form.Press("&Write successful");
        PressOk(form);
    }));
    EXPECT_EQ(m_command.Value.QuitOnFailure, 1U);
    EXPECT_EQ(m_command.Value.WriteSuccessful, 0U);
}

} // namespace
