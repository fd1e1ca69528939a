// What a record of a store can be.
#pragma once

#include <cstddef>

inline constexpr int maxRecordID = 32767;
inline constexpr size_t maxRecordBytes = 65535;
