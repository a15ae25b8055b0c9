#include "hosts/cli/consent.h"

#include "hosts/cli/console.h"
#include "hosts/common/host_error.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/ascii_text.h"
#include "infra/runtime/text.h"

#include <windows.h>

namespace smh {

namespace {

bool IsTerminal(DWORD stream) noexcept {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

std::wstring ReadAnswer() {
  wchar_t line[64];
  DWORD count = 0;
  if (!ReadConsoleW(GetStdHandle(STD_INPUT_HANDLE), line, ARRAYSIZE(line), &count, nullptr)) return {};
  return Trim(std::wstring_view(line, count));
}

bool IsYes(std::wstring_view answer) {
  for (const Text* const text : {&texts::kYesLetter, &texts::kYesWord}) {
    if (SameAsciiText(answer, text->Get()) || SameAsciiText(answer, text->In(Language::kEnglish)))
      return true;
  }
  return false;
}

}  // namespace

void RequireConsent(const std::wstring& what, bool isGiven, std::wstring_view otherwise) {
  if (isGiven) return;
  if (!IsTerminal(STD_INPUT_HANDLE) || !IsTerminal(STD_ERROR_HANDLE)) {
    throw HostError(Say(texts::kNeedsYes, what, otherwise, texts::kNothingWasChanged));
  }
  // Quiet or not: without it nobody would know what is waited for.
  WriteError(Format(texts::kGoOn, Printable(what)));
  const std::wstring answer = ReadAnswer();
  if (!IsYes(answer)) throw HostError(texts::kNothingWasChanged);
}

}  // namespace smh
