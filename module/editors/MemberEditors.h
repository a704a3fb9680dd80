// The editors of what is part of something larger, by the record that they edit, for forms and the table of types.
// print gives a narrow text for the form's field, of 127 bytes at most. Only on the console thread.
#pragma once

#include "api/bacnet/PropertyValues.h"
#include "module/editors/FormRow.h"

#include <cstdint>

// ---- simple values

extern const MemberEditor<std::uint8_t> BOOLEAN_EDITOR;
extern const MemberEditor<std::uint32_t> UNSIGNED_EDITOR;
extern const MemberEditor<std::uint32_t> SECONDS_EDITOR; // with the hint "s"
extern const MemberEditor<std::uint32_t> PERCENT_EDITOR; // with the hint "%"
extern const MemberEditor<std::int32_t> SIGNED_EDITOR;
extern const MemberEditor<float> REAL_EDITOR;
extern const MemberEditor<double> DOUBLE_EDITOR;
extern const MemberEditor<BACSTAC_BIT_STRING> BIT_STRING_EDITOR;
extern const MemberEditor<BACSTAC_BIT_STRING> DAYS_EDITOR;        // of the week
extern const MemberEditor<BACSTAC_BIT_STRING> TRANSITIONS_EDITOR; // of events
extern const MemberEditor<BACSTAC_DATE> DATE_EDITOR;
extern const MemberEditor<BACSTAC_TIME> TIME_EDITOR;
extern const MemberEditor<BACSTAC_DATE_TIME> DATE_TIME_EDITOR;
extern const MemberEditor<BACSTAC_DATE_RANGE> DATE_RANGE_EDITOR;
extern const MemberEditor<BACSTAC_WEEK_N_DAY> WEEK_N_DAY_EDITOR;

// ---- references

extern const MemberEditor<BACSTAC_OBJECT_ID> OBJECT_ID_EDITOR;
extern const MemberEditor<BACSTAC_PROPERTY_REF> PROPERTY_REF_EDITOR;
extern const MemberEditor<BACSTAC_OBJ_PROP_REF> OBJ_PROP_REF_EDITOR;
extern const MemberEditor<BACSTAC_DEV_OBJ_REF> DEV_OBJ_REF_EDITOR;
extern const MemberEditor<BACSTAC_DEV_OBJ_PROP_REF> DEV_OBJ_PROP_REF_EDITOR;
extern const MemberEditor<BACSTAC_ADDRESS> ADDRESS_EDITOR;
extern const MemberEditor<BACSTAC_RECIPIENT> RECIPIENT_EDITOR;

// ---- structures

extern const MemberEditor<BACSTAC_CALENDAR_ENTRY> CALENDAR_ENTRY_EDITOR;
extern const MemberEditor<CPVAnyPrimitive> ANY_PRIMITIVE_EDITOR;
