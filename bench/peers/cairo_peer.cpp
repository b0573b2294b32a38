// SPDX-License-Identifier: MIT
// A line of text that scrolls over a picture, made with the libraries that a programmer would take: cairo draws,
// libimagequant chooses one palette and reduces, giflib writes. For bench/peers/compare.
//
// glyphmotion_cairo_peer BACKGROUND.png TEXT DITHER OUTPUT.gif
#include <cairo.h>
#include <gif_lib.h>
#include <libimagequant.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kFrames = 64, kFast = 10;  // libimagequant's speed, 1 to 10

using Bytes = std::vector<std::uint8_t>;

void Require(bool done, const char* what) {
  if (done) return;
  std::fprintf(stderr, "cairo_peer: %s failed\n", what);
  std::exit(1);
}

struct Canvas {
  cairo_surface_t* background;
  int width, height;
};

void Write(cairo_t* cairo, const char* text, double x, double y, double level, double blue) {
  cairo_move_to(cairo, x, y);
  cairo_text_path(cairo, text);
  cairo_set_source_rgb(cairo, level, level, blue);
  cairo_fill(cairo);
}

// Red, green, blue, alpha. The shadow is sharp: cairo has no blur.
Bytes Draw(const Canvas& canvas, const char* text, int frame) {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, canvas.width, canvas.height);
  cairo_t* cairo = cairo_create(surface);
  cairo_set_source_surface(cairo, canvas.background, 0, 0);
  cairo_paint(cairo);
  cairo_select_font_face(cairo, "Liberation Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  cairo_set_font_size(cairo, 48);
  const double x = canvas.width - 2.0 * canvas.width / kFrames * frame, y = canvas.height * 0.65;
  Write(cairo, text, x + 4, y + 4, 0.5, 0.5);
  Write(cairo, text, x, y, 0.3, 0.7);
  cairo_move_to(cairo, x, y);
  cairo_text_path(cairo, text);
  cairo_set_source_rgb(cairo, 0.2, 0.2, 0.2);
  cairo_set_line_width(cairo, 1);
  cairo_stroke(cairo);
  cairo_surface_flush(surface);
  Bytes rgba;
  const std::uint8_t* pixels = cairo_image_surface_get_data(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  for (int row = 0; row < canvas.height; ++row) {
    const std::uint8_t* p = pixels + static_cast<std::ptrdiff_t>(row) * stride;
    for (int column = 0; column < canvas.width; ++column, p += 4) rgba.insert(rgba.end(), {p[2], p[1], p[0], 255});
  }
  cairo_destroy(cairo);
  cairo_surface_destroy(surface);
  return rgba;
}

void WriteGif(const char* path, const Canvas& canvas, const liq_palette& palette, std::vector<Bytes>& frames) {
  int error = 0;
  GifFileType* gif = EGifOpenFileName(path, false, &error);
  Require(gif, "opening the file");
  ColorMapObject* map = GifMakeMapObject(256, nullptr);
  for (unsigned i = 0; i < palette.count; ++i)
    map->Colors[i] = {palette.entries[i].r, palette.entries[i].g, palette.entries[i].b};
  EGifSetGifVersion(gif, true);
  Require(EGifPutScreenDesc(gif, canvas.width, canvas.height, 8, 0, map) == GIF_OK, "writing");
  const GraphicsControlBlock control{DISPOSE_DO_NOT, false, 4, NO_TRANSPARENT_COLOR};
  for (Bytes& frame : frames) {
    GifByteType extension[4];
    EGifGCBToExtension(&control, extension);
    EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, sizeof extension, extension);
    EGifPutImageDesc(gif, 0, 0, canvas.width, canvas.height, false, nullptr);
    Require(EGifPutLine(gif, frame.data(), canvas.width * canvas.height) == GIF_OK, "writing");
  }
  GifFreeMapObject(map);
  EGifCloseFile(gif, &error);
}

}  // namespace

int main(int argc, char** argv) {
  Require(argc == 5, "reading the arguments");
  Canvas canvas{cairo_image_surface_create_from_png(argv[1]), 0, 0};
  Require(cairo_surface_status(canvas.background) == CAIRO_STATUS_SUCCESS, "reading the background");
  canvas.width = cairo_image_surface_get_width(canvas.background);
  canvas.height = cairo_image_surface_get_height(canvas.background);
  std::vector<Bytes> pictures, frames;
  for (int i = 0; i < kFrames; ++i) pictures.push_back(Draw(canvas, argv[2], i));

  liq_attr* settings = liq_attr_create();
  liq_set_speed(settings, kFast);
  std::vector<liq_image*> images;
  liq_histogram* histogram = liq_histogram_create(settings);
  for (Bytes& picture : pictures) {
    images.push_back(liq_image_create_rgba(settings, picture.data(), canvas.width, canvas.height, 0));
    liq_histogram_add_image(histogram, settings, images.back());
  }
  liq_result* result = nullptr;
  Require(liq_histogram_quantize(histogram, settings, &result) == LIQ_OK, "choosing a palette");
  liq_set_dithering_level(result, static_cast<float>(std::atof(argv[3])));
  for (liq_image* image : images) {
    Bytes& frame =
        frames.emplace_back(static_cast<std::size_t>(canvas.width) * static_cast<std::size_t>(canvas.height));
    Require(liq_write_remapped_image(result, image, frame.data(), frame.size()) == LIQ_OK, "reducing");
  }
  WriteGif(argv[4], canvas, *liq_get_palette(result), frames);
}
