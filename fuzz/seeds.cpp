// Writes the hand-made records as files, one for each, into the folders of a corpus.
#include "tests/trust/golden_files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

void write(const std::filesystem::path& folder, const std::vector<golden::File>& files) {
    std::filesystem::create_directories(folder);
    for (const golden::File& file : files) {
        std::string name = file.name;
        std::replace(name.begin(), name.end(), ' ', '-');
        std::ofstream(folder / name, std::ios::binary) << file.bytes;
    }
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) return 2;
    const std::filesystem::path corpus = arguments[1];
    write(corpus / "vector", golden::vectorFiles());
    write(corpus / "dataset", golden::datasetFiles());
    write(corpus / "package", golden::packageFiles());
    write(corpus / "group", golden::groupFiles());
}
