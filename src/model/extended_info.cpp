#include "model/extended_info.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/text.h"
#include "model/image_lists.h"
#include "model/reader_state.h"
#include "sysutil/network_roots.h"
#include "sysutil/uFileUtils.h"

#include <shellapi.h>

#include <utility>

namespace smh {

namespace {

constexpr std::size_t kTypeNameUnits = 80;

double ToDateTime(const FILETIME& time) {
  double date = 0;
  return SUCCEEDED(DLLGlobals::Helper().FileTimeToDateTime(&time, &date)) ? date : 0;
}

void ReadTimes(ItemDetails& details) {
  WIN32_FIND_DATAW data;
  const ScopedFind find(FindFirstFileW(details.FilePath.c_str(), &data));
  if (!find) return;
  details.FileSize = static_cast<std::int64_t>(SizeIn(data));
  details.CreationTime = ToDateTime(data.ftCreationTime);
  details.LastAccessTime = ToDateTime(data.ftLastAccessTime);
  details.LastWriteTime = ToDateTime(data.ftLastWriteTime);
}

void ReadTypeName(ItemDetails& details) {
  SHFILEINFOW info = {};
  const DWORD kind = details.SeenFile.isFolder ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
  if (SHGetFileInfoW(details.FilePath.c_str(), kind, &info, sizeof(info),
                     SHGFI_TYPENAME | SHGFI_USEFILEATTRIBUTES) == 0) {
    return;
  }
  details.FileTypeName =
      SharedText(std::wstring_view(info.szTypeName, wcsnlen(info.szTypeName, kTypeNameUnits)));
}

int KnownRating(std::int32_t answer) {
  return answer < kRatingTrusted || answer > kRatingRisky ? kRatingUnknown : answer;
}

int Rate(const ItemDetails& details) {
  IFileRater& rater = DLLGlobals::FileRater();
  int rating = kRatingUnknown;
  const SharedText& company = details.Version->Company();
  if (!company.empty()) rating = KnownRating(rater.RateCompany(company.c_str()));
  if (rating == kRatingUnknown) {
    rating = KnownRating(rater.RateFile(std::wstring(FileNamePart(details.FilePath)).c_str()));
  }
  return rating;
}

// What the entry's icon is asked for with, first.
IconQuestion QuestionFor(const ItemDetails& details) {
  const std::wstring file(details.FilePath);
  const bool hasIcon = !details.IconPath.empty() && IsReachable(details.IconPath);
  if (!hasIcon || details.IconPath == details.FilePath) {
    return {IconRequest::kOfEither, file, hasIcon ? details.IconIndex : 0};
  }
  return {IconRequest::kOfFile, std::wstring(details.IconPath), details.IconIndex};
}

}  // namespace

void ReadFileFacts(ItemDetails& details) {
  const bool fileExists = details.FileFound && FileUtils::FileExists(details.FilePath);
  if (fileExists) ReadTimes(details);
  ReadTypeName(details);
}

ExtendedPass::ExtendedPass(Upcoming upcoming) : upcoming_(std::move(upcoming)) {
  if (!ShowIcons()) return;
  icons_.emplace(g_reader->thread.Wake(), CheckTerminated);
  if (upcoming_) icons_->SetNext([this] { return NextQuestion(); });
}

ExtendedPass::Key ExtendedPass::KeyOf(const ItemDetails& details) {
  return {std::wstring(details.FilePath), std::wstring(details.IconPath), details.IconIndex};
}

// Of the next item whose file is still to be looked at.
std::optional<IconQuestion> ExtendedPass::NextQuestion() {
  while (const std::optional<ItemDetails> details = upcoming_()) {
    const Key key = KeyOf(*details);
    if (!details->FileFound || key == current_ || known_.contains(key)) continue;
    IconQuestion question = QuestionFor(*details);
    if (!IsIconKnown(question.file, question.index)) return question;
  }
  return std::nullopt;
}

void ExtendedPass::ReadIcon(ItemDetails& details) {
  const IconQuestion question = QuestionFor(details);
  details.ImageIndex = AppendFileIcon(*icons_, question.file, question.index, std::wstring(details.FilePath));
  details.IsIconOwed = icons_->HasGivenUp() && details.ImageIndex == kImageUnknownFile;
}

void ExtendedPass::Read(ItemDetails& details) {
  if (!details.FileFound) {
    ReadFileFacts(details);
    return;
  }
  current_ = KeyOf(details);
  if (const auto known = known_.find(current_); known != known_.end()) {
    static_cast<ExtendedDetails&>(details) = known->second;
    return;
  }
  bool isRead = false;
  const auto readOnce = [&] {
    if (std::exchange(isRead, true)) return;
    ReadFileFacts(details);
    details.Rating = Rate(details);
  };
  if (icons_) {
    const IconSource::Meanwhile reading(*icons_, readOnce);
    ReadIcon(details);
  }
  readOnce();
  known_.emplace(current_, details);
}

}  // namespace smh
