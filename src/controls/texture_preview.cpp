// SPDX-License-Identifier: MIT
#include "controls/texture_preview.h"

#include <algorithm>

#include "controls/editor_services.h"
#include "controls/face_painting.h"
#include "controls/skin.h"
#include "platform/dialog.h"
#include "platform/encoding.h"
#include "platform/text_engine.h"
#include "resources/strings.h"
#include "resources/templates.h"
#include "resources/texture_controls.h"

namespace glyphmotion {
namespace {

using namespace TextureControl;

constexpr int kEdge = 2;

struct TexturePreview {
  const TextureSpec* texture;
  PackedDib background, text;
};

struct Extent {
  int width, height;
};
Extent InnerExtent(const Dialog& dialog, int id) {
  const ControlRectangle place = RectangleOf(dialog, id);
  return {place.right - place.left - 2 * kEdge, place.bottom - place.top - 2 * kEdge};
}

// A character's box has margins of a sixth of the em on both sides; a space's box is just the margins.
double LineWidth(const FontRequest& font, const std::u32string& line, double margins) {
  GlyphBox box;
  double width = 0;
  for (const char32_t code : line) width += MeasureGlyph(font, code, box) ? box.width - margins : 0;
  return width;
}

void FillGlyph(const DibView& picture, const DibView& fill, const GlyphBitmap& glyph, int left, int top) {
  for (int y = 0; y < glyph.height; ++y) {
    for (int x = 0; x < glyph.width; ++x) {
      const int alpha = glyph.coverage[static_cast<std::size_t>(y) * static_cast<std::size_t>(glyph.width) +
                                       static_cast<std::size_t>(x)];
      if (!alpha) continue;
      const Colour under = picture.GetPixel(left + x, top + y), over = fill.GetPixel(left + x, top + y);
      picture.SetPixel(left + x, top + y, Blend(under, over, alpha));
    }
  }
}

// The sample text, centred in an empty field, as large as fits.
PackedDib TextOf(const PackedDib& fill) {
  const DibView from(fill);
  if (!from) return {};
  PackedDib picture = SolidDib(from.Width(), from.Height(), GetSystemColour(SystemColour::Window));
  const DibView to(picture);
  if (!to) return {};
  const std::u32string line = DecodeText(LoadText(kTextTextureSample));
  FontRequest font{"Arial", std::max(from.Height() * 9 / 10, 1), true, false};
  GlyphBox blank;
  if (!MeasureGlyph(font, U' ', blank)) return picture;
  const double wide = LineWidth(font, line, blank.width), room = from.Width() * 0.94;
  if (wide > room) font.cellHeight = std::max(static_cast<int>(font.cellHeight * room / wide), 1);
  MeasureGlyph(font, U' ', blank);
  double x = (from.Width() - LineWidth(font, line, blank.width)) / 2;
  const int top = (from.Height() - MeasureFont(font).height) / 2;
  for (const char32_t code : line) {
    GlyphBitmap glyph;
    GlyphBox box;
    if (!MeasureGlyph(font, code, box) || !RenderGlyph(font, code, true, glyph)) continue;
    FillGlyph(to, from, glyph, static_cast<int>(x - blank.width / 2), top);
    x += box.width - blank.width;
  }
  return picture;
}

void Render(Dialog& dialog, TexturePreview& preview) {
  const Extent background = InnerExtent(dialog, AsBackground), text = InnerExtent(dialog, AsText);
  preview.background = TextureToBitmap(*preview.texture, background.width, background.height);
  preview.text = TextOf(TextureToBitmap(*preview.texture, text.width, text.height));
}

std::int64_t PreviewProcedure(Dialog& dialog, const Message& message) {
  if (HandleSkin(dialog, message)) return 1;
  switch (message.number) {
    case kMessageInitialise:
      SetData(dialog, AsBackground, static_cast<std::uint64_t>(message.b));
      Render(dialog, *PointerOf<TexturePreview>(message.b));
      return 0;
    case kMessageDrawItem: {
      const auto* preview = PointerOf<TexturePreview>(static_cast<std::int64_t>(GetData(dialog, AsBackground)));
      if (!preview) return 0;
      const auto& request = *PointerOf<const DrawRequest>(message.b);
      const Rect whole = WholeOf(request);
      PaintButtonFace(request, whole, true, GetSystemColour(SystemColour::ButtonFace));
      PaintBitmap(request, Shrunk(whole, kEdge), DibView(message.a == AsText ? preview->text : preview->background));
      return 1;
    }
    case kMessageHelp:
      ShowHelpTopic(dialog, "TEXTURE");
      return 1;
    case kMessageCommand:
      if (message.a == Cancel) EndDialog(dialog, 0);
      return 1;
    default:
      return 0;
  }
}

}  // namespace

PackedDib TextureToBitmap(const TextureSpec& texture, int width, int height) noexcept {
  Material material;
  DefaultMaterial(material, 0);
  material.Kind = kTexture;
  material.Texture = texture;
  return MaterialToBitmap(material, width, height);
}

void ShowTexturePreview(const TextureSpec& texture) {
  TexturePreview preview{&texture, {}, {}};
  RunModal(kTexturePreviewTemplate, nullptr, PreviewProcedure, &preview);
}

}  // namespace glyphmotion
