// A sequence of calls of the public interface, chosen by bytes, on a package and a group and on
// their plain counterparts at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace test {

class QuietApp;

/// Plays the calls that `bytes` stand for. Returns "", or what differed and after which calls.
std::string playSequence(QuietApp& app, const std::uint8_t* bytes, std::size_t count);

}  // namespace test
