#include "locations/registry/class_watch.h"

#include "locations/registry/key_watch.h"

#include <optional>
#include <vector>

namespace smh {

struct ClassWatch {
  std::optional<KeyWatch> watch;
  std::uint64_t changes = 0;
};

constinit ModuleGlobal<ClassWatch> g_classWatch(L"class_watch");

std::uint64_t ClassChanges() {
  constexpr wchar_t kIdentifiers[] = L"Software\\Classes\\CLSID";
  ClassWatch& classes = *g_classWatch;
  if (!classes.watch) {
    classes.watch.emplace(
        std::vector<WatchedKey>{{HKEY_LOCAL_MACHINE, kIdentifiers}, {HKEY_CURRENT_USER, kIdentifiers}});
  }
  if (classes.watch->IsDue()) {
    classes.watch->Accept();
    ++classes.changes;
  }
  return classes.changes;
}

}  // namespace smh
