#include "module/browser/ObjectStatus.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "api/bacnet/Requests.h"
#include "module/browser/BrowserTree.h"
#include "module/console/Progress.h"

#include <array>
#include <set>

namespace {

constexpr unsigned BATCH = 20;
constexpr const char* TEXT = "Reading object status flags";

// Bits of Status_Flags (clause 12.1, BACnetStatusFlags).
constexpr unsigned IN_ALARM = 0;
constexpr unsigned FAULT = 1;
constexpr unsigned OUT_OF_SERVICE = 3;

using Objects = std::set<BACSTAC_OBJECT_ID>;

void CollectType(CBrowserTree& tree, TreeItem& type, Objects& objects) {
    for (const auto& object : tree.GetChildren(type)) {
        tree.SetImages(*object, IMAGE_OBJECT, STATE_NOT_READ);
        objects.insert({type.value, object->value});
    }
}

// Serves the messages that wait. False once the console shuts down: what the operator wishes is not looked at.
bool Serve(IProgress& progress, std::size_t done, std::size_t count) {
    progress.SetProgress(TEXT, count == 0 ? 0 : static_cast<unsigned>(done * 100 / count));
    progress.ClearCancelled();
    return !progress.IsCancelled();
}

// The types are asked for by number, as the tree may change whenever messages are served.
bool Collect(CBrowserTree& tree, unsigned device, IProgress& progress, Objects& objects) {
    std::vector<BACSTAC_OBJECT_TYPE> types;
    if (TreeItem* const item = tree.FindDevice(device))
        for (const auto& type : tree.GetChildren(*item))
            types.push_back(type->value);
    for (const BACSTAC_OBJECT_TYPE type : types) {
        if (CBACnetDir::GetStdEventType(type) != -1) {
            if (TreeItem* const item = tree.FindType(device, type))
                CollectType(tree, *item, objects);
        }
        if (!Serve(progress, 0, 0))
            return false;
    }
    return true;
}

void ShowStatus(CBrowserTree& tree, unsigned device, const BACSTAC_OBJECT_ID& object, const BACSTAC_BIT_STRING& flags) {
    TreeItem* const item = tree.FindObject(device, object);
    if (item == nullptr)
        return;
    const bool isAlarm = CBacGeneral::TestBitStringBit(flags, IN_ALARM) || CBacGeneral::TestBitStringBit(flags, FAULT);
    tree.SetImages(*item,
                   CBacGeneral::TestBitStringBit(flags, OUT_OF_SERVICE) ? IMAGE_OUT_OF_SERVICE : IMAGE_IN_SERVICE,
                   isAlarm ? STATE_ALARM : STATE_NORMAL);
}

} // namespace

void ReadObjectsStatus(CBacGeneral& bacnet, CBrowserTree& tree, unsigned device, IProgress& progress) {
    Objects objects;
    if (!Serve(progress, 0, 0) || !Collect(tree, device, progress, objects))
        return;
    CRPMRequest request(BATCH, PROP_STATUS_FLAGS, BACSTAC_NO_INDEX);
    std::array<BACSTAC_BIT_STRING, BATCH> flags;
    std::size_t done = 0;
    for (const BACSTAC_OBJECT_ID& object : objects) {
        if (!Serve(progress, done, objects.size()))
            return;
        BACSTAC_BIT_STRING& room = flags[request.GetItemCnt()];
        room = {};
        request.Append(object, &room, sizeof room);
        if (++done != objects.size() && !request.IsFull())
            continue;
        if (!request.Execute(device, bacnet.GetDevAddr(device)))
            return;
        for (unsigned i = 0; i < request.GetItemCnt(); ++i) {
            const BACSTAC_READ_RESULT_ITEM* const result = request.GetResult(i);
            BACSTAC_OBJECT_ID id{};
            if (result && result->Success != 0 && result->Contents.DataType == TYPE_BIT_STRING &&
                request.GetObjId(i, id))
                ShowStatus(tree, device, id, flags[i]);
        }
        request.Clear();
    }
}
