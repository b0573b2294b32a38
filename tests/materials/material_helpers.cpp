// SPDX-License-Identifier: MIT
#include "material_helpers.h"

#include <fstream>
#include <sstream>

#include "temporary_folder.h"

namespace glyphmotion {
std::string TemporaryFile(const std::string& name) {
  static const TemporaryFolder scratch;
  return scratch / name;
}

std::string FileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

std::string FileText(const std::string& path) {
  std::string text = FileBytes(path);
  std::erase(text, '\r');
  return text;
}

void WriteBytes(const std::string& path, const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }

std::string PixelsOf(const PackedDib& dib) {
  const DibView view(dib);
  std::string pixels;
  for (int y = 0; view && y < view.Height(); ++y) {
    for (int x = 0; x < view.Width(); ++x) {
      const std::uint32_t value = view.GetPixel(x, y);
      pixels.append(reinterpret_cast<const char*>(&value), 3);
    }
  }
  return pixels;
}

}  // namespace glyphmotion
