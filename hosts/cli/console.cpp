#include "hosts/cli/console.h"

#include "hosts/common/host_error.h"
#include "hosts/common/text_encoding.h"

#include <algorithm>

namespace smh {

namespace {

// A console takes no more than 64 KB in one call.
constexpr std::size_t kConsoleChunk = 8192;

bool IsConsole(HANDLE stream) noexcept {
  DWORD mode = 0;
  return GetConsoleMode(stream, &mode) != 0;
}

bool WriteToConsole(HANDLE stream, std::wstring_view text) {
  for (std::size_t done = 0; done < text.size();) {
    const std::size_t chunk = std::min(text.size() - done, kConsoleChunk);
    DWORD written = 0;
    if (!WriteConsoleW(stream, text.data() + done, static_cast<DWORD>(chunk), &written, nullptr) ||
        written == 0) {
      return false;
    }
    done += written;
  }
  return true;
}

bool WriteToFile(HANDLE stream, std::wstring_view text) {
  const std::string bytes = ToUtf8(text);
  for (std::size_t done = 0; done < bytes.size();) {
    DWORD written = 0;
    if (!WriteFile(stream, bytes.data() + done, static_cast<DWORD>(bytes.size() - done), &written, nullptr) ||
        written == 0) {
      return false;
    }
    done += written;
  }
  return true;
}

bool Write(DWORD stream, std::wstring_view text) {
  const HANDLE handle = GetStdHandle(stream);
  return IsConsole(handle) ? WriteToConsole(handle, text) : WriteToFile(handle, text);
}

}  // namespace

std::size_t ConsoleWidth() noexcept {
  CONSOLE_SCREEN_BUFFER_INFO info;
  const HANDLE handle = GetStdHandle(STD_OUTPUT_HANDLE);
  if (!IsConsole(handle) || !GetConsoleScreenBufferInfo(handle, &info)) return 0;
  const int width = info.srWindow.Right - info.srWindow.Left;
  return width > 0 ? static_cast<std::size_t>(width) : 0;
}

void WriteOutput(std::wstring_view text) {
  if (!Write(STD_OUTPUT_HANDLE, text)) {
    const DWORD error = GetLastError();
    throw HostError(L"Cannot write the output: " + SystemErrorText(HRESULT_FROM_WIN32(error)));
  }
}

void WriteMessage(std::wstring_view text) noexcept {
  try {
    Write(STD_ERROR_HANDLE, L"startupctl: " + PrintableLines(text) + L"\n");
  } catch (const std::bad_alloc&) {
    // Nothing is left to say it with.
  }
}

}  // namespace smh
