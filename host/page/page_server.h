// SPDX-License-Identifier: MIT
// Sessions over loopback HTTP (docs/page-protocol.md). Who does not know the token gets the page's files and nothing
// else.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/page/page_message.h"
#include "host/page/page_services.h"

namespace glyphmotion {

struct PageServerOptions {
  int port = 0;                    ///< 0: a free one
  std::string webFolder;           ///< where index.html is
  std::string helpFile;            ///< the manual; may be empty
  std::string storeFolder;         ///< for recent and unsaved documents; ends in a separator
  std::string path;                ///< a document for the first session; empty: none
  std::vector<std::string> words;  ///< what a new document begins with
  Json looks = Json::array();
  /// How long a session, and the program after its last one, waits for a page that comes back.
  int graceMilliseconds = 8000;
  std::function<void(const std::string& address)> ready;  ///< once requests are answered
  std::function<bool()> interrupted;                      ///< asked several times a second
};

/// Serves until the last page has gone, or until it is interrupted. Empty when all went well, else one sentence.
std::string ServePage(const PageServices& services, PageServerOptions options);

/// `bytes` random bytes as hexadecimal digits.
std::string RandomKey(int bytes);

}  // namespace glyphmotion
