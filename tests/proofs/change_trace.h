// The registry calls by which this process changes values, as they happen, and what another process does to
// the same values: afterwards it can be told who took away what.
#pragma once

#include "tests/support/import_patch.h"

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace smh::test {

// What a value holds: its units up to a NUL, whatever its type. Empty for a missing value.
std::wstring ContentOf(const void* bytes, DWORD size);
// A value by its real key, "HKEY_USERS\...\Run\name"; only compared.
std::wstring ValuePlace(HKEY key, const wchar_t* name);
// The moment, on a clock that all processes share.
long long Now();

// One call of the system that sets or deletes a value.
struct TracedCall {
  // Who: a change of this process by its number, or the outside program.
  static constexpr int kOutside = -1;
  int change = kOutside;
  std::wstring place;
  // Empty for a deletion.
  std::wstring written;
  // Of this process: what stood there directly before the call, what the thread had seen there last, and
  // whether that was the last that it saw at all.
  std::wstring stood;
  std::wstring seen;
  bool isLastLook = false;
  // Between which moments it happened.
  long long begin = 0;
  long long end = 0;

  long long Middle() const noexcept { return begin + (end - begin) / 2; }
  bool Overlaps(const TracedCall& other) const noexcept { return begin <= other.end && other.begin <= end; }
};

// What this thread does meanwhile belongs to the change of that number.
struct TracedChange {
  explicit TracedChange(int theNumber);
  ~TracedChange();
  TracedChange(const TracedChange&) = delete;
  TracedChange& operator=(const TracedChange&) = delete;

  const int number;
  // What the thread has read last, by place, and where that was last of all.
  std::map<std::wstring, std::wstring> seen;
  std::wstring lookedAt;
};

// Gathers the calls that modules make through their imports for traced changes. One at a time.
class ChangeTrace {
 public:
  // A null module is this program.
  explicit ChangeTrace(std::initializer_list<HMODULE> modules);
  ~ChangeTrace();
  ChangeTrace(const ChangeTrace&) = delete;
  ChangeTrace& operator=(const ChangeTrace&) = delete;

  // All so far; they are forgotten.
  static std::vector<TracedCall> Take();

 private:
  std::vector<std::unique_ptr<ImportPatch>> patches_;
};

}  // namespace smh::test
