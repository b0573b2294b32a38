// SPDX-License-Identifier: MIT
#include "fuzz/fuzz_file.h"
#include "materials/fountain.h"

using namespace glyphmotion;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<FountainSpec> fountains;
  ReadFountainLibrary(fuzz::FileOf(data, size), fountains);
  for (FountainSpec& fountain : fountains) {
    FountainToBitmap(fountain, 60, 2);
    FreePosition(fountain, 40);
    SortMarkers(fountain);
  }
  return 0;
}
