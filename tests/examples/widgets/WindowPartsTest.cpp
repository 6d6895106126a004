// The parts of the window, each by itself.

#include "CScriptedOperator.h"

#include <CElidedLabel.h>
#include <CMessageText.h>
#include <CResultsTree.h>
#include <CRunHeader.h>
#include <CallIn.h>
#include <Icons.h>
#include <VerdictLook.h>

#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>
#include <QScrollBar>
#include <QTest>
#include <QThread>

#include <atomic>
#include <thread>
#include <vector>

namespace
{
CCaseOutcome Outcome(TEST_STATUS verdict, char const* detail = "", std::uintmax_t bytes = 0)
{
    return {verdict, detail, bytes};
}

QString const longPath = QString("/home/operator/") + QString("folder/").repeated(40) + "file.txt";
} // namespace

TEST(CallIn, CallsDirectlyInTheReceiversOwnThread)
{
    QObject receiver;
    bool called = false;
    CallIn(receiver, [&] { called = true; }); // no event is served here
    EXPECT_TRUE(called);
}

TEST(CallIn, CallsInTheReceiversThreadAndWaitsForTheEnd)
{
    QObject receiver;
    QThread const* thread = nullptr;
    int value = 0;
    RunBesideEvents([&] {
        CallIn(receiver, [&] {
            thread = QThread::currentThread();
            value = 1;
        });
        EXPECT_EQ(value++, 1);
    });
    EXPECT_EQ(value, 2);
    EXPECT_EQ(thread, QThread::currentThread());
}

// As the destruction of a receiver does it, which could not be timed here.
TEST(CallIn, ReturnsWithoutTheCallWhenItsEventIsRemoved)
{
    QObject receiver;
    bool called = false;
    std::atomic<bool> returned{false};
    std::thread caller([&] {
        CallIn(receiver, [&] { called = true; });
        returned = true;
    });
    while (!returned)
        QCoreApplication::removePostedEvents(&receiver);
    caller.join();
    EXPECT_FALSE(called);
}

TEST(CElidedLabel, ShowsATextThatFitsAsItStands)
{
    CElidedLabel label;
    label.resize(400, 30);
    label.SetText("/home/operator/file.txt");
    EXPECT_EQ(label.text(), "/home/operator/file.txt");
    EXPECT_EQ(label.toolTip(), "");
}

TEST(CElidedLabel, CutsALongTextInTheMiddleAndKeepsTheWholeInTheToolTip)
{
    CElidedLabel label;
    label.resize(200, 30);
    label.SetText(longPath);
    EXPECT_LT(label.text().size(), longPath.size());
    EXPECT_TRUE(label.text().startsWith("/home"));
    EXPECT_TRUE(label.text().endsWith(".txt"));
    EXPECT_EQ(label.toolTip(), longPath);
    EXPECT_EQ(label.WholeText(), longPath);
}

TEST(CElidedLabel, FollowsItsWidth)
{
    CElidedLabel label;
    label.resize(200, 30);
    label.SetText(longPath);
    label.show();
    label.resize(20000, 30);
    EXPECT_EQ(label.text(), longPath);
}

TEST(CElidedLabel, DemandsNoWidth)
{
    CElidedLabel label;
    label.SetText(longPath);
    EXPECT_EQ(label.minimumSizeHint().width(), 0);
}

TEST(CMessageText, IsAsHighAsItsTextUpToALimit)
{
    CMessageText const one("one line");
    CMessageText const three("one\ntwo\nthree");
    CMessageText const hundred(QString("line\n").repeated(100));
    EXPECT_GT(three.height(), one.height() * 2);
    EXPECT_LT(hundred.height(), one.height() * 20);
}

TEST(CMessageText, BreaksAPathThatIsLongerThanALine)
{
    CMessageText text(longPath);
    text.resize(200, 100);
    text.show();
    EXPECT_EQ(text.horizontalScrollBar()->maximum(), 0);
    EXPECT_GT(text.document()->size().height(), text.fontMetrics().height() * 2);
}

TEST(CResultsTree, GroupsTheCasesAndShowsVerdictSizeAndDetail)
{
    CResultsTree tree;
    tree.Add({ECaseGroup::Files, "a/b"}, Outcome(TEST_STATUS_PASSED, "", 2048));
    tree.Add({ECaseGroup::Refusals, "pipe"}, Outcome(TEST_STATUS_FAILED, "not\n  refused"));
    tree.Add({ECaseGroup::Files, "c"}, Outcome(TEST_STATUS_SKIPPED, "a socket"));

    ASSERT_EQ(tree.topLevelItemCount(), 2);
    QTreeWidgetItem const& files = *tree.topLevelItem(0);
    ASSERT_EQ(files.childCount(), 2);
    EXPECT_TRUE(files.isExpanded());
    EXPECT_EQ(files.child(0)->text(CResultsTree::NameColumn), "a/b");
    EXPECT_EQ(files.child(0)->text(CResultsTree::VerdictColumn), "Passed");
    EXPECT_EQ(files.child(0)->text(CResultsTree::SizeColumn), "2.0 KiB");
    EXPECT_EQ(files.child(1)->text(CResultsTree::VerdictColumn), "Skipped");
    EXPECT_EQ(files.child(1)->text(CResultsTree::SizeColumn), "");
    QTreeWidgetItem const& refused = *tree.topLevelItem(1)->child(0);
    EXPECT_EQ(refused.text(CResultsTree::DetailColumn), "not refused");
    EXPECT_EQ(refused.toolTip(CResultsTree::DetailColumn), "not\n  refused");
    EXPECT_TRUE(refused.font(CResultsTree::VerdictColumn).bold());
}

TEST(CResultsTree, StartsAnewAfterRemovingAll)
{
    CResultsTree tree;
    tree.Add({ECaseGroup::Files, "a"}, Outcome(TEST_STATUS_PASSED));
    tree.RemoveAll();
    EXPECT_EQ(tree.topLevelItemCount(), 0);
    tree.Add({ECaseGroup::Files, "b"}, Outcome(TEST_STATUS_PASSED));
    EXPECT_EQ(tree.topLevelItem(0)->childCount(), 1);
}

TEST(CResultsTree, FollowsTheNewestUnlessScrolledAwayFromIt)
{
    CResultsTree tree;
    tree.resize(400, 120);
    tree.show();
    auto const addMany = [&] {
        for (int row = 0; row < 50; ++row)
            tree.Add({ECaseGroup::Files, "a"}, Outcome(TEST_STATUS_PASSED));
        QTest::qWait(0); // views lay themselves out by an event
    };
    addMany();
    addMany();
    QScrollBar const& bar = *tree.verticalScrollBar();
    ASSERT_GT(bar.maximum(), 0);
    EXPECT_EQ(bar.value(), bar.maximum());

    tree.verticalScrollBar()->setValue(3);
    addMany();
    EXPECT_EQ(bar.value(), 3);
}

TEST(CResultsTree, SaysWhatWillStandThereWhileItIsEmpty)
{
    CResultsTree tree;
    tree.resize(600, 300);
    QImage const empty = tree.grab().toImage();
    CResultsTree other;
    other.resize(600, 300);
    other.Add({ECaseGroup::Files, "a"}, Outcome(TEST_STATUS_PASSED));
    other.topLevelItem(0)->setHidden(true);
    EXPECT_NE(empty, other.grab().toImage());
}

TEST(CRunHeader, CountsVerdictsAndProgress)
{
    CRunHeader header;
    header.Reset("/a/folder");
    header.SetCaseCount(5);
    for (TEST_STATUS const verdict : {TEST_STATUS_PASSED, TEST_STATUS_PASSED, TEST_STATUS_FAILED,
                                      TEST_STATUS_ERROR, TEST_STATUS_SKIPPED})
        header.Count(verdict);

    auto const count = [&](QString const& name) {
        for (QLabel const* const label : header.findChildren<QLabel*>())
            if (label->accessibleName() == name)
                return label->text();
        return QString("none");
    };
    EXPECT_EQ(count("Passed"), "2");
    EXPECT_EQ(count("Failed"), "2");
    EXPECT_EQ(count("Skipped"), "1");
    EXPECT_EQ(header.findChild<QProgressBar*>()->text(), "5 of 5");

    header.Reset("/");
    EXPECT_EQ(count("Passed"), "0");
    EXPECT_LT(header.findChild<QProgressBar*>()->value(), 1);
}

TEST(CRunHeader, NamesTheFolderAndFitsASmallWindow)
{
    CRunHeader header;
    header.Reset(longPath);
    EXPECT_LT(header.minimumSizeHint().width(), 400);
    header.Reset("/");
    EXPECT_EQ(FindParts<CElidedLabel>(header).front()->WholeText(), "/");
}

TEST(VerdictLook, IsLighterOnADarkBackground)
{
    QPalette dark;
    dark.setColor(QPalette::Base, Qt::black);
    QPalette light;
    light.setColor(QPalette::Base, Qt::white);
    EXPECT_GT(VerdictColor(TEST_STATUS_PASSED, dark).lightness(),
              VerdictColor(TEST_STATUS_PASSED, light).lightness());
}

TEST(Icons, AreAllDifferent)
{
    std::vector<QImage> drawn;
    for (ECommandIcon const icon : {ECommandIcon::Folder, ECommandIcon::Start, ECommandIcon::Pause,
                                    ECommandIcon::Resume, ECommandIcon::Abort})
        for (QIcon::Mode const mode : {QIcon::Normal, QIcon::Disabled})
            drawn.push_back(CommandIcon(icon, QPalette()).pixmap(32, 32, mode).toImage());
    for (ERequestIcon const icon : {ERequestIcon::Question, ERequestIcon::Information,
                                    ERequestIcon::Warning, ERequestIcon::Error})
        drawn.push_back(RequestIcon(icon).pixmap(32, 32).toImage());
    for (std::size_t one = 0; one < drawn.size(); ++one)
        for (std::size_t other = 0; other < one; ++other)
            EXPECT_NE(drawn[one], drawn[other]) << one << " and " << other;
}
