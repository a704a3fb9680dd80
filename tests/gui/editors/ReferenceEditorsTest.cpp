// The editors of what names devices, objects and properties.
#include "api/bacnet/Enums.h"
#include "module/editors/EditAddressDlg.h"
#include "module/widgets/NameCombo.h"
#include "module/widgets/SpinEdit.h"
#include "tests/gui/editors/Forms.h"

#include <QCheckBox>
#include <QLineEdit>

namespace {

using ::testing::ElementsAre;

constexpr const char* REFERENCE = "Input device-object-property";
constexpr const char* TYPE = "&Object type && instance";
constexpr const char* INSTANCE = "Object instance";
constexpr const char* PROPERTY = "&Property id and index (optional)";
constexpr const char* INDEX = "Array index";
constexpr const char* DEVICE = "&Device (optional)";
constexpr std::uint32_t WHOLE = 0xFFFFFFFFU;

// ---- references

class ReferenceEditor : public Forms {
protected:
    bool UseReference(const CDialogScript::Action& use) { return Use(Value(m_reference), REFERENCE, use); }
    // Types the text; OK takes it.
    void Take(const char* field, const std::string& text) { Accept(Value(m_reference), REFERENCE, field, text); }
    void Reject(const char* field, const std::string& text, const std::string& message) {
        Refuse(Value(m_reference), REFERENCE, field, text, message);
    }
    CPVDevObjPropRef m_reference;
};

TEST_F(ReferenceEditor, BeginsWithThePresentValueOfTheFirstObjectHere) {
    EXPECT_TRUE(UseReference([](const CControls& dialog) {
        EXPECT_EQ(ItemOf(dialog, TYPE), "analog-input");
        EXPECT_EQ(TextOf(dialog, INSTANCE), "0");
        EXPECT_EQ(ItemOf(dialog, PROPERTY), "present-value");
        EXPECT_EQ(TextOf(dialog, INDEX), "");
        EXPECT_EQ(TextOf(dialog, DEVICE), "");
        PressOk(dialog);
    }));
    const BACSTAC_DEV_OBJ_PROP_REF& value = m_reference.Value;
    EXPECT_EQ(value.DevicePresent, 0U);
    EXPECT_EQ(value.DeviceId, (BACSTAC_OBJECT_ID{OBJ_DEVICE, 0}));
    EXPECT_EQ(value.ArrayIndex, WHOLE);
}

TEST_F(ReferenceEditor, TakesNamesFromTheLists) {
    EXPECT_TRUE(UseReference([](const CControls& dialog) {
        dialog.Choose(TYPE, "device");
        dialog.Type(INSTANCE, "4194302");
        dialog.Choose(PROPERTY, "object-list");
        dialog.Type(INDEX, "2");
        dialog.Type(DEVICE, "99");
        PressOk(dialog);
    }));
    const BACSTAC_DEV_OBJ_PROP_REF& value = m_reference.Value;
    EXPECT_EQ(value.ObjectId, (BACSTAC_OBJECT_ID{OBJ_DEVICE, 4194302}));
    EXPECT_EQ(value.Property, PROP_OBJECT_LIST);
    EXPECT_EQ(value.ArrayIndex, 2U);
    EXPECT_EQ(value.DevicePresent, 1U);
    EXPECT_EQ(value.DeviceId, (BACSTAC_OBJECT_ID{OBJ_DEVICE, 99}));
}

TEST_F(ReferenceEditor, ListsTheThirtyEightTypesWithTheirNames) {
    UseReference([](const CControls& dialog) {
        const auto types = ItemsOf(dialog.Get<CNameCombo>(TYPE));
        ASSERT_EQ(types.size(), 38U);
        EXPECT_EQ(types.front(), "analog-input");
        EXPECT_EQ(types[20], "trend-log");
        PressCancel(dialog);
    });
}

TEST_F(ReferenceEditor, TakesNumbersInThePlaceOfNames) {
    Take(TYPE, "200");
    EXPECT_EQ(m_reference.Value.ObjectId.Type, 200U);
    Take(TYPE, "1023");
    EXPECT_EQ(m_reference.Value.ObjectId.Type, 1023U);
    Take(PROPERTY, "4194303");
    EXPECT_EQ(m_reference.Value.Property, 4194303U);
    Take(INSTANCE, "4194303");
    EXPECT_EQ(m_reference.Value.ObjectId.Instance, 4194303U);
}

TEST_F(ReferenceEditor, SaysWhichFieldIsBad) {
    Reject(DEVICE, "4194304", "Invalid instance number");
    Reject(TYPE, "1024", "Invalid object type");
    Reject(TYPE, "", "Invalid object type");
    Reject(TYPE, "pump", "Invalid object type");
    Reject(INSTANCE, "4194304", "Invalid instance number");
    Reject(INSTANCE, "", "Invalid instance number");
    Reject(PROPERTY, "", "Invalid property");
    Reject(PROPERTY, "value", "Invalid property");
    Reject(INDEX, "9999999999", "Invalid array index");
    Reject(INDEX, "x", "Invalid array index");
}

TEST_F(ReferenceEditor, LimitsWhatIsTypedButNotItsNames) {
    UseReference([](const CControls& dialog) {
        for (const auto& [field, limit] : {std::pair(INSTANCE, 7U), {INDEX, 10U}, {DEVICE, 7U}}) {
            dialog.Type(field, "12345678901234");
            EXPECT_EQ(TextOf(dialog, field).size(), limit);
        }
        for (const auto& [list, limit] : {std::pair(TYPE, 4U), {PROPERTY, 7U}}) {
            EXPECT_GT(ItemOf(dialog, list).size(), limit);
            dialog.Type(list, "12345678901234");
            EXPECT_EQ(ItemOf(dialog, list).size(), limit);
        }
        PressCancel(dialog);
    });
}

TEST_F(ReferenceEditor, ANewTypeListsItsPropertiesAndKeepsTheOneThatIsThere) {
    EXPECT_TRUE(UseReference([](const CControls& dialog) {
        auto& properties = dialog.Get<CNameCombo>(PROPERTY);
        EXPECT_EQ(properties.findText(QStringLiteral("object-list")), -1);
        dialog.Choose(TYPE, "analog-value");
        EXPECT_EQ(ItemOf(dialog, PROPERTY), "present-value");
        dialog.Choose(TYPE, "device");
        EXPECT_NE(properties.findText(QStringLiteral("object-list")), -1);
        EXPECT_EQ(ItemOf(dialog, PROPERTY), "85"); // a device has none
        dialog.Type(TYPE, "5");
        EXPECT_EQ(ItemOf(dialog, PROPERTY), "present-value");
        PressOk(dialog);
    }));
    EXPECT_EQ(m_reference.Value.ObjectId.Type, OBJ_BINARY_VALUE);
    EXPECT_EQ(m_reference.Value.Property, PROP_PRESENT_VALUE);
}

TEST_F(ReferenceEditor, AnEmptyDeviceTakesItAway) {
    m_reference.Value.DevicePresent = 1;
    m_reference.Value.DeviceId = {OBJ_DEVICE, 4711};
    EXPECT_TRUE(UseReference([](const CControls& dialog) {
        EXPECT_EQ(TextOf(dialog, DEVICE), "4711");
        dialog.Type(DEVICE, "");
        PressOk(dialog);
    }));
    EXPECT_EQ(m_reference.Value.DevicePresent, 0U);
    EXPECT_EQ(m_reference.Value.DeviceId, (BACSTAC_OBJECT_ID{OBJ_DEVICE, 0}));
}

TEST_F(ReferenceEditor, CancelChangesNothing) {
    const std::string before = OctetsOf(m_reference);
    EXPECT_FALSE(UseReference([](const CControls& dialog) {
        dialog.Choose(TYPE, "device");
        dialog.Type(INSTANCE, "5");
        PressCancel(dialog);
    }));
    EXPECT_EQ(OctetsOf(m_reference), before);
}

// ---- its groups, by the type of the value

class ReferenceParts : public ReferenceEditor {
protected:
    // Which of the three groups can be used; a group that is off is empty.
    std::string GroupsOf(CPropertyValue& value) {
        std::string groups;
        Use(Value(value), REFERENCE, [&](const CControls& dialog) {
            const auto note = [&](const char* group, const char* field, const char* other) {
                const bool isOn = dialog.Get<QWidget>(field).isEnabled();
                EXPECT_EQ(dialog.Get<QWidget>(other).isEnabled(), isOn) << group;
                groups += isOn ? group : "";
                if (!isOn && other != field) {
                    EXPECT_EQ(ItemOf(dialog, field) + TextOf(dialog, other), "");
                }
            };
            note("device ", DEVICE, DEVICE);
            note("object ", TYPE, INSTANCE);
            note("property ", PROPERTY, INDEX);
            PressCancel(dialog);
        });
        return groups;
    }
};

TEST_F(ReferenceParts, AreThePartsThatTheValueHas) {
    CPVObjectId object;
    CPVObjPropRef objectProperty;
    CPVPropertyRef property;
    CPVDevObjRef deviceObject;
    EXPECT_EQ(GroupsOf(object), "object ");
    EXPECT_EQ(GroupsOf(objectProperty), "object property ");
    EXPECT_EQ(GroupsOf(property), "property ");
    EXPECT_EQ(GroupsOf(m_reference), "device object property ");
    EXPECT_EQ(GroupsOf(deviceObject), "device object ");
}

TEST_F(ReferenceParts, StoreTheirPartsAndNoOther) {
    CPVPropertyRef property;
    EXPECT_TRUE(Use(Value(property), REFERENCE, [](const CControls& dialog) {
        dialog.Choose(PROPERTY, "log-buffer"); // of any type
        dialog.Type(INDEX, "7");
        PressOk(dialog);
    }));
    EXPECT_EQ(property.Value.Property, PROP_LOG_BUFFER);
    EXPECT_EQ(property.Value.ArrayIndex, 7U);

    CPVObjectId object;
    EXPECT_TRUE(Use(Value(object), REFERENCE, [](const CControls& dialog) {
        dialog.Choose(TYPE, "calendar");
        dialog.Type(INSTANCE, "12");
        PressOk(dialog);
    }));
    EXPECT_EQ(object.Value, (BACSTAC_OBJECT_ID{OBJ_CALENDAR, 12}));

    CPVDevObjRef deviceObject;
    EXPECT_TRUE(Use(Value(deviceObject), REFERENCE, [](const CControls& dialog) {
        dialog.Type(INSTANCE, "3");
        dialog.Type(DEVICE, "77");
        PressOk(dialog);
    }));
    EXPECT_EQ(deviceObject.Value.ObjectId.Instance, 3U);
    EXPECT_EQ(deviceObject.Value.DevicePresent, 1U);
    EXPECT_EQ(deviceObject.Value.DeviceId, (BACSTAC_OBJECT_ID{OBJ_DEVICE, 77}));
}

// ---- addresses

class AddressEditor : public Editors {
protected:
    bool UseAddress(const CDialogScript::Action& use) {
        return Use([this] { return EditAddress(); }, "Input address", use);
    }
    bool EditAddress() {
        CEditAddressDlg dialog(nullptr);
        dialog.IsLocalOnly = m_isLocalOnly;
        return RunEditor(dialog, "address", m_address);
    }
    static std::string Octet(int number) { return "Address byte " + std::to_string(number); }

    BACSTAC_ADDRESS m_address{1, 0, 2001, {10, 0, 0, 7, 186, 192, 0}, 6};
    bool m_isLocalOnly = false;
};

TEST_F(AddressEditor, ShowsAndStoresTheFields) {
    EXPECT_TRUE(UseAddress([](const CControls& dialog) {
        EXPECT_TRUE(dialog.Get<QCheckBox>("&Remote network").isChecked());
        EXPECT_EQ(TextOf(dialog, Octet(6)), "192");
        EXPECT_EQ(TextOf(dialog, Octet(7)), "");
        dialog.Press("&Remote network");
        dialog.Type("Network", "7");
        dialog.Type("&Address", "11");
        dialog.Type(Octet(3), "");
        PressOk(dialog);
    }));
    EXPECT_EQ(m_address, (BACSTAC_ADDRESS{0, 0, 7, {11, 0}, 2}));
}

TEST_F(AddressEditor, LimitsTheDigitsAndSaysNothingAboutNumbers) {
    EXPECT_TRUE(UseAddress([](const CControls& dialog) {
        dialog.Type("&Address", "3001");
        EXPECT_EQ(TextOf(dialog, Octet(1)), "300");
        dialog.Type(Octet(2), "x");
        PressOk(dialog);
    }));
    EXPECT_THAT(m_address.Mac, ElementsAre(44, 0, 0, 7, 186, 192, 0));
    EXPECT_THAT(m_events.Take(), ElementsAre("Dialog(Input address)"));
}

TEST_F(AddressEditor, TheArrowsOfTheNetworkStayWithin16Bits) {
    UseAddress([](const CControls& dialog) {
        const auto stepped = [&](const char* text, Qt::Key key) {
            dialog.Type("Network", text);
            PressKey(key);
            return dialog.Get<CSpinEdit>("Network").GetText().toStdString();
        };
        EXPECT_EQ(stepped("65535", Qt::Key_Up), "65535");
        EXPECT_EQ(stepped("65534", Qt::Key_Up), "65535");
        EXPECT_EQ(stepped("0", Qt::Key_Down), "0");
        dialog.Type("Network", "1234567");
        EXPECT_EQ(dialog.Get<CSpinEdit>("Network").GetText(), QStringLiteral("12345"));
        PressCancel(dialog);
    });
}

TEST_F(AddressEditor, ALocalOneHasNoNetworkToChange) {
    m_isLocalOnly = true;
    EXPECT_TRUE(UseAddress([](const CControls& dialog) {
        EXPECT_FALSE(dialog.Get<QWidget>("&Remote network").isEnabled());
        EXPECT_FALSE(dialog.Get<QWidget>("Network").isEnabled());
        PressOk(dialog);
    }));
    EXPECT_EQ(m_address, (BACSTAC_ADDRESS{1, 0, 2001, {10, 0, 0, 7, 186, 192, 0}, 6}));
}

// ---- forms of references

class ReferenceForms : public Forms {};

TEST_F(ReferenceForms, ARecipientBeginsAnewWithItsChoice) {
    CPVRecipient recipient;
    recipient.Value.Choice = 0;
    recipient.Value.Device = {OBJ_DEVICE, 4711};
    EXPECT_TRUE(Use(Value(recipient), "Input recipient", [&](const CControls& form) {
        EXPECT_THAT(ItemsOf(form.Get<QComboBox>("Type")), ElementsAre("device-instance", "address"));
        EXPECT_EQ(ItemOf(form, "Type"), "device-instance");
        EXPECT_EQ(TextOf(form, "Value"), "(device, 4711)");
        form.Choose("Type", "address");
        Edit(form, "Value", "Input address", "address", [](const CControls& address) {
            EXPECT_FALSE(address.Get<QCheckBox>("&Remote network").isChecked());
            for (int octet = 1; octet <= 7; ++octet)
                EXPECT_EQ(TextOf(address, "Address byte " + std::to_string(octet)), "");
            address.Type("&Address", "9");
            PressOk(address);
        });
        PressOk(form);
    }));
    EXPECT_EQ(recipient.Value.Choice, 1U);
    EXPECT_EQ(recipient.Value.Address, (BACSTAC_ADDRESS{0, 0, 0, {9}, 1}));
    EXPECT_TRUE(Use(Value(recipient), "Input recipient", [&](const CControls& form) {
        form.Choose("Type", "device-instance");
        EXPECT_EQ(TextOf(form, "Value"), "(device, 0)");
        PressOk(form);
    }));
    EXPECT_EQ(recipient.Value.Choice, 0U);
    EXPECT_EQ(recipient.Value.Device, (BACSTAC_OBJECT_ID{OBJ_DEVICE, 0}));
}

TEST_F(ReferenceForms, AChoiceOfThePresentAlternativeIsNone) {
    CPVRecipient recipient;
    recipient.Value.Device = {OBJ_DEVICE, 4711};
    EXPECT_TRUE(Use(Value(recipient), "Input recipient", [](const CControls& form) {
        form.Choose("Type", "device-instance");
        EXPECT_EQ(TextOf(form, "Value"), "(device, 4711)");
        PressOk(form);
    }));
    EXPECT_EQ(recipient.Value.Device.Instance, 4711U);
}

TEST_F(ReferenceForms, AnUnknownChoiceShowsNothingAndStays) {
    CPVRecipient recipient;
    recipient.Value.Choice = 7;
    recipient.Value.Device = {OBJ_DEVICE, 4711};
    EXPECT_TRUE(Use(Value(recipient), "Input recipient", [](const CControls& form) {
        EXPECT_EQ(ItemOf(form, "Type"), "");
        EXPECT_EQ(TextOf(form, "Value"), "");
        form.Press("Value"); // opens nothing
        PressOk(form);
    }));
    EXPECT_EQ(recipient.Value.Choice, 7U);
    EXPECT_EQ(recipient.Value.Device.Instance, 4711U);
}

TEST_F(ReferenceForms, AnAddressBindingHasADeviceAndAnAddress) {
    CPVAddressBinding binding;
    EXPECT_TRUE(Use(Value(binding), "Input address-binding", [&](const CControls& form) {
        Edit(form, "Device", REFERENCE, "device", [](const CControls& device) {
            device.Choose(TYPE, "device");
            device.Type(INSTANCE, "21");
            EXPECT_FALSE(device.Get<QWidget>(PROPERTY).isEnabled());
            PressOk(device);
        });
        EXPECT_EQ(TextOf(form, "Device"), "(device, 21)");
        Edit(form, "Address", "Input address", "address", [](const CControls& address) {
            address.Type("&Address", "5");
            PressOk(address);
        });
        PressOk(form);
    }));
    EXPECT_EQ(binding.Value.Device, (BACSTAC_OBJECT_ID{OBJ_DEVICE, 21}));
    EXPECT_EQ(binding.Value.Address, (BACSTAC_ADDRESS{0, 0, 0, {5}, 1}));
}

TEST_F(ReferenceForms, ASetpointReferenceIsEditedWhileItIsPresent) {
    CPVSetpointRef setpoint;
    setpoint.Value = {1, {{2, 7}, PROP_PRESENT_VALUE, WHOLE}};
    EXPECT_TRUE(Use(Value(setpoint), "Input setpoint-reference", [&](const CControls& form) {
        EXPECT_TRUE(form.Get<QCheckBox>("&Present").isChecked());
        Edit(form, "&Value", REFERENCE, "value", [](const CControls& reference) {
            EXPECT_FALSE(reference.Get<QWidget>(DEVICE).isEnabled());
            reference.Type(INSTANCE, "8");
            PressOk(reference);
        });
        form.Press("&Present");
        EXPECT_FALSE(IsEnabled(form, "&Value"));
        PressOk(form);
    }));
    EXPECT_EQ(setpoint.Value.Present, 0U);
    EXPECT_EQ(setpoint.Value.Reference.ObjectId, (BACSTAC_OBJECT_ID{2, 8}));
    EXPECT_TRUE(Use(Value(setpoint), "Input setpoint-reference", [](const CControls& form) {
        EXPECT_FALSE(IsEnabled(form, "&Value"));
        form.Press("&Present");
        EXPECT_TRUE(IsEnabled(form, "&Value"));
        PressOk(form);
    }));
    EXPECT_EQ(setpoint.Value.Present, 1U);
}

TEST_F(ReferenceForms, AReadAccessSpecificationHasAListOfProperties) {
    CPVReadAccessSpec spec;
    EXPECT_TRUE(Use(Value(spec), "Input read-access-spec", [&](const CControls& form) {
        Edit(form, "Object id", REFERENCE, "object-id", [](const CControls& object) {
            object.Type(INSTANCE, "6");
            PressOk(object);
        });
        EditList(form, "Edit &properties...", "property-reference", [&](const CControls& list) {
            for (const char* const property : {"description", "units"}) {
                m_script.Do(REFERENCE, [&](const CControls& reference) {
                    reference.Choose(PROPERTY, property);
                    PressOk(reference);
                });
                list.Press("Add");
            }
            PressOk(list);
        });
        PressOk(form);
    }));
    EXPECT_EQ(spec.Value.ObjectId.Instance, 6U);
    EXPECT_EQ(spec.ToText(BACSTAC_NO_INDEX),
              "{object=(analog-input, 6), list-of-property-references={description, units}}");
}

TEST_F(ReferenceForms, AReadAccessResultHasAListOfValuesAndErrors) {
    CPVReadAccessResult result;
    EXPECT_TRUE(Use(Value(result), "Input read-access-result", [&](const CControls& form) {
        EditList(form, "Edit &properties...", "read-result-item", [&](const CControls& list) {
            m_script.Do("Input read-result-item", [](const CControls& item) {
                item.Press("&Error");
                item.Type("Error &class", "2");
                item.Type("Error c&ode", "32");
                PressOk(item);
            });
            list.Press("Add");
            PressOk(list);
        });
        PressOk(form);
    }));
    ASSERT_EQ(result.GetItems().GetElementCnt(), 1U);
    const auto& item = static_cast<CPVReadResultItem&>(*result.GetItems().GetElement(0)).Value;
    EXPECT_EQ(item.Choice, BACSTAC_ITEM_ERROR);
    EXPECT_EQ(item.Error.Class, 2U);
    EXPECT_EQ(item.Error.Code, 32U);
}

// ---- one item of a result

class ResultItem : public Forms {
protected:
    void SetUp() override {
        m_item.Value.Property = PROP_PRESENT_VALUE;
        m_item.Value.ArrayIndex = WHOLE;
        m_item.Value.Choice = BACSTAC_ITEM_VALUE;
        auto* const real = new CPVReal;
        real->Value = 21.5F;
        m_item.GetValue().Assign(real);
    }
    bool UseItem(const CDialogScript::Action& use) { return Use(Value(m_item), "Input read-result-item", use); }
    CPVReadResultItem m_item;
};

TEST_F(ResultItem, HasAValueThatItsOwnEditorChanges) {
    EXPECT_TRUE(UseItem([&](const CControls& form) {
        EXPECT_FALSE(form.Get<QWidget>("Error &class").isEnabled());
        EXPECT_FALSE(form.Get<QWidget>("Error c&ode").isEnabled());
        m_script.Do("Input real", [](const CControls& real) {
            real.Type("Value", "7");
            PressOk(real);
        });
        form.Press("Value text");
        EXPECT_EQ(TextOf(form, "Value text"), "7");
        PressOk(form);
    }));
    EXPECT_EQ(static_cast<CPVReal*>(m_item.GetValue().GetValue())->Value, 7.0F);
}

TEST_F(ResultItem, HasAPropertyOfItsOwn) {
    EXPECT_TRUE(UseItem([&](const CControls& form) {
        Edit(form, "&Property", REFERENCE, "property", [](const CControls& reference) {
            EXPECT_FALSE(reference.Get<QWidget>(TYPE).isEnabled());
            reference.Choose(PROPERTY, "priority-array");
            reference.Type(INDEX, "8");
            PressOk(reference);
        });
        EXPECT_EQ(TextOf(form, "Property"), "priority-array[8]");
        PressOk(form);
    }));
    EXPECT_EQ(m_item.Value.Property, 87U);
    EXPECT_EQ(m_item.Value.ArrayIndex, 8U);
}

TEST_F(ResultItem, AnErrorIsReadAsItsNumbersChange) {
    EXPECT_TRUE(UseItem([](const CControls& form) {
        form.Press("&Error");
        EXPECT_FALSE(IsEnabled(form, "Value text"));
        form.Type("Error &class", "1");
        form.Type("Error c&ode", "x");
        PressOk(form);
    }));
    EXPECT_EQ(m_item.Value.Choice, BACSTAC_ITEM_ERROR);
    EXPECT_EQ(m_item.Value.Error.Class, 1U);
    EXPECT_EQ(m_item.Value.Error.Code, 0U);
    EXPECT_TRUE(UseItem([](const CControls& form) {
        EXPECT_EQ(TextOf(form, "Error &class"), "1");
        form.Type("Error c&ode", "123456");
        EXPECT_EQ(TextOf(form, "Error c&ode"), "12345");
        form.Press("&Value");
        EXPECT_FALSE(form.Get<QWidget>("Error &class").isEnabled());
        EXPECT_FALSE(form.Get<QWidget>("Error c&ode").isEnabled());
        EXPECT_TRUE(IsEnabled(form, "Value text"));
        PressOk(form);
    }));
    EXPECT_EQ(m_item.Value.Choice, BACSTAC_ITEM_VALUE);
    EXPECT_EQ(m_item.GetValue().ToText(BACSTAC_NO_INDEX), "21.5");
}

TEST_F(ResultItem, ShowsLongNumbersOfAnErrorWhole) {
    m_item.Value.Choice = BACSTAC_ITEM_ERROR;
    m_item.Value.Error = {4294967295U, 123456};
    EXPECT_TRUE(UseItem([](const CControls& form) {
        EXPECT_EQ(TextOf(form, "Error &class"), "4294967295");
        EXPECT_EQ(TextOf(form, "Error c&ode"), "123456");
        PressOk(form);
    }));
    EXPECT_EQ(m_item.Value.Error.Code, 123456U);
}

TEST_F(ResultItem, WithoutAValueThereIsNothingToEdit) {
    m_item.GetValue().Clear();
    EXPECT_FALSE(UseItem([](const CControls& form) {
        EXPECT_EQ(TextOf(form, "Value text"), "");
        form.Press("Value text");
        PressCancel(form);
    }));
    EXPECT_THAT(m_events.Take(), ElementsAre("Dialog(Input read-result-item)"));
}

} // namespace
