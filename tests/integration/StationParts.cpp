#include "tests/integration/StationParts.h"

#include "api/bacnet/Dir.h"
#include "api/bacnet/Log.h"

#include <algorithm>
#include <stdexcept>

namespace integration {
namespace {

constexpr unsigned THREAD_TRACE = 0x20;

class Sink final : public CQilBAC_ErrLog::ISink {
public:
    explicit Sink(std::shared_ptr<CEventList> events) : m_events(std::move(events)) {}
    void OnLine(CQilBAC_ErrLog::KIND kind, const std::string& text) override {
        if (kind == CQilBAC_ErrLog::KIND_INFORMATION)
            m_events->Add("I: " + text);
        else if (kind == CQilBAC_ErrLog::KIND_ERROR)
            m_events->Add("E: " + text);
        else
            m_events->Add("D: " + text);
    }

private:
    const std::shared_ptr<CEventList> m_events;
};

std::unique_ptr<SqliteHistoryStore> OpenStore(const StationSettings& settings) {
    HistoryError error;
    auto store = SqliteHistoryStore::Open(settings.folder / STORE_FILE, settings.store, error);
    if (!store)
        throw std::runtime_error(error.text);
    return store;
}

KernelSettings SettingsOfKernel(const std::shared_ptr<CEventList>& events) {
    KernelSettings settings;
    settings.stationName = "LOCAL";
    settings.stationNumber = 1;
    settings.traceMask = THREAD_TRACE;
    settings.trace = [events](unsigned, const char* text) { events->Add(std::string("T: ") + text); };
    return settings;
}

std::unique_ptr<bacnet::BacnetClient> OpenClient(const sim::SimulatorConfig& site, const StationSettings& settings) {
    bacnet::ClientConfig config;
    config.Ports.push_back({0, settings.bindAddress, site.Port, "127.255.255.255"});
    config.Transactions = settings.transactions;
    std::string failure;
    auto client = bacnet::BacnetClient::Open(config, failure);
    if (!client)
        throw std::runtime_error(failure);
    return client;
}

} // namespace

bacnet::TransactionSettings StationSettings::FastTransactions() {
    bacnet::TransactionSettings settings;
    settings.TimeoutMs = 300;
    settings.Retries = 1;
    settings.SegmentTimeoutMs = 200;
    settings.RouterWaitMs = 2000;
    settings.IdRestMs = 2000;
    return settings;
}

RecordLines StoredRecords(const std::filesystem::path& folder, bool all) {
    SqliteHistoryStore::Settings settings;
    settings.readOnly = true;
    HistoryError error;
    const auto store = SqliteHistoryStore::Open(folder / STORE_FILE, settings, error);
    std::vector<HistoryCount> counts;
    if (!store || !store->Count(counts, error))
        throw std::runtime_error(error.text);
    RecordLines lines;
    for (const HistoryCount& tag : counts) {
        HistoryQuery query;
        query.tagId = tag.tagId;
        query.all = all;
        const auto add = [&](const VfiRecord& record) {
            lines.push_back(Line(record));
            return true;
        };
        if (!store->Query(query, add, error))
            throw std::runtime_error(error.text);
    }
    std::ranges::sort(lines);
    return lines;
}

StationParts::StationParts(const sim::SimulatorConfig& site, const std::vector<PlannedTag>& tags,
                           const StationSettings& settings)
    : m_lines(std::make_shared<CEventList>()), m_store(OpenStore(settings)),
      m_kernel(SettingsOfKernel(m_lines), *m_store), m_driver(m_driverEvents, m_kernel),
      m_client(OpenClient(site, settings)) {
    m_driver.m_transferChunk = settings.chunk;
    AddTags(tags);
    FillDirectory(site, (settings.folder / "directory").string());
    CQilBAC_ErrLog::Instance().SetSink(std::make_shared<Sink>(m_lines));
}

StationParts::~StationParts() {
    CQilBAC_ErrLog::Instance().SetSink(nullptr);
}

void StationParts::AddTags(const std::vector<PlannedTag>& tags) {
    for (const PlannedTag& planned : tags) {
        TagSettings settings;
        settings.name = planned.name;
        settings.type = TAG_TYPE_ANALOG;
        CTag tag = planned.binding;
        if (m_kernel.AddTag(settings, tag.tagId) != AddTagResult::Added)
            throw std::runtime_error("a tag cannot be added: " + planned.name);
        m_driver.m_tags.RegisterTag(tag);
    }
}

// The directory file names the devices and their trends; all of them are selected for the transfer.
void StationParts::FillDirectory(const sim::SimulatorConfig& site, const std::string& path) {
    CBACnetDir directory;
    for (const SiteDevice& found : DevicesOf(site)) {
        CBACnetDev device;
        device.SetInst(found.Config.Instance);
        device.SetAddr(found.Address);
        auto selected = std::make_unique<CDeviceSettings>();
        selected->device = std::to_string(found.Config.Instance);
        for (const sim::ObjectConfig& object : found.Config.Objects) {
            if (!object.Log)
                continue;
            CBACnetObj trend;
            trend.SetId(object.Id);
            trend.SetName(object.Name);
            device.AddObj(trend);
            selected->objects.push_back(object.Name);
        }
        directory.AddDev(device);
        m_settings.devices.push_back(std::move(selected));
    }
    CBacGeneral::SetDirFileName(path);
    if (!directory.Save(path) || !m_client->LoadDir())
        throw std::runtime_error("the directory file cannot be written");
}

} // namespace integration
