// SPDX-License-Identifier: MIT
// In the place of the library, plays a strict plug-in to the host that loads it: canned pictures of every kind that the
// host's flags allow, and every question that a dialog may ask. The checks are printed when the process ends.
#include <glyphmotion/host_contract.h>

#include <cstdlib>
#include <map>
#include <string>

#include "checks.h"

struct GlyphmotionDialog {
  const HostCallTable* table;
};

namespace conformance {
namespace {

constexpr int kWidth = 6, kHeight = 3, kImages = 2;

struct Block {
  std::vector<std::uint8_t> bytes;
  int locks = 0;
};

// The library's state, as its functions share it.
struct Plugin {
  Results results{kHostChecks};
  std::mutex mutex;
  std::map<std::uint64_t, Block> blocks;
  std::uint64_t lastHandle = 0x1000;
  bool built = false;

  ~Plugin() {
    if (!built) std::fputs("the host never called PLUGIN16DoBuild of the library that it was given\n", stderr);
    const bool good = results.Print(stderr) && built;
    std::fflush(nullptr);
    if (!good) std::_Exit(1);
  }
};

Plugin& Self() {
  static Plugin plugin;
  return plugin;
}

void Hold(const char* name, bool holds) { Self().results.Hold(name, holds); }

struct DriverOfThread {
  GlyphmotionDriver driver = nullptr;
  void* context = nullptr;
};

DriverOfThread& Driver() {
  static thread_local DriverOfThread driver;
  return driver;
}

std::uint64_t Address(const void* pointer) { return reinterpret_cast<std::uintptr_t>(pointer); }

Block* FindBlock(std::uint64_t handle) {
  const auto found = Self().blocks.find(handle);
  return found == Self().blocks.end() ? nullptr : &found->second;
}

// A packed DIB of two coloured halves.
std::vector<std::uint8_t> Picture(int bits, int number) {
  const std::size_t stride = (static_cast<std::size_t>(kWidth * bits) + 31) / 32 * 4,
                    table = bits < 9 ? std::size_t{4} << bits : 0;
  std::vector<std::uint8_t> dib(40 + table + stride * kHeight);
  const std::int32_t header[] = {40, kWidth, kHeight, 1 | bits << 16};
  std::memcpy(dib.data(), header, sizeof header);
  for (std::size_t i = 0; i < table; ++i) dib[40 + i] = i % 4 == 3 ? 0 : static_cast<std::uint8_t>(i * 37);
  for (std::size_t i = 40 + table; i < dib.size(); ++i)
    dib[i] = static_cast<std::uint8_t>(i + static_cast<std::size_t>(number)) & 0x11;
  return dib;
}

class Run {
 public:
  explicit Run(const HostCallTable& table) : table_(table) {}

  void Build() {
    Call(nullptr, HostOpBeforeWork, 0, 0);
    Ask();
    Task(8, HostOpNewTestTask, true);
    Task(4, HostOpNewTestTask, false);
    for (const int bits : {1, 4, 24}) Task(bits, HostOpNewTestTask, true);
    if (!(table_.hostFlags & HostFlagPaletteFormat)) Task(32, HostOpNewTestTask, true);
    Task(table_.hostFlags & HostFlagPaletteFormat ? 8 : 24, HostOpNewTask, true);
  }

  std::uint64_t Call(void* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
    const HostCallTable before = table_;
    const std::uint64_t result = table_.HostCall(task, operation, a, b);
    Hold("host-table", std::memcmp(&before, &table_, sizeof before) == 0);
    for (const auto& [handle, block] : Self().blocks) Hold("host-locks", block.locks == 0);
    return result;
  }

 private:
  // What a dialog asks its host.
  void Ask() {
    Hold("host-unknown", Call(nullptr, 99, 0, 0) == 0);
    Hold("host-no-image", Call(nullptr, HostOpLoadImage, 0, Address("/no such folder/no such picture.png")) == 0);
    char path[262] = {};
    path[261] = 'x';
    const bool chosen = Call(nullptr, HostOpChooseImageFile, 0, Address(path)) != 0;
    Hold("host-path", path[261] == 'x' && std::memchr(path, 0, 261) && (!chosen || path[0]));
    const std::uint8_t palette[768] = {};
    HostColorPickRecord colour{sizeof colour, HostInterfaceVersion, {palette}, 24, 0, 0x123456, 0, 0};
    Call(nullptr, HostOpPickColor, 0, Address(&colour));
    Hold("host-colour", colour.color <= 0xFFFFFF);
    Call(nullptr, HostOpIsRegistered, 0, 0);
    Call(nullptr, HostOpShowHelp, 0, Address("TLMPLGM4.HTML#simple"));
  }

  void Task(int bits, std::uint32_t operation, bool whole) {
    for (const char* stage : {"Building", "Remapping"}) Call(nullptr, HostOpStatusText, 0, Address(stage));
    for (std::uint64_t i = 0; i < 3; ++i) Call(nullptr, HostOpProgress, i, 3);
    Call(nullptr, HostOpProgress, 0, 0);
    HostTaskRecord task{};
    task.size = sizeof task;
    task.version = HostInterfaceVersion;
    task.bitsPerPixel = bits < 24 ? static_cast<std::uint32_t>(bits) : 24;
    task.width = kWidth;
    task.height = kHeight;
    task.imageCount = kImages;
    const HostTaskRecord before = task;
    const bool open = Call(nullptr, operation, 0, Address(&task)) != 0;
    Hold("host-task", open);
    Hold("host-again", open);
    if (!open) return;
    const bool indexed = (table_.hostFlags & HostFlagPaletteFormat) != 0;
    Call(&task, HostOpSetBackground, indexed ? 101 : 100, indexed ? 1 : 0xFF8000);
    for (int i = 0; i < (whole ? kImages : 1); ++i) Image(task, bits, i);
    if (whole)
      Call(&task, HostOpAddComment, 0,
           Address("Gr\xC3\xBC\xC3\x9F"
                   "e"));
    Call(&task, HostOpEndTask, whole ? 1 : 0, 0);
    Hold("host-task-kept", std::memcmp(&task, &before, sizeof task) == 0);
  }

  void Image(HostTaskRecord& task, int bits, int number) {
    const std::vector<std::uint8_t> picture = Picture(bits, number);
    const std::uint64_t handle = GlyphmotionAllocateBlock(picture.size());
    FindBlock(handle)->bytes = picture;
    HostImageRecord image{};
    image.size = sizeof image;
    image.version = HostInterfaceVersion;
    image.image = handle;
    image.standAlone = bits == 32;
    image.delay = 4;
    image.number = static_cast<std::uint32_t>(number);
    image.transparentIndex = bits == 32 ? 0 : bits == 8 && number ? 1 : -1;
    const HostImageRecord before = image;
    // Whether it takes 24 bits it says itself.
    const bool wanted = bits != 24 || table_.hostFlags & HostFlagTrueColorFormat;
    const bool taken = Call(&task, HostOpAddImage, 0, Address(&image)) != 0;
    if (wanted) Hold("host-images", taken);
    const Block* block = FindBlock(handle);
    Hold("host-image-kept", std::memcmp(&image, &before, sizeof image) == 0 && block && block->bytes == picture);
    Self().blocks.erase(handle);
  }

  const HostCallTable& table_;
};

}  // namespace
}  // namespace conformance

using namespace conformance;

extern "C" {

int PLUGIN16GetPluginParams(PluginInfoRecord* record) {
  if (!record) return 0;
  record->version = HostInterfaceVersion;
  std::strcpy(record->name, "Conformance");
  std::strcpy(record->attribution, "Checks the host that loads it");
  return 1;
}

int PLUGIN16DoBuild(void*, const HostCallTable* table) {
  if (!table) return 0;
  Self().built = true;
  Hold("host-version", (table->version >> 8 & 0xFF) >= 16);
  Hold("host-call", table->HostCall != nullptr);
  constexpr std::uint32_t known = HostFlagPaletteFormat | HostFlagTrueColorFormat;
  Hold("host-flags", table->hostFlags && !(table->hostFlags & ~known));
  Hold("host-reserved", !table->reserved0 && !table->reserved12 && !table->reserved24 && !table->reserved36);
  if (!table->HostCall) return 0;
  std::int32_t size[2] = {640, 480};
  Run(*table).Call(nullptr, HostOpGetFileDialogSize, 0, Address(size));
  Hold("host-dialog-size", size[0] > 0 && size[1] > 0);
  Hold("host-driver", Driver().driver != nullptr);
  GlyphmotionDialog dialog{table};
  if (Driver().driver) Driver().driver(&dialog, Driver().context);
  Hold("host-unlocks", true);
  return 1;
}

void* GlyphmotionLockBlock(uint64_t handle) {
  const std::lock_guard lock(Self().mutex);
  Block* block = FindBlock(handle);
  if (!block) return nullptr;
  ++block->locks;
  return block->bytes.data();
}

void GlyphmotionUnlockBlock(uint64_t handle) {
  const std::lock_guard lock(Self().mutex);
  Block* block = FindBlock(handle);
  const bool locked = block && block->locks > 0;
  Hold("host-unlocks", locked);
  if (locked) --block->locks;
}

size_t GlyphmotionBlockSize(uint64_t handle) {
  const std::lock_guard lock(Self().mutex);
  const Block* block = FindBlock(handle);
  return block ? block->bytes.size() : 0;
}

uint64_t GlyphmotionAllocateBlock(size_t bytes) {
  const std::lock_guard lock(Self().mutex);
  Self().lastHandle += 16;
  Self().blocks[Self().lastHandle].bytes.resize(bytes);
  return Self().lastHandle;
}

void GlyphmotionLiveBlocks(uint64_t* blocks, uint64_t* locks) {
  const std::lock_guard lock(Self().mutex);
  *blocks = Self().blocks.size();
  *locks = 0;
  for (const auto& [handle, block] : Self().blocks) *locks += static_cast<std::uint64_t>(block.locks);
}

void GlyphmotionSetDriver(GlyphmotionDriver driver, void* context) { Driver() = {driver, context}; }
int GlyphmotionSetText(GlyphmotionDialog*, int, const char*) { return 1; }
int GlyphmotionSetNumber(GlyphmotionDialog*, int, int) { return 1; }
int GlyphmotionSetCheck(GlyphmotionDialog*, int, int) { return 1; }
int GlyphmotionSelect(GlyphmotionDialog*, int, int) { return 1; }

int GlyphmotionGetText(GlyphmotionDialog*, int, char* buffer, size_t size) {
  if (size) *buffer = 0;
  return 1;
}

int GlyphmotionPress(GlyphmotionDialog* dialog, int id) {
  if (id == 1 || id == 24) Run(*dialog->table).Build();
  return 1;
}
}
