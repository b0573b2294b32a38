// SPDX-License-Identifier: MIT
// The font list on a folder of fonts: the family first, then the nearest style.
#include "platform/portable/font_list.h"

#include <algorithm>
#include <cstdlib>

#include "platform/ascii.h"
#include "platform/web/font_families.h"

namespace glyphmotion {
namespace {

using Order = std::vector<const FolderFace*>;

struct Style {
  std::string family;
  int weight = 400;
  bool italic = false;
};

Style StyleOf(Selection& selection) {
  Style style{FamilyOf(selection.family), selection.bold ? 700 : 400, selection.italic};
  if (const FolderFace* named = style.family.empty() ? FindStyledFace(selection.family) : nullptr) {
    style.family = named->listed.family;
    style.weight = selection.bold ? std::max(style.weight, named->weight) : named->weight;
    style.italic = style.italic || named->italic;
    selection.styled = StyledName{style.family, style.weight, style.italic, 0};
  }
  return style;
}

/// All faces, the wanted family first, each family's nearest style first.
Order InOrder(Selection& selection) {
  const Style style = StyleOf(selection);
  const auto rank = [&](const FolderFace* face) {
    constexpr int kOtherFamily = 100000, kPictures = 50000, kOtherSlant = 2000;
    return (EqualsIgnoringCase(face->listed.family, style.family) ? 0 : kOtherFamily) + (face->colour ? kPictures : 0) +
           (face->italic != style.italic ? kOtherSlant : 0) + std::abs(face->weight - style.weight);
  };
  Order order;
  for (const FolderFace& face : FolderFaces()) order.push_back(&face);
  std::stable_sort(order.begin(), order.end(), [&](const auto* a, const auto* b) { return rank(a) < rank(b); });
  return order;
}

Face* Open(const FolderFace& face, const std::vector<AxisValue>& axes = {}) {
  FaceKey key = face.listed.key;
  key.axes = axes;
  return OpenFace(key);
}

}  // namespace

Face* Match(Selection& selection, char32_t character) {
  const std::vector<AxisValue> none, &axes = character ? none : selection.axes;
  for (const FolderFace* each : InOrder(selection)) {
    Face* face = Open(*each, axes);
    if (face && !face->picturesOnly && (!character || GlyphOf(*face, character))) return face;
  }
  return nullptr;
}

Face* FirstListed(Selection& selection, std::u32string_view text) {
  for (const FolderFace* each : InOrder(selection)) {
    Face* face = Open(*each);
    if (face && !face->picturesOnly && ShaperOf(*face) && Covers(*face, text)) return face;
  }
  return nullptr;
}

Face* FirstListedEmoji(Selection& selection, std::u32string_view text) {
  for (const FolderFace* each : InOrder(selection)) {
    Face* face = each->colour ? Open(*each) : nullptr;
    if (face && ShaperOf(*face) && Covers(*face, text)) return face;
  }
  return nullptr;
}

}  // namespace glyphmotion
