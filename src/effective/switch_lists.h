// Task Manager's switches as they were read at one time: the values of the keys below StartupApproved.
#pragma once

#include "core/contracts/location_table.h"
#include "effective/start_rows.h"
#include "effective/switch_value.h"
#include "infra/registry/full_value_path.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// The path of a list below the root, always in the system's view.
std::wstring SwitchKeyPath(SwitchList list);

// Constant once it is read; for any thread then.
class SwitchLists {
 public:
  // Two calls of the registry for each root where there is none. What cannot be read is untold. Raises
  // std::bad_alloc.
  void Read();

  // `root` is kUser or kMachine. On without a value. Neither disk nor registry is touched.
  SwitchValue Find(LocationRoot root, SwitchList list, std::wstring_view name) const noexcept;
  // Whether this process may write the switches of that root.
  bool IsWritable(LocationRoot root) const noexcept { return RootOf(root).isWritable; }

 private:
  struct NamedSwitch {
    std::wstring name;
    SwitchValue value;
  };
  struct List {
    // Sorted by name.
    std::vector<NamedSwitch> switches;
    bool isUntold = false;
  };
  struct Root {
    std::array<List, 3> lists;
    bool isWritable = false;
  };

  static void ReadList(HKEY parent, SwitchList list, List& into);
  static Root ReadRoot(HKEY root);
  const Root& RootOf(LocationRoot root) const noexcept {
    return root == LocationRoot::kUser ? user_ : machine_;
  }

  Root user_;
  Root machine_;
};

}  // namespace smh
