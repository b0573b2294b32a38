// SPDX-License-Identifier: MIT
// A home for each test program: none reads or changes the settings of the person who runs it.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <optional>

#include "temporary_folder.h"

namespace glyphmotion::testing {
namespace {

class OwnHome : public ::testing::Environment {
 public:
  void SetUp() override { setenv("GLYPHMOTION_HOME", folder_.emplace().path.c_str(), 1); }
  void TearDown() override { folder_.reset(); }

 private:
  std::optional<TemporaryFolder> folder_;
};

[[maybe_unused]] const auto* const kOwnHome = ::testing::AddGlobalTestEnvironment(new OwnHome);

}  // namespace
}  // namespace glyphmotion::testing
