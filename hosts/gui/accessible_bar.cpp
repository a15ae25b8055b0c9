#include "hosts/gui/accessible_bar.h"

#include "hosts/gui/texts/frame_texts.h"

#include <commctrl.h>
#include <oleacc.h>

#include <utility>

namespace smh {

namespace {

TBBUTTON ButtonOf(HWND bar, int child) noexcept {
  TBBUTTON button = {};
  SendMessageW(bar, TB_GETBUTTON, static_cast<WPARAM>(child - 1), reinterpret_cast<LPARAM>(&button));
  return button;
}

bool IsSeparator(const TBBUTTON& button) noexcept {
  return (button.fsStyle & BTNS_SEP) != 0;
}

UINT CommandOf(const TBBUTTON& button) noexcept {
  return static_cast<UINT>(button.idCommand);
}

std::wstring LabelOf(HWND bar, const TBBUTTON& button) {
  const LRESULT units = SendMessageW(bar, TB_GETBUTTONTEXTW, CommandOf(button), 0);
  if (units <= 0) return {};
  std::wstring text(static_cast<std::size_t>(units) + 1, L'\0');
  SendMessageW(bar, TB_GETBUTTONTEXTW, CommandOf(button), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(units));
  return text;
}

// "Undo the change (Ctrl+Z)" as its two parts.
std::pair<std::wstring, std::wstring> Parts(const std::wstring& tip) {
  const std::size_t begin = tip.rfind(L" (");
  if (begin == std::wstring::npos || tip.back() != L')') return {tip, {}};
  return {tip.substr(0, begin), tip.substr(begin + 2, tip.size() - begin - 3)};
}

}  // namespace

AccessibleBar::AccessibleBar(HWND bar, std::wstring name, BarKeys& keys, Tip tip)
    : bar_(bar), name_(std::move(name)), keys_(keys), tip_(std::move(tip)) {}

int AccessibleBar::Count() const {
  return static_cast<int>(SendMessageW(bar_, TB_BUTTONCOUNT, 0, 0));
}

std::wstring AccessibleBar::Name(int child) const {
  if (child == 0) return name_;
  const TBBUTTON button = ButtonOf(bar_, child);
  if (IsSeparator(button)) return {};
  const std::wstring label = LabelOf(bar_, button);
  return label.empty() ? Parts(tip_(CommandOf(button))).first : label;
}

std::wstring AccessibleBar::Description(int child) const {
  if (child == 0 || IsSeparator(ButtonOf(bar_, child))) return {};
  return Parts(tip_(CommandOf(ButtonOf(bar_, child)))).first;
}

std::wstring AccessibleBar::Keys(int child) const {
  if (child == 0 || IsSeparator(ButtonOf(bar_, child))) return {};
  return Parts(tip_(CommandOf(ButtonOf(bar_, child)))).second;
}

DWORD AccessibleBar::Role(int child) const {
  if (child == 0) return ROLE_SYSTEM_TOOLBAR;
  const TBBUTTON button = ButtonOf(bar_, child);
  if (IsSeparator(button)) return ROLE_SYSTEM_SEPARATOR;
  return (button.fsStyle & BTNS_CHECK) != 0 ? ROLE_SYSTEM_CHECKBUTTON : ROLE_SYSTEM_PUSHBUTTON;
}

DWORD AccessibleBar::State(int child) const {
  const bool hasFocus = GetFocus() == bar_;
  if (child == 0) return STATE_SYSTEM_FOCUSABLE | (hasFocus ? STATE_SYSTEM_FOCUSED : 0);
  const TBBUTTON button = ButtonOf(bar_, child);
  DWORD state = 0;
  if ((button.fsState & TBSTATE_HIDDEN) != 0) state |= STATE_SYSTEM_INVISIBLE;
  if (IsSeparator(button)) return state;
  if ((button.fsState & TBSTATE_ENABLED) == 0) state |= STATE_SYSTEM_UNAVAILABLE;
  if ((button.fsState & TBSTATE_CHECKED) != 0) state |= STATE_SYSTEM_CHECKED;
  if (state == 0 || state == STATE_SYSTEM_CHECKED) state |= STATE_SYSTEM_FOCUSABLE;
  if (hasFocus && child == Focused()) state |= STATE_SYSTEM_FOCUSED;
  return state;
}

RECT AccessibleBar::Place(int child) const {
  RECT place = {};
  if (child == 0) {
    GetClientRect(bar_, &place);
  } else {
    SendMessageW(bar_, TB_GETITEMRECT, static_cast<WPARAM>(child - 1), reinterpret_cast<LPARAM>(&place));
  }
  return place;
}

// Behind the last button there is none, and between two a negative number.
int AccessibleBar::HitTest(POINT point) const {
  const auto button = static_cast<int>(SendMessageW(bar_, TB_HITTEST, 0, reinterpret_cast<LPARAM>(&point)));
  return button < 0 || button >= Count() ? 0 : button + 1;
}

std::wstring AccessibleBar::DefaultAction(int child) const {
  return child == 0 || (State(child) & STATE_SYSTEM_FOCUSABLE) == 0 ? L"" : texts::kActPress.Get();
}

void AccessibleBar::DoDefaultAction(int child) {
  keys_.Press(child - 1);
}

bool AccessibleBar::Select(int child, LONG flags) {
  if (flags != SELFLAG_TAKEFOCUS) return false;
  if (child != 0) keys_.Choose(child - 1);
  SetFocus(bar_);
  return child == 0 || Focused() == child;
}

}  // namespace smh
