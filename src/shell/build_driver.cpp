// SPDX-License-Identifier: MIT
// From the Build button to the host: options, "Building", "Quantizing", "Supercompressing", "Remapping", the task.
#include "shell/build_driver.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "controls/variables.h"
#include "effects/effect_table.h"
#include "image/best_palette.h"
#include "image/fixed_palettes.h"
#include "image/palette_error.h"
#include "image/quantise.h"
#include "image/remap.h"
#include "image/supercompress.h"
#include "platform/run_state.h"
#include "platform/shell_ui.h"
#include "platform/workers.h"
#include "resources/strings.h"
#include "shell/main_controls.h"
#include "shell/stamp.h"

namespace glyphmotion {
namespace {

constexpr const char* kComment =
    "CREATED BY...\r\n\r\nThis graphic was created by Tessaloom' Framewright Professional or Framewright Motion and "
    "the Glyphmotion #4 "
    "plugin.\r\n\r\nSee\r\n\r\n    www.tessaloom.example\r\n\r\nfor more information.";

constexpr int kMostColours = 256;

enum BackgroundKind : std::uint64_t { kBackgroundColour = 100, kBackgroundIndex = 101 };

// The dialog's options for this run, with conflicts already resolved.
struct RunOptions {
  int effectIndex = 0;
  bool alpha = false, trueColour = false, customPalette = false, bestPalette = false, dither = false;
  bool supercompress = false, transparent = false, maskBackground = false;
  Colour background = kNoColour;
};

RunOptions ReadOptions(const Dialog& dialog, bool test) {
  RunOptions options;
  options.effectIndex = GetSelection(dialog, ControlId::Effect);
  const EffectDescriptor& effect = EffectRow(options.effectIndex);
  options.alpha = !test && ReadCheck(dialog, ControlId::AlphaTransparency);
  options.trueColour = ReadCheck(dialog, MainControl::TrueColour) || options.alpha;
  options.customPalette = ReadCheck(dialog, MainControl::CustomPalette);
  const PaletteRun::Kind kind = CurrentPaletteRun().kind;
  options.bestPalette = kind == PaletteRun::Kind::Dialog ? !options.customPalette && NumberVariable("BestPalette") != 0
                                                         : kind == PaletteRun::Kind::Best;
  options.customPalette |= options.bestPalette || kind == PaletteRun::Kind::Automatic;
  options.dither = ReadCheck(dialog, MainControl::Dither);
  options.supercompress = ReadCheck(dialog, MainControl::Supercompress) && !options.trueColour;
  const auto refusal = static_cast<std::int32_t>(effect.transparentColourFunction(dialog, 1));
  options.transparent =
      ReadCheck(dialog, MainControl::Transparent) && !options.alpha && refusal <= 0 && !options.supercompress;
  options.maskBackground = ReadCheck(dialog, MainControl::MaskBackground) && !options.supercompress;
  options.background = effect.transparentColourFunction(dialog, 0);
  if (options.background == kNoColour) {
    options.transparent = options.maskBackground = false;
  } else if (options.transparent) {
    options.maskBackground = true;
  }
  return options;
}

int DepthOfCount(int count) {
  for (int depth = 1; depth <= 8; ++depth) {
    if (count <= 1 << depth) return depth;
  }
  return 24;
}

// Cleans up on every exit from a run, in the order of the destructors: the check of Alpha transparency, the running
// picture, the frames, the cursor.
struct WaitCursor {
  WaitCursor() { SetWaitCursor(true); }
  ~WaitCursor() { SetWaitCursor(false); }
};
struct AlphaCheck {
  Dialog& dialog;
  bool checked;
  explicit AlphaCheck(Dialog& owner) : dialog(owner), checked(GetCheck(owner, ControlId::AlphaTransparency)) {}
  ~AlphaCheck() { SetCheck(dialog, ControlId::AlphaTransparency, checked); }
};
struct Resources {
  WaitCursor cursor;
  OwnedFrames frames;
  PackedDib previous;
  PackedDib before, beforeRemapped;  // the last frame, for stable dither
  AlphaCheck alphaCheck;
  explicit Resources(Dialog& dialog) : alphaCheck(dialog) {}
};

class Run {
 public:
  Run(Dialog& dialog, const HostCallTable& host, bool test)
      : host_(host), test_(test), dialog_(dialog), resources_(dialog) {}

  bool Execute() {
    if (test_) SetCheck(dialog_, ControlId::AlphaTransparency, false);
    options_ = ReadOptions(dialog_, test_);
    AskRegistration();
    LoadFixedPalette(&palette_, &depth_, static_cast<int>(NumberVariable("MainPalette")));
    return BuildFrames() && ChoosePalette() && Supercompress() && Remap() && HandOver();
  }

 private:
  FrameList& Frames() { return resources_->frames.list; }
  std::uint64_t Call(HostTaskRecord* task, std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
    return host_.HostCall(task, operation, a, b);
  }
  static std::uint64_t Address(const void* pointer) { return reinterpret_cast<std::uintptr_t>(pointer); }
  void Progress(int position, int total) {
    Call(nullptr, HostOpProgress, static_cast<std::uint64_t>(position), static_cast<std::uint64_t>(total));
  }
  void Stage(int text) { Call(nullptr, HostOpStatusText, 0, Address(LoadText(text).c_str())); }
  // A run that was asked to end reports nothing.
  bool Fail(const std::string& text) {
    if (!EndRequested()) ShowMessage(&dialog_, text);
    RepaintNow(dialog_, 0);
    return false;
  }
  bool FailMemory() { return Fail(LoadText(kTextMemoryError)); }

  void AskRegistration() {
    if (TextVariable("RegistrationName").empty() || TextVariable("RegistrationCode").empty()) return;
    stamped_ = Call(nullptr, HostOpIsRegistered, 0, 0) == 0;
  }

  bool BuildFrames() {
    Progress(0, 0);
    Stage(kTextBuilding);
    const EffectDescriptor& effect = EffectRow(options_.effectIndex);
    RunCache cache;
    EffectContext context;
    context.dialog = &dialog_;
    context.frames = &Frames();
    context.hostCalls = &host_;
    context.cache = &cache;
    if (effect.buildFunction && !effect.buildFunction(context))
      return context.failure.empty() ? FailMemory() : Fail(context.failure);
    Progress(0, 0);
    if (Frames().count == 0) return FailMemory();
    if (Frames().count == 1) singleFrame_ = true;
    return true;
  }

  bool Supercompressing() const { return options_.supercompress && !singleFrame_; }

  bool ChoosePalette() {
    if (options_.trueColour || !options_.customPalette) {
      superColour_ = options_.alpha ? 1 : 0;
      return true;
    }
    Stage(kTextQuantizing);
    // A single frame drops Supercompress only after the count was wanted.
    const bool reserve = options_.supercompress || options_.maskBackground;
    const int most = CurrentPaletteRun().colours;
    const int unreserved = reserve ? most - 1 : most;
    int n = unreserved;
    if (!Quantise(n)) return FailMemory();
    const Rgb background = RgbOf(options_.background);
    colourCount_ = n;
    if (!options_.maskBackground) {
      AddBackground(background, options_.bestPalette ? unreserved : most - 2, n);
      colourCount_ = n;
    }
    SortPaletteByBrightness(palette_, n);
    const bool reserved = Supercompressing() || options_.maskBackground;
    depth_ = DepthOfCount(n + (reserved ? 1 : 0));
    // Images of one bit are divided by brightness, whatever the two colours are.
    if (options_.bestPalette || most < kMostColours) depth_ = std::max(depth_, 2);
    transparentIndex_ = n;
    if (reserved && n < 256) palette_[static_cast<std::size_t>(n)] = background;
    if (Supercompressing()) {
      superColour_ = options_.background;
      superIndex_ = n;
    }
    return true;
  }

  bool Quantise(int& count) {
    if (!options_.bestPalette) {
      const int wanted = count;
      if (!QuantiseFrames(Frames(), count, palette_)) return false;
      if (CurrentPaletteRun().kind != PaletteRun::Kind::Automatic) return true;
      const std::optional<double> error = PaletteError(Frames(), palette_, count);
      if (!error || *error <= kErrorOf45Decibels) return error.has_value();
      options_.bestPalette = true;
      count = wanted;
    }
    // Masked pixels get the reserved entry. Diffusion still needs their colour: it would spread the error of another.
    const bool diffuses = options_.dither && CurrentPaletteRun().dithering != Dithering::Ordered;
    std::optional<Rgb> reserved;
    if (options_.maskBackground && !diffuses) reserved = RgbOf(options_.background);
    return BestPalette(Frames(), reserved, count, palette_);
  }

  // As an entry of its own while there are fewer than `most`; otherwise it replaces the nearest.
  void AddBackground(Rgb background, int most, int& count) {
    const int nearest = NearestColour(background.red, background.green, background.blue, palette_, count);
    if (options_.bestPalette && palette_[static_cast<std::size_t>(nearest)] == background) return;
    palette_[static_cast<std::size_t>(count < most ? count++ : nearest)] = background;
  }

  bool Supercompress() {
    if (!Supercompressing()) return true;
    Stage(kTextSupercompressing);
    const auto progress = [this](int i, int count) { Progress(i, count); };
    return SupercompressFrames(Frames(), superColour_, resources_->previous, progress) || FailMemory();
  }

  bool Remap() {
    Stage(kTextRemapping);
    const RemapOptions remapOptions{NumberVariable("FastRemap") != 0,
                                    static_cast<int>(NumberVariable("DitherBrightness")),
                                    static_cast<int>(NumberVariable("DitherContrast"))};
    const int count = Frames().count;
    Workers& workers = RunWorkers();
    std::vector<std::unique_ptr<ColourMatcher>> matchers(static_cast<std::size_t>(workers.Lanes()));
    std::vector<std::uint8_t> reduced(static_cast<std::size_t>(count));
    const auto reduce = [&](int lane, int i) {
      std::unique_ptr<ColourMatcher>& matcher = matchers[static_cast<std::size_t>(lane)];
      if (!matcher && !options_.trueColour)
        matcher = std::make_unique<ColourMatcher>(palette_, depth_, colourCount_, remapOptions);
      const LockedFrame record(Frames(), i);
      reduced[static_cast<std::size_t>(i)] = record && !EndRequested() && (!stamped_ || StampFrame(record->image)) &&
                                             (!matcher || RemapFrame(*record, i, *matcher));
    };
    const auto take = [&](int i) {
      Progress(i, count);
      if (EndRequested()) return false;
      const LockedFrame record(Frames(), i);
      const DibView view(record ? record->image : nullptr);
      if (!reduced[static_cast<std::size_t>(i)] || !view) return FailMemory();
      maxWidth_ = std::max(maxWidth_, view.Width());
      maxHeight_ = std::max(maxHeight_, view.Height());
      if (options_.transparent) record->transparentIndex = transparentIndex_;
      return true;
    };
    // Stable dither carries pixels over from the frame before.
    const bool chained = !options_.trueColour && DitheringIs(Dithering::Stable);
    for (int i = 0; chained && i < count; ++i) {
      reduce(0, i);
      if (!take(i)) return false;
    }
    return chained || workers.InOrder(count, reduce, take);
  }

  // Replaces the frame's 24-bit image by one of palette indices.
  bool RemapFrame(FrameRecord& record, int number, ColourMatcher& matcher) {
    // Borrowed: the record keeps its image until the new one exists.
    struct Borrowed {
      PackedDib dib;
      explicit Borrowed(BlockHandle handle) : dib(handle) {}
      ~Borrowed() { dib.Release(); }
    } source(record.image);
    PackedDib image = options_.dither ? Dither(source.dib, matcher) : RemapImage(source.dib, matcher);
    if (image && Supercompressing()) {
      if (number == 0) image = MaskReplace(image, source.dib, options_.background, transparentIndex_);
      if (image && record.mask && !MarkUnchanged(image, record)) return false;
    }
    if (image && options_.maskBackground && transparentIndex_ != -1) {
      image = MaskReplace(image, source.dib, options_.background, transparentIndex_);
    }
    if (!image) return false;
    if (DitheringIs(Dithering::Stable)) resources_->before = std::move(source.dib);
    source.dib.Reset();
    record.image = image.Release();
    return true;
  }

  bool DitheringIs(Dithering method) const { return options_.dither && CurrentPaletteRun().dithering == method; }

  PackedDib Dither(const PackedDib& image, ColourMatcher& matcher) {
    if (DitheringIs(Dithering::Ordered)) return DitherOrdered(image, matcher);
    if (!DitheringIs(Dithering::Stable)) return DitherImage(image, matcher);
    PackedDib dithered = DitherStable(image, resources_->before, resources_->beforeRemapped, matcher);
    // A copy: masks are painted into the image itself.
    resources_->beforeRemapped = DuplicateDib(dithered);
    return resources_->beforeRemapped ? std::move(dithered) : PackedDib();
  }

  bool MarkUnchanged(const PackedDib& image, FrameRecord& record) {
    const DibView view(image), mask(record.mask);
    if (!view || !mask) return false;
    for (int y = 0; y < std::min(view.Height(), mask.Height()); ++y) {
      if (EndRequested()) return false;
      const std::uint8_t* bits = mask.Row(y);
      for (int x = 0; x < std::min(view.Width(), mask.Width()); ++x) {
        if (bits[x >> 3] & (0x80 >> (x & 7))) view.SetPixel(x, y, static_cast<std::uint32_t>(superIndex_));
      }
    }
    if (superIndex_ >= 0 && superIndex_ < 1 << view.Bits()) view.SetTableEntry(superIndex_, RgbOf(superColour_));
    record.transparentIndex = superIndex_;
    return true;
  }

  bool HandOver() {
    Progress(0, 0);
    if (EndRequested()) return false;
    HostTaskRecord task{};
    task.size = sizeof task;
    task.version = HostInterfaceVersion;
    task.ownerWindow = WindowOf(dialog_);
    task.bitsPerPixel = static_cast<std::uint32_t>(depth_);
    task.width = static_cast<std::uint32_t>(maxWidth_);
    task.height = static_cast<std::uint32_t>(maxHeight_);
    std::memcpy(task.palette, palette_.data(), sizeof task.palette);
    task.imageCount = static_cast<std::uint32_t>(Frames().count);
    if (options_.transparent) task.transparentIndex = transparentIndex_;
    if (!Call(nullptr, test_ ? HostOpNewTestTask : HostOpNewTask, 0, Address(&task)))
      return Fail(LoadText(kTextTaskRefused));
    OpenTask open{*this, task};
    SetBackground(task);
    for (int i = 0; i < Frames().count; ++i) {
      if (!AddImage(task, i)) return Fail(LoadText(kTextImageRefused));
    }
    if (NumberVariable("AddDescriptiveCommentBlock")) Call(&task, HostOpAddComment, 0, Address(kComment));
    open.ended = true;
    Call(&task, HostOpEndTask, 1, 0);
    return true;
  }

  // A host accepts no other task while one is open, so this one is ended on every exit, even when memory runs out while
  // a message is shown. The host abandons a file only after everything here has been freed.
  struct OpenTask {
    Run& run;
    HostTaskRecord& task;
    bool ended = false;
    ~OpenTask() {
      if (ended) return;
      run.resources_.reset();
      try {
        run.Call(&task, HostOpEndTask, 0, 0);
      } catch (...) {  // the host threw, perhaps during stack unwinding
      }
    }
  };

  void SetBackground(HostTaskRecord& task) {
    if (!(host_.hostFlags & HostFlagPaletteFormat)) {
      Call(&task, HostOpSetBackground, kBackgroundColour, options_.background);
      return;
    }
    const Rgb colour = RgbOf(options_.background);
    const int index = transparentIndex_ != -1
                          ? transparentIndex_
                          : NearestColour(colour.red, colour.green, colour.blue, palette_, colourCount_);
    Call(&task, HostOpSetBackground, kBackgroundIndex, static_cast<std::uint64_t>(index));
  }

  bool AddImage(HostTaskRecord& task, int i) {
    const LockedFrame record(Frames(), i);
    if (!record || EndRequested()) return false;
    HostImageRecord image{};
    image.size = sizeof image;
    image.version = HostInterfaceVersion;
    image.image = Address(record->image);
    image.standAlone = options_.alpha || options_.transparent ? 1 : 0;
    image.delay = static_cast<std::uint32_t>(record->delay);
    image.number = static_cast<std::uint32_t>(i);
    const bool alphaPlanes = options_.alpha && !(host_.hostFlags & HostFlagPaletteFormat);
    image.transparentIndex = alphaPlanes ? 0 : record->transparentIndex;
    return Call(&task, HostOpAddImage, 0, Address(&image)) != 0;
  }

  const HostCallTable& host_;
  bool test_;
  Dialog& dialog_;
  RunOptions options_;
  std::optional<Resources> resources_;
  Palette palette_{};
  int depth_ = 8, colourCount_ = 256;
  int transparentIndex_ = -1, superIndex_ = -1;
  Colour superColour_ = 0;
  int maxWidth_ = 0, maxHeight_ = 0;
  bool stamped_ = false, singleFrame_ = false;
};

}  // namespace

PaletteRun& CurrentPaletteRun() { return CurrentRun().Member<PaletteRun>(); }

bool BuildDriver(Dialog& dialog, const HostCallTable& hostCalls, bool test) {
  if (!hostCalls.HostCall) return false;
  Run run(dialog, hostCalls, test);
  try {
    return run.Execute();
  } catch (const std::bad_alloc&) {
    if (!EndRequested()) ShowMessage(&dialog, LoadText(kTextMemoryError));
    RepaintNow(dialog, 0);
    return false;
  }
}

}  // namespace glyphmotion
