// A value from the command line for a property of a device. Used on the call's thread.
#pragma once

#include "host/bacnet/ValueText.h"

#include <string>

class CBacnetCall;
struct PropertyText;

// By --type, else by the standard's type for the property, else by the type of what the property holds now: that costs
// one ReadProperty. False: the call's failure says what was expected.
bool TakeValue(CBacnetCall& call, unsigned device, const BACSTAC_OBJECT_ID& object, const PropertyText& property,
               const std::string& text, CTypedValue& value);
