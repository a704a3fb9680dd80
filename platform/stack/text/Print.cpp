// The print functions of the contract.
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Records.h"
#include "platform/stack/schema/Enumerations.h"
#include "platform/stack/text/Phrases.h"
#include "platform/stack/text/ValuePrinter.h"

#include <cmath>
#include <limits>

using namespace bacnet;

namespace {

template <typename Write>
int Print(char* buffer, unsigned size, Write write) {
    TextWriter out(buffer, size);
    write(out);
    return out.Length();
}

int PrintElement(char* buffer, unsigned size, BACSTAC_DATA_TYPE type, const void* element,
                 const BufferView& references) {
    return Print(buffer, size, [&](TextWriter& out) {
        ValuePrinter(out, references).Element(*FindType(type), static_cast<const std::uint8_t*>(element), ENUM_NONE);
    });
}

} // namespace

int CBacGeneral::PrintAddress(char* buffer, unsigned size, BACSTAC_ADDRESS const& value) {
    return Print(buffer, size, [&](TextWriter& out) { PutAddress(out, value); });
}

int CBacGeneral::PrintBitString(char* buffer, unsigned size, BACSTAC_BIT_STRING const& value, ENUM_TYPE_ID type) {
    return Print(buffer, size, [&](TextWriter& out) { PutBitString(out, value, type); });
}

int CBacGeneral::PrintBoolean(char* buffer, unsigned size, bool value) {
    return Print(buffer, size, [&](TextWriter& out) { out.Put(value ? "true" : "false"); });
}

int CBacGeneral::PrintCalendarEntry(char* buffer, unsigned size, BACSTAC_CALENDAR_ENTRY const& value) {
    return PrintElement(buffer, size, TYPE_CALENDAR_ENTRY, &value, {});
}

int CBacGeneral::PrintContents(char* buffer, unsigned size, BACSTAC_PROPERTY_CONTENTS const& contents,
                               BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property, int arrayIndex) {
    return Print(buffer, size, [&](TextWriter& out) {
        const TypeInfo* const type = FindType(contents.DataType);
        if (type == nullptr) // no decoded value
            return;
        // Element 0 of an array is its size, whatever the elements are.
        const ENUM_TYPE_ID names = arrayIndex == 0 ? ENUM_NONE : FindEnumType(objectType, property);
        ValuePrinter(out, BufferView::Of(contents)).Elements(*type, 0, contents.ElementCount, names);
    });
}

int CBacGeneral::PrintDate(char* buffer, unsigned size, BACSTAC_DATE const& value) {
    return Print(buffer, size, [&](TextWriter& out) { PutDate(out, value); });
}

int CBacGeneral::PrintDateRange(char* buffer, unsigned size, BACSTAC_DATE_RANGE const& value) {
    return Print(buffer, size, [&](TextWriter& out) { PutDateRange(out, value); });
}

int CBacGeneral::PrintDateTime(char* buffer, unsigned size, BACSTAC_DATE_TIME const& value) {
    return Print(buffer, size, [&](TextWriter& out) { PutDateTime(out, value); });
}

int CBacGeneral::PrintDevObjPropReference(char* buffer, unsigned size, BACSTAC_DEV_OBJ_PROP_REF const& value) {
    return Print(buffer, size, [&](TextWriter& out) { PutDevObjPropRef(out, value); });
}

int CBacGeneral::PrintEnum(char* buffer, unsigned size, unsigned value, ENUM_TYPE_ID type) {
    return Print(buffer, size, [&](TextWriter& out) { PutEnum(out, value, type); });
}

int CBacGeneral::PrintEventNotif(char* buffer, unsigned size, BACSTAC_EVENT_NOTIF const& value) {
    BACSTAC_EVENT_NOTIF alone = value;
    alone.Mask &= ~(BACSTAC_NOTIF_MESSAGE | BACSTAC_NOTIF_PARAMETERS); // these lie elsewhere in its buffer
    return PrintElement(buffer, size, TYPE_EVENT_NOTIF, &alone, {});
}

int CBacGeneral::PrintEventNotif(char* buffer, unsigned size, BACSTAC_EVENT_NOTIF const& value,
                                 BACSTAC_PROPERTY_CONTENTS const& contents) {
    return PrintElement(buffer, size, TYPE_EVENT_NOTIF, &value, BufferView::Of(contents));
}

int CBacGeneral::PrintObjPropReference(char* buffer, unsigned size, BACSTAC_OBJ_PROP_REF const& value) {
    return Print(buffer, size, [&](TextWriter& out) { PutObjPropRef(out, value); });
}

int CBacGeneral::PrintObjectID(char* buffer, unsigned size, BACSTAC_OBJECT_ID const& value) {
    return Print(buffer, size, [&](TextWriter& out) { PutObjectId(out, value); });
}

int CBacGeneral::PrintPropReference(char* buffer, unsigned size, BACSTAC_PROPERTY_REF const& value) {
    return Print(buffer, size, [&](TextWriter& out) { PutPropertyRef(out, value); });
}

int CBacGeneral::PrintReal(char* buffer, unsigned size, double value) {
    // A 32-bit number that came widened shows the digits that it has, not those of its neighbourhood.
    const bool narrows = std::fabs(value) <= std::numeric_limits<float>::max();
    const bool single = narrows && value == static_cast<double>(static_cast<float>(value));
    return Print(buffer, size, [&](TextWriter& out) { out.PutReal(value, single ? REAL_DIGITS : DOUBLE_DIGITS); });
}

int CBacGeneral::PrintRecipient(char* buffer, unsigned size, BACSTAC_RECIPIENT const& value) {
    return Print(buffer, size, [&](TextWriter& out) { PutRecipient(out, value); });
}

int CBacGeneral::PrintSigned(char* buffer, unsigned size, int value) {
    return Print(buffer, size, [&](TextWriter& out) { out.PutSigned(value); });
}

int CBacGeneral::PrintTime(char* buffer, unsigned size, BACSTAC_TIME const& value) {
    return Print(buffer, size, [&](TextWriter& out) { PutTime(out, value); });
}

int CBacGeneral::PrintUnsigned(char* buffer, unsigned size, unsigned value) {
    return Print(buffer, size, [&](TextWriter& out) { out.PutUnsigned(value); });
}

int CBacGeneral::PrintWeekNDay(char* buffer, unsigned size, BACSTAC_WEEK_N_DAY const& value) {
    return Print(buffer, size, [&](TextWriter& out) { PutWeekNDay(out, value); });
}
