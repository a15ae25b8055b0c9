// A journal with a step of every kind, and what tests need to take journals apart.
#pragma once

#include "siblings/guardkit/format/journal_format.h"
#include "siblings/guardkit/format/record_codec.h"

#include <string>

namespace smh::test {

inline ByteVector BytesOfText(const std::string& text) {
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

inline ByteVector Joined(const std::vector<ByteVector>& parts) {
  ByteVector all;
  for (const ByteVector& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

// Two parts. Five steps: a value changed (done, a copy of another), a key deleted (done); a file replaced
// (failed with status 5), a file moved (without a mark), a key made (done).
inline JournalContents SampleJournal() {
  const std::wstring key = L"HKEY_USERS\\S-1-5-21-1\\Software\\K";
  FileState file{
      true, 0x20, 1, 2, 0x1122334455667788, BytesOfText("descriptor"), {{L"", 5, {}}, {L":zone", 7, {}}}};
  file.streams[0].hash.fill(std::byte{0xAB});
  FileState other = file;
  other.streams.resize(1);
  other.streams[0].hash.fill(std::byte{0xCD});

  JournalContents contents;
  contents.header = {
      7, 3, 0x01DA000000000001, 4711, 0x01D9000000000001, L"S-1-5-21-1", L"Disabling \xD800 x"};
  contents.steps = {
      {ValueStep{key, L"", {true, 2, BytesOfText("old")}, {true, 1, {}}},
       StepMark::kDone,
       0,
       {StepSource::Kind::kValue, key + L"\\Source", L"v", 0x11223344}},
      {KeyStep{key, {true, L"class", BytesOfText("sd"), {{L"a", 1, BytesOfText("x")}, {L"b", 4, {}}}}, {}},
       StepMark::kDone, 0},
      {FileStep{L"C:\\a.lnk", file, other}, StepMark::kFailed, 5},
      {MoveStep{L"C:\\a.lnk", L"C:\\b.lnk", file}, StepMark::kNone, 0},
      {KeyStep{key + L"\\Side", {}, {true, L"", {}, {}}}, StepMark::kDone, 0},
  };
  contents.parts = {{{1, 0, 0, 5, L"one"}, 0, 2, PartEnd::kDone},
                    {{2, 3, 9, 6, L"two"}, 2, 3, PartEnd::kFailed}};
  contents.finished = true;
  contents.end = JournalEnd::kDone;
  contents.continuedBy = 8;
  contents.whole = true;
  return contents;
}

// The file that a writer of these contents leaves: every mark right behind its step, and room behind what has
// no end.
inline ByteVector Encode(const JournalContents& contents) {
  std::vector<ByteVector> parts = {EncodeBeginning(contents.header)};
  std::uint32_t number = 0;
  for (const JournalPart& part : contents.parts) {
    parts.push_back(EncodePart(part.header));
    for (const std::size_t end = part.firstStep + part.stepCount; number < end; ++number) {
      const RecordedStep& step = contents.steps[number];
      parts.push_back(EncodeStep(number, step.step, step.source));
      if (step.mark != StepMark::kNone) parts.push_back(EncodeMark(number, step.status));
    }
    if (part.end != PartEnd::kNone) parts.push_back(EncodePartEnd(number, part.end == PartEnd::kFailed));
  }
  const bool hasEnded = contents.parts.empty() || contents.parts.back().end != PartEnd::kNone;
  const ByteVector room(hasEnded ? kRoomBehindPartEnd : kRoomBehindStep);
  const bool isOpen = contents.end == JournalEnd::kNone;
  parts.push_back(isOpen ? room : EncodeEnd(number, contents.end, contents.continuedBy));
  return Joined(parts);
}

}  // namespace smh::test
