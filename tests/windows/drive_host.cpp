// SPDX-License-Identifier: MIT
// Drives glyphmotion-host.exe from outside, as its user and as a script that starts it. Exits with 0 when every check
// passed.
//
//   drive_host HOST FOLDER     the program, with its plug-in beside it; a folder for what is written
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

namespace {

constexpr int kBuild = 1, kCancel = 2, kTrueColour = 10, kTest = 24, kText = 52, kEffect = 58, kVortex = 19,
              kFill = 422, kOutline = 428;  // of Vortex
constexpr DWORD kTimeout = 60000;           // milliseconds

int failures = 0;
void Check(bool right, const std::string& what) {
  if (right) return;
  ++failures;
  std::printf("FAILED: %s\n", what.c_str());
}

std::string ReadAll(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// --- A run of the program ---

struct Search {
  DWORD process;
  const char* title;
  HWND found;
};

BOOL CALLBACK LookAt(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  char title[128] = "";
  GetWindowThreadProcessId(window, &process);
  GetWindowTextA(window, title, sizeof title);
  if (process == search.process && IsWindowVisible(window) &&
      std::strncmp(title, search.title, std::strlen(search.title)) == 0)
    search.found = window;
  return !search.found;
}

// A window of the program, or null when the program has ended or none came.
HWND WaitForWindow(const PROCESS_INFORMATION& process, const char* title, int control) {
  for (DWORD waited = 0; waited < kTimeout; waited += 50) {
    Search search{process.dwProcessId, title, nullptr};
    EnumWindows(LookAt, reinterpret_cast<LPARAM>(&search));
    if (search.found && (!control || GetDlgItem(search.found, control))) return search.found;
    if (WaitForSingleObject(process.hProcess, 50) == WAIT_OBJECT_0) break;
  }
  return nullptr;
}

struct Outcome {
  DWORD code;
  std::string errors;  // its standard error
};

struct Program {
  std::string path, folder;

  Outcome Run(const std::string& arguments, const std::function<void(HWND dialog)>& user = {}) const {
    // One a run: helpers of the system may hold on to what a run was given.
    static int runs = 0;
    const std::string log = folder + "\\errors" + std::to_string(runs++) + ".txt";
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const HANDLE file = CreateFileA(log.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr);
    STARTUPINFOA start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = start.hStdError = file;
    PROCESS_INFORMATION process{};
    std::string line = "\"" + path + "\" " + arguments;
    const bool started =
        CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process);
    CloseHandle(file);
    if (!started || file == INVALID_HANDLE_VALUE) return {~0u, "not started"};
    if (user) {
      const HWND dialog = WaitForWindow(process, "Glyphmotion #4", kEffect);
      Check(dialog != nullptr, "the dialog comes: " + arguments);
      if (dialog) user(dialog);
    }
    Outcome outcome{~0u, ""};
    if (WaitForSingleObject(process.hProcess, kTimeout) != WAIT_OBJECT_0) {
      Check(false, "the program ends: " + arguments);
      TerminateProcess(process.hProcess, 99);
      WaitForSingleObject(process.hProcess, kTimeout);
    }
    GetExitCodeProcess(process.hProcess, &outcome.code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    outcome.errors = ReadAll(log);
    return outcome;
  }
};

// --- The user ---

void Press(HWND dialog, int button) { PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), 0); }

void Prepare(HWND dialog, int effect) {
  SendDlgItemMessageA(dialog, kText, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("Host"));
  const HWND combo = GetDlgItem(dialog, kEffect);
  SendMessageA(combo, CB_SETCURSEL, static_cast<WPARAM>(effect), 0);
  SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(kEffect, CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
}

// --- The tries ---

bool IsGif(const std::string& bytes) {
  return bytes.size() > 800 && bytes.compare(0, 6, "GIF89a") == 0 && bytes.back() == 0x3B;
}

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

void TryBuild(const Program& program) {
  const std::string gif = program.folder + "\\vortex.gif", record = program.folder + "\\calls";
  const Outcome outcome = program.Run("--once -o \"" + gif + "\" --record \"" + record + "\"", [](HWND dialog) {
    Prepare(dialog, kVortex);
    SendDlgItemMessageA(dialog, kTest, BM_CLICK, 0, 0);  // comes back when the test has been delivered
    Check(IsWindow(dialog), "Test leaves the dialog open");
    Press(dialog, kBuild);
  });
  Check(outcome.code == 0 && outcome.errors.empty(), "a build ends well: " + outcome.errors);
  Check(IsGif(ReadAll(gif)), "a build is written as a GIF");
  const std::string calls = ReadAll(record + "\\calls.jsonl");
  const std::size_t images = Count(calls, "\"HostOpAddImage\"");
  Check(Count(calls, "\"HostOpNewTestTask\"") == 1 && Count(calls, "\"HostOpNewTask\"") == 1,
        "both tasks are recorded");
  Check(images > 2 && Count(calls, ".dib\"}") == images, "each image is recorded");
  char last[16];
  std::snprintf(last, sizeof last, "\\%04u.dib", static_cast<unsigned>(images / 2 - 1));
  Check(ReadAll(record + last).compare(0, 4, std::string("\x28\0\0\0", 4)) == 0, "the last image is a file");
  Check(calls.find("{\"blocks\":0,\"locks\":0}\n") != std::string::npos, "the plug-in leaves no block behind");
}

void TryTrueColour(const Program& program) {
  const std::string gif = program.folder + "\\colours.gif";
  const Outcome outcome = program.Run("--once --host truecolor -o \"" + gif + "\"", [](HWND dialog) {
    Prepare(dialog, kVortex);
    if (SendDlgItemMessageA(dialog, kTrueColour, BM_GETCHECK, 0, 0) == BST_UNCHECKED)
      SendDlgItemMessageA(dialog, kTrueColour, BM_CLICK, 0, 0);
    Press(dialog, kBuild);
  });
  Check(outcome.code == 0 && IsGif(ReadAll(gif)), "true colour becomes a GIF: " + outcome.errors);
}

struct Chooser {
  HWND dialog, found;
};

BOOL CALLBACK LookOver(HWND window, LPARAM parameter) {
  auto& chooser = *reinterpret_cast<Chooser*>(parameter);
  if (GetWindow(window, GW_OWNER) == chooser.dialog && IsWindowVisible(window)) chooser.found = window;
  return !chooser.found;
}

// Clicks a control that draws itself, and answers the window that comes over the dialog. False when none came.
bool ClickAndAnswer(HWND dialog, int control, int answer) {
  const HWND target = GetDlgItem(dialog, control);
  PostMessageA(target, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(6, 6));
  PostMessageA(target, WM_LBUTTONUP, 0, MAKELPARAM(6, 6));
  Chooser chooser{dialog, nullptr};
  for (DWORD waited = 0; waited < kTimeout / 6 && !chooser.found; waited += 50, Sleep(50))
    EnumWindows(LookOver, reinterpret_cast<LPARAM>(&chooser));
  if (!chooser.found) return false;
  while (IsWindow(chooser.found)) {  // one that is not ready yet does not listen
    PostMessageA(chooser.found, WM_COMMAND, static_cast<WPARAM>(answer), 0);
    Sleep(100);
  }
  return true;
}

void TryColours(const Program& program) {
  const std::string record = program.folder + "\\colours";
  program.Run("--once --record \"" + record + "\"", [](HWND dialog) {
    Prepare(dialog, kVortex);
    Check(ClickAndAnswer(dialog, kFill, IDCANCEL), "a click on a fill opens its chooser");
    Check(ClickAndAnswer(dialog, kOutline, IDOK), "a click on a colour opens the host's chooser");
    Press(dialog, kCancel);
  });
  const std::string calls = ReadAll(record + "\\calls.jsonl");
  Check(Count(calls, "\"HostOpPickColor\"") == 1, "the host was asked for the colour, once: " + calls);
}

// A test and a cancelled dialog write nothing; an older file of the name stays.
void TryNothing(const Program& program) {
  const std::string gif = program.folder + "\\kept.gif";
  std::ofstream(gif) << "older";
  const Outcome outcome = program.Run("--once -o \"" + gif + "\"", [](HWND dialog) {
    Prepare(dialog, 0);
    SendDlgItemMessageA(dialog, kTest, BM_CLICK, 0, 0);
    Press(dialog, kCancel);
  });
  Check(outcome.code == 1 && ReadAll(gif) == "older", "a test is played and not written");
}

void TryFailures(const Program& program) {
  std::ofstream(program.folder + "\\text.dll") << "no library at all";
  const struct {
    std::string arguments;
    DWORD code;
    const char* word;
  } tries[] = {
      {"--once --plugin C:\\nothing\\there.dll", 1, "does not exist"},
      {"--once --plugin \"" + program.folder + "\\text.dll\"", 1, "is not a 64-bit library"},
      {"--once --plugin C:\\windows\\system32\\version.dll", 1, "PLUGIN16GetPluginParams"},
      {"--once --record \"" + program.folder + "\\text.dll\\calls\"", 1, "cannot be written"},
      {"--once -o C:\\nothing\\there.gif", 1, "create it"},
      {"--once -o C:\\windows", 1, "is a folder"},
      {"--host rainbow", 2, "palette, truecolor or both"},
      {"--wrong", 2, "--help"},
      {"--help", 0, "--record"},
      {"--version", 0, "glyphmotion-host "},
  };
  for (const auto& attempt : tries) {
    const Outcome outcome = program.Run(attempt.arguments);
    Check(outcome.code == attempt.code && outcome.errors.find(attempt.word) != std::string::npos,
          attempt.arguments + " gives " + std::to_string(outcome.code) + ": " + outcome.errors);
    Check(attempt.code == 0 || Count(outcome.errors, "\n") == 1, "a failure is one line: " + outcome.errors);
  }
  const std::string locked = program.folder + "\\locked.gif";
  std::ofstream(locked) << "older";
  SetFileAttributesA(locked.c_str(), FILE_ATTRIBUTE_READONLY);
  const Outcome outcome = program.Run("--once -o \"" + locked + "\"", [](HWND dialog) {
    Prepare(dialog, kVortex);
    Press(dialog, kBuild);
  });
  Check(
      outcome.code == 1 && outcome.errors.find("cannot be written") != std::string::npos && ReadAll(locked) == "older",
      "a file that cannot be written stays, with an error: " + outcome.errors);
}

// The plug-in of tests/windows/rude_plugin.cpp counts calls that the host wrongly accepted and exits with their number.
void TryRudePlugin(const Program& program) {
  const std::string plugin = program.path.substr(0, program.path.find_last_of('\\') + 1) + "rude_plugin.dll";
  const std::string gif = program.folder + "\\rude.gif";
  const Outcome outcome = program.Run("--once --plugin \"" + plugin + "\" -o \"" + gif + "\"");
  const std::string got = std::to_string(outcome.code) + " " + outcome.errors;
  Check(outcome.code == 1 && ReadAll(gif).empty(), "a rude plug-in is refused, and the host survives: " + got);
  Check(outcome.errors.find("win.ini' is not a readable picture") != std::string::npos,
        "the rude plug-in has run: " + got);
}

}  // namespace

int main(int count, char** arguments) {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  if (count < 3) return 2;
  const Program program{arguments[1], arguments[2]};
  CreateDirectoryA(program.folder.c_str(), nullptr);
  TryFailures(program);
  TryRudePlugin(program);
  TryBuild(program);
  TryTrueColour(program);
  TryNothing(program);
  TryColours(program);
  std::printf("%s\n", failures ? "FAILED" : "all right");
  return failures ? 1 : 0;
}
