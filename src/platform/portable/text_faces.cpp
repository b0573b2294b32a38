// SPDX-License-Identifier: MIT
#include "platform/portable/text_faces.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <new>
#include <optional>
#include <tuple>
#include FT_MODULE_H
#include FT_MULTIPLE_MASTERS_H
#include FT_TRUETYPE_TABLES_H
#include <hb-ot.h>

#include "platform/portable/font_list.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kMaxSelections = 64, kMaxFaces = 128, kMaxRemembered = 8192;

// FreeType overlooks some failed allocations (an optional table that cannot be read counts as missing), and
// Fontconfig's answer to one is the same nothing as for a font that does not exist. So FreeType allocates here, where a
// failure is remembered; what met one fails as a whole, and nothing made by then is kept.
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

struct Engine {
  bool allocationFailed = false;
  FT_MemoryRec_ memory{&allocationFailed, AllocateForFreeType, FreeForFreeType, ReallocateForFreeType};
  FT_Library library = nullptr;
  int starts = 0;
  std::map<std::tuple<std::string, int, std::string>, std::unique_ptr<Face>> faces;  // null: cannot be used
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
};

// Each thread has its own: FreeType's library and faces are for one thread at a time, and so nobody waits.
Engine& TheEngine() { return ThreadState().Member<Engine>(); }

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
    face.ascent = face.unitsPerEm;
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

/// Sets the axes that the key names; the others keep what the face's named instance says.
void SetAxes(Face& face) {
  FT_Face ft = face.face.get();
  FT_MM_Var* variation = nullptr;
  if (face.key.axes.empty() || FT_Get_MM_Var(ft, &variation)) return;
  std::vector<FT_Fixed> values(variation->num_axis);
  FT_Get_Var_Design_Coordinates(ft, variation->num_axis, values.data());
  for (FT_UInt i = 0; i < variation->num_axis; ++i) {
    const FT_Var_Axis& axis = variation->axis[i];
    for (const AxisValue& wanted : face.key.axes) {
      if (wanted.tag.size() != 4 || axis.tag != FT_MAKE_TAG(wanted.tag[0], wanted.tag[1], wanted.tag[2], wanted.tag[3]))
        continue;
      values[i] = static_cast<FT_Fixed>(std::lround(std::clamp(wanted.value, -30000.0, 30000.0) * 65536));
      values[i] = std::clamp(values[i], axis.minimum, axis.maximum);
      constexpr FT_Fixed kSemibold = 600 * 65536;
      if (wanted.tag == "wght") face.bold = values[i] >= kSemibold;
    }
  }
  FT_Set_Var_Design_Coordinates(ft, variation->num_axis, values.data());
  FT_Done_MM_Var(TheEngine().library, variation);
}

/// The same axes in HarfBuzz's font as in FreeType's face.
void CopyAxes(FT_Face ft, hb_font_t* font) {
  FT_MM_Var* variation = nullptr;
  if (!FT_HAS_MULTIPLE_MASTERS(ft) || FT_Get_MM_Var(ft, &variation)) return;
  std::vector<FT_Fixed> values(variation->num_axis);
  if (!FT_Get_Var_Design_Coordinates(ft, variation->num_axis, values.data())) {
    std::vector<float> coordinates;
    for (const FT_Fixed value : values) coordinates.push_back(static_cast<float>(value) / 65536);
    hb_font_set_var_coords_design(font, coordinates.data(), static_cast<unsigned>(coordinates.size()));
  }
  FT_Done_MM_Var(TheEngine().library, variation);
}

std::string NameOf(const std::vector<AxisValue>& axes) {
  std::string name;
  for (const AxisValue& axis : axes) name += axis.tag + '=' + std::to_string(axis.value) + ',';
  return name;
}

Face* Remember(Selection& selection, Face* face) {
  constexpr std::size_t kMost = 8;
  std::vector<Face*>& recent = selection.recent;
  std::erase(recent, face);
  if (recent.size() >= kMost) recent.pop_back();
  recent.insert(recent.begin(), face);
  return face;
}

template <typename Accept>
Face* FindAmong(const std::vector<Face*>& faces, std::u32string_view text, Accept accept) {
  const auto found =
      std::find_if(faces.begin(), faces.end(), [&](Face* face) { return accept(*face) && Covers(*face, text); });
  return found == faces.end() ? nullptr : *found;
}

}  // namespace

void DestroyShaper::operator()(hb_font_t* font) const { hb_font_destroy(font); }

FT_Library FreeTypeLibrary() { return TheEngine().library; }

void RequireMemory() {
  if (std::exchange(TheEngine().allocationFailed, false)) throw std::bad_alloc();
}

bool GiveUpFaces() noexcept {
  TheEngine().Forget();
  return TheEngine().allocationFailed = false;
}

bool OpenEngine() {
  Engine& engine = TheEngine();
  if (engine.library) return true;
  OpenFontList();
  if (FT_New_Library(&engine.memory, &engine.library)) engine.library = nullptr;
  if (engine.library) {
    FT_Add_Default_Modules(engine.library);
    FT_Set_Default_Properties(engine.library);
  }
  if (engine.allocationFailed) engine.Close();
  RequireMemory();
  return engine.library != nullptr;
}

void CountStart() { ++TheEngine().starts; }

void CountStop() noexcept try {
  Engine& engine = TheEngine();
  if (engine.starts > 0 && --engine.starts == 0) engine.Close();
} catch (const std::bad_alloc&) {  // then there is no engine to stop
}

Face* OpenFace(const FaceKey& key) {
  auto [place, isNew] = TheEngine().faces.try_emplace({key.file, key.index, NameOf(key.axes)});
  if (!isNew) return place->second.get();
  FT_Face ft = nullptr;
  const FT_Error error = FT_New_Face(TheEngine().library, key.file.c_str(), key.index, &ft);
  OwnedFace owned(error ? nullptr : ft);
  const bool outlines = !error && FT_IS_SCALABLE(ft) && ft->units_per_EM;
  const bool pictures = !error && !outlines && FT_HAS_COLOR(ft) && FT_HAS_FIXED_SIZES(ft);
  const bool usable = (outlines || pictures) && ChooseCharmap(ft);
  RequireMemory();
  if (!usable) return nullptr;
  auto face = std::make_unique<Face>();
  face->key = key;
  face->face = std::move(owned);
  face->colour = FT_HAS_COLOR(ft);
  face->picturesOnly = pictures;
  face->unitsPerEm = ft->units_per_EM;
  if (pictures) {
    const auto* head = static_cast<const TT_Header*>(FT_Get_Sfnt_Table(ft, FT_SFNT_HEAD));
    face->unitsPerEm = head && head->Units_Per_EM ? head->Units_Per_EM : 1000;
  }
  ReadMetrics(*face);
  SetAxes(*face);
  RequireMemory();
  place->second = std::move(face);
  return place->second.get();
}

hb_font_t* ShaperOf(Face& face) {
  if (face.shaper) return face.shaper.get();
  hb_blob_t* blob = hb_blob_create_from_file(face.key.file.c_str());
  hb_face_t* shaped = hb_face_create(blob, static_cast<unsigned>(face.key.index & 0xFFFF));
  hb_blob_destroy(blob);
  if (hb_face_get_glyph_count(shaped) > 0) {
    hb_face_set_upem(shaped, static_cast<unsigned>(face.unitsPerEm));
    face.shaper.reset(hb_font_create(shaped));
    CopyAxes(face.face.get(), face.shaper.get());
  }
  hb_face_destroy(shaped);
  return face.shaper.get();
}

FT_UInt GlyphOf(const Face& face, char32_t character) {
  FT_Face ft = face.face.get();
  FT_UInt glyph = FT_Get_Char_Index(ft, character);
  if (!glyph && character < 256 && ft->charmap && ft->charmap->encoding == FT_ENCODING_MS_SYMBOL) {
    glyph = FT_Get_Char_Index(ft, 0xF000 + character);
  }
  return glyph;
}

Selection& Select(const FontRequest& font) {
  Engine& engine = TheEngine();
  const TextRun& run = CurrentTextRun();
  for (std::size_t i = engine.selections.size(); i-- > 0;) {
    Selection& known = *engine.selections[i];
    if (known.bold == font.bold && known.italic == font.italic && known.family == font.family &&
        known.fontFile == run.fontFile && known.axes == run.axes) {
      return known;
    }
  }
  if (engine.selections.size() >= kMaxSelections || engine.faces.size() >= kMaxFaces) engine.Forget();
  auto selection = std::make_unique<Selection>();
  selection->family = font.family;
  selection->bold = font.bold;
  selection->italic = font.italic;
  selection->fontFile = run.fontFile;
  selection->axes = run.axes;
  if (IsRunsOwnFont(font.family)) {
    selection->face = OpenFace({run.fontFile.path, run.fontFile.index, run.axes});
  } else {
    selection->face = Match(*selection);
  }
  engine.selections.push_back(std::move(selection));
  return *engine.selections.back();
}

Face* FaceFor(Selection& selection, char32_t character) {
  constexpr char32_t kLastCharacter = 0x10FFFF;
  if (character > kLastCharacter || GlyphOf(*selection.face, character)) return selection.face;
  const auto known = selection.lenders.find(character);
  Face* lender = known != selection.lenders.end() ? known->second : Match(selection, character);
  if (!lender) lender = selection.face;
  if (lender == selection.face) NoteMissing(character);
  if (known != selection.lenders.end()) return lender;
  if (selection.lenders.size() >= kMaxRemembered) selection.lenders.clear();
  selection.lenders[character] = lender;
  return lender;
}

// What the beginning of the text, of two characters or more, composes to and `has` holds for: the longest such, as a
// Hangul syllable of its jamo. `length` gets its characters. 0: nothing.
static hb_codepoint_t ComposedStart(std::u32string_view text, const std::function<bool(char32_t)>& has,
                                    std::size_t& length) {
  hb_codepoint_t composed = text[0], found = 0;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (!hb_unicode_compose(hb_unicode_funcs_get_default(), composed, text[i], &composed)) break;
    if (!has(composed)) continue;
    found = composed;
    length = i + 1;
  }
  return found;
}

bool CoversAll(std::u32string_view text, const std::function<bool(char32_t)>& has) {
  hb_unicode_funcs_t* unicode = hb_unicode_funcs_get_default();
  hb_codepoint_t last = 0;
  for (std::size_t i = 0, length = 1; i < text.size(); i += length) {
    const char32_t c = text[i];
    length = 1;
    if (c <= 32 || IsSteering(c)) continue;
    hb_codepoint_t first = c, second = 0;
    if (last && !has(c) && hb_unicode_compose(unicode, last, c, &first) && has(first)) {
      last = first;
      continue;
    }
    last = c;
    if (has(c)) continue;
    if (const hb_codepoint_t composed = ComposedStart(text.substr(i), has, length)) {
      last = composed;
      continue;
    }
    if (!hb_unicode_decompose(unicode, c, &first, &second) || !has(first) || (second && !has(second))) return false;
  }
  return true;
}

bool Covers(const Face& face, std::u32string_view text) {
  return CoversAll(text, [&](char32_t c) { return GlyphOf(face, c) != 0; });
}

Face* FaceForAll(Selection& selection, std::u32string_view text) {
  const auto draws = [](const Face& face) { return !face.picturesOnly; };
  if (Covers(*selection.face, text) && ShaperOf(*selection.face)) return selection.face;
  if (Face* known = FindAmong(selection.recent, text, draws)) return Remember(selection, known);
  Face* found = FirstListed(selection, text);
  return found ? Remember(selection, found) : nullptr;
}

Face* EmojiFaceFor(Selection& selection, std::u32string_view grapheme) {
  const auto coloured = [](const Face& face) { return face.colour; };
  if (selection.face->colour && Covers(*selection.face, grapheme)) return selection.face;
  if (Face* known = FindAmong(selection.recent, grapheme, coloured)) return known;
  Face* found = FirstListedEmoji(selection, grapheme);
  return found ? Remember(selection, found) : nullptr;
}

double EmOf(const Face& face, int cellHeight) {
  return std::max(cellHeight, 1) * static_cast<double>(face.unitsPerEm) / (face.ascent + face.descent);
}

int AscentOf(const Face& face, int cellHeight) {
  return static_cast<int>(std::lround(std::max(cellHeight, 1) * face.ascent / (face.ascent + face.descent)));
}

bool IsSteering(char32_t c) {
  return c == 0xAD || (c >= 0x7F && c < 0xA0) || (c >= 0x200B && c <= 0x200F) || (c >= 0x202A && c <= 0x202E) ||
         (c >= 0x2060 && c <= 0x2064) || (c >= 0xFE00 && c <= 0xFE0F) || c == 0xFEFF || (c >= 0xE0000 && c <= 0xE0FFF);
}

}  // namespace glyphmotion
