// SPDX-License-Identifier: MIT
// What the library shows to a loader: its exports, its imports, its information record.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>

#include "plugin_host.h"

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
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(ImageBase());
  const auto* header = reinterpret_cast<const IMAGE_NT_HEADERS*>(ImageBase() + dos->e_lfanew);
  EXPECT_EQ(header->FileHeader.TimeDateStamp, 0u);
  EXPECT_EQ(DirectoryOf<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT)->TimeDateStamp, 0u);
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

}  // namespace
}  // namespace glyphmotion::test
