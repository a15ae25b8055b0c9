// lnk_corpus FOLDER: writes the corpus into FOLDER, which must exist.

#include "native/corpus.h"

#include <filesystem>
#include <fstream>
#include <iostream>

int main(int count, char** values) {
  if (count != 2) {
    std::cerr << "usage: lnk_corpus FOLDER\n";
    return 2;
  }
  const std::filesystem::path folder = values[1];
  for (const smh::test::CorpusLink& link : smh::test::Corpus()) {
    std::ofstream file(folder / (link.name + ".lnk"), std::ios::binary);
    file.write(link.bytes.data(), static_cast<std::streamsize>(link.bytes.size()));
    if (!file.flush()) {
      std::cerr << "cannot write " << link.name << '\n';
      return 1;
    }
  }
  return 0;
}
