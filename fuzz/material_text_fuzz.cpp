// SPDX-License-Identifier: MIT
#include "fuzz/fuzz_file.h"
#include "materials/material_text.h"

using namespace glyphmotion;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Material material;
  DefaultMaterial(material, 0);
  std::string error;
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (!ParseMaterial(text, material, error) && error.empty()) __builtin_trap();
  HexDecode(text, sizeof(Material));
  return 0;
}
