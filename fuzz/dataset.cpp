// Any bytes as the record of a dataset.
#include "fuzz/records.h"
#include "tests/trust/golden_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string before = golden::record20160311().str();
    return fuzz::checkRecord<CSnsCohDatazq, reference::Dataset>(data, size, before);
}
