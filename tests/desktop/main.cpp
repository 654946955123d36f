#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    // The bus connections of the tests want an application object; nothing here runs its event loop.
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
