// Reads a device's objects with names, descriptions and whether they can be commanded. Blocks; on the call's thread.
#pragma once

class CBACnetDev;
class CBacnetCall;

// False: the call's failure says why. An object that does not tell its name is kept without one.
bool ScanDevice(CBacnetCall& call, unsigned device, CBACnetDev& scanned);
