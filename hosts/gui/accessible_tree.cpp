#include "hosts/gui/accessible_tree.h"

#include "hosts/gui/texts/frame_texts.h"

#include <oleacc.h>

#include <utility>

namespace smh {

AccessibleTree::AccessibleTree(HWND tree, std::wstring name) : tree_(tree), name_(std::move(name)) {}

std::vector<AccessibleTree::Node> AccessibleTree::Nodes() const {
  std::vector<Node> nodes;
  int depth = 0;
  HTREEITEM item = TreeView_GetRoot(tree_);
  while (item != nullptr) {
    nodes.push_back({item, depth});
    HTREEITEM next = TreeView_GetChild(tree_, item);
    if (next != nullptr) {
      ++depth;
    } else {
      // The next one beside the node, else beside the nearest node above that has one.
      while (item != nullptr && (next = TreeView_GetNextSibling(tree_, item)) == nullptr) {
        item = TreeView_GetParent(tree_, item);
        --depth;
      }
    }
    item = next;
  }
  return nodes;
}

int AccessibleTree::NumberOf(HTREEITEM item) const {
  const std::vector<Node> nodes = Nodes();
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (nodes[i].item == item) return static_cast<int>(i) + 1;
  }
  return 0;
}

bool AccessibleTree::HasChildren(HTREEITEM item) const {
  return TreeView_GetChild(tree_, item) != nullptr;
}

bool AccessibleTree::IsOpen(HTREEITEM item) const {
  return (TreeView_GetItemState(tree_, item, TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
}

int AccessibleTree::Count() const {
  return static_cast<int>(TreeView_GetCount(tree_));
}

std::wstring AccessibleTree::Name(int child) const {
  if (child == 0) return name_;
  wchar_t text[256] = L"";
  TVITEMW item = {};
  item.mask = TVIF_TEXT;
  item.hItem = ItemOf(child);
  item.pszText = text;
  item.cchTextMax = ARRAYSIZE(text);
  SendMessageW(tree_, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  return text;
}

std::wstring AccessibleTree::Value(int child) const {
  return child == 0 ? std::wstring() : std::to_wstring(Nodes()[static_cast<std::size_t>(child) - 1].depth);
}

DWORD AccessibleTree::Role(int child) const {
  return child == 0 ? ROLE_SYSTEM_OUTLINE : ROLE_SYSTEM_OUTLINEITEM;
}

DWORD AccessibleTree::State(int child) const {
  const bool hasFocus = GetFocus() == tree_;
  DWORD state = STATE_SYSTEM_FOCUSABLE;
  if (child == 0) return state | (hasFocus ? STATE_SYSTEM_FOCUSED : 0);
  const HTREEITEM item = ItemOf(child);
  state |= STATE_SYSTEM_SELECTABLE;
  if (TreeView_GetSelection(tree_) == item) {
    state |= STATE_SYSTEM_SELECTED | (hasFocus ? STATE_SYSTEM_FOCUSED : 0);
  }
  if (HasChildren(item)) state |= IsOpen(item) ? STATE_SYSTEM_EXPANDED : STATE_SYSTEM_COLLAPSED;
  RECT place;
  if (!TreeView_GetItemRect(tree_, item, &place, TRUE)) state |= STATE_SYSTEM_INVISIBLE;
  return state;
}

RECT AccessibleTree::Place(int child) const {
  RECT place = {};
  if (child == 0) {
    GetClientRect(tree_, &place);
  } else if (!TreeView_GetItemRect(tree_, ItemOf(child), &place, TRUE)) {
    place = {};
  }
  return place;
}

int AccessibleTree::HitTest(POINT point) const {
  TVHITTESTINFO hit = {};
  hit.pt = point;
  const HTREEITEM item = TreeView_HitTest(tree_, &hit);
  return item == nullptr ? 0 : NumberOf(item);
}

int AccessibleTree::Focused() const {
  const HTREEITEM item = TreeView_GetSelection(tree_);
  return item == nullptr ? 0 : NumberOf(item);
}

std::vector<int> AccessibleTree::Selected() const {
  const int focused = Focused();
  return focused == 0 ? std::vector<int>() : std::vector<int>{focused};
}

std::wstring AccessibleTree::DefaultAction(int child) const {
  if (child == 0 || !HasChildren(ItemOf(child))) return {};
  return IsOpen(ItemOf(child)) ? texts::kActCollapse.Get() : texts::kActExpand.Get();
}

void AccessibleTree::DoDefaultAction(int child) {
  TreeView_Expand(tree_, ItemOf(child), TVE_TOGGLE);
}

// One node is selected, and it has the focus.
bool AccessibleTree::Select(int child, LONG flags) {
  if ((flags & ~(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION)) != 0) return false;
  if ((flags & SELFLAG_TAKEFOCUS) != 0) SetFocus(tree_);
  if (child != 0) TreeView_SelectItem(tree_, ItemOf(child));
  return child != 0 || flags == SELFLAG_TAKEFOCUS;
}

}  // namespace smh
