#include "tests/support/FakeBacGeneral.h"

#include "api/bacnet/Log.h"

#include <cstdio>

CBacGeneral* BACnet = nullptr;

CAsyncCallBack::~CAsyncCallBack() = default;
CIAMCallback::~CIAMCallback() = default;
CIAMCallbackHandler::~CIAMCallbackHandler() = default;
CBacGeneral::~CBacGeneral() = default;

// Test texts are UTF-8.
std::string ansi_to_utf8(const std::string& text) {
    return text;
}

void CBacGeneral::LogInf(const std::string& text) {
    ::LogInf("%s", text.c_str());
}

void CBacGeneral::LogErr(const std::string& text) {
    ::LogErr("%s", text.c_str());
}

// Without devices there are no values: these are for the linker, and say so if they are called.

COMPARAISON Compare(BACSTAC_DATE_TIME const&, BACSTAC_DATE_TIME const&) {
    return COMPARE_EQUAL;
}

bool CBacGeneral::TestBitStringBit(BACSTAC_BIT_STRING const&, unsigned) {
    return false;
}

int CBacGeneral::PrintBitString(char* buffer, unsigned size, BACSTAC_BIT_STRING const&, ENUM_TYPE_ID) {
    return std::snprintf(buffer, size, "fake bit string");
}

int CBacGeneral::PrintContents(char* buffer, unsigned size, BACSTAC_PROPERTY_CONTENTS const&, BACSTAC_OBJECT_TYPE,
                               BACSTAC_PROPERTY_ID, int) {
    return std::snprintf(buffer, size, "fake contents");
}

int CBacGeneral::PrintDevObjPropReference(char* buffer, unsigned size, BACSTAC_DEV_OBJ_PROP_REF const&) {
    return std::snprintf(buffer, size, "fake reference");
}

std::string CBacGeneral::GetErrorText(BACSTAC_STATUS status, BACSTAC_ERROR const*) {
    return "status " + std::to_string(status);
}

const char* CBacGeneral::GetStatusString(BACSTAC_STATUS) {
    return "fake status";
}

const char* CBacGeneral::GetErrorCodeString(unsigned) {
    return "fake error code";
}

const char* CBacGeneral::GetRejectReasonString(unsigned) {
    return "fake reject reason";
}

const char* CBacGeneral::GetAbortReasonString(unsigned) {
    return "fake abort reason";
}

CFakeBacGeneral::CFakeBacGeneral(CEventList& events) : m_events(events) {
    BACnet = this;
}

CFakeBacGeneral::~CFakeBacGeneral() {
    BACnet = nullptr;
}

bool CFakeBacGeneral::EnableNetwork(unsigned short network) {
    m_events.Add("EnableNetwork(" + std::to_string(network) + ")");
    return true;
}

bool CFakeBacGeneral::DisableNetwork(unsigned short network) {
    m_events.Add("DisableNetwork(" + std::to_string(network) + ")");
    return true;
}

// In programs that link the library too, the fakes stand in front of its own; the address sanitizer is told that this
// is meant.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "detect_odr_violation=0";
}
