// `bdc file get` and `bdc file put`: the loop over the chunks of a device's file. It runs in the command's own process,
// where the file on this side is; each chunk is a request of its own, to the running instance or to the stack in this
// process.
//
// A file of record access is, on this side, one record a line, in hexadecimal pairs.
#pragma once

#include "host/ControlProtocol.h"

#include <cstdint>
#include <functional>
#include <string>

inline constexpr std::int64_t FILE_CHUNK_LIMIT = 16384; // octets or records in one request

struct FileTransfer {
    std::string device; // as it was typed
    std::string instance;
    std::string path;
};

using AskStep = std::function<ControlReply(const ControlRequest&)>;

// The file on this side is replaced when all of it has come; on a failure it stays as it was.
ControlReply GetFile(const FileTransfer& transfer, const AskStep& ask);
// Writes chunk by chunk from the start, then cuts off what the device's file had behind that.
ControlReply PutFile(const FileTransfer& transfer, const AskStep& ask);
