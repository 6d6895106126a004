#include <COperator.h>

#include <UIChoices.h>

#include <BaseUtilities/CQtSignaler.h>
#include <BaseUtilities/UIHelperBase.h>

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace
{
// A registered signaler to which a test connects its answers.
class COperatorTest : public testing::Test
{
protected:
    COperatorTest() { UIHelperBase::QtSignaler(m_Signaler); }
    ~COperatorTest() override { UIHelperBase::m_UISignaler = nullptr; }

    CQtSignaler m_Signaler;
    COperator const m_Operator{true};
    std::vector<CSafeString> const m_Folders = {"one", "two", "three"};
};
} // namespace

TEST(COperator, WithoutASignalerEveryAnswerLetsTheSuiteRunThrough)
{
    COperator const alone(true);
    EXPECT_THAT(alone.ChooseFolders({"one", "two"}), ElementsAre(0u, 1u));
    EXPECT_EQ(alone.ChooseLimit(7), 7u);
    EXPECT_TRUE(alone.ContinuesAfter("a failure"));
    EXPECT_FALSE(alone.ChooseReportFile("/", "name"));
}

TEST_F(COperatorTest, AsksNothingWhenNobodyIsToBeAsked)
{
    bool asked = false;
    QObject::connect(&m_Signaler, &CQtSignaler::BooleanChoice, &m_Signaler, [&] { asked = true; });
    QObject::connect(&m_Signaler, &CQtSignaler::GetInteger, &m_Signaler, [&] { asked = true; });
    COperator const silent(false);
    EXPECT_TRUE(silent.ContinuesAfter("a failure"));
    EXPECT_EQ(silent.ChooseLimit(7), 7u);
    EXPECT_FALSE(asked);
}

TEST_F(COperatorTest, KeepsTheFoldersChosenAndDropsIndicesThatAreNone)
{
    QObject::connect(&m_Signaler, &CQtSignaler::SelectMultipleItems, &m_Signaler,
                     [](EUIMode, std::uint32_t, sv_wrapper const&,
                        std::vector<CSafeString> const& items, std::vector<std::int32_t>** answer) {
                         EXPECT_EQ(items.size(), 3u);
                         *answer = new std::vector<std::int32_t>{2, -1, 3, 0};
                     });
    EXPECT_THAT(m_Operator.ChooseFolders(m_Folders), ElementsAre(2u, 0u));
}

TEST_F(COperatorTest, ChecksAllFoldersWhenTheQuestionIsRejected)
{
    EXPECT_THAT(m_Operator.ChooseFolders(m_Folders), ElementsAre(0u, 1u, 2u));
}

TEST_F(COperatorTest, KeepsTheLimitWithinItsBounds)
{
    struct CRow
    {
        std::uintptr_t m_Answer;
        std::size_t m_Limit;
    };
    std::uintptr_t answered = 0;
    QObject::connect(&m_Signaler, &CQtSignaler::GetInteger, &m_Signaler,
                     [&](EUIMode, std::uint32_t, sv_wrapper const&, sv_wrapper const&,
                         std::uintptr_t* answer, ENumericBase base, bool setInitialValue,
                         std::uintptr_t max, std::uintptr_t min) {
                         EXPECT_EQ(base, ENumericBase::Decimal);
                         EXPECT_TRUE(setInitialValue);
                         EXPECT_EQ(*answer, 9u);
                         EXPECT_EQ(max, 9u);
                         EXPECT_EQ(min, 1u);
                         *answer = answered;
                     });
    for (CRow const& row : {CRow{4, 4}, CRow{0, 1}, CRow{99, 9}}) {
        answered = row.m_Answer;
        EXPECT_EQ(m_Operator.ChooseLimit(9), row.m_Limit);
    }
}

TEST_F(COperatorTest, GoesOnOrStopsAsTheOperatorSaysAndShowsThatItWaits)
{
    for (bool const goesOn : {true, false}) {
        QObject const receiver;
        QObject::connect(&m_Signaler, &CQtSignaler::BooleanChoice, &receiver,
                         [goesOn](EUIMode, std::uint32_t, sv_wrapper const&, bool* answer) {
                             EXPECT_EQ(UIHelperBase::UserInputState(), EUserInputState::Waiting);
                             *answer = goesOn;
                         });
        EXPECT_EQ(m_Operator.ContinuesAfter("a failure"), goesOn);
        EXPECT_EQ(UIHelperBase::UserInputState(), EUserInputState::Idle);
    }
}

TEST_F(COperatorTest, HandsBackWhereToSaveTheReport)
{
    QObject::connect(&m_Signaler, &CQtSignaler::PickSingleFile, &m_Signaler,
                     [](sv_wrapper const&, sv_wrapper const& folder, sv_wrapper const& name)
                         -> std::optional<CSafeString> { return CSafeString(folder) + name; });
    EXPECT_EQ(m_Operator.ChooseReportFile("/reports/", "today"), "/reports/today");
}
