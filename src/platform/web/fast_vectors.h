// SPDX-License-Identifier: MIT
// Included before every source of a module: vectors of bytes come from one place, which is compiled for speed. Compiled
// for size they would be filled by a call for each byte.
#pragma once

#include <cstdint>
#include <vector>

extern template class std::vector<std::uint8_t>;
