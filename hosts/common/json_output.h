// JSON after RFC 8259. What is unprintable is escaped, unpaired surrogates among it, so the output is always
// valid UTF-8. Pure functions, for any thread.
#pragma once

#include "hosts/common/field.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// A string with its quotes.
std::wstring JsonText(std::wstring_view text);
// null, true or false, a number, a string, or an array of strings.
std::wstring JsonValue(const FieldValue& value);

// A member of an object: the key, a colon, and the value, which is JSON already.
std::wstring JsonMember(std::wstring_view key, std::wstring_view json);

// {"key":value,...} on one line without a line end; `first`, members with a comma behind each, stands before.
template <typename Record>
std::wstring JsonObject(std::span<const Field<Record>> fields, const Record& record,
                        std::wstring_view first = {}) {
  std::wstring json = L"{";
  json += first;
  for (const Field<Record>& field : fields)
    json += JsonMember(field.key, JsonValue(field.read(record))) + L',';
  if (json.size() > 1) json.pop_back();
  return json += L'}';
}
// An array with an element per line, each of them JSON already, and a line break at the end.
std::wstring JsonArray(std::span<const std::wstring> elements);
template <typename Record>
std::wstring JsonArray(std::span<const Field<Record>> fields, std::span<const Record> records) {
  std::vector<std::wstring> elements;
  for (const Record& record : records) elements.push_back(JsonObject(fields, record));
  return JsonArray(elements);
}

}  // namespace smh
