// SPDX-License-Identifier: MIT
#include "host/options/argument_parts.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string_view>

#include "host/encoders/encoders.h"
#include "host/options/names.h"
#include "host/options/values.h"
#include "host/render/picture_output.h"
#include "platform/ascii.h"
#include "platform/number_text.h"

namespace glyphmotion {
namespace {

bool IsOneOf(const std::string& name, std::initializer_list<const char*> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

void CheckHonoured(const Job& job, const std::string& key) {
  if (key == "Truecolour" && !job.trueColourFormat)
    Refuse("--true-color needs a true-colour format; write .png or .webp");
  if ((key == "MainTransparent" || key == "MainSupercompress") && !job.paletteFormat)
    Refuse(std::string(key == "MainTransparent" ? "--transparent" : "--supercompress") +
           " needs a palette format; write .gif" + (key == "MainTransparent" ? ", or use --alpha" : ""));
  if ((key == "MainAlphaTrans" || key == "UseAlphaGreyBack") && job.paletteFormat)
    Refuse(std::string(key == "MainAlphaTrans" ? "--alpha" : "--alpha-background") +
           " needs a format with alpha; write .png or .webp, or use --transparent");
}

void RefuseTransparentSample(const Reading& reading) {
  for (const char* option : {"--alpha", "--transparent"}) {
    if (reading.typed.IsOn("--sample") && reading.typed.IsOn(option))
      Refuse(std::string("--sample has no transparency; leave ") + option + " out, or build the animation");
  }
}

// Options that are accepted, as the dialog's checks are, but change nothing together with others.
void NoteIdleOptions(Reading& reading) {
  const TypedWords& typed = reading.typed;
  const auto isOn = [&](const char* name) { return typed.IsOn(name); };
  const std::string palette = Lowered(typed.Value("--palette"));
  const bool hasPalette = !palette.empty(),
             fixedPalette = hasPalette && palette != "custom" && palette != "best" && palette != "auto";
  const struct {
    bool applies;
    const char *idle, *beside;
  } rows[] = {{isOn("--transparent") && fixedPalette, "--transparent", "a fixed --palette"},
              {isOn("--transparent") && isOn("--supercompress"), "--transparent", "--supercompress"},
              {isOn("--dither") && isOn("--true-color"), "--dither", "--true-color"},
              {isOn("--dither") && isOn("--alpha"), "--dither", "--alpha"},
              {typed.Has("--colors") && fixedPalette, "--colors", "a fixed --palette"},
              {typed.Has("--colors") && isOn("--true-color"), "--colors", "--true-color"},
              {hasPalette && isOn("--true-color"), "--palette", "--true-color"},
              {hasPalette && isOn("--alpha"), "--palette", "--alpha"}};
  for (const auto& row : rows) {
    if (row.applies)
      reading.arguments.notes.push_back(std::string(row.idle) + " changes nothing together with " + row.beside +
                                        "; leave one of them out");
  }
}

// The dialog's own limits, of a delay in 1/100 s and in ms, and of a pause.
constexpr long kMostHundredths = 25, kMostMilliseconds = 250, kLongestPause = 10000;

void SetTime(Reading& reading, const char* option, const char* key, long most) {
  if (!reading.typed.Has(option)) return;
  const std::string& value = reading.typed.Value(option);
  const int unit = reading.arguments.job.paletteFormat ? 10 : 1;
  const TimeValue time = TimeInRange(option, value, unit, 1, most);
  if (!time.exact)
    reading.arguments.notes.push_back(std::string(option) + " " + value + " becomes " +
                                      std::to_string(time.units * unit) + " ms, a whole number of the output's units");
  reading.Set(key, std::to_string(time.units), option);
}

// Frames a second as the delay that is nearest.
void SetFramesPerSecond(Reading& reading) {
  if (!reading.typed.Has("--fps")) return;
  if (reading.typed.Has("--delay")) Refuse("--fps and --delay cannot be used together; leave one out");
  const bool hundredths = reading.arguments.job.paletteFormat;
  const long units = hundredths ? 100 : 1000, most = hundredths ? kMostHundredths : kMostMilliseconds;
  const long fps = reading.Number("--fps"), delay = (2 * units + fps) / (2 * fps);
  if (delay < 1 || delay > most)
    Refuse("--fps " + std::to_string(fps) + " is not allowed: a frame of this format takes 1 to " +
           std::to_string(most) + (hundredths ? "/100 s" : " ms") + ", so it takes " +
           std::to_string((units + most - 1) / most) + " to " + std::to_string(units));
  if (delay * fps != units) {
    const std::string rate = FixedText(static_cast<double>(units) / static_cast<double>(delay), 1);
    reading.arguments.notes.push_back("--fps " + std::to_string(fps) + " becomes " + rate + ": a frame takes " +
                                      std::to_string(delay) + (hundredths ? "/100 s" : " ms"));
  }
  reading.Set("MainDelay", std::to_string(delay), "--fps");
}

}  // namespace

void ReadFormat(Reading& reading) {
  Arguments& arguments = reading.arguments;
  const TypedWords& typed = reading.typed;
  arguments.output = typed.Value("--output");
  arguments.framesAsPng = typed.Has("--frames-as");
  if (arguments.json && arguments.output == "-")
    Refuse("--json and -o - cannot be used together: both write to standard output; leave one out");
  if (typed.Has("--format") && arguments.framesAsPng)
    Refuse("--format and --frames-as cannot be used together; leave one out");
  if (typed.Has("--format") && arguments.output.empty()) Refuse("--format needs an output; add -o FILE or -o -");
  if (arguments.framesAsPng && (arguments.output.empty() || arguments.output == "-"))
    Refuse("--frames-as png needs a folder; add -o FOLDER");
  if (arguments.framesAsPng) {
    arguments.extension = kFolderExtension;
  } else if (typed.Has("--format")) {
    arguments.extension = "." + typed.Value("--format");
  } else if (arguments.output == "-") {
    Refuse("-o - needs a format; add --format gif, png, webp, avif, webm, y4m or rgba");
  } else if (!arguments.output.empty()) {
    arguments.extension = Lowered(std::filesystem::path(arguments.output).extension().string());
    if (arguments.extension == ".gm4")
      Refuse("'" + arguments.output + "' is a document, not a picture; write --save-document in place of -o");
    if (!FindFormat(arguments.extension))
      Refuse("'" + arguments.output +
             "' has an unknown file type; use a name that ends in .gif, .png, .apng, .webp, .avif, .webm, .y4m or "
             "--format");
  }
  if (const EncoderFormat* format = FindFormat(arguments.extension); format && format->lacks)
    Refuse("this program was built without " + std::string(format->lacks) + " and cannot write " + arguments.extension +
           "; write .webp or .png, or install the library and build the program again");
  if (typed.Has("--effort")) {
    arguments.job.effort = static_cast<int>(reading.Number("--effort"));
    if (arguments.output.empty()) Refuse("--effort needs an output; add -o FILE");
    if (IsOneOf(arguments.extension, {".y4m", ".rgba"}))
      Refuse("--effort is for compressed formats; leave it out, " + arguments.extension.substr(1) + " is not");
  }
  if (typed.Has("--lossy")) {
    const bool gif = arguments.extension == ".gif";
    if (!gif && !IsOneOf(arguments.extension, {".webp", ".avif", ".webm"}))
      Refuse("--lossy is for .gif, .webp, .avif and .webm; leave it out or write .webp");
    arguments.job.lossy = static_cast<int>(NumberInRange("--lossy", typed.Value("--lossy"), 0, gif ? 200 : 100));
  }
  if (typed.Has("--max-bytes")) {
    if (arguments.extension != ".gif") Refuse("--max-bytes is for .gif; leave it out or write .gif");
    for (const char* option : {"--sample", "--record"})
      if (typed.Has(option))
        Refuse(std::string("--max-bytes and ") + option + " cannot be used together; leave one out");
    arguments.job.maxBytes = static_cast<std::uint64_t>(reading.Number("--max-bytes"));
  }
}

void ReadLoop(Reading& reading) {
  Arguments& arguments = reading.arguments;
  const TypedWords& typed = reading.typed;
  for (const char* option : {"--loop", "--start"}) {
    if (!typed.Has(option)) continue;
    if (arguments.output.empty()) Refuse(std::string(option) + " needs an output; add -o FILE");
    if (typed.IsOn("--sample")) Refuse(std::string(option) + " is for animations; leave it or --sample out");
  }
  if (typed.Has("--start")) {
    const bool rest = typed.Value("--start") == "rest";
    arguments.job.start = rest ? Job::kRest : static_cast<int>(reading.Number("--start")) - 1;
  }
  if (!typed.Has("--loop")) return;
  if (!IsOneOf(arguments.extension, {".gif", ".png", ".apng", ".webp"}))
    Refuse("--loop is for .gif, .png and .webp; leave it out, the others hold the frames alone");
  arguments.job.loops = static_cast<int>(reading.Number("--loop"));
}

void ReadHost(Reading& reading) {
  Job& job = reading.arguments.job;
  const EncoderFormat* format = FindFormat(reading.arguments.extension);
  job.paletteFormat = !format || format->paletteFormat;
  job.trueColourFormat = !job.paletteFormat;
  if (reading.typed.Has("--host")) {
    const std::string& kind = reading.typed.Value("--host");
    job.paletteFormat = kind != "truecolor";
    job.trueColourFormat = kind != "palette";
  }
  for (const std::string& refusal : reading.typed.Values("--refuse")) {
    if (refusal == "task") {
      job.refuseTask = true;
    } else if (refusal.rfind("image:", 0) == 0) {
      job.refuseImage = static_cast<int>(NumberInRange("--refuse image:", refusal.substr(6), 1, 1000000));
    } else {
      Refuse("--refuse " + refusal + " is not allowed; it takes task or image:N");
    }
  }
  if (reading.typed.Has("--threads")) job.threads = static_cast<int>(reading.Number("--threads"));
  if (reading.typed.Has("--fail-allocation"))
    job.failAllocation = static_cast<std::uint64_t>(reading.Number("--fail-allocation"));
}

void ReadAction(Reading& reading) {
  Arguments& arguments = reading.arguments;
  Job& job = arguments.job;
  const bool sample = reading.typed.IsOn("--sample"), test = reading.typed.IsOn("--test-run");
  arguments.recordFolder = reading.typed.Value("--record");
  if (sample && test) Refuse("--sample and --test-run cannot be used together; leave one out");
  job.action = sample ? Job::Action::Sample : test ? Job::Action::Test : Job::Action::Build;
  const bool wantsPictures = !arguments.output.empty() || !arguments.recordFolder.empty() || test;
  if (wantsPictures) return;
  if (job.saveDocumentFile.empty() && arguments.saveLookFile.empty())
    Refuse("there is no output file; add -o FILE, for example glyphmotion \"Hello\" -o hello.gif");
  job.action = Job::Action::None;
}

void ReadPalette(Reading& reading) {
  if (reading.typed.Has("--colors")) reading.arguments.job.colours = static_cast<int>(reading.Number("--colors"));
  const std::string& dither = reading.typed.Value("--dither");
  if (dither == "stable") reading.arguments.job.dithering = Job::Dithering::Stable;
  if (dither == "ordered") reading.arguments.job.dithering = Job::Dithering::Ordered;
  if (!reading.typed.Has("--palette")) return;
  const std::string& typed = reading.typed.Value("--palette");
  const auto palette = PaletteOfOption(typed);
  const auto& names = PaletteOptionNames();
  if (!palette)
    Refuse("there is no palette '" + typed + "'; use custom, best, auto, " + Join(names) + ", or a number from 0 to " +
           std::to_string(names.size() - 1));
  reading.arguments.job.palette = *palette;
}

// What the program wants unless the files say otherwise, and the colours that the format takes. A palette asked for in
// a format with all colours is meant.
void AddDefaults(Reading& reading) {
  Job& job = reading.arguments.job;
  const EncoderFormat* format = FindFormat(reading.arguments.extension);
  const bool prefersPalette = reading.typed.Has("--palette") || reading.typed.Has("--colors") ||
                              (format ? format->paletteFormat : job.paletteFormat);
  AddOutputDefaults(job, prefersPalette);
}

void ReadControls(Reading& reading) {
  SetTime(reading, "--delay", "MainDelay", reading.arguments.job.paletteFormat ? kMostHundredths : kMostMilliseconds);
  SetFramesPerSecond(reading);
  SetTime(reading, "--pause", "MainPause", kLongestPause);
  for (const OptionRow& row : OptionRows()) {
    const std::string option = LongName(row);
    if (!row.key || !reading.typed.Has(option)) continue;
    std::string value = reading.typed.Value(option);
    if (row.value && std::string_view(row.value) != "01")
      value = reading.typed.IsOn(option) ? row.value : *row.value == '1' ? "0" : "1";
    if (row.value && value == "1") CheckHonoured(reading.arguments.job, row.key);
    reading.Set(row.key, value, option);
  }
  RefuseTransparentSample(reading);
  if (reading.typed.IsOn("--alpha") && reading.arguments.extension == ".y4m")
    Refuse("--alpha needs a format with alpha; leave it out to write the background into the .y4m");
  NoteIdleOptions(reading);
}

}  // namespace glyphmotion
