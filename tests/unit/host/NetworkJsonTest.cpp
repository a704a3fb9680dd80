#include "host/NetworkJson.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

namespace {

using bacnet::PortStatus;

TEST(NetworkJson, TellsHowEachPortStands) {
    PortStatus plain;
    plain.Address = "10.0.0.1:47808";
    PortStatus foreign;
    foreign.Network = 5;
    foreign.ToldNetwork = 6;
    foreign.Address = "10.0.0.2:47808";
    foreign.Broadcasting.Foreign = bacnet::ForeignSettings{{0x0A010101, 47808}, 300};
    foreign.Broadcasting.Registration = bacnet::ForeignRegistration::State::refused;
    EXPECT_EQ(PortsJson({plain, foreign}).dump(),
              R"([{"number":0,"address":"10.0.0.1:47808","enabled":true},)"
              R"({"number":5,"address":"10.0.0.2:47808","toldNumber":6,"enabled":true,)"
              R"("foreign":{"bbmd":"10.1.1.1:47808","ttl":300,"registration":"refused"}}])");
}

TEST(NetworkJson, HoldsTheTablesOfABbmd) {
    PortStatus port;
    port.Address = "10.0.0.1:47808";
    port.Broadcasting.IsBbmd = true;
    port.Broadcasting.Table = {{{0x0A000001, 47808}}, {{0x0A020101, 47809}, 0xFFFFFF00}};
    port.Broadcasting.ForeignDevices = {{{0xC0A80107, 47900}, 60, 75}};
    EXPECT_EQ(PortsJson({port})[0]["bbmd"].dump(),
              R"({"table":[{"address":"10.0.0.1:47808","mask":"255.255.255.255"},)"
              R"({"address":"10.2.1.1:47809","mask":"255.255.255.0"}],)"
              R"("foreignDevices":[{"address":"192.168.1.7:47900","ttl":60,"remaining":75}]})");
    EXPECT_EQ(PortsJson({}).dump(), "[]");
}

} // namespace
