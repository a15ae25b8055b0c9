// The expensive facts of an entry: file times and size, type name, rating and icons.
#pragma once

#include "model/item_details.h"

#include <map>
#include <string>
#include <tuple>

namespace smh {

// File times and size, of an existing file, and the type name, from the disk and the shell. Any thread with
// COM initialised.
void ReadFileFacts(ItemDetails& details);

// One pass over the items: a file that many of them start is looked at once. Read thread only: the shell
// wants COM initialised on the calling thread.
class ExtendedPass {
 public:
  // Completes `details`. Call it without holding a lock. For a missing file rating and icon stay as they are.
  // Raises what the services raise.
  void Read(ItemDetails& details);

 private:
  // File, and the icon that stands for it.
  using Key = std::tuple<std::wstring, std::wstring, int>;

  std::map<Key, ExtendedDetails> known_;
};

}  // namespace smh
