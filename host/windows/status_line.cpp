// SPDX-License-Identifier: MIT
#include "host/windows/status_line.h"

#include <algorithm>

#include "host/windows/desktop.h"
#include "platform/win32/wide_text.h"
// After windows.h:
#include <shlwapi.h>

namespace glyphmotion {
namespace {

enum Part { kStage, kBar, kFrames, kBytes, kParts };
constexpr int kBarWidth = 160, kFramesWidth = 190, kBytesWidth = 90;
constexpr int kSteps = 1000;  // of the bar

void SetPart(StatusLine& line, Part part, const std::string& text) {
  std::wstring wide = WideOf(text);
  if (wide == line.texts[part]) return;
  line.texts[part] = std::move(wide);
  SendMessageW(line.window, SB_SETTEXTW, static_cast<WPARAM>(part), reinterpret_cast<LPARAM>(line.texts[part].c_str()));
  UpdateWindow(line.window);
}

}  // namespace

StatusLine CreateStatusLine(HWND parent, int id) {
  const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_BAR_CLASSES | ICC_PROGRESS_CLASS};
  InitCommonControlsEx(&classes);
  StatusLine line;
  const HINSTANCE module = GetModuleHandleW(nullptr);
  line.window = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | SBARS_SIZEGRIP, 0,
                                0, 0, 0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), module, nullptr);
  line.bar = CreateWindowExW(0, PROGRESS_CLASSW, L"", WS_CHILD | PBS_SMOOTH, 0, 0, 0, 0, line.window, nullptr, module,
                             nullptr);
  SendMessageW(line.bar, PBM_SETRANGE32, 0, kSteps);
  ShowStage(line, "");
  return line;
}

int PlaceStatusLine(StatusLine& line) {
  SendMessageW(line.window, WM_SIZE, 0, 0);
  RECT all;
  GetClientRect(line.window, &all);
  const int grip = GetSystemMetrics(SM_CXVSCROLL);
  const int bytes = all.right - grip, frames = bytes - Scaled(kBytesWidth), bar = frames - Scaled(kFramesWidth),
            stage = bar - Scaled(kBarWidth);
  const int edges[kParts] = {std::max(stage, 0), std::max(bar, 0), std::max(frames, 0), -1};
  SendMessageW(line.window, SB_SETPARTS, kParts, reinterpret_cast<LPARAM>(edges));
  RECT place;
  SendMessageW(line.window, SB_GETRECT, kBar, reinterpret_cast<LPARAM>(&place));
  InflateRect(&place, -Scaled(3), -Scaled(3));
  MoveWindow(line.bar, place.left, place.top, place.right - place.left, place.bottom - place.top, TRUE);
  return all.bottom;
}

void ShowStage(StatusLine& line, const std::string& text) { SetPart(line, kStage, text.empty() ? "Ready" : text); }

void ShowProgress(StatusLine& line, std::int64_t position, std::int64_t total) {
  const bool shows = total > 0;
  if (shows != static_cast<bool>(IsWindowVisible(line.bar))) ShowWindow(line.bar, shows ? SW_SHOWNA : SW_HIDE);
  const double share = shows ? std::clamp(static_cast<double>(position) / static_cast<double>(total), 0.0, 1.0) : 0;
  const int step = static_cast<int>(share * kSteps);
  // The bar animates forward moves but not backward ones: stepping beyond and back sets the position at once.
  if (step < kSteps) SendMessageW(line.bar, PBM_SETPOS, static_cast<WPARAM>(step + 1), 0);
  SendMessageW(line.bar, PBM_SETPOS, static_cast<WPARAM>(step), 0);
  UpdateWindow(line.bar);
}

void ShowFrames(StatusLine& line, const std::string& frames, const std::string& bytes) {
  SetPart(line, kFrames, frames);
  SetPart(line, kBytes, bytes);
}

std::string SizeText(std::size_t bytes) {
  wchar_t text[32];
  return StrFormatByteSizeW(static_cast<LONGLONG>(bytes), text, 32) ? NarrowOf(text) : std::to_string(bytes);
}

}  // namespace glyphmotion
