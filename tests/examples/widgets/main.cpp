#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QApplication>

#include <cstdlib>

// One application for all tests, on a platform that needs no display, with the
// folder that Qt would else miss, and say so.
int main(int argc, char* argv[])
{
    CTemporaryFolder const runtime;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("XDG_RUNTIME_DIR", runtime.Path().c_str(), 1);
    testing::InitGoogleTest(&argc, argv);
    QApplication const application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false); // tests close many
    return RUN_ALL_TESTS();
}
