// SPDX-License-Identifier: MIT
#include "fuzz/fuzz_file.h"
#include "host/render/image_loader.h"

using namespace glyphmotion;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string error;
  const PackedDib dib = LoadPicture(fuzz::FileOf(data, size), error);
  if (static_cast<bool>(dib) != error.empty()) __builtin_trap();
  return 0;
}
