// A tree for programs that read the screen: all nodes in their order, one list with their depths as values.
#pragma once

#include "hosts/gui/accessible_model.h"

#include <commctrl.h>

namespace smh {

// Reads everything from the control, which it does not own.
class AccessibleTree final : public AccessibleModel {
 public:
  AccessibleTree(HWND tree, std::wstring name);

  // See accessible_model.h. The numbers of nodes are valid until nodes come or go. Nodes with others below
  // them are opened and closed by the default action.
  int Count() const override;
  std::wstring Name(int child) const override;
  std::wstring Value(int child) const override;
  DWORD Role(int child) const override;
  DWORD State(int child) const override;
  RECT Place(int child) const override;
  int HitTest(POINT point) const override;
  int Focused() const override;
  std::vector<int> Selected() const override;
  std::wstring DefaultAction(int child) const override;
  void DoDefaultAction(int child) override;
  bool Select(int child, LONG flags) override;

 private:
  struct Node {
    HTREEITEM item;
    int depth;
  };
  std::vector<Node> Nodes() const;
  HTREEITEM ItemOf(int child) const { return Nodes()[static_cast<std::size_t>(child) - 1].item; }
  int NumberOf(HTREEITEM item) const;
  bool HasChildren(HTREEITEM item) const;
  bool IsOpen(HTREEITEM item) const;

  const HWND tree_;
  const std::wstring name_;
};

}  // namespace smh
