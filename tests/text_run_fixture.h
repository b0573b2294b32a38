// SPDX-License-Identifier: MIT
// A text engine, and a run of its own texts, for as long as a test takes.
#pragma once

#include <gtest/gtest.h>

#include "platform/text_engine.h"
#include "platform/text_run.h"

namespace glyphmotion {

class TextRunTest : public testing::Test {
 protected:
  void SetUp() override {
    CurrentTextRun() = {};
    ASSERT_TRUE(StartTextEngine());
  }
  void TearDown() override {
    StopTextEngine();
    CurrentTextRun() = {};
  }
};

}  // namespace glyphmotion
