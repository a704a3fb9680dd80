// Forms as data: the rows of the editors of constructed values. CFormDlg shows them.
//
// A form works on a record, of the type that its rows are made for: a BACSTAC_ structure, or a typed value that keeps
// lists of its own. Rows reach a member of the record by Access, whatever std::invoke takes: a pointer to the member or
// a function of the record.
#pragma once

#include "api/bacnet/PropertyValue.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <variant>

class QWidget;

// A member's text, and the editor that its "..." opens.
template <class Member>
struct MemberEditor {
    std::string (*print)(const Member& member);
    bool (*edit)(QWidget* parent, const std::string& label, Member& member); // true: the member has changed
};

// A member's text by one of CBacGeneral's print functions; options are what the function wants behind the value.
template <auto PrintFunction, auto... Options, class Member>
std::string PrintWith(const Member& member) {
    std::array<char, 128> text;
    const int length = PrintFunction(text.data(), text.size(), member, Options...);
    return {text.data(), static_cast<std::size_t>(length)};
}

// A read-only text with a "..." button.
struct FormField {
    const char* caption;
    const char* label; // of the nested editor
    std::string (*print)(void* record);
    bool (*edit)(QWidget* parent, const char* label, void* record);
    bool (*isEnabled)(void* record) = nullptr; // whether there is something to edit now; null: always
};

struct FormFlag {
    const char* caption;
    bool (*get)(void* record);
    void (*set)(void* record, bool value);
};

// A button that opens the list's own editor.
struct FormList {
    const char* caption;
    CPropertyValueList& (*list)(void* record);
};

// One of a choice: the item of the drop-down list, and the field of the value.
struct FormAlternative {
    const char* name;
    std::uint32_t number;        // as the record stores the choice
    void (*reset)(void* record); // the value that the alternative begins with
    FormField value;             // its caption is not used
};

// A drop-down list and the value that goes with the item. A change of the item is a new value at once; a stored number
// that is none of the alternatives' shows no item and no text, and stays.
struct FormChoice {
    const char* caption;
    const char* valueCaption;
    std::uint32_t (*get)(void* record);
    void (*set)(void* record, std::uint32_t number);
    std::span<const FormAlternative> alternatives;
};

using FormRow = std::variant<FormField, FormFlag, FormList, FormChoice>;

struct FormSpec {
    const char* title;
    std::span<const FormRow> rows;
};

// ---- rows from their types

template <class Record, auto Access>
decltype(auto) MemberOf(void* record) {
    return std::invoke(Access, *static_cast<Record*>(record));
}

// Access to a member of the record that a typed value keeps.
template <auto Member>
inline constexpr auto IN_VALUE = [](auto& value) -> auto& {
    return value.Value.*Member;
};

template <class Record, auto Access, const auto& Editor>
constexpr FormField Field(const char* caption, const char* label) {
    return {caption, label, [](void* record) { return Editor.print(MemberOf<Record, Access>(record)); },
            [](QWidget* parent, const char* nested, void* record) {
                return Editor.edit(parent, nested, MemberOf<Record, Access>(record));
            }};
}

template <class Record, auto Access>
constexpr FormFlag Flag(const char* caption) {
    return {caption, [](void* record) { return MemberOf<Record, Access>(record) != 0; },
            [](void* record, bool value) { MemberOf<Record, Access>(record) = value ? 1 : 0; }};
}

template <class Record, auto Access>
constexpr FormList List(const char* caption) {
    return {caption, [](void* record) -> CPropertyValueList& { return MemberOf<Record, Access>(record); }};
}

// Reset: what gives a record the alternative's first value.
template <class Record, auto Access, const auto& Editor, auto Reset>
constexpr FormAlternative Alternative(const char* name, std::uint32_t number, const char* label) {
    return {name, number, [](void* record) { std::invoke(Reset, *static_cast<Record*>(record)); },
            Field<Record, Access, Editor>(name, label)};
}

template <class Record, auto Access>
constexpr FormChoice Choice(const char* caption, const char* valueCaption,
                            std::span<const FormAlternative> alternatives) {
    return {caption, valueCaption, [](void* record) { return std::uint32_t{MemberOf<Record, Access>(record)}; },
            [](void* record, std::uint32_t number) { MemberOf<Record, Access>(record) = number; }, alternatives};
}
