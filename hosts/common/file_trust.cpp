#include "hosts/common/file_trust.h"

#include "hosts/common/library.h"
#include "infra/runtime/text.h"

namespace smh {

namespace {

// The answer's texts, released at the end.
struct Answer : FileTrustFacts {
  Answer() noexcept : FileTrustFacts{} {
    size = sizeof(FileTrustFacts);
    state = kSignatureUnreadable;
  }
  ~Answer() {
    for (const BoundaryText text : {organisation, commonName, sha256}) ReleaseBoundaryText(text);
  }
  Answer(const Answer&) = delete;
  Answer& operator=(const Answer&) = delete;
};

}  // namespace

const std::wstring& RunningFile(const ItemRecord& item) noexcept {
  return item.startedThrough.empty() ? item.describedFile : item.servedFile;
}

FileTrust::FileTrust()
    : raterkit_(LoadFromOwnFolder(IFileTrust::kLibrary)),
      basekit_(LoadFromOwnFolder(IHelper::kLibrary)),
      trust_(AskService<IFileTrust>(raterkit_.Get())),
      rater_(AskService<IFileRater>(raterkit_.Get())),
      helper_(AskService<IHelper>(basekit_.Get())) {}

std::int32_t FileTrust::RatingOf(const std::wstring& name, const std::wstring& company) const {
  const std::int32_t rating = company.empty() ? kRatingUnknown : rater_.RateCompany(company.c_str());
  return rating == kRatingUnknown ? rater_.RateFile(name.c_str()) : rating;
}

EntryTrust FileTrust::Verify(const ItemRecord& item) const {
  EntryTrust trust;
  trust.file = RunningFile(item);
  const bool isDescribed = SameText(trust.file, item.describedFile);
  const std::wstring name(FileNamePart(trust.file));
  const bool isAsked = !trust.file.empty() && !(isDescribed && item.reachability == kFileUnreachable);
  Answer answer;
  if (isAsked) trust_.Verify(trust.file.c_str(), &answer);
  trust.signature = answer.state;
  trust.organisation = BoundaryTextView(answer.organisation);
  trust.commonName = BoundaryTextView(answer.commonName);
  trust.sha256 = BoundaryTextView(answer.sha256);
  trust.signingTime = answer.signingTime;
  // Nobody waits twice for a place that does not answer.
  std::wstring company;
  if (isDescribed) company = item.company;
  if (!isDescribed && answer.state != kSignatureUnreadable) {
    company = TakeText([&](BoundaryText* text) {
      return helper_.GetVersionString(trust.file.c_str(), L"CompanyName", text);
    });
  }
  // The rating is the described file's: of another one it says nothing, unless that it is risky.
  std::int32_t rating = item.rating;
  if (!isDescribed && rating != kRatingRisky)
    rating = trust.file.empty() ? kRatingUnknown : RatingOf(name, company);
  const std::wstring signer = TakeText(
      [&](BoundaryText* text) { return trust_.GetTrustedSigner(company.c_str(), name.c_str(), text); });
  trust.word = TrustWordOf(rating, trust.signature, trust.organisation, signer);
  return trust;
}

}  // namespace smh
