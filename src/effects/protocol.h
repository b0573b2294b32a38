// SPDX-License-Identifier: MIT
// The contract between the shell and the effects. An effect is one row of functions. It keeps no options of its own: a
// renderer reads the dialog's controls, so a frame is a function of the dialog's state and of the effect's parameter
// block.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "glyphmotion/host_contract.h"
#include "image/frame_list.h"
#include "image/packed_dib.h"
#include "platform/dialog.h"
#include "resources/panel.h"
#include "text/compositing.h"

namespace glyphmotion {

enum EffectFlags : std::uint32_t {
  kLastOfFade = 1,  ///< the closing frame of a run that fades back to its start
  kTestCall = 2,
  kBuildCall = 4
};

/// What an effect makes of the common options.
enum EffectTraits : std::uint32_t {
  kLoops = 1,         ///< no frame rests, so Pause changes nothing
  kCanStandStill = 2  ///< reads Animated
};

/// The one argument of an effect's functions; zero but for what the caller sets.
struct EffectContext {
  Dialog* dialog = nullptr;                  ///< every control is reached through it
  FrameList* frames = nullptr;               ///< where a build appends; null in other calls
  const HostCallTable* hostCalls = nullptr;  ///< for progress; null but in a build
  BlockHandle result = nullptr;              ///< the frame of a test call; the caller frees it
  std::uint32_t flags = 0;                   ///< EffectFlags
  void* parameters = nullptr;                ///< the effect's block, living in its test or build function
  bool preview = false;                      ///< the sample window: no alpha plane
  RunCache* cache = nullptr;                 ///< what the frames of this run share
  std::string failure;  ///< why a build failed, when it is not for want of memory: one sentence for the user
};

/// What shows an effect off in a gallery: a text (empty: the effect's name) and options of the program, by blanks.
struct EffectExample {
  const char* text = "";
  const char* options = "";
};

/// One row of the EffectTable. The functions never throw; zero means failure.
struct EffectDescriptor {
  const char* name = "";  ///< the panel's title
  const Panel* panel = nullptr;
  int (*testFunction)(EffectContext& context) noexcept = nullptr;   ///< renders the still frame into `result`
  int (*buildFunction)(EffectContext& context) noexcept = nullptr;  ///< renders all frames into `frames`
  Colour (*transparentColourFunction)(const Dialog& dialog, int mode) noexcept = nullptr;
  std::uint32_t traits = 0;  ///< EffectTraits
  const char* summary = "";  ///< one sentence about it, for people who choose
  EffectExample example;
};

/// The renderer of one frame; empty on failure.
using Renderer = PackedDib (*)(EffectContext& context);

/// A composer on the context's dialog, with the scroll offset given.
FrameComposer MakeComposer(EffectContext& context, const PanelRoles& roles, ScrollOffset scroll = {});

/// Runs a test: sets the flag, points `parameters` at the block, renders into `result`. 1 whether or not there was a
/// frame.
int RunTest(EffectContext& context, void* parameters, Renderer render) noexcept;

struct FrameSize {
  int width = 0, height = 0;  ///< pixels
};

/// Begins a build whose number of frames depends on their size: sets the flag and the block, renders once and throws
/// the image away, giving its size. Nothing when it could not be rendered; the build then returns 0.
std::optional<FrameSize> PrimeRun(EffectContext& context, void* parameters, Renderer render);

/// False, with the sentence set, when a run of that many frames of a size cannot be held in memory (kMaxRunBytes).
/// Asked before the first frame of a build is kept.
bool RunFits(EffectContext& context, FrameSize size, std::int64_t frames);

/// All frames of a run are held at once until the host has them.
constexpr std::int64_t kMaxRunBytes = std::int64_t{4} << 30;

/// Begins a build of that many frames: PrimeRun and RunFits.
bool BeginRun(EffectContext& context, void* parameters, Renderer render, std::int64_t frames);

/// How long the frames of a run are shown, in the host's unit: each, and how much longer the eye rests on some.
struct Pace {
  int delay = 0, pause = 0;
};
Pace ReadPace(const Dialog& dialog);

/// Appends the frame with its delay and reports progress `step` of `total`. False (and the frame freed) when there is
/// none or no memory is left; the build then returns 0.
bool AppendWithProgress(EffectContext& context, PackedDib frame, int delay, int step, int total);
/// The same without a progress call.
bool AppendQuietly(EffectContext& context, PackedDib frame, int delay);

/// Wraps a build: what it throws becomes failure, and on failure `result` is freed and cleared.
template <typename Body>
int GuardBuild(EffectContext& context, Body body) noexcept {
  bool done = false;
  try {
    done = body();
  } catch (...) {  // out of memory: the result reports that the build failed
  }
  if (done) return 1;
  FreeBlock(context.result);
  context.result = nullptr;
  return 0;
}

/// The common transparent-colour function: kNoColour with a nonzero mode; the key colour when both alpha options are
/// on; else the colour of the background control's material if that is solid, else kNoColour.
Colour SolidBackgroundColour(const Dialog& dialog, int mode, int backgroundControl) noexcept;
template <int backgroundControl>
Colour TransparentColour(const Dialog& dialog, int mode) noexcept {
  return SolidBackgroundColour(dialog, mode, backgroundControl);
}

/// The row of an effect with that panel.
template <const Panel& panel>
constexpr EffectDescriptor EffectOf(const char* summary, int (*test)(EffectContext&) noexcept,
                                    int (*build)(EffectContext&) noexcept, std::uint32_t traits = 0,
                                    EffectExample example = {}) {
  return {panel.title, &panel, test, build, TransparentColour<panel.roles.background>, traits, summary, example};
}

/// The key colour of alpha runs: the AlphaGreyBack setting.
Colour AlphaKeyColour() noexcept;

template <typename Parameters>
Parameters& ParametersOf(EffectContext& context) {
  return *static_cast<Parameters*>(context.parameters);
}

}  // namespace glyphmotion
