// SPDX-License-Identifier: MIT
// What becomes of the colours of four jobs: PSNR and mean OKLab difference of all decoded frames, bytes, time. Ours and
// libimagequant within this program; the files of others are measured. bench/peers/quality runs it.
//   glyphmotion_quality make FOLDER                 frames of each job as raw pictures, our files, a row for each
//   glyphmotion_quality measure FOLDER JOB NAME FILE MS    a row for a file that another program made of them
#include <gif_lib.h>
#include <libimagequant.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "glyphmotion/render.h"
#include "host/encoders/gif_writer.h"
#include "image/best_palette.h"
#include "image/quantise.h"
#include "image/remap.h"
#include "platform/heap.h"

namespace glyphmotion {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kColours = 255;

double ProcessorMs() { return 1e3 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

struct Frames {
  int width = 0, height = 0;
  std::vector<Bytes> rgb;  // rows top down
};

struct NamedJob {
  const char* name;
  Job job;
};
std::vector<NamedJob> Jobs() {
  std::vector<NamedJob> jobs = {{"default", {}}, {"sunrise", {}}, {"marble", {}}, {"vortex", {}}};
  jobs[1].job.fill = "fountain:Sunrise";
  jobs[2].job.fill = "texture:Marble";
  jobs[3].job.effect = "vortex";
  jobs[3].job.fill = "fountain:Fire";
  jobs[3].job.background = "fountain:Ocean";
  return jobs;
}

Frames FramesOf(Job job) {
  Frames frames;
  job.paletteFormat = false;
  job.trueColour = true;
  Sink sink;
  sink.image = [&](const Image& image) {
    frames.width = image.width;
    frames.height = image.height;
    const std::size_t stride = DibStride(image.width, 24);
    Bytes& rgb = frames.rgb.emplace_back();
    for (int y = image.height; y--;)
      for (int x = 0; x < image.width; ++x) {
        const std::uint8_t* p = image.dib.data() + 40 + stride * static_cast<std::size_t>(y) + 3 * x;
        rgb.insert(rgb.end(), {p[2], p[1], p[0]});
      }
    return image.bits == 24;
  };
  if (Render(job, sink).status != RenderStatus::Done) std::abort();
  return frames;
}

// ---- Measures ----

std::array<double, 3> Oklab(const std::uint8_t* rgb) {
  const auto linear = [](double v) {
    v /= 255;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
  };
  const double r = linear(rgb[0]), g = linear(rgb[1]), b = linear(rgb[2]);
  const double l = std::cbrt(0.4122214708 * r + 0.5363325363 * g + 0.0514459929 * b);
  const double m = std::cbrt(0.2119034982 * r + 0.6806995451 * g + 0.1073969566 * b);
  const double s = std::cbrt(0.0883024619 * r + 0.2817188376 * g + 0.6299787005 * b);
  return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
          1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
          0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

struct Quality {
  double squares = 0, lab = 0, pixels = 0;

  void Add(const Bytes& a, const Bytes& b) {
    std::array<double, 3> labA{}, labB{};
    for (std::size_t i = 0; i < a.size(); i += 3) {
      pixels += 1;
      if (std::equal(&a[i], &a[i] + 3, &b[i])) continue;
      for (std::size_t c = i; c < i + 3; ++c) squares += (a[c] - b[c]) * (a[c] - b[c]);
      labA = Oklab(&a[i]);
      labB = Oklab(&b[i]);
      lab += std::hypot(labA[0] - labB[0], labA[1] - labB[1], labA[2] - labB[2]);
    }
  }
  double Psnr() const { return squares > 0 ? 10 * std::log10(255.0 * 255 * 3 * pixels / squares) : 99; }
};

// The screens of a GIF, each for as many frames as its delay says: some writers join equal frames.
std::vector<Bytes> Decode(const std::string& file, int frameDelay) {
  int error = 0;
  GifFileType* gif = DGifOpenFileName(file.c_str(), &error);
  if (!gif || DGifSlurp(gif) != GIF_OK) std::abort();
  Bytes screen(static_cast<std::size_t>(3 * gif->SWidth * gif->SHeight), 255);
  std::vector<Bytes> screens;
  for (int i = 0; i < gif->ImageCount; ++i) {
    const SavedImage& image = gif->SavedImages[i];
    GraphicsControlBlock control{0, false, frameDelay, NO_TRANSPARENT_COLOR};
    DGifSavedExtensionToGCB(gif, i, &control);
    const ColorMapObject& map = image.ImageDesc.ColorMap ? *image.ImageDesc.ColorMap : *gif->SColorMap;
    for (int y = 0; y < image.ImageDesc.Height; ++y)
      for (int x = 0; x < image.ImageDesc.Width; ++x) {
        const int index = image.RasterBits[y * image.ImageDesc.Width + x];
        if (index == control.TransparentColor) continue;
        const GifColorType& c = map.Colors[index];
        const int at = 3 * ((y + image.ImageDesc.Top) * gif->SWidth + x + image.ImageDesc.Left);
        std::copy_n(std::array<std::uint8_t, 3>{c.Red, c.Green, c.Blue}.begin(), 3, screen.begin() + at);
      }
    for (int k = 0; k < std::max(1, (control.DelayTime + frameDelay / 2) / frameDelay); ++k) screens.push_back(screen);
  }
  DGifCloseFile(gif, &error);
  return screens;
}

void Report(const Frames& frames, const std::string& job, const std::string& name, const std::string& file, double ms) {
  const std::vector<Bytes> screens = Decode(file, 4);
  if (screens.size() != frames.rgb.size())
    std::fprintf(stderr, "%s: %zu frames instead of %zu\n", file.c_str(), screens.size(), frames.rgb.size());
  Quality quality;
  for (std::size_t i = 0; i < std::min(screens.size(), frames.rgb.size()); ++i) quality.Add(frames.rgb[i], screens[i]);
  std::ifstream in(file, std::ios::binary | std::ios::ate);
  std::printf("%s,%s,%.2f,%.4f,%ld,%.1f\n", job.c_str(), name.c_str(), quality.Psnr(),
              100 * quality.lab / quality.pixels, static_cast<long>(in.tellg()), ms);
  std::fflush(stdout);
}

// ---- Contenders ----

struct Indexed {
  std::vector<Bytes> indices;
  std::array<std::uint8_t, 768> palette{};
};

void Write(const Frames& frames, const Indexed& indexed, int loss, const std::string& file) {
  GifWriter writer(frames.width, frames.height);
  writer.SetLoss(loss);
  for (const Bytes& indices : indexed.indices)
    writer.Add({frames.width, frames.height, indices, indexed.palette, 4, -1, false});
  const Bytes bytes = writer.Finish();
  std::ofstream(file, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

// Maps the frames to a palette of ours.
Indexed Map(const FrameList& list, int count, const Palette& palette) {
  Indexed indexed;
  ColourMatcher matcher(palette, 8, count, {});
  for (int i = 0; i < list.count; ++i) {
    const LockedFrame frame(list, i);
    PackedDib source(frame->image);
    const PackedDib mapped = RemapImage(source, matcher);
    source.Release();
    const DibView view(mapped);
    Bytes& indices = indexed.indices.emplace_back();
    for (int y = 0; y < view.Height(); ++y) indices.insert(indices.end(), view.Row(y), view.Row(y) + view.Width());
  }
  for (std::size_t i = 0; i < 256; ++i)
    std::copy_n(&palette[i].red, 3, indexed.palette.begin() + static_cast<std::ptrdiff_t>(3 * i));
  return indexed;
}

double Least(const std::function<void()>& work) {
  double least = 1e9;
  for (int i = 0; i < 5; ++i) {
    const double begin = ProcessorMs();
    work();
    least = std::min(least, ProcessorMs() - begin);
  }
  return least;
}

void MakeOurs(const Frames& frames, const std::string& job, const std::string& folder) {
  OwnedFrames owned;
  for (const Bytes& rgb : frames.rgb) {
    FrameRecord record;
    PackedDib dib = BlankDib(frames.width, frames.height, nullptr, 24);
    for (int y = 0; y < frames.height; ++y)
      for (int x = 0; x < frames.width; ++x) {
        const std::uint8_t* p = &rgb[static_cast<std::size_t>(3 * (y * frames.width + x))];
        DibView(dib).SetPixel(x, y, MakeColour(p[0], p[1], p[2]));
      }
    record.image = dib.Release();
    AppendFrame(owned.list, record);
  }
  const auto file = [&](const std::string& name) { return folder + "/" + job + "-" + name + ".gif"; };
  const auto make = [&](const char* name, int colours, const std::function<void(int&, Palette&)>& choose) {
    int count = 0;
    Palette palette;
    const double ms = Least([&] { choose(count = colours, palette); });
    const Indexed indexed = Map(owned.list, count, palette);
    Write(frames, indexed, 0, file(name));
    Report(frames, job, name, file(name), ms);
    return indexed;
  };
  const auto best = [&](int& count, Palette& palette) { BestPalette(owned.list, {}, count, palette); };
  make("octree", kColours, [&](int& count, Palette& palette) { QuantiseFrames(owned.list, count, palette); });
  for (const int colours : {16, 32, 64, 128}) make(("best-" + std::to_string(colours)).c_str(), colours, best);
  const Indexed indexed = make("best", kColours, best);
  for (const int loss : {10, 20, 40, 80, 140, 200}) {
    const std::string name = "best-lossy-" + std::to_string(loss);
    const double begin = ProcessorMs();
    Write(frames, indexed, loss, file(name));
    Report(frames, job, name, file(name), ProcessorMs() - begin);
  }
}

// Speed 4, its own; written by our writer, so that the colours alone differ.
void MakeImagequant(const Frames& frames, const std::string& job, const std::string& folder) {
  std::vector<Bytes> rgba;
  for (const Bytes& rgb : frames.rgb) {
    Bytes& to = rgba.emplace_back();
    for (std::size_t i = 0; i < rgb.size(); i += 3) to.insert(to.end(), {rgb[i], rgb[i + 1], rgb[i + 2], 255});
  }
  liq_attr* settings = liq_attr_create();
  liq_set_max_colors(settings, kColours);
  liq_result* result = nullptr;
  std::vector<liq_image*> images;
  const double ms = Least([&] {
    images.clear();
    liq_histogram* histogram = liq_histogram_create(settings);
    for (const Bytes& frame : rgba) {
      images.push_back(liq_image_create_rgba(settings, frame.data(), frames.width, frames.height, 0));
      liq_histogram_add_image(histogram, settings, images.back());
    }
    if (liq_histogram_quantize(histogram, settings, &result) != LIQ_OK) std::abort();
  });
  liq_set_dithering_level(result, 0);
  Indexed indexed;
  for (liq_image* image : images) {
    Bytes& out = indexed.indices.emplace_back(static_cast<std::size_t>(frames.width * frames.height));
    if (liq_write_remapped_image(result, image, out.data(), out.size()) != LIQ_OK) std::abort();
  }
  const liq_palette* palette = liq_get_palette(result);
  for (std::size_t i = 0; i < palette->count; ++i) {
    const liq_color& c = palette->entries[i];
    std::copy_n(std::array<std::uint8_t, 3>{c.r, c.g, c.b}.begin(), 3,
                indexed.palette.begin() + static_cast<std::ptrdiff_t>(3 * i));
  }
  const std::string file = folder + "/" + job + "-libimagequant.gif";
  Write(frames, indexed, 0, file);
  Report(frames, job, "libimagequant", file, ms);
}

int Main(const std::vector<std::string>& words) {
  if (words.size() == 2 && words[0] == "make") {
    for (const NamedJob& row : Jobs()) {
      const Frames frames = FramesOf(row.job);
      std::ofstream raw(words[1] + "/" + row.name + ".rgb", std::ios::binary);
      for (const Bytes& rgb : frames.rgb)
        raw.write(reinterpret_cast<const char*>(rgb.data()), static_cast<std::streamsize>(rgb.size()));
      std::ofstream(words[1] + "/" + row.name + ".size") << frames.width << 'x' << frames.height << '\n';
      MakeOurs(frames, row.name, words[1]);
      MakeImagequant(frames, row.name, words[1]);
    }
    return 0;
  }
  if (words.size() != 6 || words[0] != "measure") return 2;
  Frames frames;
  char x = 0;
  std::ifstream(words[1] + "/" + words[2] + ".size") >> frames.width >> x >> frames.height;
  std::ifstream raw(words[1] + "/" + words[2] + ".rgb", std::ios::binary);
  const Bytes all{std::istreambuf_iterator<char>(raw), {}};
  const auto size = static_cast<std::ptrdiff_t>(3 * frames.width * frames.height);
  for (auto at = all.begin(); at < all.end(); at += size) frames.rgb.emplace_back(at, at + size);
  Report(frames, words[2], words[3], words[4], std::atof(words[5].c_str()));
  return 0;
}

}  // namespace
}  // namespace glyphmotion

int main(int argc, char** argv) {
  glyphmotion::KeepFreedMemory();  // as the program does, and for all
  return glyphmotion::Main({argv + 1, argv + argc});
}
