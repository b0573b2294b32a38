// SPDX-License-Identifier: MIT
#include "materials/texture_library.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "materials/fractal_texture.h"
#include "materials/library_file.h"
#include "materials/surface_texture.h"
#include "platform/ascii.h"
#include "platform/encoding.h"
#include "platform/files.h"
#include "platform/number_text.h"
#include "resources/strings.h"

namespace glyphmotion {
namespace {

constexpr char kSignature[] = "TESSALOOM E-DRAPE TEXTURE FILE";
constexpr char kWarning[] =
    ";This is a machine-generated text file. If you edit it by hand, you\n"
    ";run the very real and tangible risk of causing all time and space to\n"
    ";implode upon itself and bring about the extinction of reality as we\n"
    ";know it. Think carefully...\n";
constexpr std::size_t kLongestLine = 8192, kLongestName = 260;

bool IsBlank(char c) { return static_cast<unsigned char>(c) <= 0x20; }

std::string_view StripEnd(std::string_view text) {
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// The lines of a file, without line ends and leading blanks; lines over the limit are split.
class Lines {
 public:
  explicit Lines(std::string_view text) : rest_(text) {}
  bool Next(std::string_view& line) {
    if (rest_.empty()) return false;
    const std::size_t end = rest_.substr(0, kLongestLine).find('\n');
    const std::size_t length = end == std::string_view::npos ? std::min(rest_.size(), kLongestLine) : end + 1;
    line = StripEnd(rest_.substr(0, length));
    rest_.remove_prefix(length);
    return true;
  }

 private:
  std::string_view rest_;
};

// Splits "key = value" and trims both; false without an "=".
bool SplitLine(std::string_view line, std::string_view& key, std::string& value) {
  const std::size_t equals = line.find('=');
  if (line.empty() || line[0] == ';' || equals == std::string_view::npos) return false;
  key = StripEnd(line.substr(0, equals));
  line.remove_prefix(equals + 1);
  while (!line.empty() && (IsBlank(line[0]) || line[0] == '=')) line.remove_prefix(1);
  value = line;
  return true;
}

// Numbers in files use a decimal point, whatever the process's locale. Text after a number is ignored; without a
// number, or out of range, the value is 0.
float FloatOf(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0.0;
  ReadNumber(text, value);
  return static_cast<float>(std::clamp(value, -3.0e38, 3.0e38));
}

void SetField(NamedTexture& texture, std::string_view key, const std::string& value) {
  if (EqualsIgnoringCase(key, "TextureName")) {
    texture.name = StripEnd(CutText(value, kLongestName));
    return;
  }
  for (const TextureField& field : TextureFields()) {
    if (!EqualsIgnoringCase(key, field.key)) continue;
    auto* place = reinterpret_cast<std::uint8_t*>(&texture.parameters) + field.offset;
    if (field.isFloat) {
      const float number = FloatOf(value);
      std::memcpy(place, &number, sizeof(number));
    } else {
      const auto number = static_cast<std::uint32_t>(std::strtoll(value.c_str(), nullptr, 10));
      std::memcpy(place, &number, sizeof(number));
    }
    return;
  }
}

// Converts to the line endings of this platform.
std::string WithLineEnds(std::string text) {
  const std::string_view end = LineEnd();
  if (end == "\n") return text;
  std::string result;
  for (const char c : text) c == '\n' ? result += end : result += c;
  return result;
}

void AppendItem(std::string& text, const NamedTexture& texture) {
  const std::string name = texture.name.empty() ? LoadText(kTextNamelessTexture) : ToUtf8(texture.name);
  text += ":BEGINITEM\nTextureName=" + name + "\n";
  for (const TextureField& field : TextureFields()) {
    const auto* place = reinterpret_cast<const std::uint8_t*>(&texture.parameters) + field.offset;
    std::string value;
    if (field.isFloat) {
      float number;
      std::memcpy(&number, place, sizeof(number));
      value = FixedText(number);
    } else {
      std::uint32_t number;
      std::memcpy(&number, place, sizeof(number));
      value = std::to_string(number);
    }
    text += std::string(field.key) + "=" + value + "\n";
  }
  text += ":ENDITEM\n";
}

// Bytes that are not UTF-8 would make the whole file be read as Windows-1252.
std::string TextOfLibrary(const TextureLibrary& library, const LibraryStamp& stamp, bool primary) {
  std::string text = std::string(kSignature) + "\n" + kWarning +
                     "Version=16.0a\nItemcount=" + std::to_string(library.textures.size()) + "\n";
  if (!primary) text += "Writeable=1\n";
  text += "UpdateTimeDate=" + stamp.timeText.substr(0, 24) + "\n";
  text += std::string("RegisteredUser=") + (stamp.registered ? "1" : "0") + "\n";
  text += "MachineName=" + ToUtf8(stamp.machineName) + "\n";
  text += "MachineOrganization=" + ToUtf8(stamp.machineOrganization) + "\n";
  text += "RegistrationName=" + ToUtf8(stamp.registrationName) + "\n;Items begin\n";
  for (const NamedTexture& texture : library.textures) AppendItem(text, texture);
  return WithLineEnds(text + ";Items end -- beyond this point be dragons.\n");
}

}  // namespace

void DefaultTextureSpec(TextureSpec& parameters) noexcept {
  static constexpr float legacy[] = {12.0f, 60.0f, 2.0f, 3.1f, 100.0f, 650.0f};
  static constexpr Colour fore[] = {0xFFFFFF, 0xFFE0E0, 0xFFA0A0, 0xFF8080, 0xFF6060};
  static constexpr float curve[] = {0.0f, 0.33f, 0.67f, 1.0f};
  std::memset(&parameters, 0, sizeof(parameters));
  parameters.CloudMode = 1;
  std::memcpy(parameters.LegacyParams, legacy, sizeof(legacy));
  parameters.MatrixSize = 64;
  std::memcpy(parameters.ForeColour, fore, sizeof(fore));
  parameters.BackColour = 0xFF0000;
  for (std::uint32_t i = 0; i < 5; ++i) {
    parameters.Power[i] = 0.75f;
    parameters.SeedValue[i] = 10000 + i;
    parameters.Dimension[i] = 2.15f;
  }
  parameters.CreaterCount = 5000;
  parameters.CreaterDepth = 1.5f;
  std::memcpy(parameters.ColorRed, curve, sizeof(curve));
  std::memcpy(parameters.ColorGreen, curve, sizeof(curve));
  std::memcpy(parameters.ColorBlue, curve, sizeof(curve));
  parameters.BubbleCount = 64;
  parameters.BubbleSize = 4;
  parameters.BubblePower = 0.25f;
  parameters.PerturbationPower = 1.0f;
}

PackedDib GenerateTexture(const TextureSpec& parameters, const TextureWindow& window) noexcept {
  switch (parameters.TextureType) {
    case 0:
    case 1:
    case 2:
    case 3:
      return GenerateFractalTexture(parameters, window);
    case 4:
      return GenerateCraterTexture(parameters, window);
    case 5:
      return GeneratePerturbationTexture(parameters, window);
    default:
      return {};
  }
}

const std::vector<TextureField>& TextureFields() {
#define GLYPHMOTION_NUMBER(name) \
  { #name, offsetof(TextureSpec, name), false }
#define GLYPHMOTION_FLOAT(name) \
  { #name, offsetof(TextureSpec, name), true }
#define GLYPHMOTION_ITEM(key, name, i, isFloat) \
  { key, offsetof(TextureSpec, name) + 4 * (i), isFloat }
  static const std::vector<TextureField> fields = {
      GLYPHMOTION_ITEM("Power1", Power, 0, true),
      GLYPHMOTION_ITEM("Power2", Power, 1, true),
      GLYPHMOTION_ITEM("Power3", Power, 2, true),
      GLYPHMOTION_ITEM("Power4", Power, 3, true),
      GLYPHMOTION_ITEM("Power5", Power, 4, true),
      GLYPHMOTION_ITEM("SeedValue1", SeedValue, 0, false),
      GLYPHMOTION_ITEM("SeedValue2", SeedValue, 1, false),
      GLYPHMOTION_ITEM("SeedValue3", SeedValue, 2, false),
      GLYPHMOTION_ITEM("SeedValue4", SeedValue, 3, false),
      GLYPHMOTION_ITEM("SeedValue5", SeedValue, 4, false),
      GLYPHMOTION_ITEM("Dimension1", Dimension, 0, true),
      GLYPHMOTION_ITEM("Dimension2", Dimension, 1, true),
      GLYPHMOTION_ITEM("Dimension3", Dimension, 2, true),
      GLYPHMOTION_ITEM("Dimension4", Dimension, 3, true),
      GLYPHMOTION_ITEM("Dimension5", Dimension, 4, true),
      GLYPHMOTION_NUMBER(MatrixSize),
      GLYPHMOTION_NUMBER(TextureType),
      GLYPHMOTION_ITEM("ForeColour1", ForeColour, 0, false),
      GLYPHMOTION_ITEM("ForeColour2", ForeColour, 1, false),
      GLYPHMOTION_ITEM("ForeColour3", ForeColour, 2, false),
      GLYPHMOTION_ITEM("ForeColour4", ForeColour, 3, false),
      GLYPHMOTION_ITEM("ForeColour5", ForeColour, 4, false),
      GLYPHMOTION_NUMBER(BackColour),
      GLYPHMOTION_NUMBER(CreaterCount),
      GLYPHMOTION_FLOAT(CreaterDepth),
      GLYPHMOTION_ITEM("ColorRed0", ColorRed, 0, true),
      GLYPHMOTION_ITEM("ColorRed1", ColorRed, 1, true),
      GLYPHMOTION_ITEM("ColorRed2", ColorRed, 2, true),
      GLYPHMOTION_ITEM("ColorRed3", ColorRed, 3, true),
      GLYPHMOTION_ITEM("ColorGreen0", ColorGreen, 0, true),
      GLYPHMOTION_ITEM("ColorGreen1", ColorGreen, 1, true),
      GLYPHMOTION_ITEM("ColorGreen2", ColorGreen, 2, true),
      GLYPHMOTION_ITEM("ColorGreen3", ColorGreen, 3, true),
      GLYPHMOTION_ITEM("ColorBlue0", ColorBlue, 0, true),
      GLYPHMOTION_ITEM("ColorBlue1", ColorBlue, 1, true),
      GLYPHMOTION_ITEM("ColorBlue2", ColorBlue, 2, true),
      GLYPHMOTION_ITEM("ColorBlue3", ColorBlue, 3, true),
      GLYPHMOTION_NUMBER(BubbleCount),
      GLYPHMOTION_NUMBER(BubbleSize),
      GLYPHMOTION_FLOAT(BubblePower),
      GLYPHMOTION_NUMBER(BubbleShape),
      GLYPHMOTION_FLOAT(PerturbationPower),
  };
#undef GLYPHMOTION_NUMBER
#undef GLYPHMOTION_FLOAT
#undef GLYPHMOTION_ITEM
  return fields;
}

bool ReadTextureLibrary(const std::string& path, TextureLibrary& library) {
  const auto bytes = ReadFileIfAny(path);
  const std::string text = bytes ? TextFromBytes(*bytes) : std::string();
  std::string_view line, key;
  Lines lines(text);
  if (!lines.Next(line) || line != kSignature) return false;
  library.textures.clear();
  std::string value;
  bool inItem = false;
  NamedTexture texture;
  while (lines.Next(line)) {
    if (!inItem && EqualsIgnoringCase(line, ":BEGINITEM")) {
      inItem = true;
      texture.name.clear();
      DefaultTextureSpec(texture.parameters);
    } else if (EqualsIgnoringCase(line, ":ENDITEM")) {
      if (inItem) library.textures.push_back(texture);
      inItem = false;
    } else if (SplitLine(line, key, value)) {
      if (inItem) {
        SetField(texture, key, value);
      } else if (EqualsIgnoringCase(key, "Writeable")) {
        library.writeable = std::atol(value.c_str()) != 0;
      }
    }
  }
  return true;
}

bool WriteTextureLibrary(const std::string& path, const TextureLibrary& library, const LibraryStamp& stamp,
                         bool primary) noexcept {
  try {
    BackUpFile(path);
    return AtomicWriteFile(path, library.textures.empty() ? std::string() : TextOfLibrary(library, stamp, primary));
  } catch (...) {
    return false;
  }
}

}  // namespace glyphmotion
