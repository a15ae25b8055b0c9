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
  return true;
}

TEST(JournalFormat, EveryKindOfStepComesBackAsItWas) {
  const std::string digits = "123456789";
  EXPECT_EQ(Checksum(std::as_bytes(std::span(digits))), 0xCBF43926u);
  JournalContents contents = SampleJournal();
  contents.size = Encode(contents).size();
  EXPECT_EQ(DecodeJournal(Encode(contents)), contents);
}

// Every byte of an ended file and of an open one, cut off there and flipped: what is left is read, and never
// taken for the whole.
TEST(JournalFormat, DamageIsNeverTakenForTheWhole) {
  JournalContents contents = SampleJournal();
  for (const JournalEnd end : {JournalEnd::kDone, JournalEnd::kNone}) {
    contents.end = end;
    const ByteVector whole = Encode(contents);
    const std::size_t beginning = EncodeBeginning(contents.header).size();
    std::size_t steps = 0;
    ASSERT_TRUE(DecodeJournal(whole)->whole);
    for (std::size_t at = 0; at < whole.size(); ++at) {
      const auto cut = DecodeJournal(std::span(whole).first(at));
      ASSERT_EQ(cut.has_value(), at >= beginning) << at;
      if (cut) {
        EXPECT_TRUE(IsPrefix(*cut, contents) && !cut->whole && cut->steps.size() >= steps) << at;
        steps = cut->steps.size();
      }
      for (const int flip : {0x01, 0x80, 0xFF}) {
        ByteVector damaged = whole;
        damaged[at] ^= static_cast<std::byte>(flip);
        const auto read = DecodeJournal(damaged);
        EXPECT_TRUE(!read || (IsPrefix(*read, contents) && !read->whole)) << "byte " << at;
      }
    }
    EXPECT_EQ(steps, contents.steps.size());
  }
}

TEST(JournalFormat, RecordsThatCannotFollowEndTheReading) {
  const JournalContents contents = SampleJournal();
  const ByteVector beginning = EncodeBeginning(contents.header);
  const ByteVector first = EncodeStep(0, contents.steps[0].step);
  const ByteVector part = EncodePart({});
  const ByteVector second = EncodePart({.number = 2});
  const ByteVector end = EncodeEnd(1, JournalEnd::kDone);
  ByteVector longer(first.begin() + kPrefixSize, first.end());
  longer.push_back(std::byte{0});
  const struct {
    const char* what;
    std::vector<ByteVector> records;
    std::size_t steps;
    StepMark mark;
    bool finished;
  } rows[] = {
      {"no part", {first}, 0, {}, false},
      {"a part left out", {second, first}, 0, {}, false},
      {"a number left out", {part, EncodeStep(1, contents.steps[0].step)}, 0, {}, false},
      {"a number twice", {part, first, first, EncodeEnd(2, JournalEnd::kDone)}, 1, StepMark::kNone, false},
      {"a mark too early", {part, EncodeMark(0, 0), first}, 0, {}, false},
      {"a mark twice", {part, first, EncodeMark(0, 0), EncodeMark(0, 5), end}, 1, StepMark::kDone, false},
      {"taken back",
       {part, first, EncodeMark(0, 0), EncodeMark(0, kTakenBack), EncodePartEnd(1, true), end},
       1,
       StepMark::kFailed,
       true},
      {"a part behind one that stopped", {part, first, second, end}, 1, StepMark::kNone, true},
      {"a step behind a part", {part, EncodePartEnd(0, false), first, end}, 0, {}, false},
      {"a wrong end of a part", {part, first, EncodePartEnd(2, false), end}, 1, StepMark::kNone, false},
      {"a wrong end", {part, first, EncodeEnd(2, JournalEnd::kDone)}, 1, StepMark::kNone, false},
      {"steps behind the end", {part, first, end, EncodeStep(1, contents.steps[1].step)}, 1, {}, true},
      {"a longer record", {part, FrameRecord(longer)}, 0, {}, false},
      {"no payload", {FrameRecord({})}, 0, {}, false},
      {"an unknown type", {FrameRecord(ByteVector{std::byte{9}})}, 0, {}, false},
      {"a header again", {ByteVector(beginning.begin() + 8, beginning.end()), part, first}, 0, {}, false},
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

// A file as the first two versions wrote it: no checksum of the prefix, no parts, and the bytes `end` last.
ByteVector OldJournal(char version, const ByteVector& end) {
  const auto reframe = [](const ByteVector& record, std::size_t cut) {
    const ByteVector payload(record.begin() + kPrefixSize, record.end() - static_cast<std::ptrdiff_t>(cut));
    RecordWriter old;
    old.U32(static_cast<std::uint32_t>(payload.size()));
    old.U32(Checksum(payload));
    old.Put(payload);
    return old.Written();
  };
  CheckpointHeader old;
  old.id = 7;
  old.undoes = 3;
  old.title = L"old";
  const ByteVector beginning = EncodeBeginning(old);
  ByteVector file(beginning.begin(), beginning.begin() + 7);
  file.push_back(static_cast<std::byte>(version));
  const ByteVector header(beginning.begin() + 8, beginning.end());
  return Joined({file, reframe(header, 4), reframe(EncodeStep(0, SampleJournal().steps[4].step), 0),
                 end.size() < 5 ? end : reframe(Joined({ByteVector(kPrefixSize), end}), 0)});
}

// Journals outlive the version that wrote them.
TEST(JournalFormat, OlderVersionsAreActionsOfOnePart) {
  const ByteVector first = {std::byte{4}, std::byte{1}, {}, {}, {}};
  const ByteVector done = {std::byte{4}, std::byte{1}, {}, {}, {}, {}};
  ByteVector failed = done;
  failed.back() = std::byte{1};
  using enum PartEnd;
  const struct {
    char version;
    ByteVector end;
    PartEnd part;
    bool whole;
  } rows[] = {{'1', first, kDone, true},    {'1', {}, kNone, true},  {'2', done, kDone, true},
              {'2', failed, kFailed, true}, {'2', {}, kNone, false}, {'2', first, kNone, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const auto read = DecodeJournal(OldJournal(row.version, row.end));
    ASSERT_TRUE(read);
    const JournalPart part{{1, 3, 1, 0, L"old"}, 0, 1, row.part};
    EXPECT_EQ(read->parts, std::vector{part});
    EXPECT_EQ(read->whole, row.whole);
    EXPECT_EQ(read->finished, row.part != kNone);
  }
  ByteVector room = OldJournal('2', {});
  room.resize(room.size() + 31);
  EXPECT_TRUE(DecodeJournal(room)->whole);
  EXPECT_FALSE(DecodeJournal(OldJournal('4', done)));
}

}  // namespace
}  // namespace smh::test
