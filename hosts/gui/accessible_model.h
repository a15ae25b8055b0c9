// What a pane of the window tells programs that read the screen. For the window's thread.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace smh {

// A pane and what is in it, as simple elements below one object. Children are numbered from 1; 0 is the pane
// itself, and none where a child is asked for. A number that does not exist never arrives. Roles and states
// are those of oleacc.h (ROLE_SYSTEM_, STATE_SYSTEM_). Texts that are not overridden are empty, lists as
// well.
class AccessibleModel {
 public:
  virtual ~AccessibleModel() = default;

  virtual int Count() const { return 0; }
  virtual std::wstring Name(int child) const = 0;
  virtual std::wstring Value(int) const { return {}; }
  virtual std::wstring Description(int) const { return {}; }
  virtual std::wstring Keys(int) const { return {}; }
  virtual DWORD Role(int child) const = 0;
  virtual DWORD State(int child) const = 0;
  // In pixels of the pane's client area.
  virtual RECT Place(int child) const = 0;
  // The child below a point of the client area; 0 for none.
  virtual int HitTest(POINT) const { return 0; }
  // The child that has the focus when the pane has; 0 for none.
  virtual int Focused() const { return 0; }
  // In rising order.
  virtual std::vector<int> Selected() const { return {}; }
  // "Open", for people; empty when there is nothing to do.
  virtual std::wstring DefaultAction(int) const { return {}; }
  // Begins the action and returns before it is done: it may ask the user.
  virtual void DoDefaultAction(int) {}
  // Changes selection and focus as SELFLAG_ in `flags` says; false when that is not possible.
  virtual bool Select(int, LONG) { return false; }
};

}  // namespace smh
