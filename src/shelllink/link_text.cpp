#include "shelllink/link_text.h"

#include <windows.h>

namespace smh {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

std::wstring WidenAnsi(std::string_view text) {
  if (text.empty()) return {};
  const int size = static_cast<int>(text.size());
  // No code page makes more than one unit of a byte.
  std::wstring wide(text.size(), L'\0');
  const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(length));
  return wide;
}

std::wstring ToWide(const StoredText& text) {
  if (!text.IsUtf16()) return WidenAnsi(text.AnsiView());
  std::wstring wide(text.Utf16Length(), L'\0');
  text.CopyUtf16(wide.data());
  return wide;
}

}  // namespace smh
