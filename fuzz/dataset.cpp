// Any bytes as the record of a dataset, read whole and pair by pair.
#include "fuzz/records.h"
#include "tests/trust/PairsCheck.h"
#include "tests/trust/golden_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string before = golden::record20160311().str();
    fuzz::require(test::PairsCheck()(std::string(reinterpret_cast<const char*>(data), size)));
    return fuzz::checkRecord<CSnsCohDatazq, reference::Dataset>(data, size, before);
}
