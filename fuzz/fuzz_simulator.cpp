// The services of a simulated device: a sequence of requests, each with an octet for the service, one for the room of
// the answer and a run of parameters. The device has objects of every kind that services treat apart; requests change
// it for those that follow. What it answers must be within its room, and no request may leave it without its objects'
// invariants: the device object is there, and the list is as long as it says. The clock goes on from one request to the
// next, so that what the device does by itself is done as well.
#include "fuzz/Input.h"
#include "simulator/Generate.h"
#include "simulator/server/Services.h"

#include <cstdlib>

using namespace sim;

namespace {

constexpr std::size_t roomOf[] = {50, 128, 480, 1476, 64 * 1024, 256 * 1024};

void Require(bool condition) {
    if (!condition)
        std::abort();
}

DeviceConfig Furnished() {
    Counts counts;
    counts.Points = 6;
    counts.Trends = 1;
    counts.Multiples = 1;
    counts.Records = 5;
    counts.Capacity = 20;
    DeviceConfig device = GenerateConfig(counts).Devices.at(0);
    device.Instance = 5;
    device.MaxObjects = 60;
    device.Backup.emplace();
    device.Backup->Files = {{10, 1}};
    const auto add = [&device](BACSTAC_OBJECT_TYPE type) -> ObjectConfig& {
        ObjectConfig object;
        object.Id = {type, 50};
        return device.Objects.emplace_back(std::move(object));
    };
    for (const BACSTAC_OBJECT_TYPE type : {1U, 4U, 6U, 9U, 15U, 17U, 19U, 25U})
        add(type);
    FileConfig stream;
    stream.Octets = "octets of a file";
    stream.MaxSize = 4096;
    add(10).File = stream;
    FileConfig records;
    records.OfRecords = true;
    records.Records = {"one", "two", ""};
    records.MaxSize = 4096;
    ObjectConfig& file = add(10);
    file.Id.Instance = 51;
    file.File = records;
    ObjectConfig& alarm = add(0);
    alarm.IntrinsicReporting = true;
    alarm.Event = EventConfig{3, false, 1, 0};
    ObjectConfig& value = add(2);
    value.Commandable = true;
    return device;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const DeviceConfig config = Furnished();
    static Scratch scratch;
    LocalTime now = 0;
    Device device(config, [&now] { return now; });
    Input input(data, size);
    for (unsigned requests = 0; !input.AtEnd() && requests < 50; ++requests) {
        const auto service = static_cast<bacnet::ConfirmedService>(input.Octet() % 32);
        const std::uint8_t roomOctet = input.Octet();
        const AnswerRoom room{roomOf[roomOctet % std::size(roomOf)], roomOctet >= 128};
        now += HUNDREDTHS_PER_SECOND * (roomOctet + 1); // delays end, schedules go on
        device.Run();
        device.TakeMessages();
        const auto lock = device.Lock();
        const Outcome outcome = Serve(device, service, input.Run(), room, scratch);
        if (outcome.What == Outcome::Kind::ack)
            Require(outcome.Parameters.size() <= room.Octets);
        if (outcome.What == Outcome::Kind::error) {
            std::uint8_t octets[64];
            bacnet::Writer writer(octets);
            EncodeError(service, outcome, writer);
            Require(!writer.Overflow());
        }
        Require(device.Find(device.Id()) != nullptr);
    }
    Require(device.ObjectList().size() <= config.MaxObjects);
    return 0;
}
