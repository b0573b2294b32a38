// SPDX-License-Identifier: MIT
// The limit of an edit in characters. The system's own limit counts UTF-16 units, two for an emoji, so before each
// message that inserts text it is set to the units that fit.
#include <algorithm>
#include <string>
#include <string_view>

#include "platform/win32/dialog_state.h"

namespace glyphmotion {
namespace {

/// How many units of `text` the next `characters` have. The second half of a pair belongs to the first, which may be
/// the unit `before` the text.
std::size_t UnitsOf(std::wstring_view text, wchar_t before, std::ptrdiff_t characters) {
  std::size_t units = 0;
  for (; units < text.size(); before = text[units++]) {
    if (!IS_SURROGATE_PAIR(before, text[units]) && characters-- <= 0) break;
  }
  return units;
}

std::ptrdiff_t CharactersOf(std::wstring_view text) {
  std::ptrdiff_t pairs = 0;
  for (std::size_t i = 1; i < text.size(); ++i) pairs += IS_SURROGATE_PAIR(text[i - 1], text[i]);
  return static_cast<std::ptrdiff_t>(text.size()) - pairs;
}

std::wstring ClipboardText(HWND window) {
  std::wstring text;
  if (!OpenClipboard(window)) return text;
  const HANDLE data = GetClipboardData(CF_UNICODETEXT);
  if (const auto* units = data ? static_cast<const wchar_t*>(GlobalLock(data)) : nullptr) {
    text.assign(units, wcsnlen(units, GlobalSize(data) / sizeof(wchar_t)));
    GlobalUnlock(data);
  }
  CloseClipboard();
  return text;
}

std::wstring InsertedBy(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CHAR) return std::wstring(1, static_cast<wchar_t>(wParam));
  if (message == WM_PASTE) return ClipboardText(window);
  return lParam ? reinterpret_cast<const wchar_t*>(lParam) : L"";
}

}  // namespace

void LimitInsertion(const Control& control, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_CHAR && message != WM_PASTE && message != EM_REPLACESEL) return;
  const HWND window = control.window;
  std::wstring kept(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  kept.resize(static_cast<std::size_t>(GetWindowTextW(window, kept.data(), static_cast<int>(kept.size()))));
  DWORD start = 0, end = 0;
  SendMessageW(window, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  const std::size_t at = std::min<std::size_t>(start, kept.size());
  kept.erase(at, end - start);
  const std::size_t units = kept.size() + UnitsOf(InsertedBy(window, message, wParam, lParam),
                                                  at ? kept[at - 1] : L'\0', control.limit - CharactersOf(kept));
  SendMessageW(window, EM_LIMITTEXT, std::max<std::size_t>(units, 1), 0);  // 0 would lift the limit
}

}  // namespace glyphmotion
