// The links of the corpus: every rule and every refusal once. tests/data/lnk holds them as files, which the
// fuzzer starts from; `lnk_corpus FOLDER` writes them anew.
#pragma once

#include "link_builder.h"

namespace smh::test {

struct CorpusLink {
  // Without extension; begins with what becomes of the link: "accepted-" or one of the faults' names.
  std::string name;
  std::string bytes;
  // None when the link is accepted.
  std::optional<LinkFault> fault;
};

std::vector<CorpusLink> Corpus();

}  // namespace smh::test
