// What keeps the shell and the browser from loading a class, as it was read at one time: the lists of blocked
// and approved extensions, in each registry view, and what the user and policies say of browser add-ons.
#pragma once

#include "effective/switch_value.h"

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace smh {

// Whose own view it is: that of 64-bit programs, or of 32-bit ones. A 32-bit Windows has the latter only.
enum class LoaderView { k64, k32 };

// A class as the registry spells it, "{8-4-4-4-12}"; none for any other text.
std::optional<GUID> ClassIn(std::wstring_view text) noexcept;

// Constant once it is read; for any thread then. Neither disk nor registry is touched but by Read.
class ExtensionRules {
 public:
  // `approved`: the lists of approved classes, too, which count only when a policy says so. Raises
  // std::bad_alloc.
  void Read(bool approved);

  Told IsBlocked(const GUID& identifier, LoaderView view) const noexcept;
  Told IsApproved(const GUID& identifier, LoaderView view) const noexcept;
  // Of browser add-ons: whether the user has switched it off, and whether a policy forbids it.
  Told IsSwitchedOff(const GUID& identifier) const noexcept;
  Told IsForbidden(const GUID& identifier) const noexcept;
  // Whether the browser loads no browser objects at all.
  Told AreObjectsOff() const noexcept { return areObjectsOff_; }

 private:
  struct NamedClass {
    GUID identifier;
    Told told;
    // The user's choice does not count.
    bool isFixed = false;
  };
  // Sorted by class.
  struct ClassList {
    std::vector<NamedClass> classes;
    bool isUntold = false;
  };
  // The user's, and the machine's by LoaderView.
  struct ViewedList {
    ClassList user;
    std::array<ClassList, 2> machine;
  };
  struct AddOnPolicy {
    ClassList classes;
    Told isListOnly = Told::kNo;
  };

  bool IsAllowed(const GUID& identifier) const noexcept;
  static const NamedClass* Find(const ClassList& list, const GUID& identifier) noexcept;
  static Told IsIn(const ClassList& list, const GUID& identifier) noexcept;
  static Told IsIn(const ViewedList& list, const GUID& identifier, LoaderView view) noexcept;
  static ClassList ReadClasses(HKEY root, std::wstring_view list, REGSAM view);
  static ViewedList ReadViews(std::wstring_view list);
  static AddOnPolicy ReadPolicy(HKEY root);
  static ClassList ReadSwitchedOff();
  static Told ReadObjectsOff();

  ViewedList blocked_;
  ViewedList approved_;
  ClassList switchedOff_;
  AddOnPolicy userPolicy_;
  AddOnPolicy machinePolicy_;
  Told areObjectsOff_ = Told::kNo;
};

}  // namespace smh
