// SPDX-License-Identifier: MIT
#include "host/options/typed_words.h"

#include <utility>

namespace glyphmotion {

void Refuse(const std::string& sentence) { throw UsageError{sentence}; }

const std::vector<std::string>& TypedWords::Values(const std::string& name) const {
  static const std::vector<std::string> none;
  const auto found = values_.find(name);
  return found == values_.end() ? none : found->second;
}

const std::string& TypedWords::Value(const std::string& name) const {
  static const std::string none;
  const auto& values = Values(name);
  return values.empty() ? none : values.back();
}

std::optional<bool> TypedWords::Flag(const std::string& name) const {
  if (!Has(name)) return std::nullopt;
  return Value(name) != "0";
}

void TypedWords::Put(const std::string& name, std::vector<std::string> values) {
  if (values.empty()) {
    values_.erase(name);
  } else {
    values_[name] = std::move(values);
  }
}

}  // namespace glyphmotion
