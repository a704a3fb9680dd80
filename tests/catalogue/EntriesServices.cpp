// Answers of the services about logs, files, alarms, objects and clocks.
#include "tests/catalogue/Entry.h"

namespace catalogue {

namespace {

// trend-log 1, log-buffer; then the result flags and what follows.
Entry Range(const char* name, const std::string& octets, BACSTAC_STATUS status, const char* expected = "") {
    return {name, ReadRange, "30 ID 1A 0C 05 00 00 01 19 83 " + octets, status, expected};
}

// 21.11.2026 10:00, real 1.0
constexpr const char* record = "0E A4 7E 0B 15 06 B4 0A 00 00 00 0F 1E 2C 3F 80 00 00 1F ";

// alarm of an object; active alarm of an event page
constexpr const char* alarm = "C4 00 00 00 01 91 02 82 05 E0 ";
std::string Event(unsigned instance) {
    return "0C 00 00 00 0" + std::to_string(instance) +
           " 19 03 2A 05 60 3E 19 01 19 02 19 03 3F 49 00 5A 05 E0 6E 21 0F 21 0F 21 14 6F ";
}

} // namespace

Table RangeEntries() {
    const std::string r = record;
    return {
        Range("records as they should be", "3A 05 C0 49 02 5E " + r + r + "5F 69 11", BACSTAC_OK,
              "2 records from 17 first last"),
        Range("count greater than the records", "3A 05 C0 49 FF 5E " + r + "5F 69 11", BACSTAC_OK,
              "1 records from 17 first last"),
        Range("count of 4294967295 records", "3A 05 C0 4C FF FF FF FF 5E " + r + "5F", BACSTAC_OK,
              "1 records from 0 first last"),
        Range("count of no records, and one", "3A 05 C0 49 00 5E " + r + "5F", BACSTAC_OK,
              "1 records from 0 first last"),
        Range("more to come, but no records", "3A 05 20 49 00 5E 5F", BACSTAC_OK, "0 records from 0 more"),
        Range("flags of no bits", "3A 00 49 01 5E " + r + "5F", BACSTAC_STATUS_INVALID_ANSWER),
        Range("flags of 96 bits", "3D 0D 00 FF*12 49 01 5E " + r + "5F", BACSTAC_OK,
              "1 records from 0 first last more"),
        Range("flags missing", "49 01 5E " + r + "5F", BACSTAC_STATUS_INVALID_ANSWER),
        Range("count missing", "3A 05 C0 5E " + r + "5F", BACSTAC_STATUS_INVALID_ANSWER),
        Range("records never closed", "3A 05 C0 49 01 5E " + r, BACSTAC_STATUS_INVALID_ANSWER),
        Range("records missing", "3A 05 C0 49 00", BACSTAC_STATUS_INVALID_ANSWER),
        Range("first sequence number of five octets", "3A 05 C0 49 01 5E " + r + "5F 6D 05 01 00 00 00 11", BACSTAC_OK,
              "1 records from 4294967295 first last"),
        Range("second record damaged", "3A 05 C0 49 02 5E " + r + "0E A4 7E 0B 15 06 1F 0F 5F 69 11",
              BACSTAC_STATUS_INVALID_ANSWER),
        Range("second record of another kind", "3A 05 C0 49 02 5E " + r + "21 07 5F 69 11", BACSTAC_OK,
              "1 records from 17 first more"),
        Range("record of an unknown choice", "3A 05 C0 49 01 5E 0E A4 7E 0B 15 06 B4 0A 00 00 00 0F 1E D9 05 1F 5F",
              BACSTAC_STATUS_INVALID_ANSWER),
        Range("record of 40 levels", "3A 05 C0 49 01 5E 0E A4 7E 0B 15 06 B4 0A 00 00 00 0F 1E AE 0E*40 0F*40 AF 1F 5F",
              BACSTAC_STATUS_INVALID_ANSWER),
        Range("record at an impossible time",
              "3A 05 C0 49 01 5E 0E A4 FF FF FF FF B4 FF FF FF FF 0F 1E 2C 3F 80 00 00 1F 5F", BACSTAC_OK,
              "1 records from 0 first last"),
        {"records of another log", ReadRange, "30 ID 1A 0C 05 00 00 02 19 83 3A 05 C0 49 00 5E 5F",
         BACSTAC_STATUS_TIMEOUT},
    };
}

Table FileEntries() {
    return {
        {"octets of a file", ReadFileStream, "30 ID 06 11 0E 31 00 65 05 01 02 03 04 05 0F", BACSTAC_OK,
         "5 octets at 0, end"},
        {"no octets, and no end of the file", ReadFileStream, "30 ID 06 10 0E 31 00 60 0F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"no octets, at the end of the file", ReadFileStream, "30 ID 06 11 0E 31 00 60 0F", BACSTAC_OK,
         "0 octets at 0, end"},
        {"more octets than asked for", ReadFileStream, "30 ID 06 10 0E 31 00 65 14 41*20 0F",
         BACSTAC_STATUS_BUFFER_TOO_SMALL},
        {"octets that are fewer than they say", ReadFileStream, "30 ID 06 10 0E 31 00 65 10 41*4 0F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"octets of 4 GB", ReadFileStream, "30 ID 06 10 0E 31 00 65 FF FF FF FF F0 41*4 0F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"octets from below the start", ReadFileStream, "30 ID 06 10 0E 31 FF 64 01 02 03 04 0F", BACSTAC_OK,
         "4 octets at -1"},
        {"octets from nowhere", ReadFileStream, "30 ID 06 10 0E 64 01 02 03 04 0F", BACSTAC_STATUS_INVALID_ANSWER},
        {"octets as text", ReadFileStream, "30 ID 06 10 0E 31 00 74 00 41 41 41 0F", BACSTAC_STATUS_INVALID_ANSWER},
        {"end of the file as a number", ReadFileStream, "30 ID 06 21 00 0E 31 00 64 01 02 03 04 0F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"octets never closed", ReadFileStream, "30 ID 06 10 0E 31 00 64 01 02 03 04", BACSTAC_STATUS_INVALID_ANSWER},
        {"records where octets were asked for", ReadFileStream, "30 ID 06 10 1E 31 00 21 01 61 41 1F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"nothing about a file", ReadFileStream, "30 ID 06", BACSTAC_STATUS_INVALID_ANSWER},
        {"file of the wrong access", ReadFileStream, "50 ID 06 91 05 91 0A", BACSTAC_STATUS_ERROR,
         "error: invalid-file-access-method (services)"},
        {"records of a file", ReadFileRecords, "30 ID 06 11 1E 31 00 21 02 61 41 62 41 42 1F", BACSTAC_OK,
         "2 records at 0, end"},
        {"no records, and no end of the file", ReadFileRecords, "30 ID 06 10 1E 31 00 21 00 1F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"records that are fewer than they say", ReadFileRecords, "30 ID 06 10 1E 31 00 21 05 61 41 1F", BACSTAC_OK,
         "1 records at 0"},
        {"records of 4294967295", ReadFileRecords, "30 ID 06 10 1E 31 00 24 FF FF FF FF 61 41 1F", BACSTAC_OK,
         "1 records at 0"},
        {"records of no octets that fill the buffer with their descriptors", ReadFileRecords,
         "30 ID 06 10 1E 31 00 21 C8 60*200 1F", BACSTAC_STATUS_BUFFER_TOO_SMALL},
        {"records longer than the buffer", ReadFileRecords, "30 ID 06 10 1E 31 00 21 01 65 FE 01 00 41*256 1F",
         BACSTAC_STATUS_BUFFER_TOO_SMALL},
        {"octets written", WriteFile, "30 ID 07 09 07", BACSTAC_OK, "at 7"},
        {"octets written, as a simple ack", WriteFile, "20 ID 07", BACSTAC_STATUS_INVALID_ANSWER},
        {"octets written nowhere", WriteFile, "30 ID 07 29 07", BACSTAC_STATUS_INVALID_ANSWER},
        {"octets not written", WriteFile, "50 ID 07 91 05 91 05", BACSTAC_STATUS_ERROR,
         "error: file-access-denied (services)"},
    };
}

Table SummaryEntries() {
    const std::string a = alarm;
    return {
        {"alarms", AlarmSummary, "30 ID 03 " + a + a, BACSTAC_OK, "2 alarms"},
        {"more alarms than there is room for", AlarmSummary, "30 ID 03 " + a + a + a + a + a + a, BACSTAC_OK,
         "4 alarms"},
        {"alarm cut", AlarmSummary, "30 ID 03 " + a + "C4 00 00 00 01 91", BACSTAC_STATUS_INVALID_ANSWER},
        {"alarm without its transitions", AlarmSummary, "30 ID 03 C4 00 00 00 01 91 02 C4 00 00 00 02 91 02",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"alarm in a state that nobody knows", AlarmSummary, "30 ID 03 C4 00 00 00 01 92 FF FF 82 05 E0", BACSTAC_OK,
         "1 alarms"},
        {"alarm acknowledged in 200 bits", AlarmSummary, "30 ID 03 C4 00 00 00 01 91 02 85 1A 00 FF*25", BACSTAC_OK,
         "1 alarms"},
        {"enrollments without the class", EnrollmentSummary,
         "30 ID 04 C4 00 00 00 01 91 05 91 03 21 0A C4 00 00 00 02 91 05 91 03 21 0A 21 07", BACSTAC_OK,
         "2 enrollments"},
        {"enrollment without a priority", EnrollmentSummary, "30 ID 04 C4 00 00 00 01 91 05 91 03",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"enrollment as text", EnrollmentSummary, "30 ID 04 75 05 00 54 65 6D 70", BACSTAC_STATUS_INVALID_ANSWER},
        {"events in two pages", EventInformation,
         "30 ID 1D 0E " + Event(1) + Event(2) + "0F 19 01 ; 30 ID 1D 0E " + Event(3) + "0F 19 00", BACSTAC_OK,
         "3 events"},
        {"the same page of events for ever", EventInformation, "30 ID 1D 0E " + Event(1) + "0F 19 01", BACSTAC_OK,
         "1 events"},
        {"no events, but more of them", EventInformation, "30 ID 1D 0E 0F 19 01", BACSTAC_OK, "0 events"},
        {"events never closed", EventInformation, "30 ID 1D 0E " + Event(1), BACSTAC_STATUS_INVALID_ANSWER},
        {"events without a word whether there are more", EventInformation, "30 ID 1D 0E " + Event(1) + "0F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"event with two time stamps", EventInformation,
         "30 ID 1D 0E 0C 00 00 00 01 19 03 2A 05 60 3E 19 01 19 02 3F 49 00 5A 05 E0 6E 21 0F 21 0F 21 14 6F 0F 19 00",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"event with a time stamp of an unknown choice", EventInformation,
         "30 ID 1D 0E 0C 00 00 00 01 19 03 2A 05 60 3E 79 01 19 02 19 03 3F 49 00 5A 05 E0 6E 21 0F 21 0F 21 14 6F 0F "
         "19 00",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"objects that fit a condition, cut", ReadConditional, "30 ID 0D 0C 00 00 00 05 1E 29 55 4E 44 42",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"objects that fit a condition, more than there is room for", ReadConditional,
         "30 ID 0D 0C 00 00 00 01 1E 29 55 4E 21 01 4F 1F 0C 00 00 00 02 1E 29 55 4E 21 01 4F 1F "
         "0C 00 00 00 03 1E 29 55 4E 21 01 4F 1F 0C 00 00 00 04 1E 29 55 4E 21 01 4F 1F "
         "0C 00 00 00 05 1E 29 55 4E 21 01 4F 1F",
         BACSTAC_OK, "4 objects, 4 items"},
    };
}

Table CommandEntries() {
    return {
        {"write acknowledged with a value", WriteProperty, "30 ID 0F 44 42 86 00 00", BACSTAC_OK, "written"},
        {"write refused", WriteProperty, "50 ID 0F 91 02 91 28", BACSTAC_STATUS_ERROR,
         "error: write-access-denied (property)"},
        {"write without an answer", WriteProperty, "-", BACSTAC_STATUS_TIMEOUT},
        {"multiple write refused with the property", WriteMultiple,
         "50 ID 10 0E 91 02 91 28 0F 1E 0C 00 00 00 05 19 55 1F", BACSTAC_STATUS_ERROR,
         "error: write-access-denied (property)"},
        {"multiple write refused with brackets that never close", WriteMultiple, "50 ID 10 0E 91 02 91 28",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"multiple write of an unknown service, then single ones", WriteMultiple, "60 ID 09 ; 20 ID 0F", BACSTAC_OK,
         "written"},
        {"multiple write too much, then in halves", WriteMultiple, "71 ID 01 ; 20 ID 10", BACSTAC_OK, "written"},
        {"object created", CreateObject, "30 ID 0A C4 00 00 00 09", BACSTAC_OK, "0:9"},
        {"object created, as a simple ack", CreateObject, "20 ID 0A", BACSTAC_STATUS_INVALID_ANSWER,
         "invalid answer, element 0"},
        {"object created of no octets", CreateObject, "30 ID 0A C0", BACSTAC_STATUS_INVALID_ANSWER,
         "invalid answer, element 0"},
        {"object refused for its first value", CreateObject, "50 ID 0A 0E 91 02 91 25 0F 19 01", BACSTAC_STATUS_ERROR,
         "error: value-out-of-range (property), element 1"},
        {"object refused in the brackets of no service", CreateObject, "50 ID 0A 91 01 91 04", BACSTAC_STATUS_ERROR,
         "error: dynamic-creation-not-supported (object), element 0"},
        {"object refused for a value that was not sent", CreateObject, "50 ID 0A 0E 91 02 91 25 0F 1C FF FF FF FF",
         BACSTAC_STATUS_ERROR, "error: value-out-of-range (property), element 4294967295"},
        {"object refused without a code", CreateObject, "50 ID 0A 0E 91 02 0F", BACSTAC_STATUS_INVALID_ANSWER,
         "invalid answer, element 0"},
        {"object deleted twice over", DeleteObject, "times=2 20 ID 0B", BACSTAC_OK, "done"},
        {"communication not to be disabled", Communication, "50 ID 11 91 05 91 2D", BACSTAC_STATUS_ERROR,
         "error: optional-functionality-not-supported (services)"},
        {"communication with the wrong password", Communication, "50 ID 11 91 04 91 1A", BACSTAC_STATUS_ERROR,
         "error: password-failure (security)"},
        {"restart that is acknowledged too late", Reinitialize, "after=1100 20 ID 14 ; -", BACSTAC_STATUS_TIMEOUT},
        {"restart answered with I-Am", Reinitialize, "10 00 C4 02 3F FF FE 22 05 C4 91 03 22 01 04 ; 20 ID 14",
         BACSTAC_OK, "done"},
        {"clock that is a text", DeviceTime,
         "30 ID 0E 0C 02 00 00 64 1E 29 38 4E 75 05 00 54 65 6D 70 4F 29 39 4E 75 05 00 54 65 6D 70 4F 1F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"clock without a device behind it", DeviceTime, "-", BACSTAC_STATUS_INVALID_ANSWER},
    };
}

} // namespace catalogue
