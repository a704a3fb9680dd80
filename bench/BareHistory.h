// The limit of a history transfer: SQLite alone.
#pragma once

#include <cstdint>
#include <string>

namespace bench {

// Seconds to insert records rows for each of tags tags, one tag after the other, batch rows in a transaction, each
// durable before the next: a prepared statement in a loop over a plain table in a new file.
double BareInsertSeconds(const std::string& path, std::uint32_t tags, std::uint64_t records, std::uint64_t batch);

} // namespace bench
