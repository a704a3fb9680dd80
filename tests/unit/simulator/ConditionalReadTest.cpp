// ReadPropertyConditional of a simulated device, octet by octet.
#include "tests/unit/simulator/Site.h"

namespace sim::testing {
namespace {

class ConditionalRead : public ::testing::Test {
protected:
    void SetUp() override {
        // Analog input 1 at 20.25 degrees, multi-state value 2 at 3.
        Site.Config.Devices.push_back(SmallDevice(Site.Block));
        Site.Start();
    }
    std::string Ask(const std::string& parameters) { return Site.Ask("00 05 01 0D " + parameters); }
    RunningSite Site;
};

const std::string INPUT = "0C 00 00 00 01";
const std::string STATES = "0C 04 C0 00 02";
const std::string DEVICE = "0C 02 00 04 D2";

// [0] { [0] logic, [1] { criteria } }
std::string Select(const std::string& logic, const std::string& criteria) {
    return "0E 09 " + logic + " 1E " + criteria + " 1F 0F";
}
// [0] present value, [2] relation, [3] { value }
std::string Value85(const std::string& relation, const std::string& value) {
    return "09 55 29 " + relation + " 3E " + value + " 3F";
}

TEST_F(ConditionalRead, SelectsAllObjects) {
    EXPECT_EQ(Ask("0E 09 02 0F"), "30 01 0D " + DEVICE + " " + INPUT + " " + STATES);
}

TEST_F(ConditionalRead, ReadsThePropertiesOfWhatItSelects) {
    // [1] { present value, units }
    EXPECT_EQ(Ask(Select("00", Value85("00", "44 41 A2 00 00")) + " 1E 09 55 09 75 1F"),
              "30 01 0D " + INPUT + " 1E 29 55 4E 44 41 A2 00 00 4F 29 75 4E 91 3E 4F 1F");
    EXPECT_EQ(Ask(Select("00", Value85("00", "21 03")) + " 1E 09 75 09 6E 19 02 1F"),
              "30 01 0D " + STATES + " 1E 29 75 5E 91 02 91 20 5F 29 6E 39 02 4E 74 00 6C 6F 77 4F 1F");
}

TEST_F(ConditionalRead, ComparesNumbersInAllWays) {
    EXPECT_EQ(Ask(Select("00", Value85("01", "44 41 A2 00 00"))), "30 01 0D " + STATES); // !=
    EXPECT_EQ(Ask(Select("00", Value85("02", "44 40 80 00 00"))), "30 01 0D " + STATES); // < 4.0
    EXPECT_EQ(Ask(Select("00", Value85("03", "44 40 80 00 00"))), "30 01 0D " + INPUT);  // > 4.0
    EXPECT_EQ(Ask(Select("00", Value85("04", "21 03"))), "30 01 0D " + STATES);          // <= 3
    EXPECT_EQ(Ask(Select("00", Value85("05", "21 15"))), "30 01 0D");                    // >= 21
}

TEST_F(ConditionalRead, JoinsCriteriaByAndAndOr) {
    const std::string both = Value85("03", "21 02") + " " + Value85("02", "21 0A");
    EXPECT_EQ(Ask(Select("00", both)), "30 01 0D " + STATES);
    EXPECT_EQ(Ask(Select("01", both)), "30 01 0D " + INPUT + " " + STATES);
}

TEST_F(ConditionalRead, ComparesTexts) {
    // The name is "Analog Input 1".
    EXPECT_EQ(Ask(Select("00", "09 4D 29 00 3E 75 0F 00 41 6E 61 6C 6F 67 20 49 6E 70 75 74 20 31 3F")),
              "30 01 0D " + INPUT);
}

TEST_F(ConditionalRead, RejectsWhatIsMalformed) {
    EXPECT_EQ(Ask(""), "60 01 05");
    EXPECT_EQ(Ask("0E 09 02"), "60 01 04");
    EXPECT_EQ(Ask("0E 09 03 0F"), "60 01 08");
    EXPECT_EQ(Ask(Select("00", Value85("06", "21 01"))), "60 01 08");
}

} // namespace
} // namespace sim::testing
