// The archive record and the files of a dataset. Declared here, where the chain is; the bodies
// stand in cxcfile/.
#pragma once

#include "cxcdata/CSnsCohData08Show.h"
#include "cxcdata/cxc_api.h"
#include "framework.h"

/// Adds to the display layer: the dataset record in both directions, the ".cxc" file, the text
/// export.
class CXC_API CSnsCohData09File : public CSnsCohData08Show {
public:
    /// Stores the dataset record in its newest layout, or loads one of any known version; the
    /// archive decides the direction. Loading overwrites the grid and the stored fields; fields
    /// that an older layout does not hold, and the colours, keep their values.
    /// Returns 1, or 0 after a message (no dataset record, unknown version) or where the grid
    /// could not be built.
    /// Throws the framework's archive and file exceptions, as where the data end early.
    int serialize(CArchive& ar);

    /// Asks for a file name and writes the dataset to it. An empty name of the dataset becomes
    /// "CxC Data" and stays so, also when the user cancels.
    /// Returns 1 when the file was written, 0 when the user cancelled or it cannot be created.
    /// Throws as serialize.
    int saveCxcDataStd();

    /// Asks for a file and reads the dataset from it. Returns 1 when a file was opened and read
    /// through, also where its content was refused with a message; 0 when the user cancelled or
    /// the file cannot be opened. Throws as serialize.
    int openCxcDataStd();

    /// Asks for a file name and writes the values as text (UTF-16LE, one block per time slice,
    /// one line per row). An empty name of the dataset becomes "CxC Data".
    /// Returns 1 when the whole text was written, 0 otherwise; throws nothing.
    int exportCxc2txtFile();

protected:
    /// The grid block of the record: sizes, selection, current pair and the vectors.
    int _01serializeCxcData(CArchive& ar);

private:
    int serialize20160311(CArchive& ar);
    int serialize20130511(CArchive& ar);
    int serialize20130402(CArchive& ar);
    int serialize20120714(CArchive& ar);
    int serialize20080720(CArchive& ar);
    int serialize20080601(CArchive& ar);
};
