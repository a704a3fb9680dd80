// The BACnet services, the live directory and the text of values, as the console's logic uses them.
//
// One object exists per process; BACnet points to it from before the console starts until after it ended. Every
// operation may be called from any thread at any time; calls do not disturb one another, and a device that is dead
// never slows a call to one that lives.
//
// Services block the calling thread until the device has answered or the stack has given up (timeout times one plus the
// retries). They return 0, or a status and, if error is not null, its detail. A device is named by its instance, which
// the live directory resolves to an address, unless the operation takes the address.
#pragma once

#include "api/bacnet/Callbacks.h"
#include "api/bacnet/Enums.h"
#include "api/bacnet/Export.h"
#include "api/bacnet/Services.h"
#include "api/bacnet/Types.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

class CQilBAC_ErrLog;

struct BACSTAC_CALENDAR_ENTRY;
struct BACSTAC_DATE_RANGE;
struct BACSTAC_EVENT_NOTIF;
struct BACSTAC_WEEK_N_DAY;

class BCN_API CBacGeneral : public CIAMCallbackHandler {
public:
    ~CBacGeneral() override;

    // ---- confirmed services
    // ------------------------------------------------------------------------------------------

    // Buffer form: a primitive straight into size bytes; a value that does not fit gives
    // BACSTAC_STATUS_BUFFER_TOO_SMALL and leaves the buffer alone. Strings are cut to the buffer and NUL-terminated.
    virtual BACSTAC_STATUS ReadProperty(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                        int arrayIndex, void* buffer, unsigned size, BACSTAC_ERROR* error) = 0;
    // Contents form: any type, into the contents' buffer.
    virtual BACSTAC_STATUS ReadProperty(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                        int arrayIndex, BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR* error) = 0;
    // Address form: also for a device that the directory does not know.
    virtual BACSTAC_STATUS ReadProperty(BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID const& object,
                                        BACSTAC_PROPERTY_ID property, int arrayIndex,
                                        BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR* error) = 0;
    virtual BACSTAC_STATUS AsyncReadProperty(unsigned device, BACSTAC_OBJECT_ID const& object,
                                             BACSTAC_PROPERTY_ID property, int arrayIndex,
                                             BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_ERROR* error,
                                             CAsyncCallBack& callback) = 0;
    // All properties with one ReadPropertyMultiple. items come with their buffers, *count of them; on return *count is
    // the number of properties that the device gave, each item saying which one it holds.
    virtual BACSTAC_STATUS ReadPropertyList(BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID const& object,
                                            BACSTAC_READ_RESULT_ITEM* items, unsigned* count, BACSTAC_ERROR* error) = 0;
    // With objects null only *count is set; otherwise *count is the capacity of objects on entry, the number on return.
    virtual BACSTAC_STATUS ReadObjectList(BACSTAC_ADDRESS const& address, BACSTAC_OBJECT_ID* objects, unsigned* count,
                                          BACSTAC_ERROR* error) = 0;
    // contents receive the decoded records. firstSequenceNumber may be null; it is 0 when the answer carries none.
    virtual BACSTAC_STATUS ReadRange(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                     int arrayIndex, BACSTAC_READ_RANGE_SPEC const* spec,
                                     BACSTAC_BIT_STRING* resultFlags, BACSTAC_PROPERTY_CONTENTS* contents,
                                     BACSTAC_ERROR* error, unsigned* firstSequenceNumber) = 0;
    virtual BACSTAC_STATUS ReadPropertyConditional(unsigned device, BACSTAC_READ_CON_INFO const* info,
                                                   BACSTAC_RPC_RESULT* result, BACSTAC_ERROR* error) = 0;
    // priority 1..16, or -1 for none.
    virtual BACSTAC_STATUS WriteProperty(unsigned device, BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_ID property,
                                         int arrayIndex, int priority, BACSTAC_PROPERTY_CONTENTS const& contents,
                                         BACSTAC_ERROR* error) = 0;
    virtual BACSTAC_STATUS WritePropertyNull(unsigned device, BACSTAC_OBJECT_ID const& object,
                                             BACSTAC_PROPERTY_ID property, int arrayIndex, int priority,
                                             BACSTAC_ERROR* error) = 0;
    // newObject may be null. *firstFailed: 1-based number of the first value that failed, 0 when unknown.
    virtual BACSTAC_STATUS CreateObject(unsigned device, BACSTAC_OBJECT_SPECIFIER const* specifier,
                                        BACSTAC_PROPERTY_VALUE const* values, unsigned count,
                                        BACSTAC_OBJECT_ID* newObject, BACSTAC_ERROR* error, unsigned* firstFailed) = 0;
    virtual BACSTAC_STATUS DeleteObject(unsigned device, BACSTAC_OBJECT_ID const* object, BACSTAC_ERROR* error) = 0;
    // duration in minutes, 0 indefinite; an empty or null password sends none.
    virtual BACSTAC_STATUS DeviceCommControl(unsigned device, unsigned duration, BACSTAC_DCC_VALUE value,
                                             const char* password, BACSTAC_ERROR* error) = 0;
    virtual BACSTAC_STATUS ReinitializeDevice(unsigned device, BACSTAC_REINIT_TYPE type, const char* password,
                                              BACSTAC_ERROR* error) = 0;
    virtual BACSTAC_STATUS ReadFile(unsigned device, BACSTAC_OBJECT_ID const& object,
                                    BACSTAC_READ_FILE_SPEC const* spec, BACSTAC_READ_FILE_RESULT* result,
                                    BACSTAC_ERROR* error) = 0;
    virtual BACSTAC_STATUS WriteFile(unsigned device, BACSTAC_OBJECT_ID const& object,
                                     BACSTAC_WRITE_FILE_SPEC const* spec, BACSTAC_WRITE_FILE_RESULT* result,
                                     BACSTAC_ERROR* error) = 0;
    virtual BACSTAC_STATUS GetAlarmSummary(unsigned device, BACSTAC_ALARM_SUMMARY* summaries, unsigned capacity,
                                           unsigned* count, BACSTAC_ERROR* error) = 0;
    virtual BACSTAC_STATUS GetEnrollmentSummary(unsigned device, BACSTAC_ENROLLMENT_FILTER const& filter,
                                                BACSTAC_ENROLLMENT_SUMMARY* summaries, unsigned capacity,
                                                unsigned* count, BACSTAC_ERROR* error) = 0;

    // ---- unconfirmed and local operations
    // ----------------------------------------------------------------------------

    // Returns at once; answers come to the registered CIAMCallbacks. low and high bound the instances asked for.
    virtual BACSTAC_STATUS WhoIs(BACSTAC_ADDRESS const& destination, unsigned low, unsigned high) = 0;
    // Sends the time, as UTC or local, to each listed device. A count of 0 sends nothing.
    virtual BACSTAC_STATUS SynchronizeTime(bool utc, BACSTAC_DATE_TIME const& time, unsigned const* devices,
                                           int count) = 0;
    // Local time of the device and its offset in minutes east of UTC; offset is left alone when the device has none.
    virtual bool ReadDeviceTime(unsigned device, BACSTAC_DATE_TIME& time, int& offset) = 0;

    virtual bool IsDeviceEnabled(unsigned device) = 0;
    virtual bool IsNetworkEnabled(unsigned short network) = 0;
    virtual bool EnableNetwork(unsigned short network) = 0;
    virtual bool DisableNetwork(unsigned short network) = 0;

    // The live directory: no traffic. network 65535 lists the devices of all networks, type -1 all objects.
    virtual void GetDevLst(std::vector<unsigned>& devices, unsigned short network) = 0;
    virtual void GetNetLst(std::map<unsigned short, bool>& networks) = 0; // network to remote flag
    virtual void GetObjLst(unsigned device, std::vector<BACSTAC_OBJECT_ID>& objects, BACSTAC_OBJECT_TYPE type) = 0;
    virtual bool FindDev(unsigned device) = 0;
    virtual bool GetDevName(unsigned device, std::string& name) = 0;
    virtual bool GetObjName(unsigned device, BACSTAC_OBJECT_ID const& object, std::string& name) = 0;
    virtual BACSTAC_ADDRESS GetDevAddr(unsigned device) = 0; // all zero when unknown
    virtual unsigned GetDevVendorId(unsigned device) = 0;
    // Reads the directory file again; false when that fails, the directory then stays as it was.
    virtual bool LoadDir() = 0;
    static std::string GetDirFileName();                 // full path, UTF-8
    static void SetDirFileName(const std::string& path); // by the host, before the first LoadDir

    // GetEventInformation, one page: the console calls it through CEventInfoService. lastReceived may be null.
    virtual BACSTAC_STATUS GetEventInformation(unsigned device, BACSTAC_OBJECT_ID const* lastReceived,
                                               BACSTAC_EVENT_SUMMARY* events, unsigned capacity, unsigned* count,
                                               bool* more, BACSTAC_ERROR* error) = 0;
    // ReadPropertyMultiple and WritePropertyMultiple: the console calls them through CRPMRequest and CWPMRequest.
    // objects[i] belongs to items[i].
    virtual BACSTAC_STATUS ReadPropertyMultiple(unsigned device, BACSTAC_ADDRESS const& address,
                                                BACSTAC_OBJECT_ID const* objects, BACSTAC_READ_RESULT_ITEM* items,
                                                unsigned count, BACSTAC_ERROR* error) = 0;
    virtual BACSTAC_STATUS WritePropertyMultiple(unsigned device, BACSTAC_ADDRESS const& address,
                                                 BACSTAC_OBJECT_ID const& object, BACSTAC_PROPERTY_VALUE const* values,
                                                 unsigned count, BACSTAC_ERROR* error) = 0;

    // ---- text
    // -------------------------------------------------------------------------------------------------------- Each
    // writes at most size - 1 bytes and a NUL, cut at a character boundary, and returns the number of bytes written
    // without the NUL. Locale-free. No static buffers.

    static int PrintAddress(char* buffer, unsigned size, BACSTAC_ADDRESS const& value);
    static int PrintBitString(char* buffer, unsigned size, BACSTAC_BIT_STRING const& value, ENUM_TYPE_ID type);
    static int PrintBoolean(char* buffer, unsigned size, bool value);
    static int PrintCalendarEntry(char* buffer, unsigned size, BACSTAC_CALENDAR_ENTRY const& value);
    static int PrintContents(char* buffer, unsigned size, BACSTAC_PROPERTY_CONTENTS const& contents,
                             BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property, int arrayIndex);
    static int PrintDate(char* buffer, unsigned size, BACSTAC_DATE const& value);
    static int PrintDateRange(char* buffer, unsigned size, BACSTAC_DATE_RANGE const& value);
    static int PrintDateTime(char* buffer, unsigned size, BACSTAC_DATE_TIME const& value);
    static int PrintDevObjPropReference(char* buffer, unsigned size, BACSTAC_DEV_OBJ_PROP_REF const& value);
    static int PrintEnum(char* buffer, unsigned size, unsigned value, ENUM_TYPE_ID type);
    // The second form also prints the message and the parameters, which lie elsewhere in the contents of the record.
    static int PrintEventNotif(char* buffer, unsigned size, BACSTAC_EVENT_NOTIF const& value);
    static int PrintEventNotif(char* buffer, unsigned size, BACSTAC_EVENT_NOTIF const& value,
                               BACSTAC_PROPERTY_CONTENTS const& contents);
    static int PrintObjPropReference(char* buffer, unsigned size, BACSTAC_OBJ_PROP_REF const& value);
    static int PrintObjectID(char* buffer, unsigned size, BACSTAC_OBJECT_ID const& value);
    static int PrintPropReference(char* buffer, unsigned size, BACSTAC_PROPERTY_REF const& value);
    static int PrintReal(char* buffer, unsigned size, double value);
    static int PrintRecipient(char* buffer, unsigned size, BACSTAC_RECIPIENT const& value);
    static int PrintSigned(char* buffer, unsigned size, int value);
    static int PrintTime(char* buffer, unsigned size, BACSTAC_TIME const& value);
    static int PrintUnsigned(char* buffer, unsigned size, unsigned value);
    static int PrintWeekNDay(char* buffer, unsigned size, BACSTAC_WEEK_N_DAY const& value);

    // One line for operators; error may be null.
    static std::string GetErrorText(BACSTAC_STATUS status, BACSTAC_ERROR const* error);
    // Fixed texts; an unknown number gives "S(n)", "unknown (n)" and the like. The pointer is valid on this thread
    // until it has asked for a good number of others.
    static const char* GetStatusString(BACSTAC_STATUS status);
    static const char* GetErrorCodeString(unsigned code);
    static const char* GetErrorCodeString(BACSTAC_ERROR const& error);
    static const char* GetErrorClassString(unsigned errorClass);
    static const char* GetRejectReasonString(unsigned reason);
    static const char* GetAbortReasonString(unsigned reason);
    static const char* GetEventStateString(unsigned state);
    static const char* GetEventTypeString(unsigned type);
    static const char* GetNotifyTypeString(unsigned type);

    // Enumeration of a property: by (type, property), else by the property alone, else ENUM_NONE.
    static ENUM_TYPE_ID GetEnumTypeId(BACSTAC_PROPERTY_ID property, BACSTAC_OBJECT_TYPE objectType);
    static unsigned GetEnumCount(ENUM_TYPE_ID type);                     // names 0..count-1; 0 for ENUM_NONE
    static const char* GetEnumString(ENUM_TYPE_ID type, unsigned value); // null past the count
    static unsigned GetObjectPropsNumber(BACSTAC_OBJECT_TYPE objectType);
    static const BACSTAC_PROPERTY_ID* GetObjectPropList(BACSTAC_OBJECT_TYPE objectType); // the library's

    static bool TestBitStringBit(BACSTAC_BIT_STRING const& value, unsigned bit);    // false past the end
    static void SetBitStringBit(BACSTAC_BIT_STRING& value, unsigned bit, bool set); // grows the string up to 96 bits

    // Describes size bytes of raw data as contents without a decoded value.
    static void InitContentsToBuf(BACSTAC_PROPERTY_CONTENTS* contents, void const* data, unsigned size);

    static void LogInf(const std::string& text);
    static void LogErr(const std::string& text);

    // The driver's log (api/bacnet/Log.h).
    static CQilBAC_ErrLog& Log();
};

BCN_API extern CBacGeneral* BACnet;

// ---- free functions
// --------------------------------------------------------------------------------------------------

enum COMPARAISON : int { COMPARE_LESS = -1, COMPARE_EQUAL = 0, COMPARE_GREATER = 1 };

// Orders two times, the weekday aside. An unspecified field is equal to any other value of it.
BCN_API COMPARAISON Compare(BACSTAC_DATE_TIME const& left, BACSTAC_DATE_TIME const& right);

// "dd/mm/yyyy hh:mm:ss.cc", "*" for unspecified fields, into a buffer of at least 50 bytes. Returns the buffer.
BCN_API char* ToText(BACSTAC_DATE_TIME const* value, char* buffer);

// The platform's broken-down time: eight 16-bit fields, weekday 0 Sunday to 6.
struct SYSTEM_TIME {
    std::uint16_t Year;
    std::uint16_t Month;
    std::uint16_t DayOfWeek;
    std::uint16_t Day;
    std::uint16_t Hour;
    std::uint16_t Minute;
    std::uint16_t Second;
    std::uint16_t Milliseconds;
};
static_assert(sizeof(SYSTEM_TIME) == 16);

BCN_API void BACstacTimeToSystemTime(BACSTAC_DATE_TIME const& from, SYSTEM_TIME& to);
BCN_API void SystemTimeToBACstacTime(SYSTEM_TIME const& from, BACSTAC_DATE_TIME& to);

// Valid UTF-8 passes unchanged; anything else is taken as Windows-1252.
BCN_API std::string ansi_to_utf8(const std::string& text);

// Gives contents that came from a read the type that belongs to this property: a raw string (7) becomes text (13), a
// value that was left raw is decoded. Contents that are decoded already stay as they are. False when the value cannot
// be decoded: the data type is negative then.
BCN_API bool ConvertRaw(BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_OBJECT_TYPE objectType,
                        BACSTAC_PROPERTY_ID property);
