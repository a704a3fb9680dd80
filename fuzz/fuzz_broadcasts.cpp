// What a BACnet/IP port does about broadcasts, as a management device, as a foreign device, and as neither: a sequence
// of datagrams, each with an octet for where it came from and how much time passed.
#include "fuzz/Input.h"
#include "platform/stack/transport/BroadcastManagement.h"

#include <cstdlib>

using namespace bacnet;

namespace {

constexpr BipAddress self{0x0A000001, BACNET_IP_PORT};
constexpr std::size_t foreignRoom = 3;

void Require(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const std::uint8_t role = input.Octet();
    std::optional<ForeignSettings> foreign;
    std::optional<BbmdSettings> bbmd;
    if (role % 3 == 1) {
        foreign.emplace();
        foreign->Bbmd = {0x0A000002, BACNET_IP_PORT};
    } else if (role % 3 == 2) {
        bbmd.emplace();
        bbmd->Table = {{self, 0xFFFFFFFF}, {{0x0A000002, BACNET_IP_PORT}, 0xFFFFFFFF}, {{0x0A010003, 1}, 0xFFFF0000}};
        bbmd->ForeignDevices = foreignRoom;
        bbmd->AcceptWrite = (role & 0x80U) != 0;
    }
    std::int64_t now = 0;
    std::size_t sent = 0;
    BroadcastManagement management({self,
                                    {0x0A0000FF, BACNET_IP_PORT},
                                    [&sent](const BipAddress&, std::span<const std::uint8_t> datagram) {
                                        BvllMessage message;
                                        Require(DecodeBvll(datagram, message) == BvllError::none);
                                        ++sent;
                                        return true;
                                    },
                                    [&now] { return now; },
                                    {}},
                                   foreign, bbmd);
    for (unsigned frames = 0; !input.AtEnd() && frames < 100; ++frames) {
        const auto datagram = input.Run();
        const std::uint8_t how = input.Octet();
        const BipAddress from{0x0A000000U + (how & 7U), BACNET_IP_PORT};
        BvllMessage message;
        if (DecodeBvll(datagram, message) == BvllError::none) {
            const std::size_t before = sent;
            switch (message.Function) {
            case BvlcFunction::original_unicast:
                break;
            case BvlcFunction::original_broadcast:
            case BvlcFunction::forwarded_npdu:
            case BvlcFunction::distribute_broadcast:
                management.OnBroadcast(message, from, static_cast<BroadcastManagement::Channel>(how >> 3 & 1U));
                break;
            default:
                management.OnControl(message, from);
            }
            // One for each other station of the tables and for the own network, or an answer.
            const BroadcastStatus status = management.Status();
            Require(sent - before <= status.Table.size() + foreignRoom + 2);
            Require(status.ForeignDevices.size() <= foreignRoom && status.Table.size() <= MAX_TABLE_ENTRIES);
        }
        now += (how >> 4) * std::int64_t{10000};
        management.Attend();
    }
    return 0;
}
