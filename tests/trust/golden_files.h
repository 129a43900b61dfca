// One file of each kind and version, byte by byte from the format's tables.
#pragma once

#include "tests/cxcfile/golden_dataset.h"
#include "tests/support/Bytes.h"

#include <string>
#include <vector>

namespace golden {

struct File {
    std::string name;
    std::string bytes;
};

inline std::vector<File> vectorFiles() {
    return {
        {"vector", vectorRecord({1.5, -2.25, 1e300}).str()},
        {"vector with backup",
         vectorHead(2, 4, 9, 1, 7).i32(1).f64(0.5).f64(2).i64(3).i32(1).f64s({7, 8, 9}).str()},
        {"vector without values", vectorHead(5).i32(0).i64(0).i32(0).str()},
        {"vector of an 8-bit archive", Bytes()
                                           .narrowString("MMATRIX1DX")
                                           .u32(20120222)
                                           .i64(0)
                                           .i64(1)
                                           .i64(2)
                                           .u16(1)
                                           .i64(1)
                                           .i32(1)
                                           .f64(0.25)
                                           .i64(0)
                                           .i32(0)
                                           .str()},
    };
}

// One pair with one slice, named by `name`.
inline Bytes smallDataset(double value, const Bytes& name) {
    Bytes bytes = opening(20160311).append(sizes(1, 1, 1)).i32(1).append(vectorRecord({value}));
    bytes.i32(1).i32(2).i32(3).i32(4).i32(1).i32(5).i32(6).i32(7).i32(8);
    bytes.f64(10).f64(0).f64(0.5).i64(1).i64(2).i64(3).i64(4).i64(5).f64(4).f64(8);
    return bytes.append(name)
        .u8(1)
        .i32(0)
        .i32(0)
        .append(header26to31())
        .append(header32())
        .append(header33to38());
}

inline std::vector<File> datasetFiles() {
    return {
        {"dataset 20160311", record20160311().str()},
        {"dataset 20130511", record20130511().str()},
        {"dataset 20130402", record20130402().str()},
        {"dataset 20120714", record20120714().str()},
        {"dataset 20080720", record20080720().str()},
        {"dataset 20080601", record20080601().str()},
        {"dataset without a grid",
         opening(newestVersion).append(sizes()).i32(0).append(header()).str()},
        {"dataset with an 8-bit name",
         smallDataset(0.5, Bytes().narrowString("Ruhe \x80\xE4")).str()},
    };
}

inline std::vector<File> packageFiles() {
    const Bytes active = smallDataset(1.5, Bytes().string("Active"));
    const Bytes control = smallDataset(0.5, Bytes().string("Control"));
    Bytes whole = Bytes().string("SNSCOHFACE").u32(20121016).i32(0);
    whole.i32(1).append(active).i32(1).append(control).i32(1).append(record20080720());
    whole.i32(7).string("Subject 1").string("Note").u8(1);
    Bytes older = Bytes().string("SNSCOHFACE").u32(20080721).i32(1);
    older.i32(0).i32(1).append(control).i32(0).i32(0).i32(0).i32(8).narrowString("Old").u8(0);
    older.i64(0).i64(0);
    return {{"package 20121016", whole.str()}, {"package 20080721", older.str()}};
}

inline std::vector<File> groupFiles() {
    Bytes bytes = Bytes().string("GROUPCXCDATAFACE").u32(20180725).i32(1).i32(4);
    bytes.i32(1).append(smallDataset(1.5, Bytes().string("First"))).i32(0);
    bytes.i32(1).append(record20080601()).i32(1).append(smallDataset(2.5, Bytes().string("Last")));
    bytes.i32(3).string("Study").string("Text").u8(1).i32(2);
    return {{"group 20180725", bytes.str()}};
}

}  // namespace golden
