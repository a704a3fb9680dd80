// Switching networks and binding them to their control tags.
#include "module/console/Networks.h"

#include "module/console/Manager.h"
#include "tests/support/FakeBacGeneral.h"
#include "tests/support/FakeLog.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;

TEST(Networks, SwitchingIsLoggedBeforeItIsDone) {
    CEventList events;
    const CFakeLog log(events);
    CFakeBacGeneral bacnet(events);
    SwitchNetwork(bacnet, true, 3);
    SwitchNetwork(bacnet, false, 65534);
    EXPECT_THAT(events.Take(),
                ElementsAre("D: BACnet: Info, VPIQLBCN, Enabling network 3 by trigger tag", "EnableNetwork(3)",
                            "D: BACnet: Info, VPIQLBCN, Disabling network 65534 by trigger tag",
                            "DisableNetwork(65534)"));
}

// Without a driver every tag is unknown, which names each trigger in the log.
TEST(Networks, EachControlTagIsRegisteredInTheOrderOfTheNetworks) {
    CEventList events;
    const CFakeLog log(events);
    CBDCManager manager;
    RegisterNetworkTriggers(manager, {{65534, "HI"}, {0, "LO"}, {2, "MID"}});
    EXPECT_THAT(events.Take(),
                ElementsAre("E: BACnet: Error, RegisterTriggerTag(EnableNetwork-0), Tag LO not found",
                            "E: BACnet: Error, RegisterTriggerTag(EnableNetwork-2), Tag MID not found",
                            "E: BACnet: Error, RegisterTriggerTag(EnableNetwork-65534), Tag HI not found"));
}

} // namespace
