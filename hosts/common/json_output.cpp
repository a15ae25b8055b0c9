#include "hosts/common/json_output.h"

#include "hosts/common/text_encoding.h"

#include <windows.h>

namespace smh {

namespace {

struct JsonVisitor {
  std::wstring operator()(std::monostate) const { return L"null"; }
  std::wstring operator()(bool value) const { return value ? L"true" : L"false"; }
  std::wstring operator()(std::int64_t value) const { return std::to_wstring(value); }
  std::wstring operator()(const std::wstring& value) const { return JsonText(value); }
  std::wstring operator()(const std::vector<std::wstring_view>& names) const {
    std::wstring list;
    for (const std::wstring_view name : names) {
      if (!list.empty()) list += L',';
      list += JsonText(name);
    }
    return L'[' + list + L']';
  }
};

// The two-character escape of a character that has one; 0 otherwise.
wchar_t ShortEscape(std::uint32_t value) {
  switch (value) {
    case L'"':
      return L'"';
    case L'\\':
      return L'\\';
    case L'\b':
      return L'b';
    case L'\f':
      return L'f';
    case L'\n':
      return L'n';
    case L'\r':
      return L'r';
    case L'\t':
      return L't';
    default:
      return 0;
  }
}

}  // namespace

std::wstring JsonText(std::wstring_view text) {
  std::wstring json = L"\"";
  ForEachCodePoint(text, [&](std::uint32_t value, std::wstring_view units) {
    if (const wchar_t escape = ShortEscape(value)) {
      json += {L'\\', escape};
    } else if (IsUnprintable(value)) {
      wchar_t hexadecimal[8];
      wsprintfW(hexadecimal, L"\\u%04x", static_cast<unsigned>(value));
      json += hexadecimal;
    } else {
      json += units;
    }
  });
  return json + L'"';
}

std::wstring JsonValue(const FieldValue& value) {
  return std::visit(JsonVisitor(), value);
}

std::wstring JsonMember(std::wstring_view key, std::wstring_view json) {
  return JsonText(key).append(1, L':').append(json);
}

std::wstring JsonArray(std::span<const std::wstring> elements) {
  std::wstring json = L"[";
  for (const std::wstring& element : elements) {
    json += json.size() == 1 ? L"\n" : L",\n";
    json += element;
  }
  return json + (elements.empty() ? L"]\n" : L"\n]\n");
}

}  // namespace smh
