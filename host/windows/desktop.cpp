// SPDX-License-Identifier: MIT
#include "host/windows/desktop.h"

#include <algorithm>
#include <string_view>

#include "platform/win32/wide_text.h"
// After windows.h:
#include <commdlg.h>
#include <shellapi.h>
#include <shlwapi.h>

namespace glyphmotion {
namespace {

constexpr wchar_t kTitle[] = L"Glyphmotion";
constexpr DWORD kLongestPath = 2048;
constexpr std::size_t kFreeColours = 16;

/// A filter is a list of names and patterns, each with its terminator.
std::optional<std::string> AskFileName(HWND owner, bool save, const wchar_t* title, const wchar_t* filter,
                                       const wchar_t* extension, const std::string& start) {
  wchar_t path[kLongestPath] = L"";
  const std::wstring wide = WideOf(start);
  if (wide.size() < kLongestPath) std::copy(wide.begin(), wide.end(), path);
  OPENFILENAMEW dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = owner;
  dialog.lpstrTitle = title;
  dialog.lpstrFilter = filter;
  dialog.lpstrFile = path;
  dialog.nMaxFile = kLongestPath;
  dialog.lpstrDefExt = extension;
  dialog.Flags = OFN_EXPLORER | OFN_ENABLESIZING | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST |
                 (save ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST);
  if (!(save ? GetSaveFileNameW(&dialog) : GetOpenFileNameW(&dialog))) return std::nullopt;
  return NarrowOf(path);
}

/// The browser's executable: a page opened as a file would lose its topic.
std::wstring Browser() {
  wchar_t program[kLongestPath] = L"";
  DWORD length = kLongestPath;
  if (FAILED(AssocQueryStringW(ASSOCF_NONE, ASSOCSTR_EXECUTABLE, L".html", L"open", program, &length))) return {};
  return program;
}

bool Open(HWND owner, const std::wstring& file, const std::wstring& parameters) {
  const HINSTANCE result = ShellExecuteW(owner, nullptr, file.c_str(),
                                         parameters.empty() ? nullptr : parameters.c_str(), nullptr, SW_SHOWNORMAL);
  return reinterpret_cast<INT_PTR>(result) > 32;  // up to 32: an error
}

HANDLE ConsoleHandle(bool failure) {
  const HANDLE given = GetStdHandle(failure ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE);
  if (given && given != INVALID_HANDLE_VALUE) return given;
  if (!AttachConsole(ATTACH_PARENT_PROCESS)) return nullptr;
  const HANDLE console =
      CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  return console == INVALID_HANDLE_VALUE ? nullptr : console;
}

}  // namespace

void ShowBox(HWND owner, const std::string& text, bool failure) {
  std::wstring wide = WideOf(text);
  if (!wide.empty() && failure) wide[0] = static_cast<wchar_t>(towupper(wide[0]));
  MessageBoxW(owner, wide.c_str(), kTitle, MB_OK | (failure ? MB_ICONWARNING : MB_ICONINFORMATION));
}

Answer AskYesNoCancel(HWND owner, const std::string& text) {
  switch (MessageBoxW(owner, WideOf(text).c_str(), kTitle, MB_YESNOCANCEL | MB_ICONQUESTION)) {
    case IDYES:
      return Answer::Yes;
    case IDNO:
      return Answer::No;
    default:
      return Answer::Cancel;
  }
}

std::optional<std::string> AskPicture(HWND owner) {
  return AskFileName(owner, false, L"Choose a picture",
                     L"Pictures\0*.png;*.jpg;*.jpeg;*.gif;*.bmp;*.dib;*.tif;*.tiff;*.ico;*.webp\0All files\0*.*\0",
                     nullptr, "");
}

std::optional<std::string> AskPlugin(HWND owner) {
  return AskFileName(owner, false, L"Choose a plug-in", L"Plug-ins\0*.dll\0All files\0*.*\0", nullptr, "");
}

std::optional<std::string> AskGifName(HWND owner, const std::string& start) {
  return AskFileName(owner, true, L"Save the animation", L"Animated GIF\0*.gif\0", L"gif", start);
}

std::optional<Colour> AskColour(HWND owner, Colour start, std::span<const Rgb> palette) {
  static COLORREF own[kFreeColours];
  static bool filled = false;
  for (std::size_t i = 0; i < kFreeColours && !filled; ++i) {
    // The last slot gets the last entry.
    own[i] = palette.empty() ? RGB(255, 255, 255) : ColourOf(palette[i * (palette.size() - 1) / (kFreeColours - 1)]);
  }
  filled = true;  // from now on they are the user's
  CHOOSECOLORW dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = owner;
  dialog.rgbResult = start & 0xFFFFFF;
  dialog.lpCustColors = own;
  dialog.Flags = CC_RGBINIT | CC_FULLOPEN;
  if (!ChooseColorW(&dialog)) return std::nullopt;
  return Colour{dialog.rgbResult} & 0xFFFFFF;
}

bool OpenHelp(HWND owner, const std::string& folder, const std::string& reference) {
  const std::size_t mark = reference.find('#');
  const std::string page = reference.substr(0, mark);
  if (page.empty() || page.find_first_of("\\/:*?\"<>|") != std::string::npos) return false;
  const std::wstring path = WideOf(folder + page);
  if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) return false;
  const std::wstring browser = mark == std::string::npos ? L"" : Browser();
  wchar_t address[kLongestPath];
  DWORD length = kLongestPath;
  if (browser.empty() || FAILED(UrlCreateFromPathW(path.c_str(), address, &length, 0))) return Open(owner, path, L"");
  std::string topic = reference.substr(mark);
  std::erase_if(topic, [](char c) { return c == '"' || c == ' '; });
  return Open(owner, browser, L"\"" + std::wstring(address) + WideOf(topic) + L"\"") || Open(owner, path, L"");
}

int Scaled(int length) {
  static const int dotsPerInch = [] {
    const HDC screen = GetDC(nullptr);
    const int dots = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return dots > 0 ? dots : 96;
  }();
  return MulDiv(length, dotsPerInch, 96);
}

bool WriteToConsole(const std::string& text, bool failure) {
  const HANDLE console = ConsoleHandle(failure);
  if (!console) return false;
  DWORD mode = 0, written = 0;
  if (GetConsoleMode(console, &mode)) {
    const std::wstring wide = WideOf(text);
    return WriteConsoleW(console, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
  }
  return WriteFile(console, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

}  // namespace glyphmotion
