// SPDX-License-Identifier: MIT
#include "host/page/live_build.h"

namespace glyphmotion {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kPause = std::chrono::milliseconds(300);

}  // namespace

LiveBuild::LiveBuild(const WorkPlace& place)
    : place_(place), thread_([this](const BuildOrder& order) { Build(order); }) {}

void LiveBuild::Request(BuildOrder order) {
  std::deque<BuildOrder> orders;
  orders.push_back(std::move(order));
  const std::lock_guard<std::mutex> lock(mutex_);
  thread_.Set(std::move(orders), finishedRevision_ < 0 ? Clock::time_point{} : Clock::now() + kPause);
}

std::optional<std::string> LiveBuild::GifOf(int revision) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (revision != finishedRevision_) return std::nullopt;
  return finished_;
}

void LiveBuild::Build(const BuildOrder& order) {
  std::optional<std::string> gif = BuildDocument(place_, order, thread_.Cancelled());
  if (!gif) return;
  const std::lock_guard<std::mutex> lock(mutex_);
  finishedRevision_ = order.revision;
  finished_ = std::move(*gif);
}

}  // namespace glyphmotion
