// SPDX-License-Identifier: MIT
// `glyphmotion edit`: the dialog as a page in a browser.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace glyphmotion {

/// The words ask for the page: the first is "edit".
bool IsEdit(const std::vector<std::string>& words);

/// Runs until the last tab is closed. Empty when all went well, else one sentence; `usage` when the words are wrong.
std::string Edit(const std::vector<std::string>& words, const std::function<bool()>& interrupted, bool& usage);

}  // namespace glyphmotion
