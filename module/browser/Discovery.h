// Who-Is and the devices that answer it: what "Discover devices" knows. On the console thread.
#pragma once

#include "module/browser/Scan.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

class CBacGeneral;

class CDiscovery {
public:
    struct Row {
        unsigned device = 0;
        std::uint16_t network = 0; // as it is shown: the own number for the local network
        std::string address;
        bool isTicked = true;
        std::string rival; // address of another station that claims the instance too; empty when there is none

        friend bool operator==(const Row&, const Row&) = default;
    };

    // ownNetwork: the number that stands for the local network.
    CDiscovery(CBacGeneral& bacnet, std::uint16_t ownNetwork) : m_bacnet(bacnet), m_ownNetwork(ownNetwork) {}

    // What the operator typed. A text that is no number, or too great a one, filters nothing.
    void SetNetwork(const std::string& text);
    void SetLowLimit(const std::string& text);
    void SetHighLimit(const std::string& text);

    // To the devices that the filters name; whoever has answered stays.
    BACSTAC_STATUS SendWhoIs();
    // An announcement, with the network as it came. The latest address of a device holds.
    void TakeIAm(BACSTAC_ADDRESS address, unsigned device);

    // The answers that pass the filters, ascending by instance.
    std::vector<Row> GetRows() const;
    void SetTicked(unsigned device, bool isTicked);
    // The ticked ones of the rows as they are shown.
    DeviceAddresses GetPicked(const std::vector<Row>& shown) const;

private:
    bool Passes(unsigned device, const BACSTAC_ADDRESS& address) const;

    CBacGeneral& m_bacnet;
    const std::uint16_t m_ownNetwork;
    std::uint16_t m_network = BACSTAC_ALL_NETWORKS; // 0: the local one
    std::uint32_t m_low = 0;
    std::uint32_t m_high = BACSTAC_MAX_INSTANCE;
    DeviceAddresses m_answers;
    DeviceAddresses m_rivals; // the address before, where a second station claims an instance
    std::set<unsigned> m_unticked;
};
