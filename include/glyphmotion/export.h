/* SPDX-License-Identifier: MIT */
/* Marks what a shared library shows to others; everything else in it is hidden. */
#ifndef GLYPHMOTION_EXPORT

#if defined(_WIN32) && defined(GLYPHMOTION_BUILDING_DLL)
#define GLYPHMOTION_EXPORT __declspec(dllexport)
#elif defined(__GNUC__) && !defined(_WIN32)
#define GLYPHMOTION_EXPORT __attribute__((visibility("default")))
#else
#define GLYPHMOTION_EXPORT
#endif

#endif
