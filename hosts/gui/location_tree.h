// The tree at the left: all entries, the locations by group with the number of their entries, the other
// views. For the window's thread.
#pragma once

#include "hosts/gui/accessible_window.h"
#include "hosts/gui/entry_rows.h"

#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <vector>

namespace smh {

// The control belongs to `parent`, which destroys it.
class LocationTree {
 public:
  // Which view a node chooses.
  enum class Kind { kEntries, kPrograms, kUndo };
  // One line of the tree: its view and, for entries, the locations that it shows.
  struct Node {
    Kind kind;
    LocationSet locations;
    std::wstring title;
    HTREEITEM item;
  };
  // Told of every change of the selected node, by the user or by Select and Build. The node is valid until
  // the next Build.
  using OnSelect = std::function<void(const Node& node)>;

  // What the node's locations are called on their own; empty for all entries.
  static std::wstring PlaceTitle(const Node& node);

  // Makes the tree without nodes. Called once; `onSelect` is kept as long as the object.
  void Create(HWND parent, OnSelect onSelect);
  HWND Handle() const noexcept { return tree_; }
  // Makes the nodes anew, for all locations or for those read by default; the node of the same title stays
  // selected, else the first one is.
  void Build(bool allLocations);
  // Writes the number of entries behind each title.
  void ShowCounts(const EntryRows& rows);
  // The font is the caller's and lives until the next call.
  void SetDpi(int dpi, HFONT font) const;
  // The title of the selected node with its number of entries; empty without one.
  std::wstring SelectedText() const;
  // Selects the first node of that kind.
  void Select(Kind kind) const;
  // Answers a notification; true when it was the tree's.
  bool OnNotify(const NMHDR& header);

 private:
  const Node* NodeOf(HTREEITEM item) const;
  std::wstring TextOfNode(HTREEITEM item) const;
  HTREEITEM Add(HTREEITEM parent, Kind kind, LocationSet locations, const std::wstring& title);
  void AddLocations(HTREEITEM root, bool all);

  HWND tree_ = nullptr;
  AccessibleWindow accessible_;
  OnSelect onSelect_;
  std::vector<Node> nodes_;
  bool building_ = false;
};

}  // namespace smh
