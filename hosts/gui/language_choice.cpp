#include "hosts/gui/language_choice.h"

#include "hosts/common/host_error.h"
#include "hosts/common/language.h"
#include "hosts/common/texts/failure_texts.h"
#include "hosts/gui/message_dialog.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/dialog_texts.h"
#include "hosts/gui/window.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/module_path.h"

#include <shellapi.h>

#include <string_view>

namespace smh {

namespace {

constexpr std::wstring_view kOption = L"--language";

// What stands behind the option, or in it behind "="; none without the option.
std::optional<std::wstring> LanguageOption() {
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  std::optional<std::wstring> value;
  for (int i = 1; arguments != nullptr && i < count && !value; ++i) {
    const std::wstring_view argument = arguments[i];
    if (argument == kOption) {
      value = i + 1 < count ? arguments[i + 1] : L"";
    } else if (argument.starts_with(kOption) && argument[kOption.size()] == L'=') {
      value = argument.substr(kOption.size() + 1);
    }
  }
  LocalFree(arguments);
  return value;
}

Language WantedLanguage() {
  const std::optional<std::wstring> option = LanguageOption();
  if (!option) return DefaultLanguage();
  const std::optional<Language> language = LanguageByName(*option);
  if (!language) ShowFault(nullptr, Format(texts::kNoSuchLanguage, *option));
  return language.value_or(Language::kEnglish);
}

// None is the system's.
std::optional<Language> LanguageOf(UINT command) noexcept {
  if (command == CMD_LANGUAGE_SYSTEM) return std::nullopt;
  return static_cast<Language>(command - CMD_LANGUAGE_ENGLISH);
}

}  // namespace

void SetUpLanguage() {
  SetLanguage(WantedLanguage());
  if (IsMirrored(CurrentLanguage())) SetProcessDefaultLayout(LAYOUT_RTL);
}

UINT SavedLanguageCommand() {
  const std::optional<Language> saved = SavedLanguage();
  return saved ? CMD_LANGUAGE_ENGLISH + static_cast<UINT>(*saved) : UINT{CMD_LANGUAGE_SYSTEM};
}

bool ChangeLanguage(HWND owner, UINT command) {
  try {
    SaveLanguage(LanguageOf(command));
  } catch (const EOSError& error) {
    throw HostError(Say(texts::kCannotSaveLanguage, SystemErrorText(error.Result())));
  }
  return DefaultLanguage() != CurrentLanguage() && ShowMessage(owner, {.title = kProgramTitle,
                                                                       .text = texts::kLanguageText.Get(),
                                                                       .icon = IDI_QUESTION,
                                                                       .verb = texts::kLanguageVerb.Get()});
}

void StartAgain() {
  const std::wstring program = ModuleFileName(nullptr);
  STARTUPINFOW start = {};
  start.cb = sizeof(start);
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(program.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                      &process)) {
    const DWORD error = GetLastError();
    throw HostError(Format(texts::kCannotRestart, SystemErrorText(HRESULT_FROM_WIN32(error))));
  }
  const ScopedHandle thread(process.hThread);
  const ScopedHandle started(process.hProcess);
}

}  // namespace smh
