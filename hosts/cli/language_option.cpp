#include "hosts/cli/language_option.h"

#include "hosts/cli/command_line.h"
#include "hosts/cli/texts/usage_texts.h"

#include <string_view>

namespace smh {

std::optional<Language> WantedLanguage(std::span<const std::wstring> arguments) {
  constexpr std::wstring_view kOption = L"--language";
  std::optional<std::wstring_view> name;
  for (std::size_t i = 0; i < arguments.size() && arguments[i] != L"--"; ++i) {
    const std::wstring_view argument = arguments[i];
    if (argument == kOption && i + 1 < arguments.size()) {
      name = arguments[++i];
    } else if (argument.starts_with(kOption) && argument.substr(kOption.size()).starts_with(L'=')) {
      name = argument.substr(kOption.size() + 1);
    }
  }
  if (!name) return std::nullopt;
  if (const std::optional<Language> language = LanguageByName(*name)) return language;
  throw WithHelpHint(UsageError(Say(texts::kWrongLanguage, *name)), {});
}

}  // namespace smh
