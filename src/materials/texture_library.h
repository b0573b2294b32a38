// SPDX-License-Identifier: MIT
// Named textures and the text files that hold them, one group a file.
#pragma once

#include <string>
#include <vector>

#include "materials/library_stamp.h"
#include "materials/material.h"

namespace glyphmotion {

constexpr int kTextureTypes = 6;

/// The defaults of every field, bounds and reserved bytes zero.
void DefaultTextureSpec(TextureSpec& parameters) noexcept;

/// The picture of a texture, a new 24-bit bitmap of the size of its bounds; nothing for a type outside 0 to 5 and on
/// failure.
PackedDib GenerateTexture(const TextureSpec& parameters) noexcept;

struct NamedTexture {
  std::string name;  ///< at most 260 bytes
  TextureSpec parameters;
};

/// One group in memory. A file says nothing of it when it may not be changed: reading sets `writeable` only where the
/// file does, and never clears it.
struct TextureLibrary {
  bool writeable = false;
  std::vector<NamedTexture> textures;
};

/// False, with `library` as it was, when the file cannot be read or does not begin with the signature. Unknown keys are
/// passed over, missing ones keep their defaults.
bool ReadTextureLibrary(const std::string& path, TextureLibrary& library) noexcept;

/// Writes the group, after a copy of the old file as path + ".bak". The file says that it may be changed unless
/// `primary`. An empty group gives an empty file.
bool WriteTextureLibrary(const std::string& path, const TextureLibrary& library, const LibraryStamp& stamp,
                         bool primary = false) noexcept;

/// One parameter of a texture: its key in files and its place in the record, a float or a 32-bit number.
struct TextureField {
  const char* key;
  std::size_t offset;
  bool isFloat;
};
/// The 42 parameters in the order of the file.
const std::vector<TextureField>& TextureFields();

}  // namespace glyphmotion
