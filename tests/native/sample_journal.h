// A journal with a step of every kind, and what tests need to take journals apart.
#pragma once

#include "guardkit/journal_format.h"

#include <string>

namespace smh::test {

ByteVector BytesOfText(const std::string& text);
ByteVector Joined(const std::vector<ByteVector>& parts);

// Five steps: a value changed (done), a key deleted (done), a file replaced (failed with status 5), a file
// moved (without a mark), a key made (done).
JournalContents SampleJournal();
// The file that a writer of these contents leaves: every mark right behind its step.
ByteVector Encode(const JournalContents& contents);
// A payload as a record of its own, checksum included.
ByteVector Framed(const ByteVector& payload);

}  // namespace smh::test
