// CWavChnlChnlData09File: the archive record of a channel-pair vector.
#pragma once

#include "cxcdata/CWavChnlChnlData.h"

class CWavChnlChnlData09File;

/// @cond internal
namespace cxc {

/// The whole record without the flush that ends a stored one: a grid of vectors is flushed once,
/// by the dataset that holds it. Internal.
int passVectorRecord(CArchive& ar, CWavChnlChnlData09File& vector);

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
    friend int cxc::passVectorRecord(CArchive& ar, CWavChnlChnlData09File& vector);

    /// Everything behind the version word. The word of this layout is 20120222, deliberately
    /// another date than that of the name.
    int serialize20120228(CArchive& ar);
    void storeBlocks(CArchive& ar);
    int loadValues(CArchive& ar);
    int loadBackup(CArchive& ar);
};
