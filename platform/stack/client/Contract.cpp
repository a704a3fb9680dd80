// What the contract's classes need in one place: the process-wide pointer and the interfaces' destructors.
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Callbacks.h"

#include <filesystem>
#include <mutex>

CBacGeneral* BACnet = nullptr;

CAsyncCallBack::~CAsyncCallBack() = default;
CIAMCallback::~CIAMCallback() = default;
CIAMCallbackHandler::~CIAMCallbackHandler() = default;
CBacGeneral::~CBacGeneral() = default;

namespace {

std::mutex dirFileLock;
std::string dirFileName; // dirFileLock

} // namespace

void CBacGeneral::SetDirFileName(const std::string& path) {
    const std::lock_guard lock(dirFileLock);
    dirFileName = path;
}

std::string CBacGeneral::GetDirFileName() {
    const std::lock_guard lock(dirFileLock);
    if (dirFileName.empty()) {
        const std::u8string path = std::filesystem::absolute("bacnet.dir").u8string();
        dirFileName.assign(path.begin(), path.end());
    }
    return dirFileName;
}
