// SPDX-License-Identifier: MIT
// Saves what has no option of the program, the first or the second version of it: save_files KIND VERSION, into the
// current folder. "rescue list" prints what a page would offer.
#include <cstdio>
#include <string>

#include "host/page/document_store.h"
#include "materials/fountain.h"
#include "materials/texture_library.h"
#include "materials/tile.h"

using namespace glyphmotion;

namespace {

bool SaveTextures(int count) {
  TextureLibrary library{true, {}};
  for (int i = 0; i < count; ++i) {
    NamedTexture& texture = library.textures.emplace_back();
    texture.name = "texture " + std::to_string(i);
    DefaultTextureSpec(texture.parameters);
  }
  return WriteTextureLibrary("own.fft", library, {});
}

bool SaveTiles(int count) {
  TileLibrary library;
  library.writeable = true;
  for (int i = 0; i < count; ++i) library.tiles.push_back(BlankDib(20 + i, 20, nullptr, 24));
  return WriteTileLibrary("own.mtx", library, {});
}

bool SaveFountains(int count) {
  std::vector<FountainSpec> fountains(static_cast<std::size_t>(count));
  for (FountainSpec& fountain : fountains) DefaultFountain(fountain, 2);
  return WriteFountainLibrary("own.fll", fountains, 0);
}

bool KeepDocuments(int version) {
  DocumentStore store("page/");
  KeptDocument kept;
  kept.name = "new";
  kept.document = std::string(static_cast<std::size_t>(5000 * version), 'x');
  for (const char* session : {"a", "b"}) store.KeepUnsaved(session, kept);
  kept.name = "recent.gm4";
  store.Remember(kept);
  return true;
}

// The name and the size of each document.
bool ListDocuments() {
  const DocumentStore store("page/");
  for (const Json& list : {store.Recent(), store.Rescued()}) {
    for (const Json& each : list) {
      const auto kept = store.Find(each["key"]);
      std::printf("%s %zu\n", each["name"].get<std::string>().c_str(), kept ? kept->document.size() : 0);
    }
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string kind = argc > 2 ? argv[1] : "", version = argc > 2 ? argv[2] : "";
  if (version == "list") return ListDocuments() ? 0 : 1;
  const int number = std::stoi(version);
  const bool saved = kind == "textures"    ? SaveTextures(3 * number)
                     : kind == "tiles"     ? SaveTiles(3 * number)
                     : kind == "fountains" ? SaveFountains(3 * number)
                                           : KeepDocuments(number);
  return saved ? 0 : 1;
}
