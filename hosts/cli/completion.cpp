#include "hosts/cli/completion.h"

#include "hosts/common/location_names.h"
#include "hosts/common/text_encoding.h"

#include <string_view>

namespace smh {

namespace {

std::wstring Literal(std::string_view text) {
  std::wstring literal = L"'";
  for (const wchar_t letter : FromUtf8(text)) {
    if (letter == L'\'') literal += letter;
    literal += letter;
  }
  return literal += L'\'';
}

// 'name' = 'help'
std::wstring Row(std::string_view name, std::string_view help) {
  return L"      " + Literal(name) + L" = " + Literal(help) + L"\n";
}

// What may follow a command's words: the commands below it and its options.
std::wstring Table(const CommandSyntax& command, std::span<const CommandSyntax> all) {
  std::wstring table = L"    " + Literal(command.name) + L" = [ordered]@{\n";
  const std::string above = command.name.empty() ? std::string() : command.name + ' ';
  for (const CommandSyntax& each : all) {
    if (each.name.empty() || !each.name.starts_with(above)) continue;
    const std::string_view rest = std::string_view(each.name).substr(above.size());
    if (rest.find(' ') == std::string_view::npos) table += Row(rest, each.help);
  }
  for (const OptionSyntax& option : command.options) table += Row(option.name, option.help);
  return table + L"    }\n";
}

std::wstring LocationList() {
  std::wstring list;
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    list += list.empty() ? L"'" : L", '";
    list.append(LocationName(location)).append(L"'");
  }
  return list;
}

// The words of the command that are whole decide what may come.
constexpr wchar_t kSearch[] =
    LR"(  $words = @($ast.CommandElements | Select-Object -Skip 1 |
    Where-Object { $_.Extent.EndOffset -lt $cursor } | ForEach-Object { $_.ToString() })
  $offers = [ordered]@{}
  if ($words.Count -gt 0 -and $words[-1] -in '--location', '--to') {
    $locations | ForEach-Object { $offers[$_] = $_ }
  } else {
    $command = ''
    foreach ($word in $words) {
      $longer = "$command $word".Trim()
      if ($syntax.Contains($longer)) { $command = $longer } else { break }
    }
    $offers = $syntax[$command]
  }
  $offers.GetEnumerator() | Where-Object { $_.Key -like "$wordToComplete*" } | ForEach-Object {
    [System.Management.Automation.CompletionResult]::new($_.Key, $_.Key, 'ParameterValue', $_.Value)
  }
}
)";

}  // namespace

std::wstring PowerShellCompletion(std::span<const CommandSyntax> commands) {
  std::wstring script =
      L"Register-ArgumentCompleter -Native -CommandName startupctl, startupctl.exe -ScriptBlock {\n"
      L"  param($wordToComplete, $ast, $cursor)\n"
      L"  $syntax = @{\n";
  for (const CommandSyntax& command : commands) script += Table(command, commands);
  script += L"  }\n  $locations = @(" + LocationList() + L")\n";
  return script + kSearch;
}

}  // namespace smh
