// SPDX-License-Identifier: MIT
#include "text/compositing.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <utility>

#include "controls/material_control.h"
#include "controls/variables.h"
#include "image/filters.h"
#include "platform/encoding.h"
#include "platform/random.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kMaxFaceName = 259;
constexpr int kSmallestSize = 4;  // of a font, as in the dialog

struct DirectionRow {
  int textX, textY, shadowX, shadowY;  // factors of the shadow offset
};

// By direction index: up-left, up, up-right, right, left, down-left, down, down-right. Either the text or the shadow
// moves, so that neither ever lies at a negative place.
constexpr DirectionRow kDirections[8] = {{1, 1, 0, 0}, {0, 1, 0, 0}, {0, 1, 1, 0}, {0, 0, 1, 0},
                                         {1, 0, 0, 0}, {1, 0, 0, 1}, {0, 0, 0, 1}, {0, 0, 1, 1}};

void RaiseAlpha(std::uint8_t& level, int a) { level = static_cast<std::uint8_t>(std::min(255, level + a)); }

void BlendBytes(std::uint8_t* under, int blue, int green, int red, int a) {
  under[0] = BlendChannel(under[0], blue, a);
  under[1] = BlendChannel(under[1], green, a);
  under[2] = BlendChannel(under[2], red, a);
}

// Calls work(x, pixels, weight) for the weights of a mask's row that are not zero, in order. Most are none or all of
// the weight: groups of eight zeros are skipped, and eight full weights come in one call.
template <typename Work>
void ForEachWeight(const std::uint8_t* mask, int count, Work work) {
  constexpr int kGroup = 8;
  for (int x = 0; x < count;) {
    const int end = std::min(x + kGroup, count);
    std::uint64_t weights = 1;
    if (end == x + kGroup) std::memcpy(&weights, mask + x, kGroup);
    if (weights == 0) {
      x = end;
    } else if (weights == ~std::uint64_t{0}) {
      work(x, kGroup, 255);
      x = end;
    }
    for (; x < end; ++x) {
      if (mask[x]) work(x, 1, mask[x]);
    }
  }
}

// Blends `count` 24-bit pixels with the weights of a mask's row.
void BlendRow(std::uint8_t* under, const std::uint8_t* over, const std::uint8_t* mask, int count) {
  ForEachWeight(mask, count, [&](int x, int pixels, int a) {
    std::uint8_t* to = under + 3 * x;
    const std::uint8_t* from = over + 3 * x;
    if (a == 255) {
      std::memcpy(to, from, 3 * static_cast<std::size_t>(pixels));
    } else {
      BlendBytes(to, from[0], from[1], from[2], a);
    }
  });
}

// The same where a part of the mask, `painted`, has colours of its own, which come times that part.
void BlendPaintedRow(std::uint8_t* under, const std::uint8_t* over, const std::uint8_t* mask,
                     const std::uint8_t* colours, const std::uint8_t* painted, int count) {
  for (int x = 0; x < count; ++x, under += 3, over += 3, colours += 3) {
    const int a = mask[x], fill = std::max(0, a - painted[x]);
    if (a == 0) continue;
    for (int k = 0; k < 3; ++k) {
      under[k] =
          static_cast<std::uint8_t>(std::min(255, under[k] * (255 - a) / 255 + over[k] * fill / 255 + colours[k]));
    }
  }
}

void RaiseAlphaRow(std::uint8_t* plane, const std::uint8_t* mask, int count) {
  for (int x = 0; x < count; ++x) RaiseAlpha(plane[x], mask[x]);
}

// Guards the sizes in the material records of the run's dialog.
struct RecordLock {
  std::mutex mutex;
};

// Calls a hook that may be absent.
PackedDib Apply(const FrameComposer::Change& change, PackedDib dib) {
  return change && dib ? change(std::move(dib)) : std::move(dib);
}

}  // namespace

void BlendPixel(const DibView& bitmap, int x, int y, Colour colour, int a) noexcept {
  if (a == 0 || x < 0 || y < 0 || x >= bitmap.Width() || y >= bitmap.Height()) return;
  BlendBytes(bitmap.Row(y) + 3 * static_cast<std::size_t>(x), BlueOf(colour), GreenOf(colour), RedOf(colour), a);
}

void BlendPixel(const FrameLayers& layers, int x, int y, Colour colour, int a) noexcept {
  BlendPixel(layers.frame, x, y, colour, a);
  const DibView* alpha = layers.alpha;
  if (alpha && x >= 0 && y >= 0 && x < alpha->Width() && y < alpha->Height()) RaiseAlpha(alpha->Row(y)[x], a);
}

FrameComposer::FrameComposer(Dialog& dialog, const PanelRoles& roles, ScrollOffset scroll, bool preview,
                             RunCache& cache)
    : dialog_(dialog), roles_(roles), scroll_(scroll), cache_(cache) {
  TextLine& line = options.line;
  line.text = DecodeText(ReadText(dialog, ControlId::Text));
  line.font.family = ReadText(dialog, ControlId::Font).substr(0, kMaxFaceName);
  line.font.cellHeight = Number(ControlId::Size);
  line.font.bold = Check(ControlId::Bold);
  line.font.italic = Check(ControlId::Italic);
  line.antialias = Check(ControlId::Antialias);
  line.characterSpace = Number(ControlId::CharacterSpace);

  const auto numberOr = [&](int control, int otherwise) { return control ? Number(control) : otherwise; };
  options.fillOpacity = numberOr(roles.fillOpacity, 255);
  options.shadowOpacity = numberOr(roles.shadowOpacity, 255);
  options.softness = numberOr(roles.softness, 0);
  options.shadowOffset = numberOr(roles.shadowOffset, 0);
  options.shadowDirection = roles.shadowDirection ? ReadDirection(dialog, roles.shadowDirection) : 0;
  options.shadowEnable = roles.shadowEnable && Check(roles.shadowEnable);
  options.outlineEnable = roles.outlineEnable && Check(roles.outlineEnable);
  options.outlineColour = roles.outline ? ReadColour(dialog, roles.outline) : 0;
  options.alpha = !preview && Check(ControlId::AlphaTransparency);
  options.solidKey = Check(ControlId::AlphaTransparency) && Check(ControlId::AlphaBackground);

  options.margin = Number(ControlId::Pad);
  if (options.softness > 0) options.margin += 1 + options.softness / 10;
  if (options.outlineEnable && options.margin < 1) options.margin = 1;
  margin_ = options.margin;
}

bool FrameComposer::IsSolid(int control) const {
  const auto material = LockMaterial(dialog_, control);
  return material && material->Kind == kSolid;
}

// Rendering leaves the size in the record, which threads of a run share: each works on a copy.
PackedDib FrameComposer::RenderMaterial(int control, int width, int height) {
  const auto material = LockMaterial(dialog_, control);
  if (!material) return {};
  std::mutex& mutex = CurrentRun().Member<RecordLock>().mutex;
  Material copy;
  {
    const std::lock_guard lock(mutex);
    copy = *material;
  }
  PackedDib bitmap = cache_.materials.Render(copy, width, height);
  const std::lock_guard lock(mutex);
  TextureSpec& texture = material->Texture;
  texture.Left = copy.Texture.Left, texture.Top = copy.Texture.Top;
  texture.Right = copy.Texture.Right, texture.Bottom = copy.Texture.Bottom;
  TileSpec& tile = material->Tile;
  tile.Left = copy.Tile.Left, tile.Top = copy.Tile.Top;
  tile.Right = copy.Tile.Right, tile.Bottom = copy.Tile.Bottom;
  return bitmap;
}

// After the effect has changed the options, since shapes depend on the font.
TextMeasure FrameComposer::MeasureAt(const std::u32string& text, int size) {
  TextLine& line = options.line;
  line.font.cellHeight = size;
  ShapedText shaped = ShapeText(line.font, text);
  line.text = std::move(shaped.codes);
  line.text.push_back(U' ');
  line.rightToLeft = std::move(shaped.rightToLeft);
  line.align = CurrentTextRun().options.align;
  line.lineSpace = CurrentTextRun().options.lineSpace;
  return MeasureText(line, NumberVariable("AccentCompensation") != 0, cache_.glyphs);
}

// What an effect adds to the margin may be cut off.
bool FrameComposer::Fits(const TextMeasure& measure) const {
  const Canvas& canvas = CurrentCanvas();
  const int around = 2 * margin_ + (options.shadowEnable ? options.shadowOffset : 0);
  return (canvas.width == 0 || measure.width + around <= canvas.width) &&
         (canvas.height == 0 || measure.height + around + options.extraHeight <= canvas.height);
}

// With the largest font size, up to the requested one, at which the text fits the canvas; nothing when none does.
std::optional<TextMeasure> FrameComposer::MeasureToFit() {
  const std::u32string text = options.line.text;
  const int requested = options.line.font.cellHeight;
  Canvas& canvas = CurrentCanvas();
  if (!canvas) return MeasureAt(text, requested);
  if (cache_.fittedSize) return MeasureAt(text, cache_.fittedSize);
  TextMeasure measure = MeasureAt(text, requested);
  cache_.fittedSize = requested;
  if (Fits(measure)) return measure;
  if (!canvas.shrink) {
    canvas.cropped = true;
    return measure;
  }
  int fits = kSmallestSize, tooLarge = requested;
  if (requested <= fits || !Fits(MeasureAt(text, fits))) {
    canvas.tooSmall = true;
    return std::nullopt;
  }
  while (tooLarge - fits > 1 && !EndRequested()) {
    const int middle = fits + (tooLarge - fits) / 2;
    (Fits(MeasureAt(text, middle)) ? fits : tooLarge) = middle;
  }
  canvas.fittedSize = cache_.fittedSize = fits;
  return MeasureAt(text, fits);
}

// The sides of the frame, and where the text's own picture lies in it.
void FrameComposer::Place(const TextMeasure& measure) {
  const Canvas& canvas = CurrentCanvas();
  const int grow = options.shadowEnable ? options.shadowOffset : 0, added = options.margin - margin_;
  const int width = measure.width + 2 * options.margin + grow;
  const int height = measure.height + 2 * options.margin + grow + options.extraHeight;
  frameWidth_ = canvas.width ? canvas.width : width;
  frameHeight_ = canvas.height ? canvas.height : height;
  // The share of the room, in halves, that lies before the text.
  const TextAlign align = CurrentTextRun().options.align;
  const int before = align == TextAlign::Left ? 0 : align == TextAlign::Right ? 2 : 1;
  const int above = static_cast<int>(canvas.verticalAlign);
  textBox_.left = canvas.width ? (frameWidth_ - width + 2 * added) * before / 2 - added : 0;
  textBox_.top = canvas.height ? (frameHeight_ - height + 2 * added) * above / 2 - added : 0;
  textBox_.right = textBox_.left + width;
  textBox_.bottom = textBox_.top + height;
}

FrameGeometry FrameComposer::Geometry() const {
  FrameGeometry geometry;
  geometry.width = options.acrossCanvas ? frameWidth_ : textBox_.Width();
  geometry.height = options.acrossCanvas ? frameHeight_ : textBox_.Height();
  const bool known = options.shadowDirection >= 0 && options.shadowDirection < 8;
  const DirectionRow& direction = kDirections[known ? options.shadowDirection : 0];
  const int offset = options.shadowOffset;
  geometry.text = {direction.textX * offset, direction.textY * offset};
  geometry.shadow = {direction.shadowX * offset, direction.shadowY * offset};
  const int x = scroll_.x + options.margin + (options.acrossCanvas ? textBox_.left : 0);
  const int y = scroll_.y + options.margin + (options.acrossCanvas ? textBox_.top : 0);
  geometry.textX = x + geometry.text.x;
  geometry.textY = y + geometry.text.y;
  geometry.shadowX = x + geometry.shadow.x;
  geometry.shadowY = y + geometry.shadow.y;
  return geometry;
}

PackedDib FrameComposer::Compose() {
  if (options.line.text.empty() && !allowEmptyText) return {};
  const std::optional<TextMeasure> measure = MeasureToFit();
  if (!measure || EndRequested()) return {};
  Place(*measure);
  const FrameGeometry geometry = Geometry();
  if (!DibSize(frameWidth_, frameHeight_, 24) || !DibSize(geometry.width, geometry.height, 24)) return {};
  if (onSize && !onSize(geometry.width, geometry.height)) return {};

  PackedDib frame = makeFrame          ? makeFrame(frameWidth_, frameHeight_)
                    : options.solidKey ? SolidDib(frameWidth_, frameHeight_, NumberVariable("AlphaGreyBack"))
                                       : RenderMaterial(roles_.background, frameWidth_, frameHeight_);
  frame = Apply(onFrame, std::move(frame));
  if (!frame || backgroundOnly) return frame;
  if (!CurrentCanvas() || options.acrossCanvas) return PaintText(*measure, geometry, std::move(frame));

  const PackedDib text = PaintText(*measure, geometry, CropDib(frame, textBox_));
  if (options.alpha) frame = MergeColourAndAlpha(frame, BlankMask(frameWidth_, frameHeight_));
  const DibView picture(frame), part(text);
  if (!picture || !part) return {};
  CopyRegion(picture, textBox_.left, textBox_.top, part, 0, 0, part.Width(), part.Height());
  return frame;
}

PackedDib FrameComposer::RenderFill(const FrameGeometry& geometry) {
  if (makeFillBitmap) return makeFillBitmap(geometry.width, geometry.height);
  PackedDib fill = RenderMaterial(roles_.fill, textBox_.Width(), textBox_.Height());
  if (!CurrentCanvas() || !options.acrossCanvas) return fill;
  return ContinueMirrored(fill, textBox_.left, textBox_.top, geometry.width, geometry.height);
}

// The text's layers on their background, which it owns and gives back: 24 bits, or 32 with an alpha plane.
PackedDib FrameComposer::PaintText(const TextMeasure& measure, const FrameGeometry& geometry, PackedDib frame) {
  PackedDib fill = Apply(onFillBitmap, RenderFill(geometry));
  if (!fill) return {};
  PackedDib shadow;
  if (options.shadowEnable) {
    shadow = Apply(onShadowBitmap, RenderMaterial(roles_.shadow, textBox_.Width(), textBox_.Height()));
    if (!shadow) return {};
  }
  PackedDib plane;
  if (options.alpha) {
    plane = BlankMask(geometry.width, geometry.height);
    if (!plane) return {};
  }
  {
    const DibView picture(frame), planeView(plane);
    const DibView* alpha = options.alpha ? &planeView : nullptr;
    if (!picture || (alpha && !*alpha)) return {};
    if (options.shadowEnable && !PaintShadow(measure, geometry, picture, alpha, shadow)) return {};
    shadow.Reset();
    if (!PaintFill(measure, geometry, picture, alpha, fill)) return {};
    fill.Reset();
    if (options.outlineEnable && !PaintOutline(measure, geometry, picture, alpha)) return {};
  }
  return options.alpha ? MergeColourAndAlpha(frame, plane) : std::move(frame);
}

bool FrameComposer::PaintShadow(const TextMeasure& measure, const FrameGeometry& geometry, const DibView& frame,
                                const DibView* alpha, const PackedDib& shadowBitmap) {
  const int softness = options.softness > 0 ? options.softness + 2 : 0;
  PackedDib mask;
  if (softness && !onShadowMask) {
    mask = cache_.softShadow.Render(options.line, measure, geometry.shadowX, geometry.shadowY, geometry.width,
                                    geometry.height, options.shadowOpacity, softness, cache_.glyphs);
  } else {
    mask = Apply(onShadowMask, RasteriseText(options.line, measure, geometry.shadowX, geometry.shadowY, geometry.width,
                                             geometry.height, options.shadowOpacity, cache_.glyphs));
    if (mask && softness) mask = Blur(mask, softness);
  }
  mask = Apply(onSoftShadowMask, std::move(mask));
  const DibView levels(mask), over(shadowBitmap);
  if (!levels || !over) return false;

  // The shadow's material travels with it; the mask stays in frame coordinates.
  const int left = std::max(0, geometry.shadowX), top = std::max(0, geometry.shadowY);
  const int right = std::min({frame.Width(), levels.Width(), geometry.shadowX + over.Width()});
  const int bottom = std::min({frame.Height(), levels.Height(), geometry.shadowY + over.Height()});
  if (left >= right) return true;
  for (int y = top; y < bottom; ++y) {
    if (EndRequested()) return false;
    const std::uint8_t* row = levels.Row(y) + left;
    if (alpha) {
      RaiseAlphaRow(alpha->Row(y) + left, row, right - left);
    } else {
      BlendRow(frame.Row(y) + 3 * static_cast<std::size_t>(left),
               over.Row(y - geometry.shadowY) + 3 * static_cast<std::size_t>(left - geometry.shadowX), row,
               right - left);
    }
  }
  return true;
}

bool FrameComposer::PaintFill(const TextMeasure& measure, const FrameGeometry& geometry, const DibView& frame,
                              const DibView* alpha, const PackedDib& fillBitmap) {
  const std::uint32_t randomState = RandomState();
  PackedDib mask =
      Apply(onTextMask, RasteriseText(options.line, measure, geometry.textX, geometry.textY, geometry.width,
                                      geometry.height, options.fillOpacity, cache_.glyphs));
  const DibView levels(mask), over(fillBitmap);
  if (!levels || !over) return false;
  TextColours own;
  if (measure.pictures && CurrentTextRun().options.colourEmoji && !MoveColours(measure, geometry, randomState, own))
    return false;
  const DibView colours(own.colours), painted(own.painted);
  // The fill does not move with the text: a scrolling text slides across a stationary material.
  const int right = std::min({frame.Width(), levels.Width(), over.Width()});
  const int bottom = std::min({frame.Height(), levels.Height(), over.Height()});
  for (int y = 0; y < bottom; ++y) {
    if (EndRequested()) return false;
    if (colours) {
      BlendPaintedRow(frame.Row(y), over.Row(y), levels.Row(y), colours.Row(y), painted.Row(y), right);
    } else {
      BlendRow(frame.Row(y), over.Row(y), levels.Row(y), right);
    }
    if (alpha) RaiseAlphaRow(alpha->Row(y), levels.Row(y), right);
  }
  return !afterFill || afterFill({frame, alpha, levels, geometry});
}

// The effect does to the colours what it has done to the mask, with the same random numbers.
bool FrameComposer::MoveColours(const TextMeasure& measure, const FrameGeometry& geometry, std::uint32_t randomState,
                                TextColours& moved) {
  const std::uint32_t after = RandomState();
  moved = RasteriseColours(options.line, measure, geometry.textX, geometry.textY, geometry.width, geometry.height,
                           options.fillOpacity, cache_.glyphs);
  SeedRandom(randomState);
  moved.colours = Apply(onTextMask, std::move(moved.colours));
  SeedRandom(randomState);
  moved.painted = Apply(onTextMask, std::move(moved.painted));
  SeedRandom(after);
  return moved.colours && moved.painted;
}

bool FrameComposer::PaintOutline(const TextMeasure& measure, const FrameGeometry& geometry, const DibView& frame,
                                 const DibView* alpha) {
  PackedDib mask =
      Apply(onOutlineMask, OutlineMask(options.line, measure, geometry.textX, geometry.textY, geometry.width,
                                       geometry.height, options.outlineLevel, cache_.glyphs));
  const DibView levels(mask);
  if (!levels) return false;
  const int blue = BlueOf(options.outlineColour), green = GreenOf(options.outlineColour),
            red = RedOf(options.outlineColour);
  const int right = std::min(frame.Width(), levels.Width() - 1), bottom = std::min(frame.Height(), levels.Height());
  for (int y = 0; y < bottom; ++y) {
    if (EndRequested()) return false;
    const std::uint8_t* row = levels.Row(y) + 1;  // the mask's column x + 1 belongs to the frame's column x
    std::uint8_t* pixel = frame.Row(y);
    ForEachWeight(row, right, [&](int x, int pixels, int a) {
      for (int i = x; i < x + pixels; ++i) BlendBytes(pixel + 3 * i, blue, green, red, a);
    });
    if (alpha && right > 0) RaiseAlphaRow(alpha->Row(y), row, right);
  }
  return !afterOutline || afterOutline({frame, alpha, levels, geometry});
}

}  // namespace glyphmotion
