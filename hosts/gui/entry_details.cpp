#include "hosts/gui/entry_details.h"

#include "hosts/common/location_names.h"
#include "hosts/common/start_words.h"
#include "hosts/common/text_encoding.h"
#include "hosts/gui/entry_words.h"

#include <oleauto.h>

namespace smh {

namespace {

// Date and time as the user writes them.
std::wstring LocalTime(const std::optional<double>& date) {
  SYSTEMTIME time;
  if (!date || !VariantTimeToSystemTime(*date, &time)) return {};
  wchar_t day[64] = L"";
  wchar_t clock[64] = L"";
  GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &time, nullptr, day, ARRAYSIZE(day));
  GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &time, nullptr, clock, ARRAYSIZE(clock));
  return std::wstring(day) + L" " + clock;
}

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

std::wstring FileText(const ItemRecord& item, const std::wstring& file) {
  if (item.command.empty()) return {};
  const std::wstring state = IsFileMissing(item)       ? L"(missing)"
                             : IsFileUnreachable(item) ? L"(out of reach)"
                                                       : L"";
  return file.empty() || state.empty() ? file + state : file + L"  " + state;
}

// What the program only runs, and whether all that is said of a file is about that.
std::wstring RunsText(const ItemRecord& item) {
  if (item.startedThrough.empty()) return {};
  if (item.servedFile.empty()) return L"(cannot be told)";
  return item.servedFile == item.describedFile ? item.servedFile + L"  (described here)" : item.servedFile;
}

std::wstring LocalTime(const FILETIME& time) {
  SYSTEMTIME utc;
  SYSTEMTIME local;
  double date = 0;
  if ((time.dwLowDateTime | time.dwHighDateTime) == 0 || !FileTimeToSystemTime(&time, &utc) ||
      !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) || !SystemTimeToVariantTime(&local, &date)) {
    return {};
  }
  return LocalTime(std::optional(date));
}

using Lines = std::vector<std::pair<std::wstring, std::wstring>>;

void AddStart(const ItemRecord& item, Lines& lines) {
  lines.emplace_back(L"Starts", StartsAnswerText(item));
  const bool isCertain = item.starts != kStartsUnknown || item.reasons == kReasonUnreachable;
  for (const std::wstring_view reason : ReasonSentences(item)) {
    lines.emplace_back(isCertain ? L"Because" : L"Perhaps", reason);
  }
  lines.emplace_back(L"Switched off", LocalTime(item.switchedOffSince));
  lines.emplace_back(L"Note", NameMarkText(item));
}

// What is said of the file that runs.
void AddTrust(const ItemRecord& item, Lines& lines) {
  const std::wstring reason = TrustReason(item);
  lines.emplace_back(L"Trust", TrustText(item) + (reason.empty() ? L"" : L": " + reason));
  if (!item.trust) return;
  lines.emplace_back(L"Signature", SignatureText(item.trust->signature, item.trust->Signer()));
  lines.emplace_back(L"Signer", item.trust->Signer());
  lines.emplace_back(L"Signed", LocalTime(item.trust->signingTime));
  lines.emplace_back(L"SHA-256", item.trust->sha256);
}

}  // namespace

std::vector<std::pair<std::wstring, std::wstring>> DetailsOf(const ItemRecord& item,
                                                             const std::wstring& file) {
  Lines lines = {{L"Name", item.caption}, {L"Status", StatusText(item)}};
  AddStart(item, lines);
  AddTrust(item, lines);
  const Lines others = {
      {L"Command", item.command},
      {L"File", FileText(item, file)},
      {L"Runs", RunsText(item)},
      {L"Started through", item.startedThrough},
      {L"Working folder", item.workingFolder},
      {L"Description", item.description},
      {L"Company", item.company},
      {L"Product", item.productName},
      {L"Version", item.version},
      {L"File version", item.fileVersion},
      {L"Product version", item.productVersion},
      {L"Version number", item.versionNumber},
      {L"Internal name", item.internalName},
      {L"Original file name", item.originalFilename},
      {L"Comments", item.comments},
      {L"Private build", item.privateBuild},
      {L"Special build", item.specialBuild},
      {L"Copyright", item.legalCopyright},
      {L"Trademarks", item.legalTrademarks},
      {L"Type", item.fileTypeName},
      {L"Size", SizeText(item.fileSize)},
      {L"Created", LocalTime(item.creationTime)},
      {L"Changed", LocalTime(item.lastWriteTime)},
      {L"Last opened", LocalTime(item.lastAccessTime)},
      {L"Location", FullTitle(item.location)},
      {L"Stored as", item.name},
  };
  lines.insert(lines.end(), others.begin(), others.end());
  std::erase_if(lines, [](const auto& line) { return line.second.empty(); });
  for (auto& [name, text] : lines) text = Printable(text);
  return lines;
}

}  // namespace smh
