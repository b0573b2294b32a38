// SPDX-License-Identifier: MIT
// What goes from a session to its page (docs/page-protocol.md).
#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <vector>

namespace glyphmotion {

using Json = nlohmann::json;

struct PageMessage {
  Json json;
  std::vector<std::uint8_t> payload;
};

/// Takes a message at once and never waits; any thread of the session may call it.
using SendMessage = std::function<void(PageMessage)>;

}  // namespace glyphmotion
