// Entry of every test program: the framework, an application object, the tests.
#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    AfxWinInit(nullptr, nullptr, nullptr, 0);
    test::mainApp() = std::make_unique<test::TestApp>();
    const int result = RUN_ALL_TESTS();
    test::mainApp().reset();
    return result;
}
