// Any bytes as the record of a vector.
#include "fuzz/records.h"
#include "tests/trust/golden_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string before = golden::vectorFiles()[1].bytes;
    return fuzz::checkRecord<CWavChnlChnlDatazq, reference::Vector>(data, size, before);
}
