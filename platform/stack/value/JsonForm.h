// Elements of every type to a JSON-like form and back, by the type table. Used by the typed values, on any thread.
//
//   null                      null
//   boolean                   true, false
//   unsigned, signed, enumerated   integer
//   real, double              number; "NaN", "Infinity", "-Infinity" for what JSON has no numbers for, and
//                             "NaN:" and the bits in hexadecimal for a NaN that is not the usual one
//   character string          text
//   octet string              text, two hexadecimal digits an octet
//   bit string                text of 0 and 1, bit 0 first
//   date                      {"year", "month", "day", "weekday"}, null where unspecified
//   time                      {"hour", "minute", "second", "hundredths"}, null where unspecified
//   week-n-day                {"month", "week", "day"}, null where unspecified
//   object identifier         {"type", "instance"}, integers
//   address                   {"remote", "network", "mac"}, the last as an octet string
//   any                       null without a value; else one member named like its type: {"real": 21.5}, also
//                             {"date-time": ...}, an array for several or none; {"raw": "..."} for octets that are not
//                             decoded
//   sequence                  its members by name, those that are absent left out
//   choice                    one member, named like the alternative, or by its number where the table has no name
//   event parameters          {"event-type", "parameters"}, fault parameters {"fault-type", "parameters"}
//   list                      array
#pragma once

#include "api/bacnet/Jason.h"
#include "platform/stack/codec/Elements.h"
#include "platform/stack/codec/Sink.h"
#include "platform/stack/schema/TypeTable.h"

namespace bacnet {

// element lies whole within buffer. False when something that it refers to does not.
bool ElementToJson(const BufferView& buffer, const TypeInfo& type, const std::uint8_t* element, jason::value_t& json);

// Appends the element that json tells. False when json is none of that type, and when it does not fit (Sink::Full);
// what was appended up to there stays.
bool ElementFromJson(const jason::value_t& json, const TypeInfo& type, Sink& sink);

} // namespace bacnet
