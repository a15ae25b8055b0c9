#include "hosts/common/flat_json.h"

#include "hosts/common/text_encoding.h"
#include "hosts/common/texts/snapshot_texts.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace smh {

namespace {

constexpr std::size_t kMostMembers = 64;

JsonFault FaultIn(const Text& text, std::string_view key) {
  return JsonFault(Format(text, CutEnd(Printable(FromUtf8(key)), 40)));
}

// Called by the parser with one thing after the other; what it raises ends the parsing.
class FlatReader final : public nlohmann::json_sax<nlohmann::json> {
 public:
  FlatReader(std::string_view rows, const RowTaker& take) : rows_(rows), take_(take) {}

  FlatObject Head() && { return std::move(head_); }

  bool null() override { return Take(std::monostate()); }
  bool boolean(bool value) override { return Take(value); }
  bool number_integer(std::int64_t value) override { return Take(value); }
  bool number_unsigned(std::uint64_t value) override {
    if (value > INT64_MAX) throw JsonFault(texts::kNumberTooLarge.Get());
    return Take(static_cast<std::int64_t>(value));
  }
  bool number_float(double, const std::string&) override { throw JsonFault(texts::kNumberNotWhole.Get()); }
  bool string(std::string& value) override { return Take(FromUtf8(value)); }
  bool binary(nlohmann::json::binary_t&) override { throw JsonFault(texts::kHoldsBytes.Get()); }

  bool key(std::string& value) override {
    key_ = std::move(value);
    return true;
  }
  bool start_object(std::size_t) override {
    if (place_ == Place::kBegin) {
      place_ = Place::kHead;
    } else if (place_ == Place::kList) {
      if (++count_ > kMostRows) throw JsonFault(texts::kTooManyEntries.Get());
      row_ = {};
      place_ = Place::kRow;
    } else {
      throw FaultIn(texts::kIsObject, key_);
    }
    return true;
  }
  bool end_object() override {
    if (place_ == Place::kRow) {
      take_(head_, row_);
      place_ = Place::kList;
    } else {
      place_ = Place::kEnd;
    }
    return true;
  }
  bool start_array(std::size_t) override {
    if (place_ == Place::kBegin) throw JsonFault(texts::kIsListItself.Get());
    if (place_ != Place::kHead || rows_.empty() || key_ != rows_) {
      throw FaultIn(texts::kIsList, key_);
    }
    if (hasList_) throw FaultIn(texts::kComesTwice, key_);
    hasList_ = true;
    place_ = Place::kList;
    return true;
  }
  bool end_array() override {
    place_ = Place::kHead;
    return true;
  }
  bool parse_error(std::size_t position, const std::string&, const nlohmann::json::exception&) override {
    throw JsonFault(Format(texts::kNotJson, position));
  }

 private:
  enum class Place { kBegin, kHead, kList, kRow, kEnd };

  bool Take(JsonScalar value) {
    if (place_ == Place::kBegin) throw JsonFault(texts::kIsNoObject.Get());
    if (place_ == Place::kList) throw FaultIn(texts::kHoldsNoObject, rows_);
    const bool isHead = place_ == Place::kHead;
    if (isHead && !rows_.empty() && key_ == rows_) throw FaultIn(texts::kIsNoList, key_);
    (isHead ? head_ : row_).Add(std::move(key_), std::move(value));
    return true;
  }

  const std::string_view rows_;
  const RowTaker& take_;
  Place place_ = Place::kBegin;
  std::string key_;
  FlatObject head_;
  FlatObject row_;
  std::size_t count_ = 0;
  bool hasList_ = false;
};

}  // namespace

void FlatObject::Add(std::string key, JsonScalar value) {
  const bool isKnown = std::ranges::any_of(members_, [&](const auto& member) { return member.first == key; });
  if (isKnown) throw FaultIn(texts::kComesTwice, key);
  if (members_.size() >= kMostMembers) throw JsonFault(texts::kTooManyMembers.Get());
  members_.emplace_back(std::move(key), std::move(value));
}

template <typename Value>
std::optional<Value> FlatObject::Get(std::string_view key, const smh::Text& isNone) const {
  const auto found = std::ranges::find_if(members_, [&](const auto& member) { return member.first == key; });
  if (found == members_.end() || std::holds_alternative<std::monostate>(found->second)) return std::nullopt;
  if (const Value* const value = std::get_if<Value>(&found->second)) return *value;
  throw FaultIn(isNone, key);
}

std::optional<std::wstring> FlatObject::Text(std::string_view key) const {
  return Get<std::wstring>(key, texts::kIsNoText);
}

std::optional<std::int64_t> FlatObject::Number(std::string_view key) const {
  return Get<std::int64_t>(key, texts::kIsNoNumber);
}

std::optional<bool> FlatObject::Flag(std::string_view key) const {
  return Get<bool>(key, texts::kIsNoFlag);
}

void RaiseMissing(const wchar_t* key) {
  throw JsonFault(Format(texts::kIsMissing, key));
}

FlatObject ReadFlatJson(std::string_view bytes, std::string_view rows, const RowTaker& take) {
  FlatReader reader(rows, take);
  nlohmann::json::sax_parse(bytes, &reader);
  return std::move(reader).Head();
}

}  // namespace smh
