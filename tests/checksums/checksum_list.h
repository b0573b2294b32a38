// SPDX-License-Identifier: MIT
// Lists of checksums that code has to give again, a row each. GLYPHMOTION_SET_CHECKSUMS=1 writes them anew; the commit
// then says why bytes have changed.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

namespace glyphmotion::testing {

/// FNV-1a of 64 bits.
class Hash {
 public:
  void Add(std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) value_ = (value_ ^ byte) * 1099511628211u;
  }
  void Add(std::initializer_list<std::int64_t> numbers) {
    for (const std::int64_t number : numbers) Add({reinterpret_cast<const std::uint8_t*>(&number), sizeof number});
  }
  std::string Text() const {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(value_));
    return text;
  }

 private:
  std::uint64_t value_ = 14695981039346656037u;
};

/// Expects the rows of tests/checksums/`name`, in their order.
inline void ExpectList(const std::string& name, const std::vector<std::string>& rows) {
  const std::string list = std::string(GLYPHMOTION_SOURCE_DIR) + "/tests/checksums/" + name;
  if (std::getenv("GLYPHMOTION_SET_CHECKSUMS")) {
    std::ofstream file(list);
    for (const std::string& row : rows) file << row << '\n';
    return;
  }
  std::ifstream file(list);
  std::string wanted;
  for (const std::string& row : rows) {
    ASSERT_TRUE(std::getline(file, wanted)) << "the list ends before " << row;
    EXPECT_EQ(row, wanted);
  }
  EXPECT_FALSE(std::getline(file, wanted)) << wanted << " is in the list alone";
}

}  // namespace glyphmotion::testing
