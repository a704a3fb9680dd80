// Keeps the settings file safe from outside. The module writes its file straight to the path it is given and reads a
// file that was cut between two sections as one with defaults; so here every new file is written under another name,
// loaded again and compared before it takes the place of the old one, the last few good files are kept as generations
// (PATH.1 is the youngest), and a damaged file is put aside as PATH.damaged.
//
// One thread at a time. Neither operation takes the module lock: AllPropPages is the caller's own copy.
#pragma once

#include "api/driver/EventFilter.h"
#include "module/console/Settings.h"

#include <string>
#include <string_view>
#include <vector>

class CSettingsGuard {
public:
    static constexpr int GENERATIONS = 3;

    explicit CSettingsGuard(std::string path) : m_path(std::move(path)) {}

    enum class Source {
        Current,    // the file as it was
        Generation, // the youngest good generation, which has become the file again
        Incomplete, // no generation was good either: what the damaged file still held, the rest has defaults
        Defaults,   // no file yet
        Unreadable, // the file is there but the system does not give it: nothing was touched, and nothing must be
                    // saved over it
    };
    // notes: lines for the log, empty when the file was good. pages and filters start from what they hold.
    Source Load(AllPropPages& pages, std::vector<CEventFilter>& filters, std::vector<std::string>& notes);

    // True when the file holds exactly these pages, durably. False: the old file stands as it did. Content that is the
    // file's already makes no generation.
    bool Save(const AllPropPages& pages, std::string& error);

    // Whether the bytes are a settings file with all its sections and nothing cut off.
    static bool IsWhole(std::string_view bytes);

private:
    std::string Generation(int number) const { return m_path + "." + std::to_string(number); }
    bool TryLoad(const std::string& path, bool mustBeWhole, AllPropPages& pages, std::vector<CEventFilter>& filters,
                 std::string& fault) const;
    bool Write(const std::string& path, const AllPropPages& pages, std::string& error) const;
    bool Verify(const std::string& path, const AllPropPages& pages, std::string& error) const;
    void KeepGenerations() const;

    const std::string m_path;
};
