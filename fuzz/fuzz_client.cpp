// The services of the client against a device that sends what the fuzzer wants. The first octet chooses the call. Then
// come the device's answers, one to each PDU that it gets: an octet with their form and a run of octets. The calls fill
// buffers of their own, of the size that is said; each must end, and with a status that has words.
#include "fuzz/Input.h"
#include "fuzz/QueuedLink.h"
#include "platform/stack/client/BacnetClient.h"
#include "tests/catalogue/Calls.h"

#include <cstdlib>

using namespace bacnet;

namespace {

constexpr unsigned device = 5;
constexpr BACSTAC_ADDRESS address{0, 0, 0, {10, 0, 0, 5, 0xBA, 0xC0}, 6};
constexpr std::size_t mostAnswers = 200;

void Require(bool condition) {
    if (!condition)
        std::abort();
}

// Forms of an answer, by the two lowest bits.
enum Form : std::uint8_t {
    acknowledgement, // the run stands behind the header of a ComplexACK that fits the request
    apdu,            // with the invoke id of the request
    npdu,
    segment, // the header of a segment that fits, but for its number: the run's first octets are number and window
};

class Device final : public QueuedLink {
public:
    Device(QueuedClock& clock, Input& input) : QueuedLink(clock), m_input(input) {}

private:
    void Sent(const Mac& destination, std::span<const std::uint8_t> octets) override {
        const bool plain = octets.size() > 5 && (octets[1] & 0xA8U) == 0;
        if (destination.Empty() || !plain || m_input.AtEnd() || m_answers++ >= mostAnswers)
            return;
        const unsigned type = octets[2] >> 4;
        if (type == 0) {
            m_id = octets[4];
            m_service = octets[(octets[2] & 0x08U) != 0 ? 7 : 5];
        } else if (type != 4) {
            return;
        }
        const std::uint8_t form = m_input.Octet();
        Octets run;
        for (const std::uint8_t octet : m_input.Run())
            run.push_back(octet);
        Octets answer;
        switch (form & 3U) {
        case acknowledgement:
            answer = {0x01, 0x00, 0x30, m_id, m_service};
            break;
        case apdu:
            answer = {0x01, 0x00};
            if (run.size() > 1)
                run[1] = m_id;
            break;
        case npdu:
            break;
        case segment:
            answer = {0x01, 0x00, static_cast<std::uint8_t>(0x38 | (form & 4U)), m_id};
            if (run.size() > 1)
                run.insert(run.begin() + 2, m_service);
            break;
        }
        answer.insert(answer.end(), run.begin(), run.end());
        Queue(std::move(answer), Mac(std::span(address.Mac).first(6)));
    }

    Input& m_input;
    std::size_t m_answers = 0;
    std::uint8_t m_id = 0;
    std::uint8_t m_service = 0;
};

constexpr catalogue::Call calls[] = {
    catalogue::ReadProperty,   catalogue::ReadPropertyBuffer, catalogue::ReadPropertyAsync,
    catalogue::ReadMultiple,   catalogue::ReadPropertyList,   catalogue::CountObjects,
    catalogue::ListObjects,    catalogue::ReadRange,          catalogue::ReadConditional,
    catalogue::WriteProperty,  catalogue::WriteMultiple,      catalogue::CreateObject,
    catalogue::DeleteObject,   catalogue::Communication,      catalogue::Reinitialize,
    catalogue::ReadFileStream, catalogue::ReadFileRecords,    catalogue::WriteFile,
    catalogue::AlarmSummary,   catalogue::EnrollmentSummary,  catalogue::EventInformation,
    catalogue::DeviceTime,
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const catalogue::Call call = calls[input.Octet() % std::size(calls)];

    QueuedClock clock;
    ClientConfig config;
    config.Transactions.BackgroundThread = false;
    config.Transactions.TimeoutMs = 20;
    config.Transactions.Retries = 1;
    config.Transactions.SegmentTimeoutMs = 20;
    config.Transactions.AnswerTimeoutMs = 2000;
    config.Transactions.RouterWaitMs = 0;
    std::vector<ClientLink> links;
    links.push_back({std::make_unique<Device>(clock, input), 0});
    BacnetClient client(config, std::move(links), &clock);
    BACnet = &client;
    IAm announcement;
    announcement.Device = device;
    announcement.MaxApdu = 1476;
    announcement.Vendor = 260;
    BACSTAC_ADDRESS former{};
    client.Directory().Learn(announcement, address, former);

    const catalogue::Outcome outcome = call({client, device, address});
    Require(outcome.Result != "overrun" && outcome.Result != "not one start and end");
    const std::string text = CBacGeneral::GetErrorText(outcome.Status, &outcome.Error);
    Require(!text.empty() && text.find('\n') == std::string::npos);
    BACnet = nullptr;
    return 0;
}
