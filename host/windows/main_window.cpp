// SPDX-License-Identifier: MIT
#include "host/windows/main_window.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "glyphmotion/version.h"
#include "host/encoders/out_of_memory.h"
#include "host/windows/commands.h"
#include "host/windows/desktop.h"
#include "host/windows/host_calls.h"
#include "host/windows/status_line.h"
#include "host/windows/viewer.h"
#include "platform/files.h"
#include "platform/win32/wide_text.h"

namespace glyphmotion {
namespace {

constexpr wchar_t kClass[] = L"GlyphmotionHost";
constexpr int kViewerId = 10, kStatusId = 11;
constexpr UINT kBegin = WM_APP;  // posted to itself: opens the dialog once the window is shown
constexpr const char* kDefaultPlugin = "tlmplgm4.dll";
constexpr const char* kHelpPage = "TLMPLGM4.HTML";
constexpr int kLeastWidth = 480, kLeastHeight = 320;

struct Host {
  HostOptions options;
  HWND window = nullptr, viewer = nullptr;
  StatusLine status;
  PluginLibrary plugin;
  std::shared_ptr<const Animation> built;  ///< the last that was finished
  std::vector<std::uint8_t> gif;           ///< its file
  bool saved = true;
  std::string savedAs;
  bool running = false;  ///< the plug-in's dialog is open
};

Host* StateOf(HWND window) { return reinterpret_cast<Host*>(GetWindowLongPtrW(window, GWLP_USERDATA)); }

// With `once`, on the console if there is one; otherwise in a box.
void ReportFailure(const HostOptions& options, void* owner, const std::string& sentence) {
  if (options.once && WriteToConsole("glyphmotion-host: error: " + sentence + "\n", true)) return;
  ShowBox(static_cast<HWND>(owner), sentence, true);
}

void Fail(const Host& host, const std::string& sentence) { ReportFailure(host.options, host.window, sentence); }

std::string FileNameOf(const std::string& path) { return path.substr(path.find_last_of("\\/") + 1); }

std::string ProgramFolder() {
  wchar_t path[2048];
  const DWORD length = GetModuleFileNameW(nullptr, path, 2048);
  const std::string whole = NarrowOf({path, length});
  return whole.substr(0, whole.find_last_of('\\') + 1);
}

// --- Title and status ---

void ShowTitle(const Host& host) {
  std::string title = "Glyphmotion";
  if (host.built) title = (host.saved ? FileNameOf(host.savedAs) : "Not saved yet") + " - " + title;
  SetWindowTextW(host.window, WideOf(title).c_str());
}

void ShowFacts(Host& host) {
  const Player* player = PlayerOf(host.viewer);
  if (!player) return ShowFrames(host.status, "", "");
  const int count = player->FrameCount();
  std::string frames = std::to_string(count) + (count == 1 ? " frame" : " frames");
  if (player->IsPaused()) frames = "frame " + std::to_string(player->Frame() + 1) + " of " + std::to_string(count);
  const Animation& shown = player->Shown();
  const std::string size = std::to_string(shown.width) + " \xC3\x97 " + std::to_string(shown.height);
  ShowFrames(host.status, size + ", " + frames, shown.test ? "" : SizeText(host.gif.size()));
}

// --- Saving ---

bool SaveTo(Host& host, const std::string& path) {
  const std::string_view bytes(reinterpret_cast<const char*>(host.gif.data()), host.gif.size());
  if (!AtomicWriteFile(path, bytes)) {
    Fail(host, "'" + path + "' cannot be written; check the folder and its free space, or save to another place");
    return false;
  }
  host.saved = true;
  host.savedAs = path;
  ShowStage(host.status, "Saved as " + path);
  ShowTitle(host);
  return true;
}

// Checked before the user has built anything.
std::string OutputTrouble(const std::string& path) {
  if (path.empty()) return {};
  const DWORD attributes = GetFileAttributesW(WideOf(path).c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_DIRECTORY)
    return "'" + path + "' is a folder; name a file in it";
  const std::size_t slash = path.find_last_of("\\/");
  if (slash == std::string::npos) return {};
  const std::string folder = path.substr(0, slash + 1);
  const DWORD found = GetFileAttributesW(WideOf(folder).c_str());
  if (found != INVALID_FILE_ATTRIBUTES && found & FILE_ATTRIBUTE_DIRECTORY) return {};
  return "the folder '" + folder + "' does not exist; create it, or name another one for the GIF";
}

bool SaveAs(Host& host) {
  if (host.gif.empty()) return false;
  const auto path = AskGifName(host.window, host.savedAs.empty() ? "animation.gif" : host.savedAs);
  return path && SaveTo(host, *path);
}

// False when the user cancels in order to keep an unsaved animation.
bool MayBeLost(Host& host) {
  if (host.saved || host.options.once) return true;
  switch (AskYesNoCancel(host.window, "The animation has not been saved. Save it now?")) {
    case Answer::Yes:
      return SaveAs(host);
    case Answer::No:
      return true;
    default:
      return false;
  }
}

// --- One run of the plug-in ---

bool NeedPlugin(Host& host) {
  if (host.plugin) return true;
  std::string error;
  host.plugin = LoadPlugin(host.options.plugin.empty() ? ProgramFolder() + kDefaultPlugin : host.options.plugin, error);
  if (!host.plugin) Fail(host, error);
  return static_cast<bool>(host.plugin);
}

void Play(Host& host, std::shared_ptr<const Animation> animation) {
  ShowInViewer(host.viewer, std::move(animation));
  ShowFacts(host);
  UpdateWindow(host.viewer);
}

// Encodes the animation and shows it. False on failure.
bool Keep(Host& host, std::shared_ptr<const Animation> animation) {
  std::string error;
  ShowStage(host.status, "Writing the GIF");
  const HCURSOR before = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  std::vector<std::uint8_t> gif = GifOf(*animation, error);
  SetCursor(before);
  ShowStage(host.status, "");
  if (gif.empty()) {
    Fail(host, "the animation cannot be saved as a GIF: " + error);
    return false;
  }
  host.gif = std::move(gif);
  host.built = std::move(animation);
  host.saved = false;
  Play(host, host.built);
  ShowTitle(host);
  return true;
}

RunWatcher WatcherOf(Host& host, std::shared_ptr<const Animation>& built) {
  RunWatcher watcher;
  watcher.stage = [&host](const std::string& text) { ShowStage(host.status, text); };
  watcher.progress = [&host](std::int64_t position, std::int64_t total) { ShowProgress(host.status, position, total); };
  watcher.beforeWork = [&host] { ShowStage(host.status, "Working"); };
  watcher.failed = [&host](HWND owner, const std::string& sentence) { ReportFailure(host.options, owner, sentence); };
  watcher.finished = [&host, &built](Animation animation, HWND dialog) {
    ShowProgress(host.status, 0, 0);
    const auto shared = std::make_shared<const Animation>(std::move(animation));
    if (!shared->test) built = shared;
    SetCoveringDialog(host.viewer, dialog);
    Play(host, shared);
    ShowStage(host.status, shared->test ? "Playing the test" : "Built");
  };
  return watcher;
}

bool EndRecording(Host& host, Recorder& recorder, const RunOutcome& outcome) {
  const std::string trouble = recorder.End(outcome.left);
  if (!trouble.empty()) Fail(host, trouble);
  return trouble.empty();
}

struct RunningMark {
  Host& host;
  explicit RunningMark(Host& marked) : host(marked) { host.running = true; }
  RunningMark(const RunningMark&) = delete;
  RunningMark& operator=(const RunningMark&) = delete;
  ~RunningMark() { host.running = false; }
};

// Opens the plug-in's dialog, then keeps and saves the animation that it builds. True when a file was written.
bool NewAnimation(Host& host) {
  if (host.running || !NeedPlugin(host) || !MayBeLost(host)) return false;
  std::optional<Recorder> recorder;
  std::string error;
  if (!host.options.recordFolder.empty()) {
    recorder.emplace(host.options.recordFolder, error);
    if (!error.empty()) return Fail(host, error), false;
  }
  std::shared_ptr<const Animation> built;
  const RunWatcher watcher = WatcherOf(host, built);
  ShowStage(host.status, "");
  const RunningMark mark(host);
  const RunOutcome outcome = RunPlugin(
      host.plugin, {host.window, host.options.hostFlags, host.options.skin, recorder ? &*recorder : nullptr}, watcher);
  SetCoveringDialog(host.viewer, nullptr);
  ShowProgress(host.status, 0, 0);
  ShowStage(host.status, "");
  const bool recorded = !recorder || EndRecording(host, *recorder, outcome);
  if (!outcome.ran) Fail(host, "the plug-in '" + host.plugin.name + "' did not run; it may need another host");
  if (!built) {
    if (host.built) Play(host, host.built);  // instead of a test
    return false;
  }
  if (!Keep(host, built)) return false;
  return (host.options.output.empty() ? SaveAs(host) : SaveTo(host, host.options.output)) && recorded;
}

// --- Menus ---

void ChoosePlugin(Host& host) {
  const auto path = AskPlugin(host.window);
  if (!path) return;
  std::string error;
  PluginLibrary plugin = LoadPlugin(*path, error);
  if (!plugin) return Fail(host, error);
  host.plugin = std::move(plugin);
  host.options.plugin = *path;
  ShowStage(host.status, host.plugin.name + " is ready");
}

void AboutPlugin(Host& host) {
  if (!NeedPlugin(host)) return;
  std::string text = host.plugin.name + "\n";
  if (!host.plugin.attribution.empty()) text += host.plugin.attribution + "\n";
  if (!host.plugin.version.empty()) text += "Version " + host.plugin.version + "\n";
  ShowBox(host.window, text + "\n" + host.plugin.path, false);
}

void ShowHelp(Host& host) {
  const std::string folder = host.plugin ? host.plugin.Folder() : ProgramFolder();
  if (!OpenHelp(host.window, folder, kHelpPage))
    Fail(host, "the help page '" + folder + kHelpPage + "' cannot be shown; put it beside the plug-in");
}

void PrepareMenu(Host& host, HMENU menu) {
  const Player* player = PlayerOf(host.viewer);
  const auto enable = [menu](UINT command, bool on) { EnableMenuItem(menu, command, on ? MF_ENABLED : MF_GRAYED); };
  const bool moves = player && player->FrameCount() > 1;
  enable(COMMAND_SAVE_AS, !host.gif.empty());
  enable(COMMAND_PAUSE, moves);
  enable(COMMAND_PREVIOUS, moves);
  enable(COMMAND_NEXT, moves);
  CheckMenuItem(menu, COMMAND_PAUSE, player && player->IsPaused() ? MF_CHECKED : MF_UNCHECKED);
  CheckMenuRadioItem(menu, COMMAND_CHECKERED, COMMAND_BACKGROUND,
                     COMMAND_CHECKERED + static_cast<UINT>(FieldOf(host.viewer)), MF_BYCOMMAND);
}

void Command(Host& host, int command) {
  if (host.running) return;  // some plug-ins leave their owner enabled
  switch (command) {
    case COMMAND_NEW:
      NewAnimation(host);
      return;
    case COMMAND_SAVE_AS:
      SaveAs(host);
      return;
    case COMMAND_EXIT:
      PostMessageW(host.window, WM_CLOSE, 0, 0);
      return;
    case COMMAND_PAUSE:
      return TogglePause(host.viewer);
    case COMMAND_PREVIOUS:
      return StepFrame(host.viewer, -1);
    case COMMAND_NEXT:
      return StepFrame(host.viewer, 1);
    case COMMAND_CHECKERED:
    case COMMAND_WHITE:
    case COMMAND_BLACK:
    case COMMAND_BACKGROUND:
      return SetField(host.viewer, static_cast<Field>(command - COMMAND_CHECKERED));
    case COMMAND_CHOOSE_PLUGIN:
      return ChoosePlugin(host);
    case COMMAND_ABOUT_PLUGIN:
      return AboutPlugin(host);
    case COMMAND_HELP:
      return ShowHelp(host);
    case COMMAND_ABOUT:
      return ShowBox(host.window,
                     "Glyphmotion " GLYPHMOTION_VERSION
                     "\nAnimated text: runs the plug-in, plays and saves what it builds.",
                     false);
  }
}

// --- The window ---

void Layout(Host& host) {
  RECT all;
  GetClientRect(host.window, &all);
  const int bottom = PlaceStatusLine(host.status);
  MoveWindow(host.viewer, 0, 0, all.right, std::max<LONG>(all.bottom - bottom, 0), TRUE);
}

LRESULT Handle(Host& host, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE:
      Layout(host);
      return 0;
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {Scaled(kLeastWidth), Scaled(kLeastHeight)};
      return 0;
    case WM_INITMENUPOPUP:
      PrepareMenu(host, reinterpret_cast<HMENU>(wParam));
      return 0;
    case WM_COMMAND:
      if (LOWORD(wParam) != kViewerId)
        Command(host, LOWORD(wParam));
      else if (HIWORD(wParam) == kViewerBegin)
        PostMessageW(host.window, kBegin, 0, 0);
      else
        ShowFacts(host);
      return 0;
    case kBegin:
      NewAnimation(host);
      return 0;
    case WM_CLOSE:
      if (host.running || !MayBeLost(host)) return 0;
      DestroyWindow(host.window);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      return DefWindowProcW(host.window, message, wParam, lParam);
  }
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    auto* host = static_cast<Host*>(reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams);
    host->window = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(host));
  }
  Host* host = StateOf(window);
  if (!host || !host->viewer) return DefWindowProcW(window, message, wParam, lParam);
  try {
    return Handle(*host, message, wParam, lParam);
  } catch (const std::exception&) {
    Fail(*host, kOutOfMemory);
    return 0;
  }
}

// Most of the screen: a test plays beside the dialog, which opens in the middle.
RECT FirstPlace() {
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  const int insetX = (work.right - work.left) / 14, insetY = (work.bottom - work.top) / 14;
  InflateRect(&work, -insetX, -insetY);
  return work;
}

bool OpenWindow(Host& host) {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = Procedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hIcon = LoadIconW(windowClass.hInstance, MAKEINTRESOURCEW(HOST_ICON));
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.lpszMenuName = MAKEINTRESOURCEW(HOST_MENU);
  windowClass.lpszClassName = kClass;
  RegisterClassW(&windowClass);
  const RECT place = FirstPlace();
  const HWND window = CreateWindowExW(0, kClass, L"Glyphmotion", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, place.left,
                                      place.top, place.right - place.left, place.bottom - place.top, nullptr, nullptr,
                                      windowClass.hInstance, &host);
  if (!window) return false;
  host.status = CreateStatusLine(window, kStatusId);
  host.viewer = CreateViewer(window, kViewerId);
  if (!host.viewer) return false;
  Layout(host);
  ShowWindow(window, SW_SHOW);
  UpdateWindow(window);
  return true;
}

void RunMessages(const Host& host) {
  const HACCEL keys = LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(HOST_MENU));
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (TranslateAcceleratorW(host.window, keys, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace

int RunHost(const HostOptions& options) {
  Host host;
  host.options = options;
  if (!OpenWindow(host)) {
    ReportFailure(options, nullptr, "the window cannot be opened; close some other programs");
    return 1;
  }
  if (const std::string trouble = OutputTrouble(options.output); !trouble.empty()) {
    ReportFailure(options, host.window, trouble);
    if (options.once) return 1;
    host.options.output.clear();  // so the user is asked for the name
  }
  if (options.once) {
    const bool wrote = NewAnimation(host);
    DestroyWindow(host.window);
    return wrote ? 0 : 1;
  }
  if (!options.noDialog) PostMessageW(host.window, kBegin, 0, 0);
  RunMessages(host);
  return 0;
}

}  // namespace glyphmotion
