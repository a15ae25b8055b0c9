#include "tests/support/test_main.h"

#include "infra/runtime/exceptions.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string_view>

namespace smh::test {

namespace {

constexpr std::wstring_view kChildSwitch = L"--child=";

std::map<std::wstring, ChildFunction>& Children() {
  static std::map<std::wstring, ChildFunction> children;
  return children;
}

int RunChild(const std::wstring& name, const ChildArguments& arguments) {
  try {
    return Children().at(name)(arguments);
    // Where the parent shows them.
  } catch (const Exception& exception) {
    std::printf("child %ls let out %ls: %ls\n", name.c_str(), exception.ClassName(),
                exception.Message().c_str());
    return 97;
  } catch (const std::exception& exception) {
    std::printf("child %ls let out: %s\n", name.c_str(), exception.what());
    return 97;
  }
}

}  // namespace

ChildRegistration::ChildRegistration(const wchar_t* name, ChildFunction function) {
  Children().emplace(name, function);
}

}  // namespace smh::test

int wmain(int count, wchar_t** values) {
  using namespace smh::test;
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  std::wstring child;
  ChildArguments arguments;
  for (int i = 1; i < count; ++i) {
    const std::wstring_view argument = values[i];
    if (child.empty() && argument.starts_with(kChildSwitch)) {
      child = argument.substr(kChildSwitch.size());
    } else {
      arguments.emplace_back(argument);
    }
  }
  if (!child.empty()) return RunChild(child, arguments);
  testing::InitGoogleTest(&count, values);
  return RUN_ALL_TESTS();
}
