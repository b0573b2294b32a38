// SPDX-License-Identifier: MIT
// Tests how the host reads pictures for a plug-in. Exits with 0 when every check passed.
//
//   try_pictures FOLDER     to write in
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <string>

#include "host/windows/picture_file.h"
// After windows.h:
#include <objbase.h>

namespace {

int failures = 0;
void Check(bool right, const char* what) {
  if (right) return;
  ++failures;
  std::printf("FAILED: %s\n", what);
}

// 2 x 2: (10,20,30) opaque, the same clear; (1,2,3) opaque, (200,100,0) half clear.
constexpr std::uint8_t kPng[] = {0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48,
                                 0x44, 0x52, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x02, 0x08, 0x06, 0x00, 0x00,
                                 0x00, 0x72, 0xB6, 0x0D, 0x24, 0x00, 0x00, 0x00, 0x19, 0x49, 0x44, 0x41, 0x54, 0x78,
                                 0xDA, 0x63, 0xE0, 0x12, 0x91, 0xFB, 0x0F, 0xC4, 0x0C, 0x0C, 0x8C, 0x4C, 0xCC, 0xFF,
                                 0x4F, 0xA4, 0x30, 0x34, 0x00, 0x00, 0x1E, 0x5B, 0x04, 0x29, 0xFE, 0x8B, 0xB4, 0xA0,
                                 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};
// Bottom row first: blue, green, red of two pixels, and two bytes that fill the row.
constexpr std::uint8_t kRows[] = {3, 2, 1, 127, 177, 227, 0, 0, 30, 20, 10, 255, 255, 255, 0, 0};

std::string Write(const std::string& path, std::size_t bytes) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(kPng), static_cast<std::streamsize>(bytes));
  return path;
}

void TryPicture(const std::string& path) {
  const HGLOBAL block = glyphmotion::LoadPictureFile(path);
  Check(block && GlobalSize(block) >= 40 + sizeof kRows, "the picture is read");
  const auto* bytes = static_cast<const std::uint8_t*>(GlobalLock(block));
  if (!bytes) return;
  const auto* header = reinterpret_cast<const BITMAPINFOHEADER*>(bytes);
  Check(header->biSize == 40 && header->biWidth == 2 && header->biHeight == 2 && header->biPlanes == 1 &&
            header->biBitCount == 24 && header->biCompression == 0,
        "it has 24 bits whatever the file has");
  bool same = true;
  for (std::size_t i = 0; i < sizeof kRows; ++i) {
    const int difference = bytes[40 + i] - kRows[i];
    same = same && difference >= -1 && difference <= 1;  // two products, each rounded by itself
  }
  Check(same, "what is clear lies on white");
  GlobalUnlock(block);
  Check((GlobalFlags(block) & GMEM_LOCKCOUNT) == 0, "it comes unlocked");
  Check(GlobalFree(block) == nullptr, "it is the caller's to free");
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2 || FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
  const std::string folder = std::string(arguments[1]) + "\\";
  CreateDirectoryA(arguments[1], nullptr);
  TryPicture(Write(folder + "whole.png", sizeof kPng));
  TryPicture(Write(folder + "no_extension", sizeof kPng));
  for (const std::size_t size : {std::size_t{0}, std::size_t{8}, std::size_t{33}})
    Check(!glyphmotion::LoadPictureFile(Write(folder + "cut.png", size)), "a truncated file is refused");
  Check(!glyphmotion::LoadPictureFile(folder + "nothing.png") && !glyphmotion::LoadPictureFile(folder) &&
            !glyphmotion::LoadPictureFile(""),
        "a missing file is refused");
  CoUninitialize();
  std::printf("%s\n", failures ? "FAILED" : "all right");
  return failures ? 1 : 0;
}
