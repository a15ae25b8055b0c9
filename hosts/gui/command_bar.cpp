#include "hosts/gui/command_bar.h"

#include "hosts/gui/accessible_bar.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/bar_texts.h"
#include "hosts/gui/texts/frame_texts.h"
#include "hosts/gui/window_images.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace smh {

namespace {

struct CommandRow {
  UINT command;  // 0: a gap
  Glyph glyph;
  const Text* label;  // none: the picture only
  const Text* tip;
};
constexpr CommandRow kCommands[] = {
    {CMD_ENABLE, Glyph::kOn, &texts::kBarEnable, &texts::kTipEnable},
    {CMD_DISABLE, Glyph::kOff, &texts::kBarDisable, &texts::kTipDisable},
    {CMD_DELETE, Glyph::kRemove, &texts::kBarDelete, &texts::kTipDelete},
    {0, Glyph::kNone, nullptr, nullptr},
    {CMD_ADD, Glyph::kAdd, &texts::kBarAdd, &texts::kTipAdd},
    {CMD_MOVE, Glyph::kMove, nullptr, &texts::kTipMove},
    {CMD_CHANGE_COMMAND, Glyph::kEdit, nullptr, &texts::kTipChangeCommand},
    {CMD_EXECUTE, Glyph::kRun, nullptr, &texts::kTipExecute},
    {0, Glyph::kNone, nullptr, nullptr},
    {CMD_UNDO, Glyph::kUndo, &texts::kBarUndo, &texts::kTipUndo},
    {CMD_REDO, Glyph::kRedo, nullptr, &texts::kTipRedo},
    {0, Glyph::kNone, nullptr, nullptr},
    {CMD_EXPORT, Glyph::kSave, nullptr, &texts::kTipExport},
    {CMD_REFRESH, Glyph::kRefresh, nullptr, &texts::kTipRefresh},
    {CMD_RESTART_ELEVATED, Glyph::kShield, nullptr, &texts::kTipRestartElevated},
};

const CommandRow* RowOf(UINT command) noexcept {
  const auto row = std::find_if(std::begin(kCommands), std::end(kCommands),
                                [command](const CommandRow& each) { return each.command == command; });
  return row == std::end(kCommands) ? nullptr : &*row;
}

TBBUTTON ButtonOf(const CommandRow& row) noexcept {
  TBBUTTON button = {};
  if (row.command == 0) {
    button.fsStyle = BTNS_SEP;
    return button;
  }
  button.iBitmap = static_cast<int>(row.glyph);
  button.idCommand = static_cast<int>(row.command);
  button.fsState = TBSTATE_ENABLED;
  button.fsStyle = BTNS_AUTOSIZE | (row.label == nullptr ? 0 : BTNS_SHOWTEXT);
  button.iString = reinterpret_cast<INT_PTR>(row.label == nullptr ? L"" : row.label->Get());
  return button;
}

}  // namespace

void CommandBar::Create(HWND parent) {
  bar_ = CreateWindowExW(0, TOOLBARCLASSNAMEW, L"",
                         WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | TBSTYLE_FLAT | TBSTYLE_LIST |
                             TBSTYLE_TOOLTIPS | TBSTYLE_TRANSPARENT | CCS_NODIVIDER | CCS_NORESIZE |
                             CCS_NOPARENTALIGN,
                         0, 0, 0, 0, parent, reinterpret_cast<HMENU>(IDC_TOOLBAR), nullptr, nullptr);
  SendMessageW(bar_, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
  SendMessageW(bar_, TB_SETEXTENDEDSTYLE, 0, TBSTYLE_EX_MIXEDBUTTONS | TBSTYLE_EX_DOUBLEBUFFER);
  keys_.Attach(bar_);
  accessible_.Attach(
      bar_, std::make_unique<AccessibleBar>(bar_, texts::kNameCommands.Get(), keys_, [](UINT command) {
        const CommandRow* const row = RowOf(command);
        return std::wstring(row == nullptr ? L"" : row->tip->Get());
      }));
}

// A tool bar measures its buttons when they are inserted.
void CommandBar::SetDpi(int dpi, HFONT font) {
  ScopedImageList images = MakeGlyphs(dpi, GlyphLook::kNormal);
  ScopedImageList greyed = MakeGlyphs(dpi, GlyphLook::kGreyed);
  while (SendMessageW(bar_, TB_DELETEBUTTON, 0, 0) != FALSE) {
  }
  int side = 16;
  ImageList_GetIconSize(images.Get(), &side, &side);
  SendMessageW(bar_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  SendMessageW(bar_, TB_SETBITMAPSIZE, 0, MAKELPARAM(side, side));
  SendMessageW(bar_, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images.Get()));
  SendMessageW(bar_, TB_SETDISABLEDIMAGELIST, 0, reinterpret_cast<LPARAM>(greyed.Get()));
  const int padding = MulDiv(7, dpi, USER_DEFAULT_SCREEN_DPI);
  SendMessageW(bar_, TB_SETPADDING, 0, MAKELPARAM(padding, padding));
  std::vector<TBBUTTON> buttons;
  for (const CommandRow& row : kCommands) buttons.push_back(ButtonOf(row));
  SendMessageW(bar_, TB_ADDBUTTONSW, buttons.size(), reinterpret_cast<LPARAM>(buttons.data()));
  SendMessageW(bar_, TB_AUTOSIZE, 0, 0);
  showsLabels_ = true;
  widthWithLabels_ = Width();
  // The tool bar has let go of those before.
  images_ = std::move(images);
  greyed_ = std::move(greyed);
}

int CommandBar::Height() const {
  return HIWORD(SendMessageW(bar_, TB_GETBUTTONSIZE, 0, 0));
}

void CommandBar::ShowLabels(bool show) const {
  for (const CommandRow& row : kCommands) {
    if (row.label == nullptr) continue;
    TBBUTTONINFOW info = {};
    info.cbSize = sizeof(info);
    info.dwMask = TBIF_STYLE;
    info.fsStyle = static_cast<BYTE>(BTNS_AUTOSIZE | (show ? BTNS_SHOWTEXT : 0));
    SendMessageW(bar_, TB_SETBUTTONINFOW, row.command, reinterpret_cast<LPARAM>(&info));
  }
  SendMessageW(bar_, TB_AUTOSIZE, 0, 0);
}

int CommandBar::Fit(int width) {
  const bool hasRoom = widthWithLabels_ <= width;
  if (hasRoom != showsLabels_) ShowLabels(hasRoom);
  showsLabels_ = hasRoom;
  return Width();
}

int CommandBar::Width() const {
  SIZE size = {};
  SendMessageW(bar_, TB_GETMAXSIZE, 0, reinterpret_cast<LPARAM>(&size));
  return size.cx;
}

void CommandBar::Update(const std::function<bool(UINT command)>& canRun) const {
  for (const CommandRow& row : kCommands) {
    if (row.command == 0) continue;
    const bool isEnabled = SendMessageW(bar_, TB_ISBUTTONENABLED, row.command, 0) != 0;
    const bool can = canRun(row.command);
    if (isEnabled != can) SendMessageW(bar_, TB_ENABLEBUTTON, row.command, MAKELPARAM(can ? TRUE : FALSE, 0));
  }
}

void CommandBar::ShowButton(UINT command, bool show) const {
  SendMessageW(bar_, TB_HIDEBUTTON, command, MAKELPARAM(show ? FALSE : TRUE, 0));
}

bool CommandBar::OnNotify(const NMHDR& header) {
  if (header.code != TTN_GETDISPINFOW) return false;
  if (const CommandRow* const row = RowOf(static_cast<UINT>(header.idFrom))) {
    auto& info = reinterpret_cast<NMTTDISPINFOW&>(const_cast<NMHDR&>(header));
    info.lpszText = const_cast<wchar_t*>(row->tip->Get());
  }
  return true;
}

}  // namespace smh
