// SPDX-License-Identifier: MIT
// The contract with a host byte by byte: exports, records, blocks.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <set>

#include "plugin_host.h"
#include "plugin_user.h"

namespace glyphmotion::test {
namespace {

const std::uint8_t* ImageBase() { return reinterpret_cast<const std::uint8_t*>(Library()); }

template <typename Directory>
const Directory* DirectoryOf(int which) {
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(ImageBase());
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(ImageBase() + dos->e_lfanew);
  return reinterpret_cast<const Directory*>(ImageBase() + headers->OptionalHeader.DataDirectory[which].VirtualAddress);
}

TEST(Library, ExportsItsTwoFunctionsAndNothingElse) {
  const auto* table = DirectoryOf<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
  const auto* names = reinterpret_cast<const DWORD*>(ImageBase() + table->AddressOfNames);
  std::set<std::string> found;
  for (DWORD i = 0; i < table->NumberOfNames; ++i) found.insert(reinterpret_cast<const char*>(ImageBase() + names[i]));
  EXPECT_EQ(found, (std::set<std::string>{"PLUGIN16DoBuild", "PLUGIN16GetPluginParams"}));
  EXPECT_EQ(table->NumberOfFunctions, 2u) << "a function without a name";
}

// Built twice from the same sources it is the same file.
TEST(Library, HoldsNoTimeOfItsBuilding) {
  const auto* image = reinterpret_cast<const std::uint8_t*>(Library());
  const auto* header =
      reinterpret_cast<const IMAGE_NT_HEADERS*>(image + reinterpret_cast<const IMAGE_DOS_HEADER*>(image)->e_lfanew);
  const IMAGE_DATA_DIRECTORY* tables = header->OptionalHeader.DataDirectory;
  const auto* names =
      reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(image + tables[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress);
  EXPECT_EQ(header->FileHeader.TimeDateStamp, 0u);
  EXPECT_EQ(names->TimeDateStamp, 0u);
}

// What a Windows has without anything being installed.
TEST(Library, NeedsTheSystemAlone) {
  const std::set<std::string> system = {"advapi32", "comctl32", "comdlg32", "gdi32",   "gdiplus", "imm32", "kernel32",
                                        "msimg32",  "msvcrt",   "ole32",    "shell32", "user32",  "usp10", "uxtheme"};
  const auto* import = DirectoryOf<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
  for (; import->Name; ++import) {
    std::string name(reinterpret_cast<const char*>(ImageBase() + import->Name));
    std::transform(name.begin(), name.end(), name.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
    EXPECT_TRUE(system.count(name.substr(0, name.rfind(".dll")))) << name;
  }
}

// The fields are written whatever the size says, so that a host passes 333 bytes at least; nothing else is touched past
// the size.
TEST(Contract, TheInfoRecordIsItsFieldsAndZeros) {
  for (const std::uint32_t size : {0u, 8u, 333u, 400u, 4096u}) {
    Bytes bytes(5000, 0xAA), wanted = bytes;
    std::memcpy(bytes.data(), &size, sizeof size);
    EXPECT_EQ(GetParams(reinterpret_cast<PluginInfoRecord*>(bytes.data())), 1);
    const std::size_t cleared = std::max<std::size_t>(size, 333);
    std::fill_n(wanted.begin(), cleared, std::uint8_t{0});
    std::memcpy(wanted.data(), &size, sizeof size);
    wanted[5] = 0x10;
    std::memcpy(wanted.data() + 8, "Glyphmotion #4", 14);
    const auto end = std::find(bytes.begin() + 269, bytes.begin() + 333, std::uint8_t{0});
    EXPECT_GT(end - bytes.begin(), 269 + 10) << "there is an attribution";
    EXPECT_LT(end - bytes.begin(), 333) << "it ends within its 64 bytes";
    EXPECT_EQ(std::find(bytes.begin() + 269, end, std::uint8_t{'\n'}), end) << "it is one line";
    std::copy_n(bytes.begin() + 269, 64, wanted.begin() + 269);
    EXPECT_EQ(bytes, wanted) << "size " << size;
  }
  EXPECT_EQ(GetParams(nullptr), 0);
}

bool AllZero(const Bytes& record, std::size_t from, std::size_t count) {
  return std::all_of(record.begin() + static_cast<std::ptrdiff_t>(from),
                     record.begin() + static_cast<std::ptrdiff_t>(from + count), [](std::uint8_t b) { return b == 0; });
}

struct RunCase {
  const char* name;
  std::uint32_t flags;
  bool trueColour, custom, transparent, alpha;
  int bits;        ///< of the pictures
  int taskIndex;   ///< the task's transparent index; kReserved: one past the colours
  int imageIndex;  ///< that of the pictures
  int standAlone;
};
constexpr int kReserved = 1000;

constexpr RunCase kRuns[] = {
    {"true colour", kBothFormats, true, false, false, false, 24, 0, -1, 0},
    {"a fixed palette", kPalette, false, false, false, false, 8, 0, -1, 0},
    {"a fixed palette, transparent", kPalette, false, false, true, false, 8, -1, -1, 1},
    {"a palette of its own, transparent", kPalette, false, true, true, false, 0, kReserved, kReserved, 1},
    {"alpha", kTrueColour, true, false, false, true, 24, 0, 0, 1},
};

void CheckTask(const RunCase& run, HWND dialog) {
  ASSERT_EQ(host.task.size(), 1080u);
  EXPECT_EQ(At<std::uint32_t>(host.task, 0), 1080u);
  EXPECT_EQ(At<std::uint32_t>(host.task, 4), 0x1000u);
  EXPECT_EQ(At<std::uint64_t>(host.task, 8), reinterpret_cast<std::uintptr_t>(dialog));
  EXPECT_EQ(At<std::uint32_t>(host.task, 16), 0u);
  if (run.bits) {
    EXPECT_EQ(At<std::uint32_t>(host.task, 20), run.trueColour ? 8u : static_cast<unsigned>(run.bits));
  }
  EXPECT_TRUE(AllZero(host.task, 800, 4) && AllZero(host.task, 808, 264) && AllZero(host.task, 1076, 4));
  EXPECT_EQ(At<std::uint32_t>(host.task, 804), host.images.size());
  if (run.taskIndex != kReserved) {
    EXPECT_EQ(At<std::int32_t>(host.task, 1072), run.taskIndex);
  }
  if (run.taskIndex == kReserved) {
    EXPECT_GT(At<std::int32_t>(host.task, 1072), 0);
  }
}

void CheckImage(const RunCase& run, std::size_t number) {
  const Bytes& record = host.images[number].record;
  EXPECT_EQ(At<std::uint32_t>(record, 0), 112u);
  EXPECT_EQ(At<std::uint32_t>(record, 4), 0x1000u);
  EXPECT_TRUE(AllZero(record, 16, 4) && AllZero(record, 24, 8) && AllZero(record, 44, 68));
  EXPECT_EQ(At<std::uint32_t>(record, 20), static_cast<unsigned>(run.standAlone));
  // As they were typed; the last picture rests.
  EXPECT_EQ(At<std::uint32_t>(record, 32), number + 1 < host.images.size() ? 7u : 7u + 3u);
  EXPECT_EQ(At<std::uint32_t>(record, 36), number);
  const int index = run.imageIndex == kReserved ? At<std::int32_t>(host.task, 1072) : run.imageIndex;
  EXPECT_EQ(At<std::int32_t>(record, 40), index);
}

// A packed bitmap: a header of 40 bytes, a colour table below 24 bits, rows from the bottom on.
void CheckPicture(const RunCase& run, const Bytes& dib) {
  const int width = At<std::int32_t>(dib, 4), height = At<std::int32_t>(dib, 8), bits = At<std::uint16_t>(dib, 14);
  EXPECT_EQ(At<std::uint32_t>(dib, 0), 40u);
  EXPECT_EQ(At<std::uint16_t>(dib, 12), 1u);
  EXPECT_EQ(At<std::uint32_t>(dib, 16), 0u);
  if (run.bits) {
    EXPECT_TRUE(bits == run.bits || (run.alpha && bits == 32)) << bits;
  }
  const std::size_t stride = (static_cast<std::size_t>(width) * static_cast<std::size_t>(bits) + 31) / 32 * 4;
  const std::size_t table = bits <= 8 ? 4u << bits : 0;
  EXPECT_GE(dib.size(), 40 + table + stride * static_cast<std::size_t>(height));
  EXPECT_TRUE(width > 0 && static_cast<unsigned>(width) <= At<std::uint32_t>(host.task, 24));
  EXPECT_TRUE(height > 0 && static_cast<unsigned>(height) <= At<std::uint32_t>(host.task, 28));
}

class Records : public testing::TestWithParam<RunCase> {};
INSTANTIATE_TEST_SUITE_P(Contract, Records, testing::ValuesIn(kRuns), [](const auto& given) {
  std::string name = given.param.name;
  name.erase(std::remove_if(name.begin(), name.end(), [](char c) { return c == ' ' || c == ','; }), name.end());
  return name;
});

TEST_P(Records, OfABuildAreWhatTheContractSays) {
  const RunCase& run = GetParam();
  HWND window = nullptr;
  int dialogsTask = 0;
  host.instead = [&](void* task, std::uint32_t operation, std::uint64_t,
                     std::uint64_t b) -> std::optional<std::uint64_t> {
    if (operation == HostOpNewTask) host.task.clear();
    const bool ofTask = operation >= HostOpAddImage && operation <= HostOpEndTask;
    EXPECT_EQ(task != nullptr, ofTask || operation == HostOpSetBackground) << operation;
    dialogsTask += ofTask && operation != HostOpNewTask ? 1 : 0;
    if (operation == HostOpSetBackground && !(run.flags & kPalette)) {
      EXPECT_LE(b, 0xFFFFFFFFu);
    }
    return std::nullopt;
  };
  EXPECT_EQ(RunDialog(run.flags,
                      [&](HWND dialog) {
                        window = dialog;
                        Type(dialog, kText, "Hi");
                        Type(dialog, kSize, "14");
                        Type(dialog, kDelay, "7");
                        Type(dialog, kPause, "3");
                        Choose(dialog, kEffect, 15);
                        if (IsEnabled(dialog, kTrueColourCheck)) SetChecked(dialog, kTrueColourCheck, run.trueColour);
                        SetChecked(dialog, kCustomPalette, run.custom);
                        SetChecked(dialog, kTransparent, run.transparent && IsEnabled(dialog, kTransparent));
                        if (IsEnabled(dialog, kAlphaCheck)) SetChecked(dialog, kAlphaCheck, run.alpha);
                        PressBuild(dialog);
                      }),
            1);
  EXPECT_EQ(host.Count(HostOpNewTask), 1);
  EXPECT_EQ(host.Count(HostOpBeforeWork), 1);
  EXPECT_EQ(host.Count(HostOpSetBackground), 1);
  EXPECT_EQ(host.ended, 1);
  EXPECT_GT(host.images.size(), 5u);
  CheckTask(run, window);
  std::set<Bytes> different;
  for (std::size_t i = 0; i < host.images.size(); ++i) {
    CheckImage(run, i);
    CheckPicture(run, host.images[i].dib);
    different.insert(host.images[i].dib);
    EXPECT_EQ(GlobalFlags(host.images[i].handle), UINT{GMEM_INVALID_HANDLE}) << "the library frees its images";
  }
  EXPECT_GT(different.size(), 3u) << "something moves";
}

// In the order of the work, and no task is opened before all of it is done.
TEST(Contract, StagesAreNamedBeforeATaskIsOpened) {
  RunDialog(kPalette, [&](HWND dialog) {
    Type(dialog, kText, "Hi");
    Type(dialog, kSize, "14");
    SetChecked(dialog, kCustomPalette, true);
    SetChecked(dialog, kSupercompress, true);
    PressTest(dialog);
    EXPECT_TRUE(IsWindow(dialog)) << "Test leaves the dialog open";
    EXPECT_EQ(host.stages, (std::vector<std::string>{"Building", "Quantizing", "Supercompressing", "Remapping"}));
  });
  EXPECT_EQ(host.Count(HostOpNewTestTask), 1);
  EXPECT_EQ(host.Count(HostOpNewTask), 0);
  const auto task = std::find(host.operations.begin(), host.operations.end(), std::uint32_t{HostOpNewTestTask});
  EXPECT_EQ(std::find(task, host.operations.end(), std::uint32_t{HostOpStatusText}), host.operations.end());
  EXPECT_EQ(std::find(host.operations.begin(), task, std::uint32_t{HostOpAddImage}), task);
}

}  // namespace
}  // namespace glyphmotion::test
