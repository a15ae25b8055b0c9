#include "hosts/gui/location_tree.h"

#include "hosts/common/location_names.h"
#include "hosts/gui/accessible_tree.h"
#include "hosts/gui/dpi.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/frame_texts.h"

#include <algorithm>
#include <map>

namespace smh {

namespace {

std::wstring Counted(const std::wstring& title, std::size_t count) {
  return count == 0 ? title : title + L" (" + std::to_wstring(count) + L")";
}

}  // namespace

void LocationTree::Create(HWND parent, OnSelect onSelect) {
  onSelect_ = std::move(onSelect);
  tree_ = CreateWindowExW(WS_EX_CLIENTEDGE, WC_TREEVIEWW, L"",
                          WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | TVS_HASBUTTONS |
                              TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_DISABLEDRAGDROP,
                          0, 0, 0, 0, parent, reinterpret_cast<HMENU>(IDC_TREE), nullptr, nullptr);
  accessible_.Attach(tree_, std::make_unique<AccessibleTree>(tree_, texts::kNameTree.Get()));
}

void LocationTree::Build(bool allLocations) {
  const Node* const selected = NodeOf(TreeView_GetSelection(tree_));
  const std::wstring before = selected == nullptr ? std::wstring() : selected->title;
  building_ = true;
  SendMessageW(tree_, WM_SETREDRAW, FALSE, 0);
  TreeView_DeleteAllItems(tree_);
  nodes_.clear();
  const HTREEITEM root = Add(TVI_ROOT, Kind::kEntries, LocationSet().set(), texts::kAllEntries.Get());
  AddLocations(root, allLocations);
  TreeView_Expand(tree_, root, TVE_EXPAND);
  Add(TVI_ROOT, Kind::kPrograms, {}, texts::kDefaultPrograms.Get());
  Add(TVI_ROOT, Kind::kUndo, {}, texts::kUndoHistory.Get());
  const auto again =
      std::find_if(nodes_.begin(), nodes_.end(), [&](const Node& node) { return node.title == before; });
  building_ = false;
  TreeView_SelectItem(tree_, again == nodes_.end() ? root : again->item);
  SendMessageW(tree_, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(tree_, nullptr, TRUE);
}

void LocationTree::AddLocations(HTREEITEM root, bool all) {
  std::map<std::wstring_view, HTREEITEM> groups;
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    if (!all && !IsReadByDefault(location)) continue;
    const LocationRow& row = LocationRowOf(location);
    const auto [place, isNew] = groups.try_emplace(row.group);
    if (isNew) place->second = Add(root, Kind::kEntries, {}, ShownLocationGroup(row));
    const HTREEITEM group = place->second;
    const auto parent =
        std::find_if(nodes_.begin(), nodes_.end(), [&](const Node& node) { return node.item == group; });
    parent->locations.set(static_cast<std::size_t>(location));
    LocationSet own;
    Add(group, Kind::kEntries, own.set(static_cast<std::size_t>(location)), ShownLocationTitle(row));
    // What people come for stands open.
    if (FamilyOf(row).canModify) TreeView_Expand(tree_, group, TVE_EXPAND);
  }
}

HTREEITEM LocationTree::Add(HTREEITEM parent, Kind kind, LocationSet locations, const std::wstring& title) {
  std::wstring text = title;
  TVINSERTSTRUCTW insert = {};
  insert.hParent = parent;
  insert.hInsertAfter = TVI_LAST;
  insert.item.mask = TVIF_TEXT;
  insert.item.pszText = text.data();
  const auto item =
      reinterpret_cast<HTREEITEM>(SendMessageW(tree_, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
  nodes_.push_back({kind, locations, title, item});
  return item;
}

void LocationTree::ShowCounts(const EntryRows& rows) {
  for (const Node& node : nodes_) {
    if (node.kind != Kind::kEntries) continue;
    std::size_t count = 0;
    for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
      if (node.locations[location]) count += rows.CountOf(location);
    }
    std::wstring text = Counted(node.title, count);
    if (text == TextOfNode(node.item)) continue;
    TVITEMW item = {};
    item.mask = TVIF_TEXT;
    item.hItem = node.item;
    item.pszText = text.data();
    SendMessageW(tree_, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  }
}

std::wstring LocationTree::PlaceTitle(const Node& node) {
  if (node.locations.all()) return {};
  if (node.locations.count() != 1) return node.title;
  std::int32_t location = kFirstLocation;
  while (!node.locations[static_cast<std::size_t>(location)]) ++location;
  return FullTitle(location);
}

std::wstring LocationTree::TextOfNode(HTREEITEM node) const {
  wchar_t text[128] = L"";
  TVITEMW item = {};
  item.mask = TVIF_TEXT;
  item.hItem = node;
  item.pszText = text;
  item.cchTextMax = ARRAYSIZE(text);
  SendMessageW(tree_, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  return text;
}

std::wstring LocationTree::SelectedText() const {
  const HTREEITEM selected = TreeView_GetSelection(tree_);
  return selected == nullptr ? std::wstring() : TextOfNode(selected);
}

void LocationTree::SetDpi(int dpi, HFONT font) const {
  SendMessageW(tree_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  TreeView_SetItemHeight(tree_, FontHeight(tree_, font) + Scaled(6, dpi));
  TreeView_SetIndent(tree_, Scaled(14, dpi));
}

void LocationTree::Select(Kind kind) const {
  const auto node =
      std::find_if(nodes_.begin(), nodes_.end(), [kind](const Node& each) { return each.kind == kind; });
  if (node != nodes_.end()) TreeView_SelectItem(tree_, node->item);
}

bool LocationTree::OnNotify(const NMHDR& header) {
  if (header.hwndFrom != tree_) return false;
  if (header.code == TVN_SELCHANGEDW && !building_) {
    if (const Node* const node = NodeOf(reinterpret_cast<const NMTREEVIEWW&>(header).itemNew.hItem))
      onSelect_(*node);
  }
  return true;
}

const LocationTree::Node* LocationTree::NodeOf(HTREEITEM item) const {
  const auto node =
      std::find_if(nodes_.begin(), nodes_.end(), [item](const Node& each) { return each.item == item; });
  return item == nullptr || node == nodes_.end() ? nullptr : &*node;
}

}  // namespace smh
