// SPDX-License-Identifier: MIT
// The page's worker: with a dialog, or with the work beside one.
#include <emscripten/emscripten.h>

#include <memory>

#include "host/options/looks.h"
#include "host/page/page_session.h"
#include "host/page/welcome.h"
#include "host/web/orders.h"
#include "host/web/page_words.h"
#include "platform/folders.h"

EM_JS(void, GiveToPage, (const char* json, int length, const unsigned char* payload, int size),
      { Module.give(UTF8ToString(json, length), HEAPU8.slice(payload, payload + size)); });

namespace glyphmotion {
namespace {

void Give(const PageMessage& message) {
  const std::string json = message.json.dump(-1, ' ', false, Json::error_handler_t::replace);
  GiveToPage(json.data(), static_cast<int>(json.size()), message.payload.data(),
             static_cast<int>(message.payload.size()));
}

const PageServices& Services() {
  static const PageServices services = ServicesOfWords();
  return services;
}

/// The module's one session, while GlyphmotionPage runs.
std::unique_ptr<PageSession>& TheSession() {
  static std::unique_ptr<PageSession> session;
  return session;
}

}  // namespace
}  // namespace glyphmotion

using namespace glyphmotion;

/// Shows the dialog to the page until it ends. `key` names the session: letters and digits.
extern "C" EMSCRIPTEN_KEEPALIVE void GlyphmotionPage(const char* key) {
  DocumentStore store(SettingsFolder() + "page/", "page");
  PageSession::Start start{key, {}, WelcomeWords(), Json::array(), true};
  for (const auto& [name, about] : Looks()) start.looks.push_back({{"name", name}, {"about", about}});
  TheSession() = std::make_unique<PageSession>(Services(), store, std::move(start), Give);
  TheSession()->Run();
  TheSession().reset();
}

/// An array of events, as JSON; the session reads them when it is woken.
extern "C" EMSCRIPTEN_KEEPALIVE void GlyphmotionPost(const char* events) {
  Json list = Json::parse(events, nullptr, false);
  if (!list.is_array() || !TheSession()) return;
  for (Json& event : list) TheSession()->Post(std::move(event));
}

/// The bytes of a picture; its name for an answer, valid until the next call.
extern "C" EMSCRIPTEN_KEEPALIVE const char* GlyphmotionUpload(const char* bytes, int size) {
  static std::string name;
  name = TheSession() ? TheSession()->Upload(std::string(bytes, static_cast<std::size_t>(size))) : std::string();
  return name.c_str();
}

/// Does the work of one order, as JSON.
extern "C" EMSCRIPTEN_KEEPALIVE void GlyphmotionWork(const char* order) {
  static const ScratchFolder scratch;
  Perform({Services(), Give, scratch.Path()}, Json::parse(order, nullptr, false));
}
