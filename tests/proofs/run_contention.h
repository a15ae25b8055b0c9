// The values that a program outside and the changes of this process fight for, and that program.
#pragma once

#include "core/contracts/location_table.h"
#include "tests/proofs/change_trace.h"
#include "tests/support/child_process.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"

namespace smh::test {

// A Run key or its side key.
struct RunPlace {
  TTypeStartupLocation location;
  HKEY root;
  std::wstring key;
};
const std::vector<RunPlace>& RunPlaces();

// In every place there are values "c0", "c1", ... so many.
inline constexpr int kContended = 5;

// Programs that do not exist, each with a name of its own: a location takes only one entry of a program.
std::wstring CommandOf(const std::wstring& program, const std::wstring& argument);

// Writes, deletes and retypes the values for so long. Every text that it writes is another one.
class Contender {
 public:
  explicit Contender(DWORD milliseconds);
  // Waits for its end: what it did.
  std::vector<TracedCall> Finish();

 private:
  const TemporaryFolder folder_;
  const std::wstring log_ = folder_.Write(L"outside.txt", "");
  ChildProcess process_;
};

}  // namespace smh::test
