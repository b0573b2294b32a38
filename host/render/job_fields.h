// SPDX-License-Identifier: MIT
// The fields of a Job that stand for controls, as settings.
#pragma once

#include <glyphmotion/render.h>

#include <string>

namespace glyphmotion {

/// The job with a setting for each of those fields, before its own settings.
Job WithFieldsAsSettings(Job job);

/// A sentence about such settings, with the field's name in place of the key.
std::string InFieldTerms(std::string sentence, const Job& job);

}  // namespace glyphmotion
