// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace glyphmotion {

/// The name of an operation of the host contract, "HostOpAddImage"; empty for a number that has none.
const char* OperationName(std::uint32_t operation) noexcept;

}  // namespace glyphmotion
