// Runs commands of the command line in a folder of their own.
#pragma once

#include "cxc.h"
#include "tests/support/DatasetFixture.h"
#include "tests/support/TempDir.h"
#include "tools/cxc/commands.h"
#include "tools/cxc/records.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace test {

class ToolTest : public ::testing::Test {
protected:
    struct Result {
        int code;
        std::string out;
        std::string err;
    };

    /// Arguments that begin with '@' are files of the folder.
    Result run(std::vector<std::string> arguments) {
        for (std::string& argument : arguments) {
            if (argument.rfind('@', 0) == 0) argument = path(argument.substr(1));
        }
        std::ostringstream out;
        std::ostringstream err;
        const int code = tool::run(arguments, out, err, false);
        return {code, out.str(), err.str()};
    }

    std::string path(const std::string& name) const { return (m_folder / name).u8string(); }
    bool exists(const std::string& name) const { return std::filesystem::exists(m_folder / name); }
    std::vector<std::string> entries() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.path()))
            names.push_back(entry.path().filename().u8string());
        return names;
    }
    std::string bytesOf(const std::string& name) const {
        std::ifstream file(m_folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void putBytes(const std::string& name, const std::string& bytes) const {
        std::ofstream(m_folder / name, std::ios::binary) << bytes;
    }

    template <class Object>
    void save(Object& object, const std::string& name) {
        tool::saveRecord(object, path(name), true);
    }
    /// A described dataset with cellValue in every cell, plus `more`.
    void makeDataset(const std::string& name, __int64 sensors, __int64 slices, double more = 0.0) {
        CSnsCohDatazq dataset;
        describe(dataset, sensors, slices, more);
        save(dataset, name);
    }
    static void describe(CSnsCohDatazq& dataset, __int64 sensors, __int64 slices, double more) {
        fill(dataset, sensors, sensors, slices);
        for (__int64 r = 0; r < sensors; ++r) {
            for (__int64 c = 0; c < sensors; ++c) {
                dataset.m_mCC[r][c].m_chnlA = 11 + r;
                dataset.m_mCC[r][c].m_chnlB = 11 + c;
                for (__int64 t = 0; t < slices; ++t)
                    cell(dataset, t, r, c) += more;
            }
        }
        dataset.m_headerReal0 = 8.0;
        dataset.m_headerReal1 = 13.0;
        dataset.m_samplingRate = 2.0;
        dataset.m_anaLatencyBegin = 1.5;
        dataset.m_anaLatencyEnd = 1.5 + static_cast<double>(slices - 1) / 2.0;
        dataset.m_cxcCmptInfo = _T("Window: 4 s, step: 0.5 s");
        dataset.setSelect(0, slices - 1);
    }
    std::unique_ptr<CSnsCohDatazq> open(const std::string& name) {
        return tool::openDataset(path(name));
    }

private:
    TempDir m_folder;
};

}  // namespace test
