#include "simulator/Profiles.h"

#include "simulator/model/Standard.h"

namespace sim {

namespace {

using bacnet::ConfirmedService;

constexpr std::uint64_t WELL_AT_FIRST = 10; // requests, where a device fails in the middle
constexpr std::uint32_t NO_SUCH_REASON = 200;
constexpr std::uint32_t NO_SUCH_ERROR = 60'000;

void NoSegmentation(DeviceConfig& device) {
    device.Segmentation = bacnet::Segmentation::none;
}

void Refuse(DeviceConfig& device, ConfirmedService service, std::uint32_t errorClass, std::uint32_t code) {
    device.Faults.push_back(Fault::Error(errorClass, code).OnlyFor(service));
}

constexpr Profile PROFILES[] = {
    // ---- what a device does not have
    {"no-multiple-reads", "does not know ReadPropertyMultiple",
     [](DeviceConfig& d) { d.LacksServices.push_back(ConfirmedService::readPropertyMultiple); }},
    {"no-multiple-writes", "does not know WritePropertyMultiple",
     [](DeviceConfig& d) { d.LacksServices.push_back(ConfirmedService::writePropertyMultiple); }},
    {"no-ranges", "does not know ReadRange",
     [](DeviceConfig& d) { d.LacksServices.push_back(ConfirmedService::readRange); }},
    {"no-segmentation", "sends and takes no segments", NoSegmentation},
    {"apdu-50", "takes and sends 50 octets at a time, without segments",
     [](DeviceConfig& d) {
         d.MaxApdu = 50;
         NoSegmentation(d);
     }},
    {"read-only", "refuses all writes",
     [](DeviceConfig& d) {
         Refuse(d, ConfirmedService::writeProperty, CLASS_PROPERTY, CODE_WRITE_ACCESS_DENIED);
         Refuse(d, ConfirmedService::writePropertyMultiple, CLASS_PROPERTY, CODE_WRITE_ACCESS_DENIED);
         Refuse(d, ConfirmedService::atomicWriteFile, CLASS_SERVICES, CODE_FILE_ACCESS_DENIED);
         Refuse(d, ConfirmedService::createObject, CLASS_OBJECT, CODE_DYNAMIC_CREATION_NOT_SUPPORTED);
         Refuse(d, ConfirmedService::deleteObject, CLASS_OBJECT, CODE_OBJECT_DELETION_NOT_PERMITTED);
     }},
    {"needs-password", "wants the password \"secret\"", [](DeviceConfig& d) { d.Password = "secret"; }},
    {"refuses-backup", "refuses to start a backup or a restore",
     [](DeviceConfig& d) {
         Refuse(d, ConfirmedService::reinitializeDevice, CLASS_SERVICES, CODE_SERVICE_REQUEST_DENIED);
     }},

    // ---- what it says wrongly
    {"one-failed-item", "refuses to tell Status_Flags, and tells all else",
     [](DeviceConfig& d) { d.Quirks.Unreadable = PROP_STATUS_FLAGS; }},
    {"wrong-character-set", "gives its texts a character set that they do not have",
     [](DeviceConfig& d) { d.Quirks.WrongCharacterSet = true; }},
    {"wrong-types", "gives texts as numbers, and all else as texts",
     [](DeviceConfig& d) { d.Quirks.WrongTypes = true; }},
    {"truncated-tags", "leaves out the last octet of every value",
     [](DeviceConfig& d) { d.Quirks.TruncatedTags = true; }},
    {"nested-forever", "opens tags and never closes them", [](DeviceConfig& d) { d.Quirks.NestedForever = true; }},
    {"lying-counts", "claims three elements, items and records more than there are",
     [](DeviceConfig& d) { d.Quirks.LyingCounts = true; }},
    {"growing-object-list", "has one more object each time that the list is read",
     [](DeviceConfig& d) { d.Quirks.GrowingObjectList = true; }},
    {"object-list-4-billion", "claims 4,000,000,000 objects",
     [](DeviceConfig& d) { d.Quirks.ObjectListSize = 4'000'000'000; }},
    {"empty-file-answers", "reads files without octets and without their end",
     [](DeviceConfig& d) { d.Quirks.EmptyFiles = true; }},
    {"duplicate-instance", "another station answers Who-Is with the same instance",
     [](DeviceConfig& d) { d.Quirks.SecondClaimant = true; }},
    {"unknown-errors", "answers Error with numbers that mean nothing",
     [](DeviceConfig& d) { d.Faults.push_back(Fault::Error(NO_SUCH_ERROR, NO_SUCH_ERROR)); }},
    {"unknown-rejects", "answers Reject for a reason that means nothing",
     [](DeviceConfig& d) { d.Faults.push_back(Fault::Reject(NO_SUCH_REASON)); }},
    {"unknown-aborts", "answers Abort for a reason that means nothing",
     [](DeviceConfig& d) { d.Faults.push_back(Fault::Abort(NO_SUCH_REASON)); }},

    // ---- when and where it answers
    {"restarts", "is gone for two seconds after ten requests",
     [](DeviceConfig& d) { d.Faults.push_back(Fault::Restart(2000).After(WELL_AT_FIRST).ForTimes(1)); }},
    {"silent", "answers nothing at all", [](DeviceConfig& d) { d.Faults.push_back(Fault::Silent()); }},
    {"silent-after-n", "answers ten times and then never again",
     [](DeviceConfig& d) { d.Faults.push_back(Fault::Silent().After(WELL_AT_FIRST)); }},
    {"slow", "takes a second and a half for each answer",
     [](DeviceConfig& d) { d.Faults.push_back(Fault::Slow(1500)); }},
    {"lossy", "loses every third answer", [](DeviceConfig& d) { d.Faults.push_back(Fault::DropEvery(3)); }},
    {"answers-twice", "sends each answer twice", [](DeviceConfig& d) { d.Faults.push_back(Fault::Duplicate()); }},
    {"answers-late", "answers when the request is repeated, then twice",
     [](DeviceConfig& d) { d.Faults.push_back(Fault::LateAfterRetry()); }},
    {"wrong-invoke-id", "answers another request than the one that was made",
     [](DeviceConfig& d) { d.Faults.push_back(Fault::WrongInvokeId()); }},
    {"wrong-source", "answers from another address", [](DeviceConfig& d) { d.Faults.push_back(Fault::WrongSource()); }},
    {"missing-segments", "sends the first segment of an answer and no other",
     [](DeviceConfig& d) { d.Faults.push_back(Fault::SilentAfterSegments(1)); }},
    {"truncated-apdus", "sends ten octets of each answer",
     [](DeviceConfig& d) { d.Faults.push_back(Fault::TruncateTo(10)); }},
};

} // namespace

std::span<const Profile> AllProfiles() {
    return PROFILES;
}

const Profile* FindProfile(std::string_view name) {
    for (const Profile& profile : PROFILES)
        if (name == profile.Name)
            return &profile;
    return nullptr;
}

} // namespace sim
