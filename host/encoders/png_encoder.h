// SPDX-License-Identifier: MIT
// PNG pictures, animations and folders of numbered pictures.
#pragma once

#include "host/encoders/encoders.h"

namespace glyphmotion {

Encoder OpenPng(Output& output, const EncoderSettings& settings);
Encoder OpenFolder(Output& output, const EncoderSettings& settings);

}  // namespace glyphmotion
