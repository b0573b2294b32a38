// SPDX-License-Identifier: MIT
// A material is what fills something: text, shadow, background. It has one of four kinds; one fixed record stores the
// settings of all four, so that switching the kind loses nothing. The record's bytes are a file format (documents
// contain them in hexadecimal), hence the offset checks below. Colours are 0x00BBGGRR.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "image/packed_dib.h"
#include "platform/memory.h"

namespace glyphmotion {

enum MaterialKind : std::uint32_t { kSolid = 0, kGradient = 1, kTexture = 2, kTile = 3 };

#pragma pack(push, 1)

/// A gradient of up to 64 markers between a start and an end colour.
struct FountainSpec {
  char Signature[8];      ///< "TESSFOUN"
  std::uint32_t Version;  ///< 0x04000001
  std::uint32_t Size;     ///< 585
  std::uint32_t
      Flags;  ///< bit 0: the control keeps its own file; bit 1: looped, the last segment returns to StartColour
  char Name[261];
  std::uint64_t Preview;      ///< block handle
  std::uint32_t MarkerCount;  ///< 0 to 64
  std::uint32_t StartColour, EndColour;
  std::uint32_t Markers[64];  ///< low 24 bits colour, top byte position 0 to 255
  std::uint8_t Reserved[28];
};
static_assert(sizeof(FountainSpec) == 585);

struct GradientSpec {
  std::uint32_t GradientType;  ///< 0 linear, 1 conical, 2 elliptical, 3 rectangular; others as linear
  std::uint32_t StartColour, EndColour;
  std::int32_t EdgePad;  ///< percent of the table given to flat colour at each end, 0 to 45
  std::int32_t CenterX;  ///< percent of the width from the middle, -50 to 50
  std::int32_t CenterY;
  std::int32_t Midpoint;  ///< percent, 1 to 99; 50 is a plain blend
  std::uint32_t GradientReserved;
  std::int32_t Rotation;   ///< degrees, -360 to 360
  std::uint32_t TwoColor;  ///< nonzero: two colours; zero: the fountain
};
static_assert(sizeof(GradientSpec) == 40);

struct TextureSpec {
  std::uint32_t TextureType;              ///< 0 to 3 fractals of 1 to 4 layers, 4 craters, 5 perturbation
  std::int32_t Left, Top, Right, Bottom;  ///< the size asked, set by MaterialToBitmap
  std::uint8_t Reserved20[20];
  std::uint32_t CloudMode;
  std::uint8_t Reserved44[4];
  float LegacyParams[6];
  std::uint32_t MatrixSize;
  std::uint32_t ForeColour[5];
  std::uint32_t BackColour;
  float Power[5];
  std::uint32_t SeedValue[5];
  float Dimension[5];
  std::uint32_t CreaterCount;
  float CreaterDepth;
  float ColorRed[4], ColorGreen[4], ColorBlue[4];
  std::uint32_t BubbleCount, BubbleSize;
  float BubblePower, PerturbationPower;
  std::uint32_t BubbleShape;
  std::uint8_t Reserved236[32];
};
static_assert(sizeof(TextureSpec) == 268);

struct TileSpec {
  char TilePath[261];                     ///< the tile library's full path
  std::uint32_t TileIndex;                ///< from 0
  std::uint64_t TileBitmap;               ///< block handle of the loaded tile; meaningless in stored forms
  std::int32_t Left, Top, Right, Bottom;  ///< the size asked
  std::uint32_t TileReserved;
  std::uint8_t Reserved[28];
};
static_assert(sizeof(TileSpec) == 321);

struct Material {
  char Signature[8];      ///< "TESSCMAT"
  std::uint32_t Size;     ///< 1282
  std::uint32_t Version;  ///< 0x00040000
  std::uint32_t Kind;     ///< MaterialKind
  std::uint32_t Colour;
  std::uint32_t ButtonState;  ///< bit 0 face pressed, bit 1 arrow pressed; cleared on load
  GradientSpec Gradient;
  FountainSpec Fountain;
  TextureSpec Texture;
  TileSpec Tile;
  std::uint64_t Preview;        ///< block handle; meaningless in stored forms
  std::uint32_t AverageColour;  ///< mean of the preview
  std::uint8_t Reserved[28];
};

#pragma pack(pop)

static_assert(sizeof(Material) == 1282);
static_assert(offsetof(Material, Kind) == 16 && offsetof(Material, Colour) == 20 &&
              offsetof(Material, ButtonState) == 24);
static_assert(offsetof(Material, Gradient) == 28 && offsetof(Material, Fountain) == 68 &&
              offsetof(Material, Texture) == 653);
static_assert(offsetof(Material, Tile) == 921 && offsetof(Material, Tile) + offsetof(TileSpec, TileIndex) == 1182);
static_assert(offsetof(Material, Tile) + offsetof(TileSpec, TileBitmap) == 1186);
static_assert(offsetof(Material, Tile) + offsetof(TileSpec, Left) == 1194);
static_assert(offsetof(Material, Preview) == 1242 && offsetof(Material, AverageColour) == 1250);
static_assert(offsetof(FountainSpec, Preview) == 281 && offsetof(FountainSpec, MarkerCount) == 289 &&
              offsetof(FountainSpec, Markers) == 301);
static_assert(offsetof(TextureSpec, MatrixSize) == 72 && offsetof(TextureSpec, BackColour) == 96 &&
              offsetof(TextureSpec, CreaterCount) == 160 && offsetof(TextureSpec, BubbleCount) == 216 &&
              offsetof(TextureSpec, BubbleShape) == 232);

/// The bits of `ButtonState` for pressed parts; the other bits are preserved.
constexpr std::uint32_t kPressedBits = 3;

/// The spectrum fountain, the texture defaults and so on, with `colour` as the solid colour.
void DefaultMaterial(Material& material, Colour colour) noexcept;

/// A new 24-bit bitmap of the size, filled by the material, owned by the caller; nothing on failure. Writes the
/// requested size into the record, which therefore stays locked during the call. An unknown kind gives black.
PackedDib MaterialToBitmap(Material& material, int width, int height) noexcept;

/// The mean of each channel over all pixels of a 24-bit bitmap, in integers; black for any other.
Colour AverageBitmapColour(const PackedDib& bitmap) noexcept;

/// Two capital hexadecimal digits a byte.
std::string HexEncode(const void* bytes, std::size_t count);
/// A new block of count + 1 bytes from pairs of digits; a text that ends early leaves a tail of zeros; any other
/// character, nothing. Throws std::bad_alloc when out of memory.
MovableBlock HexDecode(const std::string& text, std::size_t count);

/// Reads a .mtrl file (1270 bytes) into the record, with its handles empty and neither face nor arrow pressed. False,
/// and the record as it was, when the file is missing, short or foreign. Throws std::bad_alloc when out of memory.
bool ReadMaterialFile(const std::string& path, Material& material);

/// A new material from a .mtrl file (1270 bytes), or the defaults with `colour` when the file is missing, short or
/// foreign, or `readFile` is false. Nothing only when out of memory. Loads the tile of a stored path.
MovableBlock LoadMaterial(const std::string& path, Colour colour, bool readFile) noexcept;
/// Writes the 1270 bytes; a short write leaves no file. False when it could not be written.
bool SaveMaterial(BlockHandle material, const std::string& path) noexcept;

/// Frees the record's preview and tile, then the record.
void FreeMaterial(BlockHandle material) noexcept;

}  // namespace glyphmotion
