#include "hosts/gui/entry_dialogs.h"

#include "hosts/common/location_names.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/theme_window.h"
#include "hosts/gui/window.h"
#include "infra/runtime/text.h"

#include <commdlg.h>

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
  OPENFILENAMEW open = {};
  open.lStructSize = sizeof(open);
  open.hwndOwner = dialog;
  open.lpstrFilter = L"Programs\0*.exe;*.com;*.bat;*.cmd\0All files\0*.*\0";
  open.lpstrFile = file;
  open.nMaxFile = ARRAYSIZE(file);
  open.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (!GetOpenFileNameW(&open)) return;
  const std::wstring path = file;
  const std::wstring command = path.find(L' ') == std::wstring::npos ? path : QuoteText(path);
  SetDlgItemTextW(dialog, IDC_COMMAND, command.c_str());
}

// What the dialogs have in common: fields to fill at the beginning, and to take at the end.
struct Form {
  NewEntry entry;
  LocationSet locations;
  std::wstring prompt;
  bool hasName;
  bool hasCommand;
};

// OK is possible only with every field filled.
void UpdateOk(HWND dialog, const Form& form) {
  const bool isComplete = (!form.hasName || !FieldText(dialog, IDC_NAME).empty()) &&
                          (!form.hasCommand || !FieldText(dialog, IDC_COMMAND).empty()) &&
                          (form.locations.none() || ChosenLocation(dialog) != sulNone);
  EnableWindow(GetDlgItem(dialog, IDOK), isComplete);
}

void Fill(HWND dialog, const Form& form) {
  if (!form.prompt.empty()) SetDlgItemTextW(dialog, IDC_PROMPT, form.prompt.c_str());
  if (form.locations.any()) FillLocations(dialog, form.locations, form.entry.location);
  if (form.hasCommand) SetDlgItemTextW(dialog, IDC_COMMAND, form.entry.command.c_str());
  UpdateOk(dialog, form);
}

void Take(HWND dialog, Form& form) {
  if (form.hasName) form.entry.name = FieldText(dialog, IDC_NAME);
  if (form.hasCommand) form.entry.command = FieldText(dialog, IDC_COMMAND);
  if (form.locations.any()) form.entry.location = ChosenLocation(dialog);
}

INT_PTR CALLBACK FormProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    Fill(dialog, *reinterpret_cast<Form*>(lParam));
    ThemeDialog(dialog);
    return TRUE;
  }
  auto* const form = reinterpret_cast<Form*>(GetWindowLongPtrW(dialog, DWLP_USER));
  if (message != WM_COMMAND || form == nullptr) return FALSE;
  switch (LOWORD(wParam)) {
    case IDOK:
      Take(dialog, *form);
      EndDialog(dialog, IDOK);
      return TRUE;
    case IDCANCEL:
      EndDialog(dialog, IDCANCEL);
      return TRUE;
    case IDC_BROWSE:
      Browse(dialog);
      return TRUE;
    default:
      UpdateOk(dialog, *form);
      return FALSE;
  }
}

bool Ask(HWND owner, int id, Form& form) {
  return DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), owner, FormProcedure,
                         reinterpret_cast<LPARAM>(&form)) == IDOK;
}

}  // namespace

bool TakesNewEntries(std::int32_t location) {
  return FamilyOf(LocationRowOf(location)).canModify;
}

std::optional<NewEntry> AskNewEntry(HWND owner, std::int32_t location) {
  Form form{{location, {}, {}}, {}, {}, true, true};
  for (std::int32_t each = kFirstLocation; each <= kLastLocation; ++each) {
    if (TakesNewEntries(each)) form.locations.set(static_cast<std::size_t>(each));
  }
  return Ask(owner, IDD_ADD, form) ? std::optional(form.entry) : std::nullopt;
}

std::optional<std::int32_t> AskTarget(HWND owner, const LocationSet& targets, const std::wstring& prompt) {
  Form form{{sulNone, {}, {}}, targets, prompt, false, false};
  return Ask(owner, IDD_MOVE, form) ? std::optional(form.entry.location) : std::nullopt;
}

std::optional<std::wstring> AskCommand(HWND owner, const std::wstring& name, const std::wstring& command) {
  Form form{{sulNone, {}, command}, {}, name, false, true};
  return Ask(owner, IDD_COMMAND, form) ? std::optional(form.entry.command) : std::nullopt;
}

std::optional<ExportTarget> AskExportTarget(HWND owner) {
  wchar_t file[MAX_PATH] = L"startup entries";
  OPENFILENAMEW save = {};
  save.lStructSize = sizeof(save);
  save.hwndOwner = owner;
  save.lpstrFilter = L"CSV file\0*.csv\0JSON file\0*.json\0";
  save.nFilterIndex = 1;
  save.lpstrFile = file;
  save.nMaxFile = ARRAYSIZE(file);
  save.lpstrDefExt = L"csv";
  save.Flags = OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (!GetSaveFileNameW(&save)) return std::nullopt;
  return ExportTarget{file, SameText(ExtensionPart(file), L".json")};
}

}  // namespace smh
