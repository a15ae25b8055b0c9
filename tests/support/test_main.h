// Every suite's main. It runs the tests, or, when an argument reads `--child=NAME`, one registered function
// as a process of its own (see child_process.h), whose exit code is 97 when the
// function let an exception out or is not there.
#pragma once

#include <string>
#include <vector>

namespace smh::test {

// The arguments of the child without `--child=NAME`.
using ChildArguments = std::vector<std::wstring>;
using ChildFunction = int (*)(const ChildArguments& arguments);

struct ChildRegistration {
  ChildRegistration(const wchar_t* name, ChildFunction function);
};

}  // namespace smh::test

// Defines the function that `--child=name` runs; its result is the exit code.
#define SMH_CHILD(name)                                                                         \
  static int Child_##name(const ::smh::test::ChildArguments& arguments);                        \
  static const ::smh::test::ChildRegistration registration_of_##name(L"" #name, &Child_##name); \
  static int Child_##name([[maybe_unused]] const ::smh::test::ChildArguments& arguments)
