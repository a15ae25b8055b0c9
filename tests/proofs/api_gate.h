// The registry and file operations that modules make through their imports, counted; one of them, or all from
// one on, can be made to fail, to end the process, or to find another program at work.
#pragma once

#include "tests/support/import_patch.h"

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace smh::test {

enum class Fault {
  kNone,
  kRefused,    // not performed, answers an error
  kPretended,  // not performed, answers success
  kLate,       // performed, answers an error all the same
  kDeath,      // the process ends before it is performed
  kRefusedOn,  // refused, and so are all behind it
  kFullOn,     // the same for what needs room on the disk
  kOutside,    // another program comes first
};

// What a call does; bits.
inline constexpr unsigned kLooks = 1;
inline constexpr unsigned kOpens = 2;  // for writing, what is there
inline constexpr unsigned kMakes = 4;  // a key or a file, or opens it for writing
inline constexpr unsigned kWrites = 8;
inline constexpr unsigned kDeletes = 16;
inline constexpr unsigned kChanges = kWrites | kDeletes;
inline constexpr unsigned kEvery = kLooks | kOpens | kMakes | kChanges;

struct SeenCall {
  int number;
  const char* name;
  unsigned effect;
  // A path; behind a bar the name of a value or subkey.
  std::wstring place;
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
  // refusal counts every operation, a pretence those that change something, the others also those that make
  // something.
  void Arm(Fault fault, int number);
  // All calls of that kind are refused from that number on; they alone count.
  void ArmFrom(int number, unsigned calls);
  // `outside` runs, uncounted, before the call with that number; every call counts.
  void ArmOutside(int number, std::function<void()> outside);
  // From now on there is room for so many operations.
  void ArmFullDisk(int room);
  // Ends it: the name of the function that suffered first; null when there were fewer calls.
  const char* Disarm();
  // How many calls counted in the last round.
  int Count() const noexcept;
  // The calls since the other program was there.
  const std::vector<SeenCall>& Trace() const noexcept;

 private:
  void Begin(Fault fault, int number, unsigned counted);

  std::vector<std::unique_ptr<ImportPatch>> patches_;
};

}  // namespace smh::test
