// The program at the start of a command line. No state: any thread.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace smh {

// Lower case, each with its dot.
inline constexpr std::wstring_view kExecutableExtensions[] = {
    L".com", L".exe", L".bat", L".cmd", L".pif", L".scr", L".cpl", L".msc", L".msi",
    L".vbs", L".vbe", L".js",  L".jse", L".wsf", L".wsh", L".hta", L".ps1",
};

// Tells whether a full path on a drive names a file, on disk or behind the redirection of 64-bit Windows.
// What it raises passes.
using FileTest = std::function<bool(const std::wstring& path)>;

// The program as it stands in the command (references unexpanded), without quotes and blanks at its ends:
// - after a leading quote, the text up to the next quote or the end;
// - else the first prefix that ends at a blank or the end, is at most 260 units long and whose expanded text
//   has a folder part on a drive and names a file, as it is or, when it has no extension, with ".exe"; else
//   the first such with another of the implied extensions. Network paths are never tested: a dead one would
//   hold the caller;
// - else the first element, when behind it an extension as below follows and it names, without a folder, a
//   program of the system's;
// - else the text up to the first executable extension that a blank or the end follows;
// - else the text up to the first blank.
std::wstring ProgramPart(std::wstring_view command, const FileTest& fileExists);

}  // namespace smh
