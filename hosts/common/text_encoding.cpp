#include "hosts/common/text_encoding.h"

#include <windows.h>

#include <algorithm>
#include <iterator>
#include <optional>

namespace smh {

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;
constexpr wchar_t kEllipsis = 0x2026;

struct Range {
  std::uint32_t first, last;
};

constexpr Range kUnprintable[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C}, {0x200E, 0x200F},
                                  {0x2028, 0x202E}, {0x2066, 0x2069}, {0xD800, 0xDFFF}};
constexpr Range kWide[] = {{0x1100, 0x115F},   {0x2E80, 0xA4CF},  {0xAC00, 0xD7A3}, {0xF900, 0xFAFF},
                           {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F},
                           {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};
constexpr Range kCombining[] = {{0x0300, 0x036F}, {0x1AB0, 0x1AFF}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}};

template <std::size_t Count>
bool Contains(const Range (&ranges)[Count], std::uint32_t codePoint) noexcept {
  return std::any_of(std::begin(ranges), std::end(ranges), [codePoint](Range range) {
    return codePoint >= range.first && codePoint <= range.last;
  });
}

std::size_t CellsOf(std::uint32_t codePoint) noexcept {
  if (Contains(kCombining, codePoint)) return 0;
  return Contains(kWide, codePoint) ? 2 : 1;
}

void AppendUtf8(std::string& bytes, std::uint32_t value) {
  const auto tail = [value](int shift) { return static_cast<char>(0x80 | ((value >> shift) & 0x3F)); };
  if (value < 0x80) {
    bytes += static_cast<char>(value);
  } else if (value < 0x800) {
    bytes += {static_cast<char>(0xC0 | (value >> 6)), tail(0)};
  } else if (value < 0x10000) {
    bytes += {static_cast<char>(0xE0 | (value >> 12)), tail(6), tail(0)};
  } else {
    bytes += {static_cast<char>(0xF0 | (value >> 18)), tail(12), tail(6), tail(0)};
  }
}

void AppendUtf16(std::wstring& text, std::uint32_t value) {
  if (value >= 0x10000) {
    text += static_cast<wchar_t>(0xD800 + ((value - 0x10000) >> 10));
    value = 0xDC00 + ((value - 0x10000) & 0x3FF);
  }
  text += static_cast<wchar_t>(value);
}

// The code point that begins at `position`, which moves behind it; one byte that begins none is replaced.
std::uint32_t TakeUtf8(std::string_view bytes, std::size_t& position) {
  const auto at = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char lead = at(position++);
  if (lead < 0x80) return lead;
  const std::size_t tails = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  constexpr std::uint32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
  if (lead < 0xC2 || lead > 0xF4 || bytes.size() - position < tails) return kReplacement;
  std::uint32_t value = lead & (0x3Fu >> tails);
  for (std::size_t i = 0; i < tails; ++i) {
    if ((at(position + i) & 0xC0) != 0x80) return kReplacement;
    value = value << 6 | (at(position + i) & 0x3Fu);
  }
  if (value < kLeast[tails] || value > 0x10FFFF) return kReplacement;
  position += tails;
  return value;
}

// The value of `text` as hexadecimal digits; none for anything else.
std::optional<std::uint32_t> HexValue(std::wstring_view text) {
  if (text.empty() || text.size() > 6) return std::nullopt;
  std::uint32_t value = 0;
  for (const wchar_t unit : text) {
    const wchar_t lower = unit >= L'A' && unit <= L'F' ? static_cast<wchar_t>(unit - L'A' + L'a') : unit;
    if (lower >= L'0' && lower <= L'9') {
      value = value * 16 + static_cast<std::uint32_t>(lower - L'0');
    } else if (lower >= L'a' && lower <= L'f') {
      value = value * 16 + static_cast<std::uint32_t>(lower - L'a' + 10);
    } else {
      return std::nullopt;
    }
  }
  return value > 0x10FFFF ? std::nullopt : std::optional(value);
}

}  // namespace

bool IsSurrogate(std::uint32_t codePoint) noexcept {
  return codePoint >= 0xD800 && codePoint <= 0xDFFF;
}

CodePoint CodePointAt(std::wstring_view text, std::size_t position) noexcept {
  const std::uint32_t first = text[position];
  if (first < 0xD800 || first > 0xDBFF || position + 1 >= text.size()) return {first, 1};
  const std::uint32_t second = text[position + 1];
  if (second < 0xDC00 || second > 0xDFFF) return {first, 1};
  return {0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00), 2};
}

std::string ToUtf8(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  ForEachCodePoint(text, [&](std::uint32_t value, std::wstring_view) { AppendUtf8(bytes, value); });
  return bytes;
}

std::wstring FromUtf8(std::string_view bytes) {
  std::wstring text;
  for (std::size_t position = 0; position < bytes.size();) AppendUtf16(text, TakeUtf8(bytes, position));
  return text;
}

bool IsUnprintable(std::uint32_t codePoint) noexcept {
  return Contains(kUnprintable, codePoint);
}

std::wstring Printable(std::wstring_view text) {
  std::wstring result;
  result.reserve(text.size());
  ForEachCodePoint(text, [&result](std::uint32_t value, std::wstring_view units) {
    if (!IsUnprintable(value)) {
      result += units;
      return;
    }
    wchar_t escape[16];
    wsprintfW(escape, L"\\u{%x}", static_cast<unsigned>(value));
    result += escape;
  });
  return result;
}

std::wstring DecodeEscapes(std::wstring_view text) {
  std::wstring result;
  for (std::size_t i = 0; i < text.size();) {
    std::optional<std::uint32_t> value;
    std::size_t length = 0;
    if (text.substr(i, 3) == L"\\u{") {
      const std::size_t end = text.find(L'}', i);
      if (end != std::wstring_view::npos)
        value = HexValue(text.substr(i + 3, end - i - 3)), length = end + 1 - i;
    } else if (text.substr(i, 2) == L"\\u" && text.size() - i >= 6) {
      value = HexValue(text.substr(i + 2, 4)), length = 6;
    }
    if (value) {
      AppendUtf16(result, *value);
      i += length;
    } else {
      result += text[i++];
    }
  }
  return result;
}

std::size_t DisplayWidth(std::wstring_view text) noexcept {
  std::size_t width = 0;
  ForEachCodePoint(text, [&](std::uint32_t value, std::wstring_view) { width += CellsOf(value); });
  return width;
}

std::wstring CutEnd(std::wstring_view text, std::size_t width) {
  if (DisplayWidth(text) <= width) return std::wstring(text);
  if (width == 0) return {};
  std::size_t cells = 0;
  std::size_t end = 0;
  while (end < text.size()) {
    const CodePoint point = CodePointAt(text, end);
    if (cells + CellsOf(point.value) > width - 1) break;
    cells += CellsOf(point.value);
    end += point.units;
  }
  return std::wstring(text.substr(0, end)) + kEllipsis;
}

std::wstring CutBeginning(std::wstring_view text, std::size_t width) {
  std::size_t cells = DisplayWidth(text);
  if (cells <= width) return std::wstring(text);
  if (width == 0) return {};
  std::size_t start = 0;
  while (start < text.size() && cells > width - 1) {
    const CodePoint point = CodePointAt(text, start);
    cells -= CellsOf(point.value);
    start += point.units;
  }
  return kEllipsis + std::wstring(text.substr(start));
}

std::wstring LowerCase(std::wstring text) {
  CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
  return text;
}

}  // namespace smh
