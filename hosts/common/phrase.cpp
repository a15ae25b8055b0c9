#include "hosts/common/phrase.h"

#include "hosts/common/text_encoding.h"

namespace smh {

void Phrase::Append(std::wstring_view separator, const Phrase& next) {
  english_.append(separator).append(next.english_);
  shown_.append(separator).append(next.shown_);
}

Phrase PrintablePhrase(const Phrase& phrase) {
  return {Printable(phrase.English()), Printable(phrase.Shown())};
}

}  // namespace smh
