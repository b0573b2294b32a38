// SPDX-License-Identifier: MIT
// Named textures and their text files, one group per file.
#pragma once

#include <string>
#include <vector>

#include "materials/library_stamp.h"
#include "materials/material.h"
#include "materials/texture_window.h"

namespace glyphmotion {

constexpr int kTextureTypes = 6;

/// The defaults of every field, bounds and reserved bytes zero.
void DefaultTextureSpec(TextureSpec& parameters) noexcept;

/// Renders a texture to a new 24-bit bitmap of the size of its bounds; nothing for a type outside 0 to 5 or on failure.
PackedDib GenerateTexture(const TextureSpec& parameters, const TextureWindow& window) noexcept;

struct NamedTexture {
  std::string name;  ///< at most 260 bytes
  TextureSpec parameters;
};

/// One group in memory. Read-only groups have no marker in the file: reading sets `writeable` if the file has one, and
/// never clears it.
struct TextureLibrary {
  bool writeable = false;
  std::vector<NamedTexture> textures;
};

/// False, with `library` as it was, when the file cannot be read or does not begin with the signature. Unknown keys are
/// skipped, missing ones keep their defaults. Throws std::bad_alloc when out of memory.
bool ReadTextureLibrary(const std::string& path, TextureLibrary& library);

/// Writes the group, after a copy of the old file as path + ".bak". The file is marked writeable unless `primary`. An
/// empty group gives an empty file.
bool WriteTextureLibrary(const std::string& path, const TextureLibrary& library, const LibraryStamp& stamp,
                         bool primary = false) noexcept;

/// One parameter of a texture: its key in files and its offset in the record, a float or a 32-bit number.
struct TextureField {
  const char* key;
  std::size_t offset;
  bool isFloat;
};
/// The 42 parameters in the order of the file.
const std::vector<TextureField>& TextureFields();

}  // namespace glyphmotion
