// A report list for programs that read the screen: its rows, each with the texts of its columns.
#pragma once

#include "hosts/gui/accessible_model.h"
#include "hosts/gui/list_columns.h"

namespace smh {

// Reads everything else from the control, which it does not own.
class AccessibleList final : public AccessibleModel {
 public:
  // `columns` are those of the list, and outlive this object. `action` names what Enter does with a row;
  // empty when it does nothing.
  AccessibleList(const ListColumns& columns, HWND list, std::wstring name, std::wstring action);

  // See accessible_model.h. A row is named by its cells in the order of the columns on the screen, with the
  // titles of those behind the first.
  int Count() const override;
  std::wstring Name(int child) const override;
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
  std::wstring Cell(int row, int column) const;
  bool Is(int row, UINT state) const;
  void Set(int row, UINT state, UINT mask) const;

  const ListColumns& columns_;
  const HWND list_;
  const std::wstring name_;
  const std::wstring action_;
};

}  // namespace smh
