#include "hosts/gui/window.h"

#include "hosts/common/host_error.h"
#include "hosts/common/language.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/action_texts.h"
#include "hosts/gui/theme_paint.h"

#include <commctrl.h>

#include <utility>

namespace smh {

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

void ShowFault(HWND owner, const std::wstring& text) noexcept {
  const UINT direction = IsMirrored(CurrentLanguage()) ? MB_RTLREADING | MB_RIGHT : 0;
  MessageBoxW(owner, text.c_str(), kProgramTitle, MB_OK | MB_ICONERROR | direction);
}

bool ClicksButton(const MSG& message) noexcept {
  wchar_t name[16] = L"";
  if (message.message != WM_KEYDOWN || message.wParam != VK_RETURN ||
      GetClassNameW(message.hwnd, name, ARRAYSIZE(name)) == 0 || lstrcmpiW(name, WC_BUTTONW) != 0) {
    return false;
  }
  SendMessageW(message.hwnd, BM_CLICK, 0, 0);
  return true;
}

Window::~Window() {
  if (window_ == nullptr) return;
  // Its last messages find nobody.
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
}

void Window::Create(const Look& look) {
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof(windowClass);
  windowClass.lpfnWndProc = Procedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hIcon = LoadIconW(windowClass.hInstance, MAKEINTRESOURCEW(IDI_APPLICATION_ICON));
  windowClass.hCursor = LoadCursorW(nullptr, look.cursor);
  windowClass.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
  windowClass.lpszClassName = look.className;
  RegisterClassExW(&windowClass);
  CreateWindowExW(look.exStyle, look.className, look.title, look.style, CW_USEDEFAULT, CW_USEDEFAULT,
                  CW_USEDEFAULT, CW_USEDEFAULT, look.parent, look.menu, windowClass.hInstance, this);
  if (window_ == nullptr) {
    const DWORD error = GetLastError();
    throw HostError(Format(texts::kCannotMakeWindow, SystemErrorText(HRESULT_FROM_WIN32(error))));
  }
}

LRESULT CALLBACK Window::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  if (message == WM_NCCREATE) {
    auto* const self = static_cast<Window*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    self->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* const self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
  if (message == WM_NCDESTROY) {
    self->window_ = nullptr;
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    return DefWindowProcW(window, message, wParam, lParam);
  }
  try {
    return self->OnMessage(message, wParam, lParam);
  } catch (...) {
    ShowFault(window, CurrentFaultText());
  }
  // A window that is not whole is not made.
  return message == WM_CREATE ? -1 : 0;
}

void Splitter::Open(HWND parent, Direction direction, std::function<void(int)> onDrag) {
  direction_ = direction;
  onDrag_ = std::move(onDrag);
  const bool isLeftRight = direction == Direction::kLeftRight;
  Create({.className = isLeftRight ? L"StartupManagerSplitterH" : L"StartupManagerSplitterV",
          .style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,
          .cursor = isLeftRight ? IDC_SIZEWE : IDC_SIZENS,
          .parent = parent});
}

LRESULT Splitter::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_ERASEBKGND: {
      if (!IsDark()) return DefWindowProcW(Handle(), message, wParam, lParam);
      RECT area;
      GetClientRect(Handle(), &area);
      Painter(reinterpret_cast<HDC>(wParam)).Fill(area, Role::kSplitter);
      return TRUE;
    }
    case WM_LBUTTONDOWN:
      SetCapture(Handle());
      return 0;
    case WM_LBUTTONUP:
      ReleaseCapture();
      return 0;
    case WM_MOUSEMOVE:
      if (GetCapture() == Handle()) {
        POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        MapWindowPoints(Handle(), GetParent(Handle()), &point, 1);
        onDrag_(static_cast<int>(direction_ == Direction::kLeftRight ? point.x : point.y));
      }
      return 0;
    default:
      return DefWindowProcW(Handle(), message, wParam, lParam);
  }
}

}  // namespace smh
