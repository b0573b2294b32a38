// SPDX-License-Identifier: MIT
// Ids of the texture dialog (9998). The parameters and the types that show them: TextureControls in
// controls/library_editor.h.
#pragma once

namespace glyphmotion::TextureControl {

constexpr int Ok = 1, Cancel = 2, Help = 9;
constexpr int Preview = 101, List = 102, Group = 103, Add = 104, Delete = 105, Types = 106, ShowPreview = 107;

/// Parameters. Those of layers are the first of five.
constexpr int Background = 501, Colour1 = 502, Power1 = 507, Seed1 = 512, Matrix = 517, Density1 = 518;
constexpr int Craters = 523, CraterDepth = 524;
constexpr int RedCurve = 525, GreenCurve = 526, BlueCurve = 527;
constexpr int Bubbles = 528, BubbleSize = 529, BubblePower = 530, BubbleShape = 531, Perturbation = 532;
constexpr int FirstParameter = Background, LastParameter = Perturbation;

/// Added to a parameter's id to give that of its label, which shows and hides with it.
constexpr int LabelOffset = 100;

/// The window behind the Preview button: the texture behind and in a text.
constexpr int AsBackground = 101, AsText = 102;

}  // namespace glyphmotion::TextureControl
