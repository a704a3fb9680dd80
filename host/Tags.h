// Brings the configured tags into the kernel and the driver's tag table. Once, at start, on one thread.
#pragma once

#include "host/Config.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

class CTagList;
class Kernel;

// The numbers of the tags by name. They stand in the historical store, so a tag keeps its number for as long as the
// data folder lives, and a number is never given to another tag: also not that of a tag which left the configuration.
class CTagNumbers {
public:
    explicit CTagNumbers(std::string path) : m_path(std::move(path)) {}

    // A missing file is an empty table. False: the file cannot be used, and nothing must be stored under new numbers.
    bool Load(std::string& error);
    bool Save(std::string& error);
    // The tag's number, a new one for a new tag. False when all 65535 are given.
    bool Get(const std::string& name, std::uint16_t& number);

private:
    const std::string m_path;
    std::map<std::string, std::uint16_t> m_numbers;
    std::uint32_t m_next = 0; // one past the greatest number
    bool m_isChanged = false;
};

// Adds all tags with their numbers. numbers is saved before the first tag is added.
bool AddTags(const std::vector<TagConfig>& tags, CTagNumbers& numbers, Kernel& kernel, CTagList& table,
             std::string& error);
