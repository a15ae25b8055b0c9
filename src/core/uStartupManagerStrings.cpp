#include "core/uStartupManagerStrings.h"

#include "core/contracts/boundary_call.h"
#include "model/checkpoint.h"

namespace smh {

namespace {

HRESULT GetText(ChangeKind kind, BoundaryText* text) noexcept {
  return BoundaryResult(text, [&] {
    *text = nullptr;
    *text = MakeBoundaryText(CheckpointText(kind));
  });
}

HRESULT SetText(ChangeKind kind, const wchar_t* text) noexcept {
  return BoundaryResult([&] { SetCheckpointText(kind, TextArgument(text)); });
}

}  // namespace

HRESULT TStartupManagerStrings::GetAddingText(BoundaryText* text) {
  return GetText(ChangeKind::kAdding, text);
}
HRESULT TStartupManagerStrings::SetAddingText(const wchar_t* text) {
  return SetText(ChangeKind::kAdding, text);
}
HRESULT TStartupManagerStrings::GetMovingText(BoundaryText* text) {
  return GetText(ChangeKind::kMoving, text);
}
HRESULT TStartupManagerStrings::SetMovingText(const wchar_t* text) {
  return SetText(ChangeKind::kMoving, text);
}
HRESULT TStartupManagerStrings::GetDeletingText(BoundaryText* text) {
  return GetText(ChangeKind::kDeleting, text);
}
HRESULT TStartupManagerStrings::SetDeletingText(const wchar_t* text) {
  return SetText(ChangeKind::kDeleting, text);
}
HRESULT TStartupManagerStrings::GetEnablingText(BoundaryText* text) {
  return GetText(ChangeKind::kEnabling, text);
}
HRESULT TStartupManagerStrings::SetEnablingText(const wchar_t* text) {
  return SetText(ChangeKind::kEnabling, text);
}
HRESULT TStartupManagerStrings::GetDisablingText(BoundaryText* text) {
  return GetText(ChangeKind::kDisabling, text);
}
HRESULT TStartupManagerStrings::SetDisablingText(const wchar_t* text) {
  return SetText(ChangeKind::kDisabling, text);
}
HRESULT TStartupManagerStrings::GetChangingText(BoundaryText* text) {
  return GetText(ChangeKind::kChanging, text);
}
HRESULT TStartupManagerStrings::SetChangingText(const wchar_t* text) {
  return SetText(ChangeKind::kChanging, text);
}

}  // namespace smh
