// The history database's file format: how a file is known to be ours, and how a new one is laid out. docs/kernel.md
// describes it for people who read the file with other tools.
#pragma once

#include "platform/historian/Sqlite.h"

#include <filesystem>
#include <string>

inline constexpr std::uint32_t HISTORY_APPLICATION_ID = 0x56464931; // "VFI1" in the file header
inline constexpr int HISTORY_SCHEMA_VERSION = 1;

enum class HistoryFile { Missing, Ours, Refused };

// Looks at the file's header without opening the database, so that a file that is not ours is left exactly as it is. A
// file that is empty, or was being made when the machine stopped, counts as Missing. error says why a file is refused.
HistoryFile ProbeHistoryFile(const std::filesystem::path& path, std::string& error);

// Checks the schema of an open database. False: error says what is wrong.
bool CheckHistorySchema(SqliteConnection& connection, std::string& error);

// Lays out an empty database; does nothing if another program just did. False: the connection's error says why.
bool CreateHistorySchema(SqliteConnection& connection);
