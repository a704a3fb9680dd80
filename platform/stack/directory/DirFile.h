// The directory file: a snapshot of all devices, checked as a whole and replaced as a whole. Any thread; saving is
// serialised within the process.
//
//   8 bytes   "BACDIR" 0D 0A
//   u32       version, 1 (all integers little-endian)
//   payload   see below
//   u64       length of the payload
//   u32       CRC-32 (the polynomial of Ethernet) of the payload
//
// The payload is a count of devices and the devices ascending by instance. "n" is an unsigned integer of up to 64 bits,
// seven bits a byte, least significant first, the top bit of a byte saying that another follows; "text" is n bytes of
// UTF-8 behind their count n.
//
//   device: n instance, u8 remote, n network, u8 MAC length, MAC, n vendor, entry, n count of objects, objects
//   object: n type, n instance, entry; objects ascend by type and instance
//   entry:  u8 flags (1 commandable, 2 has extra values), text name, text description, values if flagged
//   values: n count, then for each: n property, n object type, u8 list, n data type plus 3, n element type plus 3,
//           n length, encoding (clause 20.2)
//
// Values that have no encoding are left out; values of types that are not known here are passed over.
//
// A saved file replaces the former one by a rename, after both it and its folder are on the disk. The former one stays
// as PATH.bak if it was intact.
#pragma once

#include "api/bacnet/Dir.h"

#include <memory>
#include <string>
#include <vector>

namespace bacnet::directory {

using Devices = std::vector<std::shared_ptr<const CBACnetDev>>; // ascending by instance

// False when the file is missing, damaged or of a version that is not known; devices are then left alone. Memory is
// bounded by the file's size.
bool ReadFile(const std::string& path, Devices& devices);

// False when the file could not be written; the former one is then still there.
bool WriteFile(const std::string& path, const Devices& devices);

// Where the former generation of a file is kept.
std::string BackupPath(const std::string& path);

} // namespace bacnet::directory
