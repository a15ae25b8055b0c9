#include "siblings/guardkit/format/journal_format.h"

#include "siblings/guardkit/format/record_codec.h"

#include <algorithm>
#include <utility>

namespace smh {

namespace {

constexpr std::array<std::byte, 7> kSignature = {std::byte{'S'}, std::byte{'M'}, std::byte{'H'},
                                                 std::byte{'J'}, std::byte{'R'}, std::byte{'N'},
                                                 std::byte{'L'}};
// What follows the signature. The end of a journal of the first version says nothing of a failure.
constexpr std::uint8_t kFirstVersion = '1';
constexpr std::uint8_t kVersion = '2';

// Fixed in the format: in the order of the alternatives of Step for the kinds of steps.
enum RecordType : std::uint8_t { kHeaderRecord = 1, kStepRecord = 2, kMarkRecord = 3, kEndRecord = 4 };

ByteVector Framed(const RecordWriter& payload) {
  RecordWriter record;
  record.U32(static_cast<std::uint32_t>(payload.Written().size()));
  record.U32(Checksum(payload.Written()));
  record.Put(payload.Written());
  return record.Written();
}

void Write(RecordWriter& out, const ValueState& state) {
  out.U8(state.exists ? 1 : 0);
  if (!state.exists) return;
  out.U32(state.type);
  out.Block(state.data);
}

void Write(RecordWriter& out, const KeyState& state) {
  out.U8(state.exists ? 1 : 0);
  if (!state.exists) return;
  out.Text(state.className);
  out.Block(state.security);
  out.U32(static_cast<std::uint32_t>(state.values.size()));
  for (const NamedValue& value : state.values) {
    out.Text(value.name);
    out.U32(value.type);
    out.Block(value.data);
  }
}

void Write(RecordWriter& out, const FileState& state) {
  out.U8(state.exists ? 1 : 0);
  if (!state.exists) return;
  out.U32(state.attributes);
  for (const std::uint64_t time : {state.created, state.accessed, state.written}) out.U64(time);
  out.Block(state.security);
  out.U32(static_cast<std::uint32_t>(state.streams.size()));
  for (const StreamState& stream : state.streams) {
    out.Text(stream.name);
    out.U64(stream.size);
    out.Put(stream.hash);
  }
}

struct StepWriter {
  RecordWriter& out;

  void operator()(const ValueStep& step) const {
    out.Text(step.key);
    out.Text(step.name);
    Write(out, step.before);
    Write(out, step.after);
  }
  void operator()(const KeyStep& step) const {
    out.Text(step.key);
    Write(out, step.before);
    Write(out, step.after);
  }
  void operator()(const FileStep& step) const {
    out.Text(step.path);
    Write(out, step.before);
    Write(out, step.after);
  }
  void operator()(const MoveStep& step) const {
    out.Text(step.from);
    out.Text(step.to);
    Write(out, step.file);
  }
};

void Write(RecordWriter& out, const StepSource& source) {
  if (source.kind == StepSource::Kind::kNone) return;
  out.U8(static_cast<std::uint8_t>(source.kind));
  out.Text(source.place);
  out.Text(source.name);
  out.U32(source.content);
}

bool ReadFlag(ByteCursor& in) noexcept {
  const std::uint8_t flag = in.U8();
  if (flag > 1) in.Fail();
  return flag == 1;
}

void Read(ByteCursor& in, ValueState& state) {
  state.exists = ReadFlag(in);
  if (!state.exists) return;
  state.type = in.U32();
  state.data = ReadBlock(in);
}

void Read(ByteCursor& in, KeyState& state) {
  state.exists = ReadFlag(in);
  if (!state.exists) return;
  state.className = ReadText(in);
  state.security = ReadBlock(in);
  for (std::uint32_t left = in.U32(); left > 0 && in.Ok(); --left) {
    NamedValue& value = state.values.emplace_back();
    value.name = ReadText(in);
    value.type = in.U32();
    value.data = ReadBlock(in);
  }
}

void Read(ByteCursor& in, FileState& state) {
  state.exists = ReadFlag(in);
  if (!state.exists) return;
  state.attributes = in.U32();
  for (std::uint64_t* time : {&state.created, &state.accessed, &state.written}) *time = in.U64();
  state.security = ReadBlock(in);
  for (std::uint32_t left = in.U32(); left > 0 && in.Ok(); --left) {
    StreamState& stream = state.streams.emplace_back();
    stream.name = ReadText(in);
    stream.size = in.U64();
    stream.hash = in.Array<sizeof(stream.hash)>();
  }
}

// Behind a step's fields; nothing there is no source.
void Read(ByteCursor& in, StepSource& source) {
  if (in.AtEnd()) return;
  const std::uint8_t kind = in.U8();
  if (kind < 1 || kind > static_cast<std::uint8_t>(StepSource::Kind::kFile)) in.Fail();
  source.kind = static_cast<StepSource::Kind>(kind);
  source.place = ReadText(in);
  source.name = ReadText(in);
  source.content = in.U32();
}

struct StepReader {
  ByteCursor& in;

  void operator()(ValueStep& step) const {
    step.key = ReadText(in);
    step.name = ReadText(in);
    Read(in, step.before);
    Read(in, step.after);
  }
  void operator()(KeyStep& step) const {
    step.key = ReadText(in);
    Read(in, step.before);
    Read(in, step.after);
  }
  void operator()(FileStep& step) const {
    step.path = ReadText(in);
    Read(in, step.before);
    Read(in, step.after);
  }
  void operator()(MoveStep& step) const {
    step.from = ReadText(in);
    step.to = ReadText(in);
    Read(in, step.file);
  }
};

std::optional<Step> EmptyStep(std::uint8_t kind) {
  switch (kind) {
    case 0:
      return ValueStep{};
    case 1:
      return KeyStep{};
    case 2:
      return FileStep{};
    case 3:
      return MoveStep{};
    default:
      return std::nullopt;
  }
}

// Each reads the rest of a payload behind its type; false when that is not what it should be.
bool ReadHeader(ByteCursor& in, JournalContents& contents) {
  CheckpointHeader& header = contents.header;
  header.id = in.U32();
  header.undoes = in.U32();
  header.time = in.U64();
  header.process = in.U32();
  header.processStarted = in.U64();
  header.user = ReadText(in);
  header.title = ReadText(in);
  return in.AtEnd();
}

bool ReadStep(ByteCursor& in, JournalContents& contents) {
  if (in.U32() != contents.steps.size()) return false;
  std::optional<Step> step = EmptyStep(in.U8());
  if (!step) return false;
  std::visit(StepReader{in}, *step);
  StepSource source;
  Read(in, source);
  if (!in.AtEnd()) return false;
  contents.steps.push_back({*std::move(step), StepMark::kNone, 0, std::move(source)});
  return true;
}

bool ReadMark(ByteCursor& in, JournalContents& contents) {
  const std::uint32_t number = in.U32();
  const std::uint32_t status = in.U32();
  if (!in.AtEnd() || number >= contents.steps.size()) return false;
  RecordedStep& step = contents.steps[number];
  if (step.mark != StepMark::kNone && status != kTakenBack) return false;
  step.mark = status == 0 ? StepMark::kDone : StepMark::kFailed;
  step.status = status;
  return true;
}

bool ReadEnd(ByteCursor& in, std::uint8_t version, JournalContents& contents) {
  const std::uint32_t count = in.U32();
  const bool failed = version != kFirstVersion && ReadFlag(in);
  contents.finished = count == contents.steps.size() && in.AtEnd();
  contents.failed = contents.finished && failed;
  return contents.finished;
}

// The next payload; none at the end and at a torn or damaged record.
std::optional<Bytes> NextPayload(ByteCursor& file) {
  const std::uint32_t size = file.U32();
  const std::uint32_t checksum = file.U32();
  const Bytes payload = file.Take(size);
  if (!file.Ok() || payload.empty() || Checksum(payload) != checksum) return std::nullopt;
  return payload;
}

bool ReadRecord(Bytes payload, std::uint8_t version, JournalContents& contents) {
  ByteCursor in(payload);
  switch (in.U8()) {
    case kStepRecord:
      return ReadStep(in, contents);
    case kMarkRecord:
      return ReadMark(in, contents);
    case kEndRecord:
      return ReadEnd(in, version, contents);
    default:
      return false;
  }
}

}  // namespace

ByteVector EncodeBeginning(const CheckpointHeader& header) {
  RecordWriter payload;
  payload.U8(kHeaderRecord);
  payload.U32(header.id);
  payload.U32(header.undoes);
  payload.U64(header.time);
  payload.U32(header.process);
  payload.U64(header.processStarted);
  payload.Text(header.user);
  payload.Text(header.title);
  RecordWriter file;
  file.Put(kSignature);
  file.U8(kVersion);
  file.Put(Framed(payload));
  return file.Written();
}

ByteVector EncodeStep(std::uint32_t number, const Step& step, const StepSource& source) {
  RecordWriter payload;
  payload.U8(kStepRecord);
  payload.U32(number);
  payload.U8(static_cast<std::uint8_t>(step.index()));
  std::visit(StepWriter{payload}, step);
  Write(payload, source);
  return Framed(payload);
}

ByteVector EncodeMark(std::uint32_t number, std::uint32_t status) {
  RecordWriter payload;
  payload.U8(kMarkRecord);
  payload.U32(number);
  payload.U32(status);
  return Framed(payload);
}

ByteVector EncodeEnd(std::uint32_t stepCount, bool failed) {
  RecordWriter payload;
  payload.U8(kEndRecord);
  payload.U32(stepCount);
  payload.U8(failed ? 1 : 0);
  return Framed(payload);
}

std::optional<JournalContents> DecodeJournal(Bytes file) {
  ByteCursor in(file);
  JournalContents contents;
  if (!std::ranges::equal(in.Take(kSignature.size()), kSignature)) return std::nullopt;
  const std::uint8_t version = in.U8();
  if (version != kFirstVersion && version != kVersion) return std::nullopt;
  const auto header = NextPayload(in);
  if (!header) return std::nullopt;
  ByteCursor fields(*header);
  if (fields.U8() != kHeaderRecord || !ReadHeader(fields, contents)) return std::nullopt;
  while (!contents.finished) {
    const auto payload = NextPayload(in);
    if (!payload || !ReadRecord(*payload, version, contents)) break;
  }
  return contents;
}

}  // namespace smh
