// ReadPropertyMultiple and object lists: what is asked for and what comes are not the same, and counts lie.
#include "tests/catalogue/Entry.h"

namespace catalogue {

namespace {

// What stands in the brackets of analog-input 5.
Entry Results(const char* name, const std::string& octets, BACSTAC_STATUS status, const char* expected = "") {
    return {name, ReadMultiple, "30 ID 0E 0C 00 00 00 05 1E " + octets + " 1F", status, expected};
}

// An answer to a question about the device's object list.
std::string List(const std::string& value) {
    return "30 ID 0C OBJ 19 4C 3E " + value + " 3F";
}
std::string Element(const std::string& index, const std::string& value) {
    return "30 ID 0C OBJ 19 4C 29 " + index + " 3E " + value + " 3F";
}

// A list that cannot be sent as a whole, and is one object longer each time that its length is asked for.
Script GrowingList() {
    return [length = 2U](const Octets& apdu) mutable {
        std::vector<Datagram> answers;
        if (apdu[0] >> 4 != 0)
            return answers;
        // ReadProperty of the list: behind the property comes the index, or nothing
        const bool single = apdu[3] == 0x0C;
        if (!single) {
            answers.push_back(ApduDatagram(AssembleOctets("60 ID 09", apdu)));
        } else if (apdu.size() < 12) {
            answers.push_back(ApduDatagram(AssembleOctets("71 ID 04", apdu)));
        } else {
            const unsigned index = apdu.back();
            Octets answer = AssembleOctets("30 ID 0C", apdu);
            answer.insert(answer.end(), apdu.begin() + 4, apdu.end());
            const Octets value = index == 0 ? Octets{0x3E, 0x21, static_cast<std::uint8_t>(length++), 0x3F}
                                            : Octets{0x3E, 0xC4, 0, 0, 0, static_cast<std::uint8_t>(index), 0x3F};
            answer.insert(answer.end(), value.begin(), value.end());
            answers.push_back(ApduDatagram(answer));
        }
        return answers;
    };
}

} // namespace

Table MultipleEntries() {
    constexpr const char* good = "29 4D 4E 75 05 00 54 65 6D 70 4F 29 55 4E 44 42 90 99 9A 4F";
    return {
        Results("results in the other order", "29 55 4E 44 42 90 99 9A 4F 29 4D 4E 75 05 00 54 65 6D 70 4F", BACSTAC_OK,
                "Temp 72.3"),
        Results("one result missing", "29 55 4E 44 42 90 99 9A 4F", BACSTAC_OK, "- 72.3"),
        Results("one result an error", "29 4D 5E 91 02 91 20 5F 29 55 4E 44 42 90 99 9A 4F", BACSTAC_OK, "- 72.3"),
        Results("all results errors", "29 4D 5E 91 02 91 20 5F 29 55 5E 91 02 91 20 5F", BACSTAC_OK, "- -"),
        Results("results given twice", std::string(good) + " " + good, BACSTAC_OK, "Temp 72.3"),
        Results("results that nobody asked for", "29 67 4E 91 00 4F 29 6F 4E 82 04 00 4F " + std::string(good),
                BACSTAC_OK, "Temp 72.3"),
        Results("results of an element that nobody asked for", "29 4D 39 01 4E 75 05 00 54 65 6D 70 4F",
                BACSTAC_STATUS_INVALID_ANSWER),
        Results("result of another type than its neighbour's", "29 4D 4E 21 07 4F 29 55 4E 44 42 90 99 9A 4F",
                BACSTAC_OK, "\a 72.3"),
        Results("result too long for its room", "29 4D 4E 75 29 00 41*40 4F 29 55 4E 44 42 90 99 9A 4F", BACSTAC_OK,
                "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA 72.3"),
        Results("result of a wrong length beside a good one", "29 4D 4E 75 05 00 54 65 6D 70 4F 29 55 4E 42 42 90 4F",
                BACSTAC_OK, "Temp -"),
        Results("result of neither value nor error", "29 4D 29 55 4E 44 42 90 99 9A 4F", BACSTAC_STATUS_INVALID_ANSWER),
        Results("result of value and error", "29 4D 4E 75 05 00 54 65 6D 70 4F 5E 91 02 91 20 5F",
                BACSTAC_STATUS_INVALID_ANSWER),
        Results("result of an error without a code", "29 4D 5E 91 02 5F 29 55 4E 44 42 90 99 9A 4F",
                BACSTAC_STATUS_INVALID_ANSWER),
        Results("value of a result never closed", "29 4D 4E 75 05 00 54 65 6D 70 29 55 4E 44 42 90 99 9A 4F",
                BACSTAC_STATUS_INVALID_ANSWER),
        Results("value of 40 levels", "29 4D 4E 0E*40 21 01 0F*40 4F 29 55 4E 44 42 90 99 9A 4F",
                BACSTAC_STATUS_INVALID_ANSWER),
        Results("result whose length swallows the others", "29 4D 4E 75 30 00 54 4F 29 55 4E 44 42 90 99 9A 4F",
                BACSTAC_STATUS_INVALID_ANSWER),
        Results("result of a property of five octets", "2D 05 01 00 00 00 55 4E 44 42 90 99 9A 4F",
                BACSTAC_STATUS_INVALID_ANSWER),
        Results("list of no results", "", BACSTAC_STATUS_INVALID_ANSWER),
        {"results never closed", ReadMultiple, "30 ID 0E 0C 00 00 00 05 1E " + std::string(good),
         BACSTAC_STATUS_INVALID_ANSWER},
        {"results of another object", ReadMultiple, "30 ID 0E 0C 00 00 00 06 1E " + std::string(good) + " 1F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"results of no object", ReadMultiple, "30 ID 0E 1E " + std::string(good) + " 1F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"results of ever new objects", ReadMultiple, "30 ID 0E 0C*1300", BACSTAC_STATUS_INVALID_ANSWER},
        {"no results", ReadMultiple, "30 ID 0E", BACSTAC_STATUS_INVALID_ANSWER},
        {"multiple read of an unknown service", ReadMultiple, "60 ID 09 ; 50 ID 0C 91 02 91 20 ; GOOD", BACSTAC_OK,
         "- 72.3"},
        {"multiple read in an error that says the service is missing", ReadMultiple,
         "50 ID 0E 91 05 91 2D ; 50 ID 0C 91 02 91 20 ; GOOD", BACSTAC_OK, "- 72.3"},
        {"multiple read too much at any size", ReadMultiple, "71 ID 01", BACSTAC_OK, "- -"},
        {"multiple read too much for segments at any size", ReadMultiple, "71 ID 04", BACSTAC_OK, "- -"},
        {"multiple read of too many arguments, then silence", ReadMultiple, "60 ID 06 ; -", BACSTAC_STATUS_TIMEOUT},
        {"multiple read refused for the object", ReadMultiple, "50 ID 0E 91 01 91 1F", BACSTAC_STATUS_ERROR,
         "error: unknown-object (object)"},
        {"multiple read without an answer", ReadMultiple, "-", BACSTAC_STATUS_TIMEOUT},
        {"all properties, none there", ReadPropertyList, "30 ID 0E 0C 00 00 00 05 1E 1F", BACSTAC_OK, ""},
        {"all properties, each an error", ReadPropertyList, "30 ID 0E 0C 00 00 00 05 1E 29 4D 5E 91 02 91 28 5F 1F",
         BACSTAC_OK, "77-"},
        {"all properties of another object", ReadPropertyList,
         "30 ID 0E 0C 00 00 00 06 1E 29 55 4E 44 42 90 99 9A 4F 1F", BACSTAC_OK, ""},
        {"all properties, cut", ReadPropertyList, "30 ID 0E 0C 00 00 00 05 1E 29 55 4E 44 42",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"all properties, refused at any size", ReadPropertyList, "71 ID 04", BACSTAC_STATUS_ABORT,
         "abort: segmentation-not-supported"},
        {"all properties too much, then silence", ReadPropertyList, "71 ID 01 ; -", BACSTAC_STATUS_TIMEOUT},
    };
}

Table ObjectListEntries() {
    return {
        {"count of 4000000000 objects", CountObjects, Element("00", "24 EE 6B 28 00"), BACSTAC_STATUS_INVALID_ANSWER},
        {"count of 4194305 objects", CountObjects, Element("00", "23 40 00 01"), BACSTAC_STATUS_INVALID_ANSWER},
        {"count of eight octets", CountObjects, Element("00", "25 08 00 00 00 01 00 00 00 00"),
         BACSTAC_STATUS_INVALID_ANSWER},
        {"count below nothing", CountObjects, Element("00", "31 FF"), BACSTAC_STATUS_INVALID_ANSWER},
        {"count as a real", CountObjects, Element("00", "44 41 20 00 00"), BACSTAC_STATUS_INVALID_ANSWER},
        {"count as an object", CountObjects, Element("00", "C4 00 00 00 01"), BACSTAC_STATUS_INVALID_ANSWER},
        {"count of nothing", CountObjects, Element("00", ""), BACSTAC_STATUS_INVALID_ANSWER},
        {"count of no objects", CountObjects, Element("00", "21 00"), BACSTAC_OK, "0"},
        {"count of a device that has no array, but a list", CountObjects,
         "50 ID 0C 91 02 91 32 ; " + List("C4 00 00 00 01 C4 02 00 00 07"), BACSTAC_OK, "2"},
        {"count refused, and the list too", CountObjects, "50 ID 0C 91 01 91 1F", BACSTAC_STATUS_ERROR,
         "error: unknown-object (object)"},
        {"list of no objects", ListObjects, List(""), BACSTAC_OK, ""},
        {"list cut in an object", ListObjects, "30 ID 0C OBJ 19 4C 3E C4 00 00 00 01 C4 02 00 3F",
         BACSTAC_STATUS_INVALID_ANSWER},
        {"list of numbers", ListObjects, List("21 01 21 02"), BACSTAC_STATUS_INVALID_ANSWER},
        {"list of objects and a number", ListObjects, List("C4 00 00 00 01 21 02"), BACSTAC_STATUS_INVALID_ANSWER},
        {"list longer than the room", ListObjects,
         List("C4 00 00 00 01 C4 00 00 00 02 C4 00 00 00 03 C4 00 00 00 04 C4 00 00 00 05 C4 00 00 00 06 "
              "C4 00 00 00 07 C4 00 00 00 08 C4 00 00 00 09 C4 00 00 00 0A C4 00 00 00 0B"),
         BACSTAC_OK, "0:1 0:2 0:3 0:4 0:5 0:6 0:7 0:8 0:9 0:10"},
        {"list of one object a hundred times", ListObjects, List("C4*1 00 00 00 01 C4 00 00 00 01"), BACSTAC_OK,
         "0:1 0:1"},
        // The whole; its length; two elements in one read, refused; one by one; its length again.
        {"list by index after a missing segmentation", ListObjects,
         "71 ID 04 ; " + Element("00", "21 02") + " ; 60 ID 09 ; " + Element("01", "C4 00 00 00 01") + " ; " +
             Element("02", "C4 02 00 00 07") + " ; " + Element("00", "21 02"),
         BACSTAC_OK, "0:1 8:7"},
        {"list by index after a full buffer", ListObjects,
         "71 ID 01 ; " + Element("00", "21 01") + " ; 60 ID 09 ; " + Element("01", "C4 00 00 00 01") + " ; " +
             Element("00", "21 01"),
         BACSTAC_OK, "0:1"},
        {"list by index of 4000000000 objects", ListObjects, "71 ID 04 ; " + Element("00", "24 EE 6B 28 00"),
         BACSTAC_STATUS_INVALID_ANSWER},
        {"list by index that ends before its count", ListObjects,
         "71 ID 04 ; " + Element("00", "21 05") + " ; 60 ID 09 ; " + Element("01", "C4 00 00 00 01") +
             " ; 50 ID 0C 91 02 91 2A ; " + "50 ID 0C 91 02 91 2A ; 50 ID 0C 91 02 91 2A ; 50 ID 0C 91 02 91 2A ; " +
             Element("00", "21 01") + " ; " + Element("01", "C4 00 00 00 01") + " ; " + Element("00", "21 01"),
         BACSTAC_OK, "0:1"},
        {"list by index whose element is no object", ListObjects,
         "71 ID 04 ; " + Element("00", "21 01") + " ; 60 ID 09 ; " + Element("01", "21 07"),
         BACSTAC_STATUS_INVALID_ANSWER},
        {"list by index whose element is refused", ListObjects,
         "71 ID 04 ; " + Element("00", "21 01") + " ; 60 ID 09 ; 50 ID 0C 91 02 91 28", BACSTAC_STATUS_ERROR,
         "error: write-access-denied (property)"},
        {"list by index, silent in the middle", ListObjects,
         "71 ID 04 ; " + Element("00", "21 02") + " ; 60 ID 09 ; " + Element("01", "C4 00 00 00 01") + " ; -",
         BACSTAC_STATUS_TIMEOUT},
        {"list that grows for ever while it is read", ListObjects, "", BACSTAC_OK, "0:1 0:2 0:3 0:4", GrowingList},
    };
}

} // namespace catalogue
