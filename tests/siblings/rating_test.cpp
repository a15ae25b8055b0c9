#include "infra/intf_FileRater.h"

#include "common/data_folder.h"
#include "raterkit/rating_store.h"
#include "siblings/sibling_library.h"
#include "support/file_fixture.h"

#include <gtest/gtest.h>

namespace smh {
namespace {

using test::CallSlot;

TEST(RatingTableTest, SectionsNamesAndWords) {
  const RatingTable table(
      L"Loose=risky\r\n"
      L"; Remark=risky\r\n[companies]\r\n  Some Corp. =  TRUSTED \r\nA=B "
      L"Ltd.=risky\r\nTwice=risky\nTwice=trusted\n"
      L"Bad word=good\r\nNo rating\r\n=risky\r\n[Other]\r\nElsewhere=risky\r\n[FILES]\r\n#x.exe=risky\r\n"
      L"app.exe=unknown\rlast.exe=risky");
  EXPECT_EQ(table.OfCompany(L"SOME corp."), kRatingTrusted);
  EXPECT_EQ(table.OfCompany(L" Some Corp. "), kRatingTrusted);
  EXPECT_EQ(table.OfCompany(L"a=b ltd."), kRatingRisky);
  EXPECT_EQ(table.OfCompany(L"Twice"), kRatingRisky);
  EXPECT_EQ(table.OfFile(L"App.exe"), kRatingUnknown);
  EXPECT_EQ(table.OfFile(L"last.exe"), kRatingRisky);
  for (const wchar_t* const name : {L"Loose", L"; Remark", L"Remark", L"Bad word", L"No rating", L"Elsewhere",
                                    L"app.exe", L"Some Corp"}) {
    EXPECT_EQ(table.OfCompany(name), std::nullopt) << name;
  }
  EXPECT_EQ(table.OfFile(L"Some Corp."), std::nullopt);
  EXPECT_EQ(table.OfFile(L"x.exe"), std::nullopt);
}

TEST(RatingTableTest, NonAsciiLettersIgnoreCase) {
  EXPECT_EQ(RatingTable(L"[Companies]\nM\u00DCLLER=risky").OfCompany(L"M\u00FCller"), kRatingRisky);
}

TEST(RatingTableTest, EveryEncodingIsRead) {
  EXPECT_EQ(DecodeText("\xC3\xBC"), L"\u00FC");
  EXPECT_EQ(DecodeText("\xEF\xBB\xBF\xC3\xBC"), L"\u00FC");
  EXPECT_EQ(DecodeText(std::string_view("\xFF\xFE\xFC\x00", 4)), L"\u00FC");
  EXPECT_EQ(DecodeText(std::string_view("\xFE\xFF\x00\xFC", 4)), L"\u00FC");
  EXPECT_EQ(DecodeText(std::string_view("\xFF\xFE\xFC\x00\x41", 5)), L"\u00FC");
  EXPECT_EQ(DecodeText(""), L"");
  EXPECT_EQ(DecodeText("\xFF\xFE"), L"");
}

TEST(RatingStoreTest, UsersFileComesFirstAndChangesAreSeen) {
  const test::TemporaryFolder folder;
  const std::wstring user = folder.File(L"user.ini");
  const std::wstring defaults = folder.Write(L"default.ini", "[Companies]\nA=trusted\nB=trusted\n");
  RatingStore store(user, defaults);
  EXPECT_EQ(store.OfCompany(L"A"), kRatingTrusted);
  EXPECT_EQ(store.OfCompany(L"C"), kRatingUnknown);
  test::WriteFileBytes(user, "[Companies]\nA=risky\nC=risky\n");
  EXPECT_EQ(store.OfCompany(L"A"), kRatingRisky);
  EXPECT_EQ(store.OfCompany(L"B"), kRatingTrusted);
  EXPECT_EQ(store.OfCompany(L"C"), kRatingRisky);
  test::WriteFileBytes(defaults, "[Files]\nb.exe=risky\n");
  EXPECT_EQ(store.OfCompany(L"B"), kRatingUnknown);
  EXPECT_EQ(store.OfFile(L"b.exe"), kRatingRisky);
  ASSERT_TRUE(DeleteFileW(user.c_str()));
  EXPECT_EQ(store.OfCompany(L"A"), kRatingUnknown);
}

TEST(RatingStoreTest, FileBeingWrittenKeepsTheRatingsReadBefore) {
  const test::TemporaryFolder folder;
  const std::wstring path = folder.Write(L"ratings.ini", "[Companies]\nA=trusted\n");
  RatingStore store({}, path);
  EXPECT_EQ(store.OfCompany(L"A"), kRatingTrusted);
  {
    test::WriteFileBytes(path, "[Companies]\nA=risky\nmore=risky\n");
    const ScopedHandle exclusive(
        CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(exclusive);
    EXPECT_EQ(store.OfCompany(L"A"), kRatingTrusted);
  }
  EXPECT_EQ(store.OfCompany(L"A"), kRatingRisky);
}

// Moves the user's own ratings out of the way.
class FileRaterTest : public testing::Test {
 protected:
  FileRaterTest() {
    MakeFolders(DataFolder());
    MoveFileExW(path_.c_str(), kept_.c_str(), MOVEFILE_REPLACE_EXISTING);
  }
  ~FileRaterTest() override {
    DeleteFileW(path_.c_str());
    MoveFileExW(kept_.c_str(), path_.c_str(), MOVEFILE_REPLACE_EXISTING);
  }
  std::int32_t RateFile(const wchar_t* name) { return CallSlot<std::int32_t>(rater_, 1, name); }
  std::int32_t RateCompany(const wchar_t* company) { return CallSlot<std::int32_t>(rater_, 3, company); }

  const std::wstring path_ = DataFolder() + L"ratings.ini";
  const std::wstring kept_ = path_ + L".kept";
  test::SiblingLibrary raterkit_{L"raterkit.dll"};
  IFileRater* rater_ = raterkit_.Service<IFileRater>();
};

TEST_F(FileRaterTest, DefaultsLieBesideTheLibraryAndTheUsersFileOverrides) {
  EXPECT_EQ(RateCompany(L"microsoft corporation"), kRatingTrusted);
  EXPECT_EQ(RateFile(L"SVCH0ST.EXE"), kRatingRisky);
  EXPECT_EQ(RateFile(L"svchost.exe"), kRatingUnknown);
  EXPECT_EQ(RateCompany(L"svch0st.exe"), kRatingUnknown);
  test::WriteFileBytes(
      path_, "\xEF\xBB\xBF[Companies]\r\nMicrosoft Corporation=risky\r\n[Files]\r\nsvch0st.exe=unknown\r\n");
  EXPECT_EQ(RateCompany(L"Microsoft Corporation"), kRatingRisky);
  EXPECT_EQ(RateFile(L"svch0st.exe"), kRatingUnknown);
  ASSERT_TRUE(DeleteFileW(path_.c_str()));
  EXPECT_EQ(RateCompany(L"Microsoft Corporation"), kRatingTrusted);
}

TEST_F(FileRaterTest, NothingIsUnknown) {
  for (const wchar_t* const text : {static_cast<const wchar_t*>(nullptr), L"", L" ", L"no such company"}) {
    EXPECT_EQ(RateFile(text), kRatingUnknown);
    EXPECT_EQ(RateCompany(text), kRatingUnknown);
  }
  EXPECT_EQ(CallSlot<HRESULT>(rater_, 2), E_NOTIMPL);
}

}  // namespace
}  // namespace smh
