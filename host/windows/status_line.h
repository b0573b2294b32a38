// SPDX-License-Identifier: MIT
// The window's status line: the current stage, its progress and what is shown. Changes are drawn at once, because they
// occur while the plug-in works and no messages are handled.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/win32/windows_headers.h"

namespace glyphmotion {

struct StatusLine {
  HWND window = nullptr, bar = nullptr;
  std::wstring texts[4];
};

StatusLine CreateStatusLine(HWND parent, int id);
/// Follows the parent's size. Returns the line's height.
int PlaceStatusLine(StatusLine& line);
/// Empty: "Ready".
void ShowStage(StatusLine& line, const std::string& text);
/// 0, 0 hides the bar.
void ShowProgress(StatusLine& line, std::int64_t position, std::int64_t total);
void ShowFrames(StatusLine& line, const std::string& frames, const std::string& bytes);

/// "12.3 KB"
std::string SizeText(std::size_t bytes);

}  // namespace glyphmotion
