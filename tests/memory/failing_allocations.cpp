// SPDX-License-Identifier: MIT
// Preloaded into a program, lets one allocation of the process fail, or every one from there on.
//
//   GLYPHMOTION_FAIL_AT=N      the N-th allocation fails, from 1; 0 or nothing: none
//   GLYPHMOTION_FAIL_ONWARD=1  and all that follow
//   GLYPHMOTION_FAIL_FONTS=1   only what FreeType allocates and the calls of Fontconfig count
//   GLYPHMOTION_COUNT_FILE=F   at the end of the process F gets the number of allocations
//
// Counted are, from the beginning of the program proper (libraries that are loaded may end the process for want of
// memory, and nobody can keep them from it), malloc, calloc, realloc, the aligned kinds and with them operator new, of
// the program and its libraries. Fontconfig crashes by itself without memory: what it allocates neither counts nor
// fails, but each call of it that reports a failure to its caller counts as one allocation.
#include <dlfcn.h>
#include <fcntl.h>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include FT_FREETYPE_H
#include FT_ADVANCES_H
#include FT_MODULE_H
#include FT_OUTLINE_H

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
}

namespace {

std::atomic<long> asked;
std::atomic<long> failAt{-1};  // -1: not yet read
bool onward, fontsOnly, started;
[[gnu::tls_model("initial-exec")]] thread_local int excluded, inFonts;

struct Excluded {
  Excluded() { ++excluded; }
  ~Excluded() { --excluded; }
};

struct InFonts {
  InFonts() { ++inFonts; }
  ~InFonts() { --inFonts; }
};

bool Fails() {
  if (excluded || !environ || !started) return false;
  if (failAt < 0) {
    const char* number = std::getenv("GLYPHMOTION_FAIL_AT");
    fontsOnly = std::getenv("GLYPHMOTION_FAIL_FONTS") != nullptr;
    onward = std::getenv("GLYPHMOTION_FAIL_ONWARD") != nullptr;
    failAt = number ? std::strtol(number, nullptr, 10) : 0;
  }
  if (fontsOnly && !inFonts) return false;
  const long n = ++asked;
  if (failAt == 0 || (n != failAt && !(onward && n > failAt))) return false;
  errno = ENOMEM;
  return true;
}

[[gnu::destructor]] void WriteCount() {
  const char* path = std::getenv("GLYPHMOTION_COUNT_FILE");
  const int file = path ? open(path, O_WRONLY | O_CREAT | O_TRUNC, 0644) : -1;
  if (file < 0) return;
  dprintf(file, "%ld\n", asked.load());
  close(file);
}

template <typename Function>
Function Next(Function, const char* name) {
  const Excluded inside;
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

#define FONTCONFIG_CALL(result, name, parameters, arguments) \
  result name parameters {                                   \
    static const auto real = Next(&name, #name);             \
    const InFonts counted;                                   \
    if (Fails()) return {};                                  \
    const Excluded inside;                                   \
    return real arguments;                                   \
  }
#define FREETYPE_CALL(name, parameters, arguments) \
  FT_Error name parameters {                       \
    static const auto real = Next(&name, #name);   \
    const InFonts counted;                         \
    return real arguments;                         \
  }

// No header declares all of them as visible outside of this library.
#pragma GCC visibility push(default)
extern "C" {

void* malloc(std::size_t bytes) { return Fails() ? nullptr : __libc_malloc(bytes); }
void* calloc(std::size_t count, std::size_t bytes) { return Fails() ? nullptr : __libc_calloc(count, bytes); }
void* realloc(void* old, std::size_t bytes) { return Fails() ? nullptr : __libc_realloc(old, bytes); }
void* memalign(std::size_t alignment, std::size_t bytes) {
  return Fails() ? nullptr : __libc_memalign(alignment, bytes);
}
void* aligned_alloc(std::size_t alignment, std::size_t bytes) { return memalign(alignment, bytes); }
int posix_memalign(void** place, std::size_t alignment, std::size_t bytes) {
  void* block = memalign(alignment, bytes);
  if (block) *place = block;
  return block ? 0 : ENOMEM;
}

int __libc_start_main(int (*program)(int, char**, char**), int count, char** words, void (*begin)(), void (*end)(),
                      void (*unload)(), void* stack) {
  static const auto real = Next(&__libc_start_main, "__libc_start_main");
  started = true;
  return real(program, count, words, begin, end, unload, stack);
}

FONTCONFIG_CALL(FcBool, FcInit, (), ())
FONTCONFIG_CALL(FcPattern*, FcPatternCreate, (), ())
FONTCONFIG_CALL(FcBool, FcPatternAddString, (FcPattern * p, const char* o, const FcChar8* s), (p, o, s))
FONTCONFIG_CALL(FcBool, FcPatternAddInteger, (FcPattern * p, const char* o, int i), (p, o, i))
FONTCONFIG_CALL(FcBool, FcPatternAddBool, (FcPattern * p, const char* o, FcBool b), (p, o, b))
FONTCONFIG_CALL(FcBool, FcPatternAddCharSet, (FcPattern * p, const char* o, const FcCharSet* c), (p, o, c))
FONTCONFIG_CALL(FcCharSet*, FcCharSetCreate, (), ())
FONTCONFIG_CALL(FcBool, FcCharSetAddChar, (FcCharSet * c, FcChar32 u), (c, u))
FONTCONFIG_CALL(FcBool, FcConfigSubstitute, (FcConfig * c, FcPattern* p, FcMatchKind k), (c, p, k))
FONTCONFIG_CALL(FcPattern*, FcFontMatch, (FcConfig * c, FcPattern* p, FcResult* r), (c, p, r))
FONTCONFIG_CALL(FcFontSet*, FcFontSort, (FcConfig * c, FcPattern* p, FcBool t, FcCharSet** s, FcResult* r),
                (c, p, t, s, r))
FONTCONFIG_CALL(FcFontSet*, FcFontList, (FcConfig * c, FcPattern* p, FcObjectSet* o), (c, p, o))
FONTCONFIG_CALL(FcObjectSet*, FcObjectSetCreate, (), ())
FONTCONFIG_CALL(FcBool, FcObjectSetAdd, (FcObjectSet * s, const char* o), (s, o))
FONTCONFIG_CALL(FcChar8*, FcStrDowncase, (const FcChar8* s), (s))

void FcDefaultSubstitute(FcPattern* pattern) {
  static const auto real = Next(&FcDefaultSubstitute, "FcDefaultSubstitute");
  const Excluded inside;
  real(pattern);
}

FREETYPE_CALL(FT_Init_FreeType, (FT_Library * l), (l))
FREETYPE_CALL(FT_New_Library, (FT_Memory m, FT_Library* l), (m, l))
FREETYPE_CALL(FT_New_Face, (FT_Library l, const char* p, FT_Long i, FT_Face* f), (l, p, i, f))
FREETYPE_CALL(FT_Set_Char_Size, (FT_Face f, FT_F26Dot6 w, FT_F26Dot6 h, FT_UInt x, FT_UInt y), (f, w, h, x, y))
FREETYPE_CALL(FT_Load_Glyph, (FT_Face f, FT_UInt g, FT_Int32 o), (f, g, o))
FREETYPE_CALL(FT_Get_Advance, (FT_Face f, FT_UInt g, FT_Int32 o, FT_Fixed* a), (f, g, o, a))
FREETYPE_CALL(FT_Outline_Get_Bitmap, (FT_Library l, FT_Outline* o, const FT_Bitmap* b), (l, o, b))

void FT_Add_Default_Modules(FT_Library library) {
  static const auto real = Next(&FT_Add_Default_Modules, "FT_Add_Default_Modules");
  const InFonts counted;
  real(library);
}
}
#pragma GCC visibility pop
