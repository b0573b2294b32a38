// SPDX-License-Identifier: MIT
// Every reader of what others have made, as a function of arbitrary bytes. libFuzzer and the replay of the corpora call
// them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace glyphmotion::fuzz {

struct Reader {
  const char* name;  ///< of its corpus and its dictionary, too
  void (*read)(std::string_view input);
  const char* sources;         ///< whose lines it has to reach, by blanks
  std::size_t longest = 4096;  ///< bytes of an input
  const char* apart = "";      ///< functions of the sources that read nothing: they write, draw, or ask a person
};
std::span<const Reader> Readers();
/// Null for none.
const Reader* FindReader(std::string_view name);

/// For once in a process: a home of its own that is empty, and the text engine, which takes long to start.
void Prepare();

/// The path of a file of this process with the bytes given; the next call for the same suffix overwrites it.
const std::string& FileOf(std::string_view bytes, const char* suffix = "");

/// What must hold whatever the input is.
void Require(bool holds);

/// The beginning of an input as numbers, then the rest of it as text.
class Numbers {
 public:
  explicit Numbers(std::string_view input) : rest_(input) {}
  bool Any() const { return !rest_.empty(); }
  std::uint8_t Byte();
  std::uint32_t Word();
  std::string_view Take(std::size_t bytes);
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

// --- materials.cpp
void ReadFountains(std::string_view input);
void ReadMaterialFiles(std::string_view input);
void ReadMaterialTexts(std::string_view input);
void ReadTextures(std::string_view input);
void ReadTiles(std::string_view input);
// --- texts.cpp
void ReadFonts(std::string_view input);
void ReadText(std::string_view input);
// --- documents.cpp
void ReadDocuments(std::string_view input);
void ReadPictures(std::string_view input);
void ReadSettings(std::string_view input);
// --- options.cpp
void ReadArguments(std::string_view input);
void ReadBatchLines(std::string_view input);
void ReadLooks(std::string_view input);
void ReadSetValues(std::string_view input);
// --- hosts.cpp
void ReadHostAnswers(std::string_view input);
void ReadHostRecords(std::string_view input);
void WriteGifs(std::string_view input);
// --- pages.cpp
void ReadPageEvents(std::string_view input);
void ReadRequests(std::string_view input);

}  // namespace glyphmotion::fuzz
