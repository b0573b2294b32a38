// SPDX-License-Identifier: MIT
#include "host/render/size_limit.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "host/encoders/colour_count.h"
#include "host/render/picture_output.h"

namespace glyphmotion {
namespace {

struct Step {
  int loss, colours;
  bool halfRate;
};

// From the finest to the smallest; the order of what is missed least.
constexpr Step kSteps[] = {{20, 256, false}, {40, 256, false}, {70, 256, false}, {100, 128, false},
                           {140, 64, false}, {200, 32, false}, {40, 256, true},  {80, 128, true},
                           {120, 64, true},  {200, 32, true},  {200, 16, true}};
// Where none of them fits.
constexpr Step kLastSteps[] = {{200, 8, true}, {200, 4, true}, {200, 2, true}};

std::string Saying(const Step& step, const Job& job) {
  std::string text;
  const auto add = [&](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
  if (step.loss > job.lossy.value_or(-1)) add("lossy " + std::to_string(step.loss));
  if (step.colours < job.colours) add("colors " + std::to_string(step.colours));
  if (step.halfRate) add("every second frame left out");
  return text;
}

// With a count of the colours of all images.
Sink Counting(Sink sink, ColourCount& count) {
  sink.image = [&count, next = std::move(sink.image)](const Image& image) {
    count.Add(image.dib, image.transparentIndex);
    return !next || next(image);
  };
  return sink;
}

FittedPictures Try(Job job, const Step& step, const Sink& sink, bool countColours) {
  FittedPictures made;
  std::optional<ColourCount> colours;
  if (countColours) colours.emplace();
  job.colours = std::min(job.colours, step.colours);
  job.lossy = std::max(job.lossy.value_or(-1), step.loss);
  // Frames that show the ones before them through would miss those that are left out.
  if (step.halfRate && job.paletteFormat) job.settings.emplace_back("MainSupercompress", "0");
  PictureOutput pictures(job, FindFormat(".gif"), Output::Memory(made.bytes), step.halfRate);
  made.result = Render(job, pictures.Attach(colours ? Counting(sink, *colours) : sink));
  if (colours) made.colours = colours->Count();
  made.trouble = pictures.Finish(made.result);
  if (made.trouble.empty() && !pictures.Kept()) {
    made.result.status = RenderStatus::Cancelled;
    made.trouble = "the run was interrupted";
  }
  made.width = pictures.width;
  made.height = pictures.height;
  made.frames = step.halfRate ? (made.result.images + 1) / 2 : made.result.images;
  return made;
}

}  // namespace

FittedPictures RenderWithin(const Job& job, const Sink& sink, bool countColours) {
  const std::uint64_t mostBytes = job.maxBytes;
  FittedPictures best = Try(job, {-1, job.colours, false}, sink, countColours);
  if (!best.trouble.empty() || best.bytes.size() <= mostBytes) return best;
  std::size_t smallest = best.bytes.size();
  const Step* fits = nullptr;
  const auto tryStep = [&](const Step& step) {
    FittedPictures made = Try(job, step, sink, countColours);
    if (made.trouble.empty()) smallest = std::min(smallest, made.bytes.size());
    return made;
  };
  // Files shrink along the steps, or nearly so: the first one that fits, by bisection.
  for (const Step *from = std::begin(kSteps), *to = std::end(kSteps); from < to;) {
    const Step* middle = from + (to - from) / 2;
    FittedPictures made = tryStep(*middle);
    if (!made.trouble.empty()) return made;
    if (made.bytes.size() > mostBytes) {
      from = middle + 1;
      continue;
    }
    best = std::move(made);
    fits = to = middle;
  }
  for (const Step* step = std::begin(kLastSteps); !fits && step < std::end(kLastSteps); ++step) {
    FittedPictures made = tryStep(*step);
    if (!made.trouble.empty()) return made;
    if (made.bytes.size() > mostBytes) continue;
    best = std::move(made);
    fits = step;
  }
  if (fits) {
    best.result.notes.push_back("to fit " + std::to_string(mostBytes) + " bytes: " + Saying(*fits, job) + " (" +
                                std::to_string(best.bytes.size()) + " bytes)");
    return best;
  }
  best.bytes.clear();
  best.trouble = "no file of " + std::to_string(mostBytes) + " bytes was reached; the smallest found has " +
                 std::to_string(smallest) +
                 " bytes: allow that, or choose a smaller size, fewer frames or plainer fills";
  return best;
}

}  // namespace glyphmotion
