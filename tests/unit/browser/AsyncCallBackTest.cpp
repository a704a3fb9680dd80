// The wait for one answer.
#include "module/browser/AsyncCallBack.h"

#include "api/bacnet/PropertyValue.h"
#include "tests/unit/browser/BrowserSite.h"

using testing::ElementsAre;
using testing::IsEmpty;

class AsyncCallBack : public BrowserSite, public IProgressSource {
protected:
    // A progress that tells when it goes.
    class CTold : public CFakeProgress {
    public:
        explicit CTold(AsyncCallBack& test) : CFakeProgress(test.m_events) { m_isCancelled = test.m_isGivenUp; }
        ~CTold() override { m_events.Add("closed"); }
    };
    std::unique_ptr<IProgress> OpenProgress() override { return std::make_unique<CTold>(*this); }

    bool m_isGivenUp = false;
};

TEST_F(AsyncCallBack, TheWaitForAnAnswerShowsAndGoes) {
    AddDevice(10, "Beta");
    CPropertyContents contents;
    COBAsyncCallBack wait(*this);
    EXPECT_EQ(m_bacnet.AsyncReadProperty(10, Device(10), PROP_OBJECT_NAME, BACSTAC_NO_INDEX, contents, nullptr, wait),
              BACSTAC_OK);
    EXPECT_THAT(m_events.Take(), ElementsAre("0 Waiting for device answer", "0 Waiting for device answer",
                                             "ReadProperty(10, (8, 10), 77, -1)", "closed"));
}

TEST_F(AsyncCallBack, AClosedWaitGivesUp) {
    AddDevice(10, "Beta");
    m_isGivenUp = true;
    CPropertyContents contents;
    COBAsyncCallBack wait(*this);
    EXPECT_EQ(m_bacnet.AsyncReadProperty(10, Device(10), PROP_OBJECT_NAME, BACSTAC_NO_INDEX, contents, nullptr, wait),
              BACSTAC_STATUS_CANCELLED);
    EXPECT_EQ(m_events.Take().back(), "closed");
}

TEST_F(AsyncCallBack, AWaitThatNeverBeganEndsWell) {
    COBAsyncCallBack wait(*this);
    wait.OnWaitEnd();
    EXPECT_EQ(wait.OnWaitPoll(), 0);
    EXPECT_THAT(m_events.Take(), IsEmpty());
}
