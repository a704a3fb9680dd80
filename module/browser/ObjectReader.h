// Reads what the directory keeps of an object. Blocks until the device has answered or the stack has given up.
#pragma once

class CBACnetDev;
class CBACnetObj;

// Name, description, whether the object can be commanded, and the values that other parts need without asking the
// device again, with one request. The object comes with its identifier; the device's address is used. True when at
// least the name was read; what else failed is missing. The reason of a failure is in the log.
bool ReadObjectInfo(const CBACnetDev& device, CBACnetObj& object);
