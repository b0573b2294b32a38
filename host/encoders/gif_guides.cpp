// SPDX-License-Identifier: MIT
#include "host/encoders/gif_guides.h"

#include <algorithm>

namespace glyphmotion {
namespace {

// Whether the smaller is at least `percent` of the larger.
bool Near(std::size_t a, std::size_t b, std::size_t percent) {
  return std::min(a, b) * 100 >= std::max(a, b) * percent;
}

bool Alike(const GifLikeness& a, const GifLikeness& b) {
  return a.hasFree == b.hasFree && Near(a.pixels, b.pixels, 75) && Near(a.required, b.required, 65);
}

GLYPHMOTION_CLONES std::size_t CountFree(const GifPixel* kinds, std::size_t count) {
  std::size_t free = 0;
  for (std::size_t i = 0; i < count; ++i) free += kinds[i] == GifPixel::Free;
  return free;
}

}  // namespace

GifLikeness LikenessOf(const GifPixels& pixels) {
  const std::size_t count = pixels.kinds.size();
  return {count, count - CountFree(pixels.kinds.data(), count), pixels.hasFree};
}

GifGuides ChooseGuides(std::span<const GifLikeness> frames, std::size_t reach) {
  GifGuides guides;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const auto guide = std::find_if(guides.searched.rbegin(), guides.searched.rend(), [&](std::size_t searched) {
      return i - searched >= reach || Alike(frames[searched], frames[i]);
    });
    if (guide == guides.searched.rend() || i - *guide >= reach)
      guides.searched.push_back(i);
    else
      guides.guided.push_back({i, *guide, *guide});
  }
  for (GifGuides::Guided& guided : guides.guided) {
    const std::size_t i = guided.frame;
    auto guide = std::upper_bound(guides.searched.begin(), guides.searched.end(), i);
    while (guide != guides.searched.end() && *guide - i < reach && !Alike(frames[*guide], frames[i])) ++guide;
    if (guide != guides.searched.end() && *guide - i < reach) guided.after = *guide;
  }
  return guides;
}

}  // namespace glyphmotion
