// SPDX-License-Identifier: MIT
#include "host/page/live_build.h"

#include <utility>

namespace glyphmotion {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kPause = std::chrono::milliseconds(300), kLongestWait = std::chrono::milliseconds(3000);
constexpr std::size_t kMostKept = std::size_t{16} << 20;  // bytes

}  // namespace

LiveBuild::LiveBuild(const WorkPlace& place)
    : place_(place),
      watched_{place.services, [this](PageMessage message) { Send(std::move(message)); }, place.folder},
      thread_([this](const BuildOrder& order) { Build(order); }) {}

bool LiveBuild::Request(BuildOrder order) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (wanted_ && wanted_->IsFor(order)) {
    if (last_) place_.send(*last_);
    return false;
  }
  const auto due = finishedRevision_ < 0 ? Clock::time_point{} : order.changed + kPause;
  wanted_ = order;
  last_.reset();
  std::deque<BuildOrder> orders;
  orders.push_back(std::move(order));
  thread_.Set(std::move(orders), due);
  return true;
}

void LiveBuild::Cancel() {
  const std::lock_guard<std::mutex> lock(mutex_);
  wanted_.reset();
  last_.reset();
  thread_.Set({});
}

void LiveBuild::AwaitPause(const std::atomic<bool>& cancel) {
  std::unique_lock<std::mutex> lock(mutex_);
  constexpr auto slice = std::chrono::milliseconds(20);
  for (auto waited = Clock::duration::zero(); running_ && !cancel && waited < kLongestWait; waited += slice)
    paused_.wait_for(lock, slice);
}

std::optional<std::string> LiveBuild::GifOf(int revision) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (revision != finishedRevision_) return std::nullopt;
  return finished_;
}

void LiveBuild::Send(PageMessage message) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (wanted_ && wanted_->revision == message.json["revision"]) {
    last_.reset();
    if (message.json["state"] == "failed" || message.payload.size() > kMostKept) {
      wanted_.reset();  // who asks once more gets it made once more
    } else {
      last_ = message;
    }
  }
  place_.send(std::move(message));
}

void LiveBuild::Build(const BuildOrder& order) {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    running_ = true;
  }
  std::optional<std::string> gif = BuildDocument(watched_, order, thread_.Cancelled());
  const std::lock_guard<std::mutex> lock(mutex_);
  running_ = false;
  paused_.notify_all();
  if (!gif) return;
  finishedRevision_ = order.revision;
  finished_ = std::move(*gif);
}

}  // namespace glyphmotion
