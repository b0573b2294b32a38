// SPDX-License-Identifier: MIT
#include "effects/protocol.h"

#include "controls/material_control.h"
#include "controls/variables.h"
#include "platform/run_state.h"

namespace glyphmotion {

FrameComposer MakeComposer(EffectContext& context, const PanelRoles& roles, ScrollOffset scroll) {
  return FrameComposer(*context.dialog, roles, scroll, context.preview, *context.cache);
}

int RunTest(EffectContext& context, void* parameters, Renderer render) noexcept {
  context.flags |= kTestCall;
  context.parameters = parameters;
  try {
    context.result = render(context).Release();
  } catch (...) {  // out of memory: the sample stays empty
    context.result = nullptr;
  }
  return 1;
}

std::optional<FrameSize> PrimeRun(EffectContext& context, void* parameters, Renderer render) {
  context.flags |= kBuildCall;
  context.parameters = parameters;
  const PackedDib frame = render(context);
  if (EndRequested()) return std::nullopt;
  const DibView view(frame);
  if (!view) return std::nullopt;
  return FrameSize{view.Width(), view.Height()};
}

bool RunFits(EffectContext& context, FrameSize size, std::int64_t frames) {
  const int bits = ReadCheck(*context.dialog, ControlId::AlphaTransparency) ? 32 : 24;
  const auto bytes = static_cast<std::int64_t>(DibSize(size.width, size.height, bits));
  if (bytes > 0 && frames <= kMaxRunBytes / bytes) return true;
  context.failure = "An animation of " + std::to_string(frames) + " frames of " + std::to_string(size.width) + " x " +
                    std::to_string(size.height) +
                    " pixels does not fit into memory. Choose fewer frames or a smaller size.";
  return false;
}

bool BeginRun(EffectContext& context, void* parameters, Renderer render, std::int64_t frames) {
  const std::optional<FrameSize> size = PrimeRun(context, parameters, render);
  return size && RunFits(context, *size, frames);
}

Pace ReadPace(const Dialog& dialog) {
  return {ReadNumber(dialog, ControlId::Delay), ReadNumber(dialog, ControlId::Pause)};
}

bool AppendQuietly(EffectContext& context, PackedDib frame, int delay) {
  if (!frame || EndRequested()) return false;
  FrameRecord record;
  record.image = frame.Handle();
  record.delay = delay;
  if (!AppendFrame(*context.frames, record)) return false;
  frame.Release();
  return true;
}

bool AppendWithProgress(EffectContext& context, PackedDib frame, int delay, int step, int total) {
  if (!AppendQuietly(context, std::move(frame), delay)) return false;
  if (context.hostCalls && context.hostCalls->HostCall) {
    context.hostCalls->HostCall(nullptr, HostOpProgress, static_cast<std::uint64_t>(step),
                                static_cast<std::uint64_t>(total));
  }
  return true;
}

Colour AlphaKeyColour() noexcept { return NumberVariable("AlphaGreyBack"); }

Colour SolidBackgroundColour(const Dialog& dialog, int mode, int backgroundControl) noexcept {
  if (mode != 0) return kNoColour;
  if (ReadCheck(dialog, ControlId::AlphaTransparency) && ReadCheck(dialog, ControlId::AlphaBackground))
    return AlphaKeyColour();
  const auto material = LockMaterial(dialog, backgroundControl);
  return material && material->Kind == kSolid ? material->Colour : kNoColour;
}

}  // namespace glyphmotion
