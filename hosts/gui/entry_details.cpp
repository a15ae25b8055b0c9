#include "hosts/gui/entry_details.h"

#include "hosts/common/location_names.h"
#include "hosts/common/start_words.h"
#include "hosts/gui/entry_words.h"

#include <oleauto.h>

namespace smh {

namespace {

std::wstring SizeText(const std::optional<std::int64_t>& size) {
  if (!size) return {};
  const std::wstring digits = std::to_wstring(*size);
  std::wstring text;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) text += L'\u2009';
    text += digits[i];
  }
  return text + L" bytes";
}

VisibleText FileText(const ItemRecord& item, const std::wstring& file) {
  if (item.command.empty()) return {};
  VisibleText text = MakeVisible(file);
  const std::wstring_view state = IsFileMissing(item)       ? L"(missing)"
                                  : IsFileUnreachable(item) ? L"(out of reach)"
                                                            : L"";
  if (!file.empty() && !state.empty()) text += L"  ";
  text += state;
  return text;
}

// What the program only runs, and whether all that is said of a file is about that.
VisibleText RunsText(const ItemRecord& item) {
  if (item.startedThrough.empty()) return {};
  if (item.servedFile.empty()) return PlainText(L"(cannot be told)");
  VisibleText text = MakeVisible(item.servedFile);
  if (item.servedFile == item.describedFile) text += L"  (described here)";
  return text;
}

std::wstring LocalTime(const FILETIME& time) {
  SYSTEMTIME utc;
  SYSTEMTIME local;
  double date = 0;
  if ((time.dwLowDateTime | time.dwHighDateTime) == 0 || !FileTimeToSystemTime(&time, &utc) ||
      !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) || !SystemTimeToVariantTime(&local, &date)) {
    return {};
  }
  return LocalTimeText(std::optional(date));
}

using Lines = std::vector<DetailLine>;

void AddStart(const ItemRecord& item, Lines& lines) {
  lines.push_back({L"Starts", PlainText(StartsAnswerText(item))});
  const bool isCertain = item.starts != kStartsUnknown || item.reasons == kReasonUnreachable;
  for (const std::wstring_view reason : ReasonSentences(item)) {
    lines.push_back({isCertain ? L"Because" : L"Perhaps", PlainText(std::wstring(reason))});
  }
  lines.push_back({L"Switched off", PlainText(LocalTimeText(item.switchedOffSince))});
  lines.push_back({L"Note", PlainText(std::wstring(NameMarkText(item)))});
}

// What is said of the file that runs.
void AddTrust(const ItemRecord& item, Lines& lines) {
  const std::wstring reason = TrustReason(item);
  lines.push_back({L"Trust", PlainText(TrustText(item) + (reason.empty() ? L"" : L": " + reason))});
  if (!item.trust) return;
  const std::wstring& signer = item.trust->Signer();
  lines.push_back({L"Signature", MakeVisible(SignatureText(item.trust->signature, signer))});
  lines.push_back({L"Signer", MakeVisible(signer)});
  lines.push_back({L"Signed", PlainText(LocalTime(item.trust->signingTime))});
  lines.push_back({L"SHA-256", PlainText(item.trust->sha256)});
}

}  // namespace

std::vector<DetailLine> DetailsOf(const ItemRecord& item, const std::wstring& file) {
  Lines lines = {{L"Name", MakeVisible(item.caption)}, {L"Status", PlainText(StatusText(item))}};
  AddStart(item, lines);
  AddTrust(item, lines);
  const Lines others = {
      {L"Command", MakeVisible(item.command)},
      {L"File", FileText(item, file)},
      {L"Runs", RunsText(item)},
      {L"Started through", MakeVisible(item.startedThrough)},
      {L"Working folder", MakeVisible(item.workingFolder)},
      {L"Description", MakeVisible(item.description)},
      {L"Company", MakeVisible(item.company)},
      {L"Product", MakeVisible(item.productName)},
      {L"Version", MakeVisible(item.version)},
      {L"File version", MakeVisible(item.fileVersion)},
      {L"Product version", MakeVisible(item.productVersion)},
      {L"Version number", MakeVisible(item.versionNumber)},
      {L"Internal name", MakeVisible(item.internalName)},
      {L"Original file name", MakeVisible(item.originalFilename)},
      {L"Comments", MakeVisible(item.comments)},
      {L"Private build", MakeVisible(item.privateBuild)},
      {L"Special build", MakeVisible(item.specialBuild)},
      {L"Copyright", MakeVisible(item.legalCopyright)},
      {L"Trademarks", MakeVisible(item.legalTrademarks)},
      {L"Type", MakeVisible(item.fileTypeName)},
      {L"Size", PlainText(SizeText(item.fileSize))},
      {L"Created", PlainText(LocalTimeText(item.creationTime))},
      {L"Changed", PlainText(LocalTimeText(item.lastWriteTime))},
      {L"Last opened", PlainText(LocalTimeText(item.lastAccessTime))},
      {L"Location", PlainText(FullTitle(item.location))},
      {L"Stored as", MakeVisible(item.name)},
  };
  lines.insert(lines.end(), others.begin(), others.end());
  std::erase_if(lines, [](const DetailLine& line) { return line.value.text.empty(); });
  return lines;
}

}  // namespace smh
