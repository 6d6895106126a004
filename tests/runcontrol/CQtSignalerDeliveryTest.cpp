#include "Allocations.h"
#include "Application.h"
#include "Requests.h"
#include "Threads.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <tuple>

namespace
{
// The way of a request from the emitter to the operator.
enum class EWay {
    Direct,
    DirectByString,
    DirectFromOtherThread,
    Blocking,
    BlockingByString,
    Relayed,
    RelayedByString,
    RelayedToBlocking,
    Invoked,
    InvokedBlocking
};

char const* const wayNames[] = {
    "Direct",  "DirectByString",  "DirectFromOtherThread", "Blocking", "BlockingByString",
    "Relayed", "RelayedByString", "RelayedToBlocking",     "Invoked",  "InvokedBlocking"};

std::string WayName(EWay way)
{
    return wayNames[static_cast<int>(way)];
}

std::string RowName(testing::TestParamInfo<int> const& info)
{
    return RequestRows()[static_cast<std::size_t>(info.param)].name;
}

RequestRow const& RowAt(int index)
{
    return RequestRows()[static_cast<std::size_t>(index)];
}

auto const allRows = testing::Range(0, 13);

// The emitter is the test's own thread, or one more where the way says so.
class CQtSignalerDelivery : public testing::TestWithParam<std::tuple<int, EWay>>
{
protected:
    RequestRow const& Row() const { return RowAt(std::get<int>(GetParam())); }
    EWay Way() const { return std::get<EWay>(GetParam()); }

    // Connects, asks and gives the answer; the operator lives in m_InterfaceThread where that
    // is to wait for it.
    std::string Ask();

    CApplication const m_Application;
    CQtSignaler m_Signaler;
    CQtSignaler m_Relay;
    COperator m_Operator;
    CEventThread m_InterfaceThread;

private:
    std::string AskDirectly();
    std::string AskBlocking();
    std::string AskRelayed();
    bool ConnectByString(QObject& receiver, char const* method, Qt::ConnectionType type)
    {
        return static_cast<bool>(
            QObject::connect(&m_Signaler, Row().signal, &receiver, method, type));
    }
};

std::string CQtSignalerDelivery::AskDirectly()
{
    if (Way() == EWay::DirectByString)
        EXPECT_TRUE(ConnectByString(m_Operator, Row().slot, Qt::DirectConnection));
    else
        EXPECT_TRUE(Row().connectOperator(m_Signaler, m_Operator, Qt::DirectConnection));
    if (Way() == EWay::Invoked)
        return Row().invokeIt(m_Signaler, Qt::DirectConnection);
    if (Way() != EWay::DirectFromOtherThread)
        return Row().emitIt(m_Signaler);
    std::string answer;
    RunOnNewThread([&] { answer = Row().emitIt(m_Signaler); });
    return answer;
}

std::string CQtSignalerDelivery::AskBlocking()
{
    m_Operator.moveToThread(m_InterfaceThread.get());
    if (Way() == EWay::BlockingByString)
        EXPECT_TRUE(ConnectByString(m_Operator, Row().slot, Qt::BlockingQueuedConnection));
    else
        EXPECT_TRUE(Row().connectOperator(
            m_Signaler, m_Operator,
            Way() == EWay::InvokedBlocking ? Qt::DirectConnection : Qt::BlockingQueuedConnection));
    if (Way() != EWay::InvokedBlocking)
        return Row().emitIt(m_Signaler);
    m_Signaler.moveToThread(m_InterfaceThread.get());
    return Row().invokeIt(m_Signaler, Qt::BlockingQueuedConnection);
}

std::string CQtSignalerDelivery::AskRelayed()
{
    if (Way() == EWay::RelayedByString)
        EXPECT_TRUE(ConnectByString(m_Relay, Row().signal, Qt::DirectConnection));
    else
        EXPECT_TRUE(Row().connectRelay(m_Signaler, m_Relay));
    if (Way() == EWay::RelayedToBlocking)
        m_Operator.moveToThread(m_InterfaceThread.get());
    EXPECT_TRUE(Row().connectOperator(
        m_Relay, m_Operator,
        Way() == EWay::RelayedToBlocking ? Qt::BlockingQueuedConnection : Qt::DirectConnection));
    return Row().emitIt(m_Signaler);
}

std::string CQtSignalerDelivery::Ask()
{
    switch (Way()) {
    case EWay::Blocking:
    case EWay::BlockingByString:
    case EWay::InvokedBlocking:
        return AskBlocking();
    case EWay::Relayed:
    case EWay::RelayedByString:
    case EWay::RelayedToBlocking:
        return AskRelayed();
    default:
        return AskDirectly();
    }
}

bool IsInInterfaceThread(EWay way)
{
    return way == EWay::Blocking || way == EWay::BlockingByString || way == EWay::RelayedToBlocking
           || way == EWay::InvokedBlocking;
}

bool IsOperatorConnectedByString(EWay way)
{
    return way == EWay::DirectByString || way == EWay::BlockingByString;
}

INSTANTIATE_TEST_SUITE_P(
    All, CQtSignalerDelivery,
    testing::Combine(allRows, testing::Values(EWay::Direct, EWay::DirectByString,
                                              EWay::DirectFromOtherThread, EWay::Blocking,
                                              EWay::BlockingByString, EWay::Relayed,
                                              EWay::RelayedByString, EWay::RelayedToBlocking,
                                              EWay::Invoked, EWay::InvokedBlocking)),
    [](auto const& row) {
        return std::string(RowAt(std::get<int>(row.param)).name) + "_"
               + WayName(std::get<EWay>(row.param));
    });

class CQtSignalerRequest : public testing::TestWithParam<int>
{
protected:
    RequestRow const& Row() const { return RowAt(GetParam()); }

    CQtSignaler m_Signaler;
};

INSTANTIATE_TEST_SUITE_P(All, CQtSignalerRequest, allRows, RowName);
} // namespace

TEST_P(CQtSignalerDelivery, BringsTheRequestThereAndTheAnswerBack)
{
    EXPECT_EQ(Ask(), Row().answer);
    ASSERT_EQ(m_Operator.Requests().size(), 1u);
    EXPECT_EQ(m_Operator.Requests()[0],
              IsOperatorConnectedByString(Way()) ? Row().requestByString : Row().request);
    if (Way() != EWay::DirectFromOtherThread)
        EXPECT_EQ(m_Operator.LastThread(),
                  IsInInterfaceThread(Way()) ? m_InterfaceThread.get() : QThread::currentThread());
    else
        EXPECT_NE(m_Operator.LastThread(), QThread::currentThread());
}

TEST_P(CQtSignalerRequest, ReturnsAtOnceWithoutAReceiver)
{
    EXPECT_EQ(Row().emitIt(m_Signaler), Row().unanswered);
}

TEST_P(CQtSignalerRequest, ReturnsAtOnceWithoutAReceiverWhenInvoked)
{
    EXPECT_EQ(Row().invokeIt(m_Signaler, Qt::DirectConnection), Row().unanswered);
}

TEST_P(CQtSignalerRequest, ReturnsAtOnceAfterItsReceiverIsGone)
{
    {
        COperator receiver;
        ASSERT_TRUE(Row().connectOperator(m_Signaler, receiver, Qt::DirectConnection));
    }
    EXPECT_EQ(Row().emitIt(m_Signaler), Row().unanswered);
}

TEST_P(CQtSignalerRequest, PassesTheExceptionOfADirectReceiverOn)
{
    ASSERT_TRUE(Row().connectThrower(m_Signaler));
    try {
        Row().emitIt(m_Signaler);
        FAIL() << "nothing was thrown";
    } catch (RefusedByOperator const& refused) {
        EXPECT_STREQ(refused.what(), "refused");
    }
}

TEST_P(CQtSignalerRequest, LeaksNothingWhenADirectReceiverThrows)
{
    ASSERT_TRUE(Row().connectThrower(m_Signaler));
    CAllocationCounter const during;
    EXPECT_THROW(Row().emitIt(m_Signaler), RefusedByOperator);
    EXPECT_EQ(during.Live(), 0);
}

// The partly made result is the first receiver's; what the second throws must not leave it behind.
TEST(CQtSignaler, ReleasesAPartlyMadeResultWhenALaterReceiverThrows)
{
    CQtSignaler signaler;
    auto const pick = [] { return CSafeString("a text too long to be kept in a string itself"); };
    QObject::connect(&signaler, &CQtSignaler::PickSingleFile, pick);
    QObject::connect(&signaler, &CQtSignaler::PickSingleFile, [] { throw RefusedByOperator(); });
    QObject::connect(&signaler, &CQtSignaler::PickDirectory, pick);
    QObject::connect(&signaler, &CQtSignaler::PickDirectory, [] { throw RefusedByOperator(); });
    CAllocationCounter const during;
    EXPECT_THROW(signaler.PickSingleFile("", "", "", ""), RefusedByOperator);
    EXPECT_THROW(signaler.PickDirectory("", "", ""), RefusedByOperator);
    EXPECT_GE(during.Count(), 4u);
    EXPECT_EQ(during.Live(), 0);
}

TEST(CQtSignaler, RunsTheDeleterOfAPartlyMadeResultOnceWhenALaterReceiverThrows)
{
    using Picked = std::optional<std::vector<CSafeString>>;
    CQtSignaler signaler;
    Picked picked;
    std::vector<Picked*> released;
    QObject::connect(&signaler, &CQtSignaler::PickMultipleFiles, [&] {
        return custom_unique_ptr<Picked>(&picked, [&](Picked* held) { released.push_back(held); });
    });
    QObject::connect(&signaler, &CQtSignaler::PickMultipleFiles, [] { throw RefusedByOperator(); });
    EXPECT_THROW(signaler.PickMultipleFiles("", "", "", ""), RefusedByOperator);
    EXPECT_EQ(released, std::vector<Picked*>{&picked});
}

TEST_P(CQtSignalerRequest, CanBeMadeAgainAfterAReceiverThrew)
{
    QMetaObject::Connection const thrower = Row().connectThrower(m_Signaler);
    EXPECT_THROW(Row().emitIt(m_Signaler), RefusedByOperator);
    ASSERT_TRUE(QObject::disconnect(thrower));
    COperator receiver;
    ASSERT_TRUE(Row().connectOperator(m_Signaler, receiver, Qt::DirectConnection));
    EXPECT_EQ(Row().emitIt(m_Signaler), Row().answer);
}

// A signal invoked through the meta-object system assigns its result to the caller's.
namespace
{
struct AssignmentRow
{
    char const* name;
    std::optional<CSafeString> before;
    std::optional<CSafeString> picked;
};

std::vector<AssignmentRow> AssignmentRows()
{
    CSafeString const old("a text that was there before, longer than short");
    CSafeString const picked("a text that was picked, longer than short, too");
    return {{"EmptyToEmpty", {}, {}},
            {"EmptyToFull", {}, picked},
            {"FullToEmpty", old, {}},
            {"FullToFull", old, picked}};
}

class CQtSignalerResult : public testing::TestWithParam<AssignmentRow>
{
protected:
    void SetUp() override
    {
        auto const pick = [] { return GetParam().picked; };
        QObject::connect(&m_Signaler, &CQtSignaler::PickSingleFile, pick);
        QObject::connect(&m_Signaler, &CQtSignaler::PickDirectory, pick);
    }

    // The two names are of the same return type; the first needs one more argument.
    bool Invoke(std::optional<CSafeString>& result, bool isFile)
    {
        sv_wrapper const text("text");
        return isFile
                   ? QMetaObject::invokeMethod(&m_Signaler, "PickSingleFile", Qt::DirectConnection,
                                               Q_RETURN_ARG(std::optional<CSafeString>, result),
                                               Q_ARG(sv_wrapper, text), Q_ARG(sv_wrapper, text),
                                               Q_ARG(sv_wrapper, text), Q_ARG(sv_wrapper, text))
                   : QMetaObject::invokeMethod(&m_Signaler, "PickDirectory", Qt::DirectConnection,
                                               Q_RETURN_ARG(std::optional<CSafeString>, result),
                                               Q_ARG(sv_wrapper, text), Q_ARG(sv_wrapper, text),
                                               Q_ARG(sv_wrapper, text));
    }

    CQtSignaler m_Signaler;
};

INSTANTIATE_TEST_SUITE_P(All, CQtSignalerResult, testing::ValuesIn(AssignmentRows()),
                         [](auto const& row) { return std::string(row.param.name); });
} // namespace

TEST_P(CQtSignalerResult, IsAssignedToTheCallers)
{
    for (bool const isFile : {true, false}) {
        SCOPED_TRACE(isFile ? "PickSingleFile" : "PickDirectory");
        std::optional<CSafeString> result = GetParam().before;
        ASSERT_TRUE(Invoke(result, isFile));
        EXPECT_EQ(Text(result), Text(GetParam().picked));
    }
}

TEST_P(CQtSignalerResult, LeaksNothingWhenAssigned)
{
    Q_UNUSED(m_Signaler.PickDirectory("", "", ""))
    for (bool const isFile : {true, false}) {
        SCOPED_TRACE(isFile ? "PickSingleFile" : "PickDirectory");
        CAllocationCounter const during;
        {
            std::optional<CSafeString> result = GetParam().before;
            ASSERT_TRUE(Invoke(result, isFile));
        }
        EXPECT_EQ(during.Live(), 0);
    }
}

TEST_P(CQtSignalerResult, IsDroppedWhenTheCallerWantsNone)
{
    sv_wrapper const text("text");
    CAllocationCounter const during;
    EXPECT_TRUE(QMetaObject::invokeMethod(&m_Signaler, "PickDirectory", Qt::DirectConnection,
                                          Q_ARG(sv_wrapper, text), Q_ARG(sv_wrapper, text),
                                          Q_ARG(sv_wrapper, text)));
    EXPECT_EQ(during.Live(), 0);
}

TEST(CQtSignalerResults, AreDroppedWhenTheCallerWantsNone)
{
    CQtSignaler signaler;
    COperator receiver;
    QObject::connect(&signaler, &CQtSignaler::AbortTestSuite, &receiver,
                     &COperator::AbortTestSuite);
    QObject::connect(&signaler, &CQtSignaler::PickMultipleFiles, &receiver,
                     &COperator::PickMultipleFiles);
    bool const offered = true;
    sv_wrapper const text("text");
    EXPECT_TRUE(SignalerMethod(1).invoke(&signaler, Qt::DirectConnection, Q_ARG(bool, offered)));
    EXPECT_TRUE(SignalerMethod(9).invoke(&signaler, Qt::DirectConnection, Q_ARG(sv_wrapper, text),
                                         Q_ARG(sv_wrapper, text), Q_ARG(sv_wrapper, text),
                                         Q_ARG(sv_wrapper, text)));
    EXPECT_EQ(receiver.Requests().size(), 2u);
}

TEST(CQtSignalerResults, ReplaceTheFilesOfTheCaller)
{
    using Picked = std::optional<std::vector<CSafeString>>;
    CQtSignaler signaler;
    COperator receiver;
    QObject::connect(&signaler, &CQtSignaler::PickMultipleFiles, &receiver,
                     &COperator::PickMultipleFiles);
    int released = 0;
    Picked old;
    custom_unique_ptr<Picked> result(&old, [&](Picked*) { ++released; });
    sv_wrapper const text("text");
    ASSERT_TRUE(SignalerMethod(9).invoke(
        &signaler, Qt::DirectConnection,
        QGenericReturnArgument(SignalerMethod(9).typeName(), &result), Q_ARG(sv_wrapper, text),
        Q_ARG(sv_wrapper, text), Q_ARG(sv_wrapper, text), Q_ARG(sv_wrapper, text)));
    EXPECT_EQ(Text(result.get()), "['one','two']");
    EXPECT_EQ(released, 1);
}

// Nothing is left of what the caller's result held before.
TEST(CQtSignalerResults, OfSignalsWithoutAReceiverReplaceTheCallers)
{
    using Picked = std::optional<std::vector<CSafeString>>;
    CQtSignaler signaler;
    bool const offered = true;
    bool abort = true;
    EXPECT_TRUE(SignalerMethod(1).invoke(&signaler, Qt::DirectConnection, Q_RETURN_ARG(bool, abort),
                                         Q_ARG(bool, offered)));
    EXPECT_FALSE(abort);

    sv_wrapper const text("text");
    std::optional<CSafeString> folder("a folder that was there before");
    EXPECT_TRUE(SignalerMethod(8).invoke(
        &signaler, Qt::DirectConnection, Q_RETURN_ARG(std::optional<CSafeString>, folder),
        Q_ARG(sv_wrapper, text), Q_ARG(sv_wrapper, text), Q_ARG(sv_wrapper, text)));
    EXPECT_EQ(Text(folder), "empty");

    int released = 0;
    Picked old;
    custom_unique_ptr<Picked> files(&old, [&](Picked*) { ++released; });
    EXPECT_TRUE(SignalerMethod(9).invoke(
        &signaler, Qt::DirectConnection,
        QGenericReturnArgument(SignalerMethod(9).typeName(), &files), Q_ARG(sv_wrapper, text),
        Q_ARG(sv_wrapper, text), Q_ARG(sv_wrapper, text), Q_ARG(sv_wrapper, text)));
    EXPECT_EQ(Text(files.get()), "null");
    EXPECT_EQ(released, 1);
}

// Qt looks the spellings of both sides up by name, and refuses those that it does not know.
TEST(CQtSignaler, IsNotConnectedByStringToASlotThatSpellsTheViewByAnotherAlias)
{
    CQtSignaler signaler;
    COtherSpellings receiver;
    QMetaObject::Connection connection;
    EXPECT_NONFATAL_FAILURE(
        connection =
            QObject::connect(&signaler, SIGNAL(PickDirectory(sv_wrapper, sv_wrapper, sv_wrapper)),
                             &receiver, SLOT(PickByAlias(ViewAlias, ViewAlias, ViewAlias))),
        "Incompatible sender/receiver arguments");
    EXPECT_FALSE(connection);
}

TEST(CQtSignaler, IsConnectedByStringToASlotThatSpellsTheViewByItsOwnName)
{
    CQtSignaler signaler;
    COtherSpellings receiver;
    EXPECT_TRUE(QObject::connect(
        &signaler, SIGNAL(PickDirectory(sv_wrapper, sv_wrapper, sv_wrapper)), &receiver,
        SLOT(PickByOwnName(basic_sv_wrapper<char>, basic_sv_wrapper<char>,
                           basic_sv_wrapper<char>))));
    EXPECT_EQ(Text(signaler.PickDirectory("first", "", "")), "'first'");
}
