// SPDX-License-Identifier: MIT
// Sessions without a page: what a person's events make of the document, of the options beside it, and of what is kept.
#include "host/page/page_session.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <filesystem>
#include <functional>
#include <thread>

#include "host/host_helpers.h"
#include "host/page/scratch.h"
#include "host/program/program.h"
#include "host/render/image_loader.h"
#include "platform/files.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

using testing::TemporaryFolder;
using Use = PictureOptions::Use;
using Words = std::vector<std::string>;

const PageServices& Services() {
  static const PageServices services = {JobOf, RunWords, LoadPicture};
  return services;
}

// A session on a thread of its own, and what it has said.
class Talk {
 public:
  Talk(DocumentStore& store, const std::string& key, Json looks = Json::array())
      : session_(Services(), store,
                 {key, {}, {"Hi", "-e", "simple", "-s", "30", "--set", "@frames=3"}, std::move(looks)},
                 [this](PageMessage message) { Hear(std::move(message)); }),
        thread_([this] { session_.Run(); }) {
    Post({{"op", "snapshot"}});
  }
  ~Talk() { End(); }
  Talk(const Talk&) = delete;
  Talk& operator=(const Talk&) = delete;

  void End() {
    session_.End();
    if (thread_.joinable()) thread_.join();
  }
  // How many files have come whole.
  long Files() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::count_if(heard_.begin(), heard_.end(),
                         [](const PageMessage& each) { return each.json["type"] == "file" && !each.payload.empty(); });
  }

  PageSession& Session() { return session_; }
  void Post(Json event) { session_.Post(std::move(event)); }
  void SetOption(const char* name, const char* value) { Post({{"op", "option"}, {"name", name}, {"value", value}}); }
  // The first message from here on that is wanted. A fault that would wait for ever ends by itself.
  PageMessage Await(
      const char* type, const std::function<bool(const Json&)>& wanted = [](const Json&) { return true; }) {
    std::unique_lock<std::mutex> lock(mutex_);
    const auto find = [&] {
      for (; at_ < heard_.size(); ++at_) {
        if (heard_[at_].json["type"] == type && wanted(heard_[at_].json)) return true;
      }
      return false;
    };
    const bool found = wake_.wait_for(lock, std::chrono::minutes(5), find);
    EXPECT_TRUE(found) << type;
    return found ? heard_[at_++] : PageMessage{{{"type", "nothing"}}, {}};
  }
  // The animation of the current document, as "width x height".
  std::string Size() {
    const Json document = Await("document").json;
    const Json build = Await("build", [&](const Json& each) {
                         return each["state"] == "done" && each["revision"] == document["revision"];
                       }).json;
    return build["width"].dump() + " x " + build["height"].dump();
  }

 private:
  void Hear(PageMessage message) {
    const std::lock_guard<std::mutex> lock(mutex_);
    EXPECT_TRUE(!heard_.empty() || message.json["type"] == "hello");
    heard_.push_back(std::move(message));
    wake_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable wake_;
  std::vector<PageMessage> heard_;
  std::size_t at_ = 0;
  PageSession session_;
  std::thread thread_;
};

Json OptionNamed(const Json& message, const std::string& name) {
  for (const Json& each : message["options"]) {
    if (each["name"] == name) return each;
  }
  return nullptr;
}

TEST(PictureOptions, TakeWhatTheProgramTakesAndKeepBackWhatItWouldRefuse) {
  const struct {
    const char *name, *value;
    bool allowed;
  } rows[] = {
      {"width", "400", true},      {"width", "0", false},     {"width", "16384", false},  {"width", "12a", false},
      {"fit", "none", true},       {"fit", "grow", false},    {"align", "justify", true}, {"line-space", "9", false},
      {"palette", "best", true},   {"palette", "bw", false},  {"start", "rest", true},    {"start", "3", false},
      {"output", "/tmp/x", false}, {"record", "/tmp", false}, {"loop", "65535", true},    {"font-file", "/x", false},
      {"dither", "stable", true},  {"dither", "wild", false}, {"max-bytes", "1", true},   {"emoji", "mono", true}};
  for (const auto& row : rows) {
    PictureOptions options;
    EXPECT_EQ(options.Set(row.name, row.value).empty(), row.allowed) << row.name << " " << row.value;
    EXPECT_EQ(options.Lines().empty(), !row.allowed) << row.name;
    for (const char* extension : {".gif", ".png", ".webp", ".avif", ".webm"}) {
      Words words = options.Words(Use::File, extension);
      words.insert(words.end(), {"Hi", "-o", std::string("x") + extension});
      std::string error;
      EXPECT_TRUE(JobOf(words, error) || error.find("built without") != std::string::npos) << row.name << ": " << error;
    }
  }
  PictureOptions options;
  EXPECT_EQ(options.Set("valign", "top"), "");
  EXPECT_EQ(options.Words(Use::Stage), Words{});
  EXPECT_EQ(options.Set("height", "90"), "");
  EXPECT_EQ(options.Set("loop", "2"), "");
  EXPECT_EQ(options.Words(Use::Thumbnail), Words{});
  EXPECT_EQ(options.Words(Use::Stage), (Words{"--height", "90", "--valign", "top"}));
  EXPECT_EQ(options.Words(Use::File), (Words{"--height", "90", "--valign", "top", "--loop", "2"}));
  EXPECT_EQ(PictureOptions::OfLines(";head\n" + options.Lines() + "a=b\n;;nothing=1\n").Lines(), options.Lines());
  EXPECT_EQ(options.Set("height", ""), "");
  EXPECT_EQ(options.Set("valign", "middle"), "");
  EXPECT_EQ(options.Lines(), ";;loop=2\n");
}

TEST(DocumentStore, TheLastDocumentIsTheNewestAlsoWhenTheClockWasSetBack) {
  const TemporaryFolder folder;
  DocumentStore store(folder / "");
  const auto remember = [&](const std::string& name) {
    KeptDocument kept;
    kept.name = name;
    kept.document = name;
    store.Remember(kept);
  };
  for (int i = 0; i < 12; ++i) remember("old" + std::to_string(i));
  for (const auto& each : std::filesystem::directory_iterator(folder / "recent/"))
    std::filesystem::last_write_time(each, each.last_write_time() + std::chrono::hours(1));
  remember("b");
  remember("c");
  const Json recent = store.Recent();
  ASSERT_EQ(recent.size(), 12u);
  EXPECT_EQ(recent[0]["name"], "c");
  EXPECT_EQ(recent[1]["name"], "b");
  EXPECT_EQ(recent[2]["name"], "old11");
}

TEST(PageSession, TheCanvasIsUndoneKeptOverAKillAndInTheCommandButNotInTheDocument) {
  const TemporaryFolder folder;
  DocumentStore store(folder / "");
  std::string plain;
  {
    Talk talk(store, "a");
    plain = talk.Size();
    talk.SetOption("width", "400");
    talk.Await("still", [](const Json& each) { return each["width"] == 400; });
    talk.SetOption("height", "120");
    const Json document =
        talk.Await("document",
                   [](const Json& each) {
                     return each["command"].get<std::string>().find("--width 400 --height 120") != std::string::npos;
                   })
            .json;
    EXPECT_EQ(document["saved"], false);
    const Json build = talk.Await("build",
                                  [&](const Json& each) {
                                    return each["state"] == "done" && each["revision"] == document["revision"];
                                  })
                           .json;
    EXPECT_EQ(build["width"], 400);
    EXPECT_EQ(build["height"], 120);

    talk.SetOption("height", "99999");
    talk.Await("notice",
               [](const Json& each) { return each["text"].get<std::string>().find("16383") != std::string::npos; });
    EXPECT_EQ(OptionNamed(talk.Await("options").json, "height")["value"], "120");

    talk.Post({{"op", "undo"}});
    EXPECT_EQ(OptionNamed(talk.Await("options").json, "height")["value"], "");
    talk.Post({{"op", "undo"}});
    EXPECT_EQ(OptionNamed(talk.Await("options").json, "width")["value"], "");
    talk.Await("document", [](const Json& each) { return each["undo"] == false; });
    talk.Post({{"op", "redo"}});
    talk.Post({{"op", "redo"}});
    talk.Await("document", [](const Json& each) { return each["redo"] == false; });

    talk.Post({{"op", "save"}, {"copy", true}, {"tag", "x"}});
    const PageMessage file = talk.Await("file");
    const std::string text(file.payload.begin(), file.payload.end());
    EXPECT_TRUE(text.starts_with(";This is a document"));
    EXPECT_EQ(text.find(";;"), std::string::npos);
    talk.Await("document", [](const Json& each) { return each["saved"] == true; });
    talk.Post({{"op", "new"}});
    EXPECT_EQ(talk.Size(), plain);
    talk.Post({{"op", "open"}, {"name", "a.gm4"}, {"document", text}});
    EXPECT_EQ(talk.Size(), "400 x 120");
    talk.SetOption("valign", "top");
    talk.Await("document", [](const Json& each) { return each["saved"] == false; });
  }
  Talk again(store, "a");
  EXPECT_EQ(
      OptionNamed(
          again.Await("options", [](const Json& each) { return OptionNamed(each, "width")["value"] == "400"; }).json,
          "valign")["value"],
      "top");
  again.SetOption("height", "");
  again.Await("options", [](const Json& each) { return OptionNamed(each, "valign")["enabled"] == false; });
}

std::string UploadOf(PageSession& session, const std::string& path) {
  return session.Upload(ReadWholeFile(path).value_or(""));
}

TEST(PageSession, AFontFileIsInThePictureUntilAnotherFontIsChosenAndComesBackByUndoAndAfterAKill) {
  const TemporaryFolder folder;
  DocumentStore store(folder / "");
  const auto fontIs = [](const char* name) { return [=](const Json& each) { return each["font"] == name; }; };
  std::string command;
  {
    Talk talk(store, "a");
    talk.Size();
    talk.Post({{"op", "type"}, {"id", ControlId::Text}, {"text", "AAA"}});
    const std::string plain = talk.Size();
    for (const auto& [name, upload] : {std::pair{"../mine.ttf", "x"}, {"mine.exe", "x"}, {"mine.ttf", "x"}}) {
      talk.Post({{"op", "font"}, {"name", name}, {"upload", upload}});
      talk.Await("notice");
    }
    talk.Post({{"op", "font"}, {"name", "bad.ttf"}, {"upload", talk.Session().Upload("no font")}});
    EXPECT_EQ(talk.Await("notice").json["text"],
              "'bad.ttf' is not a font that can be read; use a valid TTF, OTF or TTC file");
    talk.Post({{"op", "font"},
               {"name", "mine.ttf"},
               {"upload", UploadOf(talk.Session(), GLYPHMOTION_SOURCE_DIR "/tests/fonts/two_squares.ttf")}});
    const Json document = talk.Await("document", fontIs("mine.ttf")).json;
    const Json build = talk.Await("build",
                                  [&](const Json& each) {
                                    return each["state"] == "done" && each["revision"] == document["revision"];
                                  })
                           .json;
    command = document["command"];
    EXPECT_NE(command.find("/mine.ttf --no-bold --no-italic"), std::string::npos) << command;
    EXPECT_EQ(command.find(" -f "), std::string::npos) << command;
    EXPECT_NE(build["width"].dump() + " x " + build["height"].dump(), plain);
    EXPECT_EQ(build["notes"], Json::array());
    talk.Post({{"op", "choose"}, {"id", ControlId::Font}, {"index", 0}});
    talk.Await("document", fontIs(""));
    talk.Post({{"op", "undo"}});
    EXPECT_EQ(talk.Await("document", fontIs("mine.ttf")).json["command"], command);
  }
  Talk again(store, "a");
  EXPECT_EQ(again.Await("document", fontIs("mine.ttf")).json["command"], command);
  again.Post({{"op", "font"}});
  again.Await("document", fontIs(""));
}

TEST(PageSession, ALookSetsItsOptionsBesideTheDialogAndTakesThoseOfTheLastOneAway) {
  const TemporaryFolder folder;
  DocumentStore store(folder / "");
  const std::string wide = folder / "wide.toml", plain = folder / "plain.toml";
  AtomicWriteFile(wide,
                  "width = 300\nheight = 80\nvalign = \"top\"\npalette = \"best\"\ndither = \"stable\"\nsize = 20\n");
  AtomicWriteFile(plain, "size = 22\nloop = 2\n");
  Talk talk(store, "a", {{{"name", wide}}, {{"name", plain}}});
  talk.SetOption("line-space", "120");
  const auto apply = [&](const std::string& look, const std::string& words) {
    talk.Post({{"op", "apply"}, {"look", look}});
    const Json document = talk.Await("document",
                                     [&](const Json& each) {
                                       return each["command"].get<std::string>().find(words) != std::string::npos;
                                     })
                              .json;
    return document["command"].get<std::string>();
  };
  const std::string first =
      apply(wide, " --width 300 --height 80 --valign top --line-space 120 --dither=stable --palette best");
  EXPECT_NE(first.find(" -s 20"), std::string::npos) << first;
  const std::string second = apply(plain, " --line-space 120 --loop 2");
  EXPECT_EQ(second.find("--width"), std::string::npos) << second;
  EXPECT_EQ(second.find("--dither="), std::string::npos) << second;
  // A texture's numbers, which a material keeps at odd addresses.
  talk.Post({{"op", "kind"}, {"id", 100}, {"kind", 2}});
  talk.Await("document",
             [](const Json& each) { return each["command"].get<std::string>().find("texture:") != std::string::npos; });
}

TEST(PageSession, APageThatComesLaterGetsTheAnimationThatIsThereAndAChangeEndsThePicturesOfWhatWas) {
  const TemporaryFolder folder;
  DocumentStore store(folder / "");
  Talk talk(store, "a");
  talk.Size();
  talk.Post({{"op", "snapshot"}});
  talk.Await("document");
  const PageMessage again = talk.Await("build");
  EXPECT_EQ(again.json["state"], "done");
  EXPECT_FALSE(again.payload.empty());

  Json effects = Json::array();
  for (int i = 0; i < 60; ++i) effects.push_back(i % 20);
  talk.Post({{"op", "thumbs"}, {"key", "old"}, {"text", "A long line of text"}, {"effects", effects}});
  talk.Await("thumb");
  talk.Post({{"op", "type"}, {"id", ControlId::Text}, {"text", "Ho"}});
  talk.Size();
  talk.Post({{"op", "thumbs"}, {"key", "new"}, {"text", "Ho"}, {"effects", {1}}});
  EXPECT_EQ(talk.Await("thumb").json["key"], "new");
}

TEST(PageSession, ABuildBegins300MillisecondsAfterTheLastChangeAndNoneBetween) {
  const TemporaryFolder folder;
  DocumentStore store(folder / "");
  Talk talk(store, "a");
  talk.Size();
  const auto begin = std::chrono::steady_clock::now();
  auto last = begin;
  for (const char* text : {"H", "He", "Hel", "Hell", "Hello"}) {
    last = std::chrono::steady_clock::now();
    talk.Post({{"op", "type"}, {"id", ControlId::Text}, {"text", text}});
    talk.Await("document");
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  const bool inTime = std::chrono::steady_clock::now() - begin < std::chrono::milliseconds(800);
  const Json build = talk.Await("build").json;
  EXPECT_GE(std::chrono::steady_clock::now() - last, std::chrono::milliseconds(300));
  EXPECT_EQ(build["state"], "running");
  if (inTime) {
    EXPECT_EQ(talk.Await("build").json["revision"], build["revision"]) << "built between two keys";
  }
}

TEST(PageSession, ASessionThatEndsTakesItsExportsWithIt) {
  const TemporaryFolder folder;
  DocumentStore store(folder / "");
  Talk talk(store, "a");
  talk.Post({{"op", "type"}, {"id", ControlId::Text}, {"text", std::string(200, 'W')}});
  talk.Post({{"op", "choose"}, {"id", ControlId::Effect}, {"index", 11}});  // Nebula
  talk.SetOption("width", "4000");
  talk.SetOption("height", "1000");
  talk.Post({{"op", "export"}, {"format", "webp"}, {"tag", "x"}});  // of seconds
  talk.SetOption("loop", "7");
  talk.Await("options", [](const Json& each) { return OptionNamed(each, "loop")["value"] == "7"; });
  const auto begin = std::chrono::steady_clock::now();
  talk.End();
  EXPECT_EQ(talk.Files(), 0) << "the export went on to its end";
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));
}

TEST(ScratchFolder, ClearsWhatAKilledProcessHasLeft) {
  const ScratchFolder mine;
  const TemporaryFolder names;
  if (fork() == 0) {
    const ScratchFolder its;
    WriteScratchFile(its.Path() + "/build.gif", "GIF");
    WriteScratchFile(names / "path", its.Path());
    raise(SIGKILL);
  }
  wait(nullptr);
  const std::string left = testing::ReadText(names / "path");
  ASSERT_TRUE(std::filesystem::exists(left + "/build.gif"));
  const ScratchFolder next;
  EXPECT_FALSE(std::filesystem::exists(left));
  EXPECT_TRUE(std::filesystem::exists(mine.Path()));
}

}  // namespace
}  // namespace glyphmotion
