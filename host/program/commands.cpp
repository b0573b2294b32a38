// SPDX-License-Identifier: MIT
// The program with its subcommands; whatever is none of them is a line of options and a text.
#include <cstdio>

#include "glyphmotion/render.h"
#include "host/encoders/out_of_memory.h"
#include "host/program/batch.h"
#include "host/program/completion.h"
#include "host/program/edit.h"
#include "host/program/gallery.h"
#include "host/program/help.h"
#include "host/program/help_topics.h"
#include "host/program/interrupts.h"
#include "host/program/manual.h"
#include "host/program/program.h"
#include "host/program/swatch.h"
#include "host/render/image_loader.h"
#include "materials/material_text.h"

namespace glyphmotion {
namespace {

// help, man and completion with what belongs to them; anything else is a text.
bool IsPage(const std::vector<std::string>& words) {
  if (words.empty() || words.size() > 2 || (words.size() == 2 && words[1].starts_with('-'))) return false;
  return words[0] == "help" || words[0] == "completion" || (words[0] == "man" && words.size() == 1);
}

int PrintPage(const std::vector<std::string>& words, const Catalogue& catalogue) {
  std::string text;
  if (words[0] == "man") {
    text = ManualPage();
  } else if (words[0] == "completion") {
    text = words.size() == 2 ? Completion(words[1]) : std::string();
    if (text.empty()) return Fail("completion takes a shell: bash, zsh or fish", kExitUsage);
  } else if (words.size() == 1) {
    text = HelpText();
  } else if (const auto topic = HelpTopic(words[1], catalogue)) {
    text = *topic;
  } else {
    return Fail(NoSuchTopic(words[1], catalogue), kExitUsage);
  }
  std::fputs(text.c_str(), stdout);
  return PrintedWell(kExitDone);
}

int ExecuteBatch(const std::vector<std::string>& words) {
  // Standard input is not for texts: the lines may come from there.
  const BatchOutcome outcome = RunBatch(words, LibraryCatalogue(), [](const Arguments& line) { return Perform(line); });
  if (!outcome.error.empty()) return Fail(outcome.error, outcome.code);
  return outcome.code == kExitDone ? PrintedWell(kExitDone) : outcome.code;
}

constexpr unsigned kServerGrace = 10;  // seconds: up to 16 sessions end, each with its threads

int ServePage(const std::vector<std::string>& words) {
  bool usage = false;
  const auto interrupted = [] {
    if (InterruptedCode() != 0) AllowToEnd(kServerGrace);
    return InterruptedCode() != 0;
  };
  const std::string trouble = Edit(words, interrupted, usage);
  if (!trouble.empty()) return Fail(trouble, usage ? kExitUsage : kExitFailed);
  return InterruptedCode() ? InterruptedCode() : kExitDone;
}

int MakeSwatch(const std::vector<std::string>& words) {
  SetImageLoader(LoadPicture);
  bool badUsage = false;
  const std::string trouble = WriteSwatch(words, badUsage);
  if (trouble == kOutOfMemory) return FailForMemory();
  return trouble.empty() ? kExitDone : Fail(trouble, badUsage ? kExitUsage : kExitFailed);
}

// A picture of the gallery, on any thread.
std::string GalleryPicture(const std::vector<std::string>& words) {
  try {
    if (!IsSwatch(words)) return RunWords(words);
    bool badUsage = false;
    return WriteSwatch(words, badUsage);
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  } catch (const std::exception& error) {
    return error.what();
  }
}

int MakeGallery(const std::vector<std::string>& words) {
  bool badUsage = false;
  const std::string trouble = WriteGallery(
      words, GalleryPicture, [] { return InterruptedCode() != 0; }, badUsage);
  if (InterruptedCode()) return Fail("interrupted; the gallery is incomplete", InterruptedCode());
  return trouble.empty() ? kExitDone : Fail(trouble, badUsage ? kExitUsage : kExitFailed);
}

}  // namespace

int RunProgram(const std::vector<std::string>& words) {
  return EndingWell([&] {
    if (IsEdit(words)) return ServePage(words);
    if (IsSwatch(words)) return MakeSwatch(words);
    if (IsGallery(words)) return MakeGallery(words);
    if (IsBatch(words)) return ExecuteBatch(words);
    if (IsPage(words)) return PrintPage(words, ProgramCatalogue());
    return RunLine(words);
  });
}

}  // namespace glyphmotion
