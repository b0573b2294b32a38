// SPDX-License-Identifier: MIT
// Files that a person asks for: made by the command line from the document, beside the dialog.
#include <zip.h>

#include <algorithm>
#include <filesystem>

#include "host/encoders/encoders.h"
#include "host/page/event_fields.h"
#include "host/page/page_session.h"
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

// The pictures of a folder, stored: they are compressed already.
std::string ZipFolder(const std::string& folder, const std::string& path) {
  int error = 0;
  zip_t* archive = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
  if (!archive) return "the archive cannot be written; is the disk full?";
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(folder)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  bool added = true;
  for (const fs::path& file : files) {
    zip_source_t* source = zip_source_file(archive, file.c_str(), 0, -1);
    const auto index = source ? zip_file_add(archive, file.filename().c_str(), source, ZIP_FL_ENC_UTF_8) : -1;
    added = added && index >= 0 &&
            zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0) == 0;
  }
  if (added && zip_close(archive) == 0) return {};
  zip_discard(archive);
  return "the archive cannot be written; is the disk full?";
}

}  // namespace

Json PageSession::ExportFormats() {
  Json formats = Json::array();
  for (const ExportFormat& row : kFormats) {
    const EncoderFormat* format = FindFormat(row.extension);
    if (format && !format->lacks) formats.push_back(row.name);
  }
  return formats;
}

void PageSession::Export(const Json& event) {
  const std::string tag = TextIn(event, "tag"), wanted = TextIn(event, "format");
  const auto fail = [this, tag](const std::string& sentence) {
    Send({{"type", "file"}, {"for", tag}, {"error", sentence}});
  };
  const auto give = [this, tag](const std::string& name, const char* mime, const std::string& bytes) {
    send_({{{"type", "file"}, {"for", tag}, {"name", name}, {"mime", mime}}, {bytes.begin(), bytes.end()}});
  };
  const std::string stem = StemOf(name_);
  if (wanted == "gif" && !options_.ChangeFile()) {
    if (const auto gif = build_->GifOf(revision_)) return give(stem + ".gif", "image/gif", *gif);
  }
  const bool frames = wanted == "frames";
  const auto* format = std::find_if(std::begin(kFormats), std::end(kFormats),
                                    [&](const ExportFormat& row) { return row.name == wanted; });
  if (!frames && format == std::end(kFormats)) return fail("there is no format '" + wanted + "'");
  const std::string base = scratch_.Path() + "/export" + std::to_string(++exported_);
  if (!WriteScratchFile(base + ".gm4", document_)) return fail("there is no room for the picture; is the disk full?");
  std::vector<std::string> words = {"--document", base + ".gm4", "-q", "-o", base + (frames ? "" : format->extension)};
  if (frames) words.insert(words.end(), {"--frames-as", "png"});
  const auto options = OptionWords(PictureOptions::Use::File, frames ? "" : format->extension);
  words.insert(words.end(), options.begin(), options.end());
  if ((frames || format->hasAlpha) && transparent_) words.push_back("--alpha");
  exports_.emplace_back([=, this] {
    std::string trouble = services_.run(words);
    if (trouble.empty() && frames) trouble = ZipFolder(base, base + ".zip");
    const std::string path = base + (frames ? ".zip" : format->extension);
    const auto bytes = trouble.empty() ? ReadWholeFile(path, std::size_t{1} << 30) : std::nullopt;
    if (bytes) {
      give(stem + (frames ? "-frames.zip" : format->extension), frames ? "application/zip" : format->mime, *bytes);
    } else {
      fail(trouble.empty() ? "the picture could not be read again" : trouble);
    }
    std::error_code error;
    for (const std::string& each : {base, base + ".gm4", path}) fs::remove_all(each, error);
  });
}

}  // namespace glyphmotion
