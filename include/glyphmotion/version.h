/* SPDX-License-Identifier: MIT */
/* The version of these headers; glyphmotion_version() is that of the library that runs. The build reads it from here.
 */
#ifndef GLYPHMOTION_VERSION_H
#define GLYPHMOTION_VERSION_H

#define GLYPHMOTION_VERSION "0.1.0"
#define GLYPHMOTION_VERSION_MAJOR 0
#define GLYPHMOTION_VERSION_MINOR 1
#define GLYPHMOTION_VERSION_PATCH 0
/* For comparisons: 10203 for 1.2.3. */
#define GLYPHMOTION_VERSION_NUMBER \
  (GLYPHMOTION_VERSION_MAJOR * 10000 + GLYPHMOTION_VERSION_MINOR * 100 + GLYPHMOTION_VERSION_PATCH)

#endif
