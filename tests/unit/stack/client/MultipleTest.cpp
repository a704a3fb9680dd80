// ReadPropertyMultiple through CRPMRequest, ReadPropertyList and ReadObjectList, on devices that do it and devices that
// cannot.
#include "api/bacnet/PropertyValue.h"
#include "api/bacnet/Requests.h"
#include "platform/stack/codec/Reader.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/ErrorAnswer.h"
#include "platform/stack/services/ReadPropertyMultiple.h"
#include "tests/unit/stack/client/ClientFixture.h"

#include <functional>
#include <map>
#include <optional>

namespace {

using namespace bacnet;

constexpr BACSTAC_OBJECT_ID analogInput{OBJ_ANALOG_INPUT, 5};
constexpr std::uint8_t readProperty = 12;
constexpr std::uint8_t readPropertyMultiple = 14;

// A device with a few values, which answers both services as far as its weaknesses let it.
class ModelDevice {
public:
    std::map<std::pair<BACSTAC_OBJECT_ID, BACSTAC_PROPERTY_ID>, Octets> Values;
    std::vector<BACSTAC_OBJECT_ID> ObjectList;
    bool MultipleReads = true;
    std::size_t LongestAnswer = 1400; // octets; longer ones are aborted
    std::uint8_t AbortReason = 4;
    int MultipleRequests = 0;
    int SingleRequests = 0;

    std::vector<Octets> Answer(const Octets& request) {
        const Octets parameters(request.begin() + 4, request.end());
        std::uint8_t buffer[4096];
        Writer writer(buffer);
        if (request.at(3) == readProperty) {
            ++SingleRequests;
            PropertyTarget target;
            if (!DecodeReadProperty(parameters, target))
                return {Octets{0x60, request.at(2), 4}};
            BeginReadPropertyAck(target, writer);
            const ErrorAnswer error = Write(target, writer);
            EndReadPropertyAck(writer);
            if (error.Code != 0) {
                writer.Rewind(0);
                EncodeErrorAnswer(ConfirmedService::readProperty, error, writer);
                return {Pdu(0x50, request, writer)};
            }
        } else if (request.at(3) == readPropertyMultiple && MultipleReads) {
            ++MultipleRequests;
            RpmRequestReader reader(parameters);
            RpmAckWriter ack(writer);
            PropertyTarget target;
            while (reader.Next(target)) {
                if (target.Property == PROP_ALL) {
                    for (const auto& [key, value] : Values)
                        if (key.first == target.Object)
                            Add(ack, writer, {key.first, key.second, -1});
                } else {
                    Add(ack, writer, target);
                }
            }
            ack.Finish();
        } else {
            return {Octets{0x60, request.at(2), 9}};
        }
        if (writer.Overflow() || writer.Size() > LongestAnswer)
            return {Octets{0x71, request.at(2), AbortReason}};
        return {Pdu(0x30, request, writer)};
    }

private:
    static Octets Pdu(std::uint8_t type, const Octets& request, const Writer& writer) {
        Octets pdu{type, request.at(2), request.at(3)};
        pdu.insert(pdu.end(), writer.Written().begin(), writer.Written().end());
        return pdu;
    }
    void Add(RpmAckWriter& ack, Writer& writer, const PropertyTarget& target) {
        ack.BeginValue(target);
        const ErrorAnswer error = Write(target, writer);
        if (error.Code == 0)
            ack.EndValue();
        else
            ack.ErrorInstead(error.Class, error.Code);
    }
    ErrorAnswer Write(const PropertyTarget& target, Writer& writer) {
        if (target.Property == PROP_OBJECT_LIST && target.Object.Type == OBJ_DEVICE) {
            const auto index = static_cast<std::size_t>(target.ArrayIndex);
            if (target.ArrayIndex < 0) {
                for (const BACSTAC_OBJECT_ID& id : ObjectList)
                    writer.ObjectId(id);
            } else if (index == 0) {
                writer.Unsigned(Promised.value_or(ObjectList.size()));
            } else if (index <= ObjectList.size()) {
                writer.ObjectId(ObjectList[index - 1]);
            } else {
                return {2, 42, 0};
            }
            if (OnListRead)
                OnListRead(target.ArrayIndex);
            return {};
        }
        const auto found = Values.find({target.Object, target.Property});
        if (found == Values.end())
            return {2, 32, 0};
        writer.Octets(found->second);
        return {};
    }

public:
    std::optional<std::size_t> Promised; // count instead of the true one
    std::function<void(int)> OnListRead;
};

class MultipleTest : public ClientFixture {
protected:
    MultipleTest() {
        m_device.Values[{analogInput, PROP_OBJECT_NAME}] = Hex("75 05 00 54 65 6D 70");
        m_device.Values[{analogInput, PROP_PRESENT_VALUE}] = Hex("44 42 90 99 9A");
        m_device.Values[{analogInput, PROP_STATUS_FLAGS}] = Hex("82 04 40");
        Serve(1, [this](const Octets& request) { return m_device.Answer(request); });
    }

    ModelDevice m_device;
};

TEST_F(MultipleTest, ReadsManyPropertiesOfOneObject) {
    CRPMRequest request(3);
    char name[32] = {};
    float value = 0;
    char description[32] = "untouched";
    EXPECT_TRUE(request.Append(PROP_OBJECT_NAME, -1, name, sizeof name));
    EXPECT_TRUE(request.Append(PROP_DESCRIPTION, -1, description, sizeof description));
    EXPECT_FALSE(request.IsFull());
    EXPECT_TRUE(request.Append(PROP_PRESENT_VALUE, -1, &value, sizeof value));
    EXPECT_TRUE(request.IsFull());
    EXPECT_FALSE(request.Append(PROP_PRESENT_VALUE, -1, &value, sizeof value));
    EXPECT_FALSE(request.Append(analogInput, &value, sizeof value)) << "the other form";
    ASSERT_TRUE(request.Execute(DeviceAt(1), Address(1), analogInput));
    EXPECT_EQ(request.Status, BACSTAC_OK);
    EXPECT_EQ(request.GetItemCnt(), 3U);
    EXPECT_EQ(request.GetResult(0)->Success, 1);
    EXPECT_EQ(request.GetResult(0)->Contents.DataType, TYPE_STRING);
    EXPECT_STREQ(name, "Temp");
    EXPECT_EQ(request.GetResult(1)->Success, 0) << "one item failed";
    EXPECT_EQ(request.GetResult(1)->Error.Code, 32U);
    EXPECT_EQ(request.GetResult(2)->Success, 1);
    EXPECT_FLOAT_EQ(value, 72.3F);
    EXPECT_EQ(request.GetResult(3), nullptr);
    EXPECT_EQ(request.GetResult(99), nullptr);
    BACSTAC_OBJECT_ID object{};
    EXPECT_TRUE(request.GetObjId(2, object));
    EXPECT_EQ(object, analogInput);
    EXPECT_FALSE(request.GetObjId(3, object));
    EXPECT_EQ(m_device.MultipleRequests, 1);

    request.Clear();
    EXPECT_EQ(request.GetItemCnt(), 0U);
    EXPECT_TRUE(request.Append(PROP_PRESENT_VALUE, -1, &value, sizeof value));
    EXPECT_TRUE(request.Execute(DeviceAt(1), Address(1), analogInput));
    EXPECT_EQ(request.GetResult(0)->Success, 1);
}

TEST_F(MultipleTest, ReadsOnePropertyOfManyObjects) {
    CRPMRequest request(20, PROP_STATUS_FLAGS, -1);
    BACSTAC_BIT_STRING flags[2]{};
    EXPECT_FALSE(request.Append(PROP_STATUS_FLAGS, -1, flags, sizeof flags)) << "the other form";
    EXPECT_TRUE(request.Append(analogInput, &flags[0], sizeof flags[0]));
    EXPECT_TRUE(request.Append({OBJ_ANALOG_INPUT, 6}, &flags[1], sizeof flags[1]));
    ASSERT_TRUE(request.Execute(DeviceAt(1), Address(1)));
    EXPECT_EQ(request.GetResult(0)->Success, 1);
    EXPECT_TRUE(CBacGeneral::TestBitStringBit(flags[0], 1));
    EXPECT_EQ(request.GetResult(1)->Success, 0);
    BACSTAC_OBJECT_ID object{};
    EXPECT_TRUE(request.GetObjId(1, object));
    EXPECT_EQ(object.Instance, 6U);
}

TEST_F(MultipleTest, TellsWhyItFailedAsAWhole) {
    ServeAlways(1, "50 00 0E 91 05 91 1D"); // class services, code service-request-denied
    CRPMRequest request(1);
    float value = 0;
    request.Append(PROP_PRESENT_VALUE, -1, &value, sizeof value);
    EXPECT_FALSE(request.Execute(DeviceAt(1), Address(1), analogInput));
    EXPECT_EQ(request.Status, BACSTAC_STATUS_ERROR);
    EXPECT_EQ(request.Error.Code, 29U);
    EXPECT_EQ(request.GetResult(0)->Success, 0);
    EXPECT_EQ(reinterpret_cast<void*>(&request), reinterpret_cast<void*>(&request.Status)) << "ahead of all else";
}

TEST_F(MultipleTest, ReadsSinglyFromADeviceWithoutMultipleReads) {
    m_device.MultipleReads = false;
    for (int round = 0; round < 2; ++round) {
        CRPMRequest request(2);
        float value = 0;
        char name[32] = {};
        request.Append(PROP_PRESENT_VALUE, -1, &value, sizeof value);
        request.Append(PROP_DESCRIPTION, -1, name, sizeof name);
        ASSERT_TRUE(request.Execute(DeviceAt(1), Address(1), analogInput));
        EXPECT_FLOAT_EQ(value, 72.3F);
        EXPECT_EQ(request.GetResult(1)->Success, 0);
        EXPECT_EQ(request.GetResult(1)->Error.Code, 32U);
    }
    EXPECT_EQ(m_device.SingleRequests, 4);
    EXPECT_EQ(m_link->RequestsTo(1).size(), 5U) << "it is asked for the service once only";
}

TEST_F(MultipleTest, SplitsAReadThatIsTooMuch) {
    for (const std::uint8_t reason : Hex("01 04 0B")) {
        SCOPED_TRACE(int{reason});
        ClientFixture::Restart({});
        Serve(1, [this](const Octets& request) { return m_device.Answer(request); });
        m_device.AbortReason = reason;
        m_device.LongestAnswer = 60;
        m_device.MultipleRequests = 0;
        constexpr unsigned count = 16;
        CRPMRequest request(count);
        float values[count] = {};
        for (float& value : values)
            request.Append(PROP_PRESENT_VALUE, -1, &value, sizeof value);
        ASSERT_TRUE(request.Execute(DeviceAt(1), Address(1), analogInput));
        for (unsigned i = 0; i < count; ++i) {
            EXPECT_EQ(request.GetResult(i)->Success, 1) << i;
            EXPECT_FLOAT_EQ(values[i], 72.3F) << i;
        }
        const int first = std::exchange(m_device.MultipleRequests, 0);
        ASSERT_TRUE(request.Execute(DeviceAt(1), Address(1), analogInput));
        EXPECT_LT(m_device.MultipleRequests, first) << "what the device manages is remembered";
    }
}

TEST_F(MultipleTest, NeverTakesSilenceForARefusal) {
    Serve(1, [](const Octets&) { return std::vector<Octets>{}; });
    CRPMRequest request(2);
    float value = 0;
    request.Append(PROP_PRESENT_VALUE, -1, &value, sizeof value);
    request.Append(PROP_STATUS_FLAGS, -1, &value, sizeof value);
    EXPECT_FALSE(request.Execute(DeviceAt(1), Address(1), analogInput));
    EXPECT_EQ(request.Status, BACSTAC_STATUS_TIMEOUT);
    EXPECT_EQ(m_link->RequestsTo(1).size(), Retries + 1U) << "no single reads";
    EXPECT_FALSE(CRPMRequest::CanFallbackToRP(request.Status, request.Error));
}

TEST_F(MultipleTest, SaysWhereSingleReadsCanHelp) {
    const auto can = [](BACSTAC_STATUS status, BACSTAC_ERROR error) {
        return CRPMRequest::CanFallbackToRP(status, error);
    };
    EXPECT_TRUE(can(BACSTAC_STATUS_REJECT, {1, 9, 0})) << "unrecognized-service";
    EXPECT_TRUE(can(BACSTAC_STATUS_REJECT, {1, 1, 0})) << "buffer-overflow";
    EXPECT_TRUE(can(BACSTAC_STATUS_REJECT, {1, 6, 0})) << "too-many-arguments";
    EXPECT_TRUE(can(BACSTAC_STATUS_ABORT, {1, 1, 0})) << "buffer-overflow";
    EXPECT_TRUE(can(BACSTAC_STATUS_ABORT, {1, 4, 0})) << "segmentation-not-supported";
    EXPECT_TRUE(can(BACSTAC_STATUS_ABORT, {1, 11, 0})) << "apdu-too-long";
    EXPECT_TRUE(can(BACSTAC_STATUS_ERROR, {2, 5, 45})) << "optional-functionality-not-supported";
    EXPECT_TRUE(can(BACSTAC_STATUS_ERROR, {2, 7, 51})) << "abort-buffer-overflow";
    EXPECT_FALSE(can(BACSTAC_STATUS_ERROR, {2, 1, 31})) << "unknown-object";
    EXPECT_FALSE(can(BACSTAC_STATUS_REJECT, {1, 4, 0})) << "invalid-tag";
    EXPECT_FALSE(can(BACSTAC_STATUS_ABORT, {1, 0, 0})) << "other";
    for (BACSTAC_STATUS status = 0; status < 64; ++status)
        EXPECT_FALSE(can(status, {})) << status;
}

TEST_F(MultipleTest, LeavesItemsFailedThatTheAnswerLacks) {
    // present-value only, and one that nobody asked for
    ServeAlways(1, "30 00 0E 0C 00 00 00 05 1E 29 67 4E 91 00 4F 29 55 4E 44 42 90 99 9A 4F 1F");
    CRPMRequest request(2);
    char name[32] = {};
    float value = 0;
    request.Append(PROP_OBJECT_NAME, -1, name, sizeof name);
    request.Append(PROP_PRESENT_VALUE, -1, &value, sizeof value);
    ASSERT_TRUE(request.Execute(DeviceAt(1), Address(1), analogInput));
    EXPECT_EQ(request.GetResult(0)->Success, 0);
    EXPECT_EQ(request.GetResult(1)->Success, 1);
}

TEST_F(MultipleTest, FailsOneItemWhoseValueIsOdd) {
    m_device.Values[{analogInput, PROP_PRESENT_VALUE}] = Hex("44 42 90"); // a real of two octets
    CRPMRequest request(2);
    float value = 0;
    char name[32] = {};
    request.Append(PROP_PRESENT_VALUE, -1, &value, sizeof value);
    request.Append(PROP_OBJECT_NAME, -1, name, sizeof name);
    const bool whole = request.Execute(DeviceAt(1), Address(1), analogInput);
    // The lying length swallows what follows: the answer as a whole makes no sense.
    EXPECT_FALSE(whole);
    EXPECT_EQ(request.Status, BACSTAC_STATUS_INVALID_ANSWER);

    m_device.Values[{analogInput, PROP_PRESENT_VALUE}] = Hex("42 42 90"); // well-formed, but no real has that length
    ASSERT_TRUE(request.Execute(DeviceAt(1), Address(1), analogInput));
    EXPECT_EQ(request.GetResult(0)->Success, 0);
    EXPECT_LT(request.GetResult(0)->Contents.DataType, 0);
    EXPECT_EQ(request.GetResult(1)->Success, 1);
    EXPECT_STREQ(name, "Temp");
}

// ---- ReadPropertyList

class PropertyListTest : public MultipleTest {
protected:
    BACSTAC_STATUS Read(unsigned capacity) {
        m_buffers.assign(capacity, CPropertyContents(1024));
        m_items.clear();
        for (CPropertyContents& contents : m_buffers)
            m_items.push_back({0, 0, 0, contents, {}});
        m_count = capacity;
        m_error = {};
        return m_client->ReadPropertyList(Address(1), analogInput, m_items.data(), &m_count, &m_error);
    }
    std::string Properties() const {
        std::string text;
        for (unsigned i = 0; i < m_count; ++i)
            text += std::to_string(m_items[i].Property) + (m_items[i].Success != 0 ? "+ " : "- ");
        return text;
    }

    std::vector<CPropertyContents> m_buffers;
    std::vector<BACSTAC_READ_RESULT_ITEM> m_items;
    unsigned m_count = 0;
    BACSTAC_ERROR m_error{};
};

TEST_F(PropertyListTest, ReadsAllPropertiesAtOnce) {
    EXPECT_EQ(Read(100), BACSTAC_OK);
    EXPECT_EQ(Properties(), "77+ 85+ 111+ ");
    EXPECT_EQ(m_items[1].Contents.DataType, TYPE_REAL);
    EXPECT_EQ(m_device.MultipleRequests, 1);
}

TEST_F(PropertyListTest, GivesNoMoreThanThereIsRoomFor) {
    EXPECT_EQ(Read(2), BACSTAC_OK);
    EXPECT_EQ(Properties(), "77+ 85+ ");
}

TEST_F(PropertyListTest, ReadsInPartsWhatIsTooMuchAtOnce) {
    m_device.LongestAnswer = 30;
    EXPECT_EQ(Read(100), BACSTAC_OK);
    const std::string properties = Properties();
    for (const char* each : {"77+ ", "85+ ", "111+ "})
        EXPECT_NE(properties.find(each), std::string::npos) << properties;
    EXPECT_EQ(m_count, 3U) << "properties that the device does not have are left out";
}

TEST_F(PropertyListTest, ReadsInPartsWhatTheObjectLists) {
    m_device.Values[{analogInput, 371}] = Hex("91 55 92 02 58"); // present-value and 600, of the maker's own
    m_device.Values[{analogInput, 600}] = Hex("21 07");
    m_device.LongestAnswer = 30;
    EXPECT_EQ(Read(100), BACSTAC_OK);
    EXPECT_EQ(Properties(), "77+ 85+ 600+ ");
}

TEST_F(PropertyListTest, NeverTakesSilenceForARefusal) {
    m_device.LongestAnswer = 30;
    Serve(1, [this](const Octets& request) {
        return Service(request) == readProperty ? std::vector<Octets>{} : m_device.Answer(request);
    });
    EXPECT_EQ(Read(100), BACSTAC_STATUS_TIMEOUT);
    EXPECT_EQ(m_count, 0U);
}

TEST_F(PropertyListTest, LeavesTheFallbackToTheCallerWhenTheServiceIsMissing) {
    m_device.MultipleReads = false;
    EXPECT_EQ(Read(100), BACSTAC_STATUS_REJECT);
    EXPECT_EQ(m_count, 0U);
    EXPECT_TRUE(CRPMRequest::CanFallbackToRP(BACSTAC_STATUS_REJECT, m_error));
}

// ---- ReadObjectList

class ObjectListTest : public MultipleTest {
protected:
    ObjectListTest() {
        for (unsigned i = 0; i < 130; ++i)
            m_device.ObjectList.push_back({i % 3, 1000 - i}); // in the device's own order
    }
    BACSTAC_STATUS Count() {
        m_count = 77;
        m_error = {};
        return m_client->ReadObjectList(Address(1), nullptr, &m_count, &m_error);
    }
    BACSTAC_STATUS List(unsigned capacity) {
        m_objects.assign(capacity, {99, 99});
        m_count = capacity;
        m_error = {};
        return m_client->ReadObjectList(Address(1), m_objects.data(), &m_count, &m_error);
    }
    std::vector<BACSTAC_OBJECT_ID> Listed() const {
        return {m_objects.begin(), m_objects.begin() + static_cast<std::ptrdiff_t>(m_count)};
    }

    std::vector<BACSTAC_OBJECT_ID> m_objects;
    unsigned m_count = 0;
    BACSTAC_ERROR m_error{};
};

TEST_F(ObjectListTest, CountsWithoutABuffer) {
    EXPECT_EQ(Count(), BACSTAC_OK);
    EXPECT_EQ(m_count, 130U);
    EXPECT_EQ(m_link->RequestsTo(1).at(0).substr(12), "0C 02 00 00 65 19 4C 29 00") << "of device 101";
    m_device.ObjectList.clear();
    EXPECT_EQ(Count(), BACSTAC_OK);
    EXPECT_EQ(m_count, 0U);
    EXPECT_EQ(m_client->ReadObjectList(Address(1), nullptr, nullptr, nullptr), BACSTAC_STATUS_INVALID_ARGUMENT);
}

TEST_F(ObjectListTest, AsksADeviceThatNobodyKnowsByTheWildcard) {
    m_link->SetDevice(9, [this](const Octets& request) { return m_device.Answer(request); });
    EXPECT_EQ(m_client->ReadObjectList(Address(9), nullptr, &m_count, nullptr), BACSTAC_OK);
    EXPECT_EQ(m_link->RequestsTo(9).at(0).substr(12), "0C 02 3F FF FF 19 4C 29 00");
}

TEST_F(ObjectListTest, ReadsTheListAsAWhole) {
    EXPECT_EQ(List(130), BACSTAC_OK);
    EXPECT_EQ(Listed(), m_device.ObjectList);
    EXPECT_EQ(m_link->RequestsTo(1).size(), 1U);
    EXPECT_EQ(List(10), BACSTAC_OK) << "no more than there is room for";
    EXPECT_EQ(m_count, 10U);
    EXPECT_EQ(List(0), BACSTAC_OK);
}

TEST_F(ObjectListTest, ReadsByIndexWhereTheWholeIsTooMuch) {
    for (const std::uint8_t reason : Hex("01 04")) {
        for (const bool multiple : {true, false}) {
            SCOPED_TRACE(std::to_string(reason) + (multiple ? " multiple" : " single"));
            m_device.AbortReason = reason;
            m_device.MultipleReads = multiple;
            m_device.LongestAnswer = 200;
            EXPECT_EQ(List(130), BACSTAC_OK);
            EXPECT_EQ(Listed(), m_device.ObjectList);
        }
    }
}

TEST_F(ObjectListTest, ReadsAgainWhenTheListChangesMeanwhile) {
    m_device.LongestAnswer = 200;
    int reads = 0;
    m_device.OnListRead = [&](int index) {
        if (index == 60 && ++reads == 1)
            m_device.ObjectList.insert(m_device.ObjectList.begin(), {7, 7});
    };
    EXPECT_EQ(List(200), BACSTAC_OK);
    EXPECT_EQ(Listed(), m_device.ObjectList);
}

TEST_F(ObjectListTest, EndsWhereTheListGotShorter) {
    m_device.LongestAnswer = 200;
    m_device.Promised = 500;
    EXPECT_EQ(List(500), BACSTAC_OK);
    EXPECT_EQ(Listed(), m_device.ObjectList);
}

TEST_F(ObjectListTest, RefusesACountThatNoDeviceHas) {
    m_device.Promised = 4000000000U;
    EXPECT_EQ(Count(), BACSTAC_STATUS_INVALID_ANSWER);
    EXPECT_EQ(m_count, 0U);
}

TEST_F(ObjectListTest, ReportsRefusalAndSilence) {
    ServeAlways(1, "50 00 0C 91 01 91 1F");
    EXPECT_EQ(Count(), BACSTAC_STATUS_ERROR);
    EXPECT_EQ(m_error.Code, 31U);
    EXPECT_EQ(List(5), BACSTAC_STATUS_ERROR);
    Serve(1, [](const Octets&) { return std::vector<Octets>{}; });
    EXPECT_EQ(Count(), BACSTAC_STATUS_TIMEOUT);
    EXPECT_EQ(List(5), BACSTAC_STATUS_TIMEOUT);
    EXPECT_EQ(m_count, 0U);
}

} // namespace
