// SPDX-License-Identifier: MIT
#include "fuzz/fuzz_file.h"
#include "materials/material.h"

using namespace glyphmotion;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const MovableBlock block = LoadMaterial(fuzz::FileOf(data, size), 0x123456, true);
  const LockedBlock<Material> material(block.Handle());
  if (!material) return 0;
  material->Texture.MatrixSize %= 129;
  material->Texture.CreaterCount %= 100;
  MaterialToBitmap(*material, 30, 20);
  FreeBlock(reinterpret_cast<BlockHandle>(static_cast<std::uintptr_t>(material->Tile.TileBitmap)));
  return 0;
}
