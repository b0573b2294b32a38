// SPDX-License-Identifier: MIT
// Both sides of the host's contract, and frames on their way into a GIF.
#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "controls/variables.h"
#include "fuzz/open_dialog.h"
#include "fuzz/readers.h"
#include "glyphmotion/host_contract.h"
#include "host/encoders/gif_writer.h"
#include "host/recording/animation.h"
#include "platform/folders.h"
#include "shell/build_driver.h"

namespace glyphmotion::fuzz {
namespace {

// What a hostile host answers, in order. One run at a time.
struct HostileHost {
  Numbers numbers;

  std::uint64_t Answer(std::uint32_t operation, std::uint64_t b) {
    const std::uint8_t answer = numbers.Byte();
    switch (operation) {
      case HostOpChooseImageFile: {
        const std::string_view path = numbers.Take(answer);
        std::memcpy(reinterpret_cast<char*>(b), path.data(), path.size());
        return answer & 1;
      }
      case HostOpLoadImage: {
        const std::string_view bytes = numbers.Take(std::size_t{answer} * 4);
        const std::uint64_t block = GlyphmotionAllocateBlock(bytes.size());
        if (void* to = GlyphmotionLockBlock(block)) {
          std::memcpy(to, bytes.data(), bytes.size());
          GlyphmotionUnlockBlock(block);
        }
        return block;
      }
      case HostOpPickColor:
        reinterpret_cast<HostColorPickRecord*>(b)->color = numbers.Word();
        return answer & 1;
      case HostOpGetFileDialogSize: {
        const std::uint32_t size[2] = {numbers.Word(), numbers.Word()};
        std::memcpy(reinterpret_cast<void*>(b), size, sizeof size);
        return answer;
      }
      default:
        return answer % 8 ? 1 : answer / 8;  // mostly yes, or nobody gets far
    }
  }
};

HostileHost*& CurrentHost() {
  static thread_local HostileHost* host = nullptr;
  return host;
}

std::uint64_t Answer(void*, std::uint32_t operation, std::uint64_t, std::uint64_t b) {
  return CurrentHost() ? CurrentHost()->Answer(operation, b) : 0;  // a dialog opens between two inputs
}

// A user of a few presses: buttons, materials, and mostly Test.
void PressSome(GlyphmotionDialog* dialog) {
  Numbers& numbers = CurrentHost()->numbers;
  for (int i = 0; i < 6 && numbers.Any(); ++i) {
    const std::uint32_t word = numbers.Word();
    const int id = static_cast<int>(word & 1023), value = static_cast<int>(word >> 10 & 255);
    switch (word >> 30) {
      case 0:
        GlyphmotionSetNumber(dialog, id, value % 12);
        break;
      case 1:
        GlyphmotionSetCheck(dialog, id, value & 1);
        break;
      case 2:
        GlyphmotionSelect(dialog, id, value);
        break;
      default:
        GlyphmotionPress(dialog, value & 1 ? 24 : id);
    }
  }
}

// A dialog over the main one, or the main one of a whole run.
void Play(GlyphmotionDialog* dialog, void*) {
  GlyphmotionSetText(dialog, 52, "I");
  GlyphmotionSetNumber(dialog, 57, 6);
  PressSome(dialog);
  GlyphmotionPress(dialog, 1);
}

GlyphmotionDialog* InC(Dialog& dialog) { return reinterpret_cast<GlyphmotionDialog*>(&dialog); }

// A host of the kind that the flags say.
OpenDialog& DialogFor(std::uint32_t hostFlags) {
  static std::array<OpenDialog*, 4> dialogs{};
  OpenDialog*& open = dialogs[hostFlags & 3];
  if (!open) open = new OpenDialog(hostFlags & 3, Answer, [](Dialog& over) { Play(InC(over), nullptr); });
  return *open;
}

using Screen = std::vector<std::uint32_t>;  // 0xFFBBGGRR, 0: nothing there

struct Shown {
  Screen screen;
  long delay = 0;
};

// Equal screens in a row are one.
void Show(std::vector<Shown>& shown, const Screen& screen, long delay) {
  if (!shown.empty() && shown.back().screen == screen) {
    shown.back().delay += delay;
  } else {
    shown.push_back({screen, delay});
  }
}

std::vector<Shown> Decode(const std::vector<std::uint8_t>& bytes, int width) {
  struct Source {
    const std::vector<std::uint8_t>& bytes;
    std::size_t at = 0;
  } source{bytes};
  int error = 0;
  GifFileType* file = DGifOpen(
      &source,
      [](GifFileType* from, GifByteType* to, int count) {
        auto* bytesOf = static_cast<Source*>(from->UserData);
        const std::size_t n = std::min(static_cast<std::size_t>(count), bytesOf->bytes.size() - bytesOf->at);
        std::copy_n(bytesOf->bytes.data() + bytesOf->at, n, to);
        bytesOf->at += n;
        return static_cast<int>(n);
      },
      &error);
  Require(file && DGifSlurp(file) == GIF_OK && source.at == bytes.size());
  std::vector<Shown> shown;
  Screen screen(static_cast<std::size_t>(file->SWidth * file->SHeight));
  for (int i = 0; i < file->ImageCount; ++i) {
    const SavedImage& image = file->SavedImages[i];
    const GifImageDesc& place = image.ImageDesc;
    const ColorMapObject& map = place.ColorMap ? *place.ColorMap : *file->SColorMap;
    GraphicsControlBlock control{0, false, 0, NO_TRANSPARENT_COLOR};
    DGifSavedExtensionToGCB(file, i, &control);
    const auto pixel = [&](int x, int y) -> std::uint32_t& {
      return screen.at(static_cast<std::size_t>((place.Top + y) * width + place.Left + x));
    };
    for (int y = 0; y < place.Height; ++y) {
      for (int x = 0; x < place.Width; ++x) {
        const int index = image.RasterBits[y * place.Width + x];
        if (index == control.TransparentColor) continue;
        Require(index < map.ColorCount);
        const GifColorType& colour = map.Colors[index];
        pixel(x, y) = 0xFF000000u | colour.Red | colour.Green << 8 | std::uint32_t{colour.Blue} << 16;
      }
    }
    Show(shown, screen, control.DelayTime);
    if (control.DisposalMode != DISPOSE_BACKGROUND) continue;
    for (int y = 0; y < place.Height; ++y)
      for (int x = 0; x < place.Width; ++x) pixel(x, y) = 0;
  }
  DGifCloseFile(file, &error);
  return shown;
}

}  // namespace

// The first byte: a host's flags, and in 4 whether it opens the dialog for this input and presses Build. The second:
// how the palette is made, and whether there is a registration that the host can deny.
void ReadHostAnswers(std::string_view input) {
  HostileHost host{Numbers(input)};
  const std::uint8_t kind = host.numbers.Byte(), palette = host.numbers.Byte();
  if (!(kind & 4)) {
    OpenDialog& open = DialogFor(kind);
    open.Do([&](Dialog& dialog) {
      CurrentHost() = &host;
      open.Restore(dialog);
      CurrentPaletteRun() = {static_cast<PaletteRun::Kind>(palette % 4), palette & 16 ? 5 : 256,
                             static_cast<Dithering>(palette / 4 % 3)};
      for (const char* name : {"RegistrationName", "RegistrationCode"})
        FindVariable(name)->text = palette & 32 ? "x" : "";
      GlyphmotionSetText(InC(dialog), 52, "I");
      GlyphmotionSetNumber(InC(dialog), 57, 6);
      PressSome(InC(dialog));
      GlyphmotionPress(InC(dialog), 24);
      CurrentHost() = nullptr;
    });
    return;
  }
  CurrentHost() = &host;
  FolderOverrides folders;
  folders.settingsFile = "";  // nothing of an input remains for the next
  SetFolderOverrides(folders);
  HostCallTable table{};
  table.version = HostInterfaceVersion;
  if (kind & 8) table.version = host.numbers.Word();
  table.HostCall = Answer;
  table.hostFlags = kind & 3;
  std::uint64_t before[2], after[2];
  GlyphmotionLiveBlocks(&before[0], &before[1]);
  GlyphmotionSetDriver(Play, nullptr);
  PLUGIN16DoBuild(nullptr, &table);
  GlyphmotionSetDriver(nullptr, nullptr);
  GlyphmotionLiveBlocks(&after[0], &after[1]);
  Require(after[0] == before[0] && after[1] == before[1]);
}

// Records of any plug-in: those that are taken make a GIF.
void ReadHostRecords(std::string_view input) {
  Numbers numbers(input);
  TaskReceiver receiver(numbers.Byte() & 1 ? 10 : 1);
  HostTaskRecord task{};
  task.size = numbers.Byte() & 1 ? sizeof task : numbers.Word();
  task.version = HostInterfaceVersion;
  task.width = numbers.Byte();
  task.height = numbers.Byte();
  task.imageCount = numbers.Byte();
  receiver.Open(&task, numbers.Byte() & 1);
  while (numbers.Any()) {
    const std::uint8_t what = numbers.Byte();
    const void* owner = what & 128 ? nullptr : &task;
    if (what % 8 == 0) {
      receiver.SetBackground(owner, 100u + (what >> 3 & 1), numbers.Word());
    } else if (what % 8 == 1) {
      receiver.AddComment(owner, std::string(numbers.Take(what)).c_str());
    } else {
      HostImageRecord image{};
      image.size = sizeof image;
      image.version = HostInterfaceVersion;
      image.standAlone = what >> 3 & 1;
      image.delay = what & 16 ? numbers.Word() : 5;
      image.number = numbers.Byte();
      image.transparentIndex = what & 32 ? static_cast<std::int32_t>(numbers.Word()) : numbers.Byte() - 1;
      // A whole header unless it is arbitrary, too; then anything for pixels.
      std::string dib(40, '\0');
      const std::uint8_t bits[] = {1, 4, 8, 24, 32};
      const std::uint8_t header[] = {40, 0, 0, 0, numbers.Byte(),    0, 0, 0, numbers.Byte(), 0,
                                     0,  0, 1, 0, bits[what / 8 % 5]};
      std::memcpy(dib.data(), header, sizeof header);
      if (what & 64) dib.clear();
      const std::size_t size = numbers.Byte() * std::size_t{numbers.Byte()};
      dib += numbers.Take(std::min<std::size_t>(size, 600));
      if (what % 8 > 3) dib.resize(dib.size() + 4096);
      receiver.AddImage(owner, &image, {reinterpret_cast<const std::uint8_t*>(dib.data()), dib.size()});
    }
  }
  const auto animation = receiver.End(&task, true);
  std::string error;
  if (animation) Require(GifOf(*animation, error).empty() != error.empty());
}

// Another decoder shows what was written: each screen, and how long it lasts. Most screens are small; wide ones fill
// the dictionary, and high ones have more frames than colours can be numbered for.
void WriteGifs(std::string_view input) {
  Numbers numbers(input);
  const std::uint8_t wide = numbers.Byte(), high = numbers.Byte(), kind = numbers.Byte();
  const int width = wide > 250 ? 120 : 1 + wide % 40, height = wide > 250 ? 60 : 1 + high % 24;
  const bool many = high > 250 && wide <= 250, lossy = kind >= 200 && !many;
  GifWriter writer(width, height);
  if (lossy) writer.SetLoss(40);
  writer.SetEffort(many ? 0 : kind % 10);
  if (kind >= 100) {
    writer.SetLoops(kind);
    writer.SetComment(std::string(kind * 2u, 'c'));
  }
  std::uint32_t state = kind;
  const auto noise = [&] { return static_cast<std::uint8_t>((state = state * 1664525u + 1013904223u) >> 24); };
  std::array<std::uint8_t, 768> palette{};
  for (std::size_t i = 0; i < 256; ++i) palette[3 * i] = static_cast<std::uint8_t>(i);
  std::vector<Shown> meant;
  Screen screen(static_cast<std::size_t>(width * height));
  for (int i = 0; i < (many ? 270 : 12) && (many || numbers.Any()); ++i) {
    const std::uint8_t what = numbers.Byte();
    if (many) std::generate(palette.begin(), palette.end(), noise);
    // Colours of their own, of one byte each, from a place that varies.
    if (i == 0 || what & 1) {
      for (std::size_t at = std::size_t{numbers.Byte()} * 3, n = numbers.Byte(); n > 0 && at < palette.size();
           --n, ++at)
        palette[at] = numbers.Byte();
    }
    GifFrame frame{1 + (what & 2 ? numbers.Byte() % width : width - 1),
                   1 + (what & 2 ? numbers.Byte() % height : height - 1),
                   {},
                   palette,
                   numbers.Byte(),
                   what & 4 ? numbers.Byte() : -1,
                   (what & 8) != 0};
    std::vector<std::uint8_t> indices(static_cast<std::size_t>(frame.width * frame.height));
    // Runs of a byte or copies of what the input holds, then a repeating pattern; every colour in turn; or noise.
    const int form = what >> 4;
    const std::string_view pattern = numbers.Take(form ? std::size_t{1} << form / 2 : 1);
    for (std::size_t p = 0; p < indices.size(); ++p)
      indices[p] = form == 15        ? static_cast<std::uint8_t>(p)
                   : form == 14      ? noise()
                   : pattern.empty() ? std::uint8_t{0}
                                     : static_cast<std::uint8_t>(pattern[p % pattern.size()]);
    frame.indices = indices;
    Require(writer.Add(frame));
    if (frame.standAlone) std::fill(screen.begin(), screen.end(), 0);
    for (int y = 0; y < frame.height; ++y) {
      for (int x = 0; x < frame.width; ++x) {
        const std::size_t index = indices[static_cast<std::size_t>(y * frame.width + x)];
        if (static_cast<int>(index) == frame.transparentIndex) continue;
        const std::uint8_t* colour = &palette[3 * index];
        screen[static_cast<std::size_t>(y * width + x)] =
            0xFF000000u | colour[0] | colour[1] << 8 | std::uint32_t{colour[2]} << 16;
      }
    }
    Show(meant, screen, frame.delay);
  }
  const std::vector<std::uint8_t> file = writer.Finish();
  Require(file.empty() == meant.empty());
  if (file.empty()) return;
  const std::vector<Shown> shown = Decode(file, width);
  if (lossy) return;
  // A frame of 256 new colours may come in two parts.
  const bool parted = shown.size() > meant.size();
  std::size_t at = 0;
  for (const Shown& wanted : meant) {
    if (parted && at + 1 < shown.size() && shown[at].screen != wanted.screen) ++at;
    Require(at < shown.size() && shown[at].screen == wanted.screen);
    Require(meant.size() == 1 || parted || shown[at].delay == wanted.delay);
    ++at;
  }
  Require(at == shown.size());
}

}  // namespace glyphmotion::fuzz
