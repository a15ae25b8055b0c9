#include "hosts/common/text.h"

namespace smh {

std::wstring FillIn(std::wstring_view text, std::initializer_list<std::wstring_view> arguments) {
  std::wstring filled;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != L'%' || at + 1 == text.size()) {
      filled += text[at];
      continue;
    }
    const wchar_t which = text[++at];
    const std::size_t number = static_cast<std::size_t>(which - L'1');
    if (which == L'%') filled += which;
    if (number < arguments.size()) filled += arguments.begin()[number];
  }
  return filled;
}

}  // namespace smh
