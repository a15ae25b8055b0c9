#include "hosts/cli/console.h"

#include "hosts/cli/texts/message_texts.h"
#include "hosts/common/host_error.h"
#include "hosts/common/text_encoding.h"

#include <algorithm>
#include <new>
#include <utility>

namespace smh {

namespace {

// A console takes no more than 64 KB in one call.
constexpr std::size_t kConsoleChunk = 8192;
constexpr std::wstring_view kToneBegin = L"\x1b[";
constexpr wchar_t kToneEnd = L'm';
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

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

bool WriteToFile(HANDLE stream, std::string_view bytes) {
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

constexpr WORD kColours = FOREGROUND_RED | FOREGROUND_GREEN | FOREGROUND_BLUE | FOREGROUND_INTENSITY;

// What a tone's sequence, less its beginning and its end, means on a console that writes in `plain`.
WORD AttributesOf(std::wstring_view sequence, WORD plain) noexcept {
  const auto background = static_cast<WORD>(plain & ~kColours);
  if (sequence == L"1") return plain | FOREGROUND_INTENSITY;
  if (sequence == L"2") return background | FOREGROUND_INTENSITY;
  if (sequence == L"31") return background | FOREGROUND_RED | FOREGROUND_INTENSITY;
  if (sequence == L"33") return background | FOREGROUND_RED | FOREGROUND_GREEN | FOREGROUND_INTENSITY;
  return plain;
}

// Not every console knows sequences, but all know attributes.
bool WriteTonedToConsole(HANDLE stream, std::wstring_view text) {
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (!GetConsoleScreenBufferInfo(stream, &info)) return WriteToConsole(stream, text);
  for (std::size_t done = 0; done < text.size();) {
    const std::size_t begin = std::min(text.find(kToneBegin, done), text.size());
    if (!WriteToConsole(stream, text.substr(done, begin - done))) return false;
    const std::size_t end = text.find(kToneEnd, begin);
    if (end == std::wstring_view::npos) return WriteToConsole(stream, text.substr(begin));
    const std::size_t name = begin + kToneBegin.size();
    SetConsoleTextAttribute(stream, AttributesOf(text.substr(name, end - name), info.wAttributes));
    done = end + 1;
  }
  return true;
}

bool Write(DWORD stream, std::wstring_view text) {
  const HANDLE handle = GetStdHandle(stream);
  return IsConsole(handle) ? WriteTonedToConsole(handle, text) : WriteToFile(handle, ToUtf8(text));
}

bool IsClosedPipe(DWORD error) noexcept {
  return error == ERROR_NO_DATA || error == ERROR_BROKEN_PIPE || error == ERROR_PIPE_NOT_CONNECTED;
}

OutputFile* g_outputFile = nullptr;
bool g_isOutputClosed = false;
bool g_isQuiet = false;

}  // namespace

std::size_t ConsoleWidth() noexcept {
  CONSOLE_SCREEN_BUFFER_INFO info;
  const HANDLE handle = GetStdHandle(STD_OUTPUT_HANDLE);
  if (g_outputFile != nullptr || !IsConsole(handle) || !GetConsoleScreenBufferInfo(handle, &info)) return 0;
  const int width = info.srWindow.Right - info.srWindow.Left;
  return width > 0 ? static_cast<std::size_t>(width) : 0;
}

bool WantsColours() noexcept {
  const bool isUnwanted = GetEnvironmentVariableW(L"NO_COLOR", nullptr, 0) > 1;
  return g_outputFile == nullptr && !isUnwanted && IsConsole(GetStdHandle(STD_OUTPUT_HANDLE));
}

OutputFile::OutputFile(std::wstring path, bool hasMark) : path_(std::move(path)), hasMark_(hasMark) {
  g_outputFile = this;
}

OutputFile::~OutputFile() {
  g_outputFile = nullptr;
}

void OutputFile::Write(std::wstring_view text) {
  bool isWritten = true;
  if (!file_) {
    file_.Reset(CreateFileW(path_.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
    isWritten = file_ && (!hasMark_ || WriteToFile(file_.Get(), kByteOrderMark));
  }
  if (isWritten && WriteToFile(file_.Get(), ToUtf8(text))) return;
  const DWORD error = GetLastError();
  throw HostError(Say(texts::kCannotWriteTo, path_, SystemErrorText(HRESULT_FROM_WIN32(error))));
}

void WriteOutput(std::wstring_view text) {
  if (g_outputFile != nullptr) return g_outputFile->Write(text);
  if (g_isOutputClosed || Write(STD_OUTPUT_HANDLE, text)) return;
  const DWORD error = GetLastError();
  g_isOutputClosed = IsClosedPipe(error);
  if (g_isOutputClosed) return;
  throw HostError(Say(texts::kCannotWriteOutput, SystemErrorText(HRESULT_FROM_WIN32(error))));
}

bool IsOutputClosed() noexcept {
  return g_isOutputClosed;
}

void BeQuiet() noexcept {
  g_isQuiet = true;
}

void WriteMessage(std::wstring_view text, std::span<const std::wstring> lines) noexcept {
  if (g_isQuiet) return;
  try {
    WriteError(HostError(text, lines).Message());
  } catch (const std::bad_alloc&) {
    // Nothing is left to say it with.
  }
}

void WriteFailure(std::wstring_view text) noexcept {
  try {
    WriteError(Printable(text));
  } catch (const std::bad_alloc&) {
    // As above.
  }
}

void WriteError(std::wstring_view printableLines) noexcept {
  try {
    std::wstring text = L"startupctl: ";
    text.append(printableLines).append(1, L'\n');
    Write(STD_ERROR_HANDLE, text);
  } catch (const std::bad_alloc&) {
    // As above.
  }
}

}  // namespace smh
