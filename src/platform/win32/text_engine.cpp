// SPDX-License-Identifier: MIT
// Text through GDI (metrics, names) and the flat interface of GDI+ (boxes and glyphs). Both take a font by its cell
// height, so that they mean the same face at the same size.
#include "platform/text_engine.h"

#include <algorithm>
#include <exception>
#include <new>
#include <optional>
#include <utility>

#include "platform/run_state.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_headers.h"

namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

namespace glyphmotion {
namespace {

using namespace Gdiplus;
using namespace Gdiplus::DllExports;

/// One thing of GDI+, deleted when it goes.
template <typename T, GpStatus(WINGDIPAPI* Delete)(T*)>
struct Owned {
  T* thing = nullptr;
  Owned() = default;
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() { Reset(); }
  void Reset() {
    if (T* old = std::exchange(thing, nullptr)) Delete(old);
  }
  T** operator&() { return &thing; }
  operator T*() const { return thing; }
};

GpStatus WINGDIPAPI DisposeBitmap(GpBitmap* bitmap) { return GdipDisposeImage(bitmap); }
GpStatus WINGDIPAPI DeleteSolid(GpSolidFill* brush) { return GdipDeleteBrush(brush); }

using OwnedFont = Owned<GpFont, GdipDeleteFont>;
using OwnedFamily = Owned<GpFontFamily, GdipDeleteFontFamily>;
using OwnedGraphics = Owned<GpGraphics, GdipDeleteGraphics>;
using OwnedBitmap = Owned<GpBitmap, DisposeBitmap>;
using OwnedBrush = Owned<GpSolidFill, DeleteSolid>;
using OwnedPen = Owned<GpPen, GdipDeletePen>;
using OwnedPath = Owned<GpPath, GdipDeletePath>;
using OwnedFormat = Owned<GpStringFormat, GdipDeleteStringFormat>;

/// The font asked for last, as GDI+ has it: a text asks for the same one character after character.
struct FontInUse {
  std::optional<FontRequest> request;
  OwnedFont font;
  OwnedFamily family;
  REAL em = 0;  ///< pixels
};

struct Engine {
  int starts = 0;
  ULONG_PTR token = 0;
  HDC context = nullptr;  ///< a memory context, for fonts and measures
  FontInUse* inUse = nullptr;
};

/// A run's; its things of GDI+ are for one thread at a time.
Engine& TheEngine() { return CurrentRun().Member<Engine>(); }

LOGFONTW LogFontOf(const FontRequest& request) {
  LOGFONTW font{};
  font.lfHeight = std::max(request.cellHeight, 1);
  font.lfWeight = request.bold ? FW_BOLD : FW_NORMAL;
  font.lfItalic = request.italic;
  font.lfCharSet = DEFAULT_CHARSET;
  const std::wstring name = WideOf(request.family);
  std::copy_n(name.data(), std::min<std::size_t>(name.size(), LF_FACESIZE - 1), font.lfFaceName);
  return font;
}

INT StyleOf(const FontRequest& request) {
  return (request.bold ? FontStyleBold : 0) | (request.italic ? FontStyleItalic : 0);
}

/// The em of a cell as high as asked, by the family's own proportions.
REAL EmOfCell(GpFontFamily* family, const FontRequest& request) {
  UINT16 em = 0, ascent = 0, descent = 0;
  const INT style = StyleOf(request);
  if (GdipGetEmHeight(family, style, &em) != Ok || GdipGetCellAscent(family, style, &ascent) != Ok ||
      GdipGetCellDescent(family, style, &descent) != Ok || ascent + descent == 0) {
    return static_cast<REAL>(request.cellHeight);
  }
  return static_cast<REAL>(request.cellHeight) * em / static_cast<REAL>(ascent + descent);
}

/// Where GDI+ does not know the face that GDI would take (it has no bitmap fonts), its own sans-serif stands in.
bool OpenFont(const FontRequest& request, FontInUse& use) {
  use.request.reset();
  use.font.Reset();
  use.family.Reset();
  const LOGFONTW logFont = LogFontOf(request);
  const bool opened = GdipCreateFontFromLogfontW(TheEngine().context, &logFont, &use.font) == Ok && use.font &&
                      GdipGetFamily(use.font, &use.family) == Ok;
  if (!opened) {
    use.font.Reset();
    use.family.Reset();
    if (GdipGetGenericFontFamilySansSerif(&use.family) != Ok) return false;
    const REAL em = EmOfCell(use.family, request);
    if (GdipCreateFont(use.family, em, StyleOf(request), UnitPixel, &use.font) != Ok) return false;
  }
  if (GdipGetFontSize(use.font, &use.em) != Ok || use.em <= 0) return false;
  Unit unit = UnitPixel;
  if (GdipGetFontUnit(use.font, &unit) == Ok && unit == UnitPoint) {
    use.em = use.em * static_cast<REAL>(GetDeviceCaps(TheEngine().context, LOGPIXELSY)) / 72;
  }
  use.request = request;
  return true;
}

/// The font, or null. Valid until another is asked for.
FontInUse* UseFont(const FontRequest& request) {
  if (!TheEngine().starts || !TheEngine().inUse) return nullptr;
  FontInUse& use = *TheEngine().inUse;
  if (use.request == request) return &use;
  return OpenFont(request, use) ? &use : nullptr;
}

/// One character in UTF-16.
struct WideCharacter {
  wchar_t units[2] = {};
  INT count = 0;
  explicit WideCharacter(char32_t character) {
    if (character < 0x10000) {
      units[count++] = static_cast<wchar_t>(character);
    } else {
      units[count++] = static_cast<wchar_t>(0xD7C0 + (character >> 10));
      units[count++] = static_cast<wchar_t>(0xDC00 + (character & 0x3FF));
    }
  }
};

/// A blank measures its two margins only. Not every make of GDI+ leaves a trailing blank's advance out, so it is not
/// asked.
bool MeasureBox(const FontInUse& use, GpGraphics* graphics, char32_t character, GlyphBox& box) {
  const WideCharacter text(character);
  const RectF nowhere{};
  RectF bounds{};
  if (GdipMeasureString(graphics, text.units, text.count, use.font, &nowhere, nullptr, &bounds, nullptr, nullptr) !=
      Ok) {
    return false;
  }
  box.width = character == U' ' ? use.em / 3 : bounds.Width;
  box.height = bounds.Height;
  return true;
}

/// A black bitmap of the box, ready to be drawn on.
struct Canvas {
  int width = 0, height = 0;
  OwnedBitmap bitmap;
  OwnedGraphics graphics;

  explicit operator bool() const { return graphics.thing != nullptr; }
};

bool MakeCanvas(const FontInUse& use, char32_t character, Canvas& canvas) {
  OwnedGraphics measuring;
  GlyphBox box;
  if (GdipCreateFromHDC(TheEngine().context, &measuring) != Ok || !MeasureBox(use, measuring, character, box))
    return false;
  canvas.width = std::max(static_cast<int>(box.width), 1);
  canvas.height = std::max(static_cast<int>(box.height), 1);
  return GdipCreateBitmapFromScan0(canvas.width, canvas.height, 0, PixelFormat24bppRGB, nullptr, &canvas.bitmap) ==
             Ok &&
         GdipGetImageGraphicsContext(canvas.bitmap, &canvas.graphics) == Ok &&
         GdipGraphicsClear(canvas.graphics, 0xFF000000) == Ok;
}

/// White on black is coverage. Some makes smooth what was asked for in one bit; half covered counts as covered then.
bool ReadCoverage(Canvas& canvas, bool antialias, GlyphBitmap& glyph) {
  std::vector<std::uint8_t> coverage(static_cast<std::size_t>(canvas.width) * static_cast<std::size_t>(canvas.height));
  GdipFlush(canvas.graphics, FlushIntentionSync);
  const GpRect all(0, 0, canvas.width, canvas.height);
  BitmapData data{};
  if (GdipBitmapLockBits(canvas.bitmap, &all, ImageLockModeRead, PixelFormat24bppRGB, &data) != Ok) return false;
  std::uint8_t* out = coverage.data();
  for (int y = 0; y < canvas.height; ++y) {
    const std::uint8_t* row = static_cast<const std::uint8_t*>(data.Scan0) + std::ptrdiff_t{y} * data.Stride;
    for (int x = 0; x < canvas.width; ++x) {
      const std::uint8_t value = row[3 * x];
      *out++ = antialias ? value : value < 128 ? 0 : 255;
    }
  }
  GdipBitmapUnlockBits(canvas.bitmap, &data);
  glyph.width = canvas.width;
  glyph.height = canvas.height;
  glyph.coverage = std::move(coverage);
  return true;
}

bool DrawString(const FontInUse& use, Canvas& canvas, char32_t character, bool antialias) {
  GdipSetTextRenderingHint(canvas.graphics,
                           antialias ? TextRenderingHintAntiAlias : TextRenderingHintSingleBitPerPixel);
  OwnedBrush white;
  const WideCharacter text(character);
  const RectF origin{};
  return GdipCreateSolidFill(0xFFFFFFFF, &white) == Ok &&
         GdipDrawString(canvas.graphics, text.units, text.count, use.font, &origin, nullptr, white) == Ok;
}

bool DrawPath(const FontInUse& use, Canvas& canvas, char32_t character, bool antialias, double penWidth) {
  GdipSetSmoothingMode(canvas.graphics, antialias ? SmoothingModeHighQuality : SmoothingModeNone);
  OwnedPath path;
  OwnedFormat format;
  const WideCharacter text(character);
  const RectF origin{};
  if (GdipCreatePath(FillModeWinding, &path) != Ok || GdipCreateStringFormat(0, LANG_NEUTRAL, &format) != Ok ||
      GdipAddPathString(path, text.units, text.count, use.family, StyleOf(*use.request), use.em, &origin, format) !=
          Ok) {
    return false;
  }
  if (penWidth > 0) {
    OwnedPen pen;
    return GdipCreatePen1(0xFFFFFFFF, static_cast<REAL>(penWidth), UnitPixel, &pen) == Ok &&
           GdipSetPenLineJoin(pen, LineJoinRound) == Ok && GdipDrawPath(canvas.graphics, pen, path) == Ok;
  }
  OwnedBrush white;
  return GdipCreateSolidFill(0xFFFFFFFF, &white) == Ok && GdipFillPath(canvas.graphics, white, path) == Ok;
}

/// A font of GDI, selected into the engine's context while it is looked at.
struct SelectedFont {
  HFONT font;
  HGDIOBJ before = nullptr;
  explicit SelectedFont(const FontRequest& request) {
    const LOGFONTW logFont = LogFontOf(request);
    font = CreateFontIndirectW(&logFont);
    if (font) before = SelectObject(TheEngine().context, font);
  }
  SelectedFont(const SelectedFont&) = delete;
  SelectedFont& operator=(const SelectedFont&) = delete;
  ~SelectedFont() {
    if (before) SelectObject(TheEngine().context, before);
    if (font) DeleteObject(font);
  }
};

/// A screen's context for questions that may come before the engine runs.
struct ScreenContext {
  HDC context = CreateCompatibleDC(nullptr);
  ScreenContext() = default;
  ScreenContext(const ScreenContext&) = delete;
  ScreenContext& operator=(const ScreenContext&) = delete;
  ~ScreenContext() { DeleteDC(context); }
};

/// Calls `take` for every face that the enumeration of `name` (empty: one of each family) finds.
template <typename Take>
void EnumerateFamilies(const std::wstring& name, Take take) {
  LOGFONTW wanted{};
  wanted.lfCharSet = DEFAULT_CHARSET;
  std::copy_n(name.data(), std::min<std::size_t>(name.size(), LF_FACESIZE - 1), wanted.lfFaceName);
  const auto each = [](const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM parameter) -> int {
    try {
      (*reinterpret_cast<Take*>(parameter))(font->lfFaceName);
      return 1;
    } catch (const std::exception&) {
      return 0;
    }
  };
  const ScreenContext screen;
  EnumFontFamiliesExW(screen.context, &wanted, each, reinterpret_cast<LPARAM>(&take), 0);
}

}  // namespace

bool StartTextEngine() noexcept try {
  Engine& engine = TheEngine();
  if (engine.starts++) return true;
  GdiplusStartupInput input;
  engine.context = CreateCompatibleDC(nullptr);
  engine.inUse = new (std::nothrow) FontInUse;
  if (engine.context && engine.inUse && GdiplusStartup(&engine.token, &input, nullptr) == Ok) return true;
  engine.token = 0;
  StopTextEngine();
  return false;
} catch (const std::bad_alloc&) {
  return false;
}

void StopTextEngine() noexcept {
  Engine& engine = TheEngine();
  if (!engine.starts || --engine.starts) return;
  delete std::exchange(engine.inUse, nullptr);
  if (engine.token) GdiplusShutdown(std::exchange(engine.token, 0));
  if (engine.context) DeleteDC(std::exchange(engine.context, nullptr));
}

std::vector<std::string> FontFamilies() {
  std::vector<std::wstring> names;
  EnumerateFamilies(L"", [&](const wchar_t* name) {
    if (*name && *name != L'@') names.emplace_back(name);  // with an @: the same family, for vertical text
  });
  const auto compare = [](const std::wstring& a, const std::wstring& b) {
    return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE);
  };
  std::sort(names.begin(), names.end(), [&](const auto& a, const auto& b) { return compare(a, b) == CSTR_LESS_THAN; });
  names.erase(std::unique(names.begin(), names.end(),
                          [&](const auto& a, const auto& b) { return compare(a, b) == CSTR_EQUAL; }),
              names.end());
  std::vector<std::string> families;
  for (const std::wstring& name : names) families.push_back(NarrowOf(name));
  return families;
}

bool HasFontFamily(const std::string& family) {
  bool found = false;
  if (!family.empty()) EnumerateFamilies(WideOf(family), [&](const wchar_t*) { found = true; });
  return found;
}

FontMetrics MeasureFont(const FontRequest& font) noexcept try {
  TEXTMETRICW metrics{};
  const SelectedFont selected(font);
  if (!TheEngine().context || !GetTextMetricsW(TheEngine().context, &metrics)) return {};
  return {static_cast<int>(metrics.tmHeight), static_cast<int>(metrics.tmAscent)};
} catch (const std::bad_alloc&) {
  return {};
}

bool MeasureGlyph(const FontRequest& font, char32_t character, GlyphBox& box) try {
  const FontInUse* use = UseFont(font);
  OwnedGraphics graphics;
  return use && GdipCreateFromHDC(TheEngine().context, &graphics) == Ok && MeasureBox(*use, graphics, character, box);
} catch (const std::bad_alloc&) {
  return false;
}

bool RenderGlyph(const FontRequest& font, char32_t character, bool antialias, GlyphBitmap& glyph) noexcept try {
  const FontInUse* use = UseFont(font);
  Canvas canvas;
  return use && MakeCanvas(*use, character, canvas) && DrawString(*use, canvas, character, antialias) &&
         ReadCoverage(canvas, antialias, glyph);
} catch (const std::bad_alloc&) {
  return false;
}

bool RenderGlyphOutline(const FontRequest& font, char32_t character, bool antialias, double penWidth,
                        GlyphBitmap& glyph) noexcept try {
  const FontInUse* use = UseFont(font);
  Canvas canvas;
  return use && MakeCanvas(*use, character, canvas) && DrawPath(*use, canvas, character, antialias, penWidth) &&
         ReadCoverage(canvas, antialias, glyph);
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace glyphmotion
