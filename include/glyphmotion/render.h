// SPDX-License-Identifier: MIT
// The library: one job in, a stream of finished images out. Render() is a host with a scripted user: it runs the
// plug-in's main dialog in memory, sets the controls that the job names, presses Build (or Test, or takes the sample),
// and passes each image to the sink.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "glyphmotion/export.h"
#include "glyphmotion/version.h"

namespace glyphmotion {

/// What to render. Everything is optional: an empty job is the default text in the default effect.
struct Job {
  /// One thing the user sets, by persistent key ("Style008Rotate", "MainFontSize"), by control id ("440"), or by the
  /// part after the stem of a key of the chosen effect ("@rotate", "@frames"; case ignored). Values are text: a number,
  /// 0 or 1 for checks, an index for lists, an index or a word (left, up) for pickers, a colour, a material ("#rrggbb",
  /// "mtrl:FILE", ...) for fills.
  using Setting = std::pair<std::string, std::string>;

  std::optional<std::string> text;    ///< UTF-8, 4,096 characters at most; each line break begins a new line
  std::optional<std::string> effect;  ///< "vortex", "background-hyperspace"; case ignored
  /// Fills of the chosen effect by role, a shadow also "none"; empty: unchanged. #rrggbbaa sets the opacity as well.
  std::string fill, shadow, background;
  /// Outline colour of the chosen effect, "#rrggbb", a name, or "none"; empty: unchanged.
  std::string outline;

  /// The dialog's common options. Nothing: as the document or settings file says, else the built-in default.
  std::optional<std::string> font;              ///< a family of FontNames(), or with a style
  std::optional<int> size;                      ///< height of a line of text in pixels, 4 to 144
  std::optional<int> pad;                       ///< empty pixels around the text, 0 to 512
  std::optional<int> space;                     ///< distance of the characters in percent, 50 to 150
  std::optional<bool> bold, italic, antialias;  ///< of the letters; not bold by itself where the font has a style
  std::optional<std::chrono::milliseconds> delay, pause;   ///< of a frame and of the resting one; GIF rounds to 10 ms
  std::optional<int> frames;                               ///< 2 to 32760, for effects that let one choose
  std::optional<int> seed;                                 ///< 100 to 32760, for effects that use chance
  std::optional<std::string> direction;                    ///< "left", "right", "up", "down", or its number
  std::optional<int> softness;                             ///< blur of the shadow, 0 to 40
  std::optional<bool> stillText;                           ///< the text does not move as a whole
  std::optional<bool> dither, supercompress, transparent;  ///< for palette formats; the last: one transparent index
  std::optional<bool> maskBackground;                      ///< one palette entry is the background's alone
  std::optional<bool> trueColour, alpha, alphaBackground;  ///< for the other formats; the last: compose on grey
  std::optional<bool> comment;                             ///< the file says what made it

  std::vector<Setting> settings;  ///< applied after everything else, in order
  /// Values that the run uses where neither the settings file nor the document has one. Numbers and checks with a key
  /// are not saved: the files keep their own value or the built-in default.
  std::vector<Setting> defaults;

  /// Loaded first and saved at the end; may be missing or empty, but a file of another kind is refused. Without a name:
  /// built-in defaults, nothing saved. A run whose settings cannot be saved fails. Delay and Pause in this file and in
  /// documents are hundredths of a second unless the file says milliseconds; the duration is kept whatever the unit. In
  /// `settings` and `defaults` they are in the output's unit: hundredths with `paletteFormat`, else milliseconds.
  std::string settingsFile;
  std::string documentFile;      ///< a .GM4 to load first
  std::string saveDocumentFile;  ///< a .GM4 to write before the build

  /// How the text is set. Automatic: each line in the direction of its first strong character, lines read from right to
  /// left on the right, the others on the left. Justified lines, but for the last, are as wide as the widest.
  enum class TextDirection { Automatic, LeftToRight, RightToLeft } textDirection = TextDirection::Automatic;
  enum class Align { Automatic, Left, Centre, Right, Justify } align = Align::Automatic;
  /// The frame's own size in pixels, 1 to 16383; 0: as large as the text and its margins. The background fills it, and
  /// `align` (Automatic and Justify: the middle) and `verticalAlign` place the text. A text that is too large gets a
  /// smaller font, or loses its edges with Fit::None.
  int width = 0, height = 0;
  enum class Fit { Shrink, None } fit = Fit::Shrink;
  enum class VerticalAlign { Top, Middle, Bottom } verticalAlign = VerticalAlign::Middle;
  int lineSpace = 100;      ///< percent of the font's height from line to line, 10 to 500
  bool colourEmoji = true;  ///< false: their shape is filled as letters are
  /// A font file (TTF, OTF, TTC), with "#N" for the N-th face of a collection; the text is set in it, and bold or
  /// italic only where `settings` say so. Empty: a font of the machine.
  std::string fontFile;
  /// Axes of a variable font: {"wght", 650}. The font has to have them.
  std::vector<std::pair<std::string, double>> fontVariation;

  /// How the palette is made where images are palette indices. Dialog: as the dialog says (controls 13 and 14). Best:
  /// of the best colours for the animation, finer than Custom. Automatic: Custom where it reaches 45 dB, otherwise
  /// Best. Custom: made for the animation. The others are the fixed palettes, in the order of PaletteNames().
  enum class Palette {
    Dialog,
    Best,
    Automatic,
    Custom,
    BlackAndWhite,
    Windows16,
    Orthogonal32,
    Orthogonal64,
    Orthogonal128,
    Safe216,
    Orthogonal256,
    GreyMix256,
    Grey256
  } palette = Palette::Dialog;
  /// Most entries of a custom or best palette, 2 to 256, a reserved one included.
  int colours = 256;
  /// What Dither ("MainDither") means, if `settings` or a file switch it on. Diffuse: error diffusion, frame by frame.
  /// Stable: the same, but what does not change between two frames keeps its pattern. Ordered: a fixed pattern.
  enum class Dithering { Diffuse, Stable, Ordered } dithering = Dithering::Diffuse;

  enum class Action { Build, Test, Sample, None } action = Action::Build;

  /// For RenderToFile and RenderToMemory alone: what the file gives up to be small, how often the animation plays, and
  /// the frame that comes first, from 0, or kRest for the first of those that are shown longest.
  int effort = 6;            ///< time for a smaller file, 0 to 9
  std::optional<int> lossy;  ///< quality of a webp, avif or webm, 0 to 100; loss of a gif, 0 to 200. Nothing: lossless
  std::uint64_t maxBytes = 0;  ///< of a gif, which gives up what it must, as the notes say; 0: any number
  int loops = 0;               ///< 0 to 65535; 0: for ever
  std::optional<int> start;
  static constexpr int kRest = -1;

  /// How many threads build and reduce the frames: 1 (the caller's alone) to 256; 0: as many as the machine has cores.
  /// Images, calls and their order do not depend on it, and the sink is called on the caller's thread. A run with
  /// `failAllocation` takes one, so that it counts the same allocations each time.
  int threads = 0;

  /// What the host's file format supports. RenderToFile and RenderToMemory set both.
  bool paletteFormat = true;
  bool trueColourFormat = true;

  /// For tests of hosts: refuse the task or the n-th image, or fail the n-th block allocation of the run; n counts from
  /// 1.
  bool refuseTask = false;
  int refuseImage = 0;
  std::uint64_t failAllocation = 0;

  /// Reads a picture file for fills of the form "image:FILE": a block with a packed DIB that GlyphmotionAllocateBlock
  /// made and the run then owns, or 0 and one sentence in `error`. If empty, PNG and WebP files are read.
  std::function<std::uint64_t(const std::string& path, std::string& error)> loadImage;
};

/// One finished picture, valid during the call only. An image of fewer than 24 bits has palette indices for pixels;
/// where such an image does not stand alone, its transparent pixels show the image before it.
struct Image {
  std::span<const std::uint8_t> dib;  ///< as the plug-in sent it, a packed DIB; the functions below read it
  int width = 0, height = 0;          ///< pixels
  int bits = 0;                       ///< per pixel: 1, 4, 8, 24 or 32
  int number = 0;                     ///< from 0
  int delay = 0;                      ///< in the host's unit: hundredths of a second, or milliseconds
  int delayUnit = 10;                 ///< milliseconds in one unit of `delay`
  int transparentIndex = -1;
  bool standAlone = false;  ///< independent of the images before it
  bool sample = false;      ///< the picture of the sample window: no task, no delay

  /// How long the image is shown, in milliseconds.
  int DelayMilliseconds() const { return delay * delayUnit; }
  /// Row y, counted from the top, as it is stored: packed indices (of 1, 4 or 8 bits, the leftmost pixel in the highest
  /// bits), or bytes in the order blue, green, red, and alpha with 32 bits. Empty when there is no such row.
  GLYPHMOTION_EXPORT std::span<const std::uint8_t> Row(int y) const;
  /// Red, green and blue of each palette index, 3 * 2^bits bytes; empty from 24 bits up.
  GLYPHMOTION_EXPORT std::vector<std::uint8_t> Palette() const;
  /// One palette index a pixel, width * height bytes, rows from the top; empty from 24 bits up.
  GLYPHMOTION_EXPORT std::vector<std::uint8_t> Indices() const;
  /// Red, green, blue and straight (not premultiplied) alpha of each pixel, 4 * width * height bytes, rows from the
  /// top. Alpha is 255 below 32 bits, and 0 for the transparent index, whose colour is the palette's.
  GLYPHMOTION_EXPORT std::vector<std::uint8_t> Rgba() const;
};

/// The announcement of a task, before its images.
struct Task {
  int width = 0, height = 0;  ///< the largest over all images
  int depth = 0;              ///< bits per pixel
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

/// Receives the run. Empty members are skipped. Returning false ends the run with RenderStatus::Failed, as a refusal by
/// the host does; `cancelled` and `stop` end it with RenderStatus::Cancelled.
struct Sink {
  std::function<bool(const Task&)> task;
  std::function<bool(const Image&)> image;
  std::function<void(bool finished)> end;  ///< finished: all images were added
  std::function<void(bool isIndex, std::uint32_t value)> background;
  std::function<void(const std::string&)> comment;
  std::function<void(const std::string&)> stage;  ///< "Building", "Quantizing", "Supercompressing", "Remapping"
  std::function<void(std::int64_t position, std::int64_t total)> progress;  ///< 0, 0 clears
  std::function<void(const HostCallEvent&)> call;                           ///< every call, before it is handled
  /// Polled at each of the plug-in's calls, on the run's thread; true ends the run as soon as possible.
  std::function<bool()> cancelled;
  /// Once this is true the run ends as soon as possible: usually within 50 milliseconds, but a PNG, WebP, AVIF or WebM
  /// picture that is being compressed is finished first. Another thread, a signal handler or a
  /// member of this sink may set it. It must outlive the call of Render; null: not used.
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
  std::vector<std::string> notes;           ///< where the run differs from what was requested, one sentence each
  int images = 0;                           ///< accepted by the sink
  std::uint64_t blocks = 0, locks = 0;      ///< memory blocks and locks that the run leaked; always zero
};

/// Runs a job on the calling thread, which also calls the sink. Throws only what the sink throws. Every run has a state
/// of its own: any number of threads may render at once, with the same bytes as alone, and a sink may render another
/// job before it returns. Several runs may share a Job and a Sink if their functions are thread-safe. For whole frames
/// in true colour, with delays in milliseconds, set `paletteFormat` to false; set `delay` and `pause` as well, because
/// the built-in ones are 4 and 100 in whatever unit.
GLYPHMOTION_EXPORT RenderResult Render(const Job& job, const Sink& sink);

/// Renders a job into a file, whose format its extension names: one of OutputFormats(). The file appears whole or not
/// at all. Delay and pause are 40 ms and 1 s unless something says otherwise. `sink` may watch the run; it sees the
/// images after the encoder has taken them. Threads and exceptions as with Render.
GLYPHMOTION_EXPORT RenderResult RenderToFile(const Job& job, const std::string& path, const Sink& sink = {});

/// The same into memory. Without RenderStatus::Done there are no bytes.
struct RenderedBytes {
  RenderResult result;
  std::vector<std::uint8_t> bytes;
};
GLYPHMOTION_EXPORT RenderedBytes RenderToMemory(const Job& job, const std::string& format, const Sink& sink = {});

/// One of the looks that are installed: finished styles, which lie as TOML files beside the shipped libraries.
struct LookInfo {
  std::string name, summary;
};
/// By name.
GLYPHMOTION_EXPORT std::vector<LookInfo> Looks();
/// Fills what the job leaves open with the options of a look: a name of Looks(), or a TOML file (a word with a slash or
/// ending in ".toml"). Set the job's own fields before the call; a look made for another effect than the job's gives
/// what suits both. Returns one sentence, with the job as it was, when the look cannot be read; otherwise empty.
GLYPHMOTION_EXPORT std::string ApplyLook(Job& job, const std::string& nameOrFile);

/// "gif", "png" (animated) and its other name "apng", "webp", "y4m" and "rgba", which are uncompressed video, and,
/// where the build found their libraries, "avif" and "webm".
GLYPHMOTION_EXPORT std::vector<std::string> OutputFormats();

/// The version of the library that runs, as GLYPHMOTION_VERSION has that of the headers.
GLYPHMOTION_EXPORT const char* Version();

/// Lists for display: the names of the effects and of the fixed palettes (in the order of their numbers), font
/// families.
GLYPHMOTION_EXPORT std::vector<std::string> EffectNames();
GLYPHMOTION_EXPORT std::vector<std::string> PaletteNames();
GLYPHMOTION_EXPORT std::vector<std::string> FontNames();

/// One face of the machine's fonts.
struct FontInfo {
  struct Axis {
    std::string tag;  ///< "wght"
    double minimum = 0, standard = 0, maximum = 0;
  };
  std::string family, style, file;
  int index = 0;           ///< in a collection
  std::vector<Axis> axes;  ///< of a variable font
};
/// By family, style and file.
GLYPHMOTION_EXPORT std::vector<FontInfo> Fonts();

/// One row of the persistent keys and one of the controls, for --list.
struct KeyInfo {
  std::string key, kind, defaultValue;
  int control = 0;  ///< 0: no control
};
struct ControlInfo {
  int id = 0;
  std::string kind, caption, range, key, panel;
  std::vector<std::string> words;  ///< of a picker: what its values are called, from 0
};
GLYPHMOTION_EXPORT std::vector<KeyInfo> Keys();
GLYPHMOTION_EXPORT std::vector<ControlInfo> Controls();

}  // namespace glyphmotion
