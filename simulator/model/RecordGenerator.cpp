#include "simulator/model/RecordGenerator.h"

#include <cstring>

namespace sim {

namespace {

// Data kinds that MIXED_KINDS walks.
constexpr std::uint32_t ALL_KINDS[] = {BACSTAC_LOG_REAL,     BACSTAC_LOG_BOOLEAN, BACSTAC_LOG_ENUMERATED,
                                       BACSTAC_LOG_UNSIGNED, BACSTAC_LOG_SIGNED,  BACSTAC_LOG_BITSTRING,
                                       BACSTAC_LOG_NULL,     BACSTAC_LOG_FAILURE, BACSTAC_LOG_ANY};

// A value that swings slowly around 20, in steps of a sixteenth so that every decimal print of it is exact.
float Wave(std::uint64_t index, std::uint64_t noise) {
    const auto phase = static_cast<std::int32_t>(index % 128);
    const std::int32_t triangle = phase < 64 ? phase : 128 - phase;
    return 12.0F + static_cast<float>(triangle) * 0.25F + static_cast<float>(noise % 16) * 0.0625F;
}

// The wire form of a Double (application tag 5).
void PutDouble(double value, std::string& wire) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    wire.assign("\x55\x08", 2);
    for (int shift = 56; shift >= 0; shift -= 8)
        wire.push_back(static_cast<char>(bits >> shift & 0xFF));
}

} // namespace

// The finalizer of splitmix64.
std::uint64_t MixSeed(std::uint64_t seed, std::uint64_t name) {
    std::uint64_t z = seed + 0x9E3779B97F4A7C15ULL * (name + 1);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

void RecordGenerator::Make(std::uint64_t index, LogRecord& record) const {
    record.Time = TimeOf(index);
    if (m_config.StatusEvery != 0 && index % m_config.StatusEvery == 0) {
        record.Data.resize(1);
        record.Data.front() = LogDatum::Status(false, index == 0, index != 0);
        record.StatusFlags.reset();
        return;
    }
    record.Data.resize(m_config.Kinds.size());
    for (std::size_t item = 0; item < record.Data.size(); ++item)
        MakeDatum(index, item, record.Data[item]);
    record.StatusFlags.reset();
    if (m_config.WithStatusFlags) {
        // One record in 64 is in alarm, one in 128 overridden: both edges occur in any block of a few hundred records.
        const std::uint64_t noise = MixSeed(m_config.Seed, index) >> 40;
        record.StatusFlags = static_cast<std::uint8_t>((noise % 64 == 0 ? 1 : 0) | (noise % 128 == 1 ? 4 : 0));
    }
}

void RecordGenerator::MakeDatum(std::uint64_t index, std::size_t item, LogDatum& datum) const {
    const std::uint64_t noise = MixSeed(m_config.Seed + item, index);
    std::uint32_t kind = m_config.Kinds[item];
    if (kind == MIXED_KINDS)
        kind = ALL_KINDS[index % std::size(ALL_KINDS)];
    datum.Kind = kind;
    datum.Value = {};
    datum.Any.clear();
    switch (kind) {
    case BACSTAC_LOG_BOOLEAN:
        datum.Value.Boolean = static_cast<std::uint8_t>(noise & 1);
        break;
    case BACSTAC_LOG_REAL:
        datum.Value.Real = Wave(index, noise);
        break;
    case BACSTAC_LOG_ENUMERATED:
        datum.Value.Enumerated = static_cast<std::uint32_t>(noise & 1);
        break;
    case BACSTAC_LOG_UNSIGNED:
        datum.Value.Unsigned = 1 + static_cast<std::uint32_t>(noise % 4);
        break;
    case BACSTAC_LOG_SIGNED:
        datum.Value.Signed = static_cast<std::int32_t>(noise % 2001) - 1000;
        break;
    case BACSTAC_LOG_BITSTRING:
        datum.Value.BitString.BitCount = 4;
        datum.Value.BitString.Bits[0] = static_cast<std::uint8_t>(noise & 0x0F);
        break;
    case BACSTAC_LOG_FAILURE:
        datum.Value.Failure.Class = 2; // property
        datum.Value.Failure.Code = 31; // unknown-object
        break;
    case BACSTAC_LOG_ANY:
        PutDouble(static_cast<double>(Wave(index, noise)), datum.Any);
        break;
    default:
        datum.Kind = BACSTAC_LOG_NULL;
        break;
    }
}

} // namespace sim
