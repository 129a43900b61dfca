// cxc_instructions: each operation once, on a small dataset and a small group, for callgrind, which
// writes a file of figures for each of them. Prints how many doubles the passes work on together.
#include "bench/operations.h"
#include "cxcdata/wide_passes.h"

#include <valgrind/callgrind.h>

#include <cstdio>

namespace bench {
namespace {

// Small enough for one thread: how two of them share the work is different each time.
const Shape shapes[] = {{0, 24, 50}, {3, 24, 50}};

void putBack(const Operation& operation) {
    if (operation.after) operation.after();
}

void count(const char* of, const Operation& operation) {
    const std::string name = of + operation.name;
    // Once before it counts: names of functions are looked up, tables are made.
    operation.run();
    putBack(operation);
    CALLGRIND_ZERO_STATS;
    operation.run();
    CALLGRIND_DUMP_STATS_AT(name.c_str());
    putBack(operation);
}

const char* width() {
    switch (cxc::pass::widest()) {
        case cxc::pass::Width::eight:
            return "eight";
        case cxc::pass::Width::four:
            return "four";
        case cxc::pass::Width::two:
            break;
    }
    return "two";
}

}  // namespace
}  // namespace bench

int main() {
    for (const bench::Shape& shape : bench::shapes) {
        for (const bench::Operation& operation : bench::operations(shape))
            bench::count(shape.members > 0 ? "group: " : "", operation);
    }
    std::puts(bench::width());
    return 0;
}
