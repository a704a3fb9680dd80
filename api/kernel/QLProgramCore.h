// The product kernel as the console and the driver see it: connections, tags, messages, the channel into the historical
// store, the current user and the trace. platform/kernel implements it.
//
// Every operation returns a QLResult: 0 is success. All operations may be called from any thread at any time; an
// operation on one connection does not wait for an operation on another. Text is UTF-8 and NUL-terminated, never longer
// than the buffer that is named with it.
//
// The number in each comment is the operation's number among the kernel's exports.
#pragma once

#include "api/kernel/TagDefinition.h"
#include "api/kernel/VfiRecord.h"

#include <cstddef>
#include <cstdint>

using QLResult = std::uint16_t;

inline constexpr QLResult QL_OK = 0;
inline constexpr QLResult QL_INVALID_ARGUMENT = 1;   // null pointer, wrong size word, value out of range
inline constexpr QLResult QL_NO_CONNECTION = 2;      // the handle is not one that Connect gave
inline constexpr QLResult QL_NO_RESOURCES = 3;       // no free handle or channel
inline constexpr QLResult QL_NO_SUCH_TAG = 5;        // no tag of this name or id; past the last tag
inline constexpr QLResult QL_DELETED_TAG = 6;        // the slot of this id is empty, tags may follow behind it
inline constexpr QLResult QL_NO_VALUE = 8;           // the tag has not had a value yet; nobody has logged in
inline constexpr QLResult QL_TIMEOUT = 9;            // no message within the time
inline constexpr QLResult QL_WRONG_TYPE = 10;        // the tag's value cannot be given or taken in this form
inline constexpr QLResult QL_NO_CHANNEL = 11;        // the channel is not one that OpenHistory gave
inline constexpr QLResult QL_STORE_FAILURE = 12;     // the historical store refused; nothing of the block was stored
inline constexpr QLResult QL_SHUT_DOWN = 13;         // the kernel shuts down and takes no new connection
inline constexpr QLResult QL_MESSAGES_LOST = 0x8000; // a message was delivered, but older ones were dropped before it

inline constexpr std::size_t QL_MESSAGE_SIZE = 28;
inline constexpr std::size_t QL_STATION_NAME_SIZE = 16; // with the closing NUL
inline constexpr std::size_t QL_TAG_NAME_SIZE = 48;     // with the closing NUL
inline constexpr std::size_t QL_USER_NAME_SIZE = 88;    // with the closing NUL
inline constexpr std::size_t QL_FOLDER_SIZE = 260;      // with the closing NUL

// Codes of the messages that ReceiveMessage delivers. Receivers ignore codes they do not know.
inline constexpr std::uint16_t QL_MSG_EXIT = 0;       // the kernel shuts down; close the connection. Comes once, last
inline constexpr std::uint16_t QL_MSG_TAG_CHANGE = 1; // QLTagChangeMessage

// Values of RqGateMsg's mode.
inline constexpr int QL_GATE_SUBSCRIBE = 1;
inline constexpr int QL_GATE_CANCEL = 2;

// GetTagValue's kind that asks for the value as a double.
inline constexpr int QL_VALUE_AS_DOUBLE = 11;

// Trace level of the history transfer's thread.
inline constexpr unsigned QL_TRACE_HISTORY = 0x20;

// Message 1: a tag's value after a change, for the connections that asked with RqGateMsg.
#pragma pack(push, 4)
struct QLTagChangeMessage {
    std::uint16_t code;
    std::uint16_t reserved;
    std::uint32_t tagId; // without the station, as GetTagIdByName gives it
    double value;        // read with memcpy: it need not be aligned
    std::uint8_t unused[12];
};
#pragma pack(pop)
static_assert(sizeof(QLTagChangeMessage) == QL_MESSAGE_SIZE);

class IQLProgramCore {
public:
    virtual ~IQLProgramCore() = default;

    // 3: station status of the connection's station: 0 is active, anything else passive.
    virtual QLResult GetStationStatus(std::uint8_t handle, std::uint32_t& status) = 0;
    // 7: local station name into a buffer of QL_STATION_NAME_SIZE bytes. The five further arguments are 0.
    virtual QLResult GetStationName(std::uint8_t handle, char* buffer, int, int, int, int, int) = 0;
    // 27: opens a connection under a name (any number may have the same one). The arguments behind the name are 1 and
    // 0. The handle is never 0. It is also what CDriver::GetGateId gives: handles and gate ids are one number space.
    virtual QLResult Connect(const char* name, int mode, int option, std::uint8_t& handle) = 0;
    // 29: closes a connection: its channels close, its subscriptions end, a ReceiveMessage on it returns
    // QL_NO_CONNECTION.
    virtual QLResult Disconnect(std::uint8_t handle) = 0;
    // 35: waits for one message and copies it into a buffer of QL_MESSAGE_SIZE bytes. QL_OK and QL_MESSAGES_LOST come
    // with a filled buffer, any other result leaves it alone. timeout in milliseconds, 0 polls.
    virtual QLResult ReceiveMessage(std::uint8_t handle, void* buffer, std::uint32_t timeout) = 0;
    // 102: definition of the tag with this id. Ids of local tags are the dense numbers 0..n-1, n at most 65535, so the
    // same operation walks the tags by index: QL_DELETED_TAG for an empty slot, QL_NO_SUCH_TAG past the last one. The
    // high 16 bits are the station, 0 and the local station's number both meaning this one. definition.size must be
    // sizeof(TagDefinition).
    virtual QLResult GetTagDefinition(std::uint8_t handle, std::uint32_t tagId, TagDefinition& definition) = 0;
    // 143: id, with the station number in its high 16 bits, of "NAME" or "STATION:NAME".
    virtual QLResult GetTagIdWithStation(std::uint8_t handle, const char* name, std::uint32_t& tagId) = 0;
    // 214: makes all that was written on the channel durable.
    virtual QLResult FlushHistory(std::uint32_t channel) = 0;
    // 216: closes the channel.
    virtual QLResult CloseHistory(std::uint32_t channel) = 0;
    // 236: opens a channel into the historical store. mode 2 appends. The unnamed arguments are 0. The channel is never
    // 0.
    virtual QLResult OpenHistory(std::uint8_t handle, int, int mode, int, int option, std::uint32_t& channel) = 0;
    // 239: stores a block of records: all of them, durable, or none. word is -1 on entry and the index of the first
    // record at fault after a failure that has one.
    virtual QLResult WriteHistory(std::uint32_t channel, int, std::uint32_t count, const VfiRecord* records,
                                  std::int16_t& word) = 0;

    // 141: asks for (QL_GATE_SUBSCRIBE) or cancels (QL_GATE_CANCEL) change messages on count tags: on all of them or on
    // none. Who asks twice cancels twice, and gets each message once. Text tags have no change messages.
    virtual QLResult RqGateMsg(std::uint8_t gate, int count, const std::uint32_t* tagIds, int mode) = 0;
    // 171: present value of a tag; kind is QL_VALUE_AS_DOUBLE, the last two arguments are 0. QL_NO_VALUE before the
    // first one, QL_WRONG_TYPE for a text tag.
    virtual QLResult GetTagValue(std::uint8_t gate, int kind, std::uint32_t tagId, double& value, int, int) = 0;
    // 181: begins a walk over the tags: QL_NO_SUCH_TAG when there are none. first and count tell the range of ids; the
    // last two arguments are 0.
    virtual QLResult OpenTagEnumeration(std::uint8_t gate, std::uint32_t& first, std::uint32_t& count, int, int) = 0;
    // 527: id of a local tag, by its exact name.
    virtual QLResult GetTagIdByName(std::uint8_t gate, const char* name, std::uint32_t& tagId) = 0;

    // 232: a folder of the product by number, into a buffer of QL_FOLDER_SIZE bytes.
    virtual QLResult GetProductFolder(int folder, char* buffer, int) = 0;
    // XosGetHelpPath of the system layer: the folder of the help files with a separator behind it, into a buffer of
    // QL_FOLDER_SIZE bytes. QL_INVALID_ARGUMENT when there is none.
    virtual QLResult GetHelpPath(char* buffer) = 0;
    // 303: name of the logged-in user, into a buffer of QL_USER_NAME_SIZE bytes. QL_NO_VALUE, with the buffer as it
    // was, while nobody has logged in.
    virtual QLResult GetCurrentUserName(std::uint8_t gate, char* buffer) = 0;
    // 329: a line for the kernel's trace, kept when the trace mask has the level's bits.
    virtual void Trace(unsigned level, const char* text) = 0;
};
