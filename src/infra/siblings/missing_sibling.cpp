#include "infra/siblings/missing_sibling.h"

#include <windows.h>

#include <atomic>

namespace smh {

namespace {

constinit std::atomic<MissingSiblingReport> g_report{nullptr};

// Of the interactive session; those of services and of scheduled tasks are not visible.
bool HasVisibleDesktop() noexcept {
  USEROBJECTFLAGS flags = {};
  return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof(flags), nullptr) !=
             FALSE &&
         (flags.dwFlags & WSF_VISIBLE) != 0;
}

void WriteToStandardError(const std::wstring& text) {
  const HANDLE stream = GetStdHandle(STD_ERROR_HANDLE);
  const std::wstring line = text + L"\r\n";
  DWORD written = 0;
  if (WriteConsoleW(stream, line.data(), static_cast<DWORD>(line.size()), &written, nullptr) != FALSE) return;
  // No unit needs more than three bytes.
  std::string bytes(line.size() * 3, '\0');
  const int count = WideCharToMultiByte(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), bytes.data(),
                                        static_cast<int>(bytes.size()), nullptr, nullptr);
  WriteFile(stream, bytes.data(), static_cast<DWORD>(count), &written, nullptr);
}

}  // namespace

void SetMissingSiblingReport(MissingSiblingReport report) noexcept {
  g_report = report;
}

void EndForMissingSibling(const std::wstring& text) {
  if (const MissingSiblingReport report = g_report) report(text);
  // Last: it waits when nobody reads.
  WriteToStandardError(text);
  if (HasVisibleDesktop()) MessageBoxW(nullptr, text.c_str(), L"Error", MB_ICONERROR);
  ExitProcess(1);
}

}  // namespace smh
