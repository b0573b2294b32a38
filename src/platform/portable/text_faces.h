// SPDX-License-Identifier: MIT
// Faces of font files, and which of them draws what: for the files of the text engine on FreeType.
#pragma once

#include <ft2build.h>

#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/text_engine.h"
#include "platform/text_run.h"
#include FT_FREETYPE_H

struct hb_font_t;

namespace glyphmotion {

struct CloseFace {
  void operator()(FT_Face face) const { FT_Done_Face(face); }
};
using OwnedFace = std::unique_ptr<std::remove_pointer_t<FT_Face>, CloseFace>;

struct DestroyShaper {
  void operator()(hb_font_t* font) const;
};

template <typename T>
T Required(T made) {
  if (!made) throw std::bad_alloc();
  return made;
}

/// What opens a face again, in whatever thread.
struct FaceKey {
  std::string file;
  int index = 0;  ///< of the face; a named instance is in the upper half
  std::vector<AxisValue> axes;
};

struct Face {
  FaceKey key;
  OwnedFace face;
  std::unique_ptr<hb_font_t, DestroyShaper> shaper;  ///< made when first asked for, in font units
  int unitsPerEm = 0;
  double ascent = 0, descent = 0;  ///< font units above and below the baseline; their sum is the cell, above 0
  bool bold = false, italic = false;
  bool colour = false;        ///< has coloured glyphs
  bool picturesOnly = false;  ///< and no outlines
  FT_F26Dot6 size = 0;        ///< em that is set now
};

/// A full name taken apart, in the font list's own numbers.
struct StyledName {
  std::string family;
  int weight = 0, slant = 0, width = 0;
};

/// What a request's family and style came to: the face, and the faces that lend it glyphs.
struct Selection {
  std::string family;
  bool bold = false, italic = false;
  FontFile fontFile;
  std::vector<AxisValue> axes;
  std::optional<StyledName> styled;
  Face* face = nullptr;  // null: no face could be opened
  std::unordered_map<char32_t, Face*> lenders;
  std::shared_ptr<const void> sorted, emoji;  // the font list's, when first asked for
  std::vector<Face*> recent;                  // those that lent to graphemes, for the next one
};

/// Opens the machine's fonts for this thread. False when there is no such thing.
bool OpenEngine();
/// Runs that use it; with the last one everything is closed.
void CountStart();
void CountStop() noexcept;
FT_Library FreeTypeLibrary();
/// Throws std::bad_alloc when an allocation of FreeType has failed since the last call.
void RequireMemory();
/// For the end of a call that ran out of memory: keeps nothing made by then. Returns false.
bool GiveUpFaces() noexcept;

/// The face of a file, opened once; null when it cannot be read or has no glyphs to draw.
Face* OpenFace(const FaceKey& key);

/// FreeType's code of a character in this face; symbol fonts keep theirs at 0xF000.
FT_UInt GlyphOf(const Face& face, char32_t character);

Selection& Select(const FontRequest& font);

/// The face that draws the character: the selection's own, one that has it, or again its own (its sign for "missing",
/// which the run takes note of).
Face* FaceFor(Selection& selection, char32_t character);

/// Whether `has` holds for all characters that have a shape, as they are, composed with the last one, or decomposed.
bool CoversAll(std::u32string_view text, const std::function<bool(char32_t)>& has);

/// True when the face has what it takes to draw the grapheme: each character, or its composition with the one before.
bool Covers(const Face& face, std::u32string_view grapheme);

/// The face for all of `text`: the selection's own, one that lent before, the first that the font list sorts; or null.
Face* FaceForAll(Selection& selection, std::u32string_view text);
/// A face with coloured glyphs for the grapheme, or null.
Face* EmojiFaceFor(Selection& selection, std::u32string_view grapheme);

/// HarfBuzz's font, in font units; null when it cannot read the file.
hb_font_t* ShaperOf(Face& face);

double EmOf(const Face& face, int cellHeight);
int AscentOf(const Face& face, int cellHeight);

constexpr double kBoldStrength = 1.0 / 24, kSlant = 0.2126;  // of the em; about 12 degrees

/// Characters that steer their neighbours and have no shape: joiners, direction marks, variation selectors.
bool IsSteering(char32_t c);

}  // namespace glyphmotion
