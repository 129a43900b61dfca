#include "dataset.h"

#include "calls.h"
#include "cxcdata/array_exchange.h"
#include "cxcfile/text_export.h"
#include "part.h"
#include "records.h"

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <utility>

namespace py = pybind11;

namespace binding {
namespace {

using Dataset = CSnsCohDatazq;
// Shared: packages and groups hold on to the datasets that were given to them.
using DatasetClass = py::class_<Dataset, std::shared_ptr<Dataset>>;
using Doubles = py::array_t<double, py::array::c_style | py::array::forcecast>;
using Integers = py::array_t<long long, py::array::c_style | py::array::forcecast>;

// Whether there are pairs: a file may announce them and have none. A grid of a dataset that Python
// owns is as large as the counters say.
bool hasGrid(const Dataset& d) {
    return d.m_mCC != nullptr && d.m_snsRowTotal > 0 && d.m_snsColTotal > 0;
}

// For calls that go into the grid without the library.
void needGrid(Dataset& d) {
    if (!hasGrid(d)) fail("the dataset has no values");
}

std::shared_ptr<Dataset> fromArray(const Doubles& values) {
    if (values.ndim() != 3) throw py::value_error("values must have the axes [slice, row, column]");
    const auto nTim = static_cast<__int64>(values.shape(0));
    const auto rows = static_cast<__int64>(values.shape(1));
    const auto cols = static_cast<__int64>(values.shape(2));
    if (nTim < 1 || rows < 1 || cols < 1) throw py::value_error("values must not be empty");
    auto dataset = std::make_shared<Dataset>();
    const double* const data = values.data();
    Dataset& d = *dataset;
    const Outcome outcome = run(
        [&d, data, rows, cols, nTim] { return cxc::datasetFromArray(d, data, nTim, rows, cols); });
    if (outcome.result == 0) {
        PyErr_NoMemory();
        throw py::error_already_set();
    }
    return dataset;
}

Doubles toArray(Dataset& d) {
    // Another thread may change the shape between the making of the array and the copy.
    for (;;) {
        needGrid(d);
        const __int64 slices = std::max<__int64>(d.m_cohTimTotal, 0);
        const __int64 rows = d.m_snsRowTotal;
        const __int64 cols = d.m_snsColTotal;
        Doubles values({slices, rows, cols});
        double* const data = values.mutable_data();
        const Outcome copied = run([&d, data, slices, rows, cols] {
            if (!hasGrid(d) || std::max<__int64>(d.m_cohTimTotal, 0) != slices ||
                d.m_snsRowTotal != rows || d.m_snsColTotal != cols)
                return 0;
            cxc::arrayFromDataset(d, data);
            return 1;
        });
        if (copied.result != 0) return values;
    }
}

CWavChnlChnlDatazq& pairAt(Dataset& d, __int64 row, __int64 col) {
    needGrid(d);
    if (row < 0 || row >= d.m_snsRowTotal || col < 0 || col >= d.m_snsColTotal)
        throw py::index_error("no such pair");
    return d.m_mCC[row][col];
}

Doubles copyOf(const double* values, __int64 count) {
    const __int64 size = values == nullptr ? 0 : std::max<__int64>(count, 0);
    Doubles copy(static_cast<py::ssize_t>(size));
    std::copy(values, values + size, copy.mutable_data());
    return copy;
}

// Channel numbers of all pairs; member is m_chnlA or m_chnlB.
template <__int64 CWavChnlChnlData::*member>
Integers channels(Dataset& d) {
    const Exclusive here;
    needGrid(d);
    Integers numbers({d.m_snsRowTotal, d.m_snsColTotal});
    auto out = numbers.mutable_unchecked<2>();
    for (__int64 r = 0; r < d.m_snsRowTotal; ++r) {
        for (__int64 c = 0; c < d.m_snsColTotal; ++c)
            out(r, c) = d.m_mCC[r][c].*member;
    }
    return numbers;
}

template <__int64 CWavChnlChnlData::*member>
void setChannels(Dataset& d, const Integers& numbers) {
    const Exclusive here(Exclusive::For::changing);
    needGrid(d);
    if (numbers.ndim() != 2 || numbers.shape(0) != d.m_snsRowTotal ||
        numbers.shape(1) != d.m_snsColTotal)
        throw py::value_error("one number for each pair, [row, column]");
    auto in = numbers.unchecked<2>();
    for (__int64 r = 0; r < d.m_snsRowTotal; ++r) {
        for (__int64 c = 0; c < d.m_snsColTotal; ++c)
            d.m_mCC[r][c].*member = in(r, c);
    }
}

void save(Dataset& d, const std::string& path, py::object progress) {
    Watch watch(std::move(progress));
    saveRecord(d, path, storedBytes(d), watch, "the dataset could not be stored");
}

std::shared_ptr<Dataset> load(const std::string& path, py::object progress) {
    Watch watch(std::move(progress));
    auto dataset = std::make_shared<Dataset>();
    loadRecord(*dataset, path, watch);
    return dataset;
}

// The figures of getStatistics, in its order of summing.
py::dict statistics(Dataset& d) {
    const Exclusive here;
    needGrid(d);
    struct {
        double min = 0.0, max = 0.0, mean = 0.0, absMean = 0.0, rms = 0.0;
    } all;
    run([&] {
        const auto cols = static_cast<double>(d.m_snsColTotal);
        const auto rows = static_cast<double>(d.m_snsRowTotal);
        for (__int64 r = 0; r < d.m_snsRowTotal; ++r) {
            double means = 0.0;
            double absMeans = 0.0;
            double squares = 0.0;
            for (__int64 c = 0; c < d.m_snsColTotal; ++c) {
                double min, mean, max, mean2, absMean, rms;
                d.m_mCC[r][c].getStatistic(min, mean, max, mean2, absMean, rms);
                const bool first = r == 0 && c == 0;
                all.min = first || all.min > min ? min : all.min;
                all.max = first || max > all.max ? max : all.max;
                means += mean;
                absMeans += absMean;
                squares += rms * rms;
            }
            all.mean += means / cols;
            all.absMean += absMeans / cols;
            all.rms += std::sqrt(squares / cols);
        }
        all.mean /= rows;
        all.absMean /= rows;
        all.rms = std::sqrt(all.rms / rows);
        return 1;
    });
    py::dict figures;
    figures["min"] = all.min;
    figures["max"] = all.max;
    figures["mean"] = all.mean;
    figures["abs_mean"] = all.absMean;
    figures["rms"] = all.rms;
    return figures;
}

py::tuple signedRange(Dataset& d, bool time, __int64 begin, __int64 end, bool diagonal) {
    double low = 0.0;
    double high = 0.0;
    require([&] { return d.getSnsCohRange(low, high, time, begin, end, diagonal ? 0 : 1); }, "",
            "no values in this range of slices");
    return py::make_tuple(low, high);
}

py::tuple absoluteRange(Dataset& d, bool time, __int64 begin, __int64 end) {
    double low = 0.0;
    double high = 0.0;
    require([&] { return d.getCxcAbsRange(low, high, false, time, begin, end); }, "",
            "no values in this range of slices");
    return py::make_tuple(low, high);
}

// Errors name `target`, which the user knows.
void exportText(Dataset& d, const std::string& path, const std::string& target,
                py::object progress) {
    needGrid(d);
    const CString name = toPath(path);
    Watch watch(std::move(progress));
    require(
        [&] {
            // As the library's own export does, for good.
            if (d.m_cxcName.IsEmpty()) d.m_cxcName = _T("CxC Data");
            // A coherence takes ten characters of two bytes.
            const double bytes = 20.0 * static_cast<double>(d.m_snsRowTotal) *
                                 static_cast<double>(d.m_snsColTotal) *
                                 static_cast<double>(d.m_cohTimTotal);
            WatchedFile file(name, CFile::modeCreate | CFile::modeWrite, watch, bytes);
            if (!cxc::writeText(file, d)) return 0;
            file.Flush();
            file.tellEnd();
            file.Close();
            return 1;
        },
        target, "the text could not be written", {}, &watch);
}

template <CString CSnsCohData::*member>
void text(DatasetClass& c, const char* name) {
    c.def_property(
        name,
        [](const Dataset& d) {
            const Exclusive here;
            return toPython(d.*member);
        },
        [](Dataset& d, const py::str& value) {
            const Exclusive here(Exclusive::For::changing);
            d.*member = fromPython(value);
        });
}

void defineFields(DatasetClass& c) {
    c.def_readwrite("header_int0", &Dataset::m_headerInt0)
        .def_readwrite("header_int1", &Dataset::m_headerInt1)
        .def_readwrite("header_int2", &Dataset::m_headerInt2)
        .def_readwrite("header_int3", &Dataset::m_headerInt3)
        .def_readwrite("channel_type", &Dataset::m_chnlTypeID)
        .def_readwrite("header_int5", &Dataset::m_headerInt5)
        .def_readwrite("header_int6", &Dataset::m_headerInt6)
        .def_readwrite("header_int7", &Dataset::m_headerInt7)
        .def_readwrite("header_int8", &Dataset::m_headerInt8)
        .def_readwrite("header_int9", &Dataset::m_headerInt9)
        .def_readwrite("header_int10", &Dataset::m_headerInt10)
        .def_readwrite("header_int11", &Dataset::m_headerInt11)
        .def_readwrite("header_int12", &Dataset::m_headerInt12)
        .def_readwrite("header_int13", &Dataset::m_headerInt13)
        .def_readwrite("header_long0", &Dataset::m_headerLong0)
        .def_readwrite("header_long1", &Dataset::m_headerLong1)
        .def_readwrite("largest_slice_count", &Dataset::m_headerLong2)
        .def_readwrite("header_long3", &Dataset::m_headerLong3)
        .def_readwrite("header_long4", &Dataset::m_headerLong4)
        .def_readwrite("header_long5", &Dataset::m_headerLong5)
        .def_readwrite("band_begin", &Dataset::m_headerReal0)
        .def_readwrite("band_end", &Dataset::m_headerReal1)
        .def_readwrite("header_real2", &Dataset::m_headerReal2)
        .def_readwrite("sampling_rate", &Dataset::m_samplingRate)
        .def_readwrite("latency_begin", &Dataset::m_anaLatencyBegin)
        .def_readwrite("latency_end", &Dataset::m_anaLatencyEnd)
        .def_readwrite("show", &Dataset::m_tscsInfo)
        .def_readonly("slices", &Dataset::m_cohTimTotal)
        .def_readonly("rows", &Dataset::m_snsRowTotal)
        .def_readonly("columns", &Dataset::m_snsColTotal)
        .def_readonly("select_begin", &Dataset::m_selectBegin)
        .def_readonly("select_end", &Dataset::m_selectEnd)
        .def_readwrite("row", &Dataset::m_rowCrt)
        .def_readwrite("column", &Dataset::m_columnCrt)
        .def_readonly("data_min", &Dataset::m_dataMin)
        .def_readonly("data_max", &Dataset::m_dataMax)
        .def_readonly("data_mean", &Dataset::m_dataMean)
        .def_readonly("rms_normalized", &Dataset::m_rmsNormalized)
        .def_readonly("rms_value", &Dataset::m_rmsValue)
        .def_readonly("show_range_min", &Dataset::m_showRangeMin)
        .def_readonly("show_range_max", &Dataset::m_showRangeMax)
        .def_readonly("show_range_mid", &Dataset::m_showRangeMid)
        .def_readwrite("basic_color", &Dataset::m_basicColor)
        .def_readwrite("active_color", &Dataset::m_activeColor)
        .def_readwrite("suppressive_color", &Dataset::m_suppressiveColor);
    text<&Dataset::m_cxcName>(c, "name");
    text<&Dataset::m_cxcCmptInfo>(c, "note");
}

void defineValues(DatasetClass& c) {
    c.def("has_grid", [](const Dataset& d) { return hasGrid(d); })
        .def("to_array", toArray)
        .def("pair",
             [](Dataset& d, __int64 row, __int64 col) {
                 const Exclusive here;
                 const CWavChnlChnlDatazq& pair = pairAt(d, row, col);
                 return copyOf(pair.m_data, pair.m_size);
             })
        .def("backup",
             [](Dataset& d, __int64 row, __int64 col) {
                 const Exclusive here;
                 const CWavChnlChnlDatazq& pair = pairAt(d, row, col);
                 return copyOf(pair.m_bkData, pair.m_bkSize);
             })
        .def("value",
             [](Dataset& d, __int64 t, __int64 row, __int64 col) {
                 const Exclusive here;
                 return d.getValue(t, row, col);
             })
        .def_property("channels_a", channels<&CWavChnlChnlData::m_chnlA>,
                      setChannels<&CWavChnlChnlData::m_chnlA>)
        .def_property("channels_b", channels<&CWavChnlChnlData::m_chnlB>,
                      setChannels<&CWavChnlChnlData::m_chnlB>)
        .def("part", partOf)
        .def("signed_range", signedRange)
        .def("absolute_range", absoluteRange)
        .def("statistics", statistics)
        .def("statistics_text", [](Dataset& d) {
            CString line;
            run([&] {
                line = d.getStatistics();
                return 1;
            });
            return toPython(line);
        });
}

void defineOperations(DatasetClass& c) {
    c.def("set_select", &Dataset::setSelect)
        .def("latency_of", &Dataset::getLatency4PtSecond)
        .def("type_name", [](Dataset& d) { return toPython(d.getChnlTypeIDname()); })
        .def("normalize_rms",
             [](Dataset& d) { require([&] { return d.normRMS(); }, "", "no values"); })
        .def("check_range",
             [](Dataset& d) { require([&] { return d.checkDataRange(); }, "", "no values"); })
        .def("zero_diagonal",
             [](Dataset& d) { require([&] { return d.zeroDiagonal(); }, "", "no values"); })
        .def("add",
             [](Dataset& d, const Dataset& other) {
                 require([&] { return d.sumDatSetSns(other); }, "",
                         "the datasets differ in slices or rows, or have no values");
             })
        .def("accumulate_time",
             [](Dataset& d) { require([&] { return d.accumulateTime1(); }, "", "no values"); })
        .def("save", save, py::arg("path"), py::arg("progress") = py::none())
        .def_static("load", load, py::arg("path"), py::arg("progress") = py::none())
        .def("export_text", exportText, py::arg("path"), py::arg("target"),
             py::arg("progress") = py::none());
}

}  // namespace

void registerDataset(py::module_& m) {
    DatasetClass c(m, "Dataset");
    c.def(py::init<>()).def_static("from_array", fromArray);
    defineFields(c);
    defineValues(c);
    defineOperations(c);
    m.def("slice_count", &Dataset::getCohTim, py::arg("points"), py::arg("step"),
          py::arg("window"));
}

}  // namespace binding
