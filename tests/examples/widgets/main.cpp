#include <gtest/gtest.h>

#include <QApplication>

#include <cstdlib>

// One application for all tests, on a platform that needs no display.
int main(int argc, char* argv[])
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    testing::InitGoogleTest(&argc, argv);
    QApplication const application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false); // tests close many
    return RUN_ALL_TESTS();
}
