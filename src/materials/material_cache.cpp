// SPDX-License-Identifier: MIT
#include "materials/material_cache.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "materials/surface_texture.h"
#include "platform/random.h"

namespace glyphmotion {
namespace {

// The bytes of the record that a gradient's or a texture's pixels depend on, and the size.
std::string KeyOf(const Material& material, int width, int height) {
  std::string key;
  const auto add = [&](const void* data, std::size_t count) { key.append(static_cast<const char*>(data), count); };
  const std::uint32_t kind = material.Kind;
  add(&width, sizeof(width));
  add(&height, sizeof(height));
  add(&kind, sizeof(kind));
  if (kind == kGradient) {
    FountainSpec fountain = material.Fountain;
    fountain.Preview = 0;
    add(&material.Gradient, sizeof(material.Gradient));
    add(&fountain, sizeof(fountain));
  } else {
    TextureSpec texture = material.Texture;
    texture.Left = texture.Top = texture.Right = texture.Bottom = 0;
    add(&texture, sizeof(texture));
  }
  return key;
}

// Fractals and craters always seed the generator, perturbation only if it has bubbles.
bool SeedsRandom(const Material& material) {
  return material.Kind == kTexture &&
         (material.Texture.TextureType != 5 || static_cast<std::int32_t>(material.Texture.BubbleCount) > 0);
}

}  // namespace

const MaterialCache::Entry* MaterialCache::Inherited(const std::string& key) const {
  if (!elder_) return nullptr;
  const auto found =
      std::find_if(elder_->entries_.begin(), elder_->entries_.end(), [&](const Entry& e) { return e.key == key; });
  return found == elder_->entries_.end() ? nullptr : &*found;
}

PackedDib MaterialCache::Render(Material& material, int width, int height) noexcept {
  // Solid colours and tiles render as fast as a copy.
  if (material.Kind != kGradient && material.Kind != kTexture) return MaterialToBitmap(material, width, height);
  try {
    std::string key = KeyOf(material, width, height);
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& e) { return e.key == key; });
    const Entry* known = Inherited(key);
    if (found != entries_.end()) {
      entries_.splice(entries_.begin(), entries_, found);
      known = &*found;
    }
    if (known) {
      PackedDib copy = DuplicateDib(known->bitmap);
      if (!copy) return copy;
      if (material.Kind == kTexture) SetTextureBounds(material.Texture, std::max(width, height));
      if (known->setsRandom) SeedRandom(known->randomState);
      return copy;
    }
    const bool noiseStood = NoiseTablesBuilt();
    PackedDib picture = MaterialToBitmap(material, width, height);
    const std::size_t size = BlockSize(picture.Handle());
    // The first perturbation texture of the run also draws the noise tables.
    if (!picture || size > kMaxBytes || noiseStood != NoiseTablesBuilt()) return picture;
    Entry entry{std::move(key), DuplicateDib(picture), SeedsRandom(material), RandomState()};
    if (!entry.bitmap) return picture;
    while (bytes_ + size > kMaxBytes) {
      bytes_ -= BlockSize(entries_.back().bitmap.Handle());
      entries_.pop_back();
    }
    entries_.push_front(std::move(entry));
    bytes_ += size;
    return picture;
  } catch (...) {
    return MaterialToBitmap(material, width, height);
  }
}

}  // namespace glyphmotion
