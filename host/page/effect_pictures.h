// SPDX-License-Identifier: MIT
// Small animations of the effects with a document's own text, made one after the other beside the dialog.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "host/page/page_message.h"
#include "host/page/page_services.h"
#include "host/page/wish_thread.h"

namespace glyphmotion {

struct PictureWish {
  int effect = 0;
  std::string key;                   ///< comes back with the picture
  std::string document;              ///< with what the effect's own controls are to hold
  std::string text;                  ///< what it writes
  int width = 132, height = 58;      ///< pixels to fit into
  std::vector<std::string> options;  ///< of the command line, on top
  std::string look;                  ///< a look's picture in place of an effect's
};

class EffectPictures {
 public:
  EffectPictures(const PageServices& services, SendMessage send, std::string folder);

  /// Forgets what was wished before and not begun.
  void Wish(std::deque<PictureWish> wishes) { thread_.Set(std::move(wishes)); }

 private:
  void Make(const PictureWish& wish);

  const PageServices& services_;
  const SendMessage send_;
  const std::string folder_;
  WishThread<PictureWish> thread_;  // the last member: it uses the others
};

}  // namespace glyphmotion
