#include "locations/registry/key_listing.h"

#include "infra/files/file_facts.h"
#include "infra/registry/registry_values.h"
#include "infra/runtime/text.h"
#include "model/reader_state.h"

#include <set>

namespace smh {

namespace {

constexpr std::size_t kMostRounds = 3;

// In 100 nanoseconds: the system's clock goes on in steps of 16 milliseconds at most. Two writes within one
// leave the same time.
constexpr std::int64_t kClockStep = 200'000;

struct NameOrder {
  bool operator()(std::wstring_view a, std::wstring_view b) const noexcept { return CompareText(a, b) < 0; }
};

}  // namespace

KeyListing::KeyListing(ScopedKey key, Of what) : key_(std::move(key)), stamp_(StampNow()) {
  std::vector<Enumeration> rounds;
  do {
    const bool isSettled = IsSettled(stamp_);
    rounds.push_back(Enumerate(what));
    const std::optional<Stamp> after = StampNow();
    isCertain_ = isSettled && after == stamp_;
    stamp_ = after;
  } while (!isCertain_ && rounds.size() < kMostRounds);
  listed_ = isCertain_ ? std::move(rounds.back()) : Unite(rounds);
}

bool KeyListing::IsStill() const noexcept {
  return isCertain_ && StampNow() == stamp_;
}

void KeyListing::Enumeration::Add(std::wstring_view name, std::wstring_view text) {
  entries.push_back({units.size(), name.size(), text.size()});
  units.append(name).append(text);
}

std::optional<KeyListing::Stamp> KeyListing::StampNow() const noexcept {
  Stamp stamp;
  FILETIME written = {};
  const LSTATUS status = RegQueryInfoKeyW(key_.Get(), nullptr, nullptr, nullptr, &stamp.subKeys, nullptr,
                                          nullptr, &stamp.values, nullptr, nullptr, nullptr, &written);
  stamp.written = NumberOf(written);
  return status == ERROR_SUCCESS ? std::optional(stamp) : std::nullopt;
}

bool KeyListing::IsSettled(const std::optional<Stamp>& stamp) noexcept {
  if (!stamp) return false;
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  const auto age = static_cast<std::int64_t>(NumberOf(now) - stamp->written);
  // The clock may have been put back.
  return age >= kClockStep || age <= -kClockStep;
}

KeyListing::Enumeration KeyListing::Enumerate(Of what) const {
  Enumeration names;
  if (what == Of::kSubKeys) {
    for (const std::wstring& name : SubKeyNames(Key())) names.Add(name, {});
    return names;
  }
  RegistryValueReader values(Key());
  while (values.Next()) {
    CheckTerminated();
    names.Add(values.Name(), values.Text());
  }
  return names;
}

// As the last one has them, and behind that what only those before have.
KeyListing::Enumeration KeyListing::Unite(const std::vector<Enumeration>& rounds) {
  Enumeration all;
  std::set<std::wstring_view, NameOrder> known;
  for (auto round = rounds.rbegin(); round != rounds.rend(); ++round) {
    for (const Entry& entry : round->entries) {
      const std::wstring_view name = round->NameOf(entry);
      if (known.insert(name).second) all.Add(name, round->TextOf(entry));
    }
  }
  return all;
}

}  // namespace smh
