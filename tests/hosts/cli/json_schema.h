// Whether a JSON text is as docs/startupctl.schema.json says: the words of JSON Schema that stand there.
#pragma once

#include <nlohmann/json.hpp>

#include <regex>
#include <stdexcept>
#include <string>

namespace smh::test {

class JsonSchema {
 public:
  using Json = nlohmann::ordered_json;

  explicit JsonSchema(Json root) : root_(std::move(root)) {}

  // What is wrong with `value` by the definition of that name; empty when nothing is.
  std::string FaultIn(const Json& value, const std::string& definition) const {
    return Fault(value, root_.at("$defs").at(definition), definition);
  }

 private:
  static bool IsOfType(const Json& value, const std::string& type) {
    return type == "null"      ? value.is_null()
           : type == "boolean" ? value.is_boolean()
           : type == "integer" ? value.is_number_integer()
           : type == "string"  ? value.is_string()
           : type == "array"   ? value.is_array()
           : type == "object"  ? value.is_object()
                               : throw std::runtime_error("unknown type " + type);
  }

  std::string Fault(const Json& value, const Json& schema, const std::string& path) const {
    for (const auto& [word, rule] : schema.items()) {
      std::string fault;
      if (word == "$ref") {
        fault = Fault(value, root_.at(Json::json_pointer(rule.get<std::string>().substr(1))), path);
      } else if (word == "type") {
        const Json types = rule.is_array() ? rule : Json::array({rule});
        const bool fits = std::ranges::any_of(types, [&](const Json& type) { return IsOfType(value, type); });
        if (!fits) fault = path + " is no " + rule.dump();
      } else if (word == "enum") {
        if (std::ranges::find(rule, value) == rule.end()) fault = path + " is " + value.dump();
      } else if (word == "minimum") {
        if (value < rule) fault = path + " is " + value.dump();
      } else if (word == "pattern") {
        const bool isText = value.is_string();
        const std::regex pattern(rule.get<std::string>());
        if (isText && !std::regex_search(value.get<std::string>(), pattern))
          fault = path + " is " + value.dump();
      } else if (word == "items") {
        for (const Json& each : value) {
          if (fault.empty()) fault = Fault(each, rule, path + "[]");
        }
      } else if (word == "required") {
        for (const Json& key : rule) {
          if (!value.contains(key.get<std::string>())) fault = path + " lacks " + key.dump();
        }
      } else if (word == "properties") {
        for (const auto& [key, member] : value.items()) {
          if (fault.empty() && rule.contains(key)) fault = Fault(member, rule[key], path + '.' + key);
          if (!rule.contains(key)) fault = path + " has " + key;
        }
      } else if (word != "additionalProperties") {
        throw std::runtime_error("unknown word " + word);
      }
      if (!fault.empty()) return fault;
    }
    return {};
  }

  Json root_;
};

}  // namespace smh::test
