#include "tests/support/FakeLog.h"
#include "tests/support/FakeOperator.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Notices : public ::testing::Test {
protected:
    CEventList m_events;
    CFakeLog m_log{m_events};
    CFakeOperator m_op{m_events};
};

TEST_F(Notices, AreBoxesForAnOperatorAndLinesOfTheLogWithoutOne) {
    NotifyError(m_op, "100 % wrong", true);
    NotifyError(m_op, "100 % wrong", false);
    NotifyOperator(m_op, "done", true);
    NotifyOperator(m_op, "done", false);
    EXPECT_THAT(m_events.Take(), ElementsAre("Box(Error, 100 % wrong, error, OK)", "E: 100 % wrong",
                                             "Box(Information, done, information, OK)", "I: done"));
}

TEST_F(Notices, AFailedCallIsReportedWithItsReason) {
    ReportFailure(m_op, "ReadProperty", 31, nullptr, true);
    ReportFailure(m_op, "ReadProperty", 31, nullptr, false);
    EXPECT_THAT(m_events.Take(),
                ElementsAre("Box(Error, ReadProperty\r\nstatus 31, error, OK)", "E: ReadProperty - status 31"));
}

TEST_F(Notices, ASuccessIsNoReportForAnOperatorOnly) {
    ReportFailure(m_op, "ReadProperty", 0, nullptr, true);
    EXPECT_THAT(m_events.Take(), IsEmpty());
    ReportFailure(m_op, "ReadProperty", 0, nullptr, false);
    EXPECT_THAT(m_events.Take(), ElementsAre("E: ReadProperty - status 0"));
}

TEST_F(Notices, ABoxInTheLogIsOneLine) {
    LogBox({"Error", "one\r\ntwo\r\n%s", BoxIcon::Error, BoxButtons::Ok});
    LogBox({"Confirmation", "Go on?", BoxIcon::Question, BoxButtons::YesNoCancel});
    EXPECT_THAT(m_events.Take(), ElementsAre("E: one - two - %s", "I: Go on?"));
}

} // namespace
