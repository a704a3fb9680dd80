// The BACnet services of a station without devices: every service answers that it is not supported. Switching networks
// is recorded, as "EnableNetwork(3)". Tests that need devices derive from it.
//
// FakeBacGeneral.cpp also defines what the console uses of the BACnet library itself, so that a test needs no more than
// this.
#pragma once

#include "api/bacnet/BacGeneral.h"
#include "tests/support/EventList.h"

class CFakeBacGeneral : public CBacGeneral {
public:
    // While it lives BACnet points to it.
    explicit CFakeBacGeneral(CEventList& events);
    ~CFakeBacGeneral() override;

    int RegisterIAMCallback(CIAMCallback*) override { return -1; }
    void UnregisterIAMCallback(int) override {}

    BACSTAC_STATUS ReadProperty(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_PROPERTY_ID, int, void*, unsigned,
                                BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS ReadProperty(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_PROPERTY_ID, int,
                                BACSTAC_PROPERTY_CONTENTS&, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS ReadProperty(BACSTAC_ADDRESS const&, BACSTAC_OBJECT_ID const&, BACSTAC_PROPERTY_ID, int,
                                BACSTAC_PROPERTY_CONTENTS&, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS AsyncReadProperty(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_PROPERTY_ID, int,
                                     BACSTAC_PROPERTY_CONTENTS&, BACSTAC_ERROR*, CAsyncCallBack&) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS ReadPropertyList(BACSTAC_ADDRESS const&, BACSTAC_OBJECT_ID const&, BACSTAC_READ_RESULT_ITEM*,
                                    unsigned*, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS ReadObjectList(BACSTAC_ADDRESS const&, BACSTAC_OBJECT_ID*, unsigned*, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS ReadRange(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_PROPERTY_ID, int,
                             BACSTAC_READ_RANGE_SPEC const*, BACSTAC_BIT_STRING*, BACSTAC_PROPERTY_CONTENTS*,
                             BACSTAC_ERROR*, unsigned*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS ReadPropertyConditional(unsigned, BACSTAC_READ_CON_INFO const*, BACSTAC_RPC_RESULT*,
                                           BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS WriteProperty(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_PROPERTY_ID, int, int,
                                 BACSTAC_PROPERTY_CONTENTS const&, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS WritePropertyNull(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_PROPERTY_ID, int, int,
                                     BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS CreateObject(unsigned, BACSTAC_OBJECT_SPECIFIER const*, BACSTAC_PROPERTY_VALUE const*, unsigned,
                                BACSTAC_OBJECT_ID*, BACSTAC_ERROR*, unsigned*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS DeleteObject(unsigned, BACSTAC_OBJECT_ID const*, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS DeviceCommControl(unsigned, unsigned, BACSTAC_DCC_VALUE, const char*, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS ReinitializeDevice(unsigned, BACSTAC_REINIT_TYPE, const char*, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS ReadFile(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_READ_FILE_SPEC const*,
                            BACSTAC_READ_FILE_RESULT*, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS WriteFile(unsigned, BACSTAC_OBJECT_ID const&, BACSTAC_WRITE_FILE_SPEC const*,
                             BACSTAC_WRITE_FILE_RESULT*, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS GetAlarmSummary(unsigned, BACSTAC_ALARM_SUMMARY*, unsigned, unsigned*, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS GetEnrollmentSummary(unsigned, BACSTAC_ENROLLMENT_FILTER const&, BACSTAC_ENROLLMENT_SUMMARY*,
                                        unsigned, unsigned*, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS WhoIs(BACSTAC_ADDRESS const&, unsigned, unsigned) override { return BACSTAC_STATUS_NOT_SUPPORTED; }
    BACSTAC_STATUS SynchronizeTime(bool, BACSTAC_DATE_TIME const&, unsigned const*, int) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    bool ReadDeviceTime(unsigned, BACSTAC_DATE_TIME&, int&) override { return false; }
    bool IsDeviceEnabled(unsigned) override { return false; }
    bool IsNetworkEnabled(unsigned short) override { return false; }
    bool EnableNetwork(unsigned short network) override;
    bool DisableNetwork(unsigned short network) override;
    void GetDevLst(std::vector<unsigned>&, unsigned short) override {}
    void GetNetLst(std::map<unsigned short, bool>&) override {}
    void GetObjLst(unsigned, std::vector<BACSTAC_OBJECT_ID>&, BACSTAC_OBJECT_TYPE) override {}
    bool FindDev(unsigned) override { return false; }
    bool GetDevName(unsigned, std::string&) override { return false; }
    bool GetObjName(unsigned, BACSTAC_OBJECT_ID const&, std::string&) override { return false; }
    BACSTAC_ADDRESS GetDevAddr(unsigned) override { return {}; }
    unsigned GetDevVendorId(unsigned) override { return 0; }
    bool LoadDir() override { return false; }
    BACSTAC_STATUS GetEventInformation(unsigned, BACSTAC_OBJECT_ID const*, BACSTAC_EVENT_SUMMARY*, unsigned, unsigned*,
                                       bool*, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS ReadPropertyMultiple(unsigned, BACSTAC_ADDRESS const&, BACSTAC_OBJECT_ID const*,
                                        BACSTAC_READ_RESULT_ITEM*, unsigned, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }
    BACSTAC_STATUS WritePropertyMultiple(unsigned, BACSTAC_ADDRESS const&, BACSTAC_OBJECT_ID const&,
                                         BACSTAC_PROPERTY_VALUE const*, unsigned, BACSTAC_ERROR*) override {
        return BACSTAC_STATUS_NOT_SUPPORTED;
    }

private:
    CEventList& m_events;
};
