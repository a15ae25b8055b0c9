#include "siblings/guardkit/format/past_state.h"

#include <algorithm>

namespace smh {

namespace {

const FileState kMissingFile;

}  // namespace

std::size_t NameNumbers::Of(const std::wstring& name) {
  return numbers_.try_emplace(system_.Folded(name), numbers_.size()).first->second;
}

std::uint64_t NameNumbers::OfValue(const std::wstring& key, const std::wstring& name) {
  return std::uint64_t{Of(key)} << 32 | Of(name);
}

const PastState::KnownKey* PastState::Find(const std::wstring& key) {
  const auto known = keys_.find(names_.Of(key));
  return known == keys_.end() ? nullptr : &known->second;
}

ValueState PastState::Value(const std::wstring& key, const std::wstring& name) {
  const KnownKey* const known = Find(key);
  if (known == nullptr) return system_.Value(key, name);
  const std::size_t number = names_.Of(name);
  const auto own = known->values.find(number);
  if (own != known->values.end()) return *own->second.state;
  if (known->whole == nullptr) return system_.Value(key, name);
  const auto value = known->wholeValues.find(number);
  if (value == known->wholeValues.end()) return {};
  return {true, value->second->type, value->second->data};
}

bool PastState::KeyExists(const std::wstring& key) {
  const KnownKey* const known = Find(key);
  if (known == nullptr) return system_.Key(key).exists;
  const auto exists = [](const auto& value) { return value.second.state->exists; };
  return std::ranges::any_of(known->values, exists) ||
         (known->whole != nullptr ? known->whole->exists : system_.Key(key).exists);
}

KeyState PastState::Key(const std::wstring& key) {
  const KnownKey* const known = Find(key);
  if (known == nullptr) return system_.Key(key);
  KeyState state = known->whole != nullptr ? *known->whole : system_.Key(key);
  if (known->values.empty()) return state;
  std::erase_if(state.values,
                [&](const NamedValue& value) { return known->values.contains(names_.Of(value.name)); });
  for (const auto& [number, value] : known->values) {
    if (!value.state->exists) continue;
    state.exists = true;
    state.values.push_back({*value.name, value.state->type, value.state->data});
  }
  return state;
}

FileState PastState::File(const std::wstring& path) {
  const auto known = files_.find(names_.Of(path));
  return known != files_.end() ? *known->second : system_.File(path);
}

void PastState::GoBefore(const ValueStep& step) {
  keys_[names_.Of(step.key)].values[names_.Of(step.name)] = {&step.name, &step.before};
}

void PastState::GoBefore(const KeyStep& step) {
  KnownKey& known = keys_[names_.Of(step.key)];
  known.whole = &step.before;
  known.wholeValues.clear();
  known.values.clear();
  for (const NamedValue& value : step.before.values) {
    known.wholeValues.try_emplace(names_.Of(value.name), &value);
  }
}

void PastState::GoBefore(const FileStep& step) {
  files_[names_.Of(step.path)] = &step.before;
}

void PastState::GoBefore(const MoveStep& step) {
  files_[names_.Of(step.from)] = &step.file;
  files_[names_.Of(step.to)] = &kMissingFile;
}

}  // namespace smh
