#include "tests/hosts/gui/gui_program.h"

#include "hosts/gui/resource.h"
#include "tests/display/display_support.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/screen.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace smh::test {

namespace {

constexpr std::size_t kTextUnits = 1024;
constexpr std::size_t kTextOffset = 256;
constexpr std::size_t kBufferSize = kTextOffset + kTextUnits * sizeof(wchar_t);
const std::wstring kSettings = L"Software\\Quillmark\\Startup Manager\\Settings\\startupmanager.exe";
const std::wstring kTwinMark = L"  \u2013  ";
constexpr DWORD kReadLimit = 120'000;

std::wstring TextOfWindow(HWND window) {
  std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
  const LRESULT length = SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  return text.substr(0, static_cast<std::size_t>(length));
}

// The marks that keep a text's direction, which nobody sees.
bool IsDirection(wchar_t unit) noexcept {
  return unit >= 0x202A && unit <= 0x202C;
}

// The folder of the program.
std::wstring PrepareLook(GuiProgram::Look look) {
  if (look != GuiProgram::Look::kAsLeft) DeleteKeyTree(HKEY_CURRENT_USER, kSettings);
  if (look == GuiProgram::Look::kFresh) SetValue(HKEY_CURRENT_USER, kSettings, L"WelcomeRead", Sz(L"1"));
  return ThisFolder();
}

}  // namespace

std::wstring ClipboardText() {
  if (!OpenClipboard(nullptr)) return {};
  const HANDLE block = GetClipboardData(CF_UNICODETEXT);
  std::wstring text;
  if (block != nullptr) {
    text = static_cast<const wchar_t*>(GlobalLock(block));
    GlobalUnlock(block);
  }
  CloseClipboard();
  return text;
}

RemoteBuffer::RemoteBuffer(HANDLE process, std::size_t size)
    : process_(process),
      address_(static_cast<std::byte*>(VirtualAllocEx(process, nullptr, size, MEM_COMMIT, PAGE_READWRITE))) {
  if (address_ == nullptr) throw std::runtime_error("no memory in the other process");
}

RemoteBuffer::~RemoteBuffer() {
  VirtualFreeEx(process_, address_, 0, MEM_RELEASE);
}

void RemoteBuffer::Write(std::size_t offset, const void* from, std::size_t size) const {
  if (!WriteProcessMemory(process_, address_ + offset, from, size, nullptr))
    throw std::runtime_error("no write");
}

void RemoteBuffer::Read(std::size_t offset, void* to, std::size_t size) const {
  if (!ReadProcessMemory(process_, address_ + offset, to, size, nullptr)) throw std::runtime_error("no read");
}

std::wstring RemoteBuffer::Text(std::size_t offset, std::size_t units) const {
  std::wstring text(units, L'\0');
  Read(offset, text.data(), units * sizeof(wchar_t));
  return text.substr(0, text.find(L'\0'));
}

GuiProgram::GuiProgram(Look look, Rights rights, const std::vector<std::wstring>& arguments)
    : process_(PrepareLook(look) + L"startupmanager.exe", arguments, {}, rights) {
  WaitUntil([this] { return (window_ = FindWindowOf(process_.Id(), L"StartupManagerMain")) != nullptr; });
  if (window_ == nullptr) throw std::runtime_error("the main window did not come");
  WaitUntilRead();
}

GuiProgram::~GuiProgram() {
  PostMessageW(window_, WM_CLOSE, 0, 0);
  EXPECT_TRUE(process_.WaitFor(20'000)) << "the program does not end";
}

void GuiProgram::WaitUntilRead() const {
  // "Ready" comes first when nothing was read yet.
  WaitUntil([this] { return Status(0).starts_with(L"Reading") || Count(IDC_ENTRIES) > 0; }, 5'000);
  EXPECT_TRUE(WaitUntil([this] { return !Status(0).starts_with(L"Reading"); }, kReadLimit));
}

bool GuiProgram::CanRun(UINT command) const {
  return SendMessageW(Control(IDC_TOOLBAR), TB_ISBUTTONENABLED, command, 0) != 0;
}

RECT GuiProgram::ButtonRect(UINT command) const {
  const RemoteBuffer buffer(process_.Handle(), sizeof(RECT));
  RECT rect = {};
  SendMessageW(Control(IDC_TOOLBAR), TB_GETRECT, command, reinterpret_cast<LPARAM>(buffer.Address()));
  buffer.Read(0, &rect, sizeof(rect));
  return rect;
}

std::wstring GuiProgram::Status(int part) const {
  const RemoteBuffer buffer(process_.Handle(), kBufferSize);
  SendMessageW(Control(IDC_STATUS), SB_GETTEXTW, static_cast<WPARAM>(part),
               reinterpret_cast<LPARAM>(buffer.Address()));
  return buffer.Text(0, kTextUnits / 2);
}

std::wstring GuiProgram::Cue(int edit) const {
  const RemoteBuffer buffer(process_.Handle(), kBufferSize);
  SendMessageW(Control(edit), EM_GETCUEBANNER, reinterpret_cast<WPARAM>(buffer.Address()), kTextUnits / 2);
  return buffer.Text(0, kTextUnits / 2);
}

void GuiProgram::Search(const std::wstring& text) const {
  SendMessageW(Control(IDC_SEARCH), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

HWND GuiProgram::WaitForDialog() const {
  HWND dialog = nullptr;
  WaitUntil([&] { return (dialog = FindWindowOf(process_.Id(), L"#32770")) != nullptr; });
  return dialog;
}

std::vector<HTREEITEM> GuiProgram::Nodes() const {
  std::vector<HTREEITEM> nodes;
  const HWND tree = Control(IDC_TREE);
  const auto next = [tree](WPARAM how, HTREEITEM from) {
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(tree, TVM_GETNEXTITEM, how, reinterpret_cast<LPARAM>(from)));
  };
  const std::function<void(HTREEITEM)> gather = [&](HTREEITEM item) {
    for (; item != nullptr; item = next(TVGN_NEXT, item)) {
      nodes.push_back(item);
      gather(next(TVGN_CHILD, item));
    }
  };
  gather(next(TVGN_ROOT, nullptr));
  return nodes;
}

std::wstring GuiProgram::NodeText(HTREEITEM node) const {
  const RemoteBuffer buffer(process_.Handle(), kBufferSize);
  TVITEMW item = {};
  item.mask = TVIF_TEXT;
  item.hItem = node;
  item.pszText = reinterpret_cast<wchar_t*>(buffer.Address() + kTextOffset);
  item.cchTextMax = kTextUnits;
  buffer.Write(0, &item, sizeof(item));
  SendMessageW(Control(IDC_TREE), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(buffer.Address()));
  return buffer.Text(kTextOffset, kTextUnits);
}

std::vector<std::wstring> GuiProgram::NodeTexts() const {
  std::vector<std::wstring> texts;
  for (const HTREEITEM node : Nodes()) texts.push_back(NodeText(node));
  return texts;
}

bool GuiProgram::SelectNode(const std::wstring& begin) const {
  for (const HTREEITEM node : Nodes()) {
    if (!NodeText(node).starts_with(begin)) continue;
    return SendMessageW(Control(IDC_TREE), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(node)) != 0;
  }
  return false;
}

int GuiProgram::Count(int list) const {
  return static_cast<int>(SendMessageW(Control(list), LVM_GETITEMCOUNT, 0, 0));
}

std::wstring GuiProgram::Cell(int list, int row, int column) const {
  const RemoteBuffer buffer(process_.Handle(), kBufferSize);
  LVITEMW item = {};
  item.iSubItem = column;
  item.pszText = reinterpret_cast<wchar_t*>(buffer.Address() + kTextOffset);
  item.cchTextMax = kTextUnits;
  buffer.Write(0, &item, sizeof(item));
  SendMessageW(Control(list), LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
               reinterpret_cast<LPARAM>(buffer.Address()));
  std::wstring text = buffer.Text(kTextOffset, kTextUnits);
  std::erase_if(text, IsDirection);
  return text;
}

int GuiProgram::TextWidth(int list, const std::wstring& text) const {
  const RemoteBuffer buffer(process_.Handle(), kBufferSize);
  buffer.Write(0, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
  return static_cast<int>(
      SendMessageW(Control(list), LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(buffer.Address())));
}

std::vector<std::wstring> GuiProgram::Column(int list, int column) const {
  std::vector<std::wstring> cells;
  for (int row = 0; row < Count(list); ++row) cells.push_back(Cell(list, row, column));
  return cells;
}

int GuiProgram::RowOf(int list, const std::wstring& text) const {
  for (int row = 0; row < Count(list); ++row) {
    const std::wstring cell = Cell(list, row, 0);
    if (cell == text || cell.starts_with(text + kTwinMark)) return row;
  }
  return -1;
}

std::wstring GuiProgram::Detail(const std::wstring& property) const {
  const std::wstring text = L"\r\n" + TextOfWindow(Control(IDC_DETAILS)) + L"\r\n";
  const std::wstring name = L"\r\n" + property + L"\t";
  const std::size_t found = text.find(name);
  if (found == std::wstring::npos) return {};
  const std::size_t begin = found + name.size();
  return text.substr(begin, text.find(L"\r\n", begin) - begin);
}

std::wstring GuiProgram::TipText() const {
  const HWND tip = FindWindowOf(process_.Id(), TOOLTIPS_CLASSW);
  return tip == nullptr ? std::wstring() : TextOfWindow(tip);
}

void GuiProgram::PointAt(int list, int row, int column) const {
  const RemoteBuffer buffer(process_.Handle(), sizeof(RECT));
  RECT cell = {LVIR_LABEL, column, 0, 0};
  buffer.Write(0, &cell, sizeof(cell));
  SendMessageW(Control(list), LVM_GETSUBITEMRECT, static_cast<WPARAM>(row),
               reinterpret_cast<LPARAM>(buffer.Address()));
  buffer.Read(0, &cell, sizeof(cell));
  POINT point = {cell.left + 10, (cell.top + cell.bottom) / 2};
  ClientToScreen(Control(list), &point);
  POINT before = {};
  GetCursorPos(&before);
  if (before.x == point.x) ++point.x;
  SetCursorPos(point.x, point.y);
}

void GuiProgram::Select(int list, const std::vector<int>& rows) const {
  const RemoteBuffer buffer(process_.Handle(), kBufferSize);
  const auto set = [&](int row, UINT state, UINT mask) {
    LVITEMW item = {};
    item.state = state;
    item.stateMask = mask;
    buffer.Write(0, &item, sizeof(item));
    SendMessageW(Control(list), LVM_SETITEMSTATE, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(buffer.Address()));
  };
  set(-1, 0, LVIS_SELECTED);
  for (const int row : rows) set(row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  SendMessageW(window_, WM_NULL, 0, 0);
}

std::vector<int> GuiProgram::Selection(int list) const {
  std::vector<int> rows;
  for (int row = -1; (row = static_cast<int>(SendMessageW(Control(list), LVM_GETNEXTITEM,
                                                          static_cast<WPARAM>(row), LVNI_SELECTED))) >= 0;) {
    rows.push_back(row);
  }
  return rows;
}

bool GuiProgram::IsChecked(int row) const {
  const LRESULT state =
      SendMessageW(Control(IDC_ENTRIES), LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_STATEIMAGEMASK);
  return (static_cast<UINT>(state) & LVIS_STATEIMAGEMASK) == INDEXTOSTATEIMAGEMASK(2u);
}

RECT GuiProgram::ItemRect(HWND list, int row, int part) const {
  const RemoteBuffer buffer(process_.Handle(), sizeof(RECT));
  RECT rect = {part, 0, 0, 0};
  buffer.Write(0, &rect, sizeof(rect));
  SendMessageW(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(buffer.Address()));
  buffer.Read(0, &rect, sizeof(rect));
  return rect;
}

void GuiProgram::ClickCheckBox(int row) const {
  const HWND list = Control(IDC_ENTRIES);
  SendMessageW(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
  const RECT icon = ItemRect(list, row, LVIR_ICON);
  const LPARAM place = MAKELPARAM(icon.left - 8, (icon.top + icon.bottom) / 2);
  PostMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, place);
  PostMessageW(list, WM_LBUTTONUP, 0, place);
}

void GuiProgram::ClickHeader(int column) const {
  const HWND header = reinterpret_cast<HWND>(SendMessageW(Control(IDC_ENTRIES), LVM_GETHEADER, 0, 0));
  const RemoteBuffer buffer(process_.Handle(), sizeof(RECT));
  SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(column),
               reinterpret_cast<LPARAM>(buffer.Address()));
  RECT rect;
  buffer.Read(0, &rect, sizeof(rect));
  const LPARAM place = MAKELPARAM((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2);
  SendMessageW(header, WM_LBUTTONDOWN, MK_LBUTTON, place);
  SendMessageW(header, WM_LBUTTONUP, 0, place);
}

void GuiProgram::SendDpiChange(int dpi, const RECT& place) const {
  const RemoteBuffer buffer(process_.Handle(), sizeof(RECT));
  buffer.Write(0, &place, sizeof(place));
  SendMessageW(window_, WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(buffer.Address()));
}

void GuiProgram::Screenshot(const std::wstring& name) const {
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
  for (int i = 0; i < 5; ++i) {
    SendMessageW(window_, WM_NULL, 0, 0);
    Sleep(60);
  }
  RECT place;
  GetWindowRect(window_, &place);
  SaveScreenshot(name, place);
}

}  // namespace smh::test
