// The archive record and the files of a dataset. Declared here, where the chain is; the bodies
// stand in cxcfile/.
#pragma once

#include "cxcdata/CSnsCohData08Show.h"
#include "cxcdata/cxc_api.h"
#include "framework.h"

/// Adds to the display layer: the dataset record in both directions, the ".cxc" file, the text
/// export.
///
/// The operations that ask for a file let the program work on while the dialog is open; the dataset
/// has to outlive it.
class CXC_API CSnsCohData09File : public CSnsCohData08Show {
public:
    /// Stores the dataset record in its newest layout, or loads one of any known version; the
    /// archive decides the direction. Loading overwrites the grid and the stored fields; fields
    /// that an older layout does not hold, and the colours, keep their values. Of the oldest
    /// version, 20080601, nothing is read.
    /// Returns 1, or 0: after "The opened file is not CCoherenceData09File or corrupted!" (another
    /// magic than "MEGCOHPTS") or "Wrong CxC data format!" (unknown version) with nothing changed,
    /// where a vector record was refused with its own message, or silently where the grid could
    /// not be built. A stored record is flushed.
    /// Throws the framework's archive and file exceptions, as where the data end early.
    int serialize(CArchive& ar);

    /// Asks for a file name, proposing the name of the dataset, and writes the dataset to it. An
    /// empty name of the dataset becomes "CxC Data" and stays so, also when the user cancels. A
    /// path without ".cxc" anywhere in it, in these small letters, gets it appended; a file that is
    /// there is replaced.
    /// Returns 1 when the file was written, 0 when the user cancelled or it cannot be created.
    /// Throws as serialize.
    int saveCxcDataStd();

    /// Asks for a file and reads the dataset from it. Returns 1 when a file was opened and read
    /// through, also where its content was refused with a message; 0 when the user cancelled or
    /// the file cannot be opened. Throws as serialize.
    int openCxcDataStd();

    /// Asks for a file name and writes the values as text (UTF-16LE, one block per time slice,
    /// one line per row, values with six decimals). An empty name of the dataset becomes
    /// "CxC Data". A path without ".txt" anywhere in it gets it appended; a file that is there is
    /// replaced.
    /// Returns 1 when the whole text was written; 0 when the user cancelled, when the counters
    /// describe nothing that can be written, and where the file failed: what was written of it
    /// stays. Shows no message and throws nothing.
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
