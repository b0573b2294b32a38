// SPDX-License-Identifier: MIT
#include "platform/nearest_name.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

#include "platform/ascii.h"

namespace glyphmotion {

std::string NearestName(const std::string& word, const std::vector<std::string>& names) {
  const std::string wanted = Lowered(word);
  std::string nearest;
  std::size_t least = std::max<std::size_t>(2, wanted.size() / 3) + 1;
  for (const std::string& name : names) {
    const std::string other = Lowered(name);
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      std::size_t diagonal = row[0]++;
      for (std::size_t j = 0; j < other.size(); ++j) {
        const std::size_t change = diagonal + (wanted[i] != other[j]);
        diagonal = row[j + 1];
        row[j + 1] = std::min({change, row[j] + 1, row[j + 1] + 1});
      }
    }
    if (row.back() < least) {
      least = row.back();
      nearest = name;
    }
  }
  return nearest;
}

std::string Suggestion(const std::string& word, const std::vector<std::string>& names) {
  const std::string nearest = NearestName(word, names);
  return nearest.empty() ? "" : "; did you mean '" + nearest + "'?";
}

}  // namespace glyphmotion
