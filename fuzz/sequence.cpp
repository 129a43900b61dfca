// Any bytes as a sequence of calls of the public interface, beside a plain counterpart.
#include "tests/trust/Sequence.h"
#include "fuzz/records.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static test::QuietApp app;
    return fuzz::require(test::playSequence(app, data, size));
}
