// The tree at the left: all entries, the locations by group with the number of their entries, the other
// views.
#pragma once

#include "hosts/gui/entry_rows.h"

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <vector>

namespace smh {

class LocationTree {
 public:
  enum class Kind { kEntries, kPrograms, kUndo };
  struct Node {
    Kind kind;
    LocationSet locations;
    std::wstring title;
    HTREEITEM item;
  };
  using OnSelect = std::function<void(const Node& node)>;

  void Create(HWND parent, OnSelect onSelect);
  HWND Handle() const noexcept { return tree_; }
  // Makes the nodes anew; what was selected stays so as long as it is there.
  void Build(bool allLocations);
  void ShowCounts(const EntryRows& rows);
  void SetDpi(int dpi, HFONT font) const;
  void Select(Kind kind) const;
  bool OnNotify(const NMHDR& header);

 private:
  const Node* NodeOf(HTREEITEM item) const;
  HTREEITEM Add(HTREEITEM parent, Kind kind, LocationSet locations, const std::wstring& title);
  void AddLocations(HTREEITEM root, bool all);

  HWND tree_ = nullptr;
  OnSelect onSelect_;
  std::vector<Node> nodes_;
  bool building_ = false;
};

}  // namespace smh
