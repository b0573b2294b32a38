// SPDX-License-Identifier: MIT
#include "platform/win32/wide_text.h"

#include "platform/win32/windows_headers.h"

namespace glyphmotion {

std::wstring WideOf(std::string_view text) {
  const int length = static_cast<int>(text.size());
  const int count = length ? MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0) : 0;
  std::wstring wide(static_cast<std::size_t>(count), L'\0');
  if (count) MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), count);
  return wide;
}

std::string NarrowOf(std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  const int count = length ? WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr) : 0;
  std::string narrow(static_cast<std::size_t>(count), '\0');
  if (count) WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), count, nullptr, nullptr);
  return narrow;
}

}  // namespace glyphmotion
