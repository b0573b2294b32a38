// SPDX-License-Identifier: MIT
#include "host/web/page_words.h"

#include <map>

#include "host/encoders/encoders.h"
#include "host/options/arguments.h"
#include "host/options/looks.h"
#include "host/options/option_table.h"
#include "host/render/image_loader.h"
#include "host/render/picture_output.h"

namespace glyphmotion {
namespace {

const OptionRow* RowOf(const std::string& word) {
  if (word.starts_with("--")) return FindOption(word);
  for (const OptionRow& row : OptionRows()) {
    if (word.size() == 2 && word[0] == '-' && word[1] == ShortName(row)) return &row;
  }
  return nullptr;
}

TypedWords Sorted(const std::vector<std::string>& words) {
  TypedWords typed;
  std::map<std::string, std::vector<std::string>> values;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const OptionRow* row = RowOf(words[i]);
    if (!row) {
      typed.text = words[i];
    } else if (!row->form) {
      values[LongName(*row)] = {words[i] == NegativeName(*row) ? "0" : "1"};
    } else if (i + 1 < words.size()) {
      values[LongName(*row)].push_back(words[++i]);
    }
  }
  for (auto& [name, each] : values) typed.Put(name, std::move(each));
  return typed;
}

std::optional<Arguments> Read(const std::vector<std::string>& words, std::string& error) {
  Catalogue catalogue = LibraryCatalogue();
  catalogue.readLook = ReadLook;
  catalogue.textOptional = true;
  try {
    return ReadOptions(Sorted(words), catalogue);
  } catch (const UsageError& wrong) {
    error = wrong.sentence;
    return std::nullopt;
  }
}

std::optional<Job> JobOf(const std::vector<std::string>& words, std::string& error) {
  const auto arguments = Read(words, error);
  if (!arguments) return std::nullopt;
  return arguments->job;
}

std::string Run(const std::vector<std::string>& words, const std::atomic<bool>& stop) {
  std::string error;
  const auto arguments = Read(words, error);
  if (!arguments) return error;
  Output output =
      arguments->framesAsPng ? Output::Folder(arguments->output, error) : Output::File(arguments->output, error);
  if (!error.empty()) return error;
  Sink sink;
  sink.stop = &stop;
  const RenderResult result =
      RenderPictures(arguments->job, *FindFormat(arguments->extension), std::move(output), sink);
  return result.status == RenderStatus::Done ? std::string() : InOptionTerms(result.message, *arguments);
}

}  // namespace

PageServices ServicesOfWords() { return {JobOf, Run, LoadPicture}; }

}  // namespace glyphmotion
