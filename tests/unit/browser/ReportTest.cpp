// Boxes for what the operator started, log lines for the rest; and the wait for one answer.
#include "module/browser/Report.h"

#include "api/bacnet/PropertyValue.h"
#include "module/browser/AsyncCallBack.h"
#include "module/console/Operator.h"
#include "tests/unit/browser/BrowserSite.h"

using testing::ElementsAre;
using testing::IsEmpty;

class Report : public BrowserSite, public IOperator, public IProgressSource {
protected:
    BoxAnswer ShowBox(const OperatorBox& box) override {
        m_boxes.push_back(box.title + ": " + box.text);
        return BoxAnswer::Ok;
    }
    std::optional<std::string> PickFile(const FilePick&) override { return std::nullopt; }
    std::optional<std::string> PickFolder(const std::string&, const std::string&) override { return std::nullopt; }

    // A progress that tells when it goes.
    class CTold : public CFakeProgress {
    public:
        explicit CTold(Report& test) : CFakeProgress(test.m_events) { m_isCancelled = test.m_isGivenUp; }
        ~CTold() override { m_events.Add("closed"); }
    };
    std::unique_ptr<IProgress> OpenProgress() override { return std::make_unique<CTold>(*this); }

    Lines m_boxes;
    bool m_isGivenUp = false;
};

TEST_F(Report, AFailureOfTheOperatorsIsABox) {
    const BACSTAC_ERROR error{2, 2, 32};
    const std::string reason = CBacGeneral::GetErrorText(BACSTAC_STATUS_ERROR, &error);
    ReportFailure(*this, "X", BACSTAC_OK, &error, true);
    EXPECT_THAT(m_boxes, IsEmpty());
    ReportFailure(*this, "X", BACSTAC_STATUS_ERROR, &error, true);
    EXPECT_THAT(m_boxes, ElementsAre("Error: X\r\n" + reason));
    EXPECT_THAT(m_log.Take(), IsEmpty());
}

TEST_F(Report, AFailureOfItsOwnIsALine) {
    const BACSTAC_ERROR error{2, 2, 32};
    ReportFailure(*this, "X", BACSTAC_STATUS_ERROR, &error, false);
    ReportFailure(*this, "X", BACSTAC_OK, nullptr, false);
    EXPECT_THAT(m_log.Take(), ElementsAre("E: X - " + CBacGeneral::GetErrorText(BACSTAC_STATUS_ERROR, &error),
                                          "E: X - " + CBacGeneral::GetErrorText(BACSTAC_OK, nullptr)));
    EXPECT_THAT(m_boxes, IsEmpty());
}

TEST_F(Report, NewsAreNoErrors) {
    NotifyOperator(*this, "done 100%s", true);
    NotifyOperator(*this, "done 100%s", false);
    NotifyError(*this, "bad", true);
    EXPECT_THAT(m_boxes, ElementsAre("Information: done 100%s", "Error: bad"));
    EXPECT_THAT(m_log.Take(), ElementsAre("I: done 100%s"));
}

TEST_F(Report, TheWaitForAnAnswerShowsAndGoes) {
    AddDevice(10, "Beta");
    CPropertyContents contents;
    COBAsyncCallBack wait(*this);
    EXPECT_EQ(m_bacnet.AsyncReadProperty(10, Device(10), PROP_OBJECT_NAME, BACSTAC_NO_INDEX, contents, nullptr, wait),
              BACSTAC_OK);
    EXPECT_THAT(m_events.Take(),
                ElementsAre("0 Waiting for device answer", "ReadProperty(10, (8, 10), 77, -1)", "closed"));
}

TEST_F(Report, AClosedWaitGivesUp) {
    AddDevice(10, "Beta");
    m_isGivenUp = true;
    CPropertyContents contents;
    COBAsyncCallBack wait(*this);
    EXPECT_EQ(m_bacnet.AsyncReadProperty(10, Device(10), PROP_OBJECT_NAME, BACSTAC_NO_INDEX, contents, nullptr, wait),
              BACSTAC_STATUS_CANCELLED);
    EXPECT_THAT(m_events.Take(), ElementsAre("0 Waiting for device answer", "closed"));
}

TEST_F(Report, AWaitThatNeverBeganEndsWell) {
    COBAsyncCallBack wait(*this);
    wait.OnWaitEnd();
    EXPECT_EQ(wait.OnWaitPoll(), 0);
    EXPECT_THAT(m_events.Take(), IsEmpty());
}
