#include "host/ControlProtocol.h"

#include <nlohmann/json.hpp>

namespace {

// The members of a reply stand in the order in which they were given.
using Json = nlohmann::ordered_json;

std::string Line(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

// The parser recurses neither on reading nor on discarding, but a document that is nested deeper than any of ours is
// refused before it costs memory.
bool Parse(std::string_view line, Json& json, std::string& error) {
    constexpr int MAX_DEPTH = 32;
    bool isTooDeep = false;
    const auto guard = [&](int depth, Json::parse_event_t, Json&) {
        isTooDeep = isTooDeep || depth > MAX_DEPTH;
        return !isTooDeep;
    };
    json = Json::parse(line.begin(), line.end(), guard, false);
    if (isTooDeep || json.is_discarded()) {
        error = isTooDeep ? "nested too deeply" : "not JSON";
        return false;
    }
    if (!json.is_object()) {
        error = "not a JSON object";
        return false;
    }
    return true;
}

} // namespace

std::string EncodeRequest(const ControlRequest& request) {
    return Line({{"command", request.command}, {"arguments", request.arguments}});
}

std::string EncodeRow(std::string_view json) {
    return "{\"row\":" + std::string(json) + "}\n";
}

std::string EncodeReply(const ControlReply& reply) {
    Json json{{"code", reply.code}};
    if (!reply.error.empty())
        json["error"] = reply.error;
    if (!reply.result.empty())
        json["result"] = Json::parse(reply.result, nullptr, false);
    return Line(json);
}

bool DecodeRequest(std::string_view line, ControlRequest& request, std::string& error) {
    Json json;
    if (!Parse(line, json, error))
        return false;
    const auto command = json.find("command");
    if (command == json.end() || !command->is_string()) {
        error = "\"command\" is missing or not text";
        return false;
    }
    request = {command->get<std::string>(), {}};
    const auto arguments = json.find("arguments");
    if (arguments == json.end())
        return true;
    if (!arguments->is_object()) {
        error = "\"arguments\" is not an object";
        return false;
    }
    for (const auto& [key, value] : arguments->items()) {
        if (!value.is_string()) {
            error = "argument \"" + key + "\" is not text";
            return false;
        }
        request.arguments[key] = value.get<std::string>();
    }
    return true;
}

bool DecodeLine(std::string_view line, ControlLine& decoded, std::string& error) {
    Json json;
    if (!Parse(line, json, error))
        return false;
    decoded = {};
    if (const auto row = json.find("row"); row != json.end()) {
        decoded.isRow = true;
        decoded.row = row->dump();
        return true;
    }
    const auto code = json.find("code");
    if (code == json.end() || !code->is_number_integer()) {
        error = "\"code\" is missing or not a number";
        return false;
    }
    decoded.reply.code = code->get<int>();
    if (const auto text = json.find("error"); text != json.end() && text->is_string())
        decoded.reply.error = text->get<std::string>();
    if (const auto result = json.find("result"); result != json.end())
        decoded.reply.result = result->dump();
    return true;
}
