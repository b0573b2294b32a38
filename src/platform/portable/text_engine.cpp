// SPDX-License-Identifier: MIT
// Text engine on Fontconfig (which face) and FreeType (its numbers and outlines).
//
// Nothing here depends on hinting or on a face's bitmaps: advances come from the font's own units, outlines are scaled
// without hints, so that the same font file gives the same pixels everywhere. Sizes are em sizes in pixels; the em
// follows from the cell height by the primary face's window ascent and descent, and a face that lends a missing glyph
// draws it at the primary's em, on the primary's baseline.
#include "platform/text_engine.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <memory>
#include <new>
#include <unordered_map>
#include <utility>
#include FT_FREETYPE_H
#include FT_ADVANCES_H
#include FT_MODULE_H
#include FT_OUTLINE_H
#include FT_STROKER_H
#include FT_TRUETYPE_TABLES_H

namespace glyphmotion {
namespace {

constexpr std::size_t kMaxSelections = 64, kMaxFaces = 128, kMaxRemembered = 8192;
constexpr double kMaxBoxSide = 16384;                        // pixels; FreeType's rasters count in 16 bits
constexpr double kBoldStrength = 1.0 / 24, kSlant = 0.2126;  // of the em; about 12 degrees

struct CloseFace {
  void operator()(FT_Face face) const { FT_Done_Face(face); }
};
using OwnedFace = std::unique_ptr<std::remove_pointer_t<FT_Face>, CloseFace>;

struct DestroyPattern {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, DestroyPattern>;

struct DestroyCharSet {
  void operator()(FcCharSet* set) const { FcCharSetDestroy(set); }
};
using CharSet = std::unique_ptr<FcCharSet, DestroyCharSet>;

struct DestroyFontSet {
  void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
};
using FontSet = std::unique_ptr<FcFontSet, DestroyFontSet>;

struct Face {
  OwnedFace face;
  double ascent = 0, descent = 0;  // font units above and below the baseline; their sum is the cell, above 0
  bool bold = false, italic = false;
  FT_F26Dot6 size = 0;  // em that is set now
};

/// What a request's family and style came to: the face, and the faces that lend it glyphs.
struct Selection {
  std::string family;
  bool bold = false, italic = false;
  Face* face = nullptr;  // null: no face could be opened
  std::unordered_map<char32_t, Face*> lenders;
};

/// One character of one request, ready to be measured or drawn.
struct Placement {
  Face* face = nullptr;
  FT_UInt glyph = 0;
  bool blank = false;  // nothing to draw
  bool embolden = false, slant = false;
  double em = 0, advance = 0;  // pixels
  int ascent = 0;              // pixels
};

// FreeType overlooks some failed allocations (an optional table that cannot be read counts as missing), and
// Fontconfig's answer to one is the same nothing as for a font that does not exist. So FreeType allocates here, where a
// failure is remembered; what met one fails as a whole, and nothing that was made on the way is kept.
void* AllocateForFreeType(FT_Memory memory, long size) {
  void* block = std::malloc(static_cast<std::size_t>(size));
  if (!block) *static_cast<bool*>(memory->user) = true;
  return block;
}
void* ReallocateForFreeType(FT_Memory memory, long, long size, void* old) {
  void* block = std::realloc(old, static_cast<std::size_t>(size));
  if (!block) *static_cast<bool*>(memory->user) = true;
  return block;
}
void FreeForFreeType(FT_Memory, void* block) { std::free(block); }

template <typename T>
T Required(T made) {
  if (!made) throw std::bad_alloc();
  return made;
}

struct Engine {
  bool allocationFailed = false;
  FT_MemoryRec_ memory{&allocationFailed, AllocateForFreeType, FreeForFreeType, ReallocateForFreeType};
  FT_Library library = nullptr;
  int starts = 0;
  std::map<std::pair<std::string, int>, std::unique_ptr<Face>> faces;  // null: the file cannot be used
  std::vector<std::unique_ptr<Selection>> selections;

  ~Engine() { Close(); }
  void Forget() {
    selections.clear();
    faces.clear();
  }
  void Close() {
    Forget();
    if (library) FT_Done_Library(library);
    library = nullptr;
  }
  /// Throws when an allocation has failed since the last call.
  void RequireMemory() {
    if (std::exchange(allocationFailed, false)) throw std::bad_alloc();
  }
  /// For the end of a call that ran out of memory.
  bool GiveUp() {
    Forget();
    return allocationFailed = false;
  }
};

// Each thread has its own: FreeType's library and faces are for one thread at a time, and so nobody waits.
Engine& TheEngine() {
  thread_local Engine engine;
  return engine;
}

bool OpenEngine() {
  Engine& engine = TheEngine();
  if (engine.library) return true;
  Required(FcInit());
  if (FT_New_Library(&engine.memory, &engine.library)) engine.library = nullptr;
  if (engine.library) {
    FT_Add_Default_Modules(engine.library);
    FT_Set_Default_Properties(engine.library);
  }
  if (engine.allocationFailed) engine.Close();
  engine.RequireMemory();
  return engine.library != nullptr;
}

// ---- Faces ----

void ReadMetrics(Face& face) {
  FT_Face ft = face.face.get();
  const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(ft, FT_SFNT_OS2));
  if (os2 && os2->version != 0xFFFF && os2->usWinAscent + os2->usWinDescent > 0) {
    face.ascent = os2->usWinAscent;
    face.descent = os2->usWinDescent;
  } else {
    face.ascent = ft->ascender;
    face.descent = -ft->descender;
  }
  if (face.ascent + face.descent <= 0) {
    face.ascent = ft->units_per_EM;
    face.descent = 0;
  }
  constexpr int kSemibold = 600;
  face.bold =
      (ft->style_flags & FT_STYLE_FLAG_BOLD) || (os2 && os2->version != 0xFFFF && os2->usWeightClass >= kSemibold);
  face.italic = ft->style_flags & FT_STYLE_FLAG_ITALIC;
}

/// Unicode, which FreeType sets by itself, or else a symbol font's own codes.
bool ChooseCharmap(FT_Face ft) {
  return ft->charmap || !FT_Select_Charmap(ft, FT_ENCODING_MS_SYMBOL) ||
         (ft->num_charmaps > 0 && !FT_Set_Charmap(ft, ft->charmaps[0]));
}

/// The face of a file, opened once; null when FreeType cannot read it or it has no outlines.
Face* OpenFace(const std::string& file, int index) {
  auto [place, isNew] = TheEngine().faces.try_emplace({file, index});
  if (!isNew) return place->second.get();
  FT_Face ft = nullptr;
  const FT_Error error = FT_New_Face(TheEngine().library, file.c_str(), index, &ft);
  OwnedFace owned(error ? nullptr : ft);
  const bool usable = !error && FT_IS_SCALABLE(ft) && ft->units_per_EM && ChooseCharmap(ft);
  TheEngine().RequireMemory();
  if (!usable) return nullptr;
  auto face = std::make_unique<Face>();
  face->face = std::move(owned);
  ReadMetrics(*face);
  place->second = std::move(face);
  return place->second.get();
}

Face* OpenFace(const FcPattern* pattern) {
  FcChar8* file = nullptr;
  int index = 0;
  if (FcPatternGetString(pattern, FC_FILE, 0, &file) != FcResultMatch) return nullptr;
  FcPatternGetInteger(pattern, FC_INDEX, 0, &index);
  return OpenFace(reinterpret_cast<const char*>(file), index);
}

/// FreeType's code of a character in this face; symbol fonts keep theirs at 0xF000.
FT_UInt GlyphOf(const Face& face, char32_t character) {
  FT_Face ft = face.face.get();
  FT_UInt glyph = FT_Get_Char_Index(ft, character);
  if (!glyph && character < 256 && ft->charmap && ft->charmap->encoding == FT_ENCODING_MS_SYMBOL) {
    glyph = FT_Get_Char_Index(ft, 0xF000 + character);
  }
  return glyph;
}

// ---- Choosing ----

FontSet InstalledFonts() {
  const Pattern all(Required(FcPatternCreate()));
  Required(FcPatternAddBool(all.get(), FC_OUTLINE, FcTrue));
  FcObjectSet* fields = Required(FcObjectSetBuild(FC_FAMILY, FC_FAMILYLANG, nullptr));
  FontSet fonts(FcFontList(nullptr, all.get(), fields));
  FcObjectSetDestroy(fields);
  Required(fonts.get());
  return fonts;
}

void AddFamily(FcPattern* pattern, const std::string& family) {
  Required(FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str())));
}

Pattern Query(const std::string& family, bool bold, bool italic, char32_t character) {
  Pattern query(Required(FcPatternCreate()));
  FcPattern* p = query.get();
  if (!family.empty()) AddFamily(p, family);
  Required(FcPatternAddInteger(p, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR));
  Required(FcPatternAddInteger(p, FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN));
  Required(FcPatternAddBool(p, FC_OUTLINE, FcTrue));
  Required(FcPatternAddBool(p, FC_COLOR, FcFalse));
  Required(FcPatternAddBool(p, FC_VARIABLE, FcFalse));  // instances rather than the bare variable font
  if (character) {
    const CharSet set(Required(FcCharSetCreate()));
    Required(FcCharSetAddChar(set.get(), character));
    Required(FcPatternAddCharSet(p, FC_CHARSET, set.get()));
  }
  Required(FcConfigSubstitute(nullptr, p, FcMatchPattern));
  FcDefaultSubstitute(p);
  return query;
}

bool HasCharacter(const FcPattern* pattern, char32_t character) {
  FcCharSet* set = nullptr;
  return FcPatternGetCharSet(pattern, FC_CHARSET, 0, &set) == FcResultMatch && FcCharSetHasChar(set, character);
}

/// The best match that can be opened and, when a character is given, has it.
Face* Match(const std::string& family, bool bold, bool italic, char32_t character = 0) {
  if (character > 0x10FFFF) return nullptr;  // no character: Fontconfig would not take it either
  const Pattern query = Query(family, bold, italic, character);
  FcResult result = FcResultNoMatch;
  const Pattern best(FcFontMatch(nullptr, query.get(), &result));
  if (!best) {
    if (InstalledFonts()->nfont > 0) throw std::bad_alloc();
    return nullptr;
  }
  if (character && !HasCharacter(best.get(), character)) return nullptr;  // coverage ranks first: nobody has it
  Face* face = OpenFace(best.get());
  if (face && (!character || GlyphOf(*face, character))) return face;
  // The best one was damaged, or has pictures for glyphs: walk down the list.
  const FontSet sorted(Required(FcFontSort(nullptr, query.get(), FcFalse, nullptr, &result)));
  for (int i = 0; i < sorted->nfont; ++i) {
    if (character && !HasCharacter(sorted->fonts[i], character)) continue;
    face = OpenFace(sorted->fonts[i]);
    if (face && (!character || GlyphOf(*face, character))) return face;
  }
  return nullptr;
}

Selection& Select(const FontRequest& font) {
  Engine& engine = TheEngine();
  for (std::size_t i = engine.selections.size(); i-- > 0;) {
    Selection& known = *engine.selections[i];
    if (known.bold == font.bold && known.italic == font.italic && known.family == font.family) return known;
  }
  if (engine.selections.size() >= kMaxSelections || engine.faces.size() >= kMaxFaces) engine.Forget();
  auto selection = std::make_unique<Selection>();
  selection->family = font.family;
  selection->bold = font.bold;
  selection->italic = font.italic;
  selection->face = Match(font.family, font.bold, font.italic);
  engine.selections.push_back(std::move(selection));
  return *engine.selections.back();
}

/// The face that draws the character: the selection's own, one that has it, or again its own (its sign for "missing").
Face* FaceFor(Selection& selection, char32_t character) {
  if (GlyphOf(*selection.face, character)) return selection.face;
  if (const auto known = selection.lenders.find(character); known != selection.lenders.end()) return known->second;
  Face* lender = Match(selection.family, selection.bold, selection.italic, character);
  if (!lender) lender = selection.face;
  if (selection.lenders.size() >= kMaxRemembered) selection.lenders.clear();
  selection.lenders[character] = lender;
  return lender;
}

/// Characters that steer their neighbours and have no shape: joiners, direction marks, variation selectors.
bool IsSteering(char32_t c) {
  return c == 0xAD || (c >= 0x7F && c < 0xA0) || (c >= 0x200B && c <= 0x200F) || (c >= 0x202A && c <= 0x202E) ||
         (c >= 0x2060 && c <= 0x2064) || (c >= 0xFE00 && c <= 0xFE0F) || c == 0xFEFF || (c >= 0xE0000 && c <= 0xE0FFF);
}

double EmOf(const Face& face, int cellHeight) {
  return std::max(cellHeight, 1) * static_cast<double>(face.face->units_per_EM) / (face.ascent + face.descent);
}

int AscentOf(const Face& face, int cellHeight) {
  return static_cast<int>(std::lround(std::max(cellHeight, 1) * face.ascent / (face.ascent + face.descent)));
}

bool Place(const FontRequest& font, char32_t character, Placement& place) {
  if (!OpenEngine()) return false;
  Selection& selection = Select(font);
  if (!selection.face) return false;
  place.em = EmOf(*selection.face, font.cellHeight);
  place.ascent = AscentOf(*selection.face, font.cellHeight);
  place.blank = character <= 32 || IsSteering(character);
  if (place.blank) return true;
  place.face = FaceFor(selection, character);
  place.glyph = GlyphOf(*place.face, character);
  place.embolden = font.bold && !place.face->bold;
  place.slant = font.italic && !place.face->italic;
  FT_Fixed units = 0;
  FT_Face ft = place.face->face.get();
  if (FT_Get_Advance(ft, place.glyph, FT_LOAD_NO_SCALE, &units)) units = 0;
  TheEngine().RequireMemory();
  place.advance = static_cast<double>(units) * place.em / ft->units_per_EM;
  if (place.embolden) place.advance += place.em * kBoldStrength;
  return true;
}

GlyphBox BoxOf(const FontRequest& font, const Placement& place) {
  return {std::max(place.advance, 0.0) + place.em / 3, static_cast<double>(std::max(font.cellHeight, 1))};
}

// ---- Drawing ----

FT_F26Dot6 To26Dot6(double pixels) { return static_cast<FT_F26Dot6>(std::lround(pixels * 64)); }

/// Loads the glyph's outline into its face's slot, emboldened and slanted where the face is not, moved to its place in
/// a box of `height` rows whose origin is the lower left corner. Null when there is none.
FT_Outline* LoadOutline(const Placement& place, int height) {
  Face& face = *place.face;
  FT_Face ft = face.face.get();
  const FT_F26Dot6 size = std::max<FT_F26Dot6>(To26Dot6(place.em), 1);
  if (face.size != size) {
    face.size = 0;
    if (FT_Set_Char_Size(ft, size, size, 72, 72)) return nullptr;
    face.size = size;
  }
  constexpr FT_Int32 kFlags = FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP;
  if (FT_Load_Glyph(ft, place.glyph, kFlags) || ft->glyph->format != FT_GLYPH_FORMAT_OUTLINE) return nullptr;
  FT_Outline& outline = ft->glyph->outline;
  // Wider only, so that nothing grows out of the cell.
  if (place.embolden) FT_Outline_EmboldenXY(&outline, To26Dot6(place.em * kBoldStrength), 0);
  if (place.slant) {
    const FT_Matrix slanted = {0x10000, static_cast<FT_Fixed>(kSlant * 0x10000), 0, 0x10000};
    FT_Outline_Transform(&outline, &slanted);
  }
  FT_Outline_Translate(&outline, To26Dot6(place.em / 6), (height - place.ascent) * 64);
  return &outline;
}

bool IsOutlineInReach(const FT_Outline& outline) {
  FT_BBox box;
  FT_Outline_Get_CBox(&outline, &box);
  constexpr FT_Pos kReach = 32000 * 64;
  return box.xMin > -kReach && box.yMin > -kReach && box.xMax < kReach && box.yMax < kReach;
}

/// Fills the outline into the bitmap; what lies outside falls away.
bool Fill(FT_Outline& outline, bool antialias, GlyphBitmap& glyph) {
  if (!IsOutlineInReach(outline)) return false;
  FT_Bitmap bitmap{};
  bitmap.rows = static_cast<unsigned>(glyph.height);
  bitmap.width = static_cast<unsigned>(glyph.width);
  if (antialias) {
    bitmap.pitch = glyph.width;
    bitmap.buffer = glyph.coverage.data();
    bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
    bitmap.num_grays = 256;
    return !FT_Outline_Get_Bitmap(TheEngine().library, &outline, &bitmap);
  }
  bitmap.pitch = (glyph.width + 7) / 8;
  std::vector<std::uint8_t> bits(static_cast<std::size_t>(bitmap.pitch) * bitmap.rows);
  bitmap.buffer = bits.data();
  bitmap.pixel_mode = FT_PIXEL_MODE_MONO;
  if (FT_Outline_Get_Bitmap(TheEngine().library, &outline, &bitmap)) return false;
  for (int y = 0; y < glyph.height; ++y) {
    const std::uint8_t* row = bits.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(bitmap.pitch);
    std::uint8_t* out = glyph.coverage.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(glyph.width);
    for (int x = 0; x < glyph.width; ++x) out[x] = row[x >> 3] & (0x80 >> (x & 7)) ? 255 : 0;
  }
  return true;
}

struct StrokeOutline {
  FT_Stroker stroker = nullptr;
  FT_Outline outline{};
  bool made = false;
  ~StrokeOutline() {
    if (made) FT_Outline_Done(TheEngine().library, &outline);
    if (stroker) FT_Stroker_Done(stroker);
  }
};

bool Stroke(FT_Outline& outline, double penWidth, bool antialias, GlyphBitmap& glyph) {
  StrokeOutline stroke;
  FT_Library library = TheEngine().library;
  if (FT_Stroker_New(library, &stroke.stroker)) return false;
  FT_Stroker_Set(stroke.stroker, To26Dot6(penWidth / 2), FT_STROKER_LINECAP_ROUND, FT_STROKER_LINEJOIN_ROUND, 0);
  FT_UInt points = 0, contours = 0;
  if (FT_Stroker_ParseOutline(stroke.stroker, &outline, 0) ||
      FT_Stroker_GetCounts(stroke.stroker, &points, &contours) || points > 0x7FFF || contours > 0x7FFF ||
      FT_Outline_New(library, points, static_cast<FT_Int>(contours), &stroke.outline)) {
    return false;
  }
  stroke.made = true;
  stroke.outline.n_points = 0;
  stroke.outline.n_contours = 0;
  FT_Stroker_Export(stroke.stroker, &stroke.outline);
  const bool filled = Fill(stroke.outline, antialias, glyph);
  stroke.outline.n_points = static_cast<short>(points);
  return filled;
}

/// A cleared bitmap of the box; false when it is too large to draw.
bool ClearBox(const GlyphBox& box, GlyphBitmap& glyph) {
  if (box.width > kMaxBoxSide || box.height > kMaxBoxSide) return false;
  glyph.width = std::max(static_cast<int>(box.width), 1);
  glyph.height = std::max(static_cast<int>(box.height), 1);
  glyph.coverage.assign(static_cast<std::size_t>(glyph.width) * static_cast<std::size_t>(glyph.height), 0);
  return true;
}

bool Draw(const FontRequest& font, char32_t character, bool antialias, double penWidth, GlyphBitmap& glyph) {
  Placement place;
  if (!Place(font, character, place) || !ClearBox(BoxOf(font, place), glyph)) return false;
  if (place.blank) return true;
  FT_Outline* outline = LoadOutline(place, glyph.height);
  TheEngine().RequireMemory();
  if (!outline || outline->n_points == 0) return true;  // a damaged or empty glyph is a gap, not a failure
  const bool drawn = penWidth > 0 ? Stroke(*outline, penWidth, antialias, glyph) : Fill(*outline, antialias, glyph);
  TheEngine().RequireMemory();
  return drawn;
}

// ---- Families ----

std::string Folded(const std::string& name) {
  FcChar8* folded = FcStrDowncase(reinterpret_cast<const FcChar8*>(name.c_str()));
  if (!folded) throw std::bad_alloc();
  std::string result(reinterpret_cast<const char*>(folded));
  FcStrFree(folded);
  return result;
}

bool IsInstalled(const FcFontSet& fonts, const FcChar8* family) {
  for (int i = 0; i < fonts.nfont; ++i) {
    FcChar8* name = nullptr;
    for (int n = 0; FcPatternGetString(fonts.fonts[i], FC_FAMILY, n, &name) == FcResultMatch; ++n) {
      if (FcStrCmpIgnoreCase(name, family) == 0) return true;
    }
  }
  return false;
}

bool FindFamily(const std::string& family) {
  const FontSet fonts = InstalledFonts();
  if (IsInstalled(*fonts, reinterpret_cast<const FcChar8*>(family.c_str()))) return true;
  // Fontconfig binds a metric-compatible stand-in as strongly as the name it stands for; general substitutes weakly.
  const Pattern query(Required(FcPatternCreate()));
  AddFamily(query.get(), family);
  Required(FcConfigSubstitute(nullptr, query.get(), FcMatchPattern));
  FcValue value;
  FcValueBinding binding = FcValueBindingWeak;
  for (int n = 0; FcPatternGetWithBinding(query.get(), FC_FAMILY, n, &value, &binding) == FcResultMatch; ++n) {
    if (binding != FcValueBindingWeak && value.type == FcTypeString && IsInstalled(*fonts, value.u.s)) return true;
  }
  return false;
}

}  // namespace

bool StartTextEngine() noexcept try {
  if (!OpenEngine()) return false;
  const FontSet fonts = InstalledFonts();
  if (fonts->nfont == 0) return false;
  ++TheEngine().starts;
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

void StopTextEngine() noexcept {
  Engine& engine = TheEngine();
  if (engine.starts > 0 && --engine.starts == 0) engine.Close();
}

std::vector<std::string> FontFamilies() {
  if (!OpenEngine()) return {};
  const FontSet fonts = InstalledFonts();
  std::map<std::string, std::string> byFolded;
  for (int i = 0; i < fonts->nfont; ++i) {
    FcChar8 *name = nullptr, *language = nullptr;
    for (int n = 0; FcPatternGetString(fonts->fonts[i], FC_FAMILY, n, &name) == FcResultMatch; ++n) {
      // A face may carry its name in several languages: the English one, else the first.
      const bool english = FcPatternGetString(fonts->fonts[i], FC_FAMILYLANG, n, &language) != FcResultMatch ||
                           FcStrCmpIgnoreCase(language, reinterpret_cast<const FcChar8*>("en")) == 0;
      const std::string family(reinterpret_cast<const char*>(name));
      if (!family.empty() && (english || n == 0)) byFolded.try_emplace(Folded(family), family);
    }
  }
  std::vector<std::string> families;
  families.reserve(byFolded.size());
  for (auto& [folded, family] : byFolded) families.push_back(std::move(family));
  return families;
}

bool HasFontFamily(const std::string& family) { return !family.empty() && OpenEngine() && FindFamily(family); }

std::string FamilyUsed(const FontRequest& font) {
  if (!OpenEngine()) return {};
  const FontSet fonts = InstalledFonts();
  if (fonts && IsInstalled(*fonts, reinterpret_cast<const FcChar8*>(font.family.c_str()))) return font.family;
  const Selection& selection = Select(font);
  const char* name = selection.face ? selection.face->face->family_name : nullptr;
  return name ? name : "";
}

bool HasGlyph(const FontRequest& font, char32_t character) {
  Placement place;
  return !Place(font, character, place) || place.blank || place.glyph != 0;
}

FontMetrics MeasureFont(const FontRequest& font) noexcept try {
  const int height = std::max(font.cellHeight, 1);
  if (!OpenEngine()) return {height, height};
  const Selection& selection = Select(font);
  return {height, selection.face ? AscentOf(*selection.face, height) : height};
} catch (const std::bad_alloc&) {
  TheEngine().GiveUp();
  return {std::max(font.cellHeight, 1), std::max(font.cellHeight, 1)};
}

bool MeasureGlyph(const FontRequest& font, char32_t character, GlyphBox& box) try {
  Placement place;
  if (!Place(font, character, place)) return false;
  box = BoxOf(font, place);
  return true;
} catch (const std::bad_alloc&) {
  TheEngine().GiveUp();
  throw;
}

bool RenderGlyph(const FontRequest& font, char32_t character, bool antialias, GlyphBitmap& glyph) noexcept try {
  return Draw(font, character, antialias, 0, glyph);
} catch (const std::bad_alloc&) {
  return TheEngine().GiveUp();
}

bool RenderGlyphOutline(const FontRequest& font, char32_t character, bool antialias, double penWidth,
                        GlyphBitmap& glyph) noexcept try {
  return Draw(font, character, antialias, penWidth, glyph);
} catch (const std::bad_alloc&) {
  return TheEngine().GiveUp();
}

}  // namespace glyphmotion
