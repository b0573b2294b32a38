// SPDX-License-Identifier: MIT
// The table is in the order of the file: first the keys of the dialog, then a copy of the keys of each effect for the
// effect's own stem. A key that is a prefix of several rows means the first of them, so the order matters. The keys
// spell "Colour" and "Color" as settings files have always had them.
#include "resources/settings_table.h"

#include <string_view>

namespace glyphmotion {
namespace {

// `extra` and `number` are of the four rows with a flag of their own, which are numbered 100 to 103.
constexpr SettingsRow Switch(const char* key, std::uint32_t initial) { return {key, kSettingSwitch, 0, initial, ""}; }
constexpr SettingsRow Number(const char* key, std::uint32_t initial, std::uint32_t extra = 0,
                             std::uint32_t number = 0) {
  return {key, kSettingNumber | extra, number, initial, ""};
}
constexpr SettingsRow Text(const char* key, const char* initial, std::uint32_t extra = 0, std::uint32_t number = 0) {
  return {key, kSettingText | extra, number, 0, initial};
}

// clang-format off
constexpr SettingsRow kRows[] = {
    Switch("AddDescriptiveCommentBlock", 1),
    Switch("AccentCompensation", 1),
    Number("AlphaGreyBack", 8355711),
    Text("CurrentFileName", "untitled.gm4"),
    Text("DefaultTextureFileName", "tlmplgm4.fft"),
    Number("DitherBrightness", 20),
    Number("DitherContrast", 20),
    Switch("FastRemap", 0),
    Switch("MainAlphaTrans", 0),
    Switch("MainAntialias", 1),
    Number("MainDelay", 4),
    Number("MainDepth", 32),
    Switch("MainDither", 0),
    Number("MainEffect", 17),
    Switch("MainFitToText", 1),
    Switch("MainFontBold", 1),
    Switch("MainFontItalic", 0),
    Text("MainFontName", "Arial"),
    Number("MainFontSize", 56),
    Number("MainFontSpace", 90),
    Switch("MainMaskBackground", 1),
    Switch("MainPadding", 0),
    Number("MainPalette", 6),
    Number("MainPause", 100),
    Switch("MainRolling", 1),
    Number("MainSteps", 32),
    Switch("MainSupercompress", 0),
    Text("MainText", "This space for rent..."),
    Text("MainVerticalOffset", "0"),
    Text("MatrixLibrary", "tlmplgm4.mtx"),
    Text("MatrixDefaultTile", ""),
    Number("MainTransparent", 0),
    Text("OpenPath", ""),
    Number("PatchLevel", 1, kSettingNeverRead, 100),
    Text("RegistrationCode", "", kSettingRegistration, 101),
    Text("RegistrationName", "", kSettingRegistration, 102),
    Switch("SampleWindowKeyLine", 0),
    Switch("SolidBackground", 1),
    Switch("ShowFileOpenPreview", 1),
    Switch("Truecolour", 1),
    Number("UpdateDelay", 1000),
    Switch("UseAlphaGreyBack", 1),
    Number("VersionNumber", 512, kSettingNeverRead, 103),

    // Style000
    Number("Style000FillOpacity", 255),
    Number("Style000Frames", 64),
    Number("Style000OutlineColor", 3355443),
    Switch("Style000OutlineEnable", 1),
    Number("Style000Scroll", 1),
    Number("Style000ShadowColor", 8355711),
    Number("Style000ShadowDirection", 7),
    Switch("Style000ShadowEnable", 1),
    Number("Style000ShadowOffset", 4),
    Number("Style000ShadowOpacity", 255),
    Number("Style000Soft", 20),
    Switch("Style000Track", 1),

    // Style001
    Number("Style001Frames", 64),
    Number("Style001OutlineColor", 3355443),
    Switch("Style001OutlineEnable", 1),
    Number("Style001Range", 48),
    Number("Style001Wavesize", 20),

    // Style002
    Switch("Style002FillEnable3", 1),
    Switch("Style002FillEnable4", 1),
    Switch("Style002FillEnable5", 1),
    Number("Style002FillOpacity", 255),
    Number("Style002Frames", 65),
    Number("Style002IrisSize1", 12),
    Number("Style002IrisSize2", 12),
    Number("Style002IrisSize3", 12),
    Number("Style002IrisSize4", 12),
    Number("Style002IrisSize5", 12),
    Number("Style002IrisStyle1", 0),
    Number("Style002IrisStyle2", 1),
    Number("Style002IrisStyle3", 2),
    Number("Style002IrisStyle4", 5),
    Number("Style002IrisStyle5", 8),
    Number("Style002OutlineColor", 3355443),
    Switch("Style002OutlineEnable", 1),
    Number("Style002ShadowColor", 8355711),
    Number("Style002ShadowDirection", 7),
    Switch("Style002ShadowEnable", 1),
    Number("Style002ShadowOffset", 4),
    Number("Style002ShadowOpacity", 255),
    Number("Style002Soft", 20),

    // Style003
    Number("Style003Frames", 64),
    Number("Style003OutlineColor", 3355443),
    Switch("Style003OutlineEnable", 1),
    Number("Style003Waveheight", 60),
    Number("Style003Wavesize", 20),

    // Style004
    Switch("Style004Fadetext", 1),
    Number("Style004FillOpacity", 255),
    Number("Style004Frames", 64),
    Number("Style004OutlineColor", 3355443),
    Switch("Style004OutlineEnable", 1),
    Switch("Style004Scrambleshadow", 1),
    Number("Style004Seed", 12385),
    Number("Style004ShadowColor", 8355711),
    Number("Style004ShadowDirection", 7),
    Switch("Style004ShadowEnable", 1),
    Number("Style004ShadowOffset", 4),
    Number("Style004ShadowOpacity", 255),
    Number("Style004Size", 32),
    Number("Style004Soft", 20),

    // Style005
    Number("Style005BeamColor", 65433),
    Number("Style005BeamOutColor", 16777215),
    Number("Style005BeamSize", 6),
    Number("Style005BeamSoft", 16),
    Switch("Style005Fatten", 0),
    Switch("Style005FillEnable", 1),
    Number("Style005FillOpacity", 255),
    Number("Style005Frames", 64),
    Switch("Style005OutEnable", 1),
    Number("Style005OutlineColor", 3355443),
    Switch("Style005OutlineEnable", 1),
    Number("Style005Scroll", 1),
    Number("Style005ShadowColor", 8355711),
    Number("Style005ShadowDirection", 7),
    Switch("Style005ShadowEnable", 1),
    Number("Style005ShadowOffset", 4),
    Number("Style005ShadowOpacity", 255),
    Number("Style005Soft", 20),

    // Style006
    Number("Style006Density", 40),
    Number("Style006FillOpacity", 255),
    Number("Style006Frames", 96),
    Number("Style006OutlineColor", 3355443),
    Switch("Style006OutlineEnable", 1),
    Number("Style006Scroll", 1),
    Number("Style006Seed", 22421),
    Number("Style006ShadowColor", 8355711),
    Number("Style006ShadowDirection", 7),
    Switch("Style006ShadowEnable", 1),
    Number("Style006ShadowOffset", 4),
    Number("Style006ShadowOpacity", 255),
    Number("Style006Soft", 20),
    Number("Style006SparkColor", 16777215),
    Switch("Style006Track", 1),

    // Style007
    Switch("Style007BevelEnable", 1),
    Number("Style007Density", 64),
    Number("Style007Drift", 5),
    Number("Style007FillColor1", 16248550),
    Number("Style007FillColor2", 14597790),
    Number("Style007FillColor3", 8607532),
    Number("Style007FillColor4", 5453596),
    Number("Style007FillColor5", 0),
    Switch("Style007FillEnable2", 1),
    Switch("Style007FillEnable3", 1),
    Switch("Style007FillEnable4", 1),
    Switch("Style007FillEnable5", 1),
    Number("Style007FillOpacity", 255),
    Number("Style007Frames", 64),
    Number("Style007OutlineColor", 3355443),
    Switch("Style007OutlineEnable", 1),
    Number("Style007Seed", 17659),
    Number("Style007ShadowColor", 8355711),
    Number("Style007ShadowDirection", 7),
    Switch("Style007ShadowEnable", 1),
    Number("Style007ShadowOffset", 4),
    Number("Style007ShadowOpacity", 255),
    Number("Style007Size", 80),
    Number("Style007Soft", 20),

    // Style008
    Number("Style008FillOpacity", 255),
    Number("Style008Frames", 64),
    Number("Style008OutlineColor", 3355443),
    Switch("Style008OutlineEnable", 1),
    Number("Style008Rotate", 360),
    Number("Style008Scroll", 1),
    Number("Style008ShadowColor", 8355711),
    Number("Style008ShadowDirection", 7),
    Switch("Style008ShadowEnable", 1),
    Number("Style008ShadowOffset", 4),
    Number("Style008ShadowOpacity", 255),
    Switch("Style008Smooth", 1),
    Number("Style008Soft", 20),

    // Style009
    Number("Style009FillOpacity", 255),
    Number("Style009Frames", 64),
    Number("Style009OutlineColor", 3355443),
    Switch("Style009OutlineEnable", 1),
    Number("Style009Scroll", 0),
    Number("Style009ShadowColor", 8355711),
    Number("Style009ShadowDirection", 7),
    Switch("Style009ShadowEnable", 1),
    Number("Style009ShadowOffset", 4),
    Number("Style009ShadowOpacity", 255),
    Number("Style009Size", 2),
    Number("Style009Soft", 20),

    // Style010
    Number("Style010FillOpacity", 255),
    Number("Style010Frames", 64),
    Number("Style010Interference", 160),
    Number("Style010OutlineColor", 3355443),
    Switch("Style010OutlineEnable", 1),
    Switch("Style010RandomDelay", 1),
    Number("Style010Seed", 11234),
    Number("Style010ShadowColor", 8355711),
    Number("Style010ShadowDirection", 7),
    Switch("Style010ShadowEnable", 1),
    Number("Style010ShadowOffset", 4),
    Number("Style010ShadowOpacity", 255),
    Number("Style010Size", 1),

    // Style011
    Number("Style011FillOpacity", 255),
    Number("Style011Increment", 21),
    Switch("Style011MaskCenter", 1),
    Number("Style011OutlineColor", 3355443),
    Switch("Style011OutlineEnable", 1),
    Number("Style011ShadowColor", 8355711),
    Number("Style011ShadowDirection", 7),
    Switch("Style011ShadowEnable", 1),
    Number("Style011ShadowOffset", 4),
    Number("Style011ShadowOpacity", 255),
    Number("Style011Soft", 20),
    Number("Style011Angle", 180),
    Number("Style011TraceColor", 1900316),

    // Style012
    Number("Style012Energy", 20),
    Number("Style012FillOpacity", 255),
    Number("Style012Frames", 64),
    Number("Style012OutlineColor", 3355443),
    Switch("Style012OutlineEnable", 1),
    Number("Style012ShadowColor", 8355711),
    Number("Style012ShadowDirection", 7),
    Switch("Style012ShadowEnable", 1),
    Number("Style012ShadowOffset", 4),
    Number("Style012ShadowOpacity", 255),
    Number("Style012Soft", 20),

    // Style013
    Switch("Style013BackgroundEnable3", 1),
    Switch("Style013BackgroundEnable4", 1),
    Switch("Style013BackgroundEnable5", 1),
    Number("Style013FillOpacity", 255),
    Number("Style013Frames", 65),
    Number("Style013IrisSize1", 12),
    Number("Style013IrisSize2", 12),
    Number("Style013IrisSize3", 12),
    Number("Style013IrisSize4", 12),
    Number("Style013IrisSize5", 12),
    Number("Style013IrisStyle1", 0),
    Number("Style013IrisStyle2", 1),
    Number("Style013IrisStyle3", 2),
    Number("Style013IrisStyle4", 5),
    Number("Style013IrisStyle5", 8),
    Number("Style013OutlineColor", 3355443),
    Switch("Style013OutlineEnable", 1),
    Number("Style013ShadowColor", 8355711),
    Number("Style013ShadowDirection", 7),
    Switch("Style013ShadowEnable", 1),
    Number("Style013ShadowOffset", 4),
    Number("Style013ShadowOpacity", 255),
    Number("Style013Soft", 20),

    // Style014
    Number("Style014FillOpacity", 255),
    Number("Style014Frames", 64),
    Number("Style014OutlineColor", 3355443),
    Switch("Style014OutlineEnable", 1),
    Number("Style014Rotate", 720),
    Number("Style014Scroll", 1),
    Number("Style014ShadowColor", 8355711),
    Number("Style014ShadowDirection", 7),
    Switch("Style014ShadowEnable", 1),
    Number("Style014ShadowOffset", 4),
    Number("Style014ShadowOpacity", 255),
    Switch("Style014Smooth", 1),
    Number("Style014Soft", 20),

    // Style015
    Number("Style015Density", 25),
    Number("Style015FillOpacity", 255),
    Number("Style015Frames", 96),
    Number("Style015OutlineColor", 3355443),
    Switch("Style015OutlineEnable", 1),
    Number("Style015Scroll", 1),
    Number("Style015Seed", 22426),
    Number("Style015ShadowColor", 8355711),
    Number("Style015ShadowDirection", 7),
    Switch("Style015ShadowEnable", 1),
    Number("Style015ShadowOffset", 4),
    Number("Style015ShadowOpacity", 255),
    Number("Style015Soft", 20),
    Number("Style015SparkColor", 15196364),
    Switch("Style015Track", 1),

    // Style016
    Switch("Style016Alternate", 1),
    Number("Style016FillOpacity", 255),
    Number("Style016Frames", 64),
    Number("Style016OutlineColor", 3355443),
    Switch("Style016OutlineEnable", 1),
    Number("Style016Radius", 8),
    Number("Style016ShadowColor", 8355711),
    Number("Style016ShadowDirection", 7),
    Switch("Style016ShadowEnable", 1),
    Number("Style016ShadowOffset", 4),
    Number("Style016ShadowOpacity", 255),
    Number("Style016Soft", 20),

    // Style017
    Number("Style017FillOpacity", 255),
    Number("Style017Frames", 24),
    Number("Style017Intensity", 100),
    Number("Style017OutlineColor", 3355443),
    Switch("Style017OutlineEnable", 1),
    Number("Style017ShadowColor", 8355711),
    Number("Style017ShadowDirection", 7),
    Switch("Style017ShadowEnable", 1),
    Number("Style017ShadowOffset", 4),
    Number("Style017ShadowOpacity", 255),
    Number("Style017Soft", 20),

    // Style018
    Number("Style018BeamColor1", 255),
    Number("Style018BeamColor2", 65280),
    Number("Style018BeamColor3", 16711680),
    Number("Style018BeamColor4", 16711935),
    Number("Style018BeamColor5", 65535),
    Switch("Style018BeamEnable2", 1),
    Switch("Style018BeamEnable3", 1),
    Switch("Style018BeamEnable4", 1),
    Switch("Style018BeamEnable5", 1),
    Number("Style018Beamsize", 3),
    Number("Style018Density", 96),
    Number("Style018FillOpacity", 255),
    Number("Style018Frames", 32),
    Number("Style018OutlineColor", 8355711),
    Switch("Style018OutlineEnable", 0),
    Number("Style018Seed", 16252),
    Number("Style018ShadowColor", 8355711),
    Number("Style018ShadowDirection", 7),
    Switch("Style018ShadowEnable", 1),
    Number("Style018ShadowOffset", 4),
    Number("Style018ShadowOpacity", 255),
    Number("Style018Soft", 20),

    // Style019
    Number("Style019BeamColor1", 255),
    Number("Style019BeamColor2", 65280),
    Number("Style019BeamColor3", 16711680),
    Number("Style019BeamColor4", 16711935),
    Number("Style019BeamColor5", 65535),
    Switch("Style019BeamEnable2", 1),
    Switch("Style019BeamEnable3", 1),
    Switch("Style019BeamEnable4", 1),
    Switch("Style019BeamEnable5", 1),
    Number("Style019Density", 32),
    Number("Style019FillOpacity", 255),
    Number("Style019Frames", 64),
    Number("Style019OutlineColor", 3355443),
    Switch("Style019OutlineEnable", 1),
    Number("Style019Seed", 12860),
    Number("Style019ShadowColor", 8355711),
    Number("Style019ShadowDirection", 7),
    Switch("Style019ShadowEnable", 1),
    Number("Style019ShadowOffset", 4),
    Number("Style019ShadowOpacity", 255),
    Number("Style019Soft", 20),
    Switch("Style019VariAlpha", 0),
    Switch("Style019VariWidth", 0),
    Number("Style019Width", 8),

    // Style020
    Number("Style020FillOpacity", 255),
    Number("Style020Frames", 64),
    Number("Style020OutlineColor", 3355443),
    Switch("Style020OutlineEnable", 1),
    Number("Style020Angle", 224),
    Number("Style020Scroll", 0),
    Number("Style020ShadowColor", 8355711),
    Number("Style020ShadowDirection", 7),
    Switch("Style020ShadowEnable", 1),
    Number("Style020ShadowOffset", 4),
    Number("Style020ShadowOpacity", 255),
    Switch("Style020Smooth", 1),
    Number("Style020Soft", 20),
};
// clang-format on

constexpr std::size_t kShellKeys = 43, kEffectKeys = 311;

constexpr std::size_t CountEffectKeys() {
  std::size_t count = 0;
  for (const SettingsRow& row : kRows) count += std::string_view(row.key).substr(0, 5) == "Style";
  return count;
}
static_assert(std::size(kRows) == kShellKeys + kEffectKeys);
static_assert(CountEffectKeys() == kEffectKeys);

constexpr bool EffectKeysComeLast() {
  for (std::size_t i = 0; i < kShellKeys; ++i) {
    if (std::string_view(kRows[i].key).substr(0, 5) == "Style") return false;
  }
  return true;
}
static_assert(EffectKeysComeLast());

}  // namespace

std::span<const SettingsRow> SettingsTable() noexcept { return kRows; }

}  // namespace glyphmotion
