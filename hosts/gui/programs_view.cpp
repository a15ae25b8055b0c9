#include "hosts/gui/programs_view.h"

#include "hosts/common/text_encoding.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/column_texts.h"
#include "hosts/gui/texts/status_texts.h"
#include "hosts/gui/theme.h"
#include "infra/runtime/text.h"

#include <shlobj.h>

#include <iterator>

namespace smh {

namespace {

// By FavoriteKind.
constexpr Text kKinds[] = {texts::kKindAdded,   texts::kKindMail,     texts::kKindMedia,
                           texts::kKindBrowser, texts::kKindContacts, texts::kKindCalendar,
                           texts::kKindCall,    texts::kKindMessaging};
static_assert(std::size(kKinds) == kFavoriteMessaging + 1);

struct ProgramColumn {
  Text title;
  int width;
  std::wstring (*text)(const ClientRecord& program);
};
constexpr ProgramColumn kColumns[] = {
    {texts::kNameTitle, 190, [](const ClientRecord& program) { return Printable(program.name); }},
    {texts::kUsedForTitle, 100,
     [](const ClientRecord& program) {
       const bool isKnown = program.kind >= 0 && program.kind <= kFavoriteMessaging;
       return std::wstring(isKnown ? kKinds[program.kind].Get() : L"");
     }},
    {texts::kDefaultTitle, 70,
     [](const ClientRecord& program) {
       return std::wstring(program.isDefault ? texts::kDefaultTitle.Get() : L"");
     }},
    {texts::kCompanyTitle, 140, [](const ClientRecord& program) { return Printable(program.company); }},
    {texts::kVersionTitle, 80, [](const ClientRecord& program) { return Printable(program.version); }},
    {texts::kProgramTitle, 260,
     [](const ClientRecord& program) {
       std::wstring file = Printable(program.file.empty() ? program.command : program.file);
       return program.fileFound ? file : Format(texts::kMissingBehind, file);
     }},
};

std::wstring RowText(const ClientRecord& program) {
  std::wstring text;
  for (const ProgramColumn& column : kColumns) text += column.text(program) + L"\n";
  return LowerCase(std::move(text));
}

}  // namespace

ProgramsView::ProgramsView(HWND parent, const Frame& frame) : frame_(frame) {
  ListSource source;
  source.text = [this](std::size_t row, std::size_t column) { return kColumns[column].text(*shown_[row]); };
  source.image = [this](std::size_t row, std::size_t column) {
    return column == 0 ? static_cast<int>(shown_[row]->imageIndex) : I_IMAGENONE;
  };
  source.color = [this](std::size_t row) {
    return ColorOf(shown_[row]->fileFound ? Role::kText : Role::kGreyText);
  };
  source.onSelect = [this] { frame_.onChange(); };
  source.onActivate = [this] {
    if (CanRun(CMD_SHOW_FILE)) Run(CMD_SHOW_FILE);
  };
  std::vector<ListColumn> columns;
  for (const ProgramColumn& column : kColumns) columns.push_back({column.title.Get(), column.width});
  list_.Create(parent, IDC_PROGRAMS, std::move(columns), std::move(source));
  list_.Describe(texts::kProgramsList.Get(), texts::kShowFileProperties.Get());
}

void ProgramsView::Refresh() {
  isRead_ = true;
  frame_.worker.Ask([](LibrarySession& session) { return session.ReadPrograms(); },
                    [this](const ProgramNews& news) {
                      smallImages_ = news.smallImages;
                      largeImages_ = news.largeImages;
                      list_.SetImages(images_.For(dpi_, smallImages_, largeImages_));
                      shown_.clear();
                      programs_ = news.programs;
                      Filter();
                    });
}

void ProgramsView::Filter() {
  shown_.clear();
  for (const ClientRecord& program : programs_) {
    if (RowText(program).find(search_) != std::wstring::npos) shown_.push_back(&program);
  }
  list_.SetCount(shown_.size());
  frame_.onChange();
}

void ProgramsView::Search(std::wstring_view text) {
  search_ = LowerCase(Trim(text));
  Filter();
}

void ProgramsView::Show(bool show) {
  if (show && !isRead_) Refresh();
  ShowWindow(list_.Handle(), show ? SW_SHOWNA : SW_HIDE);
}

void ProgramsView::Place(const RECT& area) {
  MoveWindow(list_.Handle(), area.left, area.top, area.right - area.left, area.bottom - area.top, TRUE);
}

void ProgramsView::SetDpi(int dpi, const ViewFonts& fonts) {
  dpi_ = dpi;
  list_.SetDpi(dpi, fonts.normal);
  list_.SetImages(images_.For(dpi, smallImages_, largeImages_));
}

// The shell keeps the sheet open and returns at once.
void ProgramsView::ShowProperties(const ClientRecord& program) const {
  const std::wstring name = Printable(program.name);
  if (SHObjectProperties(frame_.window, SHOP_FILEPATH, program.file.c_str(), nullptr) == FALSE) {
    return ShowError(frame_, Format(texts::kCannotShowProperties, name));
  }
  frame_.say(Format(texts::kShowedProperties, name));
}

const ClientRecord* ProgramsView::OnlySelected() const {
  const std::vector<std::size_t> rows = list_.Selection();
  return rows.size() == 1 && rows.front() < shown_.size() ? shown_[rows.front()] : nullptr;
}

bool ProgramsView::CanRun(UINT command) const {
  const ClientRecord* const only = OnlySelected();
  switch (command) {
    case CMD_COPY:
      return !list_.Selection().empty();
    case CMD_SELECT_ALL:
      return list_.Count() > 0;
    case CMD_COPY_PATH:
      return only != nullptr && !only->file.empty();
    case CMD_SHOW_FILE:
      return only != nullptr && only->fileFound;
    default:
      return false;
  }
}

void ProgramsView::Run(UINT command) {
  switch (command) {
    case CMD_SELECT_ALL:
      return list_.SelectAll();
    case CMD_COPY:
      CopyToClipboard(frame_.window, list_.SelectedText());
      return;
    case CMD_COPY_PATH:
      CopyToClipboard(frame_.window, OnlySelected()->file);
      return;
    case CMD_SHOW_FILE:
      return ShowProperties(*OnlySelected());
    default:
      return;
  }
}

std::wstring ProgramsView::CountText() const {
  return Format(texts::kPrograms.For(list_.Count()), list_.Count());
}

}  // namespace smh
