#include "hosts/gui/dpi.h"

#include "infra/runtime/import_function.h"

namespace smh {

namespace {

// Since Windows 10.
using GetDpiForWindowFunction = UINT(WINAPI*)(HWND);
using SystemParametersInfoForDpiFunction = BOOL(WINAPI*)(UINT, UINT, PVOID, UINT, UINT);

int ScreenDpi() noexcept {
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return dpi;
}

LOGFONTW MessageFont(int dpi) noexcept {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof(metrics);
  const auto forDpi = ImportFunction<SystemParametersInfoForDpiFunction>(GetModuleHandleW(L"user32.dll"),
                                                                         "SystemParametersInfoForDpi");
  if (forDpi != nullptr &&
      forDpi(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0, static_cast<UINT>(dpi))) {
    return metrics.lfMessageFont;
  }
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
  metrics.lfMessageFont.lfHeight = MulDiv(metrics.lfMessageFont.lfHeight, dpi, ScreenDpi());
  return metrics.lfMessageFont;
}

}  // namespace

int DpiOf(HWND window) noexcept {
  const auto ofWindow =
      ImportFunction<GetDpiForWindowFunction>(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow");
  const int dpi = ofWindow == nullptr ? 0 : static_cast<int>(ofWindow(window));
  return dpi > 0 ? dpi : ScreenDpi();
}

ScopedFont MakeFont(int dpi, FontKind kind) {
  LOGFONTW font = MessageFont(dpi);
  if (kind == FontKind::kHeading) {
    font.lfHeight = MulDiv(font.lfHeight, 5, 4);
    font.lfWeight = FW_BOLD;
  }
  return ScopedFont(CreateFontIndirectW(&font));
}

int FontHeight(HWND window, HFONT font) noexcept {
  const HDC dc = GetDC(window);
  const HGDIOBJ before = SelectObject(dc, font);
  TEXTMETRICW metrics = {};
  GetTextMetricsW(dc, &metrics);
  SelectObject(dc, before);
  ReleaseDC(window, dc);
  return metrics.tmHeight;
}

}  // namespace smh
