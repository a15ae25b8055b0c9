#include "hosts/gui/dialogs.h"

#include "hosts/gui/access_keys.h"
#include "hosts/gui/control_direction.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/text_direction.h"
#include "hosts/gui/texts/dialog_texts.h"

#include <commctrl.h>

#include <cstring>
#include <span>
#include <vector>

namespace smh {

namespace {

struct ControlText {
  int control;
  const Text* text;
};
constexpr ControlText kAdd[] = {
    {IDC_LOCATION_LABEL, &texts::kAddLocation},
    {IDC_NAME_LABEL, &texts::kAddName},
    {IDC_COMMAND_LABEL, &texts::kAddCommand},
    {IDC_BROWSE, &texts::kBrowse},
    {IDOK, &texts::kAddVerb},
    {IDCANCEL, &texts::kCancel},
};
constexpr ControlText kMove[] = {
    {IDOK, &texts::kMoveVerb},
    {IDCANCEL, &texts::kCancel},
};
constexpr ControlText kCommand[] = {
    {IDC_BROWSE, &texts::kBrowse},
    {IDOK, &texts::kCommandVerb},
    {IDCANCEL, &texts::kCancel},
};
constexpr ControlText kKeys[] = {
    {IDOK, &texts::kClose},
};
constexpr ControlText kColumns[] = {
    {IDC_COLUMN_LABEL, &texts::kColumnsLabel},
    {IDC_COLUMN_UP, &texts::kColumnsUp},
    {IDC_COLUMN_DOWN, &texts::kColumnsDown},
    {IDC_COLUMN_RESET, &texts::kColumnsReset},
    {IDOK, &texts::kOk},
    {IDCANCEL, &texts::kCancel},
};

struct DialogRow {
  int id;
  const Text& caption;
  std::span<const ControlText> controls;
};
constexpr DialogRow kDialogs[] = {
    {IDD_ADD, texts::kAddCaption, kAdd},
    {IDD_MOVE, texts::kMoveCaption, kMove},
    {IDD_COMMAND, texts::kCommandCaption, kCommand},
    {IDD_KEYS, texts::kKeysCaption, kKeys},
    {IDD_COLUMNS, texts::kColumnsCaption, kColumns},
};

constexpr bool HaveOwnLetters() {
  for (const DialogRow& row : kDialogs) {
    if (!HaveOwnAccessKeys(row.controls)) return false;
  }
  return true;
}
static_assert(HaveOwnLetters());

// How a template of the extended kind begins.
struct TemplateHead {
  WORD version;
  WORD signature;
  DWORD help;
  DWORD exStyle;
};

BOOL CALLBACK DirectEdit(HWND control, LPARAM) {
  wchar_t name[16] = L"";
  if (GetClassNameW(control, name, ARRAYSIZE(name)) > 0 && lstrcmpiW(name, WC_EDITW) == 0)
    DirectText(control);
  return TRUE;
}

// A copy of the template: controls take the direction of their dialog when they are made.
std::vector<DWORD> TemplateOf(int id) {
  const HMODULE module = GetModuleHandleW(nullptr);
  const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(id), RT_DIALOG);
  const std::size_t size = SizeofResource(module, resource);
  const void* const bytes = LockResource(LoadResource(module, resource));
  std::vector<DWORD> copy(size / sizeof(DWORD) + 1);
  if (bytes != nullptr) std::memcpy(copy.data(), bytes, size);
  return copy;
}

}  // namespace

INT_PTR OpenDialog(HWND owner, int id, DLGPROC procedure, LPARAM parameter) {
  std::vector<DWORD> copy = TemplateOf(id);
  if (IsMirrored(CurrentLanguage())) {
    TemplateHead head;
    std::memcpy(&head, copy.data(), sizeof(head));
    head.exStyle |= WS_EX_LAYOUTRTL;
    std::memcpy(copy.data(), &head, sizeof(head));
  }
  return DialogBoxIndirectParamW(GetModuleHandleW(nullptr), reinterpret_cast<const DLGTEMPLATE*>(copy.data()),
                                 owner, procedure, parameter);
}

void SetDialogTexts(HWND dialog, int id) {
  for (const DialogRow& row : kDialogs) {
    if (row.id != id) continue;
    SetWindowTextW(dialog, row.caption.Get());
    EnumChildWindows(dialog, DirectEdit, 0);
    for (const ControlText& each : row.controls) {
      SetDlgItemTextW(dialog, each.control, Directed(each.text->Get()).c_str());
    }
  }
}

}  // namespace smh
