// The journal's reader over whole, torn and damaged files.

#include "siblings/guardkit/format/record_codec.h"
#include "tests/native/sample_journal.h"

#include <gtest/gtest.h>

namespace smh::test {
namespace {

// Whether what was read is what was written, up to some point.
bool IsPrefix(const JournalContents& read, const JournalContents& written) {
  if (read.header != written.header || read.steps.size() > written.steps.size()) return false;
  for (std::size_t i = 0; i < read.steps.size(); ++i) {
    const bool markIsMissing = read.steps[i].mark == StepMark::kNone;
    if (read.steps[i].step != written.steps[i].step) return false;
    if (!markIsMissing && read.steps[i] != written.steps[i]) return false;
  }
  return !read.finished || read == written;
}

TEST(JournalFormat, EveryKindOfStepComesBackAsItWas) {
  const std::string digits = "123456789";
  EXPECT_EQ(Checksum(std::as_bytes(std::span(digits))), 0xCBF43926u);
  const JournalContents contents = SampleJournal();
  EXPECT_EQ(DecodeJournal(Encode(contents)), contents);
}

TEST(JournalFormat, TornTailIsIgnored) {
  const JournalContents contents = SampleJournal();
  const ByteVector whole = Encode(contents);
  const std::size_t beginning = EncodeBeginning(contents.header).size();
  std::size_t steps = 0;
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const auto read = DecodeJournal(std::span(whole).first(size));
    ASSERT_EQ(read.has_value(), size >= beginning) << size;
    if (!read) continue;
    EXPECT_TRUE(IsPrefix(*read, contents)) << size;
    EXPECT_FALSE(read->finished) << size;
    EXPECT_GE(read->steps.size(), steps) << size;
    steps = read->steps.size();
  }
  EXPECT_EQ(steps, contents.steps.size());
}

TEST(JournalFormat, DamageIsNeverTakenForAState) {
  const JournalContents contents = SampleJournal();
  const ByteVector whole = Encode(contents);
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const int flip : {0x01, 0x80, 0xFF}) {
      ByteVector damaged = whole;
      damaged[at] ^= static_cast<std::byte>(flip);
      const auto read = DecodeJournal(damaged);
      EXPECT_TRUE(!read || (IsPrefix(*read, contents) && !read->finished)) << "byte " << at;
    }
  }
}

TEST(JournalFormat, RecordsThatCannotFollowEndTheReading) {
  const JournalContents contents = SampleJournal();
  const ByteVector beginning = EncodeBeginning(contents.header);
  const ByteVector first = EncodeStep(0, contents.steps[0].step);
  ByteVector longer(first.begin() + 8, first.end());
  longer.push_back(std::byte{0});
  const struct {
    const char* what;
    std::vector<ByteVector> records;
    std::size_t steps;
    StepMark mark;
    bool finished;
  } rows[] = {
      {"a number left out", {EncodeStep(1, contents.steps[0].step)}, 0, {}, false},
      {"a number twice", {first, first, EncodeEnd(2)}, 1, StepMark::kNone, false},
      {"a mark too early", {EncodeMark(0, 0), first}, 0, {}, false},
      {"a mark twice", {first, EncodeMark(0, 0), EncodeMark(0, 5), EncodeEnd(1)}, 1, StepMark::kDone, false},
      {"room behind it", {first, EncodeMark(0, 0), ByteVector(14)}, 1, StepMark::kDone, false},
      {"taken back",
       {first, EncodeMark(0, 0), EncodeMark(0, kTakenBack), EncodeEnd(1)},
       1,
       StepMark::kFailed,
       true},
      {"a wrong end", {first, EncodeEnd(2)}, 1, StepMark::kNone, false},
      {"steps behind the end",
       {first, EncodeEnd(1), EncodeStep(1, contents.steps[1].step)},
       1,
       StepMark::kNone,
       true},
      {"a longer record", {Framed(longer)}, 0, {}, false},
      {"no payload", {Framed({})}, 0, {}, false},
      {"an unknown type", {Framed({std::byte{9}})}, 0, {}, false},
      {"a header again", {ByteVector(beginning.begin() + 8, beginning.end()), first}, 0, {}, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    std::vector<ByteVector> parts = {beginning};
    parts.insert(parts.end(), row.records.begin(), row.records.end());
    const auto read = DecodeJournal(Joined(parts));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->finished, row.finished);
    ASSERT_EQ(read->steps.size(), row.steps);
    if (row.steps != 0) EXPECT_EQ(read->steps[0].mark, row.mark);
  }
}

// Journals outlive the version that wrote them.
TEST(JournalFormat, TheEndSaysWhetherTheChangeFailedSinceTheSecondVersion) {
  JournalContents contents = SampleJournal();
  for (const bool failed : {false, true}) {
    const auto read = DecodeJournal(Joined({EncodeBeginning(contents.header), EncodeEnd(0, failed)}));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->finished);
    EXPECT_EQ(read->failed, failed);
  }
  ByteVector first = EncodeBeginning(contents.header);
  first[7] = std::byte{'1'};
  const ByteVector oldEnd = Framed({std::byte{4}, std::byte{0}, std::byte{0}, std::byte{0}, std::byte{0}});
  const auto old = DecodeJournal(Joined({first, oldEnd}));
  ASSERT_TRUE(old);
  EXPECT_TRUE(old->finished);
  EXPECT_FALSE(old->failed);
  first[7] = std::byte{'3'};
  EXPECT_FALSE(DecodeJournal(Joined({first, oldEnd})));
}

}  // namespace
}  // namespace smh::test
