// SPDX-License-Identifier: MIT
// What takes longer than a person waits for: the animation, small pictures, files. Each order is all that its work
// needs of the session, which goes on meanwhile; the answer is a message to the page.
#pragma once

#include <atomic>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/page/page_message.h"
#include "host/page/page_services.h"

namespace glyphmotion {

struct BuildOrder {
  int revision = 0;
  std::string document;
  std::vector<std::string> words;                   ///< options of the command line, on top
  std::chrono::steady_clock::time_point changed{};  ///< when the document became this one

  bool IsFor(const BuildOrder& other) const {
    return revision == other.revision && document == other.document && words == other.words;
  }
};

struct PictureWish {
  int effect = 0;
  std::string key;                   ///< comes back with the picture
  std::string document;              ///< with what the effect's own controls are to hold
  std::string text;                  ///< what it writes
  int width = 132, height = 58;      ///< pixels to fit into
  std::vector<std::string> options;  ///< of the command line, on top
  std::string look;                  ///< a look's picture in place of an effect's
};

struct ExportOrder {
  int number = 0;      ///< of the session's exports
  std::string tag;     ///< comes back with the file
  std::string format;  ///< one of ExportFormats, or "frames"
  std::string name;    ///< of the document
  std::string document;
  std::vector<std::string> words;  ///< options of the command line, on top
};

struct WorkPlace {
  const PageServices& services;
  SendMessage send;
  std::string folder;  ///< private to the session
};

/// The animation of a document. The GIF's bytes; nothing when it could not be built or was cancelled.
std::optional<std::string> BuildDocument(const WorkPlace& place, const BuildOrder& order,
                                         const std::atomic<bool>& cancel);

/// A small animation with the document's own text; a failure has no picture.
void MakePicture(const WorkPlace& place, const PictureWish& wish, const std::atomic<bool>& cancel);

/// A file, or a sentence that says why there is none.
void MakeExport(const WorkPlace& place, const ExportOrder& order, const std::atomic<bool>& stop);
/// Gives a GIF that is there already.
void SendGif(const SendMessage& send, const ExportOrder& order, const std::string& gif);

/// The names of the formats that this program writes.
Json ExportFormats();
/// The extension of a format's file, with the dot; of "frames" and of an unknown name none.
std::string_view ExtensionOf(std::string_view format);
/// Whether pixels of a format's file can be transparent in part.
bool HasAlpha(std::string_view format);

}  // namespace glyphmotion
