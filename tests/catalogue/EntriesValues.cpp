// Answers to ReadProperty whose tags or values are wrong.
#include "tests/catalogue/Entry.h"

namespace catalogue {

namespace {

// Octets that stand where the value should, within its brackets and with all that goes before.
Entry Value(const char* name, const std::string& octets, BACSTAC_STATUS status, const char* expected = "") {
    return {name, ReadProperty, "30 ID 0C 0C 00 00 00 05 19 55 3E " + octets + " 3F", status, expected};
}

Entry Broken(const char* name, const std::string& octets) {
    return Value(name, octets, BACSTAC_STATUS_INVALID_ANSWER);
}

} // namespace

Table TagEntries() {
    return {
        {"answer that ends behind its object", ReadProperty, "30 ID 0C 0C 00 00 00 05", BACSTAC_STATUS_INVALID_ANSWER},
        {"answer that ends behind its property", ReadProperty, "30 ID 0C 0C 00 00 00 05 19 55",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"answer without an object", ReadProperty, "30 ID 0C 19 55 3E 44 42 90 99 9A 3F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"object of three octets", ReadProperty, "30 ID 0C 0B 00 00 05 19 55 3E 44 42 90 99 9A 3F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"object of five octets", ReadProperty, "30 ID 0C 0D 05 00 00 00 00 05 19 55 3E 44 42 90 99 9A 3F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"property of no octets", ReadProperty, "30 ID 0C 0C 00 00 00 05 18 3E 44 42 90 99 9A 3F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"property of five octets", ReadProperty, "30 ID 0C 0C 00 00 00 05 1D 05 01 00 00 00 55 3E 44 42 90 99 9A 3F",
         BACSTAC_STATUS_TIMEOUT},
        {"value without its closing bracket", ReadProperty, "30 ID 0C 0C 00 00 00 05 19 55 3E 44 42 90 99 9A",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"value closed by another tag", ReadProperty, "30 ID 0C 0C 00 00 00 05 19 55 3E 44 42 90 99 9A 4F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"value closed and never opened", ReadProperty, "30 ID 0C 0C 00 00 00 05 19 55 44 42 90 99 9A 3F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"octets behind the value", ReadProperty, "30 ID 0C 0C 00 00 00 05 19 55 3E 44 42 90 99 9A 3F 21 07",
         BACSTAC_OK, "72.3"},
        Broken("length beyond the answer", "44 42 90"),
        Broken("length of 254 octets that are not there", "75 FD 00"),
        Broken("length of 65535 octets that are not there", "75 FE FF FF 00"),
        Broken("length of 4294967295 octets", "75 FF FF FF FF FF 00"),
        Broken("length of 4294967290 octets, which overflow a sum", "65 FF FF FF FF FA 01 02 03 04"),
        Broken("extended length cut", "75 FE FF"),
        Broken("extended length missing", "75"),
        Broken("tag number missing", "F9"),
        Broken("context tag of the greatest number", "F9 FF 01 44"),
        Broken("opening tag without a closing one", "1E 44 42 90 99 9A"),
        Broken("closing tag without an opening one", "44 42 90 99 9A 1F"),
        Broken("brackets crossed", "1E 2E 21 01 1F 2F"),
        Broken("nesting of 33 levels", "0E*33 21 01 0F*33"),
        Broken("nesting of 400 levels", "0E*400 21 01 0F*400"),
        Broken("nesting without end", "0E*1400"),
        Broken("nesting in ever new numbers", "0E 1E 2E 3E 4E 5E 6E 7E 8E 9E AE BE CE DE FE 0F FE 10 FE 11"),
        Broken("nothing but closing tags", "0F*100"),
    };
}

Table ValueEntries() {
    return {
        Value("real of three octets", "43 42 90 99", BACSTAC_OK, "undecoded"),
        Value("real of five octets", "45 05 42 90 99 9A 00", BACSTAC_OK, "undecoded"),
        Value("real of no octets", "40", BACSTAC_OK, "undecoded"),
        Value("double of four octets", "55 04 42 90 99 9A", BACSTAC_OK, "undecoded"),
        Value("unsigned of no octets", "20", BACSTAC_OK, "undecoded"),
        Value("unsigned of nine octets", "25 09 01*9", BACSTAC_OK, "undecoded"),
        Value("signed of no octets", "30", BACSTAC_OK, "undecoded"),
        Broken("boolean of two", "12"),
        Value("enumerated of five octets", "95 05 01 00 00 00 01", BACSTAC_OK, "type 9 x1"),
        Value("date of three octets", "A3 7E 0B 15", BACSTAC_OK, "undecoded"),
        Value("time of five octets", "B5 05 17 3B 00 00 00", BACSTAC_OK, "undecoded"),
        Value("object identifier of three octets", "C3 00 00 05", BACSTAC_OK, "undecoded"),
        Value("bit string of no octets", "80", BACSTAC_OK, "undecoded"),
        Value("bit string with nine unused bits", "82 09 FF", BACSTAC_OK, "undecoded"),
        Value("bit string with unused bits of nothing", "81 05", BACSTAC_OK, "undecoded"),
        Value("character string without a set", "70", BACSTAC_OK, "undecoded"),
        Value("reserved type 13", "D4 01 02 03 04", BACSTAC_OK, "undecoded"),
        Value("reserved type 15", "F4 0F 01 02 03 04", BACSTAC_OK, "undecoded"),
        Value("value of a maker's own in context tags", "0C 01 02 03 04 19 07", BACSTAC_OK, "undecoded"),
        Value("character string in a set that nobody knows", "75 05 63 54 65 6D 70", BACSTAC_OK, "\"Temp\""),
        Value("character string that is not UTF-8", "75 05 00 FF FE 80 C0", BACSTAC_OK,
              "\"\xC3\xBF\xC3\xBE\xE2\x82\xAC\xC3\x80\""),
        Value("character string of half a character", "75 04 04 00 54 00", BACSTAC_OK, "\"T\""),
        Value("no value at all", "", BACSTAC_OK, "type 14 x0"),
        Value("text for a number", "75 05 00 54 65 6D 70", BACSTAC_OK, "\"Temp\""),
        Value("five values for one", "44 3F 80 00 00 44 3F 80 00 00 44 3F 80 00 00 44 3F 80 00 00 44 3F 80 00 00",
              BACSTAC_OK, "type 4 x5"),
        Value("null for a number", "00", BACSTAC_OK, "type 0 x1"),
        Value("real that is no number", "44 7F C0 00 00", BACSTAC_OK, "nan"),
        {"text into four octets", ReadPropertyBuffer,
         "30 ID 0C 0C 00 00 00 05 19 55 3E 75 09 00 54 65 6D 70 65 72 61 74 3F", BACSTAC_OK, "0.0"},
        {"double into four octets", ReadPropertyBuffer,
         "30 ID 0C 0C 00 00 00 05 19 55 3E 55 08 40 52 13 33 33 33 33 33 3F", BACSTAC_STATUS_BUFFER_TOO_SMALL},
        {"three reals into the room of one", ReadPropertyBuffer,
         "30 ID 0C 0C 00 00 00 05 19 55 3E 44 3F 80 00 00 44 3F 80 00 00 44 3F 80 00 00 3F",
         BACSTAC_STATUS_BUFFER_TOO_SMALL},
        {"value of a maker's own that fits", ReadPropertyBuffer, "30 ID 0C 0C 00 00 00 05 19 55 3E 09 07 3F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"value of a maker's own into four octets", ReadPropertyBuffer,
         "30 ID 0C 0C 00 00 00 05 19 55 3E 0C 01 02 03 04 3F", BACSTAC_STATUS_BUFFER_TOO_SMALL},
    };
}

} // namespace catalogue
