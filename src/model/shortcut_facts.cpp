#include "model/shortcut_facts.h"

#include "infra/log/uStatisticsLog.h"
#include "shelllink/uShellLinkInfo.h"
#include "sysutil/command_line.h"

namespace smh {

std::optional<ShortcutFacts> ReadShortcutFacts(const std::wstring& file) {
  try {
    const TShellLinkInfo link(file);
    ShortcutFacts facts;
    const std::wstring target = link.Target();
    const std::wstring arguments = link.Arguments();
    if (!target.empty()) {
      facts.targetFile = ResolveCommandToFile(FileUtils::MakeCommandLine(target, arguments).c_str());
      facts.command = SharedText(FileUtils::MakeCommandLine(facts.targetFile, arguments));
    }
    facts.description = SharedText(link.Description());
    facts.workingFolder = SharedText(link.WorkingDirectory());
    facts.iconPath = SharedText(link.IconLocation());
    facts.iconIndex = link.IconIndex();
    facts.hotKey = link.HotKey();
    return facts;
  } catch (const Exception& exception) {
    LogError(exception);
    return std::nullopt;
  }
}

}  // namespace smh
