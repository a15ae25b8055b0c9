#include "benchmarks/window_probe.h"

#include "tests/support/screen.h"

#include <commctrl.h>

#include <cstdint>
#include <stdexcept>

namespace smh::bench {

namespace {

constexpr double kLimit = 60e6;
constexpr DWORD kPause = 4;      // milliseconds: who looks all the time keeps others from their work
constexpr int kTextWidth = 120;  // of the first column, in pixels
constexpr int kTextHeight = 10;

long long Now() noexcept {
  LARGE_INTEGER now;
  QueryPerformanceCounter(&now);
  return now.QuadPart;
}

double MicrosecondsSince(long long begin) noexcept {
  LARGE_INTEGER frequency;
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(Now() - begin) * 1e6 / static_cast<double>(frequency.QuadPart);
}

// Whether something is written there.
bool HasText(const RECT& area) {
  int dark = 0;
  for (const std::uint32_t pixel : test::PixelsOf(area)) {
    if ((pixel & 0xFF) < 0xA0 && (pixel >> 16 & 0xFF) < 0xA0) ++dark;
  }
  return dark > 20;
}

template <typename Condition>
double WaitFor(const char* what, long long begin, Condition&& holds) {
  while (!holds()) {
    if (MicrosecondsSince(begin) > kLimit) throw std::runtime_error(what);
    Sleep(kPause);
  }
  return MicrosecondsSince(begin);
}

}  // namespace

WindowProbe::WindowProbe(const wchar_t* program, const std::vector<std::wstring>& arguments,
                         const wchar_t* className, int list)
    : begin_(Now()), process_(test::ThisFolder() + program, arguments) {
  WaitFor("no window", begin_, [&] {
    window_ = test::FindWindowOf(process_.Id(), className);
    list_ = GetDlgItem(window_, list);
    return list_ != nullptr;
  });
}

WindowProbe::~WindowProbe() {
  PostMessageW(window_, WM_CLOSE, 0, 0);
  process_.WaitFor(20'000);
}

int WindowProbe::Count() const noexcept {
  return static_cast<int>(SendMessageW(list_, LVM_GETITEMCOUNT, 0, 0));
}

bool WindowProbe::IsChecked(int row) const noexcept {
  const LRESULT state = SendMessageW(list_, LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_STATEIMAGEMASK);
  return (static_cast<UINT>(state) & LVIS_STATEIMAGEMASK) == INDEXTOSTATEIMAGEMASK(2u);
}

// The list is asked nothing, so that it is not kept from its work: the first and the last row of a page are
// looked at, in a band as high as every row has in its middle.
bool WindowProbe::IsPagePainted() const {
  RECT area;
  if (!GetWindowRect(list_, &area) || area.bottom - area.top < 100) return false;
  const int left = static_cast<int>(area.left) + 45;  // right of check box and icon
  for (const int offset : {30, static_cast<int>(area.bottom - area.top) - 60}) {
    const int top = static_cast<int>(area.top) + offset;
    if (!HasText({left, top, left + kTextWidth, top + 2 * kTextHeight})) return false;
  }
  return true;
}

double WindowProbe::UntilPageIsPainted() const {
  return WaitFor("no page of rows", begin_, [this] { return IsPagePainted(); });
}

double WindowProbe::UntilComplete(int count, int status, const std::wstring& busy) const {
  return WaitFor("no complete list", begin_, [&] {
    if (Count() != count) return false;
    wchar_t said[256] = L"";
    SendMessageW(Control(status), WM_GETTEXT, ARRAYSIZE(said), reinterpret_cast<LPARAM>(said));
    return !std::wstring(said).starts_with(busy);
  });
}

double WindowProbe::Answer(HWND control, UINT message, WPARAM wParam, LPARAM lParam) const {
  const long long begin = Now();
  SendMessageW(control, message, wParam, lParam);
  UpdateWindow(list_);
  return MicrosecondsSince(begin);
}

}  // namespace smh::bench
