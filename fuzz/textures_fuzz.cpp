// SPDX-License-Identifier: MIT
#include "fuzz/fuzz_file.h"
#include "materials/texture_library.h"

using namespace glyphmotion;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TextureLibrary library;
  ReadTextureLibrary(fuzz::FileOf(data, size), library);
  if (library.textures.empty()) return 0;
  TextureSpec& texture = library.textures.front().parameters;
  texture.MatrixSize %= 129;
  texture.CreaterCount %= 100;
  texture.Right = texture.Bottom = 24;
  GenerateTexture(texture, WholeOf(texture));
  return 0;
}
