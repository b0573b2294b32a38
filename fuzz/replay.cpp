// SPDX-License-Identifier: MIT
// Passes each file of a folder to the reader that its own folder is named after: replay_corpus fuzz/corpus. With a
// number each file is also read in so many damaged forms, for machines without libFuzzer: replay_corpus fuzz/corpus
// 1000 [READER]
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "fuzz/readers.h"

using namespace glyphmotion::fuzz;

namespace {

std::vector<std::string> InputsOf(const std::filesystem::path& folder) {
  std::vector<std::string> inputs;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  return inputs;
}

// A few bytes changed, removed, repeated, or taken from another input.
std::string Damaged(std::string input, const std::string& other, std::mt19937& random) {
  const auto below = [&](std::size_t most) { return most ? random() % most : std::size_t{0}; };
  for (std::size_t i = 1 + below(6); i > 0; --i) {
    const std::size_t at = below(input.size()), length = std::size_t{1} << below(6);
    switch (below(5)) {
      case 0:
        if (!input.empty()) input[at] = static_cast<char>(random());
        break;
      case 1:
        if (!input.empty()) input[at] = static_cast<char>(input[at] ^ 1 << below(8));
        break;
      case 2:
        input.erase(at, length);
        break;
      case 3:
        input.insert(at, input.substr(below(input.size()), length));
        break;
      default:
        input.insert(at, other.substr(below(other.size()), length));
    }
  }
  return input;
}

}  // namespace

int main(int argc, char** argv) {
  const int damages = argc > 2 ? std::atoi(argv[2]) : 0;
  const std::string only = argc > 3 ? argv[3] : "";
  if (argc < 2) return 2;
  Prepare();
  std::mt19937 random(1);
  for (const Reader& reader : Readers()) {
    if (!only.empty() && only != reader.name) continue;
    const std::vector<std::string> inputs = InputsOf(std::filesystem::path(argv[1]) / reader.name);
    if (inputs.empty()) return std::printf("%s has no corpus\n", reader.name), 1;
    std::printf("%s\n", reader.name);  // the last line names the culprit
    std::fflush(stdout);
    for (const std::string& input : inputs) {
      reader.read(input);
      for (int i = 0; i < damages; ++i) {
        const std::string damaged = Damaged(input, inputs[random() % inputs.size()], random);
        std::ofstream("replayed", std::ios::binary) << damaged;  // what ended the process is here
        reader.read(damaged);
      }
    }
  }
}
