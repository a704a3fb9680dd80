// The alarm definition as settings files up to version 5 hold it in front of each event filter: a fixed record with
// NUL-terminated texts. It is read, never written.
#pragma once

#include "api/driver/AlarmDefinition.h"

#include <cstddef>
#include <span>

inline constexpr std::size_t FILTER_RECORD_SIZE = 0x554;       // from version 2 on
inline constexpr std::size_t FILTER_RECORD_SHORT_SIZE = 0x4D4; // without the window and the context

// The definition in `record`, whose size is one of the two above. Fields that the record does not have keep their
// defaults.
AlarmDefinition ParseFilterRecord(std::span<const std::byte> record);
