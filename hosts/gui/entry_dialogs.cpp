#include "hosts/gui/entry_dialogs.h"

#include "hosts/common/location_names.h"
#include "hosts/gui/control_direction.h"
#include "hosts/gui/dialog_place.h"
#include "hosts/gui/dialogs.h"
#include "hosts/gui/file_kinds.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/text_direction.h"
#include "hosts/gui/texts/dialog_texts.h"
#include "hosts/gui/theme_window.h"
#include "hosts/gui/window.h"
#include "infra/runtime/text.h"

#include <commdlg.h>

#include <memory>

namespace smh {

namespace {

std::wstring FieldText(HWND dialog, int control) {
  return Trim(TextOf(GetDlgItem(dialog, control)));
}

void FillLocations(HWND dialog, const LocationSet& locations, std::int32_t chosen) {
  const HWND box = GetDlgItem(dialog, IDC_LOCATION);
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    if (!locations[location]) continue;
    const std::wstring title = FullTitle(location);
    const LRESULT index = SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(title.c_str()));
    SendMessageW(box, CB_SETITEMDATA, static_cast<WPARAM>(index), location);
    if (location == chosen || index == 0) SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
  }
}

std::int32_t ChosenLocation(HWND dialog) {
  const HWND box = GetDlgItem(dialog, IDC_LOCATION);
  const LRESULT index = SendMessageW(box, CB_GETCURSEL, 0, 0);
  return index < 0
             ? std::int32_t{sulNone}
             : static_cast<std::int32_t>(SendMessageW(box, CB_GETITEMDATA, static_cast<WPARAM>(index), 0));
}

void Browse(HWND dialog) {
  wchar_t file[MAX_PATH] = L"";
  const std::wstring kinds =
      FileKinds({{texts::kFilesPrograms, L"*.exe;*.com;*.bat;*.cmd"}, {texts::kFilesAll, L"*.*"}});
  OPENFILENAMEW open = {};
  open.lStructSize = sizeof(open);
  open.hwndOwner = dialog;
  open.lpstrFilter = kinds.c_str();
  open.lpstrFile = file;
  open.nMaxFile = ARRAYSIZE(file);
  open.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (!GetOpenFileNameW(&open)) return;
  const std::wstring path = file;
  const std::wstring command = path.find(L' ') == std::wstring::npos ? path : QuoteText(path);
  SetDlgItemTextW(dialog, IDC_COMMAND, command.c_str());
}

// What the dialogs have in common: fields to fill at the beginning, and to try with at the end.
struct Form {
  int id;  // of the template
  NewEntry entry;
  LocationSet locations;
  std::wstring prompt;
  bool hasName;
  bool hasCommand;
  TryWith<NewEntry> attempt;       // none where OK just closes
  std::shared_ptr<HWND> dialog{};  // while it is open
  bool isTrying = false;
};

// OK is possible only with every field filled.
void UpdateOk(HWND dialog, const Form& form) {
  const bool isComplete = !form.isTrying && (!form.hasName || !FieldText(dialog, IDC_NAME).empty()) &&
                          (!form.hasCommand || !FieldText(dialog, IDC_COMMAND).empty()) &&
                          (form.locations.none() || ChosenLocation(dialog) != sulNone);
  EnableWindow(GetDlgItem(dialog, IDOK), isComplete);
}

void Fill(HWND dialog, const Form& form) {
  if (!form.prompt.empty()) SetDlgItemTextW(dialog, IDC_PROMPT, Directed(form.prompt).c_str());
  if (form.locations.any()) FillLocations(dialog, form.locations, form.entry.location);
  if (form.hasCommand) SetDlgItemTextW(dialog, IDC_COMMAND, form.entry.command.c_str());
  UpdateOk(dialog, form);
}

void Take(HWND dialog, Form& form) {
  if (form.hasName) form.entry.name = FieldText(dialog, IDC_NAME);
  if (form.hasCommand) form.entry.command = FieldText(dialog, IDC_COMMAND);
  if (form.locations.any()) form.entry.location = ChosenLocation(dialog);
}

void GiveFocus(HWND dialog, int control) {
  SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, control)), TRUE);
}

// Locks the fields while a try is under way; keys go to Cancel meanwhile.
void SetTrying(HWND dialog, Form& form, bool isTrying) {
  form.isTrying = isTrying;
  if (isTrying) GiveFocus(dialog, IDCANCEL);
  for (const int control : {IDC_LOCATION, IDC_NAME, IDC_COMMAND, IDC_BROWSE}) {
    if (const HWND field = GetDlgItem(dialog, control)) EnableWindow(field, !isTrying);
  }
  UpdateOk(dialog, form);
}

void ShowFault(HWND dialog, const std::wstring& fault) {
  const HWND label = GetDlgItem(dialog, IDC_FAULT);
  const std::wstring text = Directed(fault);
  if (label == nullptr || TextOf(label) == text) return;
  SetWindowTextW(label, text.c_str());
  InvalidateRect(label, nullptr, TRUE);
}

void Close(HWND dialog, Form& form, INT_PTR how) {
  form.dialog.reset();
  EndDialog(dialog, how);
}

void EndTry(HWND dialog, Form& form, const std::optional<std::wstring>& fault) {
  if (!fault) return Close(dialog, form, IDOK);
  SetTrying(dialog, form, false);
  ShowFault(dialog, *fault);
  GiveFocus(dialog, form.hasName ? IDC_NAME : IDC_COMMAND);
}

void Try(HWND dialog, Form& form) {
  if (!form.attempt) return Close(dialog, form, IDOK);
  SetTrying(dialog, form, true);
  ShowFault(dialog, {});
  form.attempt(form.entry, [&form, open = std::weak_ptr<HWND>(form.dialog)](const auto& fault) {
    const auto dialogNow = open.lock();
    if (dialogNow) EndTry(*dialogNow, form, fault);
    return dialogNow != nullptr;
  });
}

void OnCommand(HWND dialog, Form& form, int control, int code) {
  switch (control) {
    case IDOK:
      if (form.isTrying) return;
      Take(dialog, form);
      return Try(dialog, form);
    case IDCANCEL:
      return Close(dialog, form, IDCANCEL);
    case IDC_BROWSE:
      return Browse(dialog);
    default:
      if (code == EN_CHANGE || code == CBN_SELCHANGE) ShowFault(dialog, {});
      UpdateOk(dialog, form);
  }
}

void Begin(HWND dialog, Form& form) {
  SetWindowLongPtrW(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(&form));
  form.dialog = std::make_shared<HWND>(dialog);
  Fill(dialog, form);
  if (const HWND fault = GetDlgItem(dialog, IDC_FAULT)) SetThemeRoles(fault, Role::kAlarmText, Role::kBar);
  BeginDialog(dialog, form.id);
  if (const HWND command = GetDlgItem(dialog, IDC_COMMAND)) KeepLeftToRight(command);
}

INT_PTR CALLBACK FormProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  auto* const form = message == WM_INITDIALOG ? reinterpret_cast<Form*>(lParam)
                                              : reinterpret_cast<Form*>(GetWindowLongPtrW(dialog, DWLP_USER));
  if (form == nullptr || (message != WM_INITDIALOG && message != WM_COMMAND)) return FALSE;
  try {
    if (message == WM_INITDIALOG) {
      Begin(dialog, *form);
    } else {
      OnCommand(dialog, *form, LOWORD(wParam), HIWORD(wParam));
    }
  } catch (...) {
    Close(dialog, *form, IDCANCEL);
  }
  return TRUE;
}

bool Ask(HWND owner, Form& form) {
  return OpenDialog(owner, form.id, FormProcedure, reinterpret_cast<LPARAM>(&form)) == IDOK;
}

}  // namespace

bool TakesNewEntries(std::int32_t location) {
  return FamilyOf(LocationRowOf(location)).canModify;
}

void AskNewEntry(HWND owner, std::int32_t location, const TryWith<NewEntry>& add) {
  Form form{IDD_ADD, {location, {}, {}}, {}, {}, true, true, add};
  for (std::int32_t each = kFirstLocation; each <= kLastLocation; ++each) {
    if (TakesNewEntries(each)) form.locations.set(static_cast<std::size_t>(each));
  }
  Ask(owner, form);
}

void AskCommand(HWND owner, const std::wstring& name, const std::wstring& command,
                const TryWith<std::wstring>& change) {
  Form form{IDD_COMMAND,
            {sulNone, {}, command},
            {},
            name,
            false,
            true,
            [&change](const NewEntry& entry, const TryEnd& end) { change(entry.command, end); }};
  Ask(owner, form);
}

std::optional<std::int32_t> AskTarget(HWND owner, const LocationSet& targets, const std::wstring& prompt) {
  Form form{IDD_MOVE, {sulNone, {}, {}}, targets, prompt, false, false, {}};
  return Ask(owner, form) ? std::optional(form.entry.location) : std::nullopt;
}

std::optional<ExportTarget> AskExportTarget(HWND owner, const std::wstring& title) {
  wchar_t file[MAX_PATH] = L"";
  lstrcpynW(file, texts::kExportName.Get(), ARRAYSIZE(file));
  const std::wstring kinds = FileKinds({{texts::kFilesCsv, L"*.csv"}, {texts::kFilesJson, L"*.json"}});
  OPENFILENAMEW save = {};
  save.lStructSize = sizeof(save);
  save.hwndOwner = owner;
  save.lpstrFilter = kinds.c_str();
  save.nFilterIndex = 1;
  save.lpstrFile = file;
  save.nMaxFile = ARRAYSIZE(file);
  save.lpstrTitle = title.c_str();
  save.lpstrDefExt = L"csv";
  save.Flags = OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (!GetSaveFileNameW(&save)) return std::nullopt;
  return ExportTarget{file, SameText(ExtensionPart(file), L".json")};
}

}  // namespace smh
