#include "simulator/model/ServicesSupported.h"

#include <algorithm>

namespace sim {

namespace {

using bacnet::ConfirmedService;

constexpr unsigned SERVICES = 40; // bits as of revision 14

// The bits are numbered otherwise than the services (BACnetServicesSupported, clause 21).
struct ServiceBit {
    ConfirmedService Service;
    unsigned Bit;
};

constexpr ServiceBit CONFIRMED[] = {
    {ConfirmedService::acknowledgeAlarm, 0},       {ConfirmedService::getAlarmSummary, 3},
    {ConfirmedService::getEnrollmentSummary, 4},   {ConfirmedService::getEventInformation, 39},
    {ConfirmedService::subscribeCov, 5},           {ConfirmedService::subscribeCovProperty, 38},
    {ConfirmedService::atomicReadFile, 6},         {ConfirmedService::atomicWriteFile, 7},
    {ConfirmedService::addListElement, 8},         {ConfirmedService::removeListElement, 9},
    {ConfirmedService::createObject, 10},          {ConfirmedService::deleteObject, 11},
    {ConfirmedService::readProperty, 12},          {ConfirmedService::readPropertyConditional, 13},
    {ConfirmedService::readPropertyMultiple, 14},  {ConfirmedService::writeProperty, 15},
    {ConfirmedService::writePropertyMultiple, 16}, {ConfirmedService::deviceCommunicationControl, 17},
    {ConfirmedService::reinitializeDevice, 20},    {ConfirmedService::readRange, 35},
};

constexpr unsigned UNCONFIRMED[] = {
    32, // time-Synchronization
    33, // who-Has
    34, // who-Is
    36, // utc-Time-Synchronization
};

} // namespace

Value ServicesSupported(const DeviceConfig& config) {
    BACSTAC_BIT_STRING bits{};
    bits.BitCount = SERVICES;
    const auto set = [&](unsigned bit) {
        bits.Bits[bit / 8] = static_cast<std::uint8_t>(bits.Bits[bit / 8] | 1U << bit % 8);
    };
    const auto& lacks = config.LacksServices;
    for (const ServiceBit& known : CONFIRMED)
        if (std::find(lacks.begin(), lacks.end(), known.Service) == lacks.end())
            set(known.Bit);
    for (const unsigned bit : UNCONFIRMED)
        set(bit);
    return Value::BitString(bits);
}

} // namespace sim
