// Registry texts that name a resource: "file,number".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace smh {

// The file and, as the shell counts them, an index or (negative) an identifier of a resource in it.
struct IndirectString {
  std::wstring file;
  std::int32_t number = 0;
};

// Splits at the last comma. What follows it must be a number, which a remark after ";" or "#" may follow;
// otherwise the whole text is the file and the number 0. The file is trimmed and freed of enclosing quotes,
// and its environment references are expanded.
IndirectString SplitIndirectString(std::wstring_view text);

}  // namespace smh
