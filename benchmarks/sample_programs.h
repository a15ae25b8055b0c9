// The programs that the sample entries start: with version records, and far fewer than there are entries, as
// on real machines.
#pragma once

#include "tests/support/file_fixture.h"

#include <string>
#include <vector>

namespace smh::bench {

// Copies of the sample program in a folder of their own, without blanks in their paths.
class Programs {
 public:
  explicit Programs(int count);
  const std::wstring& operator[](int index) const {
    return paths_[static_cast<std::size_t>(index) % paths_.size()];
  }

 private:
  test::TemporaryFolder folder_;
  std::vector<std::wstring> paths_;
};

}  // namespace smh::bench
