#include <QString>
#include <QtGlobal>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <cstdio>

// Qt reports its callers' mistakes, such as an unknown type in a connection, only in text: here
// each of these texts fails the test that caused it, in whichever thread.
namespace
{
void FailOnWarning(QtMsgType type, QMessageLogContext const&, QString const& message)
{
    // The platform without a display says so of itself, whatever its caller does.
    bool const ofPlatform = message.startsWith("This plugin does not support ");
    if (type == QtDebugMsg || type == QtInfoMsg || ofPlatform)
        static_cast<void>(std::fprintf(stderr, "%s\n", qPrintable(message)));
    else
        ADD_FAILURE() << "Qt printed: " << qPrintable(message);
}

[[maybe_unused]] QtMessageHandler const previous = qInstallMessageHandler(&FailOnWarning);
} // namespace

TEST(QtWarnings, FailTheTestThatCausedThem)
{
    EXPECT_NONFATAL_FAILURE(qWarning("planted"), "Qt printed: planted");
    EXPECT_NONFATAL_FAILURE(qCritical("planted"), "Qt printed: planted");
}
