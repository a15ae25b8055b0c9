// Replaces what this program gets from GetProcAddress, so that an entry point can be missing or fail.
#pragma once

#include <windows.h>

#include <string>

namespace smh::test {

class ImportHook {
 public:
  // `name` is a text or an ordinal below 65,536; a null `replacement` makes it missing. One at a time per
  // name.
  template <typename Function>
  ImportHook(const char* name, Function* replacement)
      : ImportHook(name, reinterpret_cast<void*>(replacement)) {}
  ImportHook(const char* name, void* replacement);
  ~ImportHook();
  ImportHook(const ImportHook&) = delete;
  ImportHook& operator=(const ImportHook&) = delete;

 private:
  std::string name_;
};

}  // namespace smh::test
