// SPDX-License-Identifier: MIT
// Renders a text and writes each frame as a PPM picture: render_to_frames "Hello" [effect [fill]]
#include <glyphmotion/render.h>

#include <cstdio>

namespace {

// A true-colour image is a packed DIB: a header of 40 bytes, then rows of blue, green, red from the bottom up, each
// padded to 4 bytes.
bool WritePpm(const glyphmotion::Image& image) {
  char name[24];
  std::snprintf(name, sizeof name, "frame%04d.ppm", image.number);
  std::FILE* file = std::fopen(name, "wb");
  if (!file) return false;
  std::fprintf(file, "P6\n%d %d\n255\n", image.width, image.height);
  const std::size_t stride = (static_cast<std::size_t>(image.width) * 3 + 3) / 4 * 4;
  for (int y = image.height - 1; y >= 0; --y) {
    const std::uint8_t* row = image.dib.data() + 40 + stride * static_cast<std::size_t>(y);
    for (int x = 0; x < image.width; ++x, row += 3) {
      const std::uint8_t rgb[] = {row[2], row[1], row[0]};
      std::fwrite(rgb, 1, 3, file);
    }
  }
  return std::fclose(file) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  glyphmotion::Job job;
  job.paletteFormat = false;  // all colours, delays in milliseconds
  job.settings = {{"Truecolour", "1"}};
  if (argc > 1) job.text = argv[1];
  if (argc > 2) job.effect = argv[2];
  if (argc > 3) job.fill = argv[3];  // "#RRGGBB", "texture:Marble"

  glyphmotion::Sink sink;
  sink.image = WritePpm;
  const glyphmotion::RenderResult result = glyphmotion::Render(job, sink);
  if (result.status != glyphmotion::RenderStatus::Done) {
    std::fprintf(stderr, "%s\n", result.message.c_str());
    return 1;
  }
  std::printf("%d frames\n", result.images);
  return 0;
}
