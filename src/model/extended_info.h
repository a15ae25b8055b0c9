// The expensive facts of an entry: file times and size, type name, rating and icons. What cannot be told
// stays as it is.
#pragma once

#include "model/icon_source.h"
#include "model/item_details.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <tuple>

namespace smh {

// Puts file times and size, of an existing file, and the type name into `details`, from the disk and the
// shell. Any thread with COM initialised, without a lock. Raises what basekit's services raise, and
// std::bad_alloc.
void ReadFileFacts(ItemDetails& details);

// One pass over the items: a file that many of them start is looked at once. Read thread only: the shell
// wants COM initialised on the calling thread.
class ExtendedPass {
 public:
  // Each call gives what is known of a further item that Read is going to be called for, in their order; none
  // at the end. Called inside of Read.
  using Upcoming = std::function<std::optional<ItemDetails>()>;

  // With icons when they are shown (model/reading.h).
  explicit ExtendedPass(Upcoming upcoming = nullptr);

  // Completes `details`, the caller's copy. Call it without holding a lock. For a missing file rating and
  // icon stay as they are. Raises what the services of basekit and raterkit raise, EOSError when the image
  // lists cannot be made, and EAbort when the reader was asked to end; the file is looked at again then.
  void Read(ItemDetails& details);

 private:
  // File, and the icon that stands for it.
  using Key = std::tuple<std::wstring, std::wstring, int>;

  static Key KeyOf(const ItemDetails& details);
  void ReadIcon(ItemDetails& details);
  std::optional<IconQuestion> NextQuestion();

  std::map<Key, ExtendedDetails> known_;
  Key current_;
  Upcoming upcoming_;
  std::optional<IconSource> icons_;
};

}  // namespace smh
