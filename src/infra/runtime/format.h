// Message formatting with the two handles the system's texts use: %s (text) and %d (signed decimal); %% is
// a percent sign.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace smh {

using FormatArgument = std::variant<std::wstring_view, std::int64_t>;

// Raises EConvertError when a handle is unknown, has no argument, or has one of the other kind. Arguments
// left over are ignored.
std::wstring FormatList(std::wstring_view format, std::initializer_list<FormatArgument> arguments);
// Appends an argument that is a text.
using TextInsertion = void (*)(std::wstring& result, std::wstring_view text);
// The same at the end of a text; when it raises, a part may stand there. Without `insert` texts are inserted
// as they stand.
void AppendFormatList(std::wstring& result, std::wstring_view format,
                      std::initializer_list<FormatArgument> arguments, TextInsertion insert = nullptr);

inline FormatArgument ToFormatArgument(std::wstring_view text) {
  return text;
}
inline FormatArgument ToFormatArgument(std::int64_t number) {
  return number;
}

template <typename... Arguments>
std::wstring Format(std::wstring_view format, const Arguments&... arguments) {
  return FormatList(format, {ToFormatArgument(arguments)...});
}

}  // namespace smh
