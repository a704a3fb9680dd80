#include "tests/support/FakeBacGeneral.h"

CBacGeneral* BACnet = nullptr;

CAsyncCallBack::~CAsyncCallBack() = default;
CIAMCallback::~CIAMCallback() = default;
CIAMCallbackHandler::~CIAMCallbackHandler() = default;
CBacGeneral::~CBacGeneral() = default;

// Test texts are UTF-8.
std::string ansi_to_utf8(const std::string& text) {
    return text;
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
