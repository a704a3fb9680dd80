#include "simulator/model/Fault.h"

#include <algorithm>

namespace sim {

namespace {

Fault Of(FaultKind kind) {
    Fault fault;
    fault.Kind = kind;
    return fault;
}

Fault Refusing(FaultKind kind, std::uint32_t errorClass, std::uint32_t code) {
    Fault fault = Of(kind);
    fault.Class = errorClass;
    fault.Code = code;
    return fault;
}

bool Concerns(const Fault& fault, std::optional<bacnet::ConfirmedService> service, const BACSTAC_OBJECT_ID& object) {
    if (fault.Service && fault.Service != service)
        return false;
    return !fault.Object || (service && *fault.Object == object);
}

void Apply(const Fault& fault, std::uint64_t number, FaultEffects& effects) {
    switch (fault.Kind) {
    case FaultKind::silent:
        effects.Silent = true;
        break;
    case FaultKind::slow:
        effects.DelayMs += fault.DelayMs;
        break;
    case FaultKind::drop:
        effects.Silent = effects.Silent || number % std::max(fault.Every, 1U) == 0;
        break;
    case FaultKind::error:
    case FaultKind::reject:
    case FaultKind::abort:
        effects.Refused = FaultEffects::Refusal{fault.Kind, fault.Class, fault.Code};
        break;
    case FaultKind::duplicate:
        effects.Duplicate = true;
        break;
    case FaultKind::late:
        effects.Late = true;
        break;
    case FaultKind::wrongInvokeId:
        effects.WrongInvokeId = true;
        break;
    case FaultKind::silentInAnswer:
        effects.SegmentLimit = std::min(effects.SegmentLimit, fault.Segments);
        break;
    case FaultKind::wrongSource:
        effects.WrongSource = true;
        break;
    case FaultKind::wrongPort:
        effects.WrongPort = true;
        break;
    case FaultKind::restart:
        effects.Restart = true;
        effects.RestartMs = fault.DelayMs;
        break;
    case FaultKind::truncate:
        effects.OctetLimit = std::min(effects.OctetLimit, fault.Octets);
        break;
    }
}

} // namespace

Fault Fault::Slow(std::uint32_t milliseconds) {
    Fault fault = Of(FaultKind::slow);
    fault.DelayMs = milliseconds;
    return fault;
}

Fault Fault::DropEvery(std::uint32_t n) {
    Fault fault = Of(FaultKind::drop);
    fault.Every = n;
    return fault;
}

Fault Fault::Error(std::uint32_t errorClass, std::uint32_t errorCode) {
    return Refusing(FaultKind::error, errorClass, errorCode);
}

Fault Fault::Reject(std::uint32_t reason) {
    return Refusing(FaultKind::reject, 0, reason);
}

Fault Fault::Abort(std::uint32_t reason) {
    return Refusing(FaultKind::abort, 0, reason);
}

Fault Fault::Duplicate() {
    return Of(FaultKind::duplicate);
}

Fault Fault::LateAfterRetry() {
    return Of(FaultKind::late);
}

Fault Fault::WrongInvokeId() {
    return Of(FaultKind::wrongInvokeId);
}

Fault Fault::SilentAfterSegments(std::uint32_t segments) {
    Fault fault = Of(FaultKind::silentInAnswer);
    fault.Segments = segments;
    return fault;
}

Fault Fault::WrongSource() {
    return Of(FaultKind::wrongSource);
}

Fault Fault::WrongPort() {
    return Of(FaultKind::wrongPort);
}

Fault Fault::Restart(std::uint32_t milliseconds) {
    Fault fault = Of(FaultKind::restart);
    fault.DelayMs = milliseconds;
    return fault;
}

Fault Fault::TruncateTo(std::uint32_t octets) {
    Fault fault = Of(FaultKind::truncate);
    fault.Octets = octets;
    return fault;
}

Fault Fault::OnlyFor(bacnet::ConfirmedService service) const {
    Fault fault = *this;
    fault.Service = service;
    return fault;
}

Fault Fault::OnlyOn(BACSTAC_OBJECT_ID object) const {
    Fault fault = *this;
    fault.Object = object;
    return fault;
}

Fault Fault::After(std::uint64_t requests) const {
    Fault fault = *this;
    fault.Skip = requests;
    return fault;
}

Fault Fault::ForTimes(std::uint64_t requests) const {
    Fault fault = *this;
    fault.Times = requests;
    return fault;
}

void FaultList::Set(const std::vector<Fault>& faults) {
    m_active.clear();
    for (const Fault& fault : faults)
        m_active.push_back({fault, 0});
}

bool FaultList::IsSilent() const {
    return std::any_of(m_active.begin(), m_active.end(), [](const Active& active) {
        const Fault& fault = active.What;
        return fault.Kind == FaultKind::silent && !fault.Service && !fault.Object && fault.Times == 0 &&
               active.Seen >= fault.Skip;
    });
}

FaultEffects FaultList::Hit(std::optional<bacnet::ConfirmedService> service, const BACSTAC_OBJECT_ID& object) {
    FaultEffects effects;
    for (Active& active : m_active) {
        const Fault& fault = active.What;
        if (!Concerns(fault, service, object))
            continue;
        ++active.Seen;
        if (active.Seen <= fault.Skip || (fault.Times != 0 && active.Seen > fault.Skip + fault.Times))
            continue;
        Apply(fault, active.Seen - fault.Skip, effects);
    }
    return effects;
}

} // namespace sim
