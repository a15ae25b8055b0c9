#include "hosts/gui/details_pane.h"

#include "hosts/gui/dpi.h"
#include "hosts/gui/entry_details.h"
#include "hosts/gui/resource.h"

#include <algorithm>

namespace smh {

namespace {

constexpr int kNameWidth = 130;
constexpr int kValueWidth = 620;

}  // namespace

void DetailsPane::Create(HWND parent) {
  heading_ = CreateWindowExW(0, WC_STATICW, L"",
                             WS_CHILD | WS_CLIPSIBLINGS | SS_NOPREFIX | SS_ENDELLIPSIS | SS_CENTERIMAGE, 0, 0,
                             0, 0, parent, reinterpret_cast<HMENU>(IDC_HEADING), nullptr, nullptr);
  ListSource source;
  source.text = [this](std::size_t row, std::size_t column) {
    return column == 0 ? lines_[row].first : lines_[row].second;
  };
  list_.Create(parent, IDC_DETAILS, {{L"Property", kNameWidth}, {L"Value", kValueWidth}}, std::move(source));
}

void DetailsPane::Place(const RECT& area) const {
  const int margin = Scaled(4, dpi_);
  const int width = static_cast<int>(area.right - area.left);
  MoveWindow(heading_, area.left + margin, area.top, width - 2 * margin, headingHeight_, TRUE);
  const int top = area.top + headingHeight_;
  MoveWindow(list_.Handle(), area.left, top, width, area.bottom > top ? area.bottom - top : 0, TRUE);
}

void DetailsPane::Show(bool show) const {
  for (const HWND window : {heading_, list_.Handle()}) ShowWindow(window, show ? SW_SHOWNA : SW_HIDE);
}

void DetailsPane::SetDpi(int dpi, const ViewFonts& fonts) {
  dpi_ = dpi;
  SendMessageW(heading_, WM_SETFONT, reinterpret_cast<WPARAM>(fonts.heading), TRUE);
  headingHeight_ = FontHeight(heading_, fonts.heading) + Scaled(8, dpi);
  list_.SetDpi(dpi, fonts.normal);
}

void DetailsPane::SetEntry(const std::wstring& heading, const ItemRecord* item, const std::wstring& file) {
  auto lines = item == nullptr ? decltype(lines_)() : DetailsOf(*item, file);
  if (lines == lines_ && item != nullptr) return;
  lines_ = std::move(lines);
  SetWindowTextW(heading_, heading.c_str());
  list_.SetCount(lines_.size());
}

std::wstring DetailsPane::TextToCopy() const {
  std::wstring text;
  const std::vector<std::size_t> rows = list_.Selection();
  if (rows.size() == 1) return lines_[rows.front()].second;
  for (std::size_t row = 0; row < lines_.size(); ++row) {
    if (!rows.empty() && std::find(rows.begin(), rows.end(), row) == rows.end()) continue;
    text += lines_[row].first + L"\t" + lines_[row].second + L"\r\n";
  }
  return text;
}

}  // namespace smh
