#include "core/contracts/intf_FileRater.h"
#include "core/contracts/intf_FileTrust.h"
#include "siblings/common/product.h"
#include "siblings/raterkit/rating_store.h"
#include "tests/siblings/common/sibling_library.h"
#include "tests/support/file_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace smh::test {
namespace {

std::wstring Told(const Rating* rating) {
  return rating == nullptr ? L"none" : std::to_wstring(rating->rating) + rating->signer;
}

TEST(RatingTableTest, SectionsNamesAndWords) {
  const RatingTable table(
      L"Loose=risky\r\n; Remark=risky\r\n[companies]\r\n  Some Corp. =  TRUSTED \r\nA=B Ltd.=risky\r\n"
      L"Twice=risky\nTwice=trusted\nM\u00DCLLER=risky\nBad word=good\r\nNo rating\r\n=risky\r\n"
      L"Proven=trusted ; SIGNER = Proven, Inc. \r\nC=D=trusted;signer=C=D Ltd.\r\nE; signer=E=risky\r\n"
      L"Bad end=trusted; "
      L"signed=x\r\n[Other]\r\nElsewhere=risky\r\n[FILES]\r\n#x.exe=risky\r\napp.exe=unknown\rlast.exe="
      L"risky");
  const auto ofCompany = [&](std::wstring_view name) { return Told(table.OfCompany(name)); };
  const auto ofFile = [&](std::wstring_view name) { return Told(table.OfFile(name)); };
  EXPECT_EQ(ofCompany(L" SOME corp. "), L"0");
  EXPECT_EQ(ofCompany(L"a=b ltd."), L"2");
  EXPECT_EQ(ofCompany(L"Twice"), L"2");
  EXPECT_EQ(ofCompany(L"M\u00FCller"), L"2");
  EXPECT_EQ(ofCompany(L"Proven"), L"0Proven, Inc.");
  EXPECT_EQ(ofCompany(L"C=D"), L"0C=D Ltd.");
  EXPECT_EQ(ofCompany(L"E; signer=E"), L"2");
  EXPECT_EQ(ofFile(L"App.exe"), L"1");
  EXPECT_EQ(ofFile(L"last.exe"), L"2");
  for (const wchar_t* const name : {L"Loose", L"; Remark", L"Bad word", L"No rating", L"Elsewhere",
                                    L"app.exe", L"Some Corp", L"Bad end"}) {
    EXPECT_EQ(ofCompany(name), L"none") << name;
  }
  for (const wchar_t* const name : {L"Some Corp.", L"x.exe"}) EXPECT_EQ(ofFile(name), L"none");
}

TEST(RatingTableTest, EveryEncodingIsRead) {
  using namespace std::string_view_literals;
  for (const std::string_view bytes : {"\xC3\xBC"sv, "\xEF\xBB\xBF\xC3\xBC"sv, "\xFF\xFE\xFC\x00"sv,
                                       "\xFE\xFF\x00\xFC"sv, "\xFF\xFE\xFC\x00\x41"sv}) {
    EXPECT_EQ(DecodeText(bytes), L"\u00FC");
  }
  for (const std::string_view bytes : {""sv, "\xFF\xFE"sv}) EXPECT_EQ(DecodeText(bytes), L"");
}

TEST(RatingStoreTest, UsersFileComesFirstAndChangesAreSeen) {
  const TemporaryFolder folder;
  const std::wstring user = folder.File(L"user.ini");
  const std::wstring defaults = folder.Write(L"default.ini", "[Companies]\nA=trusted\nB=trusted\n");
  RatingStore store(user, defaults);
  EXPECT_EQ(store.OfCompany(L"A"), kRatingTrusted);
  WriteFileBytes(user, "[Companies]\nA=risky\n");
  EXPECT_EQ(store.OfCompany(L"A"), kRatingRisky);
  EXPECT_EQ(store.OfCompany(L"B"), kRatingTrusted);
  WriteFileBytes(defaults, "[Files]\nb.exe=risky\n");
  EXPECT_EQ(store.OfCompany(L"B"), kRatingUnknown);
  EXPECT_EQ(store.OfFile(L"b.exe"), kRatingRisky);
  ASSERT_TRUE(DeleteFileW(user.c_str()));
  EXPECT_EQ(store.OfCompany(L"A"), kRatingUnknown);
}

TEST(RatingStoreTest, FileBeingWrittenKeepsTheRatingsReadBefore) {
  const TemporaryFolder folder;
  const std::wstring path = folder.Write(L"ratings.ini", "[Companies]\nA=trusted\n");
  RatingStore store({}, path);
  EXPECT_EQ(store.OfCompany(L"A"), kRatingTrusted);
  WriteFileBytes(path, "[Companies]\nA=risky\nmore=risky\n");
  ScopedHandle exclusive(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(exclusive);
  EXPECT_EQ(store.OfCompany(L"A"), kRatingTrusted);
  exclusive.Reset();
  EXPECT_EQ(store.OfCompany(L"A"), kRatingRisky);
}

TEST(FileRaterTest, DefaultsLieBesideTheLibraryAndTheUsersFileOverrides) {
  const std::wstring user = DataFolder() + L"ratings.ini";
  DeleteFileW(user.c_str());
  const SiblingLibrary raterkit(L"raterkit.dll");
  auto* const rater = raterkit.Service<IFileRater>();
  const auto rateFile = [&](const wchar_t* name) { return CallSlot<std::int32_t>(rater, 1, name); };
  const auto rateCompany = [&](const wchar_t* name) { return CallSlot<std::int32_t>(rater, 3, name); };
  EXPECT_EQ(rateCompany(L"microsoft corporation"), kRatingTrusted);
  EXPECT_EQ(rateFile(L"SVCH0ST.EXE"), kRatingRisky);
  EXPECT_EQ(rateCompany(L"svch0st.exe"), kRatingUnknown);
  for (const wchar_t* const text : {static_cast<const wchar_t*>(nullptr), L"", L" ", L"svchost.exe"}) {
    EXPECT_EQ(rateFile(text), kRatingUnknown);
    EXPECT_EQ(rateCompany(text), kRatingUnknown);
  }
  WriteFileBytes(
      user, "\xEF\xBB\xBF[Companies]\r\nMicrosoft Corporation=risky\r\n[Files]\r\nsvch0st.exe=unknown\r\n");
  EXPECT_EQ(rateCompany(L"Microsoft Corporation"), kRatingRisky);
  EXPECT_EQ(rateFile(L"svch0st.exe"), kRatingUnknown);
  ASSERT_TRUE(DeleteFileW(user.c_str()));
  EXPECT_EQ(rateCompany(L"Microsoft Corporation"), kRatingTrusted);
}

// Nobody is rated trusted for what a version record says: every such line names who must have signed.
TEST(FileTrustTest, DefaultRatingsNameTheirSigners) {
  const SiblingLibrary raterkit(L"raterkit.dll");
  const auto signer = [&](const std::wstring& company, const wchar_t* name) {
    return TakeText([&](BoundaryText* text) {
      return CallSlot<HRESULT>(raterkit.Service<IFileTrust>(), 2, company.c_str(), name, text);
    });
  };
  const std::wstring text = DecodeText(ReadFileBytes(ThisFolder() + L"ratings.ini"));
  std::size_t lines = 0;
  for (std::size_t at = text.find(L"=trusted"); at != std::wstring::npos;
       at = text.find(L"=trusted", at + 1)) {
    const std::size_t begin = text.rfind(L'\n', at) + 1;
    if (text[begin] == L';') continue;
    EXPECT_NE(signer(text.substr(begin, at - begin), L""), L"") << text.substr(begin, at - begin);
    ++lines;
  }
  EXPECT_GT(lines, 10U);
  EXPECT_EQ(signer(L"Microsoft Corporation", L"svch0st.exe"), L"Microsoft Corporation");
  EXPECT_EQ(signer(L"Nobody", L"svch0st.exe"), L"");
}

}  // namespace
}  // namespace smh::test
