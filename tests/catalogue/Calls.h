// The calls that the catalogue makes, each on one device, and what came of it in words.
#pragma once

#include "platform/stack/client/BacnetClient.h"

#include <string>

namespace catalogue {

struct Outcome {
    BACSTAC_STATUS Status = BACSTAC_OK;
    BACSTAC_ERROR Error{};
    std::string Result; // of a call that succeeded
};

struct Target {
    bacnet::BacnetClient& Client;
    unsigned Device = 0;
    BACSTAC_ADDRESS Address{};
};

using Call = Outcome (*)(const Target& target);

Outcome ReadProperty(const Target& target);       // analog-input 5, present-value, into contents: "72.3"
Outcome ReadPropertyBuffer(const Target& target); // the same into four octets
Outcome ReadPropertyAsync(const Target& target);
Outcome ReadMultiple(const Target& target); // object-name and present-value of analog-input 5: "Temp 72.3", "- 72.3"
Outcome ReadPropertyList(const Target& target); // of analog-input 5: "77 85-"
Outcome CountObjects(const Target& target);
Outcome ListObjects(const Target& target); // room for 10: "0:1 8:7"
Outcome ReadRange(const Target& target);   // trend-log 1, positions 1 to 10: "3 records from 17, first last"
Outcome ReadConditional(const Target& target);
Outcome WriteProperty(const Target& target);
Outcome WriteMultiple(const Target& target);
Outcome CreateObject(const Target& target); // "0:9"; the text of a refusal ends in the element that failed
Outcome DeleteObject(const Target& target);
Outcome Communication(const Target& target);
Outcome Reinitialize(const Target& target);
Outcome ReadFileStream(const Target& target);  // room for 16: "5 octets at 0, end"
Outcome ReadFileRecords(const Target& target); // "2 records at 0"
Outcome WriteFile(const Target& target);       // "at 7"
Outcome AlarmSummary(const Target& target);    // room for 4: "2 alarms"
Outcome EnrollmentSummary(const Target& target);
Outcome EventInformation(const Target& target); // "3 events"
Outcome DeviceTime(const Target& target);       // "23:59 +60", or INVALID_ANSWER

} // namespace catalogue
