// SPDX-License-Identifier: MIT
// Rows of effects that are not built in yet: a name, a panel, its roles and the colour of the background, no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRippleRoles{135, 0, 137, 139, 0, 0, 0, 0, 0, 0, 145};
constexpr PanelRoles kIrisRoles{158, 171, 173, 175, 177, 179, 183, 185, 187, 189, 190};
constexpr PanelRoles kPinchRoles{221, 0, 223, 225, 0, 0, 0, 0, 0, 0, 229};
constexpr PanelRoles kNebulaRoles{244, 246, 248, 250, 252, 254, 258, 260, 262, 264, 265};
constexpr PanelRoles kLaserRoles{282, 284, 286, 288, 290, 292, 296, 298, 302, 304, 305};
constexpr PanelRoles kHyperspaceRoles{327, 329, 331, 333, 335, 337, 341, 343, 347, 349, 350};
constexpr PanelRoles kGumdropsRoles{405, 381, 383, 385, 387, 389, 393, 395, 397, 399, 400};
constexpr PanelRoles kVortexRoles{422, 424, 426, 428, 430, 432, 436, 438, 442, 444, 445};
constexpr PanelRoles kFuseRoles{459, 461, 463, 465, 467, 469, 473, 475, 479, 481, 482};
constexpr PanelRoles kWhiteNoiseRoles{497, 499, 501, 503, 505, 507, 511, 513, 515, 517, 518};
constexpr PanelRoles kRadarRoles{538, 540, 542, 544, 546, 548, 550, 552, 556, 558, 559};
constexpr PanelRoles kElasticRoles{575, 577, 579, 581, 583, 585, 589, 591, 593, 595, 596};
constexpr PanelRoles kBackgroundIrisRoles{624, 622, 609, 626, 628, 630, 634, 636, 638, 640, 641};
constexpr PanelRoles kBreakerRoles{672, 674, 676, 678, 680, 682, 686, 688, 692, 694, 695};
constexpr PanelRoles kBackgroundHyperspaceRoles{709, 711, 713, 715, 717, 719, 723, 725, 729, 731, 732};
constexpr PanelRoles kEventHorizonRoles{749, 751, 753, 755, 757, 759, 763, 765, 767, 769, 770};
constexpr PanelRoles kPulseRoles{784, 786, 788, 790, 792, 794, 798, 800, 804, 806, 807};
constexpr PanelRoles kPhasersOnStunRoles{818, 834, 836, 838, 840, 842, 846, 848, 850, 852, 853};
constexpr PanelRoles kCubistRoles{870, 886, 888, 890, 892, 894, 898, 900, 902, 904, 905};
constexpr PanelRoles kSingularityRoles{924, 926, 928, 930, 932, 934, 938, 940, 944, 946, 947};

}  // namespace

const EffectDescriptor kRipple = {"Ripple", &kRipplePanel, nullptr, nullptr, TransparentColour<137>, &kRippleRoles};
const EffectDescriptor kIris = {"Iris", &kIrisPanel, nullptr, nullptr, TransparentColour<173>, &kIrisRoles};
const EffectDescriptor kPinch = {"Pinch", &kPinchPanel, nullptr, nullptr, TransparentColour<223>, &kPinchRoles};
const EffectDescriptor kNebula = {"Nebula", &kNebulaPanel, nullptr, nullptr, TransparentColour<248>, &kNebulaRoles};
const EffectDescriptor kLaser = {"Laser", &kLaserPanel, nullptr, nullptr, TransparentColour<286>, &kLaserRoles};
const EffectDescriptor kHyperspace = {"Hyperspace", &kHyperspacePanel,      nullptr,
                                      nullptr,      TransparentColour<331>, &kHyperspaceRoles};
const EffectDescriptor kGumdrops = {"Gumdrops", &kGumdropsPanel,        nullptr,
                                    nullptr,    TransparentColour<383>, &kGumdropsRoles};
const EffectDescriptor kVortex = {"Vortex", &kVortexPanel, nullptr, nullptr, TransparentColour<426>, &kVortexRoles};
const EffectDescriptor kFuse = {"Fuse", &kFusePanel, nullptr, nullptr, TransparentColour<463>, &kFuseRoles};
const EffectDescriptor kWhiteNoise = {"White Noise", &kWhiteNoisePanel,      nullptr,
                                      nullptr,       TransparentColour<501>, &kWhiteNoiseRoles};
const EffectDescriptor kRadar = {"Radar", &kRadarPanel, nullptr, nullptr, TransparentColour<542>, &kRadarRoles};
const EffectDescriptor kElastic = {"Elastic", &kElasticPanel, nullptr, nullptr, TransparentColour<579>, &kElasticRoles};
const EffectDescriptor kBackgroundIris = {"Background Iris", &kBackgroundIrisPanel,  nullptr,
                                          nullptr,           TransparentColour<609>, &kBackgroundIrisRoles};
const EffectDescriptor kBreaker = {"Breaker", &kBreakerPanel, nullptr, nullptr, TransparentColour<676>, &kBreakerRoles};
const EffectDescriptor kBackgroundHyperspace = {"Background Hyperspace", &kBackgroundHyperspacePanel, nullptr, nullptr,
                                                TransparentColour<713>,  &kBackgroundHyperspaceRoles};
const EffectDescriptor kEventHorizon = {"Event Horizon", &kEventHorizonPanel,    nullptr,
                                        nullptr,         TransparentColour<753>, &kEventHorizonRoles};
const EffectDescriptor kPulse = {"Pulse", &kPulsePanel, nullptr, nullptr, TransparentColour<788>, &kPulseRoles};
const EffectDescriptor kPhasersOnStun = {"Phasers on Stun", &kPhasersOnStunPanel,   nullptr,
                                         nullptr,           TransparentColour<836>, &kPhasersOnStunRoles};
const EffectDescriptor kCubist = {"Cubist", &kCubistPanel, nullptr, nullptr, TransparentColour<888>, &kCubistRoles};
const EffectDescriptor kSingularity = {"Singularity", &kSingularityPanel,     nullptr,
                                       nullptr,       TransparentColour<928>, &kSingularityRoles};

}  // namespace glyphmotion
