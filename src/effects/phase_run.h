// SPDX-License-Identifier: MIT
// Runs whose pictures depend on nothing but a number, the phase. Several threads render them at once, each with a
// parameter block and caches of its own, and a picture that returns is copied. The list, the host and the random
// generator see what they see of one thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "effects/protocol.h"

namespace glyphmotion {

/// One frame of such a run.
struct PhaseFrame {
  double phase = 0;          ///< what it means is up to the effect
  int delay = 0;             ///< in the host's unit
  std::optional<int> step;   ///< of the progress that is reported once the frame is in the list
  std::optional<int> shows;  ///< frames with the same number have the same picture
};

/// Equal delays with progress; the phases are 0, 1, 2, ...
std::vector<PhaseFrame> PlanEvenly(const EffectContext& context, int frames);

/// A movement there and back that ends at rest: phases i / (frames - 1) from 0 on, each with Delay and progress, then a
/// last frame at phase 0 with Delay + Pause.
std::vector<PhaseFrame> PlanToRest(const EffectContext& context, int frames);

/// The parameter blocks of a run. The first lane has the block that the context points to.
struct PhaseBlocks {
  std::function<void*(int lane)> block;
  std::function<void(void* block, double phase)> set;
};

/// Renders and appends the frames; progress counts up to `total`. The run has been primed: its first picture has been
/// rendered on this thread. A renderer takes no random number without seeding the generator in the same frame.
///
/// Returns false when a frame could not be made or appended.
bool AppendPhases(EffectContext& context, Renderer render, std::span<const PhaseFrame> frames, int total,
                  const PhaseBlocks& blocks);

/// The same with blocks of a type; set(Parameters&, double phase) makes one, fresh or used, ready for a frame.
template <typename Parameters, typename Set>
bool AppendPhases(EffectContext& context, Renderer render, std::span<const PhaseFrame> frames, int total, Set set) {
  std::vector<std::unique_ptr<Parameters>> own;
  const auto block = [&](int lane) -> void* {
    if (lane == 0) return context.parameters;
    own.push_back(std::make_unique<Parameters>());
    return own.back().get();
  };
  return AppendPhases(context, render, frames, total,
                      {block, [&](void* of, double phase) { set(*static_cast<Parameters*>(of), phase); }});
}

}  // namespace glyphmotion
