// SPDX-License-Identifier: MIT
// One frame from a dialog's state: background, shadow, fill, outline. Every effect renders through the FrameComposer
// and changes single steps through the hooks below, each named after what it changes.
#pragma once

#include <functional>
#include <optional>

#include "controls/read_controls.h"
#include "materials/material_cache.h"
#include "resources/panel.h"
#include "text/canvas.h"
#include "text/soft_shadow.h"
#include "text/text_raster.h"

namespace glyphmotion {

/// Ids of the dialog's own controls that every renderer reads.
namespace ControlId {
constexpr int Delay = 11, Animated = 22, Pause = 23;
constexpr int Antialias = 51, Text = 52, Font = 53, Bold = 54, Italic = 55, Size = 57, Effect = 58, Pad = 59;
constexpr int CharacterSpace = 61, AlphaTransparency = 62, AlphaBackground = 63;
}  // namespace ControlId

struct ScrollOffset {
  int x = 0, y = 0;  ///< pixels
};

/// What the frames of one run share. Pixels never depend on what is cached.
struct RunCache {
  GlyphCache glyphs;
  MaterialCache materials;
  SoftShadowCache softShadow;
  int fittedSize = 0;  ///< the font size that fits the canvas; 0: not known yet

  RunCache() = default;
  /// For another thread of the run: begins with what `elder` has, which must outlive it and which nobody may change.
  explicit RunCache(const RunCache& elder)
      : glyphs(&elder.glyphs),
        materials(&elder.materials),
        softShadow(elder.softShadow),
        fittedSize(elder.fittedSize) {}
  RunCache& operator=(const RunCache&) = delete;
};

/// What the composer reads from the controls; an effect may change it before Compose.
struct FrameOptions {
  TextLine line;          ///< text without the appended blank
  int margin = 0;         ///< pixels on all four sides: Pad, the softness term and the outline's one pixel included
  int extraHeight = 0;    ///< added below the text
  bool alpha = false;     ///< Alpha transparency, where this frame may have an alpha plane
  bool solidKey = false;  ///< Alpha transparency and Alpha background both on: the background is the key colour
  int fillOpacity = 255, shadowOpacity = 255, outlineLevel = 255;
  int softness = 0, shadowOffset = 0, shadowDirection = 0;
  bool shadowEnable = false, outlineEnable = false;
  Colour outlineColour = 0;
  bool acrossCanvas = false;  ///< the text moves over the whole canvas; otherwise it stays in its own picture
};

/// Places derived from the options, in the text's own picture, which is the frame unless there is a canvas.
struct FrameGeometry {
  int width = 0, height = 0;                           ///< of the picture
  ScrollOffset text, shadow;                           ///< offsets of the shadow direction, without margin and scroll
  int textX = 0, textY = 0, shadowX = 0, shadowY = 0;  ///< of the first box: scroll + margin + offset
};

/// The text's own picture with its background, for hooks that paint on it.
struct FrameLayers {
  const DibView& frame;  ///< 24 bits
  const DibView* alpha;  ///< 8 bits, or null
  const DibView& mask;   ///< the text mask, or the outline mask (four pixels wider, columns one to the right)
  const FrameGeometry& geometry;
};

/// Blends `colour` into the frame at (x, y) with weight a and raises the alpha plane by a; nothing outside the frame.
void BlendPixel(const FrameLayers& layers, int x, int y, Colour colour, int a) noexcept;
/// Blends `colour` into a 24-bit bitmap at (x, y) with weight a; nothing outside.
void BlendPixel(const DibView& bitmap, int x, int y, Colour colour, int a) noexcept;

class FrameComposer {
 public:
  /// Reads all options. `preview` suppresses the alpha plane.
  FrameComposer(Dialog& dialog, const PanelRoles& roles, ScrollOffset scroll, bool preview, RunCache& cache);

  FrameOptions options;

  // Hooks. Those that take a bitmap own it and return the one to continue with; an empty one ends the frame.
  using Change = std::function<PackedDib(PackedDib)>;
  using Make = std::function<PackedDib(int width, int height)>;

  bool allowEmptyText = false;  ///< an empty text counts as the single blank instead of ending the frame
  /// The size of the text's own picture is known, nothing made yet; false ends the frame.
  std::function<bool(int width, int height)> onSize;
  Make makeFrame;               ///< replaces the background material (and the solid key)
  Change onFrame;               ///< the frame with its background
  bool backgroundOnly = false;  ///< the frame is finished now
  Make makeFillBitmap;          ///< replaces the fill material
  Change onFillBitmap;          ///< the fill material's pixels
  Change onShadowBitmap;        ///< the shadow material's pixels, if the shadow is enabled
  Change onShadowMask;          ///< before its blur
  Change onSoftShadowMask;      ///< after its blur
  Change onTextMask;
  Change onOutlineMask;
  std::function<bool(const FrameLayers&)> afterFill;
  std::function<bool(const FrameLayers&)> afterOutline;

  /// The finished frame: 24 bits, or 32 with an alpha plane. Nothing on an empty text or any failure.
  PackedDib Compose();

  /// Of the frame, from onSize on.
  int FrameWidth() const { return frameWidth_; }
  int FrameHeight() const { return frameHeight_; }
  /// The text's own picture, from onSize on: in frame pixels; it may reach beyond the frame.
  const Rect& TextBox() const { return textBox_; }

  /// A material control's pixels, through the run's cache; nothing when the control has no material.
  PackedDib RenderMaterial(int control, int width, int height);
  /// True when the control holds a material of kind solid.
  bool IsSolid(int control) const;
  int Number(int control) const { return ReadNumber(dialog_, control); }
  bool Check(int control) const { return ReadCheck(dialog_, control); }

 private:
  TextMeasure MeasureAt(const std::u32string& text, int size);
  std::optional<TextMeasure> MeasureToFit();
  bool Fits(const TextMeasure& measure) const;
  void Place(const TextMeasure& measure);
  FrameGeometry Geometry() const;
  PackedDib RenderFill(const FrameGeometry& geometry);
  PackedDib PaintText(const TextMeasure& measure, const FrameGeometry& geometry, PackedDib frame);
  bool PaintShadow(const TextMeasure& measure, const FrameGeometry& geometry, const DibView& frame,
                   const DibView* alpha, const PackedDib& shadowBitmap);
  bool PaintFill(const TextMeasure& measure, const FrameGeometry& geometry, const DibView& frame, const DibView* alpha,
                 const PackedDib& fillBitmap);
  bool MoveColours(const TextMeasure& measure, const FrameGeometry& geometry, std::uint32_t randomState,
                   TextColours& moved);
  bool PaintOutline(const TextMeasure& measure, const FrameGeometry& geometry, const DibView& frame,
                    const DibView* alpha);

  Dialog& dialog_;
  PanelRoles roles_;
  ScrollOffset scroll_;
  RunCache& cache_;
  int margin_ = 0;  // without what the effect adds
  int frameWidth_ = 0, frameHeight_ = 0;
  Rect textBox_;
};

}  // namespace glyphmotion
