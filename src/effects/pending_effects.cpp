// SPDX-License-Identifier: MIT
// Rows of effects that are not built in yet: a name, a panel and the colour of the background, no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {

const EffectDescriptor kBackgroundHyperspace = {
    "Background Hyperspace", &kBackgroundHyperspacePanel, nullptr, nullptr, TransparentColour<713>, 713};
const EffectDescriptor kBackgroundIris = {"Background Iris", &kBackgroundIrisPanel,  nullptr,
                                          nullptr,           TransparentColour<609>, 609};
const EffectDescriptor kBreaker = {"Breaker", &kBreakerPanel, nullptr, nullptr, TransparentColour<676>, 676};
const EffectDescriptor kCubist = {"Cubist", &kCubistPanel, nullptr, nullptr, TransparentColour<888>, 888};
const EffectDescriptor kElastic = {"Elastic", &kElasticPanel, nullptr, nullptr, TransparentColour<579>, 579};
const EffectDescriptor kEventHorizon = {"Event Horizon", &kEventHorizonPanel,    nullptr,
                                        nullptr,         TransparentColour<753>, 753};
const EffectDescriptor kFuse = {"Fuse", &kFusePanel, nullptr, nullptr, TransparentColour<463>, 463};
const EffectDescriptor kGumdrops = {"Gumdrops", &kGumdropsPanel, nullptr, nullptr, TransparentColour<383>, 383};
const EffectDescriptor kHyperspace = {"Hyperspace", &kHyperspacePanel, nullptr, nullptr, TransparentColour<331>, 331};
const EffectDescriptor kIris = {"Iris", &kIrisPanel, nullptr, nullptr, TransparentColour<173>, 173};
const EffectDescriptor kLaser = {"Laser", &kLaserPanel, nullptr, nullptr, TransparentColour<286>, 286};
const EffectDescriptor kNebula = {"Nebula", &kNebulaPanel, nullptr, nullptr, TransparentColour<248>, 248};
const EffectDescriptor kPhasersOnStun = {"Phasers on Stun", &kPhasersOnStunPanel,   nullptr,
                                         nullptr,           TransparentColour<836>, 836};
const EffectDescriptor kPinch = {"Pinch", &kPinchPanel, nullptr, nullptr, TransparentColour<223>, 223};
const EffectDescriptor kPulse = {"Pulse", &kPulsePanel, nullptr, nullptr, TransparentColour<788>, 788};
const EffectDescriptor kRipple = {"Ripple", &kRipplePanel, nullptr, nullptr, TransparentColour<137>, 137};
const EffectDescriptor kRadar = {"Radar", &kRadarPanel, nullptr, nullptr, TransparentColour<542>, 542};
const EffectDescriptor kSingularity = {"Singularity", &kSingularityPanel,     nullptr,
                                       nullptr,       TransparentColour<928>, 928};
const EffectDescriptor kVortex = {"Vortex", &kVortexPanel, nullptr, nullptr, TransparentColour<426>, 426};
const EffectDescriptor kWhiteNoise = {"White Noise", &kWhiteNoisePanel, nullptr, nullptr, TransparentColour<501>, 501};

}  // namespace glyphmotion
