#include "siblings/guardkit/format/journal_format.h"

#include "siblings/guardkit/format/step_codec.h"

#include <algorithm>
#include <utility>

namespace smh {

namespace {

constexpr std::array<std::byte, 7> kSignature = {std::byte{'S'}, std::byte{'M'}, std::byte{'H'},
                                                 std::byte{'J'}, std::byte{'R'}, std::byte{'N'},
                                                 std::byte{'L'}};
// What follows the signature. A journal of the first two versions has one part, without records of its own,
// and no checksum of a record's prefix; the first one's end says nothing of a failure, and it leaves no room.
enum Version : std::uint8_t { kFirstVersion = '1', kSecondVersion = '2', kVersion = '3' };

// Fixed in the format: in the order of the alternatives of Step for the kinds of steps.
enum RecordType : std::uint8_t {
  kHeaderRecord = 1,
  kStepRecord = 2,
  kMarkRecord = 3,
  kEndRecord = 4,
  kPartRecord = 5,
  kPartEndRecord = 6
};

ByteVector Framed(const RecordWriter& payload) {
  return FrameRecord(payload.Written());
}

// The zeros that a writer of a version leaves behind a record, at least.
std::size_t RoomBehind(std::uint8_t type, std::uint8_t version) noexcept {
  constexpr std::size_t kOldEnd = 8 + 6;
  constexpr std::size_t kOldMark = 8 + 9;
  if (version == kFirstVersion) return 0;
  const bool isOld = version == kSecondVersion;
  switch (type) {
    case kHeaderRecord:
      return isOld ? 0 : kRoomBehindBeginning;
    case kStepRecord:
      return isOld ? kOldMark + kOldEnd : kRoomBehindStep;
    case kMarkRecord:
      return isOld ? kOldEnd : kRoomBehindMark;
    case kPartRecord:
      return kRoomBehindMark;
    case kPartEndRecord:
      return kRoomBehindPartEnd;
    default:
      return 0;
  }
}

// Reads the records of one file, one after the other. The functions for single records read the rest of a
// payload behind its type; false when that is not what it should be.
class JournalReader {
 public:
  explicit JournalReader(Bytes file) : file_(file), in_(file) {}

  std::optional<JournalContents> Read() {
    if (!std::ranges::equal(in_.Take(kSignature.size()), kSignature)) return std::nullopt;
    version_ = in_.U8();
    if (version_ < kFirstVersion || version_ > kVersion) return std::nullopt;
    const std::optional<Bytes> header = NextPayload();
    if (!header) return std::nullopt;
    ByteCursor fields(*header);
    if (fields.U8() != kHeaderRecord || !ReadHeader(fields)) return std::nullopt;
    NoteRecord(kHeaderRecord);
    while (contents_.end == JournalEnd::kNone) {
      const std::optional<Bytes> payload = NextPayload();
      if (!payload || !ReadRecord(*payload)) break;
      NoteRecord(std::to_integer<std::uint8_t>(payload->front()));
    }
    contents_.version = static_cast<std::uint8_t>(version_ - '0');
    if (version_ != kVersion) MakeOnePart();
    const Bytes rest = file_.subspan(static_cast<std::size_t>(contents_.size));
    contents_.whole = IsBlank(rest) && rest.size() >= RoomBehind(last_, version_);
    return std::move(contents_);
  }

 private:
  std::optional<Bytes> NextPayload() {
    if (version_ == kVersion) return NextRecord(in_);
    const std::uint32_t size = in_.U32();
    const std::uint32_t checksum = in_.U32();
    const Bytes payload = in_.Take(size);
    if (!in_.Ok() || payload.empty() || Checksum(payload) != checksum) return std::nullopt;
    return payload;
  }

  void NoteRecord(std::uint8_t type) noexcept {
    last_ = type;
    contents_.size = file_.size() - in_.Remaining();
  }

  bool ReadRecord(Bytes payload) {
    ByteCursor in(payload);
    switch (in.U8()) {
      case kStepRecord:
        return ReadStep(in);
      case kMarkRecord:
        return ReadMark(in);
      case kEndRecord:
        return ReadEnd(in);
      case kPartRecord:
        return version_ == kVersion && ReadPart(in);
      case kPartEndRecord:
        return version_ == kVersion && ReadPartEnd(in);
      default:
        return false;
    }
  }

  bool ReadHeader(ByteCursor& in) {
    CheckpointHeader& header = contents_.header;
    header.id = in.U32();
    header.undoes = in.U32();
    header.time = in.U64();
    header.process = in.U32();
    header.processStarted = in.U64();
    header.user = ReadText(in);
    header.title = ReadText(in);
    if (version_ == kVersion) header.continues = in.U32();
    while (version_ == kVersion && in.Ok() && !in.AtEnd()) header.chosen.push_back(in.U32());
    return in.AtEnd();
  }

  // A part that never ended is left as it is by the next one.
  bool ReadPart(ByteCursor& in) {
    JournalPart part;
    part.header.number = in.U32();
    part.header.undoesAction = in.U32();
    part.header.undoesPart = in.U32();
    part.header.time = in.U64();
    part.header.title = ReadText(in);
    part.firstStep = contents_.steps.size();
    const std::vector<JournalPart>& parts = contents_.parts;
    const bool isNext = parts.empty() ? part.header.number != 0 &&
                                            (part.header.number == 1) == (contents_.header.continues == 0)
                                      : part.header.number == parts.back().header.number + 1;
    if (!in.AtEnd() || !isNext) return false;
    contents_.parts.push_back(std::move(part));
    inPart_ = true;
    return true;
  }

  bool ReadStep(ByteCursor& in) {
    if (version_ == kVersion && !inPart_) return false;
    if (in.U32() != contents_.steps.size()) return false;
    std::optional<Step> step = smh::ReadStep(in);
    if (!step) return false;
    StepSource source;
    if (version_ == kVersion) source = ReadSource(in);
    if (!in.AtEnd()) return false;
    contents_.steps.push_back({*std::move(step), StepMark::kNone, 0, std::move(source)});
    if (inPart_) ++contents_.parts.back().stepCount;
    return true;
  }

  bool ReadMark(ByteCursor& in) {
    const std::uint32_t number = in.U32();
    const std::uint32_t status = in.U32();
    if (!in.AtEnd() || number >= contents_.steps.size()) return false;
    RecordedStep& step = contents_.steps[number];
    if (step.mark != StepMark::kNone && status != kTakenBack) return false;
    step.mark = status == 0 ? StepMark::kDone : StepMark::kFailed;
    step.status = status;
    return true;
  }

  bool ReadPartEnd(ByteCursor& in) {
    const std::uint32_t count = in.U32();
    const bool failed = ReadFlag(in);
    if (!in.AtEnd() || !inPart_ || count != contents_.steps.size()) return false;
    contents_.parts.back().end = failed ? PartEnd::kFailed : PartEnd::kDone;
    inPart_ = false;
    return true;
  }

  bool ReadEnd(ByteCursor& in) {
    const std::uint32_t count = in.U32();
    const std::uint8_t end = version_ == kFirstVersion ? std::uint8_t{0} : in.U8();
    const auto last = version_ == kVersion ? JournalEnd::kClosed : JournalEnd::kFailed;
    const std::uint32_t continuedBy = version_ == kVersion ? in.U32() : 0;
    if (!in.AtEnd() || count != contents_.steps.size() || end > static_cast<std::uint8_t>(last)) return false;
    contents_.end = static_cast<JournalEnd>(end);
    contents_.finished = contents_.end != JournalEnd::kClosed;
    contents_.failed = contents_.end == JournalEnd::kFailed;
    contents_.continuedBy = continuedBy;
    return true;
  }

  void MakeOnePart() {
    const CheckpointHeader& header = contents_.header;
    JournalPart part;
    part.header.undoesAction = header.undoes;
    part.header.undoesPart = header.undoes != 0 ? 1 : 0;
    part.header.time = header.time;
    part.header.title = header.title;
    part.stepCount = contents_.steps.size();
    if (contents_.finished) part.end = contents_.failed ? PartEnd::kFailed : PartEnd::kDone;
    contents_.parts = {std::move(part)};
  }

  const Bytes file_;
  ByteCursor in_;
  std::uint8_t version_ = kVersion;
  std::uint8_t last_ = 0;
  bool inPart_ = false;
  JournalContents contents_;
};

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
  payload.U32(header.continues);
  for (const std::uint32_t part : header.chosen) payload.U32(part);
  RecordWriter file;
  file.Put(kSignature);
  file.U8(kVersion);
  file.Put(Framed(payload));
  return file.Written();
}

ByteVector EncodePart(const PartHeader& part) {
  RecordWriter payload;
  payload.U8(kPartRecord);
  payload.U32(part.number);
  payload.U32(part.undoesAction);
  payload.U32(part.undoesPart);
  payload.U64(part.time);
  payload.Text(part.title);
  return Framed(payload);
}

ByteVector EncodeStep(std::uint32_t number, const Step& step, const StepSource& source) {
  RecordWriter payload;
  payload.U8(kStepRecord);
  payload.U32(number);
  WriteStep(payload, step);
  WriteSource(payload, source);
  return Framed(payload);
}

ByteVector EncodeMark(std::uint32_t number, std::uint32_t status) {
  RecordWriter payload;
  payload.U8(kMarkRecord);
  payload.U32(number);
  payload.U32(status);
  return Framed(payload);
}

ByteVector EncodePartEnd(std::uint32_t stepCount, bool failed) {
  RecordWriter payload;
  payload.U8(kPartEndRecord);
  payload.U32(stepCount);
  payload.U8(failed ? 1 : 0);
  return Framed(payload);
}

ByteVector EncodeEnd(std::uint32_t stepCount, JournalEnd end, std::uint32_t continuedBy) {
  RecordWriter payload;
  payload.U8(kEndRecord);
  payload.U32(stepCount);
  payload.U8(static_cast<std::uint8_t>(end));
  payload.U32(continuedBy);
  return Framed(payload);
}

std::optional<JournalContents> DecodeJournal(Bytes file) {
  return JournalReader(file).Read();
}

bool IsBlank(Bytes file) noexcept {
  return std::ranges::all_of(file, [](std::byte byte) { return byte == std::byte{0}; });
}

ByteVector FrameRecord(Bytes payload) {
  RecordWriter prefix;
  prefix.U32(static_cast<std::uint32_t>(payload.size()));
  prefix.U32(Checksum(payload));
  RecordWriter record;
  record.Put(prefix.Written());
  record.U32(Checksum(prefix.Written()));
  record.Put(payload);
  return record.Written();
}

std::optional<Bytes> NextRecord(ByteCursor& file) noexcept {
  const Bytes prefix = file.Take(kPrefixSize);
  ByteCursor fields(prefix);
  const std::uint32_t size = fields.U32();
  const std::uint32_t checksum = fields.U32();
  const std::uint32_t ownChecksum = fields.U32();
  if (!fields.Ok() || Checksum(prefix.first(8)) != ownChecksum) return std::nullopt;
  const Bytes payload = file.Take(size);
  if (!file.Ok() || payload.empty() || Checksum(payload) != checksum) return std::nullopt;
  return payload;
}

}  // namespace smh
