// Standard input as programs give it. For the one thread of the program.
#pragma once

#include <cstddef>
#include <string>

namespace smh {

// All bytes until the end of standard input. Raises a usage error when there is none or it is a console,
// where nobody knows what to type, and HostError when more than `cap` bytes come, or from a pipe none for a
// minute.
std::string ReadStandardInput(std::size_t cap);

}  // namespace smh
