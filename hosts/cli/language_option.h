// `--language`, which has to be known before anything is said: --help is in that language.
#pragma once

#include "hosts/common/language.h"

#include <optional>
#include <span>
#include <string>

namespace smh {

// What the last "--language NAME" or "--language=NAME" in front of "--" asks for; none without one. Raises a
// usage error for a name that is none.
std::optional<Language> WantedLanguage(std::span<const std::wstring> arguments);

}  // namespace smh
