// The confirmed services of a simulated device, one function each; Services.cpp tells which function is whose. The
// caller holds the device's lock.
#pragma once

#include "simulator/server/Services.h"

namespace sim {

// What a service gets to work with.
struct ServiceCall {
    Device& Dut; // the device under test, as seen from a client
    std::span<const std::uint8_t> Parameters;
    const AnswerRoom& Room;
    Scratch& Memory;
    const Requester& From;
};

// ReadServices.cpp: clauses 15.5 and 15.7.
Outcome ReadProperty(const ServiceCall& call);
Outcome ReadPropertyMultiple(const ServiceCall& call);
// ConditionalRead.cpp: clause 15.6 of the 2004 standard.
Outcome ReadPropertyConditional(const ServiceCall& call);
// RangeAnswer.cpp: clause 15.8.
Outcome ReadRange(const ServiceCall& call);
// WriteServices.cpp: clauses 15.9, 15.10, 15.1 and 15.2.
Outcome WriteProperty(const ServiceCall& call);
Outcome WritePropertyMultiple(const ServiceCall& call);
Outcome AddListElement(const ServiceCall& call);
Outcome RemoveListElement(const ServiceCall& call);

// FileServices.cpp: clauses 14.1 and 14.2.
Outcome AtomicReadFile(const ServiceCall& call);
Outcome AtomicWriteFile(const ServiceCall& call);

// ObjectServices.cpp: clauses 15.3 and 15.4.
Outcome CreateObject(const ServiceCall& call);
Outcome DeleteObject(const ServiceCall& call);

// ManagementServices.cpp: clauses 16.1 and 16.4.
Outcome DeviceCommunicationControl(const ServiceCall& call);
Outcome ReinitializeDevice(const ServiceCall& call);

// AlarmServices.cpp: clauses 13.5 and 13.10 to 13.12.
Outcome AcknowledgeAlarm(const ServiceCall& call);
Outcome GetAlarmSummary(const ServiceCall& call);
Outcome GetEnrollmentSummary(const ServiceCall& call);
Outcome GetEventInformation(const ServiceCall& call);

// CovServices.cpp: clauses 13.14 and 13.15.
Outcome SubscribeCov(const ServiceCall& call);
Outcome SubscribeCovProperty(const ServiceCall& call);

// ---- parts that they share

std::uint32_t IndexOf(const bacnet::PropertyTarget& target); // or WHOLE
// A request without any parameters is told apart from one that is not encoded right.
Outcome Malformed(std::span<const std::uint8_t> parameters);
Outcome TooLong(const AnswerRoom& room);
bacnet::Writer AnswerWriter(const AnswerRoom& room, Scratch& scratch);
inline bacnet::Writer AnswerWriter(const ServiceCall& call) {
    return AnswerWriter(call.Room, call.Memory);
}
// The acknowledgement that was written, or that it is too long.
Outcome Written(const bacnet::Writer& writer, const AnswerRoom& room);

} // namespace sim
