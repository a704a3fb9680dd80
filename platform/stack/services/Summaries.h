// GetAlarmSummary, GetEnrollmentSummary and GetEventInformation (ANSI/ASHRAE 135 clauses 13.10 to 13.12), both halves.
// Answers are walked one entry at a time. Any thread; no allocation.
#pragma once

#include "api/bacnet/Services.h"
#include "platform/stack/codec/Reader.h"

#include <cstdint>
#include <span>

namespace bacnet {

class Writer;

void EncodeAlarmSummary(const BACSTAC_ALARM_SUMMARY& summary, Writer& writer);
// The next entry of an answer. False at the end and on a fault: the reader tells which.
bool NextAlarmSummary(Reader& answer, BACSTAC_ALARM_SUMMARY& summary);

void EncodeGetEnrollmentSummary(const BACSTAC_ENROLLMENT_FILTER& filter, Writer& writer);
bool DecodeGetEnrollmentSummary(std::span<const std::uint8_t> parameters, BACSTAC_ENROLLMENT_FILTER& filter);
void EncodeEnrollmentSummary(const BACSTAC_ENROLLMENT_SUMMARY& summary, Writer& writer);
bool NextEnrollmentSummary(Reader& answer, BACSTAC_ENROLLMENT_SUMMARY& summary);

// lastReceived null: from the start.
void EncodeGetEventInformation(const BACSTAC_OBJECT_ID* lastReceived, Writer& writer);
bool DecodeGetEventInformation(std::span<const std::uint8_t> parameters, bool& continued,
                               BACSTAC_OBJECT_ID& lastReceived);
// The entries stand between the two halves.
void BeginEventInformationAck(Writer& writer);
void EncodeEventSummary(const BACSTAC_EVENT_SUMMARY& event, Writer& writer);
void EndEventInformationAck(bool more, Writer& writer);
// entries: for NextEventSummary.
bool DecodeEventInformationAck(std::span<const std::uint8_t> parameters, std::span<const std::uint8_t>& entries,
                               bool& more);
bool NextEventSummary(Reader& entries, BACSTAC_EVENT_SUMMARY& event);

} // namespace bacnet
