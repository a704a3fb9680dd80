#include "host/SettingsGuard.h"

#include "base/DurableFile.h"
#include "module/console/SettingsStore.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <exception>

namespace {

constexpr std::size_t MAX_FILE_SIZE = 256 << 20;
constexpr std::string_view VERSION_MARK = "VERSION=";
constexpr std::size_t HEADER_SIZE = 11;        // "VERSION=05" and a NUL
constexpr std::size_t SECTION_HEADER_SIZE = 8; // number and length of the payload
constexpr std::array<std::uint32_t, 5> SECTIONS{1, 2, 5, 7, 8};

std::uint32_t U32At(std::string_view bytes, std::size_t position) {
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i)
        value = value << 8 | static_cast<unsigned char>(bytes[position + static_cast<std::size_t>(i)]);
    return value;
}

} // namespace

bool CSettingsGuard::IsWhole(std::string_view bytes) {
    std::array<bool, SECTIONS.size()> found{};
    std::size_t position = bytes.rfind(VERSION_MARK, 0) == 0 ? HEADER_SIZE : 0;
    while (position < bytes.size()) {
        if (bytes.size() - position < SECTION_HEADER_SIZE)
            return false;
        const auto* const section = std::find(SECTIONS.begin(), SECTIONS.end(), U32At(bytes, position));
        const std::uint32_t length = U32At(bytes, position + 4);
        if (section != SECTIONS.end())
            found[static_cast<std::size_t>(section - SECTIONS.begin())] = true;
        position += SECTION_HEADER_SIZE;
        if (bytes.size() - position < length)
            return false;
        position += length;
    }
    return std::all_of(found.begin(), found.end(), [](bool isFound) { return isFound; });
}

bool CSettingsGuard::TryLoad(const std::string& path, bool mustBeWhole, AllPropPages& pages,
                             std::vector<CEventFilter>& filters, std::string& fault) const {
    std::string bytes;
    if (ReadWholeFile(path, MAX_FILE_SIZE, bytes, &fault) != FileRead::Ok)
        return false;
    if (mustBeWhole && !IsWhole(bytes)) {
        fault = path + ": is incomplete";
        return false;
    }
    AllPropPages loaded = pages;
    std::vector<CEventFilter> loadedFilters = filters;
    try {
        if (!loadAllProps(path.c_str(), loaded, loadedFilters)) {
            fault = path + ": cannot be loaded";
            return false;
        }
    } catch (const std::exception& failure) {
        fault = path + ": is damaged: " + failure.what();
        return false;
    }
    pages = std::move(loaded);
    filters = std::move(loadedFilters);
    return true;
}

CSettingsGuard::Source CSettingsGuard::Load(AllPropPages& pages, std::vector<CEventFilter>& filters,
                                            std::vector<std::string>& notes) {
    std::string fault;
    if (TryLoad(m_path, true, pages, filters, fault))
        return Source::Current;
    const bool isThere = access(m_path.c_str(), F_OK) == 0;
    if (isThere && access(m_path.c_str(), R_OK) != 0) {
        notes.push_back(fault);
        return Source::Unreadable;
    }
    const std::string damaged = m_path + ".damaged";
    if (isThere) {
        notes.push_back(fault);
        rename(m_path.c_str(), damaged.c_str());
    }
    for (int number = 1; number <= GENERATIONS; ++number) {
        if (!TryLoad(Generation(number), true, pages, filters, fault)) {
            if (access(Generation(number).c_str(), F_OK) == 0)
                notes.push_back(fault);
            continue;
        }
        std::string bytes;
        if (ReadWholeFile(Generation(number), MAX_FILE_SIZE, bytes, &fault) != FileRead::Ok ||
            !ReplaceWholeFile(m_path, bytes, FileAccess::OwnerOnly, &fault))
            notes.push_back(fault);
        notes.push_back(m_path + ": the settings of generation " + std::to_string(number) + " are used");
        return Source::Generation;
    }
    if (!isThere)
        return Source::Defaults;
    if (!TryLoad(damaged, false, pages, filters, fault))
        notes.push_back(fault);
    notes.push_back(damaged + ": no good generation is left, what is missing has its defaults");
    return Source::Incomplete;
}

bool CSettingsGuard::Write(const std::string& path, const AllPropPages& pages, std::string& error) const {
    AllPropPages copy = pages;
    try {
        if (storeAllProp(path.c_str(), copy))
            return true;
        error = ErrnoText(path, "cannot be written");
    } catch (const std::exception& failure) {
        error = path + ": cannot be written: " + failure.what();
    }
    return false;
}

bool CSettingsGuard::Verify(const std::string& path, const AllPropPages& pages, std::string& error) const {
    AllPropPages loaded;
    std::vector<CEventFilter> filters;
    if (!TryLoad(path, true, loaded, filters, error))
        return false;
    // A device that is null is not stored.
    AllPropPages expected = pages;
    std::erase(expected.history.devices, nullptr);
    if (loaded == expected)
        return true;
    error = path + ": does not hold what was written";
    return false;
}

bool CSettingsGuard::Save(const AllPropPages& pages, std::string& error) {
    const std::string fresh = m_path + ".new";
    if (!Write(fresh, pages, error) || !Verify(fresh, pages, error) || !MakeDurable(fresh, &error)) {
        unlink(fresh.c_str());
        return false;
    }
    std::string newBytes;
    std::string oldBytes;
    if (ReadWholeFile(fresh, MAX_FILE_SIZE, newBytes) == FileRead::Ok &&
        ReadWholeFile(m_path, MAX_FILE_SIZE, oldBytes) == FileRead::Ok && newBytes == oldBytes) {
        unlink(fresh.c_str());
        return true;
    }
    if (IsWhole(oldBytes))
        KeepGenerations();
    if (PutInPlace(fresh, m_path, &error))
        return true;
    unlink(fresh.c_str());
    return false;
}

// The file stays where it is under its own name throughout: its generation is a second name of it.
void CSettingsGuard::KeepGenerations() const {
    for (int number = GENERATIONS; number > 1; --number)
        rename(Generation(number - 1).c_str(), Generation(number).c_str());
    KeepGeneration(m_path, Generation(1));
}
