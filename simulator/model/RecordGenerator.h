// Deterministic log content: record n of a log depends on the seed, the log and n alone. A later run that has more
// records therefore holds the same earlier ones, and a generated log needs no memory for its records.
#pragma once

#include "simulator/model/LogRecord.h"

#include <cstdint>
#include <vector>

namespace sim {

// Stands in a list of kinds for all data kinds in turn, record by record.
inline constexpr std::uint32_t MIXED_KINDS = 0xFFFFFFFFU;

// 2026-01-01 00:00, where generated logs begin unless they are told otherwise.
inline constexpr LocalTime DEFAULT_RECORD_BASE = 20454 * HUNDREDTHS_PER_DAY;

struct GeneratorConfig {
    std::uint64_t Seed = 0;              // already mixed with what names the log
    LocalTime Base = 0;                  // time stamp of record 0
    LocalTime Interval = 60 * 100;       // between two records, above 0
    std::vector<std::uint32_t> Kinds{2}; // of each logged value: BACSTAC_LOG_BOOLEAN.._ANY or MIXED_KINDS
    bool WithStatusFlags = true;         // trend logs
    std::uint64_t StatusEvery = 0;       // every n-th record is a log-status record; 0: none
    friend bool operator==(const GeneratorConfig&, const GeneratorConfig&) = default;
};

class RecordGenerator {
public:
    explicit RecordGenerator(GeneratorConfig config) : m_config(std::move(config)) {}

    LocalTime TimeOf(std::uint64_t index) const {
        return m_config.Base + static_cast<LocalTime>(index) * m_config.Interval;
    }

    // Overwrites record; what it has allocated is used again.
    void Make(std::uint64_t index, LogRecord& record) const;

    const GeneratorConfig& Config() const { return m_config; }

private:
    void MakeDatum(std::uint64_t index, std::size_t item, LogDatum& datum) const;

    GeneratorConfig m_config;
};

// Spreads the bits of what names a thing into a seed.
std::uint64_t MixSeed(std::uint64_t seed, std::uint64_t name);

} // namespace sim
