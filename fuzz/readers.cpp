// SPDX-License-Identifier: MIT
#include "fuzz/readers.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>

#include "platform/text_engine.h"

namespace glyphmotion::fuzz {
namespace {

constexpr Reader kReaders[] = {
    {"arguments", ReadArguments,
     "host/options/arguments.cpp host/options/output_arguments.cpp host/options/values.cpp "
     "host/options/typed_words.cpp "
     "host/options/look_arguments.cpp host/options/library_options.cpp host/program/command_line.cpp",
     4096, "EffectOptionNames LookOptionNames InOptionTerms KeepLook"},
    {"batch_lines", ReadBatchLines, "host/program/json_lines.cpp", 4096,
     "AddNotes Dumped Begun JsonOf JsonOfSkipped JsonOfError"},
    {"documents", ReadDocuments, "src/shell/documents.cpp", 262144,
     "Report ReportOutOfMemory LineOfControl ChangedLine DocumentText SaveDocument"},
    {"fonts", ReadFonts, "src/platform/portable/font_files.cpp src/platform/portable/text_faces.cpp", 32768,
     "FontFaces PackageFor NameOfCharacter MissingNote"},
    {"fountains", ReadFountains, "src/materials/fountain.cpp", 4096,
     "WriteFountainLibrary AddToFountainLibrary FountainToDisk FountainFromDisk"},
    {"gif_writer", WriteGifs,
     "host/encoders/gif_writer.cpp host/encoders/gif_held_frame.cpp host/encoders/gif_frame.cpp "
     "host/encoders/gif_file.cpp host/encoders/gif_palette.cpp "
     "host/encoders/lzw.cpp",
     4096, "SetStop"},
    {"host_answers", ReadHostAnswers, "src/shell/build_driver.cpp src/shell/exports.cpp", 4096,
     "PLUGIN16GetPluginParams"},
    {"host_records", ReadHostRecords, "host/recording/animation.cpp host/encoders/dib_reader.cpp"},
    {"looks", ReadLooks, "host/options/looks.cpp host/options/look_arguments.cpp", 4096,
     "LookOptionNames KeepLook Folders LookFiles FirstLine Looks LookText"},
    {"material_files", ReadMaterialFiles, "src/materials/material.cpp", 4096,
     "SaveMaterial AverageBitmapColour MaterialToBitmap"},
    {"material_texts", ReadMaterialTexts,
     "src/materials/material_text.cpp src/materials/gradient_text.cpp src/materials/texture_text.cpp "
     "src/materials/text_parts.cpp src/materials/colour_text.cpp",
     4096, "TextureNames TileNames FountainNames"},
    {"page_events", ReadPageEvents, "host/page/page_events.cpp host/page/page_session.cpp host/page/page_documents.cpp",
     8192},
    {"pictures", ReadPictures, "host/render/image_loader.cpp host/render/image_pixels.cpp", 65536},
    {"requests", ReadRequests, "host/page/page_server.cpp host/page/guarded_stream.cpp"},
    {"set_values", ReadSetValues, "host/render/render_user.cpp host/render/job_fields.cpp host/render/file_values.cpp",
     4096, "SavesMilliseconds SavedNumbers ForDocument ForSettings"},
    {"settings", ReadSettings, "src/shell/settings.cpp src/controls/variables.cpp", 16384,
     "SaveSettings EncodeRegistration TheLegacy UnsavedVariable RecallUnsavedVariables LeaveUnsavedVariables "
     "NumberVariable TextVariable"},
    {"text", ReadText,
     "src/platform/portable/clusters.cpp src/platform/portable/shaping.cpp src/platform/text_scripts.cpp "
     "src/platform/encoding.cpp src/text/text_layout.cpp src/text/text_raster.cpp",
     300, "Forget Width MaximumRow3 CarveRow Dilate BlockExtent OutlineMask ExpandMask DilateMask"},
    {"textures", ReadTextures, "src/materials/texture_library.cpp", 4096,
     "WriteTextureLibrary WithLineEnds AppendItem"},
    {"tiles", ReadTiles, "src/materials/tile.cpp src/materials/library_file.cpp", 4096,
     "WriteTileLibrary RenderTile FileExists RemoveFile BackUpFile"},
};

}  // namespace

std::span<const Reader> Readers() { return kReaders; }

const Reader* FindReader(std::string_view name) {
  for (const Reader& reader : kReaders) {
    if (name == reader.name) return &reader;
  }
  return nullptr;
}

void Prepare() {
  const char* memory = "/dev/shm";  // inputs are files for an instant
  static const std::string home =
      std::string(access(memory, W_OK) == 0 ? memory : "/tmp") + "/glyphmotion-fuzz-" + std::to_string(getpid());
  std::filesystem::create_directories(home);
  setenv("GLYPHMOTION_HOME", home.c_str(), 1);
  setenv("SOURCE_DATE_EPOCH", "0", 1);  // settings say when they were saved
  std::atexit([] {
    std::error_code error;
    std::filesystem::remove_all(home, error);
  });
  StartTextEngine();
}

const std::string& FileOf(std::string_view bytes, const char* suffix) {
  static std::map<std::string, std::string> paths;
  std::string& path = paths[suffix];
  if (path.empty()) path = std::string(std::getenv("GLYPHMOTION_HOME")) + "/input" + suffix;
  if (std::FILE* file = std::fopen(path.c_str(), "wb")) {
    if (!bytes.empty()) std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);
  }
  return path;
}

void Require(bool holds) {
  if (!holds) std::abort();
}

std::uint8_t Numbers::Byte() {
  const std::string_view taken = Take(1);
  return taken.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(taken[0]);
}

std::uint32_t Numbers::Word() {
  std::uint32_t word = 0;
  const std::string_view taken = Take(sizeof word);
  std::memcpy(&word, taken.data(), taken.size());
  return word;
}

std::string_view Numbers::Take(std::size_t bytes) {
  const std::string_view taken = rest_.substr(0, bytes);
  rest_.remove_prefix(taken.size());
  return taken;
}

}  // namespace glyphmotion::fuzz
