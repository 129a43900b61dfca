// Data and files that the measurements share.
#pragma once

#include "cxc.h"

#include <memory>
#include <string>

namespace bench {

using Shared = std::shared_ptr<CSnsCohDatazq>;

/// A dataset of n x n pairs of nTim slices with values in (-1, 1), the same in every run.
std::unique_ptr<CSnsCohDatazq> makeDataset(__int64 n, __int64 nTim, unsigned seed);

/// Path of a file in a folder of this process, which goes when the process ends.
std::string fileIn(const char* name);

/// Removes a file that was written: what replaces one also waits for the system, which begins to
/// put replaced files on the disk when they are closed.
void forget(const std::string& path);

/// The dataset or group as a file, and what the text export leaves: the limits move as many bytes.
inline std::string recordFile() {
    return fileIn("record.cxc");
}
inline std::string textFile() {
    return fileIn("text.txt");
}

}  // namespace bench
