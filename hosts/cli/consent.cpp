#include "hosts/cli/consent.h"

#include "hosts/cli/console.h"
#include "hosts/common/host_error.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/ascii_text.h"
#include "infra/runtime/text.h"

#include <windows.h>

namespace smh {

namespace {

constexpr wchar_t kNothingChanged[] = L"Nothing was changed.";

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

}  // namespace

void RequireConsent(const std::wstring& what, bool isGiven, std::wstring_view otherwise) {
  if (isGiven) return;
  if (!IsTerminal(STD_INPUT_HANDLE) || !IsTerminal(STD_ERROR_HANDLE)) {
    std::wstring message = what + L": --yes goes on without a question";
    throw HostError(message.append(otherwise).append(L". ").append(kNothingChanged));
  }
  // Quiet or not: without it nobody would know what is waited for.
  WriteError(Printable(what) + L". Go on (y/n)?");
  const std::wstring answer = ReadAnswer();
  if (!SameAsciiText(answer, L"y") && !SameAsciiText(answer, L"yes")) throw HostError(kNothingChanged);
}

}  // namespace smh
