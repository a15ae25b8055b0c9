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

// Five steps: a value changed (done, a copy of another), a key deleted (done), a file replaced (failed with
// status 5), a file moved (without a mark), a key made (done).
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
  contents.finished = true;
  return contents;
}

// The file that a writer of these contents leaves: every mark right behind its step.
inline ByteVector Encode(const JournalContents& contents) {
  std::vector<ByteVector> parts = {EncodeBeginning(contents.header)};
  for (std::uint32_t i = 0; i < contents.steps.size(); ++i) {
    const RecordedStep& step = contents.steps[i];
    parts.push_back(EncodeStep(i, step.step, step.source));
    if (step.mark != StepMark::kNone) parts.push_back(EncodeMark(i, step.status));
  }
  if (contents.finished) {
    parts.push_back(EncodeEnd(static_cast<std::uint32_t>(contents.steps.size()), contents.failed));
  }
  return Joined(parts);
}

// A payload as a record of its own, checksum included.
inline ByteVector Framed(const ByteVector& payload) {
  RecordWriter record;
  record.U32(static_cast<std::uint32_t>(payload.size()));
  record.U32(Checksum(payload));
  record.Put(payload);
  return record.Written();
}

}  // namespace smh::test
