#include "siblings/guardkit/format/step_history.h"

#include "siblings/guardkit/format/state_content.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <optional>

namespace smh {

namespace {

using Numbers = std::vector<std::size_t>;  // of steps, rising

const Numbers kNoNumbers;

template <typename Key>
const Numbers& In(const std::unordered_map<Key, Numbers>& lists, Key key) {
  const auto list = lists.find(key);
  return list == lists.end() ? kNoNumbers : list->second;
}

// States of one place, each with the first step before which it stood.
template <typename State>
class FirstStanding {
 public:
  // A state that outlives this.
  void Add(const State& state, std::size_t number) {
    std::size_t& first = numbers_.try_emplace(&state, number).first->second;
    first = std::min(first, number);
  }
  // One that does not.
  void Keep(State state, std::size_t number) { Add(kept_.emplace_back(std::move(state)), number); }
  bool IsBefore(std::size_t number, const State& state) const {
    const auto first = numbers_.find(&state);
    return first != numbers_.end() && first->second < number;
  }

 private:
  struct Hash {
    std::size_t operator()(const State* state) const { return ContentSum(*state); }
  };
  struct Equal {
    bool operator()(const State* a, const State* b) const { return SameContent(*a, *b); }
  };
  std::unordered_map<const State*, std::size_t, Hash, Equal> numbers_;
  std::deque<State> kept_;
};

// The values in which a key differs from one that was found, kept up to date while the key goes back.
class KeyDifference {
 public:
  KeyDifference(const KeyState& found, NameNumbers& names) : found_(found), names_(names) {
    for (const NamedValue& value : found.values) foundValues_[names_.Of(value.name)] = ViewOf(value);
  }

  void Become(const KeyState& key) {
    exists_ = key.exists;
    values_.clear();
    later_.clear();
    laterCount_ = 0;
    differing_ = foundValues_.size();
    for (const NamedValue& value : key.values) Put(names_.Of(value.name), ViewOf(value));
  }
  void Become(const std::wstring& name, const ValueState& value) {
    const std::size_t number = names_.Of(name);
    bool& isLater = later_[number];
    laterCount_ += static_cast<int>(value.exists) - static_cast<int>(isLater);
    isLater = value.exists;
    Put(number, value.exists ? std::optional(View{&name, value.type, &value.data}) : std::nullopt);
  }
  bool IsNone() const noexcept { return differing_ == 0 && found_.exists == (exists_ || laterCount_ > 0); }

 private:
  struct View {
    const std::wstring* name;
    std::uint32_t type;
    const ByteVector* data;
  };
  using Views = std::unordered_map<std::size_t, View>;

  static View ViewOf(const NamedValue& value) { return {&value.name, value.type, &value.data}; }
  bool Differs(std::size_t number) const {
    const auto found = foundValues_.find(number);
    const auto own = values_.find(number);
    if (found == foundValues_.end() || own == values_.end()) {
      return (found == foundValues_.end()) != (own == values_.end());
    }
    const View& a = found->second;
    const View& b = own->second;
    return *a.name != *b.name || a.type != b.type || *a.data != *b.data;
  }
  void Put(std::size_t number, const std::optional<View>& value) {
    if (Differs(number)) --differing_;
    values_.erase(number);
    if (value) values_.emplace(number, *value);
    if (Differs(number)) ++differing_;
  }

  const KeyState& found_;
  NameNumbers& names_;
  Views foundValues_;
  Views values_;
  bool exists_ = false;
  // The values that became something of their own, and how many of them exist: their key does then, too.
  std::unordered_map<std::size_t, bool> later_;
  int laterCount_ = 0;
  std::size_t differing_ = 0;
};

}  // namespace

struct StepHistory::Index {
  std::unordered_map<std::uint64_t, Numbers> ofValue;
  std::unordered_map<std::size_t, Numbers> ofKeyItself;
  std::unordered_map<std::size_t, Numbers> ofKeyAndValues;
  std::unordered_map<std::size_t, Numbers> ofFile;
  // What the keys of single steps held before.
  std::unordered_map<std::size_t, std::unordered_map<std::size_t, const NamedValue*>> held;
  std::unordered_map<std::uint64_t, FirstStanding<ValueState>> values;
  std::unordered_map<std::size_t, FirstStanding<FileState>> files;
};

StepHistory::StepHistory(const std::vector<RecordedStep>& steps, NameNumbers& names)
    : steps_(steps), names_(names) {}
StepHistory::~StepHistory() = default;

StepHistory::Index& StepHistory::Indexed() {
  if (index_ != nullptr) return *index_;
  auto index = std::make_unique<Index>();
  for (std::size_t number = 0; number < steps_.size(); ++number) {
    const Step& step = steps_[number].step;
    if (const auto* const value = std::get_if<ValueStep>(&step)) {
      index->ofValue[names_.OfValue(value->key, value->name)].push_back(number);
      index->ofKeyAndValues[names_.Of(value->key)].push_back(number);
    } else if (const auto* const key = std::get_if<KeyStep>(&step)) {
      index->ofKeyItself[names_.Of(key->key)].push_back(number);
      index->ofKeyAndValues[names_.Of(key->key)].push_back(number);
      for (const NamedValue& held : key->before.values) index->held[number][names_.Of(held.name)] = &held;
    } else if (const auto* const file = std::get_if<FileStep>(&step)) {
      index->ofFile[names_.Of(file->path)].push_back(number);
    } else {
      const auto& move = std::get<MoveStep>(step);
      index->ofFile[names_.Of(move.from)].push_back(number);
      index->ofFile[names_.Of(move.to)].push_back(number);
    }
  }
  index_ = std::move(index);
  return *index_;
}

bool StepHistory::HasStood(const ValueState& found, std::size_t number, const ValueStep& step) {
  Index& index = Indexed();
  const std::uint64_t place = names_.OfValue(step.key, step.name);
  const auto [states, isNew] = index.values.try_emplace(place);
  if (isNew) {
    for (const std::size_t at : In(index.ofValue, place)) {
      states->second.Add(std::get<ValueStep>(steps_[at].step).before, at);
    }
    for (const std::size_t at : In(index.ofKeyItself, names_.Of(step.key))) {
      const auto& held = index.held[at];
      const auto value = held.find(names_.Of(step.name));
      states->second.Keep(
          value == held.end() ? ValueState{} : ValueState{true, value->second->type, value->second->data},
          at);
    }
  }
  return states->second.IsBefore(number, found);
}

bool StepHistory::HasStood(const KeyState& found, std::size_t number, const KeyStep& step) {
  const Numbers& numbers = In(Indexed().ofKeyAndValues, names_.Of(step.key));
  KeyDifference difference(found, names_);
  difference.Become(step.before);
  for (auto at = std::ranges::lower_bound(numbers, number); at != numbers.begin();) {
    const Step& earlier = steps_[*--at].step;
    if (const auto* const value = std::get_if<ValueStep>(&earlier)) {
      difference.Become(value->name, value->before);
    } else {
      difference.Become(std::get<KeyStep>(earlier).before);
    }
    if (difference.IsNone()) return true;
  }
  return false;
}

bool StepHistory::HasStood(const FileState& found, std::size_t number, const FileStep& step) {
  Index& index = Indexed();
  const std::size_t place = names_.Of(step.path);
  const auto [states, isNew] = index.files.try_emplace(place);
  if (isNew) {
    for (const std::size_t at : In(index.ofFile, place)) {
      const Step& earlier = steps_[at].step;
      if (const auto* const file = std::get_if<FileStep>(&earlier)) {
        states->second.Add(file->before, at);
      } else {
        const auto& move = std::get<MoveStep>(earlier);
        states->second.Keep(names_.Of(move.from) == place ? move.file : FileState{}, at);
      }
    }
  }
  return states->second.IsBefore(number, found);
}

bool StepHistory::HasStood(const FileState& foundFrom, const FileState& foundTo, std::size_t number,
                           const MoveStep& step) {
  Index& index = Indexed();
  Numbers numbers;
  std::ranges::set_union(In(index.ofFile, names_.Of(step.from)), In(index.ofFile, names_.Of(step.to)),
                         std::back_inserter(numbers));
  const std::size_t from = names_.Of(step.from);
  const FileState missing;
  const FileState* thenFrom = &step.file;
  const FileState* thenTo = &missing;
  const auto become = [&](const std::wstring& path, const FileState& state) {
    (names_.Of(path) == from ? thenFrom : thenTo) = &state;
  };
  for (auto at = std::ranges::lower_bound(numbers, number); at != numbers.begin();) {
    const Step& earlier = steps_[*--at].step;
    if (const auto* const file = std::get_if<FileStep>(&earlier)) {
      become(file->path, file->before);
    } else {
      const auto& move = std::get<MoveStep>(earlier);
      if (IsAt(move.from, step)) become(move.from, move.file);
      if (IsAt(move.to, step)) become(move.to, missing);
    }
    if (SameContent(foundFrom, *thenFrom) && SameContent(foundTo, *thenTo)) return true;
  }
  return false;
}

bool StepHistory::IsAt(const std::wstring& path, const MoveStep& step) {
  const std::size_t place = names_.Of(path);
  return place == names_.Of(step.from) || place == names_.Of(step.to);
}

}  // namespace smh
