// The texts of small values, appended to a writer. README.md shows their forms. Any thread.
#pragma once

#include "api/bacnet/Enums.h"
#include "api/bacnet/Records.h"
#include "platform/stack/text/TextWriter.h"

namespace bacnet {

// Significant digits that a 32-bit and a 64-bit number are worth.
inline constexpr int REAL_DIGITS = 7;
inline constexpr int DOUBLE_DIGITS = 15;

void PutEnum(TextWriter& out, std::uint32_t value, ENUM_TYPE_ID type);
void PutBitString(TextWriter& out, const BACSTAC_BIT_STRING& value, ENUM_TYPE_ID type);

void PutDate(TextWriter& out, const BACSTAC_DATE& value);
void PutTime(TextWriter& out, const BACSTAC_TIME& value);
void PutDateTime(TextWriter& out, const BACSTAC_DATE_TIME& value);
void PutDateRange(TextWriter& out, const BACSTAC_DATE_RANGE& value);
void PutWeekNDay(TextWriter& out, const BACSTAC_WEEK_N_DAY& value);
// Day, month and year alone, without parentheses.
void PutDateFields(TextWriter& out, const BACSTAC_DATE& value);

void PutObjectId(TextWriter& out, const BACSTAC_OBJECT_ID& value);
void PutPropertyRef(TextWriter& out, const BACSTAC_PROPERTY_REF& value);
void PutObjPropRef(TextWriter& out, const BACSTAC_OBJ_PROP_REF& value);
void PutDevObjRef(TextWriter& out, const BACSTAC_DEV_OBJ_REF& value);
void PutDevObjPropRef(TextWriter& out, const BACSTAC_DEV_OBJ_PROP_REF& value);
void PutAddress(TextWriter& out, const BACSTAC_ADDRESS& value);
void PutAddressBinding(TextWriter& out, const BACSTAC_ADDRESS_BINDING& value);
void PutRecipient(TextWriter& out, const BACSTAC_RECIPIENT& value);
void PutErrorValue(TextWriter& out, const BACSTAC_ERROR_VALUE& value);

} // namespace bacnet
