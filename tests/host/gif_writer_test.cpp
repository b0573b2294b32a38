// SPDX-License-Identifier: MIT
// The GIF writer against an independent decoder (giflib), and its sizes against gifsicle -O3.
#include "host/encoders/gif_writer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "host/decoders.h"
#include "host/encoders/dib_reader.h"
#include "host/encoders/gif_frame.h"
#include "host/encoders/gif_palette.h"
#include "host/host_helpers.h"

namespace glyphmotion {
namespace {

using testing::Bytes;
using Decoded = testing::DecodedGif;
using Screen = testing::GifScreen;
using testing::DecodeGif;

struct Picture {
  int width, height;
  Bytes indices;
  std::array<std::uint8_t, 768> palette;
  int delay = 4, transparentIndex = -1;
  bool standAlone = false;
};
using Animation = std::vector<Picture>;

std::array<std::uint8_t, 768> RandomPalette(unsigned seed) {
  std::mt19937 random(seed);
  std::array<std::uint8_t, 768> palette;
  for (std::uint8_t& byte : palette) byte = static_cast<std::uint8_t>(random());
  return palette;
}

Bytes WriteGif(const Animation& animation, int width, int height, const std::string& comment = "", int loss = 0,
               int effort = 6, int threads = 1) {
  GifWriter writer(width, height, threads);
  writer.SetLoss(loss);
  writer.SetEffort(effort);
  for (const Picture& p : animation)
    EXPECT_TRUE(writer.Add({p.width, p.height, p.indices, p.palette, p.delay, p.transparentIndex, p.standAlone}));
  writer.SetComment(comment);
  return writer.Finish();
}

// What a viewer is meant to see, by the meaning of the frames.
std::vector<Screen> Meant(const Animation& animation, int width, int height) {
  std::vector<Screen> screens;
  Screen screen(static_cast<std::size_t>(width * height), 0);
  for (const Picture& p : animation) {
    if (p.standAlone) std::fill(screen.begin(), screen.end(), 0u);
    for (int y = 0; y < std::min(height, p.height); ++y)
      for (int x = 0; x < std::min(width, p.width); ++x) {
        const std::size_t i = p.indices[static_cast<std::size_t>(y * p.width + x)];
        if (static_cast<int>(i) == p.transparentIndex) continue;
        screen[static_cast<std::size_t>(y * width + x)] = 0xFF000000u | p.palette[i * 3] |
                                                          std::uint32_t{p.palette[i * 3 + 1]} << 8 |
                                                          std::uint32_t{p.palette[i * 3 + 2]} << 16;
      }
    screens.push_back(screen);
  }
  return screens;
}

// A disc that moves over a background, in `colours` colours; what the engine's frames are like.
Animation Moving(int width, int height, int frames, unsigned colours, int noise) {
  std::mt19937 random(7);
  Animation animation;
  const auto palette = RandomPalette(1);
  for (int f = 0; f < frames; ++f) {
    Picture p{width, height, Bytes(static_cast<std::size_t>(width * height)), palette};
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x) {
        const int dx = x - (f * 5) % width, dy = y - height / 2, distance = dx * dx + dy * dy;
        unsigned value = distance < height * height / 5 ? static_cast<unsigned>(distance / 7) % colours : 0;
        if (noise > 0 && static_cast<int>(random() % 100) < noise) value = random() % colours;
        p.indices[static_cast<std::size_t>(y * width + x)] = static_cast<std::uint8_t>(value);
      }
    animation.push_back(std::move(p));
  }
  return animation;
}

// The squared errors of a screen: the greatest of a pixel, and the sum.
struct Errors {
  int most = 0;
  double sum = 0;
};
Errors ErrorsOf(const Screen& shown, const Screen& meant) {
  Errors errors;
  for (std::size_t i = 0; i < meant.size(); ++i) {
    const auto off = [&](int shift) {
      const int d = static_cast<int>(shown[i] >> shift & 255) - static_cast<int>(meant[i] >> shift & 255);
      return d * d;
    };
    // What is transparent stays so.
    const int error = (3 * off(0) + 4 * off(8) + 2 * off(16) + 1) / 3 + 99999 * (off(24) != 0);
    errors.most = std::max(errors.most, error);
    errors.sum += off(0) + off(8) + off(16);
  }
  return errors;
}

// Every picture and its delay must come back, with loss as near as that allows. `halves`: of the pictures that may come
// as two images, because they have 256 new colours and need a transparent index.
void ExpectShown(const Animation& animation, int width, int height, const char* what, int halves = 0, int loss = 0) {
  SCOPED_TRACE(what);
  const auto shows = [&](const Screen& shown, const Screen& meant) { return ErrorsOf(shown, meant).most <= 5 * loss; };
  const Decoded gif = DecodeGif(WriteGif(animation, width, height, "", loss));
  EXPECT_EQ(gif.width, width);
  EXPECT_EQ(gif.height, height);
  const std::vector<Screen> meant = Meant(animation, width, height);
  std::size_t image = 0;
  for (std::size_t i = 0; i < meant.size(); ++i, ++image) {
    ASSERT_LT(image, gif.screens.size());
    int delay = gif.delays[image];
    if (!shows(gif.screens[image], meant[i]) && halves > 0 && image + 1 < gif.screens.size()) {
      --halves;
      delay += gif.delays[++image];
    }
    ASSERT_TRUE(shows(gif.screens[image], meant[i])) << "frame " << i;
    EXPECT_EQ(delay, animation[i].delay);
  }
  EXPECT_EQ(image, gif.screens.size());
  const bool holes = std::any_of(meant.begin(), meant.end(), [](const Screen& screen) {
    return std::find(screen.begin(), screen.end(), 0u) != screen.end();
  });
  if (holes && animation[0].transparentIndex >= 0) {
    EXPECT_EQ(gif.withoutIndex, 0);
  }
}

TEST(GifWriter, EveryFrameIsShownAsMeant) {
  ExpectShown(Moving(61, 40, 6, 200, 0), 61, 40, "moving");
  ExpectShown(Moving(200, 150, 3, 256, 100), 200, 150, "noise in all colours, the dictionary overflows");
  ExpectShown(Moving(300, 200, 2, 2, 50), 300, 200, "noise in two colours");
  ExpectShown(Moving(1, 1, 3, 1, 0), 1, 1, "one pixel that stays");
  ExpectShown(Moving(120, 90, 5, 256, 3), 120, 90, "all colours and a little noise: no index left for transparency");

  Animation wide = Moving(40, 30, 3, 10, 5);
  ExpectShown(wide, 64, 48, "frames smaller than the screen");
  ExpectShown(wide, 20, 11, "frames larger than the screen are cut");
  wide[1].indices.assign(wide[1].indices.size(), 255);
  ExpectShown(wide, 40, 30, "an index past all that was used");
  wide[0].delay = 0;
  wide[1].delay = 65535;
  ExpectShown(wide, 40, 30, "delays at both ends");
}

TEST(GifWriter, TransparencyShowsThePreviousFrameOrTheBackground) {
  for (const bool standAlone : {false, true}) {
    Animation animation = Moving(80, 50, 8, 60, 2);
    for (Picture& p : animation) {
      p.transparentIndex = 0;
      p.standAlone = standAlone;
    }
    ExpectShown(animation, 80, 50, standAlone ? "stand-alone" : "see-through");
    animation[3].indices.assign(animation[3].indices.size(), 0);
    animation[5].transparentIndex = -1;  // a solid frame among the others
    ExpectShown(animation, 80, 50, standAlone ? "stand-alone, an empty frame" : "see-through, an empty frame");
  }
  // The reserved colour is a colour in the first frame and transparent in the others, with another table entry.
  Animation super = Moving(50, 40, 4, 30, 0);
  for (std::size_t i = 1; i < super.size(); ++i) {
    super[i].transparentIndex = 0;
    super[i].palette[0] = static_cast<std::uint8_t>(i);
  }
  ExpectShown(super, 50, 40, "reserved colour");
}

// The second picture has to clear the first one's pixels, and all its colours are new, or known.
TEST(GifWriter, AFrameOf256ColoursMayNeedATransparentIndex) {
  for (const bool isNew : {true, false})
    for (const int delay : {1, 30}) {
      Animation animation = {{32, 16, Bytes(512), RandomPalette(1), delay, -1, true},
                             {16, 16, Bytes(256), RandomPalette(isNew ? 2 : 1), delay, -1, false},
                             {32, 16, Bytes(512, 7), RandomPalette(2), delay, 7, true}};
      for (std::size_t i = 0; i < 512; ++i) animation[0].indices[i] = static_cast<std::uint8_t>(i);
      for (std::size_t i = 0; i < 256; ++i)
        animation[1].indices[i] = static_cast<std::uint8_t>(isNew ? i : i / 16 * 32 + i % 16);
      animation[1].indices[3] = 9;
      animation[2].indices[3] = 1;
      ExpectShown(animation, 32, 16, isNew ? "new colours" : "known colours", isNew ? 1 : 0);
    }
}

TEST(GifWriter, HundredsOfPalettesStartTheNumberingAfresh) {
  // Every colour comes once in the animation, so that the numbers run out to the last one.
  Animation animation;
  for (unsigned i = 0; i < 270; ++i) {
    Picture p{16, 16, Bytes(256), {}};
    for (unsigned k = 0; k < 256; ++k) {
      p.indices[k] = static_cast<std::uint8_t>(k);
      const unsigned colour = 1 + i * 256 + k;
      for (unsigned c = 0; c < 3; ++c) p.palette[k * 3 + c] = static_cast<std::uint8_t>(colour >> (8 * c));
    }
    if (i > 250) p.width = 8, p.height = 32;
    animation.push_back(std::move(p));
  }
  ExpectShown(animation, 16, 16, "270 palettes");
  for (std::size_t i = 250; i < animation.size(); ++i) {
    animation[i].standAlone = true;
    animation[i].transparentIndex = static_cast<int>(i % 256);
  }
  ExpectShown(animation, 16, 16, "and what was shown vanishes", 1);
}

TEST(GifWriter, RandomAnimationsAreShownAsMeant) {
  std::mt19937 random(42);
  const int losses[] = {0, 0, 1, 30, 200};
  for (int round = 0; round < 200; ++round) {
    SCOPED_TRACE(round);
    const int width = 1 + static_cast<int>(random() % 40), height = 1 + static_cast<int>(random() % 30);
    Animation animation;
    const unsigned colours = 1 + random() % 256, palettes = 1 + random() % 2;
    Bytes last(40 * 40);
    for (unsigned f = 0; f < 1 + random() % 6; ++f) {
      Picture p{1 + static_cast<int>(random() % 40),
                1 + static_cast<int>(random() % 40),
                {},
                RandomPalette(random() % palettes)};
      for (std::uint8_t& pixel : last)
        if (random() % 4 == 0) pixel = static_cast<std::uint8_t>(random() % colours);
      p.indices.assign(last.begin(), last.begin() + p.width * p.height);
      p.delay = static_cast<int>(random() % 300);
      if (random() % 2) p.transparentIndex = static_cast<int>(random() % colours);
      p.standAlone = random() % 2;
      animation.push_back(std::move(p));
    }
    ExpectShown(animation, width, height, "random", 1, losses[round % 5]);
  }
}

// Palettes of neighbouring colours, in which there is something to lose.
std::array<std::uint8_t, 768> RampPalette() {
  std::array<std::uint8_t, 768> palette;
  for (std::size_t i = 0; i < palette.size(); ++i) palette[i] = static_cast<std::uint8_t>(i / 3 + i % 3 * 2);
  return palette;
}

TEST(GifWriter, LossyFramesAreNearWhatIsMeant) {
  for (const int loss : {1, 40, 200}) {
    for (const unsigned colours : {2u, 60u, 256u}) {
      Animation animation = Moving(120, 90, 6, colours, 20);
      for (Picture& p : animation) p.palette = RampPalette();
      ExpectShown(animation, 120, 90, "noise", 0, loss);
      for (std::size_t i = 0; i < animation.size(); ++i) {
        animation[i].transparentIndex = 1;
        animation[i].standAlone = i % 3 == 1;
      }
      ExpectShown(animation, 120, 90, "and holes", 0, loss);
      for (std::size_t i = 0; i < animation.size(); ++i) animation[i].palette[i] ^= 0x81;
      ExpectShown(animation, 120, 90, "a palette for every frame", 1, loss);
    }
    // Each frame is one level brighter: near to the one before, far from the first.
    Animation fade = Moving(40, 30, 250, 256, 5);
    for (std::size_t i = 0; i < fade.size(); ++i) {
      fade[i].palette = RampPalette();
      for (std::uint8_t& index : fade[i].indices)
        index = static_cast<std::uint8_t>(std::min<std::size_t>(255, i + index % 4));
    }
    ExpectShown(fade, 40, 30, "a slow change", 0, loss);
  }
}

TEST(GifWriter, SaysHowItPlaysAndWhatMadeIt) {
  const Animation animation = Moving(20, 20, 2, 5, 0);
  const std::string comment = std::string(300, 'c') + "end";
  const Decoded gif = DecodeGif(WriteGif(animation, 20, 20, comment));
  EXPECT_TRUE(gif.loops);
  EXPECT_EQ(gif.comment, comment);
  EXPECT_LE(gif.paletteEntries, 8) << "five colours and a transparent index";
  EXPECT_FALSE(DecodeGif(WriteGif({animation[0]}, 20, 20)).loops) << "one picture doesn't play";
  EXPECT_TRUE(WriteGif({}, 20, 20).empty());
}

// Neither the smallest frame nor the colour of the most frames is what the first slots are for.
TEST(GifWriter, ThePaletteKeepsTheMostFramesWhole) {
  std::vector<std::uint16_t> ids(49);
  std::vector<std::uint32_t> colours(ids.size());
  for (std::size_t i = 0; i < ids.size(); ++i) ids[i] = static_cast<std::uint16_t>(i);
  const auto frame = [&](int from, int to) { return GifWants{{ids.begin() + from, ids.begin() + to}, false, 1000}; };
  std::vector<GifWants> frames = {frame(0, 5)};  // alone with its five colours
  frames.insert(frames.end(), 5, frame(5, 41));  // these and the next share sixteen
  frames.insert(frames.end(), 8, frame(25, 41));
  frames.insert(frames.end(), 10, frame(41, 49));  // eight colours: three bits
  GifPalette palette;
  PutInOrder(frames, ids, colours, palette);
  for (std::size_t id = 41; id < 49; ++id) EXPECT_LT(palette.SlotOf(id), 8) << id;
}

TEST(GifWriter, EntriesOfOneColourAreOne) {
  Animation animation = Moving(40, 30, 3, 4, 20);
  for (std::size_t i = 6; i < 12; ++i) animation[1].palette[i] = animation[1].palette[i - 6];
  animation[0].palette = animation[2].palette = animation[1].palette;
  animation[2].indices = animation[1].indices;
  for (std::uint8_t& index : animation[2].indices) index ^= 2;  // the same colours by other indices
  ExpectShown(animation, 40, 30, "twins");
  const Decoded gif = DecodeGif(WriteGif(animation, 40, 30));
  EXPECT_LE(gif.coded, 40u * 30 * 2 + 1) << "the third frame changes nothing";
  EXPECT_LE(gif.paletteEntries, 4);
}

TEST(GifWriter, OnlyWhatChangesIsCoded) {
  Animation animation = Moving(100, 80, 1, 9, 0);
  animation.push_back(animation[0]);
  animation.push_back(animation[0]);
  animation[2].indices[3 * 100 + 7] = 200;
  animation[2].indices[5 * 100 + 9] = 201;
  EXPECT_EQ(DecodeGif(WriteGif(animation, 100, 80)).coded, 100u * 80 + 1 + 3 * 3);
}

// What the engine makes of an effect.
Animation Effect(const std::string& effect, const char* text, const char* size, const std::string& option = "",
                 bool shadow = true) {
  Job job;
  job.text = text;
  job.effect = effect;
  job.defaults = {{"Truecolour", "0"}, {"14", "1"}, {"MainFontSize", size}};
  if (!option.empty()) job.defaults.push_back({option, "1"});
  for (const KeyInfo& key : shadow ? std::vector<KeyInfo>{} : Keys())
    if (key.key.ends_with("ShadowEnable")) job.defaults.push_back({key.key, "0"});
  Animation animation;
  Sink sink;
  sink.image = [&](const Image& image) {
    const DibPixels dib = ReadDib(image.dib);
    Picture p{dib.width, dib.height, {}, UnpackPalette(dib), image.delay, image.transparentIndex, image.standAlone};
    UnpackIndices(dib, p.indices);
    animation.push_back(std::move(p));
    return true;
  };
  EXPECT_EQ(Render(job, sink).status, RenderStatus::Done) << effect;
  return animation;
}

// A thin text without a shadow leaves frames that show nothing, and frames that only clear.
TEST(GifWriter, EveryEffectIsShownAsMeant) {
  for (const std::string& effect : EffectNames())
    for (const std::string option : {"", "MainDither", "MainTransparent", "MainSupercompress"})
      for (const char* const text : {"\u2014", "Ab"}) {
        const Animation animation = Effect(effect, text, "16", option, text[0] == 'A');
        ExpectShown(animation, animation[0].width, animation[0].height, (effect + ' ' + text + ' ' + option).c_str());
      }
}

// The same indices through giflib's plain encoder, and that file through gifsicle, which keeps frames that change
// nothing as we do.
Bytes Gifsicle(const Animation& animation, int width, int height, int loss = 0) {
  const testing::TemporaryFolder folder;
  int error = 0;
  GifFileType* file = EGifOpenFileName((folder / "plain.gif").c_str(), false, &error);
  EGifSetGifVersion(file, true);
  const Picture& first = animation[0];
  ColorMapObject* map = GifMakeMapObject(256, nullptr);
  for (std::size_t i = 0; i < 256; ++i)
    map->Colors[i] = {first.palette[i * 3], first.palette[i * 3 + 1], first.palette[i * 3 + 2]};
  EGifPutScreenDesc(file, width, height, 8, 0, map);
  for (const Picture& p : animation) {
    GraphicsControlBlock control{p.standAlone ? DISPOSE_BACKGROUND : DISPOSE_DO_NOT, false, p.delay,
                                 p.transparentIndex < 0 ? NO_TRANSPARENT_COLOR : p.transparentIndex};
    GifByteType bytes[4];
    EGifGCBToExtension(&control, bytes);
    EGifPutExtension(file, GRAPHICS_EXT_FUNC_CODE, 4, bytes);
    EGifPutImageDesc(file, 0, 0, width, height, false, nullptr);
    Bytes indices = p.indices;
    EGifPutLine(file, indices.data(), width * height);
  }
  GifFreeMapObject(map);
  EGifCloseFile(file, &error);
  const std::string command = "gifsicle --no-warnings -O3 -Okeep-empty --lossy=" + std::to_string(loss) +
                              " --loopcount=0 '" + (folder / "plain.gif") + "' -o '" + (folder / "small.gif") + "'";
  EXPECT_EQ(std::system(command.c_str()), 0) << "gifsicle is needed (package gifsicle)";
  return testing::ReadBytes(folder / "small.gif");
}

TEST(GifWriter, TheseAreNoLargerThanFromGifsicle) {
  Animation alone = Moving(300, 80, 10, 100, 0);
  for (Picture& p : alone) {
    p.transparentIndex = 0;
    p.standAlone = true;
  }
  const struct {
    const char* what;
    Animation animation;
  } cases[] = {{"moving", Moving(300, 80, 12, 100, 0)},
               {"few colours", Moving(300, 80, 12, 6, 0)},
               {"a little noise", Moving(300, 80, 8, 100, 2)},
               {"much noise", Moving(300, 80, 5, 16, 40)},
               {"all colours", Moving(400, 120, 8, 256, 1)},
               {"one picture", Moving(400, 120, 1, 250, 0)},
               {"stand-alone", alone},
               {"few colours after many", Effect("fuse", "This space for rent...", "48")},
               {"the number of colours goes up and down", Effect("iris", "This space for rent...", "48")},
               {"close results", Effect("background-iris", "This space for rent...", "48")},
               {"frames that change nothing", Effect("elastic", "Hi", "16")},
               {"hardly any bytes", Effect("laser", "a", "16")},
               {"free pixels here and there", Effect("ripple", "Aq", "12")},
               {"noise", Effect("white-noise", "Hi", "16")},
               {"colours that only free pixels have", Effect("background-hyperspace", "This space for rent...", "16")},
               {"free pixels beside cleared ones", Effect("white-noise", "Hi", "48", "MainTransparent")},
               {"tiny frames", Effect("laser", "A", "30")},
               {"much is free and much is new", Effect("nebula", "This space for rent...", "72")},
               {"the same with holes", Effect("nebula", "This space for rent...", "72", "MainTransparent")},
               {"frames that change a lot", Effect("background-iris", "This space for rent...", "72")},
               {"letters that vanish", Effect("background-iris", "This space for rent...", "72", "MainTransparent")}};
  for (const auto& c : cases) {
    const int width = c.animation[0].width, height = c.animation[0].height;
    const std::size_t ours = WriteGif(c.animation, width, height).size();
    const std::size_t theirs = Gifsicle(c.animation, width, height).size();
    EXPECT_LE(ours, theirs) << c.what;
    ::testing::Test::RecordProperty(c.what, std::to_string(ours) + " / " + std::to_string(theirs));
  }
}

// The most lossy of our files that is no further from the pictures than gifsicle's; where there is little to lose, the
// two are close.
TEST(GifWriter, LossyFilesAreSmallerThanFromGifsicleAtTheSameError) {
  for (const char* const effect : {"simple", "vortex", "ripple", "nebula", "background-hyperspace"})
    for (const int loss : {40, 120}) {
      const Animation animation = Effect(effect, "Space", "40");
      const int width = animation[0].width, height = animation[0].height;
      const std::vector<Screen> meant = Meant(animation, width, height);
      const auto errorOf = [&](const Bytes& file) {
        const Decoded gif = DecodeGif(file);
        double sum = 0;
        for (std::size_t i = 0; i < meant.size(); ++i) sum += ErrorsOf(gif.screens.at(i), meant[i]).sum;
        return sum;
      };
      const Bytes theirs = Gifsicle(animation, width, height, loss);
      const double allowed = errorOf(theirs);
      Bytes ours = WriteGif(animation, width, height);
      for (int low = 0, high = 200; high - low > 1;) {
        const int middle = (low + high) / 2;
        const Bytes file = WriteGif(animation, width, height, "", middle);
        const bool near = errorOf(file) <= allowed;
        (near ? low : high) = middle;
        if (near) ours = file;
      }
      EXPECT_LT(ours.size(), theirs.size() * 102 / 100) << effect << " " << loss;
    }
}

// A search that alike frames share.
TEST(GifWriter, LittleEffortShowsTheSameInNearlyAsFewBytes) {
  for (const std::string& effect : EffectNames())
    for (const std::string option : {"", "MainTransparent"}) {
      const Animation animation = Effect(effect, "Rent it", "30", option);
      const int width = animation[0].width, height = animation[0].height;
      const Bytes full = WriteGif(animation, width, height), shared = WriteGif(animation, width, height, "", 0, 5);
      EXPECT_TRUE(shared == WriteGif(animation, width, height, "", 0, 5, 3)) << effect << option;
      EXPECT_LT(shared.size(), full.size() * 103 / 100) << effect << option;
      EXPECT_TRUE(DecodeGif(shared).screens == DecodeGif(full).screens) << effect << option;
    }
}

// Threads rely on it. Free pixels of the last rounds do not vary, which leaves some ways nothing to do.
TEST(GifWriter, AFrameIsCompressedTheSameWhateverCameBefore) {
  constexpr GifStrategy kStrategies[] = {GifStrategy::Plain, GifStrategy::Choice, GifStrategy::Varied,
                                         GifStrategy::Often, GifStrategy::Wildcards};
  GifFrameCompressor used;
  std::mt19937 random(4);
  for (int round = 0; round < 16; ++round) {
    GifPixels pixels;
    for (const Picture& p : Moving(90, 60 + round * 8, 1, 1u << (round % 8 + 1), round * 3)) pixels.symbols = p.indices;
    for (std::size_t i = 0; i < pixels.symbols.size(); ++i)
      pixels.kinds.push_back(static_cast<GifPixel>(i / 50 % 3 == 0 ? 0 : random() % (round < 7 ? 2 : 3)));
    for (std::size_t i = 0; i < pixels.symbols.size() && round >= 12; ++i) {
      if (pixels.symbols[i] == 1) pixels.symbols[i] = 0;  // leaves a slot for the wildcard
      pixels.kinds[i] = static_cast<GifPixel>(i / 50 % 3 == 0);
      if (pixels.kinds[i] == GifPixel::Free) pixels.symbols[i] = 0;
    }
    FindSlots(pixels);
    for (std::size_t way = 0; way <= std::size(kStrategies); ++way) {
      GifPixels one = pixels, again = pixels;
      GifSearch search;
      if (way < std::size(kStrategies)) search.likely = {{kStrategies[way], {}}};
      GifSearch same = search;
      GifFrameCompressor fresh;
      const GifStream a = used.Compress(one, 8, search), b = fresh.Compress(again, 8, same);
      EXPECT_TRUE(a.bytes == b.bytes && a.wildcard == b.wildcard && a.codeSize == b.codeSize) << round << ' ' << way;
    }
  }
}

}  // namespace
}  // namespace glyphmotion
