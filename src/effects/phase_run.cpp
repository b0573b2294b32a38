// SPDX-License-Identifier: MIT
#include "effects/phase_run.h"

#include <unordered_map>
#include <utility>

#include "platform/run_state.h"
#include "platform/workers.h"

namespace glyphmotion {
namespace {

// What a thread renders with.
struct Lane {
  RunCache cache;
  EffectContext context;

  Lane(const EffectContext& run, void* block) : cache(*run.cache), context(run) {
    context.frames = nullptr;
    context.hostCalls = nullptr;
    context.parameters = block;
    context.cache = &cache;
  }
};

class PhaseRun {
 public:
  PhaseRun(EffectContext& context, Renderer render, std::span<const PhaseFrame> frames, int total,
           const PhaseBlocks& blocks)
      : context_(context), render_(render), frames_(frames), total_(total), blocks_(blocks), made_(frames.size()) {
    std::unordered_map<int, std::size_t> shown;
    for (std::size_t i = 0; i < frames.size(); ++i)
      original_.push_back(frames[i].shows ? shown.emplace(*frames[i].shows, i).first->second : i);
  }

  bool OnThisThread() {
    for (std::size_t i = 0; i < frames_.size(); ++i) {
      if (original_[i] == i) {
        blocks_.set(context_.parameters, frames_[i].phase);
        made_[i].dib = render_(context_);
      }
      if (!Append(i)) return false;
    }
    return true;
  }

  bool OnThreads(Workers& workers) {
    for (int lane = 0; lane < workers.Lanes(); ++lane)
      lanes_.push_back(std::make_unique<Lane>(context_, blocks_.block(lane)));
    const std::uint32_t start = CurrentRandom().state;
    const auto render = [&](int lane, int number) {
      const auto i = static_cast<std::size_t>(number);
      if (original_[i] != i) return;
      Picture& made = made_[i];
      made.random = {start, false};
      const RunScope scope(CurrentRun(), &made.random);
      EffectContext& context = lanes_[static_cast<std::size_t>(lane)]->context;
      blocks_.set(context.parameters, frames_[i].phase);
      made.dib = render_(context);
    };
    const auto append = [&](int number) {
      const auto i = static_cast<std::size_t>(number);
      const RandomGenerator& left = made_[original_[i]].random;
      if (left.seeded) CurrentRandom() = left;
      return Append(i);
    };
    return workers.InOrder(static_cast<int>(frames_.size()), render, append);
  }

 private:
  struct Picture {
    PackedDib dib;
    RandomGenerator random;  ///< as the frame has left it
  };

  PackedDib Take(std::size_t i) {
    if (original_[i] == i) return std::move(made_[i].dib);
    const LockedFrame frame(*context_.frames, first_ + static_cast<int>(original_[i]));
    return frame ? PackedDib(DuplicateBlock(frame->image)) : PackedDib();
  }

  bool Append(std::size_t i) {
    const PhaseFrame& frame = frames_[i];
    return frame.step ? AppendWithProgress(context_, Take(i), frame.delay, *frame.step, total_)
                      : AppendQuietly(context_, Take(i), frame.delay);
  }

  EffectContext& context_;
  Renderer render_;
  std::span<const PhaseFrame> frames_;
  int total_;
  const PhaseBlocks& blocks_;
  int first_ = context_.frames->count;
  std::vector<std::size_t> original_;  // the first frame with the same picture
  std::vector<Picture> made_;
  std::vector<std::unique_ptr<Lane>> lanes_;
};

}  // namespace

std::vector<PhaseFrame> PlanEvenly(const EffectContext& context, int frames) {
  const int delay = ReadPace(*context.dialog).delay;
  std::vector<PhaseFrame> plan;
  for (int i = 0; i < frames; ++i) plan.push_back({static_cast<double>(i), delay, i, {}});
  return plan;
}

std::vector<PhaseFrame> PlanToRest(const EffectContext& context, int frames) {
  const auto [delay, pause] = ReadPace(*context.dialog);
  const int moving = frames - 1;
  std::vector<PhaseFrame> plan;
  for (int i = 0; i < moving; ++i) plan.push_back({static_cast<double>(i) / moving, delay, i, {}});
  plan.push_back({0, delay + pause, {}, {}});
  return plan;
}

bool AppendPhases(EffectContext& context, Renderer render, std::span<const PhaseFrame> frames, int total,
                  const PhaseBlocks& blocks) {
  PhaseRun run(context, render, frames, total, blocks);
  Workers& workers = RunWorkers();
  return workers.Lanes() > 1 && ReadableOnAnyThread() ? run.OnThreads(workers) : run.OnThisThread();
}

}  // namespace glyphmotion
