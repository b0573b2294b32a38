// SPDX-License-Identifier: MIT
#include "host/web/orders.h"

#include "host/page/event_fields.h"

namespace glyphmotion {
namespace {

std::vector<std::string> WordsIn(const Json& order, const char* key) {
  return order.value(key, std::vector<std::string>());
}

}  // namespace

Json JsonOf(const BuildOrder& order) {
  return {{"work", "build"}, {"revision", order.revision}, {"document", order.document}, {"words", order.words}};
}

Json JsonOf(const PictureWish& wish) {
  return {{"work", "picture"},         {"effect", wish.effect},   {"key", wish.key},
          {"document", wish.document}, {"text", wish.text},       {"width", wish.width},
          {"height", wish.height},     {"options", wish.options}, {"look", wish.look}};
}

Json JsonOf(const ExportOrder& order) {
  return {{"work", "export"},   {"number", order.number},     {"tag", order.tag},    {"format", order.format},
          {"name", order.name}, {"document", order.document}, {"words", order.words}};
}

void Perform(const WorkPlace& place, const Json& order) {
  const std::string work = TextIn(order, "work"), document = TextIn(order, "document");
  const std::atomic<bool> cancel{false};  // a worker whose work nobody wants any more is ended
  if (work == "build") {
    BuildDocument(place, {NumberIn(order, "revision"), document, WordsIn(order, "words")}, cancel);
  } else if (work == "picture") {
    MakePicture(place,
                {NumberIn(order, "effect"), TextIn(order, "key"), document, TextIn(order, "text"),
                 NumberIn(order, "width"), NumberIn(order, "height"), WordsIn(order, "options"), TextIn(order, "look")},
                cancel);
  } else if (work == "export") {
    MakeExport(place,
               {NumberIn(order, "number"), TextIn(order, "tag"), TextIn(order, "format"), TextIn(order, "name"),
                document, WordsIn(order, "words")},
               cancel);
  }
}

}  // namespace glyphmotion
