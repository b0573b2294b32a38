// SPDX-License-Identifier: MIT
// libFuzzer's entries: glyphmotion_fuzz --reader=NAME [options of libFuzzer] [folders]; --list names the readers.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "fuzz/readers.h"

using namespace glyphmotion::fuzz;

namespace {
const Reader*& Chosen() {
  static const Reader* reader = nullptr;
  return reader;
}
}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  constexpr const char* option = "--reader=";
  for (int i = 1; i < *argc; ++i) {
    const char* word = (*argv)[i];
    if (std::strncmp(word, option, std::strlen(option)) == 0) Chosen() = FindReader(word + std::strlen(option));
    if (std::strcmp(word, "--list") != 0) continue;
    for (const Reader& reader : Readers())
      std::printf("%s %zu %s|%s\n", reader.name, reader.longest, reader.sources, reader.apart);
    std::exit(0);
  }
  if (!Chosen()) {
    std::fprintf(stderr, "name a reader: --reader=NAME, one of --list\n");
    std::exit(2);
  }
  Prepare();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Chosen()->read({reinterpret_cast<const char*>(data), size});
  return 0;
}
