#include "simulator/model/LogRange.h"

#include <algorithm>

namespace sim {

namespace {

// count items of [begin, end) from index first on, in the direction of count's sign.
LogRange Take(std::uint64_t begin, std::uint64_t end, std::uint64_t first, std::int64_t count) {
    if (count > 0)
        return {first, std::min(end, first + static_cast<std::uint64_t>(count)), false};
    if (count == 0)
        return {first, first, false};
    const auto back = static_cast<std::uint64_t>(-count);
    const std::uint64_t available = first + 1 - begin;
    return {first + 1 - std::min(back, available), first + 1, true};
}

LogRange ByPosition(std::uint64_t begin, std::uint64_t end, std::uint32_t position, std::int32_t count) {
    if (position == 0 || position > end - begin)
        return {begin, begin, count < 0};
    return Take(begin, end, begin + position - 1, count);
}

} // namespace

LogRange SelectRange(const LogBuffer& log, const BACSTAC_READ_RANGE_SPEC& spec, LocalTime reference) {
    const std::uint64_t begin = log.Begin();
    const std::uint64_t end = log.End();
    switch (spec.Kind) {
    case BACSTAC_RANGE_BY_POSITION:
        return ByPosition(begin, end, spec.ByIndex.Reference, spec.ByIndex.Count);
    case BACSTAC_RANGE_BY_SEQUENCE: {
        const auto index = log.IndexOf(spec.ByIndex.Reference);
        return index ? Take(begin, end, *index, spec.ByIndex.Count) : LogRange{begin, begin, false};
    }
    case BACSTAC_RANGE_BY_TIME:
    case BACSTAC_RANGE_BY_TIME_2001: {
        if (spec.ByTime.Count > 0)
            return Take(begin, end, log.FirstAfter(reference), spec.ByTime.Count);
        const auto last = log.LastBefore(reference);
        return last ? Take(begin, end, *last, spec.ByTime.Count) : LogRange{begin, begin, false};
    }
    default:
        return {begin, end, false};
    }
}

LogRange SelectPositions(std::uint64_t count, const BACSTAC_READ_RANGE_SPEC& spec) {
    if (spec.Kind == BACSTAC_RANGE_BY_POSITION)
        return ByPosition(0, count, spec.ByIndex.Reference, spec.ByIndex.Count);
    return {0, count, false};
}

} // namespace sim
