// SPDX-License-Identifier: MIT
#include "platform/web/font_families.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <map>

#include "platform/ascii.h"
#include "platform/files.h"
#include FT_MULTIPLE_MASTERS_H
#include FT_TRUETYPE_TABLES_H

namespace glyphmotion {
namespace {

namespace fs = std::filesystem;

// The names of other systems' fonts of the same metrics, and the generic names.
constexpr struct {
  const char *name, *family;
} kAliases[] = {{"Arial", "Liberation Sans"},       {"Helvetica", "Liberation Sans"},
                {"sans-serif", "Liberation Sans"},  {"Times New Roman", "Liberation Serif"},
                {"Times", "Liberation Serif"},      {"serif", "Liberation Serif"},
                {"Courier New", "Liberation Mono"}, {"Courier", "Liberation Mono"},
                {"monospace", "Liberation Mono"}};

struct FontFolder {
  std::vector<FolderFace> faces;
};

FontFolder& TheFolder() {
  thread_local FontFolder folder;
  return folder;
}

std::string FolderPath() {
  const char* folder = std::getenv("GLYPHMOTION_FONTS");
  return folder && *folder ? folder : "/fonts";
}

int NumberOf(const std::string& text) {
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

std::vector<std::string> Parts(std::string_view text, char end) {
  std::vector<std::string> parts;
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view part = text.substr(at, text.find(end, at) - at);
    parts.emplace_back(part);
    at += part.size() + 1;
  }
  return parts;
}

/// index.tsv names faces, so that their files can stay unread until one is used: file, index, family, style, weight,
/// italic, variable, colour.
void ReadIndex(const std::string& folder, std::vector<FolderFace>& faces) {
  for (const std::string& line : Parts(ReadWholeFile(folder + "/index.tsv").value_or(std::string()), '\n')) {
    const std::vector<std::string> fields = Parts(line, '\t');
    if (fields.size() < 8) continue;
    faces.push_back({{{folder + '/' + fields[0], NumberOf(fields[1]), {}}, fields[2], fields[3], fields[6] == "1"},
                     NumberOf(fields[4]),
                     fields[5] == "1",
                     fields[7] == "1"});
  }
}

FolderFace FactsOf(FT_Face ft, const std::string& file, int index) {
  FolderFace face;
  face.listed = {
      {file, index, {}}, ft->family_name ? ft->family_name : "", ft->style_name ? ft->style_name : "", false};
  face.listed.variable = FT_HAS_MULTIPLE_MASTERS(ft);
  const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(ft, FT_SFNT_OS2));
  const bool known = os2 && os2->version != 0xFFFF && os2->usWeightClass;
  face.weight = known ? os2->usWeightClass : ft->style_flags & FT_STYLE_FLAG_BOLD ? 700 : 400;
  face.italic = ft->style_flags & FT_STYLE_FLAG_ITALIC;
  face.colour = FT_HAS_COLOR(ft);
  return face;
}

void ReadFile(FT_Library library, const std::string& file, std::vector<FolderFace>& faces) {
  for (int index = 0, count = 1; index < count; ++index) {
    FT_Face ft = nullptr;
    if (FT_New_Face(library, file.c_str(), index, &ft)) return;
    const OwnedFace owned(ft);
    count = static_cast<int>(ft->num_faces);
    if (ft->family_name && (FT_IS_SCALABLE(ft) || FT_HAS_COLOR(ft))) faces.push_back(FactsOf(ft, file, index));
  }
}

void ReadOthers(const std::string& folder, std::vector<FolderFace>& faces) {
  std::error_code error;
  std::vector<std::string> files;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string file = entry->path().string(), kind = Lowered(entry->path().extension().string());
    const bool listed =
        std::any_of(faces.begin(), faces.end(), [&](const FolderFace& face) { return face.listed.key.file == file; });
    if (!listed && (kind == ".ttf" || kind == ".otf" || kind == ".ttc" || kind == ".woff")) files.push_back(file);
  }
  std::sort(files.begin(), files.end());
  FT_Library library = nullptr;
  if (files.empty() || FT_Init_FreeType(&library)) return;
  for (const std::string& file : files) ReadFile(library, file, faces);
  FT_Done_FreeType(library);
}

}  // namespace

void OpenFontList() {
  std::vector<FolderFace> faces;
  ReadIndex(FolderPath(), faces);
  ReadOthers(FolderPath(), faces);
  TheFolder().faces = std::move(faces);
}

bool HasFonts() { return !FolderFaces().empty(); }

const std::vector<FolderFace>& FolderFaces() { return TheFolder().faces; }

std::string FamilyOf(const std::string& name) {
  const auto listed = [](const std::string& family) -> std::string {
    for (const FolderFace& face : FolderFaces()) {
      if (EqualsIgnoringCase(face.listed.family, family)) return face.listed.family;
    }
    return {};
  };
  if (std::string family = listed(name); !family.empty()) return family;
  for (const auto& alias : kAliases) {
    if (EqualsIgnoringCase(alias.name, name)) return listed(alias.family);
  }
  return {};
}

const FolderFace* FindStyledFace(const std::string& name) {
  for (const FolderFace& face : FolderFaces()) {
    if (!face.listed.variable && EqualsIgnoringCase(face.listed.family + ' ' + face.listed.style, name)) return &face;
  }
  return nullptr;
}

bool IsRunsOwnFont(const std::string& family) {
  const FontFile& own = CurrentTextRun().fontFile;
  return !own.path.empty() && EqualsIgnoringCase(own.family, family);
}

std::vector<ListedFace> ListedFaces() {
  std::vector<ListedFace> faces;
  for (const FolderFace& face : FolderFaces()) faces.push_back(face.listed);
  return faces;
}

std::vector<std::string> FontFamilies() {
  if (!OpenEngine()) return {};
  std::map<std::string, std::string> byFolded;
  for (const FolderFace& face : FolderFaces()) byFolded.try_emplace(Lowered(face.listed.family), face.listed.family);
  std::vector<std::string> families;
  for (auto& [folded, family] : byFolded) families.push_back(std::move(family));
  return families;
}

std::string FamilyUsed(const FontRequest& font) {
  if (!OpenEngine()) return {};
  if (IsRunsOwnFont(font.family)) return font.family;
  const std::string family = FamilyOf(font.family);
  if (!family.empty() || FindStyledFace(font.family)) {
    const bool generic = EqualsIgnoringCase(font.family, "sans-serif") || EqualsIgnoringCase(font.family, "serif") ||
                         EqualsIgnoringCase(font.family, "monospace");
    return family.empty() || generic || EqualsIgnoringCase(family, font.family) ? font.family : family;
  }
  const Selection& selection = Select(font);
  const char* name = selection.face ? selection.face->face->family_name : nullptr;
  return name ? name : "";
}

bool HasFontFamily(const std::string& family) {
  if (family.empty() || !OpenEngine()) return false;
  return IsRunsOwnFont(family) || !FamilyOf(family).empty() || FindStyledFace(family);
}

bool IsStyledFontName(const std::string& name) {
  return OpenEngine() && FamilyOf(name).empty() && FindStyledFace(name);
}

}  // namespace glyphmotion
