#include "hosts/cli/commands/dsc_commands.h"

#include "hosts/cli/console.h"
#include "hosts/cli/dsc_instance.h"
#include "hosts/cli/flat_json.h"
#include "hosts/cli/standard_input.h"
#include "hosts/common/host_error.h"
#include "hosts/common/library.h"
#include "hosts/common/reading.h"
#include "hosts/common/text_encoding.h"

namespace smh {

namespace {

constexpr std::size_t kMostInputBytes = 1u << 20;

// Parses, with what does not fit as wrong usage.
template <typename Parse>
auto Parsed(Parse&& parse, std::string_view json) {
  try {
    return parse(json);
  } catch (const JsonFault& fault) {
    throw UsageError(L"This is no instance of a start-up entry: " + fault.Reason());
  }
}

DscInstance GivenInstance(const Arguments& arguments) {
  return Parsed(ParseDscInstance,
                arguments.input ? ToUtf8(*arguments.input) : ReadStandardInput(kMostInputBytes));
}

DscState StateOf(const Library& library, const DscInstance& wanted) {
  return DscState(wanted.location, wanted.name, wanted.command, ReadAllItems(library));
}

}  // namespace

void RunDscGet(const Arguments& arguments) {
  const DscInstance wanted = GivenInstance(arguments);
  const Library library;
  WriteOutput(StateOf(library, wanted).Json(std::nullopt));
}

void RunDscTest(const Arguments& arguments) {
  const DscInstance wanted = GivenInstance(arguments);
  const Library library;
  const DscState state = StateOf(library, wanted);
  WriteOutput(state.Json(state.Fits(wanted)));
}

void RunDscExport(const Arguments& arguments) {
  const DscFilter filter = Parsed(ParseDscFilter, ToUtf8(arguments.input.value_or(std::wstring())));
  const Library library;
  std::vector<std::wstring> leftOut;
  WriteOutput(ExportLines(ReadAllItems(library), filter, leftOut));
  for (const std::wstring& name : leftOut) {
    WriteMessage(L"\"" + name + L"\" is left out: JSON cannot hold its name or command.");
  }
}

void RunDscSchema(const Arguments&) {
  WriteOutput(DscSchema());
}

}  // namespace smh
