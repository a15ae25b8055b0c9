#include "hosts/gui/details_pane.h"

#include "hosts/common/host_error.h"
#include "hosts/gui/accessible_text.h"
#include "hosts/gui/control_direction.h"
#include "hosts/gui/dpi.h"
#include "hosts/gui/entry_details.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/system_library.h"
#include "hosts/gui/text_direction.h"
#include "hosts/gui/texts/action_texts.h"
#include "hosts/gui/texts/frame_texts.h"

#include <richedit.h>

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

constexpr int kNameWidth = 130;
constexpr int kTwipsPerInch = 1440;
constexpr wchar_t kLineEnd = L'\r';  // the control's own, one position

// The control's measures are twips of the system's resolution.
LONG TwipsOf(int pixels) noexcept {
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return MulDiv(pixels, kTwipsPerInch, dpi);
}

VisibleText TextOfLines(const std::vector<DetailLine>& lines) {
  VisibleText text;
  for (const DetailLine& line : lines) {
    if (!text.text.empty()) text += std::wstring_view(&kLineEnd, 1);
    text += line.name;
    text += L"\t";
    text += Directed(line.value);
  }
  return text;
}

}  // namespace

void DetailsPane::Create(HWND parent) {
  heading_ = CreateWindowExW(0, WC_STATICW, L"",
                             WS_CHILD | WS_CLIPSIBLINGS | SS_NOPREFIX | SS_ENDELLIPSIS | SS_CENTERIMAGE, 0, 0,
                             0, 0, parent, reinterpret_cast<HMENU>(IDC_HEADING), nullptr, nullptr);
  library_ = LoadSystemLibrary(L"msftedit.dll");
  text_ = CreateWindowExW(
      WS_EX_CLIENTEDGE, MSFTEDIT_CLASS, L"",
      WS_CHILD | WS_CLIPSIBLINGS | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_NOHIDESEL, 0, 0,
      0, 0, parent, reinterpret_cast<HMENU>(IDC_DETAILS), nullptr, nullptr);
  if (text_ == nullptr) throw HostError(texts::kNoTextControl.Get());
  DirectText(text_);
  SendMessageW(text_, EM_EXLIMITTEXT, 0, 0x1000000);
  accessible_.Attach(text_, std::make_unique<AccessibleText>(text_, texts::kNameDetails.Get(), L""));
}

void DetailsPane::Place(const RECT& area) const {
  const int margin = Scaled(4, dpi_);
  const int width = static_cast<int>(area.right - area.left);
  MoveWindow(heading_, area.left + margin, area.top, width - 2 * margin, headingHeight_, TRUE);
  const int top = area.top + headingHeight_;
  MoveWindow(text_, area.left, top, width, area.bottom > top ? area.bottom - top : 0, TRUE);
}

void DetailsPane::Show(bool show) const {
  for (const HWND window : {heading_, text_}) ShowWindow(window, show ? SW_SHOWNA : SW_HIDE);
}

void DetailsPane::SetDpi(int dpi, const ViewFonts& fonts) {
  dpi_ = dpi;
  SendMessageW(heading_, WM_SETFONT, reinterpret_cast<WPARAM>(fonts.heading), TRUE);
  headingHeight_ = FontHeight(heading_, fonts.heading) + Scaled(8, dpi);
  SendMessageW(text_, WM_SETFONT, reinterpret_cast<WPARAM>(fonts.normal), TRUE);
  ShowText();
}

void DetailsPane::SetEntry(const std::wstring& heading, const ItemRecord* item, const std::wstring& file,
                           std::vector<DetailLine> first) {
  auto lines = std::move(first);
  if (item != nullptr) {
    auto details = DetailsOf(*item, file);
    lines.insert(lines.end(), std::make_move_iterator(details.begin()),
                 std::make_move_iterator(details.end()));
  }
  VisibleText shown = TextOfLines(lines);
  const std::optional<EntryKey> entry = item == nullptr ? std::nullopt : std::optional(KeyOf(*item));
  SetWindowTextW(heading_, heading.c_str());
  const bool isSameEntry = entry == entry_;
  entry_ = entry;
  if (isSameEntry && shown == shown_) return;
  shown_ = std::move(shown);
  POINT place = {};
  CHARRANGE selected = {};
  SendMessageW(text_, EM_GETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&place));
  SendMessageW(text_, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selected));
  ShowText();
  if (!isSameEntry) return;
  SendMessageW(text_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&selected));
  SendMessageW(text_, EM_SETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&place));
}

void DetailsPane::ShowText() const {
  // To let a control draw again shows it, too.
  const bool isShown = (GetWindowLongW(text_, GWL_STYLE) & WS_VISIBLE) != 0;
  if (isShown) SendMessageW(text_, WM_SETREDRAW, FALSE, 0);
  SetWindowTextW(text_, shown_.text.c_str());
  SetTabs();
  if (!isShown) return;
  SendMessageW(text_, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(text_, nullptr, TRUE);
}

// Values begin below each other, and so do their further lines.
void DetailsPane::SetTabs() const {
  PARAFORMAT2 format = {};
  format.cbSize = sizeof(format);
  format.dwMask = PFM_STARTINDENT | PFM_OFFSET | PFM_TABSTOPS;
  format.dxOffset = TwipsOf(Scaled(kNameWidth, dpi_));
  format.cTabCount = 1;
  format.rgxTabs[0] = format.dxOffset;
  if (IsMirrored(CurrentLanguage())) {
    format.dwMask |= PFM_RTLPARA | PFM_ALIGNMENT;
    format.wEffects = PFE_RTLPARA;
    format.wAlignment = PFA_RIGHT;
  }
  SendMessageW(text_, EM_SETSEL, 0, -1);
  SendMessageW(text_, EM_SETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&format));
  SendMessageW(text_, EM_SETSEL, 0, 0);
}

void DetailsPane::SelectAll() const {
  SendMessageW(text_, EM_SETSEL, 0, -1);
}

std::wstring DetailsPane::TextToCopy() const {
  CHARRANGE selected = {};
  SendMessageW(text_, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selected));
  const bool isAll = selected.cpMin == selected.cpMax;
  const auto begin = static_cast<std::size_t>(isAll ? 0 : selected.cpMin);
  const auto end = isAll ? shown_.text.size() : static_cast<std::size_t>(selected.cpMax);
  // The ends of lines become the clipboard's; those of a value are a mark, and stay.
  VisibleText part = shown_;
  for (std::size_t i = 0; i < part.text.size(); ++i) {
    if (part.text[i] == kLineEnd) part.marks.push_back({i, i + 1, L"\r\n"});
  }
  std::ranges::sort(part.marks, {}, &ShownMark::begin);
  return AsItWas(part, begin, end);
}

}  // namespace smh
