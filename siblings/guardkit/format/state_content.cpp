#include "siblings/guardkit/format/state_content.h"

#include "siblings/guardkit/format/record_codec.h"

#include <algorithm>
#include <vector>

namespace smh {

bool SameContent(const ValueState& a, const ValueState& b) {
  return a == b;
}

bool SameContent(const KeyState& a, const KeyState& b) {
  std::vector<NamedValue> valuesOfA = a.values;
  std::vector<NamedValue> valuesOfB = b.values;
  std::ranges::sort(valuesOfA);
  std::ranges::sort(valuesOfB);
  return a.exists == b.exists && valuesOfA == valuesOfB;
}

bool SameContent(const FileState& a, const FileState& b) {
  return a.exists == b.exists && a.streams == b.streams;
}

std::uint32_t ContentSum(const ValueState& state) {
  RecordWriter fields;
  if (state.exists) {
    fields.U32(state.type);
    fields.Put(state.data);
  }
  return Checksum(fields.Written());
}

std::uint32_t ContentSum(const KeyState& state) {
  std::vector<NamedValue> values = state.values;
  std::ranges::sort(values);
  RecordWriter fields;
  fields.U8(state.exists ? 1 : 0);
  for (const NamedValue& value : values) {
    fields.Text(value.name);
    fields.U32(value.type);
    fields.Block(value.data);
  }
  return Checksum(fields.Written());
}

std::uint32_t ContentSum(const FileState& state) {
  RecordWriter fields;
  fields.U8(state.exists ? 1 : 0);
  for (const StreamState& stream : state.streams) {
    fields.Text(stream.name);
    fields.U64(stream.size);
    fields.Put(stream.hash);
  }
  return Checksum(fields.Written());
}

}  // namespace smh
