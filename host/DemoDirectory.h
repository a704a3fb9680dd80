// Finds the demonstration's devices as a client does: Who-Is by broadcast, then the object lists and names of those
// that answered, into the directory file.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

// Asks until all expected devices have answered or the time is over; gives those that have, ascending.
std::vector<std::uint32_t> FindDevices(const std::vector<std::uint32_t>& expected, std::chrono::milliseconds time);

// Reads the devices' objects and names, writes the directory file and loads it. False: error says which device or file.
bool BuildDirectory(const std::vector<std::uint32_t>& devices, std::string& error);
