// SPDX-License-Identifier: MIT
// The library: one job in, a stream of finished images out. Render() is a host with a scripted user. It runs the
// plug-in's main dialog in memory, sets the controls that the job names, presses Build (or Test, or looks at the
// sample), and hands each image that arrives to the sink.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace glyphmotion {

/// What to render. Everything is optional: an empty job is the default text in the default effect.
struct Job {
  /// One thing the user sets, by persistent key ("Style008Rotate", "MainFontSize"), by control id ("440"), or by what
  /// follows the stem in a key of the chosen effect ("@rotate", "@frames"; case does not count). Values are
  /// text: a number, 0 or 1 for checks, an index for lists and pickers, a decimal colour, a material ("#rrggbb",
  /// "mtrl:FILE", ...) for fills.
  using Setting = std::pair<std::string, std::string>;

  std::optional<std::string> text;    ///< UTF-8
  std::optional<std::string> effect;  ///< "vortex", "background-hyperspace"; case does not count
  /// Fills of the chosen effect by role; empty: as they are.
  std::string fill, shadow, background;
  /// The outline's colour of the chosen effect, "#rrggbb"; empty: as it is.
  std::string outline;
  std::vector<Setting> settings;  ///< applied after everything else, in order
  /// What the run uses where neither the settings file nor the document says anything. Numbers and checks with a key
  /// are not saved: the files keep what they had, or the built-in default.
  std::vector<Setting> defaults;

  /// Loaded first and saved at the end; may be missing or empty, but what is another kind of file is refused. No name:
  /// built-in defaults, nothing saved. A run whose settings cannot be saved fails.
  /// Delay and Pause in this file and in documents are hundredths of a second unless the file says milliseconds; they
  /// stay the times that they are. In `settings` and `defaults` they are in the output's unit: hundredths with
  /// `paletteFormat`, else milliseconds.
  std::string settingsFile;
  std::string documentFile;      ///< a .GM4 to load first
  std::string saveDocumentFile;  ///< a .GM4 to write before the build

  enum class Action { Build, Test, Sample, None } action = Action::Build;

  /// What the host claims about its file format.
  bool paletteFormat = true;
  bool trueColourFormat = true;

  /// For tests of hosts: refuse the task, or the n-th image (from 1); let the n-th block allocation of the run fail
  /// (from 1).
  bool refuseTask = false;
  int refuseImage = 0;
  std::uint64_t failAllocation = 0;

  /// Reads a picture file for fills of the form "image:FILE": a block with a packed DIB that GlyphmotionAllocateBlock
  /// made and the run then owns, or 0 and one sentence in `error`. Left empty, such fills are refused.
  std::function<std::uint64_t(const std::string& path, std::string& error)> loadImage;
};

/// One picture as it arrives. Pixels are the plug-in's packed DIB: valid during the call only.
struct Image {
  std::span<const std::uint8_t> dib;  ///< 40-byte header, colour table, bottom-up rows
  int width = 0, height = 0;          ///< pixels
  int bits = 0;                       ///< 1, 4, 8, 24 or 32 a pixel
  int number = 0;                     ///< from 0
  int delay = 0;                      ///< in the host's unit
  int transparentIndex = -1;
  bool standAlone = false;  ///< relies on no image before it
  bool sample = false;      ///< the picture of the sample window: no task, no delay
};

/// What a task says before its images.
struct Task {
  int width = 0, height = 0;  ///< the largest over all images
  int depth = 0;              ///< bits a pixel
  int imageCount = 0;
  std::span<const std::uint8_t> palette;  ///< 768 bytes: 256 times red, green, blue
  int transparentIndex = 0;
  bool test = false;
};

/// One call that the plug-in made, for recorders.
struct HostCallEvent {
  std::uint32_t operation = 0;
  std::uint64_t a = 0, b = 0;
  const char* name = "";                 ///< "HostOpAddImage"
  const char* text = nullptr;            ///< of operations 3, 8, 9 and 10
  std::span<const std::uint8_t> record;  ///< of operations 1, 2, 5 and 11, as sent
  std::span<const std::uint8_t> image;   ///< of operation 2: the packed DIB's bytes
  bool hasTask = false;
};

/// Receives the run. Members left empty are skipped. A sink that answers false ends the run as a host that refuses
/// would.
struct Sink {
  std::function<bool(const Task&)> task;
  std::function<bool(const Image&)> image;
  std::function<void(bool finished)> end;  ///< finished: all images were added
  std::function<void(bool isIndex, std::uint32_t value)> background;
  std::function<void(const std::string&)> comment;
  std::function<void(const std::string&)> stage;  ///< "Building", "Quantizing", "Supercompressing", "Remapping"
  std::function<void(std::int64_t position, std::int64_t total)> progress;  ///< 0, 0 clears
  std::function<void(const HostCallEvent&)> call;                           ///< every call, before it is answered
  /// Asked at each of the plug-in's calls, on the run's thread; true ends the run as soon as possible.
  std::function<bool()> cancelled;
  /// The run ends as soon as possible (50 milliseconds at the most) once this is true, whoever sets it: another thread,
  /// a signal handler, a member of this sink. It outlives the call of Render; null: nobody sets it.
  const std::atomic<bool>* stop = nullptr;
};

enum class RenderStatus {
  Done,
  Failed,  ///< the run failed; the message says why
  BadJob,  ///< a value of the job is wrong; nothing was run
  Cancelled
};

struct RenderResult {
  RenderStatus status = RenderStatus::Failed;
  std::string message;                      ///< one sentence; empty when done
  std::vector<std::string> dialogMessages;  ///< what the dialog's message boxes said, in order
  std::vector<std::string> notes;           ///< what the run did other than it was asked, one sentence each
  int images = 0;                           ///< that the sink accepted
  std::uint64_t blocks = 0, locks = 0;      ///< memory blocks and locks that the run left behind: zero and zero
};

/// Runs a job, on the calling thread, from which the sink is called too. Never throws (but for what the sink throws).
/// Every run has a state of its own: any number of threads may render at once, each of them gets the bytes that it
/// would get alone, and a sink may render another job before it returns. The same Job and Sink may serve several runs
/// at once if their functions can bear it.
RenderResult Render(const Job& job, const Sink& sink);

/// Lists for people: the names of the effects and of the fixed palettes (in the order of their numbers), font families.
std::vector<std::string> EffectNames();
std::vector<std::string> PaletteNames();
std::vector<std::string> FontNames();

/// One row of the persistent keys and one of the controls, for --list.
struct KeyInfo {
  std::string key, kind, defaultValue;
  int control = 0;  ///< 0: no control
};
struct ControlInfo {
  int id = 0;
  std::string kind, caption, range, key, panel;
};
std::vector<KeyInfo> Keys();
std::vector<ControlInfo> Controls();

}  // namespace glyphmotion
