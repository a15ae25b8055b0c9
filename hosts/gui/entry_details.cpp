#include "hosts/gui/entry_details.h"

#include "hosts/common/location_names.h"
#include "hosts/common/start_words.h"
#include "hosts/gui/entry_words.h"
#include "hosts/gui/texts/column_texts.h"
#include "hosts/gui/texts/details_texts.h"

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
  return Format(texts::kBytes, text);
}

VisibleText FileText(const ItemRecord& item, const std::wstring& file) {
  if (item.command.empty()) return {};
  VisibleText text = MakeVisible(file);
  const std::wstring_view state = IsFileMissing(item)       ? texts::kMissingMark.Get()
                                  : IsFileUnreachable(item) ? texts::kOutOfReachMark.Get()
                                                            : L"";
  if (!file.empty() && !state.empty()) text += L"  ";
  text += state;
  return text;
}

// What the program only runs, and whether all that is said of a file is about that.
VisibleText RunsText(const ItemRecord& item) {
  if (item.startedThrough.empty()) return {};
  if (item.servedFile.empty()) return PlainText(texts::kCannotBeToldMark.Get());
  VisibleText text = MakeVisible(item.servedFile);
  if (item.servedFile == item.describedFile) text += texts::kDescribedHere.Get();
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
  lines.push_back({texts::kStartsTitle.Get(), PlainText(StartsAnswerText(item))});
  const bool isCertain = item.starts != kStartsUnknown || item.reasons == kReasonUnreachable;
  for (const std::wstring_view reason : ReasonSentences(item)) {
    lines.push_back(
        {(isCertain ? texts::kBecauseLine : texts::kPerhapsLine).Get(), PlainText(std::wstring(reason))});
  }
  lines.push_back({texts::kSwitchedOffLine.Get(), PlainText(LocalTimeText(item.switchedOffSince))});
  lines.push_back({texts::kNoteLine.Get(), PlainText(NameMarkText(item))});
}

// What is said of the file that runs.
void AddTrust(const ItemRecord& item, Lines& lines) {
  const std::wstring reason = TrustReason(item);
  lines.push_back({texts::kTrustTitle.Get(),
                   PlainText(reason.empty() ? TrustText(item)
                                            : Format(texts::kTrustAndReason, TrustText(item), reason))});
  if (!item.trust) return;
  const std::wstring& signer = item.trust->Signer();
  lines.push_back({texts::kSignatureLine.Get(), MakeVisible(SignatureText(item.trust->signature, signer))});
  lines.push_back({texts::kSignerTitle.Get(), MakeVisible(signer)});
  lines.push_back({texts::kSignedLine.Get(), PlainText(LocalTime(item.trust->signingTime))});
  lines.push_back({texts::kHashLine.Get(), PlainText(item.trust->sha256)});
}

}  // namespace

std::vector<DetailLine> DetailsOf(const ItemRecord& item, const std::wstring& file) {
  Lines lines = {{texts::kNameTitle.Get(), MakeVisible(item.caption)},
                 {texts::kStatusTitle.Get(), PlainText(StatusText(item))}};
  AddStart(item, lines);
  AddTrust(item, lines);
  const Lines others = {
      {texts::kCommandTitle.Get(), MakeVisible(item.command)},
      {texts::kFileTitle.Get(), FileText(item, file)},
      {texts::kRunsLine.Get(), RunsText(item)},
      {texts::kStartedThroughLine.Get(), MakeVisible(item.startedThrough)},
      {texts::kWorkingFolderLine.Get(), MakeVisible(item.workingFolder)},
      {texts::kDescriptionTitle.Get(), MakeVisible(item.description)},
      {texts::kCompanyTitle.Get(), MakeVisible(item.company)},
      {texts::kProductLine.Get(), MakeVisible(item.productName)},
      {texts::kVersionTitle.Get(), MakeVisible(item.version)},
      {texts::kFileVersionLine.Get(), MakeVisible(item.fileVersion)},
      {texts::kProductVersionLine.Get(), MakeVisible(item.productVersion)},
      {texts::kVersionNumberLine.Get(), MakeVisible(item.versionNumber)},
      {texts::kInternalNameLine.Get(), MakeVisible(item.internalName)},
      {texts::kOriginalNameLine.Get(), MakeVisible(item.originalFilename)},
      {texts::kCommentsLine.Get(), MakeVisible(item.comments)},
      {texts::kPrivateBuildLine.Get(), MakeVisible(item.privateBuild)},
      {texts::kSpecialBuildLine.Get(), MakeVisible(item.specialBuild)},
      {texts::kCopyrightLine.Get(), MakeVisible(item.legalCopyright)},
      {texts::kTrademarksLine.Get(), MakeVisible(item.legalTrademarks)},
      {texts::kTypeLine.Get(), MakeVisible(item.fileTypeName)},
      {texts::kSizeLine.Get(), PlainText(SizeText(item.fileSize))},
      {texts::kCreatedLine.Get(), PlainText(LocalTimeText(item.creationTime))},
      {texts::kChangedLine.Get(), PlainText(LocalTimeText(item.lastWriteTime))},
      {texts::kLastOpenedLine.Get(), PlainText(LocalTimeText(item.lastAccessTime))},
      {texts::kLocationTitle.Get(), PlainText(FullTitle(item.location))},
      {texts::kStoredAsLine.Get(), MakeVisible(item.name)},
  };
  lines.insert(lines.end(), others.begin(), others.end());
  std::erase_if(lines, [](const DetailLine& line) { return line.value.text.empty(); });
  return lines;
}

}  // namespace smh
