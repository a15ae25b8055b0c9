// Registry entries in any number, on the real machine: the keys they go to are emptied first and put back at
// the end.
#pragma once

#include "benchmarks/sample_programs.h"
#include "tests/support/known_keys.h"
#include "tests/support/registry_fixture.h"

#include <memory>
#include <string>
#include <vector>

namespace smh::bench {

// Of the value of a Run key.
std::wstring EntryName(int index);

// Values of the two Run keys: the even ones the user's, the odd ones everybody's in the own view.
class RunValues {
 public:
  explicit RunValues(const Programs& programs);
  // The entries 0 to count - 1 and no others.
  void Fill(int count);
  void SetCommand(int index, const std::wstring& command) const;
  void Remove(int index) const;

 private:
  HKEY KeyOf(int index) const { return (index % 2 == 0 ? user_ : common_).Get(); }

  const Programs& programs_;
  test::EmptiedKeys emptied_;
  ScopedKey user_;
  ScopedKey common_;
  int filled_ = 0;
};

// Context menu handlers of every file type, each with a server of its own class.
class Handlers {
 public:
  Handlers(const Programs& programs, int count);

 private:
  test::EmptiedKeys emptied_;
  std::vector<std::unique_ptr<test::RegistryTree>> classes_;
};

}  // namespace smh::bench
