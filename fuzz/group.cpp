// Any bytes as the record of a group.
#include "fuzz/records.h"
#include "tests/trust/golden_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string before = golden::groupFiles()[0].bytes;
    return fuzz::checkRecord<test::CleanGroup, reference::Group>(data, size, before);
}
