// SPDX-License-Identifier: MIT
// glyphmotion-host.exe: a window around the plug-in.
#include <exception>

#include "host/encoders/out_of_memory.h"
#include "host/windows/desktop.h"
#include "host/windows/main_window.h"
#include "host/windows/options.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_headers.h"
// After windows.h:
#include <objbase.h>
#include <shellapi.h>

namespace glyphmotion {
namespace {

std::vector<std::string> CommandLineWords() {
  int count = 0;
  std::vector<std::string> words;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 1; wide && i < count; ++i) words.push_back(NarrowOf(wide[i]));
  LocalFree(wide);
  return words;
}

int Run() {
  const ParsedOptions parsed = ParseHostOptions(CommandLineWords());
  if (parsed.options) return RunHost(*parsed.options);
  const std::string line = parsed.wrong ? "glyphmotion-host: error: " + parsed.text + "\n" : parsed.text;
  if (!WriteToConsole(line, parsed.wrong)) ShowBox(nullptr, parsed.text, parsed.wrong);
  return parsed.wrong ? 2 : 0;
}

}  // namespace
}  // namespace glyphmotion

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  // Pictures are decoded, and the system's dialogs run, in a single-threaded apartment.
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
  int code = 1;
  try {
    code = glyphmotion::Run();
  } catch (const std::exception&) {
    glyphmotion::ShowBox(nullptr, glyphmotion::kOutOfMemory, true);
  }
  CoUninitialize();
  return code;
}
