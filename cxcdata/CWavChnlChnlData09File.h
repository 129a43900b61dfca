// CWavChnlChnlData09File: the archive record of a channel-pair vector.
#pragma once

#include "cxcdata/CWavChnlChnlData.h"

#include <memory>

class CWavChnlChnlData09File;

/// @cond internal
namespace cxc {

/// The array of a vector that is done with, for the next one of its size.
struct SpareArray {
    std::unique_ptr<double[]> values;
    __int64 size = 0;  // elements that are really there
};

/// The whole record without the flush that ends a stored one: a grid of vectors is flushed once,
/// by the dataset that holds it. A loaded vector takes `spare` where it fits. Internal.
int passVectorRecord(CArchive& ar, CWavChnlChnlData09File& vector, SpareArray* spare = nullptr);

}  // namespace cxc
/// @endcond

/// Adds to the base: the archive record of one vector, in both directions.
class CXC_API CWavChnlChnlData09File : public CWavChnlChnlData {
public:
    /// Stores or loads the whole record, magic "MMATRIX1DX" first, in the archive's direction;
    /// a stored record is flushed. Returns 1 on success. Returns 0 after a message box:
    /// "Unknown MMatrix1D file!" and "MMatrix1D format error!" leave the vector untouched; "Not
    /// enough memory!" leaves it without values, or without backup; "Read Cxc data error!?"
    /// (values cut short) and "Read back up data error!?" (not one byte of the backup) leave what
    /// was read, the rest zero. Throws the archive's exceptions when a single item is cut short
    /// or a write fails.
    int serialize(CArchive& ar);

private:
    friend int cxc::passVectorRecord(CArchive& ar, CWavChnlChnlData09File& vector,
                                     cxc::SpareArray* spare);

    /// Everything behind the version word. The word of this layout is 20120222, deliberately
    /// another date than that of the name.
    int serialize20120228(CArchive& ar, cxc::SpareArray* spare = nullptr);
    void storeBlocks(CArchive& ar);
    int loadValues(CArchive& ar, cxc::SpareArray* spare);
    int loadBackup(CArchive& ar);
};
