// The buffer of a simulated trend log: a ring of the newest records with the sequence numbers of clauses 12.25.16 and
// 15.8. Its first records may come from a generator, which costs no memory; whatever is appended besides is stored.
//
// A record is named by its index, which counts all records ever collected and never wraps; sequence numbers run from 1
// to 2^32 - 1 and then from 1 again. Not thread-safe: the device that owns the log locks.
#pragma once

#include "simulator/model/RecordGenerator.h"

#include <cstdint>
#include <deque>
#include <optional>

namespace sim {

class LogBuffer {
public:
    // initialTotal: how many records the log had collected (and lost) before; lets sequence numbers start high.
    explicit LogBuffer(std::uint32_t capacity, std::uint32_t initialTotal = 0);

    // Gives the source of Generate's records. Before any record is appended.
    void SetGenerator(RecordGenerator generator);
    const RecordGenerator* Generator() const { return m_generator ? &*m_generator : nullptr; }

    void Append(LogRecord record);      // the oldest record goes when the ring is full
    void Generate(std::uint64_t count); // appends the generator's next records; nothing without a generator
    void Clear();                       // forgets the records; the total stays (Record_Count written with 0)

    std::uint32_t Capacity() const { return m_capacity; }
    std::uint32_t Count() const { return static_cast<std::uint32_t>(m_end - m_begin); }
    bool IsFull() const { return Count() == m_capacity; }
    std::uint32_t TotalRecordCount() const { return m_end == 0 ? 0 : SequenceOf(m_end - 1); }

    // Indices of the records held: Begin is the oldest, End one behind the newest.
    std::uint64_t Begin() const { return m_begin; }
    std::uint64_t End() const { return m_end; }

    // index lies in [Begin, End). The result is valid until the next call with the same scratch and the next change.
    const LogRecord& At(std::uint64_t index, LogRecord& scratch) const;
    LocalTime TimeAt(std::uint64_t index) const;

    static std::uint32_t SequenceOf(std::uint64_t index) {
        return static_cast<std::uint32_t>(index % SEQUENCE_NUMBERS) + 1;
    }
    std::optional<std::uint64_t> IndexOf(std::uint32_t sequence) const; // of a record held

    // First record held whose time is after reference, and the last one whose time is before it; End and nothing when
    // there is none. The clock of a device may have been set back: then records are looked at one by one.
    std::uint64_t FirstAfter(LocalTime reference) const;
    std::optional<std::uint64_t> LastBefore(LocalTime reference) const;

private:
    static constexpr std::uint64_t SEQUENCE_NUMBERS = 0xFFFFFFFFULL; // 1 .. 2^32 - 1

    void MakeRoom();

    std::uint32_t m_capacity;
    std::uint64_t m_base;          // index of the generator's record 0
    std::uint64_t m_begin;         // oldest record held
    std::uint64_t m_end;           // behind the newest
    std::uint64_t m_generated = 0; // how many records the generator has given, stored ones included
    std::uint64_t m_virtualEnd;    // records below are made by the generator when they are looked at
    std::optional<RecordGenerator> m_generator;
    std::deque<LogRecord> m_stored; // records from max(m_begin, m_virtualEnd)
    bool m_ordered = true;          // no record is older than its predecessor
};

} // namespace sim
