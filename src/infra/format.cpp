#include "infra/format.h"

#include "infra/exceptions.h"

namespace smh {

namespace {

[[noreturn]] void RaiseInvalidFormat(std::wstring_view format) {
  std::wstring message(L"Format '");
  message.append(format).append(L"' invalid or incompatible with argument");
  throw EConvertError(std::move(message));
}

std::size_t RoomFor(std::wstring_view format, std::initializer_list<FormatArgument> arguments) noexcept {
  std::size_t room = format.size();
  for (const FormatArgument& argument : arguments) {
    const auto* const text = std::get_if<std::wstring_view>(&argument);
    room += text == nullptr ? 20 : text->size();
  }
  return room;
}

}  // namespace

std::wstring FormatList(std::wstring_view format, std::initializer_list<FormatArgument> arguments) {
  std::wstring result;
  result.reserve(RoomFor(format, arguments));
  auto argument = arguments.begin();
  for (std::size_t i = 0; i < format.size(); ++i) {
    if (format[i] != L'%') {
      result += format[i];
      continue;
    }
    const wchar_t handle = ++i < format.size() ? format[i] : L'\0';
    if (handle == L'%') {
      result += L'%';
      continue;
    }
    if (argument == arguments.end()) RaiseInvalidFormat(format);
    const auto* const text = std::get_if<std::wstring_view>(argument);
    const auto* const number = std::get_if<std::int64_t>(argument);
    if (handle == L's' && text != nullptr) {
      result += *text;
    } else if (handle == L'd' && number != nullptr) {
      result += std::to_wstring(*number);
    } else {
      RaiseInvalidFormat(format);
    }
    ++argument;
  }
  return result;
}

}  // namespace smh
