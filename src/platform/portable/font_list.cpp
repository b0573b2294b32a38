// SPDX-License-Identifier: MIT
// The font list on Fontconfig: which face fits best.
#include "platform/portable/font_list.h"

#include <algorithm>
#include <optional>

#include "platform/portable/font_families.h"

namespace glyphmotion {
namespace {

struct Style {
  int weight, slant, width = -1;
};

Pattern Query(const std::string& family, const Style& style, bool variable, char32_t character = 0) {
  Pattern query(Required(FcPatternCreate()));
  FcPattern* p = query.get();
  if (!family.empty()) AddFamily(p, family);
  Required(FcPatternAddInteger(p, FC_WEIGHT, style.weight));
  Required(FcPatternAddInteger(p, FC_SLANT, style.slant));
  if (style.width >= 0) Required(FcPatternAddInteger(p, FC_WIDTH, style.width));
  Required(FcPatternAddBool(p, FC_OUTLINE, FcTrue));
  Required(FcPatternAddBool(p, FC_COLOR, FcFalse));
  // Instances rather than the bare variable font, unless its axes are wanted.
  Required(FcPatternAddBool(p, FC_VARIABLE, variable ? FcTrue : FcFalse));
  if (character) {
    const CharSet set(Required(FcCharSetCreate()));
    Required(FcCharSetAddChar(set.get(), character));
    Required(FcPatternAddCharSet(p, FC_CHARSET, set.get()));
  }
  Required(FcConfigSubstitute(nullptr, p, FcMatchPattern));
  FcDefaultSubstitute(p);
  return query;
}

/// The query for a selection's face, or for one that has a character.
Pattern QueryFor(const Selection& selection, bool variable, char32_t character = 0) {
  const bool bold = selection.bold, italic = selection.italic;
  Style style{bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN};
  const std::optional<StyledName>& styled = selection.styled;
  if (!styled) return Query(selection.family, style, variable, character);
  style.weight = bold ? std::max(style.weight, styled->weight) : styled->weight;
  style.slant = std::max(style.slant, styled->slant);
  style.width = styled->width;
  return Query(styled->family, style, variable, character);
}

bool HasFamily(const FcPattern* pattern, const std::string& family) {
  FcChar8* name = nullptr;
  for (int n = 0; FcPatternGetString(pattern, FC_FAMILY, n, &name) == FcResultMatch; ++n) {
    if (FcStrCmpIgnoreCase(name, reinterpret_cast<const FcChar8*>(family.c_str())) == 0) return true;
  }
  return false;
}

FcCharSet* CharSetOf(const FcPattern* pattern) {
  FcCharSet* set = nullptr;
  return FcPatternGetCharSet(pattern, FC_CHARSET, 0, &set) == FcResultMatch ? set : nullptr;
}

bool HasCharacter(const FcPattern* pattern, char32_t character) {
  const FcCharSet* set = CharSetOf(pattern);
  return set && FcCharSetHasChar(set, character);
}

bool Draws(const Face* face, char32_t character) {
  return face && !face->picturesOnly && (!character || GlyphOf(*face, character));
}

FaceKey KeyOf(const FcPattern* pattern, const std::vector<AxisValue>& axes = {}) {
  int index = NumberOf(pattern, FC_INDEX, 0);
  // The upper half of 0x8000 stands for the font with all its instances.
  if ((index >> 16) == 0x8000) index &= 0xFFFF;
  return {TextOf(pattern, FC_FILE), index, axes};
}

Face* OpenFace(const FcPattern* pattern, const std::vector<AxisValue>& axes = {}) {
  const FaceKey key = KeyOf(pattern, axes);
  return key.file.empty() ? nullptr : OpenFace(key);
}

/// The first face of a sorted list that covers the text.
template <typename Accept>
Face* FirstOf(const FcFontSet& fonts, std::u32string_view text, Accept accept) {
  for (int i = 0; i < fonts.nfont; ++i) {
    const FcCharSet* set = CharSetOf(fonts.fonts[i]);
    if (!set || !CoversAll(text, [&](char32_t c) { return FcCharSetHasChar(set, c); })) continue;
    Face* face = OpenFace(fonts.fonts[i]);
    if (face && accept(*face) && ShaperOf(*face) && Covers(*face, text)) return face;
  }
  return nullptr;
}

/// Fontconfig's list for a query, best first. It stays with its selection.
std::shared_ptr<const void> Sorted(const Pattern& query) {
  FcResult result = FcResultNoMatch;
  FontSet sorted(Required(FcFontSort(nullptr, query.get(), FcFalse, nullptr, &result)));
  return std::shared_ptr<FcFontSet>(std::move(sorted));
}

const FcFontSet& FontSetOf(const std::shared_ptr<const void>& sorted) {
  return *static_cast<const FcFontSet*>(sorted.get());
}

}  // namespace

void OpenFontList() { Required(FcInit()); }

bool HasFonts() { return InstalledFonts()->nfont > 0; }

Face* Match(Selection& selection, char32_t character) {
  const std::vector<AxisValue> none, &axes = character ? none : selection.axes;
  Pattern query = QueryFor(selection, !axes.empty(), character);
  FcResult result = FcResultNoMatch;
  Pattern best(FcFontMatch(nullptr, query.get(), &result));
  if (best && !character && !HasFamily(best.get(), selection.family)) {
    // "DejaVu Sans Condensed Oblique" is a family and a style.
    selection.styled = FindStyledName(selection.family);
    if (selection.styled) {
      query = QueryFor(selection, !axes.empty());
      best.reset(FcFontMatch(nullptr, query.get(), &result));
    }
  }
  if (!best) {
    if (HasFonts()) throw std::bad_alloc();
    return nullptr;
  }
  if (character && !HasCharacter(best.get(), character)) return nullptr;  // coverage ranks first: nobody has it
  Face* face = OpenFace(best.get(), axes);
  if (Draws(face, character)) return face;
  // The best one was damaged, or has pictures for glyphs: walk down the list.
  const FontSet sorted(Required(FcFontSort(nullptr, query.get(), FcFalse, nullptr, &result)));
  for (int i = 0; i < sorted->nfont; ++i) {
    if (character && !HasCharacter(sorted->fonts[i], character)) continue;
    face = OpenFace(sorted->fonts[i], axes);
    if (Draws(face, character)) return face;
  }
  return nullptr;
}

Face* FirstListed(Selection& selection, std::u32string_view text) {
  if (!selection.sorted) selection.sorted = Sorted(QueryFor(selection, false));
  return FirstOf(FontSetOf(selection.sorted), text, [](const Face& face) { return !face.picturesOnly; });
}

Face* FirstListedEmoji(Selection& selection, std::u32string_view text) {
  if (!selection.emoji) {
    const Pattern query(Required(FcPatternCreate()));
    AddFamily(query.get(), "emoji");
    Required(FcPatternAddBool(query.get(), FC_COLOR, FcTrue));
    Required(FcConfigSubstitute(nullptr, query.get(), FcMatchPattern));
    FcDefaultSubstitute(query.get());
    selection.emoji = Sorted(query);
  }
  const FcFontSet& fonts = FontSetOf(selection.emoji);
  for (int i = 0; i < fonts.nfont; ++i) {
    FcBool colour = FcFalse;
    if (FcPatternGetBool(fonts.fonts[i], FC_COLOR, 0, &colour) != FcResultMatch || !colour) continue;
    Face* face = OpenFace(fonts.fonts[i]);
    if (face && face->colour && ShaperOf(*face) && Covers(*face, text)) return face;
  }
  return nullptr;
}

std::vector<ListedFace> ListedFaces() {
  const FontSet fonts = InstalledFaces();
  std::vector<ListedFace> faces;
  for (int i = 0; i < fonts->nfont; ++i) {
    const FcPattern* font = fonts->fonts[i];
    FcBool variable = FcFalse;
    const bool isVariable = FcPatternGetBool(font, FC_VARIABLE, 0, &variable) == FcResultMatch && variable;
    faces.push_back({KeyOf(font), TextOf(font, FC_FAMILY), TextOf(font, FC_STYLE), isVariable});
  }
  return faces;
}

}  // namespace glyphmotion
