// The registry and file operations that modules make through their imports, counted; one of them can be made
// to fail, or to end the process.
#pragma once

#include "tests/support/import_patch.h"

#include <initializer_list>
#include <vector>

namespace smh::test {

enum class Fault {
  kNone,
  kRefused,    // not performed, answers an error
  kPretended,  // not performed, answers success
  kLate,       // performed, answers an error all the same
  kDeath,      // the process ends before it is performed
};

// One at a time. Calls of other threads pass uncounted.
class ApiGate {
 public:
  // A null module is this program.
  explicit ApiGate(std::initializer_list<HMODULE> modules = {nullptr});
  ~ApiGate();
  ApiGate(const ApiGate&) = delete;
  ApiGate& operator=(const ApiGate&) = delete;

  // From now on the calls of this thread count, from 1, and the one with that number suffers the fault. A
  // refusal counts every operation, a death every one that makes or changes something, the others those that
  // change something.
  void Arm(Fault fault, int number);
  // Ends it: the name of the function that suffered; null when there were fewer calls.
  const char* Disarm();
  // How many calls counted in the last round.
  int Count() const noexcept;

 private:
  std::vector<std::unique_ptr<ImportPatch>> patches_;
};

}  // namespace smh::test
