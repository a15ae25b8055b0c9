#include "infra/runtime/format.h"

#include "infra/runtime/exceptions.h"

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

void AppendArgument(std::wstring& result, wchar_t handle, const FormatArgument& argument,
                    std::wstring_view format, TextInsertion insert) {
  const auto* const text = std::get_if<std::wstring_view>(&argument);
  const auto* const number = std::get_if<std::int64_t>(&argument);
  if (handle == L's' && text != nullptr) {
    insert(result, *text);
  } else if (handle == L'd' && number != nullptr) {
    result += std::to_wstring(*number);
  } else {
    RaiseInvalidFormat(format);
  }
}

}  // namespace

void AppendFormatList(std::wstring& result, std::wstring_view format,
                      std::initializer_list<FormatArgument> arguments, TextInsertion insert) {
  if (insert == nullptr) {
    result.reserve(result.size() + RoomFor(format, arguments));
    insert = [](std::wstring& whole, std::wstring_view text) { whole += text; };
  }
  auto argument = arguments.begin();
  for (std::wstring_view rest = format;;) {
    const std::size_t percent = rest.find(L'%');
    result.append(rest.substr(0, percent));
    if (percent == std::wstring_view::npos) return;
    rest.remove_prefix(percent + 1);
    const wchar_t handle = rest.empty() ? L'\0' : rest.front();
    if (handle == L'%') {
      result += L'%';
    } else if (argument == arguments.end()) {
      RaiseInvalidFormat(format);
    } else {
      AppendArgument(result, handle, *argument++, format, insert);
    }
    rest.remove_prefix(1);
  }
}

std::wstring FormatList(std::wstring_view format, std::initializer_list<FormatArgument> arguments) {
  std::wstring result;
  AppendFormatList(result, format, arguments);
  return result;
}

}  // namespace smh
