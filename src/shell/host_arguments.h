// SPDX-License-Identifier: MIT
// What a host of the contract makes of a call's arguments.
#pragma once

#include <cstdint>
#include <span>

#include "glyphmotion/host_contract.h"

namespace glyphmotion {

/// The pointer in an argument.
template <typename T>
T* PointerIn(std::uint64_t argument) {
  return reinterpret_cast<T*>(static_cast<std::uintptr_t>(argument));
}

/// A record's bytes; none for null and for a record that says it is shorter.
template <typename Record>
std::span<const std::uint8_t> BytesOf(const Record* record) {
  if (!record || record->size < sizeof(Record)) return {};
  return {reinterpret_cast<const std::uint8_t*>(record), sizeof(Record)};
}

/// The answers of a host without a screen to calls that need no user; 0 to all others.
inline std::uint64_t AnswerUnasked(std::uint32_t operation, std::uint64_t b) {
  if (operation == HostOpGetFileDialogSize) {
    auto* size = PointerIn<std::int32_t>(b);
    size[0] = 640;
    size[1] = 480;
    return 1;
  }
  return operation == HostOpIsRegistered || operation == HostOpBeforeWork;
}

}  // namespace glyphmotion
