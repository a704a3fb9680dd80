#include "tests/unit/history/TransferSite.h"

#include "api/bacnet/Enums.h"
#include "api/bacnet/Log.h"
#include "module/history/HistoryState.h"

class TransferSite::Sink : public CQilBAC_ErrLog::ISink {
public:
    explicit Sink(TransferSite& site) : m_site(site) {}
    void OnLine(CQilBAC_ErrLog::KIND kind, const std::string& text) override {
        static const char* const KINDS[] = {"I: ", "E: ", "D: "};
        m_site.log.Add(KINDS[kind] + text);
        m_site.all.Add(KINDS[kind] + text);
    }

private:
    TransferSite& m_site;
};

TransferSite::TransferSite() {
    CQilBAC_ErrLog::Instance().SetSink(std::make_shared<Sink>(*this));
    kernel.events = &all;
    bacnet.OnCall([this](const std::string& event) { all.Add(event); });
    manager =
        std::make_unique<CBACnetHistoryManager>(&settings, HistoryServices{bacnet, driver, lock, clock}, statePath);
}

TransferSite::~TransferSite() {
    EXPECT_TRUE(WaitForTransfers(20000));
    CQilBAC_ErrLog::Instance().SetSink(nullptr);
}

BACSTAC_DEV_OBJ_PROP_REF TransferSite::Reference(BACSTAC_OBJECT_ID object, BACSTAC_PROPERTY_ID property) {
    BACSTAC_DEV_OBJ_PROP_REF reference{};
    reference.ObjectId = object;
    reference.Property = property;
    reference.ArrayIndex = 0xFFFFFFFF;
    reference.DeviceId.Type = OBJ_DEVICE;
    return reference;
}

BACSTAC_DEV_OBJ_PROP_REF TransferSite::Reference(BACSTAC_OBJECT_ID object, BACSTAC_PROPERTY_ID property,
                                                 unsigned device) {
    BACSTAC_DEV_OBJ_PROP_REF reference = Reference(object, property);
    reference.DevicePresent = 1;
    reference.DeviceId.Instance = device;
    return reference;
}

std::string TransferSite::Printed(const BACSTAC_DEV_OBJ_PROP_REF& reference) {
    char text[101] = {};
    CBacGeneral::PrintDevObjPropReference(text, sizeof text, reference);
    return text;
}

void TransferSite::AddTrend(unsigned device, unsigned instance, const std::string& name, std::uint32_t tagId) {
    const std::string text = std::to_string(device);
    if (!bacnet.FindDev(device)) {
        bacnet.AddDevice(device);
        bacnet.SetProtocol(device, 1, 14);
    }
    CDeviceSettings* found = nullptr;
    for (const auto& entry : settings.devices)
        if (entry && entry->device == text)
            found = entry.get();
    if (found == nullptr)
        found = &AddDeviceSettings(text);
    found->objects.push_back(name);
    const BACSTAC_OBJECT_ID trend{OBJ_TREND_LOG, instance};
    bacnet.AddObject(device, trend, name);
    SetReferences(device, trend, {Reference({OBJ_ANALOG_INPUT, 1})});
    if (tagId == NO_TAG)
        tagId = m_deviceTags.try_emplace(device, 17 + static_cast<std::uint32_t>(m_deviceTags.size())).first->second;
    const std::string tag = m_deviceTags.size() < 2 ? "TK" : "TK" + std::to_string(tagId);
    AddTag(tagId, device, {OBJ_ANALOG_INPUT, 1}, PROP_PRESENT_VALUE, TAG_WHOLE_VALUE, tag);
    kernel.tagIds.try_emplace("LOCAL:" + tag, tagId);
}

CDeviceSettings& TransferSite::AddDeviceSettings(const std::string& device, std::vector<std::string> objects) {
    settings.devices.push_back(std::make_unique<CDeviceSettings>());
    settings.devices.back()->device = device;
    settings.devices.back()->objects = std::move(objects);
    return *settings.devices.back();
}

void TransferSite::AddTag(std::uint32_t tagId, unsigned device, BACSTAC_OBJECT_ID object, BACSTAC_PROPERTY_ID property,
                          std::int32_t statusBit, const std::string& name) {
    CTag tag;
    tag.tagId = tagId;
    tag.device = device;
    tag.objectType = object.Type;
    tag.objectInstance = object.Instance;
    tag.property = property;
    tag.statusBit = statusBit;
    driver.m_tags.RegisterTag(tag);
    kernel.AddTag(tagId, name);
}

void TransferSite::SetReferences(unsigned device, BACSTAC_OBJECT_ID trend,
                                 const std::vector<BACSTAC_DEV_OBJ_PROP_REF>& references) {
    bacnet.SetValue(device, trend, PROP_LOG_DEVICE_OBJECT_PROPERTY, FakeValue::Of(TYPE_DEV_OBJ_PROP_REF, references));
}

bool TransferSite::Transfer(TransferRequest* request) {
    const bool started = manager->StartTransfer(false, request);
    EXPECT_TRUE(WaitForTransfers(20000));
    EXPECT_FALSE(manager->IsRunning());
    return started;
}

TransferRequest* TransferSite::Request(unsigned device, unsigned type, unsigned instance) {
    return new TransferRequest{{type, instance}, 1, {OBJ_DEVICE, device}};
}

std::string TransferSite::StoredPosition(const std::string& name) const {
    return CProfileFile(statePath, "Trend position").Read("Trend position", name);
}

std::vector<std::uint32_t> TransferSite::StoredTags() const {
    std::vector<std::uint32_t> tags;
    for (const VfiRecord& record : kernel.GetRecords())
        tags.push_back(record.tagId);
    return tags;
}

std::vector<double> TransferSite::StoredValues() const {
    std::vector<double> values;
    for (const VfiRecord& record : kernel.GetRecords())
        values.push_back(VfiValue(record));
    return values;
}
