#include "siblings/guardkit/format/step_codec.h"

#include <utility>

namespace smh {

namespace {

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

}  // namespace

void WriteStep(RecordWriter& out, const Step& step) {
  out.U8(static_cast<std::uint8_t>(step.index()));
  std::visit(StepWriter{out}, step);
}

std::optional<Step> ReadStep(ByteCursor& in) {
  std::optional<Step> step = EmptyStep(in.U8());
  if (step) std::visit(StepReader{in}, *step);
  return step;
}

void WriteSource(RecordWriter& out, const StepSource& source) {
  if (source.kind == StepSource::Kind::kNone) return;
  out.U8(static_cast<std::uint8_t>(source.kind));
  out.Text(source.place);
  out.Text(source.name);
  out.U32(source.content);
}

StepSource ReadSource(ByteCursor& in) {
  StepSource source;
  if (in.AtEnd()) return source;
  const std::uint8_t kind = in.U8();
  if (kind < 1 || kind > static_cast<std::uint8_t>(StepSource::Kind::kFile)) in.Fail();
  source.kind = static_cast<StepSource::Kind>(kind);
  source.place = ReadText(in);
  source.name = ReadText(in);
  source.content = in.U32();
  return source;
}

}  // namespace smh
