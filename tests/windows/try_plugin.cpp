// SPDX-License-Identifier: MIT
// A small host that tries the plug-in library as a stranger would: loads it, looks at its exports and its record, runs
// its dialog with a thread in the place of the user, and checks what arrives. Ends with 0 when all of it was right.
//
//   try_plugin LIBRARY [EFFECT [FOLDER]]    the effect's index; a folder to leave the frames in
//   try_plugin LIBRARY all                  builds every effect, then opens and cancels many times
//   try_plugin LIBRARY show                 runs the dialog for a person
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "glyphmotion/host_contract.h"

namespace {

constexpr int kBuild = 1, kCancel = 2, kTest = 24, kText = 52, kEffect = 58, kMessageText = 0xFFFF,
              kHostOperations = 22;
constexpr int kEffects = 21, kCycles = 30;
constexpr DWORD kPatience = 60000;  // milliseconds

int failures = 0;
void Check(bool right, const char* what) {
  if (right) return;
  ++failures;
  std::printf("FAILED: %s\n", what);
}

// --- The host ---

struct Host {
  int calls[kHostOperations] = {};
  std::vector<HGLOBAL> images;
  HostTaskRecord task{};
  std::string folder;
  bool open = false, finished = false, refuseTask = false, showsSomething = false;
};
Host host;

void SaveBitmap(const std::uint8_t* dib, std::size_t size, int number) {
  const auto* header = reinterpret_cast<const BITMAPINFOHEADER*>(dib);
  const DWORD colours = header->biBitCount <= 8 ? 1u << header->biBitCount : 0;
  BITMAPFILEHEADER file{};
  file.bfType = 0x4D42;
  file.bfOffBits = sizeof file + 40 + colours * 4;
  file.bfSize = static_cast<DWORD>(sizeof file + size);
  char name[MAX_PATH];
  std::snprintf(name, sizeof name, "%s\\frame%03d.bmp", host.folder.c_str(), number);
  if (std::FILE* out = std::fopen(name, "wb")) {
    std::fwrite(&file, sizeof file, 1, out);
    std::fwrite(dib, 1, size, out);
    std::fclose(out);
  }
}

// Some frames of some effects are empty, but not all of them.
bool HasTwoColours(const std::uint8_t* dib, std::size_t size) {
  const auto* header = reinterpret_cast<const BITMAPINFOHEADER*>(dib);
  const std::size_t start = 40 + (header->biBitCount <= 8 ? 4u << header->biBitCount : 0);
  return size > start && std::any_of(dib + start, dib + size, [&](std::uint8_t byte) { return byte != dib[start]; });
}

std::uint64_t AddImage(void* task, const HostImageRecord& record) {
  Check(host.open && task, "an image comes while a task is open");
  Check(record.size == 112 && record.version == 0x1000, "the image record says its size and version");
  Check(record.number == host.images.size(), "images come in order");
  const HGLOBAL handle = reinterpret_cast<HGLOBAL>(record.image);
  const std::size_t size = GlobalSize(handle);
  const auto* dib = static_cast<const std::uint8_t*>(GlobalLock(handle));
  Check(dib != nullptr, "the host can lock an image");
  if (!dib) return 0;
  const auto* header = reinterpret_cast<const BITMAPINFOHEADER*>(dib);
  Check(size > 40 && header->biSize == 40 && header->biPlanes == 1, "an image is a packed bitmap");
  const std::size_t stride = (static_cast<std::size_t>(header->biWidth) * header->biBitCount + 31) / 32 * 4;
  Check(size >= 40 + stride * static_cast<std::size_t>(header->biHeight), "an image has all its rows");
  Check(
      header->biWidth <= static_cast<LONG>(host.task.width) && header->biHeight <= static_cast<LONG>(host.task.height),
      "no image is larger than the task says");
  host.showsSomething |= HasTwoColours(dib, size);
  if (!host.folder.empty()) SaveBitmap(dib, size, static_cast<int>(record.number));
  GlobalUnlock(handle);
  Check((GlobalFlags(handle) & GMEM_LOCKCOUNT) == 0, "an image is unlocked when it comes");
  host.images.push_back(handle);
  return 1;
}

std::uint64_t OpenTask(const HostTaskRecord& record) {
  Check(record.size == 1080 && record.version == 0x1000, "the task record says its size and version");
  Check(IsWindow(reinterpret_cast<HWND>(record.ownerWindow)), "the task's owner is a window");
  if (host.refuseTask) return 0;
  host.task = record;
  host.open = true;
  return 1;
}

std::uint64_t HostCall(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
  if (operation < kHostOperations) ++host.calls[operation];
  switch (operation) {
    case HostOpNewTask:
    case HostOpNewTestTask:
      return OpenTask(*reinterpret_cast<const HostTaskRecord*>(b));
    case HostOpAddImage:
      return AddImage(task, *reinterpret_cast<const HostImageRecord*>(b));
    case HostOpEndTask:
      host.finished = a == 1;
      host.open = false;
      return 1;
    case HostOpGetFileDialogSize:
      reinterpret_cast<std::int32_t*>(b)[0] = 640;
      reinterpret_cast<std::int32_t*>(b)[1] = 480;
      return 1;
    default:
      return 0;
  }
}

// --- The user ---

struct Search {
  HWND found;
  const char* title;
};

BOOL CALLBACK LookAt(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  char title[64] = "", name[32] = "";
  GetWindowThreadProcessId(window, &process);
  GetWindowTextA(window, title, sizeof title);
  GetClassNameA(window, name, sizeof name);
  const bool matches = process == GetCurrentProcessId() && std::strcmp(name, "#32770") == 0 &&
                       IsWindowVisible(window) && std::strncmp(title, search.title, std::strlen(search.title)) == 0;
  if (matches) search.found = window;
  return !matches;
}

// A dialog that is ready for its user: visible, and answering. With a control of the id given, if any.
HWND WaitForDialog(const char* title, int control = 0) {
  for (DWORD waited = 0; waited < kPatience; waited += 50, Sleep(50)) {
    Search search{nullptr, title};
    EnumWindows(LookAt, reinterpret_cast<LPARAM>(&search));
    if (search.found && (!control || GetDlgItem(search.found, control))) return search.found;
  }
  std::printf("FAILED: no dialog came\n");
  std::exit(2);
}

void Choose(HWND dialog, int id, int index) {
  const HWND combo = GetDlgItem(dialog, id);
  SendMessageA(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
  SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
}

struct User {
  int effect;
  int button;
  bool testFirst;
};

void BeUser(User user) {
  const HWND dialog = WaitForDialog("Glyphmotion #4", kEffect);
  char text[64] = "";
  Check(SendDlgItemMessageA(dialog, kEffect, CB_GETCOUNT, 0, 0) == kEffects, "there are 21 effects");
  SetDlgItemTextA(dialog, kText, "");
  Check(!IsWindowEnabled(GetDlgItem(dialog, kBuild)), "nothing can be built of no text");
  SetDlgItemTextA(dialog, kText, "Hello");
  Check(IsWindowEnabled(GetDlgItem(dialog, kBuild)), "a text can be built");
  Choose(dialog, kEffect, user.effect);
  GetDlgItemTextA(dialog, kText, text, sizeof text);
  Check(std::strcmp(text, "Hello") == 0, "the text stays what was typed");
  if (user.testFirst) {
    SendDlgItemMessageA(dialog, kTest, BM_CLICK, 0, 0);
    for (DWORD waited = 0; waited < kPatience && !host.finished; waited += 50) Sleep(50);
    Check(host.finished && IsWindow(dialog), "Test delivers and leaves the dialog open");
    host.images.clear();
    host.finished = false;
  }
  PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(user.button, BN_CLICKED), 0);
}

// --- The tries ---

using GetParams = int (*)(PluginInfoRecord*);
using DoBuild = int (*)(void*, const HostCallTable*);

std::set<std::string> ExportsOf(HMODULE library) {
  const auto* base = reinterpret_cast<const std::uint8_t*>(library);
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
  const auto* table = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(
      base + headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress);
  const auto* names = reinterpret_cast<const DWORD*>(base + table->AddressOfNames);
  std::set<std::string> found;
  for (DWORD i = 0; i < table->NumberOfNames; ++i) found.insert(reinterpret_cast<const char*>(base + names[i]));
  Check(table->NumberOfFunctions == found.size(), "every export has a name");
  return found;
}

void TryRecord(GetParams getParams) {
  std::vector<std::uint8_t> bytes(512, 0xAA);
  const std::uint32_t size = 400;
  std::memcpy(bytes.data(), &size, sizeof size);
  Check(getParams(reinterpret_cast<PluginInfoRecord*>(bytes.data())) == 1, "the record can be had");
  std::vector<std::uint8_t> wanted(512, 0xAA);
  std::fill(wanted.begin(), wanted.begin() + size, 0);
  std::memcpy(wanted.data(), &size, sizeof size);
  wanted[5] = 0x10;
  std::memcpy(wanted.data() + 8, "Glyphmotion #4", 14);
  Check(bytes[269] != 0 && std::memchr(bytes.data() + 269, 0, 64), "the attribution is a line within its 64 bytes");
  std::copy_n(bytes.begin() + 269, 64, wanted.begin() + 269);
  Check(bytes == wanted, "the record is its fields and zeros, and nothing past its size");
}

HostCallTable Table(std::uint32_t flags) {
  HostCallTable table{};
  table.version = HostInterfaceVersion;
  table.HostCall = HostCall;
  table.hostFlags = flags;
  return table;
}

// A whole run; gives what the system has of ours afterwards.
void Run(DoBuild doBuild, std::uint32_t flags, User user) {
  const std::string folder = host.folder;
  host = {};
  host.folder = folder;
  const HostCallTable table = Table(flags);
  std::thread thread(BeUser, user);
  Check(doBuild(nullptr, &table) == 1, "a run answers 1");
  thread.join();
  const bool builds = user.button == kBuild;
  Check(!host.open, "no task is left open");
  Check(host.finished == builds && host.calls[HostOpNewTask] == (builds ? 1 : 0), "only a build opens a task");
  Check(host.images.empty() != builds && (!builds || host.images.size() == host.task.imageCount),
        "as many images come as the task says");
  Check(host.showsSomething == builds, "a build shows something");
  for (const HGLOBAL image : host.images) {
    Check(GlobalFlags(image) == GMEM_INVALID_HANDLE, "the library has freed its images");
  }
  std::printf("effect %d, flags %u, button %d: %u images of %u x %u, %u bits\n", user.effect, unsigned(flags),
              user.button, unsigned(host.images.size()), unsigned(host.task.width), unsigned(host.task.height),
              unsigned(host.task.bitsPerPixel));
}

// What this process holds of the system's. Wine does not count for us, but knows objects by the lower half of their
// handles, so that all of them can be tried.
struct Resources {
  DWORD drawing = 0, windows = 0;
};
BOOL CALLBACK CountOwn(HWND window, LPARAM count) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process == GetCurrentProcessId()) ++*reinterpret_cast<DWORD*>(count);
  return TRUE;
}

Resources CountResources() {
  Resources count{GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS),
                  GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS)};
  if (count.drawing && count.windows) return count;
  count = {};
  for (std::uintptr_t i = 1; i < 0x10000; ++i) {
    if (GetObjectType(reinterpret_cast<HGDIOBJ>(i))) ++count.drawing;
  }
  EnumWindows(CountOwn, reinterpret_cast<LPARAM>(&count.windows));
  return count;
}

void CheckNothingLeft(Resources before) {
  const Resources after = CountResources();
  std::printf("drawing objects %u then %u, windows %u then %u\n", unsigned(before.drawing), unsigned(after.drawing),
              unsigned(before.windows), unsigned(after.windows));
  Check(after.drawing <= before.drawing, "a run leaves no drawing object behind");
  Check(after.windows <= before.windows, "a run leaves no window behind");
}

// A host that is too old is told so and gets 0.
void TryOldHost(DoBuild doBuild) {
  host = {};
  HostCallTable table = Table(3);
  table.version = 0x0FFF;
  std::thread thread([] { PostMessageA(WaitForDialog("Glyphmotion #4"), WM_COMMAND, IDOK, 0); });
  Check(doBuild(nullptr, &table) == 0, "a host that is too old gets 0");
  thread.join();
}

// A host that refuses the task: the dialog says so, stays, and can be left.
void TryRefusal(DoBuild doBuild) {
  host = {};
  host.refuseTask = true;
  const HostCallTable table = Table(HostFlagPaletteFormat);
  std::thread thread([] {
    const HWND dialog = WaitForDialog("Glyphmotion #4", kEffect);
    PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(kTest, BN_CLICKED), 0);
    const HWND message = WaitForDialog("Glyphmotion #4", kMessageText);
    PostMessageA(message, WM_COMMAND, IDOK, 0);
    while (IsWindow(message)) Sleep(20);
    PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(kCancel, BN_CLICKED), 0);
  });
  Check(doBuild(nullptr, &table) == 1, "a run answers 1 when its task was refused");
  thread.join();
  Check(host.calls[HostOpNewTestTask] == 1 && host.calls[HostOpAddImage] == 0, "no image goes to a refused task");
}

// A table without its function: the dialog says so and closes by itself.
void TryNoHostCall(DoBuild doBuild) {
  HostCallTable table = Table(HostFlagPaletteFormat);
  table.HostCall = nullptr;
  std::thread thread([] { PostMessageA(WaitForDialog("Glyphmotion #4", kMessageText), WM_COMMAND, IDOK, 0); });
  Check(doBuild(nullptr, &table) == 1, "a run answers 1 when its table has no function");
  thread.join();
}

}  // namespace

int main(int count, char** arguments) {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  if (count < 2) return 2;
  const HMODULE library = LoadLibraryA(arguments[1]);
  Check(library != nullptr, "the library loads");
  if (!library) return 1;
  Check(ExportsOf(library) == std::set<std::string>{"PLUGIN16GetPluginParams", "PLUGIN16DoBuild"},
        "the library exports its two functions and nothing else");
  const auto getParams =
      reinterpret_cast<GetParams>(reinterpret_cast<void*>(GetProcAddress(library, "PLUGIN16GetPluginParams")));
  const auto doBuild = reinterpret_cast<DoBuild>(reinterpret_cast<void*>(GetProcAddress(library, "PLUGIN16DoBuild")));
  if (!getParams || !doBuild) return 1;
  if (count > 2 && std::strcmp(arguments[2], "show") == 0) {
    const HostCallTable table = Table(HostFlagPaletteFormat | HostFlagTrueColorFormat);
    return doBuild(nullptr, &table) == 1 && !failures ? 0 : 1;
  }
  TryRecord(getParams);
  Check(doBuild(nullptr, nullptr) == 0, "no table, no run");
  TryOldHost(doBuild);
  const bool all = count > 2 && std::strcmp(arguments[2], "all") == 0;
  const int effect = count > 2 && !all ? std::atoi(arguments[2]) : 0;
  Run(doBuild, HostFlagPaletteFormat, {effect, kCancel, false});
  if (count > 3) host.folder = arguments[3];
  Run(doBuild, HostFlagPaletteFormat | HostFlagTrueColorFormat, {effect, kBuild, true});
  for (int i = 1; all && i < kEffects; ++i) Run(doBuild, HostFlagTrueColorFormat, {i, kBuild, false});
  TryRefusal(doBuild);
  TryNoHostCall(doBuild);
  const Resources before = CountResources();
  for (int i = 0; i < (all ? kCycles : 3); ++i)
    Run(doBuild, HostFlagPaletteFormat, {(effect + i) % kEffects, kCancel, false});
  CheckNothingLeft(before);
  Check(FreeLibrary(library) && !GetModuleHandleA("tlmplgm4.dll"), "the library goes when it is let go");
  std::printf("%s\n", failures ? "FAILED" : "all right");
  return failures ? 1 : 0;
}
