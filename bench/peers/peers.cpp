// SPDX-License-Identifier: MIT
// Palette, exact remap, dither and GIF writing beside libimagequant and giflib, over the two runs of colour_runs.h and
// alternating, so that load on the machine affects all of them. Every figure is the least processor time of several
// rounds.
//   glyphmotion_peers ROUNDS [FOLDER]     with a folder: leaves the frames there as raw pictures for other programs
#include <gif_lib.h>
#include <libimagequant.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <string>

#include "colour_runs.h"
#include "host/encoders/gif_writer.h"
#include "image/remap.h"
#include "platform/heap.h"

namespace glyphmotion {
namespace {

using Bytes = std::vector<std::uint8_t>;

double ProcessorMs() { return 1e3 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

struct Contender {
  const char* name;
  std::function<void()> job;
  double best = 1e9;
};

// Prints one line: the contenders' times, and the others' in units of the first one's.
void Compare(const char* stage, const char* run, int rounds, std::vector<Contender> contenders) {
  for (int i = 0; i < rounds; ++i)
    for (Contender& c : contenders) {
      const double begin = ProcessorMs();
      c.job();
      c.best = std::min(c.best, ProcessorMs() - begin);
    }
  for (const Contender& c : contenders)
    std::printf("%-12s %-9s %-24s %8.1f %7.2f\n", stage, run, c.name, c.best, c.best / contenders[0].best);
  std::fflush(stdout);
}

// A run in the forms that the contenders want.
struct Pictures {
  const Run& run;
  std::vector<Bytes> rgba;     // rows top down
  std::vector<Bytes> indices;  // of our exact remap
  std::array<std::uint8_t, 768> palette{};
};

Pictures PicturesOf(Kind kind) {
  Pictures pictures{RunOf(kind), {}, {}, {}};
  ColourMatcher matcher(pictures.run.palette, 8, pictures.run.count, {.fastRemap = false});
  for (const PackedDib& image : pictures.run.images) {
    const PackedDib mapped = RemapImage(image, matcher);
    const DibView colours(image), slots(mapped);
    Bytes& rgba = pictures.rgba.emplace_back();
    Bytes& indices = pictures.indices.emplace_back();
    for (int y = 0; y < kHeight; ++y)
      for (int x = 0; x < kWidth; ++x) {
        const Colour colour = colours.GetPixel(x, y);
        for (const int shift : {0, 8, 16}) rgba.push_back(static_cast<std::uint8_t>(colour >> shift));
        rgba.push_back(255);
        indices.push_back(static_cast<std::uint8_t>(slots.GetPixel(x, y)));
      }
  }
  for (std::size_t i = 0; i < 256; ++i) {
    pictures.palette[3 * i] = pictures.run.palette[i].red;
    pictures.palette[3 * i + 1] = pictures.run.palette[i].green;
    pictures.palette[3 * i + 2] = pictures.run.palette[i].blue;
  }
  return pictures;
}

template <PackedDib (*Map)(const PackedDib&, ColourMatcher&) noexcept>
void MapOurs(const Run& run) {
  ColourMatcher matcher(run.palette, 8, run.count, {.fastRemap = false});
  for (const PackedDib& image : run.images) Map(image, matcher);
}

// --- libimagequant: speed 4, its own; one histogram of all frames

struct Imagequant {
  liq_attr* settings = liq_attr_create();
  liq_result* palette = nullptr;
  std::vector<liq_image*> images;  // made anew in each round, because they remember what they were mapped to

  explicit Imagequant(const Pictures& pictures) {
    MakeImages(pictures);
    Quantise();
  }
  void MakeImages(const Pictures& pictures) {
    for (liq_image* image : images) liq_image_destroy(image);
    images.clear();
    for (const Bytes& rgba : pictures.rgba)
      images.push_back(liq_image_create_rgba(settings, rgba.data(), kWidth, kHeight, 0));
  }
  void Quantise() {
    liq_histogram* histogram = liq_histogram_create(settings);
    for (liq_image* image : images) liq_histogram_add_image(histogram, settings, image);
    if (palette) liq_result_destroy(palette);
    if (liq_histogram_quantize(histogram, settings, &palette) != LIQ_OK) std::abort();
    liq_histogram_destroy(histogram);
  }
  void Map(float dither) {
    liq_set_dithering_level(palette, dither);
    Bytes out(std::size_t{kWidth} * kHeight);
    for (liq_image* image : images)
      if (liq_write_remapped_image(palette, image, out.data(), out.size()) != LIQ_OK) std::abort();
  }
};

// --- GIF

std::size_t WriteOurs(const Pictures& pictures) {
  GifWriter writer(kWidth, kHeight);
  for (const Bytes& indices : pictures.indices) writer.Add({kWidth, kHeight, indices, pictures.palette, 4, -1, false});
  return writer.Finish().size();
}

std::size_t WriteGiflib(const Pictures& pictures) {
  Bytes file;
  int error = 0;
  GifFileType* gif = EGifOpen(
      &file,
      [](GifFileType* to, const GifByteType* bytes, int count) {
        auto* out = static_cast<Bytes*>(to->UserData);
        out->insert(out->end(), bytes, bytes + count);
        return count;
      },
      &error);
  ColorMapObject* map = GifMakeMapObject(256, nullptr);
  for (std::size_t i = 0; i < 256; ++i)
    map->Colors[i] = {pictures.palette[3 * i], pictures.palette[3 * i + 1], pictures.palette[3 * i + 2]};
  EGifSetGifVersion(gif, true);
  EGifPutScreenDesc(gif, kWidth, kHeight, 8, 0, map);
  Bytes line;
  for (const Bytes& indices : pictures.indices) {
    EGifPutImageDesc(gif, 0, 0, kWidth, kHeight, false, nullptr);
    line = indices;  // it may be changed
    EGifPutLine(gif, line.data(), kWidth * kHeight);
  }
  GifFreeMapObject(map);
  EGifCloseFile(gif, &error);
  return file.size();
}

void CompareRun(Kind kind, const char* name, int rounds, const std::string& folder) {
  const Pictures pictures = PicturesOf(kind);
  const Run& run = pictures.run;
  Imagequant imagequant(pictures);
  Compare("palette", name, rounds,
          {{"ours",
            [&] {
              int count = 256;
              Palette palette;
              QuantiseFrames(run.frames, count, palette);
            }},
           {"libimagequant", [&] {
              imagequant.MakeImages(pictures);
              imagequant.Quantise();
            }}});
  Compare("exact remap", name, rounds,
          {{"ours", [&] { MapOurs<RemapImage>(run); }}, {"libimagequant", [&] { imagequant.Map(0); }}});
  Compare("dither", name, rounds,
          {{"ours", [&] { MapOurs<DitherImage>(run); }}, {"libimagequant", [&] { imagequant.Map(1); }}});
  std::size_t ours = 0, theirs = 0;
  Compare("write GIF", name, rounds,
          {{"ours", [&] { ours = WriteOurs(pictures); }}, {"giflib", [&] { theirs = WriteGiflib(pictures); }}});
  std::printf("%-12s %-9s %-24s %zu bytes, giflib %zu\n", "", name, "", ours, theirs);
  if (folder.empty()) return;
  std::ofstream raw(folder + "/" + name + ".rgb", std::ios::binary);
  for (const Bytes& rgba : pictures.rgba)
    for (std::size_t i = 0; i < rgba.size(); i += 4) raw.write(reinterpret_cast<const char*>(&rgba[i]), 3);
}

}  // namespace
}  // namespace glyphmotion

int main(int argc, char** argv) {
  using namespace glyphmotion;
  KeepFreedMemory();  // as the program does, and for all
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 5;
  const std::string folder = argc > 2 ? argv[2] : "";
  CompareRun(kGradient, "gradient", rounds, folder);
  CompareRun(kText, "text", rounds, folder);
}
