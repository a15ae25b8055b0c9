#include "shelllink/link_text.h"

#include <windows.h>

namespace smh {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

std::wstring WidenAnsi(std::string_view text) {
  if (text.empty()) return {};
  const int size = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), length);
  return wide;
}

std::wstring ToWide(const StoredText& text) {
  if (!text.IsUtf16()) return WidenAnsi(text.AnsiView());
  std::wstring wide(text.Utf16Length(), L'\0');
  text.CopyUtf16(wide.data());
  return wide;
}

}  // namespace smh
