// SPDX-License-Identifier: MIT
// The library as its users call it: again, from several threads, from within its own calls.
#include <glyphmotion/render.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace glyphmotion {
namespace {

struct Frames {
  RenderResult result;
  std::vector<std::uint8_t> bytes;
};

Frames FramesOf(const char* effect) {
  Frames frames;
  Job job;
  job.text = "Hi";
  job.effect = effect;
  job.settings = {{"MainFontSize", "16"}, {"@frames", "6"}};
  Sink sink;
  sink.image = [&](const Image& image) {
    frames.bytes.insert(frames.bytes.end(), image.dib.begin(), image.dib.end());
    return true;
  };
  frames.result = Render(job, sink);
  return frames;
}

TEST(Render, RunsFollowOneAnotherAndLeaveNothingBehind) {
  const Frames simple = FramesOf("simple"), nebula = FramesOf("nebula");
  ASSERT_EQ(simple.result.status, RenderStatus::Done) << simple.result.message;
  ASSERT_NE(simple.bytes, nebula.bytes);
  Frames first, second;
  std::thread one([&] { first = FramesOf("simple"); }), two([&] { second = FramesOf("nebula"); });
  one.join();
  two.join();
  EXPECT_EQ(first.bytes, simple.bytes);
  EXPECT_EQ(second.bytes, nebula.bytes);
  EXPECT_EQ(second.result.blocks + second.result.locks, 0u);
}

TEST(Render, ARunWithinARunFailsAndTheOuterOneGoesOn) {
  Job job;
  job.settings = {{"MainFontSize", "16"}, {"@frames", "6"}};
  Sink sink;
  RenderResult inner;
  sink.task = [&](const Task&) {
    inner = Render(job, {});
    return true;
  };
  EXPECT_EQ(Render(job, sink).status, RenderStatus::Done);
  EXPECT_EQ(inner.status, RenderStatus::Failed);
  EXPECT_NE(inner.message, "");
}

TEST(Render, WhatTheSinkThrowsComesOutAndTheNextRunIsWhole) {
  Job job;
  job.settings = {{"MainFontSize", "16"}, {"@frames", "6"}};
  Sink sink;
  sink.image = [](const Image&) -> bool { throw std::runtime_error("the sink's own"); };
  EXPECT_THROW(Render(job, sink), std::runtime_error);
  EXPECT_EQ(Render(job, {}).status, RenderStatus::Done);
}

}  // namespace
}  // namespace glyphmotion
