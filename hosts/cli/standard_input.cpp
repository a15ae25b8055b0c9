#include "hosts/cli/standard_input.h"

#include "hosts/cli/texts/message_texts.h"
#include "hosts/common/host_error.h"
#include "hosts/common/reading.h"

#include <windows.h>

#include <array>

namespace smh {

namespace {

// Whether reading would not wait: something has come, or the other end is closed.
bool WouldNotWait(HANDLE pipe) noexcept {
  DWORD available = 0;
  return !PeekNamedPipe(pipe, nullptr, 0, nullptr, &available, nullptr) || available != 0;
}

}  // namespace

std::string ReadStandardInput(std::size_t cap) {
  const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
  DWORD mode = 0;
  if (input == nullptr || input == INVALID_HANDLE_VALUE || GetConsoleMode(input, &mode)) {
    throw UsageError(texts::kNoInput);
  }
  const bool isPipe = GetFileType(input) == FILE_TYPE_PIPE;
  std::string text;
  std::array<char, 4096> bytes;
  for (;;) {
    if (isPipe && !WaitForReader([input] { return WouldNotWait(input); })) {
      throw HostError(texts::kNoInputYet);
    }
    DWORD count = 0;
    if (!ReadFile(input, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr)) {
      const DWORD error = GetLastError();
      if (error == ERROR_BROKEN_PIPE || error == ERROR_HANDLE_EOF) return text;
      throw HostError(Say(texts::kCannotReadStandardInput, SystemErrorText(HRESULT_FROM_WIN32(error))));
    }
    if (count == 0) return text;
    text.append(bytes.data(), count);
    if (text.size() > cap) throw HostError(texts::kTooMuchInput);
  }
}

}  // namespace smh
