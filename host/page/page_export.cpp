// SPDX-License-Identifier: MIT
// Files that a person asks for: made by the command line from the document.
#include <algorithm>
#include <filesystem>

#include "host/encoders/encoders.h"
#include "host/page/page_work.h"
#include "host/page/scratch.h"
#include "host/page/zip_folder.h"
#include "platform/files.h"

namespace glyphmotion {
namespace {

namespace fs = std::filesystem;

struct ExportFormat {
  const char *name, *extension, *mime;
  bool hasAlpha;
};
constexpr ExportFormat kFormats[] = {{"gif", ".gif", "image/gif", false},
                                     {"apng", ".png", "image/png", true},
                                     {"webp", ".webp", "image/webp", true},
                                     {"avif", ".avif", "image/avif", true},
                                     {"webm", ".webm", "video/webm", true}};

std::string StemOf(const std::string& name) {
  const std::string stem = fs::path(name).stem().string();
  return stem.empty() ? "glyphmotion" : stem;
}

const ExportFormat* FormatOf(std::string_view name) {
  const auto* found =
      std::find_if(std::begin(kFormats), std::end(kFormats), [&](const ExportFormat& row) { return row.name == name; });
  return found == std::end(kFormats) ? nullptr : found;
}

}  // namespace

std::string_view ExtensionOf(std::string_view format) {
  const ExportFormat* row = FormatOf(format);
  return row ? row->extension : "";
}

bool HasAlpha(std::string_view format) {
  const ExportFormat* row = FormatOf(format);
  return row ? row->hasAlpha : format == "frames";
}

Json ExportFormats() {
  Json formats = Json::array();
  for (const ExportFormat& row : kFormats) {
    const EncoderFormat* format = FindFormat(row.extension);
    if (format && !format->lacks) formats.push_back(row.name);
  }
  return formats;
}

void SendGif(const SendMessage& send, const ExportOrder& order, const std::string& gif) {
  send({{{"type", "file"}, {"for", order.tag}, {"name", StemOf(order.name) + ".gif"}, {"mime", "image/gif"}},
        {gif.begin(), gif.end()}});
}

void MakeExport(const WorkPlace& place, const ExportOrder& order, const std::atomic<bool>& stop) {
  const auto fail = [&](const std::string& sentence) {
    place.send({{{"type", "file"}, {"for", order.tag}, {"error", sentence}}, {}});
  };
  const bool frames = order.format == "frames";
  const ExportFormat* format = FormatOf(order.format);
  if (!frames && !format) return fail("there is no format '" + order.format + "'");
  const std::string base = place.folder + "/export" + std::to_string(order.number);
  if (!WriteScratchFile(base + ".gm4", order.document))
    return fail("there is no room for the picture; is the disk full?");
  std::vector<std::string> words = {"--document", base + ".gm4", "-q", "-o", base + (frames ? "" : format->extension)};
  if (frames) words.insert(words.end(), {"--frames-as", "png"});
  words.insert(words.end(), order.words.begin(), order.words.end());
  std::string trouble = place.services.run(words, stop);
  if (trouble.empty() && frames) trouble = ZipFolder(base, base + ".zip");
  const std::string path = base + (frames ? ".zip" : format->extension);
  const auto bytes = trouble.empty() ? ReadWholeFile(path, std::size_t{1} << 30) : std::nullopt;
  if (bytes) {
    place.send({{{"type", "file"},
                 {"for", order.tag},
                 {"name", StemOf(order.name) + (frames ? "-frames.zip" : format->extension)},
                 {"mime", frames ? "application/zip" : format->mime}},
                {bytes->begin(), bytes->end()}});
  } else {
    fail(trouble.empty() ? "the picture could not be read again" : trouble);
  }
  std::error_code error;
  for (const std::string& each : {base, base + ".gm4", path}) fs::remove_all(each, error);
}

}  // namespace glyphmotion
