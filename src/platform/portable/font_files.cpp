// SPDX-License-Identifier: MIT
#include "platform/font_files.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <tuple>

#include "platform/number_text.h"
#include "platform/portable/font_list.h"
#include FT_MULTIPLE_MASTERS_H
#include <hb.h>

namespace glyphmotion {
namespace {

std::vector<FontAxis> AxesOf(FT_Face face) {
  std::vector<FontAxis> axes;
  FT_MM_Var* variation = nullptr;
  if (!FT_HAS_MULTIPLE_MASTERS(face) || FT_Get_MM_Var(face, &variation)) return axes;
  const auto number = [](FT_Fixed value) { return static_cast<double>(value) / 65536; };
  for (FT_UInt i = 0; i < variation->num_axis; ++i) {
    const FT_Var_Axis& axis = variation->axis[i];
    std::string tag;
    for (int shift = 24; shift >= 0; shift -= 8) tag += static_cast<char>((axis.tag >> shift) & 0xFF);
    axes.push_back({tag, number(axis.minimum), number(axis.def), number(axis.maximum)});
  }
  FT_Done_MM_Var(FreeTypeLibrary(), variation);
  return axes;
}

/// Splits "fonts.ttc#2"; a file of that whole name wins.
void SplitSpec(const std::string& name, FontFile& file) {
  file.path = name;
  file.index = 0;
  std::error_code ignored;
  const std::size_t hash = name.rfind('#');
  const bool numbered = hash != name.npos && hash + 1 < name.size() && name.size() - hash < 6 &&
                        name.find_first_not_of("0123456789", hash + 1) == name.npos;
  if (!numbered || std::filesystem::exists(name, ignored)) return;
  file.path = name.substr(0, hash);
  file.index = std::stoi(name.substr(hash + 1));
}

// The first package of Debian that has the script, in the order in which they are looked up.
constexpr struct {
  hb_script_t script;
  const char* package;
} kPackages[] = {{HB_SCRIPT_HAN, "fonts-noto-cjk"},
                 {HB_SCRIPT_HANGUL, "fonts-noto-cjk"},
                 {HB_SCRIPT_HIRAGANA, "fonts-noto-cjk"},
                 {HB_SCRIPT_KATAKANA, "fonts-noto-cjk"},
                 {HB_SCRIPT_BOPOMOFO, "fonts-noto-cjk"},
                 {HB_SCRIPT_ARABIC, "fonts-hosny-amiri"},
                 {HB_SCRIPT_HEBREW, "culmus"},
                 {HB_SCRIPT_DEVANAGARI, "fonts-lohit-deva"},
                 {HB_SCRIPT_BENGALI, "fonts-lohit-beng-bengali"},
                 {HB_SCRIPT_TAMIL, "fonts-lohit-taml"},
                 {HB_SCRIPT_THAI, "fonts-thai-tlwg"},
                 {HB_SCRIPT_KHMER, "fonts-khmeros"},
                 {HB_SCRIPT_LAO, "fonts-lao"},
                 {HB_SCRIPT_MYANMAR, "fonts-sil-padauk"},
                 {HB_SCRIPT_TIBETAN, "fonts-ddc-uchen"},
                 {HB_SCRIPT_ETHIOPIC, "fonts-sil-abyssinica"},
                 {HB_SCRIPT_YI, "fonts-sil-nuosusil"}};

/// Nothing for characters of no script, private use and what is not assigned.
std::string PackageFor(char32_t c) {
  if (c >= 0x1F000 && c < 0x20000) return "fonts-noto-color-emoji";
  const hb_script_t script = hb_unicode_script(hb_unicode_funcs_get_default(), c);
  for (const auto& row : kPackages) {
    if (row.script == script) return row.package;
  }
  if (script == HB_SCRIPT_UNKNOWN) return {};
  return script == HB_SCRIPT_COMMON || script == HB_SCRIPT_INHERITED ? "fonts-symbola" : "fonts-noto-core";
}

// "'x' (U+0078)"
std::string NameOfCharacter(char32_t c) {
  std::string bytes;
  if (c < 0x80) {
    bytes = static_cast<char>(c);
  } else {
    const int tail = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    constexpr unsigned kHeads[] = {0, 0xC0, 0xE0, 0xF0};
    bytes += static_cast<char>(kHeads[tail] | c >> (6 * tail));
    for (int i = tail; i-- > 0;) bytes += static_cast<char>(0x80 | (c >> (6 * i) & 0x3F));
  }
  char code[16];
  std::snprintf(code, sizeof code, "U+%04X", static_cast<unsigned>(c));
  return "'" + bytes + "' (" + code + ")";
}

}  // namespace

std::vector<FontFaceInfo> FontFaces() {
  if (!OpenEngine()) return {};
  std::vector<FontFaceInfo> faces;
  for (const ListedFace& listed : ListedFaces()) {
    FontFaceInfo info{listed.family, listed.style, listed.key.file, listed.key.index & 0xFFFF, {}};
    if (listed.variable) {
      if (const Face* face = OpenFace(listed.key)) info.axes = AxesOf(face->face.get());
    }
    faces.push_back(std::move(info));
  }
  const auto key = [](const FontFaceInfo& f) { return std::tie(f.family, f.style, f.file, f.index); };
  std::sort(faces.begin(), faces.end(), [&](const auto& a, const auto& b) { return key(a) < key(b); });
  return faces;
}

bool OpenFontFile(const std::string& name, FontFile& file, std::string& error) {
  SplitSpec(name, file);
  std::error_code code;
  if (!std::filesystem::is_regular_file(file.path, code)) {
    error = "there is no font file '" + file.path + "'";
    return false;
  }
  FT_Face whole = nullptr;
  if (!OpenEngine()) return false;
  const bool readable = !FT_New_Face(FreeTypeLibrary(), file.path.c_str(), -1, &whole);
  const OwnedFace owned(readable ? whole : nullptr);
  const long count = readable ? whole->num_faces : 0;
  RequireMemory();
  if (count > 0 && file.index >= count) {
    error = "'" + file.path + "' has " +
            (count == 1 ? "one face, #0" : std::to_string(count) + " faces, #0 to #" + std::to_string(count - 1)) +
            "; there is no #" + std::to_string(file.index);
    return false;
  }
  Face* face = OpenFace({file.path, file.index, {}});
  if (!face || !ShaperOf(*face)) {
    GiveUpFaces();  // what cannot be read now may be another file next time
    error = "'" + file.path + "' is not a font that can be read; use a valid TTF, OTF or TTC file";
    return false;
  }
  const char* family = face->face->family_name;
  file.family = family && *family ? family : std::filesystem::path(file.path).stem().string();
  return true;
}

std::string AxesTrouble(const FontRequest& font) {
  const std::vector<AxisValue>& wanted = CurrentTextRun().axes;
  if (wanted.empty() || !OpenEngine()) return {};
  const Face* face = Select(font).face;
  const std::vector<FontAxis> axes = face ? AxesOf(face->face.get()) : std::vector<FontAxis>();
  if (axes.empty()) return "the font '" + font.family + "' is not variable; choose one that is, or leave the axes out";
  std::string known;
  for (const FontAxis& axis : axes) {
    known += (known.empty() ? "" : ", ") + axis.tag + ' ' + ShortText(axis.minimum) + " to " + ShortText(axis.maximum);
  }
  for (const AxisValue& value : wanted) {
    const auto axis = std::find_if(axes.begin(), axes.end(), [&](const FontAxis& a) { return a.tag == value.tag; });
    if (axis == axes.end()) return "the font '" + font.family + "' has no axis '" + value.tag + "'; it has " + known;
    if (!(value.value >= axis->minimum && value.value <= axis->maximum))  // also refuses NaN
      return "the font '" + font.family + "' has no " + value.tag + " of " + ShortText(value.value) + "; it has " +
             known;
  }
  return {};
}

std::string MissingNote() {
  const std::set<char32_t>& missing = CurrentTextRun().missing;
  if (missing.empty()) return {};
  constexpr std::size_t kMostNamed = 8;
  std::string names, packages;
  std::size_t count = 0;
  for (const char32_t c : missing) {
    if (count++ < kMostNamed) names += (names.empty() ? "" : ", ") + NameOfCharacter(c);
    const std::string package = PackageFor(c);
    if (!package.empty() && (packages + ' ').find(' ' + package + ' ') == packages.npos) packages += ' ' + package;
  }
  if (count > kMostNamed) names += " and " + std::to_string(count - kMostNamed) + " more";
  std::string note = std::string("no font has the character") + (count > 1 ? "s " : " ") + names;
  if (!packages.empty()) note += "; Debian's" + packages + (count > 1 ? " would bring them" : " would bring it");
  return note;
}

}  // namespace glyphmotion
