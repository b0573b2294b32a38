// SPDX-License-Identifier: MIT
// Options of the command line that the dialog has no control for: a font file, the canvas, how lines are set, the loop,
// the size of the file. Their ranges, words and sentences are those of the option table. A document does not hold them;
// they are part of a session's state beside it.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/page/page_message.h"

namespace glyphmotion {

class PictureOptions {
 public:
  /// What a picture is made for: the options of the stage are known while it plays, the others only to its file.
  enum class Use { Thumbnail, Stage, File };

  /// Sets an option (a long name without its dashes) to a value; an empty value, or the usual one, drops it. Empty when
  /// done, else one sentence, and nothing has changed.
  std::string Set(const std::string& name, const std::string& value);
  /// The value of an option that is set; empty otherwise.
  std::string Value(const std::string& name) const;
  /// The letters' font file, by a path of the program's own choice: no page names a file. Empty: none.
  void SetFontFile(const std::string& path);
  std::string FontFile() const { return Value("font-file"); }
  /// The words of a command line for a file of this extension. An option that needs another one stays out without it.
  std::vector<std::string> Words(Use use, std::string_view extension = ".gif") const;
  /// Whether the file is another than the picture on the stage.
  bool ChangeFile() const { return Words(Use::File) != Words(Use::Stage); }

  /// {name, label, group, help, initial, value, enabled, and range or words} for each that the page offers, in its
  /// order.
  Json Facts() const;

  /// As lines, ";;width=400", which a document's reader takes for remarks; and the options of such lines in a text,
  /// whatever else it holds.
  std::string Lines() const;
  static PictureOptions OfLines(std::string_view text);

 private:
  bool IsUsable(const char* const (&needs)[2]) const;
  std::map<std::string, std::string> values_;
};

}  // namespace glyphmotion
