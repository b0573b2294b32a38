// SPDX-License-Identifier: MIT
// Plays a strict host to a library: many runs, each call of them checked.
#include "strict_host.h"

#include <dlfcn.h>
#include <glyphmotion/host_contract.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>

#include "checks.h"

namespace conformance {
namespace {

constexpr int kBuild = 1, kCancel = 2, kTest = 24, kText = 52, kSize = 57, kDelay = 11, kPause = 23, kAnimated = 22,
              kPalette = 13, kCustom = 14, kTrueColour = 10, kTransparent = 35, kAlpha = 62, kComment = 20,
              kEffect = 58;
constexpr int kTypedDelay = 7, kTypedPause = 9;
constexpr std::uint32_t kKnown[] = {1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 12, 13, 15, 18, 21};

// The library's functions.
struct Library {
  decltype(&PLUGIN16GetPluginParams) params = nullptr;
  decltype(&PLUGIN16DoBuild) build = nullptr;
  decltype(&GlyphmotionLockBlock) lock = nullptr;
  decltype(&GlyphmotionUnlockBlock) unlock = nullptr;
  decltype(&GlyphmotionBlockSize) size = nullptr;
  decltype(&GlyphmotionAllocateBlock) allocate = nullptr;
  decltype(&GlyphmotionLiveBlocks) live = nullptr;
  decltype(&GlyphmotionSetDriver) driver = nullptr;
  decltype(&GlyphmotionSetText) text = nullptr;
  decltype(&GlyphmotionSetNumber) number = nullptr;
  decltype(&GlyphmotionSetCheck) check = nullptr;
  decltype(&GlyphmotionSelect) select = nullptr;
  decltype(&GlyphmotionPress) press = nullptr;
  decltype(&GlyphmotionGetText) getText = nullptr;
};

template <typename Function>
bool Find(void* handle, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(handle, name));
  if (!function) std::fprintf(stderr, "the library does not export %s\n", name);
  return function != nullptr;
}

bool Open(const char* path, Library& l) {
  void* handle = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (!handle) return std::fprintf(stderr, "%s\n", dlerror()), false;
  return Find(handle, "PLUGIN16GetPluginParams", l.params) && Find(handle, "PLUGIN16DoBuild", l.build) &&
         Find(handle, "GlyphmotionLockBlock", l.lock) && Find(handle, "GlyphmotionUnlockBlock", l.unlock) &&
         Find(handle, "GlyphmotionBlockSize", l.size) && Find(handle, "GlyphmotionAllocateBlock", l.allocate) &&
         Find(handle, "GlyphmotionLiveBlocks", l.live) && Find(handle, "GlyphmotionSetDriver", l.driver) &&
         Find(handle, "GlyphmotionSetText", l.text) && Find(handle, "GlyphmotionSetNumber", l.number) &&
         Find(handle, "GlyphmotionSetCheck", l.check) && Find(handle, "GlyphmotionSelect", l.select) &&
         Find(handle, "GlyphmotionPress", l.press) && Find(handle, "GlyphmotionGetText", l.getText);
}

bool AllZero(const void* from, std::size_t bytes) {
  const auto* begin = static_cast<const std::uint8_t*>(from);
  return std::all_of(begin, begin + bytes, [](std::uint8_t byte) { return byte == 0; });
}

bool IsUtf8(const char* text) {
  for (const auto* p = reinterpret_cast<const unsigned char*>(text); *p;) {
    const int more = *p < 0x80 ? 0 : *p >> 5 == 6 ? 1 : *p >> 4 == 14 ? 2 : *p >> 3 == 30 ? 3 : -1;
    if (more < 0) return false;
    ++p;
    for (int i = 0; i < more; ++i, ++p) {
      if (*p >> 6 != 2) return false;
    }
  }
  return true;
}

struct Plan {
  std::uint32_t flags = HostFlagPaletteFormat;
  bool trueColour = false, transparent = false, alpha = false, comment = false, test = false, cancel = false;
  bool refuseTask = false;
  int refuseImage = -1;
  std::function<void()> inImage = {};  ///< within the first image's call
};

// One run: what it sent, and what was wrong with it.
class StrictHost {
 public:
  StrictHost(const Library& library, Results& results, Plan plan)
      : l_(library), results_(results), plan_(std::move(plan)) {}

  int Run();
  std::uint64_t Hash() const { return hash_; }
  int Images() const { return images_; }
  int Tasks() const { return tasks_; }

 private:
  static std::uint64_t Entry(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b);
  static void Play(GlyphmotionDialog* dialog, void* context) { static_cast<StrictHost*>(context)->Drive(dialog); }
  void Drive(GlyphmotionDialog* dialog);
  std::uint64_t Answer(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b);
  void Order(std::uint32_t operation);
  std::uint64_t OpenTask(const HostTaskRecord& record, bool test);
  std::uint64_t AddImage(const HostImageRecord& record);
  void CheckBitmap(const std::uint8_t* dib, std::size_t size, const HostImageRecord& record);
  void EndTask(bool finished);
  void Hold(const char* name, bool holds) { results_.Hold(name, holds); }

  const Library& l_;
  Results& results_;
  const Plan plan_;
  std::thread::id thread_;
  const void* open_ = nullptr;
  HostTaskRecord task_{};
  int calls_ = 0, images_ = 0, tasks_ = 0, works_ = 0, stage_ = 0;  // stage_: of an open task
  std::uint32_t width_ = 0, height_ = 0;
  bool refused_ = false;
  std::uint64_t hash_ = 14695981039346656037u;
};

StrictHost*& Current() {
  static thread_local StrictHost* host = nullptr;
  return host;
}

std::uint64_t StrictHost::Entry(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
  return Current() ? Current()->Answer(task, operation, a, b) : 0;
}

int StrictHost::Run() {
  StrictHost* const outer = std::exchange(Current(), this);
  thread_ = std::this_thread::get_id();
  HostCallTable table{};
  table.version = HostInterfaceVersion;
  table.HostCall = Entry;
  table.hostFlags = plan_.flags;
  const HostCallTable before = table;
  l_.driver(Play, this);
  const int result = l_.build(nullptr, &table);
  l_.driver(nullptr, nullptr);
  Hold("table-kept", std::memcmp(&table, &before, sizeof table) == 0);
  Hold("build-returns", result == 1);
  Current() = outer;
  return result;
}

void StrictHost::Drive(GlyphmotionDialog* dialog) {
  Hold("unknown-control", l_.text(dialog, 99999, "x") == 0 && l_.press(dialog, 99999) == 0);
  l_.text(dialog, kText, "Conform");
  char text[4];
  std::memset(text, 'x', sizeof text);
  Hold("text-cut", l_.getText(dialog, kText, text, sizeof text) == 1 && std::strcmp(text, "Con") == 0);
  l_.number(dialog, kSize, 14);
  l_.number(dialog, kDelay, kTypedDelay);
  l_.number(dialog, kPause, kTypedPause);
  l_.select(dialog, kEffect, 15);
  l_.check(dialog, kAnimated, 0);
  l_.check(dialog, kTrueColour, plan_.trueColour);
  l_.check(dialog, kCustom, 1);
  l_.check(dialog, kTransparent, plan_.transparent);
  l_.check(dialog, kAlpha, plan_.alpha);
  l_.check(dialog, kComment, plan_.comment);
  if (plan_.cancel) {
    l_.press(dialog, kCancel);
    return;
  }
  if (plan_.test) {
    l_.press(dialog, kTest);
    Hold("test-run", tasks_ == 1 && l_.getText(dialog, kText, text, sizeof text) == 1);
    return;
  }
  l_.press(dialog, kBuild);
  if (plan_.refuseTask) Hold("refused-task", images_ == 0 && l_.getText(dialog, kText, text, sizeof text) == 1);
}

std::uint64_t StrictHost::Answer(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
  Hold("thread", std::this_thread::get_id() == thread_);
  Hold("calls-known", std::find(std::begin(kKnown), std::end(kKnown), operation) != std::end(kKnown));
  if (calls_++ == 0) Hold("dialog-size", operation == HostOpGetFileDialogSize);
  const bool ofTask = operation == HostOpAddImage || operation == HostOpAddComment || operation == HostOpEndTask ||
                      operation == HostOpSetBackground;
  Hold("task-pointer", ofTask ? task && task == open_ : !task);
  if (open_) Hold("task-kept", std::memcmp(open_, &task_, sizeof task_) == 0);
  if (ofTask) Order(operation);
  switch (operation) {
    case HostOpBeforeWork:
      Hold("before-work", ++works_ == tasks_ + 1);
      return 1;
    case HostOpNewTask:
    case HostOpNewTestTask:
      Hold("before-work", works_ == tasks_ + 1);
      return OpenTask(*reinterpret_cast<HostTaskRecord*>(b), operation == HostOpNewTestTask);
    case HostOpAddImage:
      return AddImage(*reinterpret_cast<HostImageRecord*>(b));
    case HostOpAddComment:
      Hold("comment", plan_.comment && IsUtf8(reinterpret_cast<const char*>(b)));
      return 1;
    case HostOpEndTask:
      EndTask(a == 1);
      return 1;
    case HostOpSetBackground:
      Hold("background", a == 100 ? b <= 0xFFFFFF || b == 0xFFFFFFFF : a == 101 && b < 256);
      return 1;
    case HostOpStatusText: {
      const std::string stage = reinterpret_cast<const char*>(b);
      Hold("stages",
           stage == "Building" || stage == "Quantizing" || stage == "Supercompressing" || stage == "Remapping");
      return 1;
    }
    case HostOpProgress:
      Hold("progress", a <= b);
      return 1;
    case HostOpGetFileDialogSize:
      reinterpret_cast<std::int32_t*>(b)[0] = 640;
      reinterpret_cast<std::int32_t*>(b)[1] = 480;
      return 1;
    default:
      return 0;
  }
}

// Background, images, comment, end.
void StrictHost::Order(std::uint32_t operation) {
  const int stage = operation == HostOpSetBackground ? 1
                    : operation == HostOpAddImage    ? 2
                    : operation == HostOpAddComment  ? 3
                                                     : 4;
  Hold("task-order", open_ && (stage > stage_ || (stage == 2 && stage_ == 2)));
  if (refused_) Hold("refused-image", operation == HostOpEndTask);
  stage_ = stage;
}

std::uint64_t StrictHost::OpenTask(const HostTaskRecord& record, bool test) {
  Hold("task-once", ++tasks_ == 1 && !open_);
  if (test || plan_.test) Hold("test-run", test == plan_.test);
  Hold("task-record", record.size == 1080 && record.version == HostInterfaceVersion && record.reserved16 == 0 &&
                          record.reserved800 == 0 && record.reserved1076 == 0 && AllZero(record.reserved808, 264));
  Hold("task-depth", (record.bitsPerPixel >= 1 && record.bitsPerPixel <= 8) || record.bitsPerPixel == 24);
  if (plan_.refuseTask) return 0;
  open_ = &record;
  task_ = record;
  return 1;
}

std::uint64_t StrictHost::AddImage(const HostImageRecord& record) {
  Hold("image-record", record.size == 112 && record.version == HostInterfaceVersion && record.reserved16 == 0 &&
                           record.reserved24 == 0 && AllZero(record.reserved44, 68));
  Hold("image-number", record.number == static_cast<std::uint32_t>(images_));
  Hold("image-delay",
       record.delay == kTypedDelay || record.delay == kTypedDelay + kTypedPause || record.delay == kTypedPause);
  Hold("image-alone", !(plan_.alpha || plan_.transparent) || record.standAlone == 1);
  const std::size_t size = l_.size(record.image);
  const auto* dib = static_cast<const std::uint8_t*>(l_.lock(record.image));
  Hold("image-block", dib && size >= 40);
  if (dib && size >= 40) CheckBitmap(dib, size, record);
  if (dib) l_.unlock(record.image);
  if (images_ == 0 && plan_.inImage) plan_.inImage();
  if (plan_.refuseImage == images_) return refused_ = true, 0;
  ++images_;
  return 1;
}

void StrictHost::CheckBitmap(const std::uint8_t* dib, std::size_t size, const HostImageRecord& record) {
  std::int32_t header[10];
  std::memcpy(header, dib, sizeof header);
  const int bits = header[3] >> 16;
  const bool sound = header[0] == 40 && (header[3] & 0xFFFF) == 1 && header[4] == 0 && header[1] > 0 && header[2] > 0;
  Hold("image-header", sound);
  const bool known = bits == 1 || bits == 4 || bits == 8 || bits == 24 || bits == 32;
  Hold("image-bits", known && (bits != 32 || (plan_.alpha && !(plan_.flags & HostFlagPaletteFormat))));
  if (!sound || !known) return;
  const std::size_t stride = (static_cast<std::size_t>(header[1]) * static_cast<std::size_t>(bits) + 31) / 32 * 4;
  const std::size_t table = bits < 9 ? std::size_t{4} << bits : 0;
  const std::size_t whole = 40 + table + stride * static_cast<std::size_t>(header[2]);
  Hold("image-block", size >= whole);
  const bool alphaRun = plan_.alpha && !(plan_.flags & HostFlagPaletteFormat);
  Hold("image-index",
       alphaRun ? record.transparentIndex == 0
                : record.transparentIndex == -1 || (record.transparentIndex >= 0 && record.transparentIndex < 256));
  width_ = std::max(width_, static_cast<std::uint32_t>(header[1]));
  height_ = std::max(height_, static_cast<std::uint32_t>(header[2]));
  for (std::size_t i = 0; i < std::min(whole, size); ++i) hash_ = (hash_ ^ dib[i]) * 1099511628211u;
}

void StrictHost::EndTask(bool finished) {
  if (finished) {
    Hold("task-count", task_.imageCount == static_cast<std::uint32_t>(images_));
    Hold("task-size", task_.width == width_ && task_.height == height_);
  }
  Hold("refused-image", finished == !refused_);
  open_ = nullptr;
}

void CheckParams(const Library& l, Results& results) {
  results.Hold("params-null", l.params(nullptr) == 0);
  for (const std::uint32_t size : {333u, 400u, 4096u}) {
    std::vector<std::uint8_t> bytes(5000, 0xAA);
    std::memcpy(bytes.data(), &size, sizeof size);
    PluginInfoRecord record{};
    const bool done = l.params(reinterpret_cast<PluginInfoRecord*>(bytes.data())) == 1;
    std::memcpy(&record, bytes.data(), sizeof record);
    results.Hold("params-fields", done && record.size == size && record.version == HostInterfaceVersion &&
                                      record.name[0] && std::memchr(record.name, 0, sizeof record.name) &&
                                      record.attribution[0] &&
                                      std::memchr(record.attribution, 0, sizeof record.attribution) &&
                                      AllZero(bytes.data() + sizeof record, size - sizeof record));
    results.Hold("params-bounds",
                 std::all_of(bytes.begin() + size, bytes.end(), [](std::uint8_t b) { return b == 0xAA; }));
  }
}

void CheckBlocks(const Library& l, Results& results) {
  const std::uint64_t block = l.allocate(1000);
  void* bytes = l.lock(block);
  results.Hold("new-block", block && bytes && l.size(block) >= 1000 && AllZero(bytes, 1000));
  if (bytes) l.unlock(block);
  results.Hold("dead-handle", l.lock(0) == nullptr && l.lock(block ^ 0x5A5A5A5A5A5Au) == nullptr);
}

void CheckTables(const Library& l, Results& results) {
  results.Hold("build-null", l.build(nullptr, nullptr) == 0);
  static thread_local int calls = 0;
  HostCallTable table{};
  table.HostCall = [](void*, std::uint32_t, std::uint64_t, std::uint64_t) -> std::uint64_t { return ++calls, 1; };
  table.hostFlags = HostFlagPaletteFormat;
  table.version = 0x0F00;
  results.Hold("build-old-host", l.build(nullptr, &table) == 0 && calls == 0);
  table.version = HostInterfaceVersion;
  l.driver(nullptr, nullptr);
  static thread_local bool opened = false;
  table.HostCall = [](void*, std::uint32_t operation, std::uint64_t, std::uint64_t) -> std::uint64_t {
    opened |= operation == HostOpNewTask || operation == HostOpNewTestTask;
    return 1;
  };
  results.Hold("no-driver", l.build(nullptr, &table) == 1 && !opened);
}

}  // namespace

bool PlayHost(const char* path) {
  Library l;
  if (!Open(path, l)) return false;
  Results results(kLibraryChecks);
  CheckParams(l, results);
  CheckTables(l, results);
  std::uint64_t before[2], after[2];
  l.live(&before[0], &before[1]);
  const auto run = [&](Plan plan) {
    StrictHost host(l, results, std::move(plan));
    host.Run();
    return host;
  };
  const StrictHost alone = run({.comment = true});
  results.Hold("comment", alone.Images() > 1);
  results.Hold("repeatable", run({}).Hash() == alone.Hash());
  constexpr std::uint32_t both = HostFlagPaletteFormat | HostFlagTrueColorFormat;
  run({.flags = both, .trueColour = true});
  run({.transparent = true});
  run({.flags = HostFlagTrueColorFormat, .trueColour = true, .alpha = true});
  run({.test = true});
  run({.refuseTask = true});
  run({.refuseImage = 1});
  results.Hold("cancel", run({.cancel = true}).Tasks() == 0);
  std::uint64_t nested = 0;
  const StrictHost outer = run({.inImage = [&] { nested = run({}).Hash(); }});
  results.Hold("nested", nested == alone.Hash() && outer.Hash() == alone.Hash());
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back([&] { results.Hold("concurrent", run({}).Hash() == alone.Hash()); });
  for (std::thread& thread : threads) thread.join();
  l.live(&after[0], &after[1]);
  results.Hold("blocks", after[0] == before[0] && after[1] == before[1]);
  CheckBlocks(l, results);
  return results.Print(stdout);
}

}  // namespace conformance
