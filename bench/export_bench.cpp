// The text export: formatting beside snprintf, the whole beside a plain write of as many bytes
// that is flushed as often as the format demands.
#include "bench/compare.h"
#include "bench/data.h"
#include "cxcfile/fixed_decimal.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace bench {
namespace {

constexpr __int64 n = 64;
constexpr __int64 nTim = 100;

std::string exportPath() {
    return (std::filesystem::temp_directory_path() / "cxc-bench-export.txt").string();
}

// Answers the export's file dialog.
class ExportApp : public CWinApp {
public:
    INT_PTR AnswerFileDialog(CFileDialog&, CString& path) override {
        path = CString(exportPath().c_str());
        return IDOK;
    }
};

double formatOurs(const CSnsCohDatazq& dataset, TCHAR* text) {
    return seconds([&] {
        for (__int64 t = 0; t < nTim; ++t) {
            TCHAR* to = text;
            for (__int64 r = 0; r < n; ++r) {
                for (__int64 c = 0; c < n; ++c)
                    to = cxc::writeFixedDecimal(to, dataset.m_mCC[r][c].m_data[t]);
            }
        }
    });
}

// Into the same encoding: narrow digits first, then widened.
double formatPrintf(const CSnsCohDatazq& dataset, TCHAR* text) {
    return seconds([&] {
        char digits[400];
        for (__int64 t = 0; t < nTim; ++t) {
            TCHAR* to = text;
            for (__int64 r = 0; r < n; ++r) {
                for (__int64 c = 0; c < n; ++c) {
                    const int length =
                        std::snprintf(digits, sizeof(digits), "%f", dataset.m_mCC[r][c].m_data[t]);
                    for (int i = 0; i < length; ++i)
                        *to++ = static_cast<TCHAR>(digits[i]);
                }
            }
        }
    });
}

double plainWrite(std::size_t bytes, bool flush) {
    static const std::vector<char> buffer(bytes, 'x');
    const std::string path = exportPath() + ".limit";
    const double taken = seconds([&] {
        const int file = ::open(path.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0644);
        const auto writes = static_cast<std::size_t>(2 * nTim + 1);
        for (std::size_t i = 0; i < writes; ++i) {
            const std::size_t from = bytes * i / writes;
            const std::size_t to = bytes * (i + 1) / writes;
            if (::write(file, buffer.data() + from, to - from) < 0) std::abort();
            if (flush) ::fsync(file);
        }
        ::close(file);
    });
    std::filesystem::remove(path);
    return taken;
}

}  // namespace

void registerExport() {
    static std::unique_ptr<CSnsCohDatazq> dataset;
    static std::vector<TCHAR> text(static_cast<std::size_t>(n * n * cxc::mostFixedDecimal));
    const auto need = [] {
        if (!dataset) dataset = makeDataset(n, nTim);
    };
    compare(
        "format as %f, 64 x 64 x 100", 0.2,
        [need] {
            need();
            return formatOurs(*dataset, text.data());
        },
        "snprintf into the same encoding",
        [need] {
            need();
            return formatPrintf(*dataset, text.data());
        });
    compare(
        "text export 64 x 64 x 100", 2.0,
        [need] {
            need();
            ExportApp app;
            return seconds([] { dataset->exportCxc2txtFile(); });
        },
        "plain write of as many bytes, as many flushes",
        [] { return plainWrite(std::filesystem::file_size(exportPath()), true); });
}

}  // namespace bench
