// What a `bdc` command and the running instance say to each other: one request a connection, one line of JSON each.
//
//   request  {"command":"tag get","arguments":{"name":"AHU1"}}
//   reply    {"row":{...}}          any number of them, then
//            {"code":0,"result":{...}}  or  {"code":1,"error":"no such tag: AHU1"}
//
// Pure functions, any thread.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

inline constexpr const char* CONTROL_SOCKET_NAME = "control.sock";
inline constexpr std::size_t MAX_CONTROL_REQUEST = 64 << 10; // bytes of a request's line
inline constexpr std::size_t MAX_CONTROL_LINE = 16 << 20;    // bytes of a reply's line

// Exit codes of every command.
inline constexpr int EXIT_DONE = 0;
inline constexpr int EXIT_FAILED = 1;
inline constexpr int EXIT_USAGE = 2;
inline constexpr int EXIT_PARTLY = 3;

struct ControlRequest {
    std::string command;
    std::map<std::string, std::string> arguments;
};

struct ControlReply {
    int code = EXIT_DONE;
    std::string error;  // one line, UTF-8; empty when code is EXIT_DONE
    std::string result; // a JSON document, empty for none
    // Not sent: what the instance does once the reply is on its way; may be empty.
    std::function<void()> then = {};
};

// One line of a reply.
struct ControlLine {
    bool isRow = false;
    std::string row; // a JSON document, if isRow
    ControlReply reply;
};

// The encoded forms end with a newline and hold no other. Bytes that are not UTF-8 are replaced.
std::string EncodeRequest(const ControlRequest& request);
std::string EncodeRow(std::string_view json);
std::string EncodeReply(const ControlReply& reply);

// False: the line is not of this form, error says why. Never throws, whatever the bytes.
bool DecodeRequest(std::string_view line, ControlRequest& request, std::string& error);
bool DecodeLine(std::string_view line, ControlLine& decoded, std::string& error);
