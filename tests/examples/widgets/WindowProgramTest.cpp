// The program itself, and a window whose suite hangs, as processes of their own.

#include "CHeldCompare.h"
#include "CScriptedOperator.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTest>
#include <QtEndian>

#include <sys/types.h>

#include <algorithm>
#include <csignal>
#include <set>
#include <utility>
#include <vector>

namespace fs = std::filesystem;
using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{
constexpr int longestWait = 60000; // milliseconds, for a hung test
constexpr int longestEnd = 2000;
constexpr int aborted = 2;
constexpr int usage = 64;
constexpr int brokenDown = 70;

std::string const cutShort =
    "The window is closed and the case at hand does not end: it is cut short.\n";

class CWindowProgramTest : public testing::Test
{
protected:
    CWindowProgramTest()
    {
        for (char const* const folder : {"one", "two"}) {
            fs::create_directory(m_Files.Path() / folder);
            WriteFile(m_Files.Path() / folder / "file", "Contents");
        }
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        variables.insert("HOME", QString::fromStdString(m_Home.Path().native()));
        variables.insert("TMPDIR", QString::fromStdString(m_Work.Path().native()));
        m_Program.setProcessEnvironment(variables);
        m_Program.setProcessChannelMode(QProcess::MergedChannels);
    }
    ~CWindowProgramTest() override
    {
        for (QProcess* const process : {&m_Program, &m_Display}) {
            process->kill();
            process->waitForFinished();
        }
        EXPECT_TRUE(fs::is_empty(m_Work.Path())) << "the work folder is left behind";
    }

    void SetVariable(QString const& name, QString const& value)
    {
        QProcessEnvironment variables = m_Program.processEnvironment();
        variables.insert(name, value);
        m_Program.setProcessEnvironment(variables);
    }

    void Start(QStringList const& arguments)
    {
        m_Program.start(WINDOW_PROGRAM, arguments);
        ASSERT_TRUE(m_Program.waitForStarted(longestWait));
    }

    // It begins at once, for one file raises no question.
    void StartOnOneFile() { Start({QString::fromStdString(m_Files / "one")}); }

    void StartOnFiles() { Start({QString::fromStdString(m_Files.Path().native())}); }

    int ExitCode()
    {
        EXPECT_TRUE(m_Program.waitForFinished(longestWait));
        EXPECT_EQ(m_Program.exitStatus(), QProcess::NormalExit);
        return m_Program.exitCode();
    }

    /// How the program ends at the signal; within the time that is allowed.
    int ExitCodeAfter(int signal)
    {
        QElapsedTimer since;
        since.start();
        Send(signal);
        int const code = ExitCode();
        EXPECT_LT(since.elapsed(), longestEnd);
        return code;
    }

    void Send(int signal) { EXPECT_EQ(kill(static_cast<pid_t>(m_Program.processId()), signal), 0); }

    /// Waits for the program to write that; false when it ends before.
    bool OutputReaches(QByteArray const& text)
    {
        while (!m_Output.contains(text)) {
            if (!m_Program.waitForReadyRead(longestWait))
                return false;
            m_Output += m_Program.readAll();
        }
        return true;
    }

    /// What the program has written since the last call, but for what the platform
    /// without a display says of itself.
    std::string Output()
    {
        m_Output += m_Program.readAll();
        std::string text;
        for (QByteArray const& line : std::exchange(m_Output, {}).split('\n'))
            if (!line.startsWith("This plugin does not support "))
                text += line.toStdString() + '\n';
        text.pop_back();
        return text;
    }

    CTemporaryFolder const m_Files;
    CTemporaryFolder const m_Home;
    CTemporaryFolder const m_Work;
    QProcess m_Display;
    QProcess m_Program;
    QByteArray m_Output;
};

// What a virtual display shows: Xvfb keeps it in a file, a header of big-endian
// numbers and the colour map before the pixels.
QImage ReadScreen(std::string const& file)
{
    std::string const dump = ReadFile(file);
    auto const number = [&](std::size_t index) {
        return qFromBigEndian<quint32>(dump.data() + index * sizeof(quint32));
    };
    if (dump.size() < 100)
        return {};
    quint32 const width = number(4);
    quint32 const height = number(5);
    quint32 const bytesPerLine = number(12);
    std::size_t const start = number(0) + std::size_t{number(19)} * 12;
    if (dump.size() < start + std::size_t{height} * bytesPerLine)
        return {};
    auto const* const pixels = reinterpret_cast<uchar const*>(dump.data() + start);
    return QImage(pixels, static_cast<int>(width), static_cast<int>(height),
                  static_cast<qsizetype>(bytesPerLine), QImage::Format_RGB32)
        .copy();
}

struct CPicture
{
    std::size_t m_Colors = 0;
    double m_Covered = 0; // share of the screen that is not black, as the empty screen is
};

CPicture Describe(QImage const& screen)
{
    std::set<QRgb> colors;
    std::size_t covered = 0;
    QRgb last = 0;
    for (int y = 0; y < screen.height(); ++y)
        for (int x = 0; x < screen.width(); ++x) {
            QRgb const pixel = screen.pixel(x, y) | 0xFF000000U;
            if (pixel != last)
                colors.insert(last = pixel);
            covered += pixel != 0xFF000000U ? 1 : 0;
        }
    double const pixels = std::max(1.0, 1.0 * screen.width() * screen.height());
    return {colors.size(), static_cast<double>(covered) / pixels};
}
} // namespace

TEST_F(CWindowProgramTest, EndsAtAnInterruptAsWhenItIsClosedDuringACase)
{
    CHeldCompare const compare;
    SetVariable("PATH", QString::fromStdString(compare.SearchPath()));
    for (int const signal : {SIGINT, SIGTERM, SIGHUP}) {
        SCOPED_TRACE(signal);
        StartOnOneFile();
        ASSERT_TRUE(OutputReaches("Comparing\n"));
        EXPECT_EQ(ExitCodeAfter(signal), aborted);
        EXPECT_EQ(Output(), "Comparing\ntorqel-window: " + cutShort);
        EXPECT_TRUE(fs::is_empty(m_Work.Path()));
    }
}

TEST_F(CWindowProgramTest, LeavesNothingBehindWhenItIsToldToEndAtOnce)
{
    CHeldCompare const compare;
    SetVariable("PATH", QString::fromStdString(compare.SearchPath()));
    struct CRow
    {
        char const* m_Name;
        std::vector<int> m_Signals;
    };
    for (CRow const& row :
         {CRow{"quit", {SIGQUIT}}, CRow{"interrupted twice", {SIGHUP, SIGTERM}}}) {
        SCOPED_TRACE(row.m_Name);
        StartOnOneFile();
        ASSERT_TRUE(OutputReaches("Comparing\n"));
        for (int const signal : row.m_Signals)
            Send(signal);
        ASSERT_TRUE(m_Program.waitForFinished(longestWait));
        EXPECT_EQ(m_Program.exitStatus(), QProcess::CrashExit);
        EXPECT_THAT(row.m_Signals, Contains(m_Program.exitCode()));
        EXPECT_EQ(Output(), "Comparing\n");
        EXPECT_TRUE(fs::is_empty(m_Work.Path()));
    }
}

TEST_F(CWindowProgramTest, EndsInTimeAlthoughItsSuiteHangs)
{
    CTemporaryFolder const work;
    m_Program.start(STUCK_WINDOW_PROGRAM, {QString::fromStdString(m_Files / "one"),
                                           QString::fromStdString(work.Path().native())});
    ASSERT_TRUE(m_Program.waitForReadyRead(longestWait));
    QElapsedTimer sinceClosing;
    sinceClosing.start();
    EXPECT_EQ(ExitCode(), aborted);
    EXPECT_LT(sinceClosing.elapsed(), longestEnd);
    EXPECT_EQ(Output(), "closed\nStuckWindow: " + cutShort);
    EXPECT_TRUE(fs::is_empty(work.Path()));
}

// Started by a shell, for QProcess hands over none but UTF-8.
TEST_F(CWindowProgramTest, ChecksAFolderWhoseNameIsNotUtf8)
{
    CHeldCompare const compare;
    SetVariable("PATH", QString::fromStdString(compare.SearchPath()));
    fs::rename(m_Files / "one", m_Files / "caf\xE9");
    m_Program.start("/bin/sh", {"-c", "exec \"$0\" \"$1\"/caf*", WINDOW_PROGRAM,
                                QString::fromStdString(m_Files.Path().native())});
    ASSERT_TRUE(OutputReaches("Comparing\n")) << Output();
    EXPECT_EQ(ExitCodeAfter(SIGTERM), aborted);
}

TEST_F(CWindowProgramTest, ExplainsItself)
{
    Start({"--help"});
    EXPECT_EQ(ExitCode(), 0);
    EXPECT_THAT(Output(), HasSubstr("[FOLDER]"));
    Start({"--version"});
    EXPECT_EQ(ExitCode(), 0);
    EXPECT_THAT(Output(), HasSubstr("torqel-window"));
}

TEST_F(CWindowProgramTest, ExplainsItselfWithoutADisplay)
{
    SetVariable("QT_QPA_PLATFORM", "none that exists");
    Start({"--help"});
    EXPECT_EQ(ExitCode(), 0);
    EXPECT_THAT(Output(), HasSubstr("[FOLDER]"));
}

TEST_F(CWindowProgramTest, SaysWhichArgumentsMeanNothing)
{
    Start({"/one", "/two"});
    EXPECT_EQ(ExitCode(), usage);
    EXPECT_EQ(Output(), "torqel-window: Only one folder can be checked at a time.\n"
                        "Try torqel-window --help.\n");
    Start({"--fast"});
    EXPECT_EQ(ExitCode(), usage);
    EXPECT_EQ(Output(), "torqel-window: Unknown option 'fast'.\nTry torqel-window --help.\n");
    Start({""});
    EXPECT_EQ(ExitCode(), usage);
    EXPECT_EQ(Output(), "torqel-window: The folder's name is empty.\nTry torqel-window --help.\n");
    Start({"--caf\u00E9"});
    EXPECT_EQ(ExitCode(), usage);
    EXPECT_THAT(Output(), HasSubstr("'caf\u00E9'"));
}

// Nothing can be found from a current folder that is gone.
TEST_F(CWindowProgramTest, SaysWhyItBreaksDown)
{
    CTemporaryFolder const gone;
    m_Program.start("/bin/sh", {"-c", "cd \"$1\" && rmdir \"$1\" && exec \"$0\" here",
                                WINDOW_PROGRAM, QString::fromStdString(gone.Path().native())});
    EXPECT_EQ(ExitCode(), brokenDown);
    EXPECT_THAT(Output(), StartsWith("torqel-window: "));
}

TEST_F(CWindowProgramTest, IsDrawnOnARealDisplay)
{
    QString const server = QStandardPaths::findExecutable("Xvfb");
    if (server.isEmpty())
        GTEST_SKIP() << "Xvfb is not installed";
    CTemporaryFolder const frames;
    m_Display.start(server, {"-displayfd", "1", "-screen", "0", "1280x960x24", "-nolisten", "tcp",
                             "-fbdir", QString::fromStdString(frames.Path().native())});
    ASSERT_TRUE(m_Display.waitForReadyRead(longestWait)) << "Xvfb names no display";
    SetVariable("DISPLAY", ":" + QString(m_Display.readAllStandardOutput()).trimmed());
    SetVariable("QT_QPA_PLATFORM", "xcb");
    CPicture const before = Describe(ReadScreen(frames / "Xvfb_screen0"));
    EXPECT_EQ(before.m_Covered, 0.0);

    StartOnFiles();
    CPicture picture;
    EXPECT_TRUE(WaitUntil([&] {
        picture = Describe(ReadScreen(frames / "Xvfb_screen0"));
        return picture.m_Covered > 0.25 && picture.m_Colors > 100;
    })) << picture.m_Colors
        << " colours on " << picture.m_Covered << " of the screen, and " << Output();
    EXPECT_EQ(ExitCodeAfter(SIGTERM), aborted) << Output();
}
