// SPDX-License-Identifier: MIT
#include "platform/portable/font_families.h"

#include <map>

namespace glyphmotion {
namespace {

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

const FcChar8* Utf8(const std::string& text) { return reinterpret_cast<const FcChar8*>(text.c_str()); }

FontSet ListFonts(FcPattern* filter, std::initializer_list<const char*> fields) {
  FcObjectSet* wanted = Required(FcObjectSetCreate());
  bool complete = true;
  for (const char* field : fields) complete = FcObjectSetAdd(wanted, field) && complete;
  FontSet fonts(complete ? FcFontList(nullptr, filter, wanted) : nullptr);
  FcObjectSetDestroy(wanted);
  Required(fonts.get());
  return fonts;
}

bool IsGeneric(const std::string& family) {
  for (const char* name : {"sans-serif", "serif", "monospace"}) {
    if (FcStrCmpIgnoreCase(Utf8(family), reinterpret_cast<const FcChar8*>(name)) == 0) return true;
  }
  return false;
}

bool FindFamily(const std::string& family) {
  const FontSet fonts = InstalledFonts();
  if (fonts->nfont > 0 && IsGeneric(family)) return true;
  if (IsInstalled(*fonts, Utf8(family))) return true;
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

/// True when `name` is the font's full name, or a family of it and its style.
bool IsNamed(const FcPattern* font, const std::string& name) {
  const auto same = [&](const std::string& text) {
    return !text.empty() && FcStrCmpIgnoreCase(Utf8(text), Utf8(name)) == 0;
  };
  constexpr int kMostNames = 16;
  for (int n = 0; n < kMostNames; ++n) {
    const std::string family = TextOf(font, FC_FAMILY, n), full = TextOf(font, FC_FULLNAME, n);
    if (family.empty() && full.empty()) break;
    if (same(full)) return true;
    for (int s = 0; !family.empty() && s < kMostNames; ++s) {
      const std::string style = TextOf(font, FC_STYLE, s);
      if (style.empty()) break;
      if (same(family + ' ' + style)) return true;
    }
  }
  return false;
}

}  // namespace

std::string TextOf(const FcPattern* pattern, const char* field, int n) {
  FcChar8* text = nullptr;
  return FcPatternGetString(pattern, field, n, &text) == FcResultMatch ? reinterpret_cast<const char*>(text) : "";
}

int NumberOf(const FcPattern* pattern, const char* field, int otherwise) {
  int number = otherwise;
  return FcPatternGetInteger(pattern, field, 0, &number) == FcResultMatch ? number : otherwise;
}

FontSet InstalledFaces() {
  const Pattern all(Required(FcPatternCreate()));
  Required(FcPatternAddBool(all.get(), FC_SCALABLE, FcTrue));
  return ListFonts(all.get(),
                   {FC_FAMILY, FC_STYLE, FC_FULLNAME, FC_FILE, FC_INDEX, FC_WEIGHT, FC_SLANT, FC_WIDTH, FC_VARIABLE});
}

FontSet InstalledFonts() {
  const Pattern all(Required(FcPatternCreate()));
  Required(FcPatternAddBool(all.get(), FC_OUTLINE, FcTrue));
  return ListFonts(all.get(), {FC_FAMILY, FC_FAMILYLANG});
}

void AddFamily(FcPattern* pattern, const std::string& family) {
  Required(FcPatternAddString(pattern, FC_FAMILY, Utf8(family)));
}

bool IsRunsOwnFont(const std::string& family) {
  const FontFile& own = CurrentTextRun().fontFile;
  return !own.path.empty() && FcStrCmpIgnoreCase(Utf8(own.family), Utf8(family)) == 0;
}

std::optional<StyledName> FindStyledName(const std::string& name) {
  if (name.find(' ') == name.npos || FindFamily(name)) return std::nullopt;
  const FontSet fonts = InstalledFaces();
  for (int i = 0; i < fonts->nfont; ++i) {
    const FcPattern* font = fonts->fonts[i];
    FcBool variable = FcFalse;
    if ((FcPatternGetBool(font, FC_VARIABLE, 0, &variable) == FcResultMatch && variable) || !IsNamed(font, name))
      continue;
    return StyledName{TextOf(font, FC_FAMILY), NumberOf(font, FC_WEIGHT, FC_WEIGHT_REGULAR),
                      NumberOf(font, FC_SLANT, FC_SLANT_ROMAN), NumberOf(font, FC_WIDTH, FC_WIDTH_NORMAL)};
  }
  return std::nullopt;
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

std::string FamilyUsed(const FontRequest& font) {
  if (!OpenEngine()) return {};
  if (IsRunsOwnFont(font.family) || IsGeneric(font.family) || IsInstalled(*InstalledFonts(), Utf8(font.family)))
    return font.family;
  const Selection& selection = Select(font);
  if (selection.styled) return font.family;
  const char* name = selection.face ? selection.face->face->family_name : nullptr;
  return name ? name : "";
}

bool HasFontFamily(const std::string& family) {
  if (family.empty() || !OpenEngine()) return false;
  return IsRunsOwnFont(family) || FindFamily(family) || FindStyledName(family);
}

bool IsStyledFontName(const std::string& name) { return OpenEngine() && FindStyledName(name); }

}  // namespace glyphmotion
