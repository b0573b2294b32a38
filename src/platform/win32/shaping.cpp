// SPDX-License-Identifier: MIT
// Text that cannot be drawn character by character, through Uniscribe: it puts a line in order, shapes each stretch of
// one script, and says where clusters begin.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>

#include "platform/shaped_rows.h"
#include "platform/text_run.h"
#include "platform/text_scripts.h"
#include "platform/win32/clusters.h"
#include "platform/win32/wide_text.h"

namespace glyphmotion {

struct ClusterRow {
  std::string key;
  std::vector<Cluster> clusters;
  ShapedText text;
  char32_t first = 0;
};

struct ClusterStore : ShapedRows<ClusterRow> {};

namespace {

// What Windows has for the scripts that few faces have, and what other systems that run this library have.
constexpr const wchar_t* kLenders[] = {
    L"Segoe UI", L"Tahoma", L"Arial",         L"Nirmala UI",     L"Mangal",          L"Leelawadee UI", L"Khmer UI",
    L"Ebrima",   L"Gadugi", L"Malgun Gothic", L"Segoe UI Emoji", L"Segoe UI Symbol", L"DejaVu Sans",   L"Noto Sans"};

ClusterStore& Store() {
  std::shared_ptr<ClusterStore>& store = CurrentTextRun().clusters;
  if (!store) store = std::make_shared<ClusterStore>();
  return *store;
}

/// A font selected into a memory context of its own, with Uniscribe's cache of it.
class ShapingFont {
 public:
  explicit ShapingFont(const LOGFONTW& logFont) : font_(CreateFontIndirectW(&logFont)) {
    if (font_) SelectObject(context_, font_);
    GetTextMetricsW(context_, &metrics_);
  }
  ShapingFont(const ShapingFont&) = delete;
  ShapingFont& operator=(const ShapingFont&) = delete;
  ~ShapingFont() {
    ScriptFreeCache(&cache_);
    DeleteDC(context_);
    if (font_) DeleteObject(font_);
  }
  HDC Context() const { return context_; }
  SCRIPT_CACHE* Cache() { return &cache_; }
  int Ascent() const { return static_cast<int>(metrics_.tmAscent); }
  int Em() const { return static_cast<int>(metrics_.tmHeight - metrics_.tmInternalLeading); }
  int Cell() const { return static_cast<int>(metrics_.tmHeight); }

 private:
  HDC context_ = CreateCompatibleDC(nullptr);
  HFONT font_;
  SCRIPT_CACHE cache_ = nullptr;
  TEXTMETRICW metrics_{};
};

std::wstring WideLine(std::u32string_view text) {
  std::wstring wide;
  for (const char32_t c : text) {
    if (c < 0x10000) {
      wide += static_cast<wchar_t>(c < 32 ? 32 : c);
    } else {
      wide += static_cast<wchar_t>(0xD7C0 + (c >> 10));
      wide += static_cast<wchar_t>(0xDC00 + (c & 0x3FF));
    }
  }
  return wide;
}

bool IsRightToLeft(const std::wstring& line) {
  const TextDirection asked = CurrentTextRun().options.direction;
  if (asked != TextDirection::Auto) return asked == TextDirection::RightToLeft;
  std::vector<WORD> types(line.size());
  if (line.empty() || !GetStringTypeW(CT_CTYPE2, line.data(), static_cast<int>(line.size()), types.data()))
    return false;
  for (const WORD type : types) {
    if (type == C2_LEFTTORIGHT || type == C2_RIGHTTOLEFT) return type == C2_RIGHTTOLEFT;
  }
  return false;
}

/// One stretch of one script and direction.
struct Run {
  const wchar_t* text = nullptr;
  int length = 0;
  SCRIPT_ANALYSIS analysis{};
  std::vector<WORD> glyphs, clusterOf;  // of a character: the first glyph of its cluster
  std::vector<SCRIPT_VISATTR> attributes;
  std::vector<int> advances;
  std::vector<GOFFSET> offsets;
};

/// False when the font lacks a glyph.
bool ShapeRun(ShapingFont& font, Run& run) {
  const int most = run.length * 3 / 2 + 16;
  run.glyphs.resize(static_cast<std::size_t>(most));
  run.attributes.resize(run.glyphs.size());
  run.clusterOf.resize(static_cast<std::size_t>(run.length));
  int count = 0;
  const HRESULT shaped = ScriptShape(font.Context(), font.Cache(), run.text, run.length, most, &run.analysis,
                                     run.glyphs.data(), run.clusterOf.data(), run.attributes.data(), &count);
  if (FAILED(shaped)) return false;
  run.glyphs.resize(static_cast<std::size_t>(count));
  run.attributes.resize(run.glyphs.size());
  run.advances.resize(run.glyphs.size());
  run.offsets.resize(run.glyphs.size());
  ABC extent{};
  if (FAILED(ScriptPlace(font.Context(), font.Cache(), run.glyphs.data(), count, run.attributes.data(), &run.analysis,
                         run.advances.data(), run.offsets.data(), &extent))) {
    return false;
  }
  SCRIPT_FONTPROPERTIES properties{};
  properties.cBytes = sizeof properties;
  ScriptGetFontProperties(font.Context(), font.Cache(), &properties);
  return std::none_of(run.glyphs.begin(), run.glyphs.end(),
                      [&](WORD g) { return g == 0 || g == properties.wgDefault; });
}

/// Shapes one line into clusters.
class LineShaper {
 public:
  LineShaper(const FontRequest& font, ClusterRow& row) : base_(LogFontOf(font)), own_(base_), row_(row) {}

  void Add(const std::wstring& line, bool rightToLeft) {
    if (line.empty()) return;
    SCRIPT_CONTROL control{};
    SCRIPT_STATE state{};
    state.uBidiLevel = rightToLeft ? 1 : 0;
    std::vector<SCRIPT_ITEM> items(line.size() + 2);
    int count = 0;
    if (FAILED(ScriptItemize(line.data(), static_cast<int>(line.size()), static_cast<int>(items.size()) - 1, &control,
                             &state, items.data(), &count))) {
      return;
    }
    std::vector<BYTE> levels;
    for (int i = 0; i < count; ++i)
      levels.push_back(static_cast<BYTE>(items[static_cast<std::size_t>(i)].a.s.uBidiLevel));
    std::vector<int> order(levels.size());
    ScriptLayout(count, levels.data(), order.data(), nullptr);
    for (const int i : order) {
      const SCRIPT_ITEM &item = items[static_cast<std::size_t>(i)], &next = items[static_cast<std::size_t>(i) + 1];
      Run run;
      run.text = line.data() + item.iCharPos;
      run.length = next.iCharPos - item.iCharPos;
      run.analysis = item.a;
      if (run.length > 0) AddRun(run);
    }
  }

 private:
  void AddRun(Run& run) {
    if (ShapeRun(own_, run)) return AddClusters(run, base_, 0);
    for (const wchar_t* family : kLenders) {
      LOGFONTW other = base_;
      other.lfHeight = -own_.Em();
      std::wmemset(other.lfFaceName, 0, LF_FACESIZE);
      std::copy_n(family, std::min<std::size_t>(std::wcslen(family), LF_FACESIZE - 1), other.lfFaceName);
      ShapingFont font(other);
      Run lent = run;
      if (ShapeRun(font, lent)) return AddClusters(lent, other, own_.Ascent() - font.Ascent());
    }
    run.analysis.eScript = SCRIPT_UNDEFINED;
    ShapeRun(own_, run);
    AddClusters(run, base_, 0);
  }

  /// Glyphs come from left to right; a cluster's first one is marked.
  void AddClusters(const Run& run, const LOGFONTW& font, int rise) {
    const std::size_t count = run.glyphs.size();
    const auto startsAt = [&](std::size_t glyph) {
      return std::find(run.clusterOf.begin(), run.clusterOf.end(), static_cast<WORD>(glyph));
    };
    for (std::size_t begin = 0, end = 0; begin < count; begin = end) {
      // From right to left a cluster's first glyph, in the order of reading, is its last one here.
      if (run.analysis.fRTL) {
        for (end = begin; end < count && startsAt(end) == run.clusterOf.end(); ++end) {
        }
        end = std::min(end + 1, count);
      } else {
        for (end = begin + 1; end < count && startsAt(end) == run.clusterOf.end(); ++end) {
        }
      }
      Cluster cluster;
      cluster.font = font;
      cluster.analysis = run.analysis;
      const auto from = static_cast<std::ptrdiff_t>(begin), to = static_cast<std::ptrdiff_t>(end);
      cluster.glyphs.assign(run.glyphs.begin() + from, run.glyphs.begin() + to);
      cluster.advances.assign(run.advances.begin() + from, run.advances.begin() + to);
      cluster.offsets.assign(run.offsets.begin() + from, run.offsets.begin() + to);
      for (const int advance : cluster.advances) cluster.advance += advance;
      cluster.em = own_.Em();
      cluster.cell = own_.Cell();
      cluster.rise = rise;
      Describe(run, startsAt(run.analysis.fRTL ? end - 1 : begin) - run.clusterOf.begin(), cluster);
      row_.text.codes.push_back(static_cast<char32_t>(row_.clusters.size()));
      row_.clusters.push_back(std::move(cluster));
    }
  }

  static void Describe(const Run& run, std::ptrdiff_t character, Cluster& cluster) {
    if (character < 0 || character >= run.length) return;
    cluster.blank = run.text[character] == L' ' || run.text[character] == 0xA0;
    // A letter that is not the last of its word is joined to the next one, or may be: no space is put there.
    const auto letter = [&](std::ptrdiff_t i) {
      WORD type = 0;
      return i >= 0 && i < run.length && GetStringTypeW(CT_CTYPE1, run.text + i, 1, &type) && (type & C1_ALPHA);
    };
    const wchar_t c = run.text[character];
    const bool joining = (c >= 0x600 && c <= 0x8FF && !(c >= 0x780 && c <= 0x7BF)) || (c >= 0x900 && c <= 0xA7F);
    cluster.joined = joining && letter(character) && letter(character + (run.analysis.fRTL ? -1 : 1));
  }

  LOGFONTW base_;
  ShapingFont own_;
  ClusterRow& row_;
};

/// A bitmap of 32 bits to draw on.
struct Canvas {
  HDC context = CreateCompatibleDC(nullptr);
  HBITMAP bitmap = nullptr;
  std::uint32_t* pixels = nullptr;
  Canvas(int width, int height) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    bitmap = CreateDIBSection(context, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    pixels = static_cast<std::uint32_t*>(bits);
    if (bitmap) SelectObject(context, bitmap);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas() {
    DeleteDC(context);
    if (bitmap) DeleteObject(bitmap);
  }
};

}  // namespace

std::shared_ptr<const Cluster> FindCluster(char32_t code) {
  return IsCluster(code) && CurrentTextRun().clusters ? Store().Find(code) : nullptr;
}

ShapedText ShapeText(const FontRequest& font, std::u32string_view text) {
  if (!WantsShaping(text)) return {std::u32string(text), {}};
  ClusterRow row;
  row.key = RowKey(font, text);
  ShapedText known;
  if (Store().FindByKey(row.key, known)) return known;
  LineShaper shaper(font, row);
  ForEachLine(text, [&](std::u32string_view part) {
    if (!row.text.rightToLeft.empty()) row.text.codes.push_back(kLineBreak);
    const std::wstring line = WideLine(part);
    row.text.rightToLeft.push_back(IsRightToLeft(line));
    shaper.Add(line, row.text.rightToLeft.back());
  });
  return Store().Keep(std::move(row));
}

GlyphBox BoxOf(const Cluster& cluster) {
  GlyphBox box;
  box.width = cluster.advance + cluster.em / 3.0;
  box.height = cluster.cell;
  box.advance = cluster.advance;
  box.joined = cluster.joined;
  box.blank = cluster.blank;
  return box;
}

bool DrawCluster(const Cluster& cluster, bool antialias, GlyphBitmap& glyph) {
  const int margin = cluster.em / 2, origin = margin + (cluster.em + 3) / 6;
  const int width = cluster.advance + 2 * margin + cluster.em / 3, height = cluster.cell + 2 * margin;
  if (width < 1 || height < 1 || width > 16384 || height > 16384) return false;
  const Canvas canvas(width, height);
  if (!canvas.pixels) return false;
  LOGFONTW logFont = cluster.font;
  logFont.lfQuality = antialias ? ANTIALIASED_QUALITY : NONANTIALIASED_QUALITY;
  const HFONT font = CreateFontIndirectW(&logFont);
  const HGDIOBJ before = SelectObject(canvas.context, font);
  SetTextColor(canvas.context, RGB(255, 255, 255));
  SetBkMode(canvas.context, TRANSPARENT);
  // Glyph by glyph, since not every make of ScriptTextOut takes glyphs that another device context shaped.
  const UINT options = cluster.analysis.fNoGlyphIndex ? 0 : ETO_GLYPH_INDEX;
  int x = origin;
  for (std::size_t i = 0; i < cluster.glyphs.size() && !cluster.blank; ++i) {
    const wchar_t code = cluster.glyphs[i];
    ExtTextOutW(canvas.context, x + static_cast<int>(cluster.offsets[i].du),
                margin + cluster.rise - static_cast<int>(cluster.offsets[i].dv), options, nullptr, &code, 1, nullptr);
    x += cluster.advances[i];
  }
  GdiFlush();
  SelectObject(canvas.context, before);
  DeleteObject(font);
  glyph.left = glyph.top = -margin;
  glyph.width = width;
  glyph.height = height;
  const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  glyph.coverage.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto value = static_cast<std::uint8_t>(canvas.pixels[i] >> 8);
    glyph.coverage[i] = antialias ? value : value < 128 ? 0 : 255;
  }
  return true;
}

}  // namespace glyphmotion
