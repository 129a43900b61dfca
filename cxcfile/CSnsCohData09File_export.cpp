#include "cxcdata/CSnsCohData09File.h"

#include "cxcdata/allocation.h"
#include "cxcdata/grid.h"
#include "cxcdata/prefetch.h"
#include "cxcfile/file_commands.h"
#include "cxcfile/fixed_decimal.h"
#include "cxcfile/text_export.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace {

// A file or a host may claim any counts. Beyond this much text without a single value the export
// refuses: it would only fill the disk.
constexpr __int64 mostEmptyLines = 10000000;

// Largest piece of a block that is held in memory and written at once.
constexpr __int64 mostCharacters = 1 << 23;

// Writes texts, each ended by a zero character and followed by a flush of the file.
class TextFile {
public:
    explicit TextFile(CFile& file) : m_file(file) {}

    /// Makes room for about n characters before the first of them is appended.
    bool prepare(__int64 n) { return grow(std::min(n, mostCharacters)); }

    /// Room for n more characters at the end of the text; null when there is no memory.
    TCHAR* room(__int64 n) {
        if (m_capacity - m_length < n && !makeRoom(n)) return nullptr;
        return m_text.get() + m_length;
    }

    /// The characters from room() up to `end` are part of the text now.
    void append(const TCHAR* end) { m_length = end - m_text.get(); }

    /// Ends the text; the next one begins.
    bool end() {
        TCHAR* const to = room(1);
        if (to == nullptr) return false;
        // Deliberate: every text in the file ends with its zero character.
        *to = 0;
        append(to + 1);
        write(m_text.get(), m_length);
        m_length = 0;
        m_file.Flush();
        return true;
    }

    void writeText(const CString& text) {
        write(text.GetString(), static_cast<__int64>(text.GetLength()) + 1);
        m_file.Flush();
    }

private:
    void write(const TCHAR* text, __int64 n) {
        while (n > 0) {
            const __int64 piece = std::min(n, mostCharacters);
            m_file.Write(text, static_cast<UINT>(piece * static_cast<__int64>(sizeof(TCHAR))));
            text += piece;
            n -= piece;
        }
    }

    bool makeRoom(__int64 n) {
        if (m_length + n > mostCharacters && m_length > 0) {
            write(m_text.get(), m_length);
            m_length = 0;
        }
        return m_capacity - m_length >= n || grow(std::max(m_length + n, m_capacity * 3 / 2));
    }

    bool grow(__int64 capacity) {
        std::unique_ptr<TCHAR[]> larger(cxc::newArray<TCHAR>(capacity));
        if (larger == nullptr) return false;
        if (m_length > 0)
            std::memcpy(larger.get(), m_text.get(),
                        static_cast<std::size_t>(m_length) * sizeof(TCHAR));
        m_text = std::move(larger);
        m_capacity = capacity;
        return true;
    }

    CFile& m_file;
    std::unique_ptr<TCHAR[]> m_text;
    __int64 m_length = 0;    // characters of the text that are not written yet
    __int64 m_capacity = 0;  // characters that m_text holds
};

// Whether the counters describe something that can be written out.
bool canExport(const CSnsCohData& data) {
    if (data.m_mCC == nullptr && data.m_snsRowTotal > 0) return false;
    if (data.m_cohTimTotal > mostEmptyLines && !cxc::grid::reaches(data.m_mCC, data.m_cohTimTotal))
        return false;
    const __int64 emptyRows =
        std::max<__int64>(data.m_snsRowTotal, 0) - cxc::grid::rows(data.m_mCC);
    return emptyRows < 1 || data.m_cohTimTotal < 1 ||
           emptyRows <= mostEmptyLines / data.m_cohTimTotal;
}

constexpr __int64 vectorsAhead = 8;

// One line of a block: the label, then the values up to the first vector that has none at t.
bool appendRow(TextFile& text, const CSnsCohData& data, __int64 r, __int64 t) {
    TCHAR* to = text.room(22);
    if (to == nullptr) return false;
    to = cxc::writeUnsigned(to, static_cast<unsigned long long>(r) + 1);
    *to++ = static_cast<TCHAR>(' ');
    text.append(to);

    const CWavChnlChnlDatazq* const row = cxc::grid::row(data.m_mCC, r);
    const __int64 cols =
        row == nullptr ? 0 : std::min(data.m_snsColTotal, cxc::grid::cols(data.m_mCC));
    for (__int64 c = 0; c < cols; ++c) {
        const cxc::grid::Values values = cxc::grid::values(row + c);
        if (t >= values.size) break;
        // The machine does not follow one value out of each vector by itself.
        if (c + vectorsAhead < cols)
            cxc::prefetch(cxc::grid::values(row + c + vectorsAhead).data, t);
        to = text.room(cxc::mostFixedDecimal + 3);
        if (to == nullptr) return false;
        to = cxc::writeFixedDecimal(to, values.data[t]);
        *to++ = static_cast<TCHAR>(' ');
        *to++ = static_cast<TCHAR>(' ');
        text.append(to);
    }

    to = text.room(1);
    if (to == nullptr) return false;
    *to = static_cast<TCHAR>('\n');
    text.append(to + 1);
    return true;
}

// Room for the block of one slice when its values lie between 0 and 10, as coherence does.
__int64 usualBlock(CWavChnlChnlDatazq* const* table) {
    const double values = 10.0 * static_cast<double>(cxc::grid::cols(table));
    const double most = static_cast<double>(cxc::grid::rows(table)) * (values + 22.0) + 512.0;
    return most < static_cast<double>(mostCharacters) ? static_cast<__int64>(most) : mostCharacters;
}

bool writeBlocks(CFile& file, const CSnsCohData& data) {
    TextFile text(file);
    if (!text.prepare(usualBlock(data.m_mCC))) return false;
    CString line;
    // Deliberate: the parenthesis is never closed.
    line.Format(_T("%s (%I64d x %I64d\n"), data.m_cxcName.GetString(), data.m_snsRowTotal,
                data.m_snsColTotal);
    text.writeText(line);
    for (__int64 t = 0; t < data.m_cohTimTotal; ++t) {
        line.Format(_T("Time Slice: %I64d\n"), t);
        text.writeText(line);
        for (__int64 r = 0; r < data.m_snsRowTotal; ++r) {
            if (!appendRow(text, data, r, t)) return false;
        }
        if (!text.end()) return false;
    }
    return true;
}

// The path that the user chooses for the text of a dataset named `name`; empty after a cancel.
CString askTextPath(const CString& name) {
    // The dialog rewrites the separators, so it gets a copy that may be written to.
    TCHAR filter[] = _T("MEG Channel data(*.txt)|*.txt|All Files(*.*)|*.*||");
    // Deliberate: nothing stands between the name and the words.
    const CString proposed = name + _T("to text.txt");
    CFileDialog dialog(FALSE, nullptr, proposed, OFN_OVERWRITEPROMPT, filter, nullptr, 0, TRUE);
    dialog.m_ofn.nFilterIndex = 1;
    if (dialog.DoModal() != IDOK) return CString();
    CString path = dialog.GetPathName();
    // Deliberate: the extension counts wherever it stands in the path.
    if (path.Find(_T(".txt")) < 0) path += _T(".txt");
    return path;
}

}  // namespace

bool cxc::writeText(CFile& file, const CSnsCohData& data) {
    return canExport(data) && writeBlocks(file, data);
}

int cxc::exportDataset(CSnsCohData09File& data, const StillThere& stillThere) {
    // Everything that goes wrong is a result of 0 without a message; a partly written file stays.
    try {
        if (data.m_cxcName.IsEmpty()) data.m_cxcName = _T("CxC Data");
        if (!canExport(data)) return 0;
        const CString path = askTextPath(data.m_cxcName);
        if (path.IsEmpty() || !stillThere()) return 0;
        CFile file;
        if (!file.Open(path, CFile::modeCreate | CFile::modeWrite)) return 0;
        if (!writeBlocks(file, data)) return 0;
        file.Flush();
        file.Close();
        return 1;
    } catch (CException* e) {
        e->Delete();
    } catch (...) {
    }
    return 0;
}

int CSnsCohData09File::exportCxc2txtFile() {
    return cxc::exportDataset(*this, [] { return true; });
}
