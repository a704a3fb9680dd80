#include "module/history/HistoryModel.h"

#include "api/bacnet/Enums.h"
#include "module/history/TransferStatus.h"
#include "tests/support/EventList.h"
#include "tests/support/FakeBacnet.h"
#include "tests/unit/history/LogEntries.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

BACSTAC_DEV_OBJ_PROP_REF ReferenceTo(BACSTAC_OBJECT_ID object, std::uint32_t present, BACSTAC_OBJECT_ID device) {
    BACSTAC_DEV_OBJ_PROP_REF reference{};
    reference.ObjectId = object;
    reference.Property = PROP_PRESENT_VALUE;
    reference.ArrayIndex = 0xFFFFFFFF;
    reference.DevicePresent = present;
    reference.DeviceId = device;
    return reference;
}

class HistoryModel : public testing::Test {
protected:
    CEventList events;
    CFakeBacnet bacnet{events};
    CHistoryModel model{bacnet};
};

TEST_F(HistoryModel, ListsTheDevicesOfAllNetworksInTheirOrder) {
    bacnet.AddDevice(77, 3);
    bacnet.AddDevice(5);
    bacnet.AddDevice(4194302, 65534);
    model.RebuildDeviceList();
    model.RebuildDeviceList();
    std::vector<std::string> texts;
    for (const auto& device : model.GetDevices())
        texts.push_back(device->GetText());
    EXPECT_THAT(texts, ElementsAre("77", "5", "4194302"));
    EXPECT_THAT(events.Take(), ElementsAre("GetDevLst(65535)", "GetDevLst(65535)"));
    EXPECT_EQ(model.FindDevice("5"), model.GetDevices()[1].get());
    EXPECT_EQ(model.FindDevice("05"), nullptr);
    EXPECT_EQ(model.FindDevice(""), nullptr);
}

TEST_F(HistoryModel, SortsObjectsIntoTrendsAndDataObjects) {
    bacnet.AddDevice(9);
    for (const unsigned type : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 10U, 13U, 14U, 17U, 19U, 20U, 25U, 27U, 130U})
        bacnet.AddObject(9, {type, type + 100}, type == 14 ? "" : "object " + std::to_string(type));
    model.RebuildDeviceList();
    model.RebuildObjectLists(model.FindDevice("9"));
    model.RebuildObjectLists(model.FindDevice("9"));

    std::vector<unsigned> data;
    for (const auto& object : model.GetDataObjects())
        data.push_back(object->GetId().Type);
    EXPECT_THAT(data, ElementsAre(0U, 1U, 2U, 3U, 4U, 5U, 13U, 14U, 19U));
    ASSERT_EQ(model.GetTrends().size(), 2U);
    EXPECT_EQ(model.GetTrends()[0]->GetId(), (BACSTAC_OBJECT_ID{20, 120}));
    EXPECT_EQ(model.GetTrends()[1]->GetId(), (BACSTAC_OBJECT_ID{27, 127}));
    EXPECT_EQ(model.GetDataObjects()[7]->GetName(), "");
    EXPECT_EQ(model.FindTrend("object 27"), model.GetTrends()[1].get());
    EXPECT_EQ(model.FindTrend("object 1"), nullptr);
    EXPECT_EQ(&model.GetTrends()[0]->GetDevice(), model.FindDevice("9"));
}

TEST_F(HistoryModel, ForgetsObjectsWithTheirDevices) {
    bacnet.AddDevice(9);
    bacnet.AddObject(9, {OBJ_TREND_LOG, 1}, "T");
    model.RebuildDeviceList();
    model.RebuildObjectLists(model.FindDevice("9"));
    model.RebuildDeviceList();
    EXPECT_THAT(model.GetTrends(), IsEmpty());
    EXPECT_THAT(model.GetDataObjects(), IsEmpty());
}

TEST_F(HistoryModel, GivesEveryLogReferenceADevice) {
    bacnet.AddDevice(9);
    const BACSTAC_OBJECT_ID trend{OBJ_TREND_LOG_MULTIPLE, 1};
    bacnet.AddObject(9, trend, "T");
    bacnet.SetValue(
        9, trend, PROP_LOG_DEVICE_OBJECT_PROPERTY,
        FakeValue::Of(TYPE_DEV_OBJ_PROP_REF, std::vector{ReferenceTo({OBJ_ANALOG_INPUT, 1}, 1, {OBJ_DEVICE, 77}),
                                                         ReferenceTo({OBJ_ANALOG_INPUT, 2}, 0, {OBJ_DEVICE, 0})}));
    model.RebuildDeviceList();
    model.RebuildObjectLists(model.FindDevice("9"));
    const auto& references = model.GetTrends()[0]->GetLogReferences();
    ASSERT_EQ(references.size(), 2U);
    EXPECT_EQ(references[0].DevicePresent, 1U);
    EXPECT_EQ(references[0].DeviceId, (BACSTAC_OBJECT_ID{OBJ_DEVICE, 77}));
    EXPECT_EQ(references[1].DevicePresent, 1U);
    EXPECT_EQ(references[1].DeviceId, (BACSTAC_OBJECT_ID{OBJ_DEVICE, 9}));
    EXPECT_EQ(references[1].ObjectId, (BACSTAC_OBJECT_ID{OBJ_ANALOG_INPUT, 2}));
    EXPECT_EQ(references[1].ArrayIndex, 0xFFFFFFFFU);
}

TEST_F(HistoryModel, HasNoLogReferencesAfterAFailedRead) {
    bacnet.AddDevice(9);
    bacnet.AddObject(9, {OBJ_TREND_LOG, 1}, "none");
    bacnet.AddObject(9, {OBJ_TREND_LOG, 2}, "other type");
    bacnet.SetValue(9, {OBJ_TREND_LOG, 2}, PROP_LOG_DEVICE_OBJECT_PROPERTY, FakeValue::Text("odd"));
    model.RebuildDeviceList();
    model.RebuildObjectLists(model.FindDevice("9"));
    for (const auto& trend : model.GetTrends())
        EXPECT_THAT(trend->GetLogReferences(), IsEmpty()) << trend->GetName();
    EXPECT_THAT(events.Take(), ElementsAre("GetDevLst(65535)", "GetObjLst(9, -1)", "ReadProperty(9, (20, 1), 132, -1)",
                                           "ReadProperty(9, (20, 2), 132, -1)"));
}

TEST_F(HistoryModel, KeepsALevelThatItFoundOrThatWasForced) {
    bacnet.AddDevice(9);
    bacnet.SetProtocol(9, 1, 4);
    model.RebuildDeviceList();
    CBACnetDevice& device = *model.FindDevice("9");
    EXPECT_EQ(device.GetProtocolLevel(), PROTOCOL_REVISION_4);
    EXPECT_EQ(device.GetProtocolLevel(), PROTOCOL_REVISION_4);
    EXPECT_EQ(events.Take().size(), 3U);
    device.ProtocolLevel = PROTOCOL_FORCED_2001;
    EXPECT_EQ(device.GetProtocolLevel(), PROTOCOL_FORCED_2001);
    EXPECT_THAT(events.Take(), IsEmpty());
}

TEST_F(HistoryModel, AsksADeviceOfALowerRevisionEachTime) {
    bacnet.AddDevice(9);
    bacnet.SetProtocol(9, 1, 3);
    model.RebuildDeviceList();
    events.Take();
    EXPECT_EQ(model.FindDevice("9")->GetProtocolLevel(), PROTOCOL_UNKNOWN);
    EXPECT_EQ(model.FindDevice("9")->GetProtocolLevel(), PROTOCOL_UNKNOWN);
    EXPECT_EQ(events.Take().size(), 4U);
    bacnet.SetFault("ReadProperty(9, (8, 9), 139", BACSTAC_STATUS_TIMEOUT);
    bacnet.SetProtocol(9, 1, 14);
    EXPECT_EQ(model.FindDevice("9")->GetProtocolLevel(), PROTOCOL_UNKNOWN);
}

TEST_F(HistoryModel, LeavesRowsAndMoreAloneWhenAReadFails) {
    bacnet.AddDevice(9);
    bacnet.SetProtocol(9, 1, 14);
    bacnet.AddObject(9, {OBJ_TREND_LOG, 1}, "T");
    bacnet.AddLogEntries(9, {OBJ_TREND_LOG, 1}, Minutes(1, 3));
    model.RebuildDeviceList();
    model.RebuildObjectLists(model.FindDevice("9"));
    const CBACnetTrend& trend = *model.GetTrends()[0];
    CTrendRows rows(2);
    CContentsBuffer buffer;
    BACSTAC_ERROR error{};
    bool more = true;
    EXPECT_EQ(trend.Read(Time(1900, 1, 1), rows, more, buffer.Get(), error), BACSTAC_OK);
    EXPECT_EQ(rows.GetSize(), 2U);
    EXPECT_TRUE(more);
    bacnet.SetFault("ReadRange", BACSTAC_STATUS_ERROR, {2, 5, 6});
    rows.Clear();
    EXPECT_EQ(trend.Read(Minute(2), rows, more, buffer.Get(), error), BACSTAC_STATUS_ERROR);
    EXPECT_EQ(rows.GetSize(), 0U);
    EXPECT_TRUE(more);
    EXPECT_EQ(error.Code, 6U);
    bacnet.ClearFaults();
    EXPECT_EQ(trend.Read(Minute(2), rows, more, buffer.Get(), error), BACSTAC_OK);
    EXPECT_EQ(rows.GetSize(), 1U);
    EXPECT_FALSE(more);
}

TEST(HistoryTransferStatus, GivesWholePercent) {
    TransferStatus status;
    EXPECT_EQ(status.Get().GetPercent(), 0U);
    status.SetTotal(7);
    for (int i = 0; i < 3; ++i)
        status.BeginObject("d", "o");
    EXPECT_EQ(status.Get().GetPercent(), 42U);
    TransferStatus::VALUES huge;
    huge.current = 0xFFFFFFFF;
    huge.total = 0xFFFFFFFF;
    EXPECT_EQ(huge.GetPercent(), 100U);
}

TEST(HistoryTransferStatus, IsEmptyAfterAReset) {
    TransferStatus status;
    status.SetTotal(7);
    status.BeginObject("d", "o");
    status.AddError("e");
    EXPECT_EQ(status.Get().errorCount, 1U);
    EXPECT_EQ(status.Get().lastError, "e");
    status.Reset();
    const TransferStatus::VALUES values = status.Get();
    EXPECT_EQ(values.total, 0U);
    EXPECT_EQ(values.current, 0U);
    EXPECT_EQ(values.errorCount, 0U);
    EXPECT_EQ(values.device, "");
    EXPECT_EQ(values.object, "");
    EXPECT_EQ(values.lastError, "");
}

} // namespace
