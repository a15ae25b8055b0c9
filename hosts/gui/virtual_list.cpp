#include "hosts/gui/virtual_list.h"

#include "hosts/common/language.h"
#include "hosts/gui/accessible_list.h"
#include "hosts/gui/dpi.h"
#include "hosts/gui/text_direction.h"
#include "hosts/gui/theme_list.h"
#include "hosts/gui/window_images.h"

#include <uxtheme.h>

#include <algorithm>
#include <utility>

namespace smh {

namespace {

constexpr DWORD kStyle = WS_CHILD | WS_TABSTOP | WS_CLIPSIBLINGS | LVS_REPORT | LVS_OWNERDATA |
                         LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS;

bool StartsWith(const std::wstring& text, const std::wstring& begin) noexcept {
  const int length = static_cast<int>(begin.size());
  return text.size() >= begin.size() && CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, text.c_str(),
                                                       length, begin.c_str(), length) == CSTR_EQUAL;
}

}  // namespace

void VirtualList::Create(HWND parent, int id, std::vector<ListColumn> columns, ListSource source) {
  source_ = std::move(source);
  const DWORD sorting = source_.onSort ? 0 : LVS_NOSORTHEADER;
  list_ = CreateWindowExW(WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"", kStyle | sorting, 0, 0, 0, 0, parent,
                          reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
  SetWindowTheme(list_, L"Explorer", nullptr);
  const DWORD checks = source_.checked ? LVS_EX_CHECKBOXES : 0;
  // Not every system turns a mirrored list the right way round when it copies it to the screen.
  const DWORD buffer = IsMirrored(CurrentLanguage()) ? 0 : LVS_EX_DOUBLEBUFFER;
  ListView_SetExtendedListViewStyle(list_, LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP | buffer | checks);
  if (source_.checked) ListView_SetCallbackMask(list_, LVIS_STATEIMAGEMASK);
  columns_.Create(list_, std::move(columns));
  tips_.Create(list_, [this](std::size_t row, std::size_t column) {
    return row < count_ ? Directed(source_.text(row, column)) : std::wstring();
  });
  SetWindowSubclass(list_, OnMessage, 1, reinterpret_cast<DWORD_PTR>(this));
}

LRESULT CALLBACK VirtualList::OnMessage(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                        DWORD_PTR self) noexcept {
  auto& own = *reinterpret_cast<VirtualList*>(self);
  if (message == WM_NCDESTROY) {
    RemoveWindowSubclass(list, OnMessage, id);
    return DefSubclassProc(list, message, wParam, lParam);
  }
  if (message == WM_CONTEXTMENU && own.source_.onHeaderMenu &&
      reinterpret_cast<HWND>(wParam) == ListView_GetHeader(list)) {
    own.source_.onHeaderMenu({static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))});
    return 0;
  }
  own.tips_.OnListMessage(message, wParam, lParam);
  const LRESULT result = DefSubclassProc(list, message, wParam, lParam);
  own.columns_.OnListMessage(message, lParam);
  return result;
}

void VirtualList::Describe(std::wstring name, std::wstring action) {
  accessible_.Attach(list_,
                     std::make_unique<AccessibleList>(columns_, list_, std::move(name), std::move(action)));
}

void VirtualList::SetCount(std::size_t count) {
  // The same number said once more can take as long as a page to draw.
  if (count != count_) {
    ListView_SetItemCountEx(list_, static_cast<int>(count), LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
  }
  count_ = count;
  selection_.reset();
  InvalidateRect(list_, nullptr, FALSE);
}

void VirtualList::SetDpi(int dpi, HFONT font) {
  dpi_ = dpi;
  columns_.SetDpi(dpi);
  SendMessageW(list_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  tips_.SetDpi(dpi, font);
  if (!source_.checked) return;
  ScopedImageList images = MakeCheckImages(dpi);
  ListView_SetImageList(list_, images.Get(), LVSIL_STATE);
  checkImages_ = std::move(images);
}

void VirtualList::SetImages(HIMAGELIST images) {
  if (ListView_GetImageList(list_, LVSIL_SMALL) != images) ListView_SetImageList(list_, images, LVSIL_SMALL);
  int width = 0;
  int height = 0;
  if (images == nullptr || !ImageList_GetIconSize(images, &width, &height)) return;
  const int blank = ListView_GetStringWidth(list_, L"          ") / 10;
  blanksForImage_ = blank > 0 ? static_cast<std::size_t>((width + Scaled(3, dpi_)) / blank + 1) : 0;
}

std::vector<std::size_t> VirtualList::Selection() const {
  // Asked for every command after every change: thousands of messages at a time.
  if (selection_) return *selection_;
  std::vector<std::size_t> rows;
  for (int row = -1; (row = ListView_GetNextItem(list_, row, LVNI_SELECTED)) >= 0;) {
    rows.push_back(static_cast<std::size_t>(row));
  }
  selection_ = rows;
  return rows;
}

void VirtualList::Select(const std::vector<std::size_t>& rows, std::size_t focused) {
  const std::vector<std::size_t> before = Selection();
  quiet_ = true;
  if (before != rows) {
    ListView_SetItemState(list_, -1, 0, LVIS_SELECTED);
    if (rows.size() == count_) {
      SelectAll();
    } else {
      for (const std::size_t row : rows) {
        ListView_SetItemState(list_, static_cast<int>(row), LVIS_SELECTED, LVIS_SELECTED);
      }
    }
  }
  if (focused < count_ && focused != Focused()) {
    ListView_SetItemState(list_, static_cast<int>(focused), LVIS_FOCUSED, LVIS_FOCUSED);
    ListView_SetSelectionMark(list_, static_cast<int>(focused));
  }
  quiet_ = false;
  selection_.reset();
  if (source_.onSelect) source_.onSelect();
}

// The list tells of every row by itself; that all of them are selected is told once.
void VirtualList::SelectAll() {
  const bool wasQuiet = std::exchange(quiet_, true);
  ListView_SetItemState(list_, -1, LVIS_SELECTED, LVIS_SELECTED);
  quiet_ = wasQuiet;
  selection_.reset();
  if (!quiet_ && source_.onSelect) source_.onSelect();
}

std::size_t VirtualList::Focused() const {
  return static_cast<std::size_t>(ListView_GetNextItem(list_, -1, LVNI_FOCUSED));
}

std::size_t VirtualList::TopRow() const {
  return static_cast<std::size_t>(ListView_GetTopIndex(list_));
}

void VirtualList::ScrollTo(std::size_t topRow) const {
  RECT row;
  if (count_ == 0 || topRow == TopRow() || !ListView_GetItemRect(list_, 0, &row, LVIR_BOUNDS)) return;
  const int rows = static_cast<int>(topRow) - static_cast<int>(TopRow());
  ListView_Scroll(list_, 0, rows * (row.bottom - row.top));
}

std::wstring VirtualList::SelectedText() const {
  std::wstring text;
  const std::vector<std::size_t> columns = columns_.Order();
  for (const std::size_t row : Selection()) {
    for (const std::size_t column : columns) {
      if (column != columns.front()) text += L'\t';
      text += source_.copied ? source_.copied(row, column) : source_.text(row, column);
    }
    text += L"\r\n";
  }
  return text;
}

bool VirtualList::OnNotify(const NMHDR& header, LRESULT& result) {
  if (header.hwndFrom != list_) return false;
  auto& details = const_cast<NMHDR&>(header);
  result = 0;
  switch (header.code) {
    case LVN_GETDISPINFOW:
      FillItem(reinterpret_cast<NMLVDISPINFOW&>(details));
      return true;
    case NM_CUSTOMDRAW:
      result = Draw(reinterpret_cast<NMLVCUSTOMDRAW&>(details));
      return true;
    case LVN_ODFINDITEMW:
      result = FindText(reinterpret_cast<NMLVFINDITEMW&>(details));
      return true;
    case LVN_COLUMNCLICK:
      if (source_.onSort) {
        source_.onSort(static_cast<std::size_t>(reinterpret_cast<NMLISTVIEW&>(details).iSubItem));
      }
      return true;
    case NM_CLICK:
    case NM_DBLCLK:
      OnClick(reinterpret_cast<NMITEMACTIVATE&>(details));
      return true;
    case LVN_KEYDOWN:
      OnKey(reinterpret_cast<NMLVKEYDOWN&>(details));
      return true;
    case NM_SETFOCUS:
      ShowFocus();
      return true;
    case LVN_ITEMACTIVATE:
      if (source_.onActivate) source_.onActivate();
      return true;
    case LVN_ITEMCHANGED:
    case LVN_ODSTATECHANGED:
      OnStateChanged();
      return true;
    default:
      return false;
  }
}

void VirtualList::FillItem(NMLVDISPINFOW& info) const {
  LVITEMW& item = info.item;
  const auto row = static_cast<std::size_t>(item.iItem);
  const auto column = static_cast<std::size_t>(item.iSubItem);
  if (row >= count_) return;
  const int image = source_.image ? source_.image(row, column) : I_IMAGENONE;
  if ((item.mask & LVIF_TEXT) != 0 && item.cchTextMax > 0) {
    const std::size_t room = column > 0 && image >= 0 ? blanksForImage_ : 0;
    lstrcpynW(item.pszText, Directed(source_.text(row, column), room).c_str(), item.cchTextMax);
  }
  if ((item.mask & LVIF_IMAGE) != 0) item.iImage = column == 0 ? image : I_IMAGENONE;
  if (source_.checked && column == 0 && (item.mask & LVIF_STATE) != 0) {
    item.stateMask |= LVIS_STATEIMAGEMASK;
    item.state |= INDEXTOSTATEIMAGEMASK(source_.checked(row) ? 2u : 1u);
  }
}

LRESULT VirtualList::Draw(NMLVCUSTOMDRAW& draw) const {
  const auto row = static_cast<std::size_t>(draw.nmcd.dwItemSpec);
  switch (draw.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
      return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
      if (source_.color && row < count_) draw.clrText = source_.color(row);
      if (IsDark() && row < count_) {
        const HDC canvas = draw.nmcd.hdc;
        DrawListRow(list_, canvas, static_cast<int>(row),
                    source_.color ? draw.clrText : ColorOf(Role::kText));
        if (source_.image) DrawImages(canvas, row);
        return CDRF_SKIPDEFAULT;
      }
      return source_.image ? CDRF_NOTIFYPOSTPAINT : CDRF_DODEFAULT;
    case CDDS_ITEMPOSTPAINT:
      if (row < count_) DrawImages(draw.nmcd.hdc, row);
      return CDRF_DODEFAULT;
    default:
      return CDRF_DODEFAULT;
  }
}

// The pictures of the columns behind the first. The list view's own way to have them takes room for one in
// every column on some systems.
void VirtualList::DrawImages(HDC canvas, std::size_t row) const {
  const HIMAGELIST images = ListView_GetImageList(list_, LVSIL_SMALL);
  int width = 0;
  int height = 0;
  if (images == nullptr || !ImageList_GetIconSize(images, &width, &height)) return;
  for (std::size_t column = 1; column < columns_.Count(); ++column) {
    const int image = source_.image(row, column);
    RECT cell;
    if (image < 0 || !ListView_GetSubItemRect(list_, static_cast<int>(row), static_cast<int>(column),
                                              LVIR_BOUNDS, &cell)) {
      continue;
    }
    const int left = static_cast<int>(cell.left) + Scaled(4, dpi_);
    const int top = static_cast<int>(cell.top + cell.bottom - height) / 2;
    if (left + width < cell.right) ImageList_Draw(images, image, canvas, left, top, ILD_TRANSPARENT);
  }
}

// The next row, from the given one on and around, whose first column begins with the text.
LRESULT VirtualList::FindText(const NMLVFINDITEMW& find) const {
  if ((find.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) == 0 || find.lvfi.psz == nullptr) return -1;
  const std::wstring wanted = find.lvfi.psz;
  const std::size_t start = static_cast<std::size_t>(std::max(find.iStart, 0));
  for (std::size_t i = 0; i < count_; ++i) {
    const std::size_t row = (start + i) % count_;
    if (StartsWith(source_.text(row, 0), wanted)) return static_cast<LRESULT>(row);
  }
  return -1;
}

// The list toggles no check box by itself: the row shows the state of its entry.
void VirtualList::OnClick(const NMITEMACTIVATE& click) const {
  if (!source_.onCheck || !source_.checked) return;
  LVHITTESTINFO hit = {};
  hit.pt = click.ptAction;
  const int row = static_cast<int>(SendMessageW(list_, LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
  if (row >= 0 && (hit.flags & LVHT_ONITEM) == LVHT_ONITEMSTATEICON)
    source_.onCheck(static_cast<std::size_t>(row));
}

void VirtualList::OnKey(const NMLVKEYDOWN& key) const {
  if (Focused() >= count_) return;
  // The first key in a list where nothing is selected may find the focus where it leads to.
  const bool moves = key.wVKey >= VK_PRIOR && key.wVKey <= VK_DOWN && GetKeyState(VK_CONTROL) >= 0;
  if (moves && ListView_GetSelectedCount(list_) == 0) {
    ListView_SetItemState(list_, static_cast<int>(Focused()), LVIS_SELECTED, LVIS_SELECTED);
  }
  if (key.wVKey == VK_SPACE && source_.onCheck) source_.onCheck(Focused());
  const bool isArrow = key.wVKey == VK_RIGHT || key.wVKey == VK_LEFT;
  const WORD onwards = IsMirrored(CurrentLanguage()) ? VK_LEFT : VK_RIGHT;
  if (isArrow && source_.onFold) source_.onFold(Focused(), key.wVKey == onwards);
}

// A list that has the focus shows where.
void VirtualList::ShowFocus() const {
  if (count_ > 0 && Focused() >= count_) ListView_SetItemState(list_, 0, LVIS_FOCUSED, LVIS_FOCUSED);
}

void VirtualList::OnStateChanged() {
  selection_.reset();
  if (!quiet_ && source_.onSelect) source_.onSelect();
}

}  // namespace smh
