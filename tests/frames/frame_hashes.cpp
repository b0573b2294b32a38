// SPDX-License-Identifier: MIT
// Prints what every effect makes of the same small job, one line a frame, with the glyphs of drawn_glyphs.cpp. The
// lines are the same on every machine, whatever its dialogs, blocks and arithmetic.
// GLYPHMOTION_HOME has to name a folder that may be written to. Arguments are further lines of the settings:
//
//   frame_hashes "MainFontSize = 60" "Style008Rotate = 1000"
#include <atomic>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>

#include "controls/material_control.h"
#include "effects/effect_table.h"
#include "frame_user.h"
#include "materials/material_text.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/memory.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr const char* kFills[] = {
    "gradient:conical,#ff0000-#0040ff,rotation=33,mid=40",
    "texture:fractal3,size=64",
    "fountain:#102030,#ffee00@90,#ff00aa@180,#ffffff",
    "texture:craters,craters=30",
    "gradient:elliptical,#203040-#f0f0c0,cx=10,cy=-20,pad=5",
    "texture:fractal5",
    "#3366cc",
    "texture:perturbation,bubbles=20,noise=0.6",
    "gradient:linear,#000000-#00ff88,rotation=-70",
};

const char* run = "";
std::atomic<int> endedTasks = 0;

std::uint64_t HashOf(const std::uint8_t* bytes, std::size_t size) {
  std::uint64_t hash = 14695981039346656037u;
  for (std::size_t i = 0; i < size; ++i) hash = (hash ^ bytes[i]) * 1099511628211u;
  return hash;
}

void PrintImage(const HostImageRecord& record) {
  const auto handle = reinterpret_cast<BlockHandle>(record.image);
  const auto* dib = static_cast<const std::uint8_t*>(LockBlock(handle));
  if (!dib) return;
  std::int32_t size[2];
  std::uint16_t bits;
  std::memcpy(size, dib + 4, sizeof size);
  std::memcpy(&bits, dib + 14, sizeof bits);
  const std::size_t stride = (static_cast<std::size_t>(size[0]) * bits + 31) / 32 * 4;
  const std::size_t whole = 40 + (bits <= 8 ? std::size_t{4} << bits : 0) + stride * static_cast<std::size_t>(size[1]);
  std::printf("%s, effect %d, frame %u: %d x %d x %d, delay %u, index %d, %016llx\n", run, endedTasks.load(),
              record.number, size[0], size[1], bits, record.delay, record.transparentIndex,
              static_cast<unsigned long long>(HashOf(dib, whole)));
  UnlockBlock(handle);
}

std::uint64_t HostCall(void*, std::uint32_t operation, std::uint64_t, std::uint64_t b) {
  if (operation == HostOpAddImage) PrintImage(*reinterpret_cast<const HostImageRecord*>(b));
  if (operation == HostOpEndTask) ++endedTasks;
  return 1;
}

bool WriteFills() {
  std::size_t next = 0;
  for (const EffectDescriptor* effect : Effects()) {
    for (const ControlTemplate& control : effect->panel->controls) {
      if (control.kind != ControlKind::MaterialButton) continue;
      const MovableBlock block(LoadMaterial("", 0, false));
      std::string error;
      const LockedBlock<Material> material(block.Handle());
      const char* text = kFills[next++ % std::size(kFills)];
      if (!material || !ParseMaterial(text, *material, error)) {
        std::printf("%s: %s\n", text, error.c_str());
        return false;
      }
      if (!SaveMaterial(block.Handle(), MaterialPath(control.id))) return false;
    }
  }
  return true;
}

bool Run(const char* name, std::uint32_t flags, const std::string& settings) {
  run = name;
  endedTasks = 0;
  const std::string common =
      "[PlugIn]\nMainText = Ab c\nMainFontName = Arial\nMainFontSize = 22\nMainDelay = 5\nMainPause = 50\n";
  if (!EnsureFolder(SettingsFolder()) || !EnsureFolder(PerControlFolder())) return false;
  if (!AtomicWriteFile(SettingsFilePath(), common + settings) || !WriteFills()) return false;
  HostCallTable table{};
  table.version = HostInterfaceVersion;
  table.HostCall = HostCall;
  table.hostFlags = flags;
  TestEveryEffect(table, kEffectCount, endedTasks);
  return endedTasks == kEffectCount;
}

}  // namespace
}  // namespace glyphmotion

int main(int count, char** arguments) {
  using namespace glyphmotion;
  std::string more;
  for (int i = 1; i < count; ++i) more += std::string(arguments[i]) + "\n";
  const bool done = Run("true colour", HostFlagTrueColorFormat, "Truecolour = 1\nMainAntialias = 1\n" + more) &&
                    Run("palette", HostFlagPaletteFormat,
                        "Truecolour = 0\nMainPalette = 5\nMainDither = 1\nMainSupercompress = 1\n" + more);
  const BlockCounters left = LiveBlocks();
  if (!done || left.blocks || left.locks) {
    std::printf("Not all was built, or something was left: %d blocks, %d locks.\n", static_cast<int>(left.blocks),
                static_cast<int>(left.locks));
    return 1;
  }
  return 0;
}
