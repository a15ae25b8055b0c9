// startupicons: asks the shell for the icons of files, for the library that has started it.
#include "hosts/icons/icon_pixels.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/scoped_com.h"

#include <shellapi.h>

#include <cwchar>

namespace {

using namespace smh;

struct IconPair {
  ScopedIcon large;
  ScopedIcon small;
};

IconPair IconsOfFile(const wchar_t* file, int index) noexcept {
  HICON large = nullptr;
  HICON small = nullptr;
  const UINT count = ExtractIconExW(file, index, &large, &small, 1);
  IconPair icons;
  // Without an icon, or without the file (UINT_MAX), the outputs may hold anything.
  if (count == 0 || count == UINT_MAX) return icons;
  icons.large.Reset(large);
  icons.small.Reset(small);
  return icons;
}

HICON IconOfShell(const wchar_t* file, UINT size) noexcept {
  SHFILEINFOW info = {};
  return SHGetFileInfoW(file, 0, &info, sizeof(info), SHGFI_ICON | size) == 0 ? nullptr : info.hIcon;
}

void Answer(const IconPixelReader& pixels, IconExchange& exchange) noexcept {
  exchange.file[IconExchange::kFileUnits - 1] = L'\0';
  IconPair icons;
  if (exchange.request != IconRequest::kOfShell) icons = IconsOfFile(exchange.file, exchange.index);
  if (exchange.request != IconRequest::kOfFile && !icons.large && !icons.small) {
    icons.large.Reset(IconOfShell(exchange.file, SHGFI_LARGEICON));
    icons.small.Reset(IconOfShell(exchange.file, SHGFI_SMALLICON));
  }
  pixels.Take(icons.large.Get(), exchange.large);
  pixels.Take(icons.small.Get(), exchange.small);
}

// Nobody is told of a fault, and nobody asked: the library sees the end.
LONG WINAPI EndAtFault(EXCEPTION_POINTERS* exception) {
  TerminateProcess(GetCurrentProcess(), exception->ExceptionRecord->ExceptionCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

// Also when the shell does not come back.
DWORD WINAPI EndWithLibrary(void* library) {
  WaitForSingleObject(library, INFINITE);
  TerminateProcess(GetCurrentProcess(), 0);
  return 0;
}

struct LocalListTraits {
  using Type = wchar_t**;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { LocalFree(static_cast<void*>(value)); }
};

int Serve(HANDLE section, HANDLE request, HANDLE answer, HANDLE library) noexcept {
  auto* const exchange =
      static_cast<IconExchange*>(MapViewOfFile(section, FILE_MAP_WRITE, 0, 0, sizeof(IconExchange)));
  const ScopedHandle guard(CreateThread(nullptr, 0, EndWithLibrary, library, 0, nullptr));
  if (exchange == nullptr || !guard) return 1;
  const ScopedCom com(COINIT_APARTMENTTHREADED);
  const IconPixelReader pixels;
  while (WaitForSingleObject(request, kIconProgramIdleMs) == WAIT_OBJECT_0) {
    Answer(pixels, *exchange);
    SetEvent(answer);
  }
  return 0;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  SetDllDirectoryW(L"");
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  SetUnhandledExceptionFilter(EndAtFault);
  int count = 0;
  const ScopedResource<LocalListTraits> arguments(CommandLineToArgvW(GetCommandLineW(), &count));
  if (!arguments || count != 5) return 1;
  const auto handleAt = [&](int i) {
    return reinterpret_cast<HANDLE>(
        static_cast<std::uintptr_t>(std::wcstoul(arguments.Get()[i], nullptr, 10)));
  };
  return Serve(handleAt(1), handleAt(2), handleAt(3), handleAt(4));
}
