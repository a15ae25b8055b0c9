// Sets the language of the process for a test, and puts back what it was.
#pragma once

#include "hosts/common/language.h"

namespace smh::test {

class LanguageScope {
 public:
  explicit LanguageScope(Language language) noexcept : before_(CurrentLanguage()) { SetLanguage(language); }
  ~LanguageScope() { SetLanguage(before_); }
  LanguageScope(const LanguageScope&) = delete;
  LanguageScope& operator=(const LanguageScope&) = delete;

 private:
  Language before_;
};

}  // namespace smh::test
