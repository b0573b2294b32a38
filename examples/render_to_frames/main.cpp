// SPDX-License-Identifier: MIT
// Renders a text and writes each frame as a PPM picture: render_to_frames "Hello" [effect [fill]]
#include <glyphmotion/render.h>

#include <cstdio>

namespace {

bool WritePpm(const glyphmotion::Image& image) {
  char name[24];
  std::snprintf(name, sizeof name, "frame%04d.ppm", image.number);
  std::FILE* file = std::fopen(name, "wb");
  if (!file) return false;
  std::fprintf(file, "P6\n%d %d\n255\n", image.width, image.height);
  const std::vector<std::uint8_t> rgba = image.Rgba();
  for (std::size_t at = 0; at < rgba.size(); at += 4) std::fwrite(&rgba[at], 1, 3, file);
  return std::fclose(file) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  glyphmotion::Job job;
  job.paletteFormat = false;  // all colours, delays in milliseconds
  job.trueColour = true;
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
