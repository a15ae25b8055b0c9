#include "hosts/gui/programs_view.h"

#include "hosts/common/text_encoding.h"
#include "hosts/gui/resource.h"
#include "infra/runtime/text.h"

#include <iterator>

namespace smh {

namespace {

// By FavoriteKind.
constexpr const wchar_t* kKinds[] = {L"Added",    L"Mail",     L"Media player",  L"Browser",
                                     L"Contacts", L"Calendar", L"Internet call", L"Messaging"};
static_assert(std::size(kKinds) == kFavoriteMessaging + 1);

struct ProgramColumn {
  const wchar_t* title;
  int width;
  std::wstring (*text)(const ClientRecord& program);
};
constexpr ProgramColumn kColumns[] = {
    {L"Name", 190, [](const ClientRecord& program) { return Printable(program.name); }},
    {L"Used for", 100,
     [](const ClientRecord& program) {
       const bool isKnown = program.kind >= 0 && program.kind <= kFavoriteMessaging;
       return std::wstring(isKnown ? kKinds[program.kind] : L"");
     }},
    {L"Company", 140, [](const ClientRecord& program) { return Printable(program.company); }},
    {L"Version", 80, [](const ClientRecord& program) { return Printable(program.version); }},
    {L"Program", 260,
     [](const ClientRecord& program) {
       return Printable(program.file.empty() ? program.command : program.file) +
              (program.fileFound ? L"" : L"  (missing)");
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
    return GetSysColor(shown_[row]->fileFound ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT);
  };
  source.onSelect = [this] { frame_.onChange(); };
  std::vector<ListColumn> columns;
  for (const ProgramColumn& column : kColumns) columns.push_back({column.title, column.width});
  list_.Create(parent, IDC_PROGRAMS, std::move(columns), std::move(source));
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

bool ProgramsView::CanRun(UINT command) const {
  switch (command) {
    case CMD_COPY:
      return !list_.Selection().empty();
    case CMD_SELECT_ALL:
      return list_.Count() > 0;
    default:
      return false;
  }
}

void ProgramsView::Run(UINT command) {
  if (command == CMD_SELECT_ALL) return list_.SelectAll();
  CopyToClipboard(frame_.window, list_.SelectedText());
}

std::wstring ProgramsView::CountText() const {
  return std::to_wstring(list_.Count()) + (list_.Count() == 1 ? L" default program" : L" default programs");
}

}  // namespace smh
