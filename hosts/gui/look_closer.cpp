#include "hosts/gui/look_closer.h"

#include "hosts/common/file_trust.h"
#include "hosts/common/host_error.h"
#include "hosts/common/text_encoding.h"
#include "hosts/gui/clipboard.h"
#include "hosts/gui/texts/action_texts.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/text.h"

#include <shellapi.h>

#include <utility>

namespace smh {

namespace {

constexpr wchar_t kSearchPage[] = L"https://www.bing.com/search?q=";

// What is said of an attempt, and whether it has failed.
struct Attempt {
  std::wstring text;
  bool failed = false;
};

std::wstring FileOf(const LibrarySession& session, const ItemRecord& item) {
  const std::wstring& running = RunningFile(item);
  return running.empty() ? session.ResolveFile(item.command) : running;
}

std::wstring QuotedCaption(const ItemRecord& item) {
  return Format(texts::kOneName, CaptionText(item));
}

// With a backslash at its end, so that it cannot be taken for a program of nearly that name; empty when there
// is none.
std::wstring NearestFolder(std::wstring_view path) {
  std::wstring folder(FolderPart(path));
  while (IsFullPath(folder) && !IsFolder(folder)) {
    const std::wstring inside = WithoutTrailingBackslash(folder);
    folder = FolderPart(inside);
    if (folder.size() >= inside.size()) return {};
  }
  return IsFullPath(folder) ? folder : std::wstring();
}

// `done` when the system has taken it.
Attempt OpenInSystem(const std::wstring& file, const std::wstring& parameters, std::wstring done) {
  SHELLEXECUTEINFOW info = {};
  info.cbSize = sizeof(info);
  info.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
  info.lpFile = file.c_str();
  info.lpParameters = parameters.empty() ? nullptr : parameters.c_str();
  info.nShow = SW_SHOWNORMAL;
  if (ShellExecuteExW(&info)) return {std::move(done)};
  return {Format(texts::kCannotOpen, file, SystemErrorText(HRESULT_FROM_WIN32(GetLastError()))), true};
}

// The system's own, whatever lies beside the program.
std::wstring Explorer() {
  wchar_t folder[MAX_PATH] = L"";
  const UINT units = GetSystemWindowsDirectoryW(folder, ARRAYSIZE(folder));
  return std::wstring(folder, units < ARRAYSIZE(folder) ? units : 0) + L"\\explorer.exe";
}

Attempt ShowInFolder(const LibrarySession& session, const ItemRecord& item) {
  const std::wstring name = QuotedCaption(item);
  if (IsFileUnreachable(item)) {
    return {Format(texts::kProgramOutOfReach, name), true};
  }
  const std::wstring file = FileOf(session, item);
  const bool isDescribed = SameText(file, item.describedFile) && item.reachability == kFileFound;
  if (isDescribed || IsFile(file)) {
    return OpenInSystem(Explorer(), L"/select," + QuoteText(file), Format(texts::kOpenedFolder, name));
  }
  const std::wstring folder = NearestFolder(file);
  if (folder.empty()) return {Format(texts::kFileAndFolderMissing, name), true};
  return OpenInSystem(folder, {}, Format(texts::kFileMissingOpened, name, Printable(folder)));
}

Attempt SearchFor(const LibrarySession& session, const ItemRecord& item) {
  const std::wstring file = FileOf(session, item);
  const std::wstring_view name = FileNamePart(file);
  if (name.empty()) return {Format(texts::kNoFileKnown, QuotedCaption(item)), true};
  return OpenInSystem(WebSearchAddress(name), {}, Format(texts::kSearchedWeb, Printable(name)));
}

void AskFor(const Frame& frame, ItemRecord item,
            Attempt (*attempt)(const LibrarySession&, const ItemRecord&)) {
  frame.worker.Ask(
      [item = std::move(item), attempt](const LibrarySession& session) { return attempt(session, item); },
      [&frame](const Attempt& made) { made.failed ? ShowError(frame, made.text) : frame.say(made.text); });
}

}  // namespace

std::wstring WebSearchAddress(std::wstring_view fileName) {
  constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
  constexpr std::string_view kPlain = "-._~";
  std::wstring address = kSearchPage;
  for (const char byte : ToUtf8(fileName)) {
    const bool isPlain = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                         (byte >= 'a' && byte <= 'z') || kPlain.find(byte) != std::string_view::npos;
    if (isPlain) {
      address += static_cast<wchar_t>(byte);
    } else {
      const auto value = static_cast<unsigned char>(byte);
      address += {L'%', kDigits[value >> 4], kDigits[value & 15]};
    }
  }
  return address;
}

void LookCloser::OpenFolder(ItemRecord item) const {
  AskFor(frame_, std::move(item), ShowInFolder);
}

void LookCloser::SearchWeb(ItemRecord item) const {
  AskFor(frame_, std::move(item), SearchFor);
}

// The lines belong to the first of the entries; an empty one stands for nothing to copy.
struct LookCloser::Copy {
  unsigned number;
  const texts::CopyWords* words;
  std::vector<ItemRecord> items;
  std::vector<std::wstring> lines = {};
};

std::shared_ptr<LookCloser::Copy> LookCloser::Begin(const texts::CopyWords& words,
                                                    std::vector<ItemRecord> items) {
  return std::make_shared<Copy>(Copy{++latest_, &words, std::move(items)});
}

void LookCloser::CopyCommands(std::vector<ItemRecord> items) {
  const auto copy = Begin(texts::kCopiedCommands, std::move(items));
  for (const ItemRecord& item : copy->items) copy->lines.push_back(item.command);
  Finish(*copy);
}

void LookCloser::CopyPaths(std::vector<ItemRecord> items) {
  frame_.worker.Ask(
      [copy = Begin(texts::kCopiedPaths, std::move(items))](const LibrarySession& session) {
        for (const ItemRecord& item : copy->items) copy->lines.push_back(session.ResolveFile(item.command));
        return copy;
      },
      [this](const std::shared_ptr<Copy>& copy) { Finish(*copy); });
}

void LookCloser::CopyHashes(std::vector<ItemRecord> items) {
  Hash(Begin(texts::kCopiedHashes, std::move(items)));
}

// One by one, and each file as it is now.
void LookCloser::Hash(const std::shared_ptr<Copy>& copy) const {
  if (copy->number != latest_) return;
  const std::size_t next = copy->lines.size();
  if (next == copy->items.size()) return Finish(*copy);
  frame_.say(Format(texts::kReadingFile, QuotedCaption(copy->items[next])));
  frame_.trust.CheckFirst(copy->items[next], [this, copy](const std::vector<ItemRecord>& checked) {
    copy->lines.push_back(checked.front().trust->sha256);
    Hash(copy);
  });
}

void LookCloser::Finish(const Copy& copy) const {
  if (copy.number != latest_) return;
  std::wstring text;
  std::size_t count = 0;
  for (const std::wstring& line : copy.lines) {
    if (line.empty()) continue;
    if (count++ > 0) text += L"\r\n";
    text += line;
  }
  if (count == 0) return frame_.say(texts::kNothingCopied.Get());
  if (!CopyToClipboard(frame_.window, text)) {
    return ShowError(frame_, texts::kClipboardBusy.Get());
  }
  if (copy.lines.size() == 1) return frame_.say(copy.words->one.Get());
  const bool isAll = count == copy.lines.size();
  frame_.say(Format(isAll ? copy.words->many : copy.words->some, count, copy.lines.size()));
}

}  // namespace smh
