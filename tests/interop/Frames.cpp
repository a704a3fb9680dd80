#include "tests/interop/Frames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string_view>

namespace interop {

namespace {

std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

void Replace(std::string& text, std::string_view what, std::string_view by) {
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
}

// An attribute of a PDML element, which stands on one line; empty when it has none.
std::string Attribute(const std::string& line, const std::string& name) {
    const std::string start = " " + name + "=\"";
    const std::size_t at = line.find(start);
    if (at == std::string::npos)
        return {};
    const std::size_t begin = at + start.size();
    std::string value = line.substr(begin, line.find('"', begin) - begin);
    Replace(value, "&lt;", "<");
    Replace(value, "&gt;", ">");
    Replace(value, "&quot;", "\"");
    Replace(value, "&#x27;", "'");
    Replace(value, "&amp;", "&");
    return value;
}

// Calls take for each line that a command of the shell prints.
void Run(const std::string& command, const std::function<void(const std::string&)>& take) {
    std::FILE* const pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        throw std::runtime_error("no process for " + command);
    char* line = nullptr;
    std::size_t capacity = 0;
    std::string last;
    for (ssize_t length = 0; (length = ::getline(&line, &capacity, pipe)) > 0;) {
        last.assign(line, static_cast<std::size_t>(length));
        take(last);
    }
    std::free(line);
    if (::pclose(pipe) != 0)
        throw std::runtime_error("failed: " + command + "\n" + last);
}

// options: of the decoder, for its output.
void Decode(const std::filesystem::path& file, std::uint16_t udpPort, const std::string& options,
            const std::function<void(const Frame&)>& take) {
    // An empty home: neither settings nor plug-ins of the user.
    const std::string home = Quoted(file.parent_path().string());
    const std::string command = "HOME=" + home + " XDG_CONFIG_HOME=" + home + " WIRESHARK_CONFIG_DIR=" + home +
                                " LC_ALL=C TZ=UTC0 tshark -n -T pdml " + options +
                                " -d udp.port==" + std::to_string(udpPort) + ",bvlc -r " + Quoted(file.string()) +
                                " 2>" + Quoted(file.string() + ".errors");
    Frame frame;
    Run(command, [&](const std::string& line) {
        if (line.find("<packet>") != std::string::npos) {
            frame.Fields.clear();
        } else if (line.find("</packet>") != std::string::npos) {
            take(frame);
        } else if (line.find("<field ") != std::string::npos || line.find("<proto ") != std::string::npos) {
            Field field{Attribute(line, "name"), Attribute(line, "show"), Attribute(line, "showname"),
                        std::strtoul(Attribute(line, "pos").c_str(), nullptr, 10), Attribute(line, "value")};
            if (field.Label.empty())
                field.Label = field.Value;
            frame.Fields.push_back(std::move(field));
        }
    });
}

// Lines that tell how something is coded, not what it is.
bool IsHeader(const Field& field) {
    static const std::set<std::string> NAMES{"bacapp.application_tag_number",
                                             "bacapp.context_tag_number",
                                             "bacapp.extended_tag_number",
                                             "bacapp.LVT",
                                             "bacapp.named_tag",
                                             "bacapp.objectType",
                                             "bacapp.instance_number",
                                             "bacapp.pduflags",
                                             "bacapp.tag_class",
                                             "bacapp.unused_bits",
                                             "bacapp.invoke_id",
                                             "bacapp.property_identifier",
                                             "bacnet.control",
                                             "bacnet.version",
                                             "bvlc.type"};
    // Flags, which say something when they are set.
    static const std::set<std::string> FLAGS{"bacapp.segmented_request", "bacapp.more_segments", "bacapp.SA",
                                             "bacapp.response_segments"};
    if ((FLAGS.count(field.Name) != 0 || field.Name.starts_with("bacnet.control_")) && field.Value == "0")
        return true;
    if (!field.Name.empty())
        return NAMES.count(field.Name) != 0;
    return field.Label.starts_with("Context Tag:") || field.Label.starts_with("Application Tag:") ||
           field.Label.starts_with("{[") || field.Label.starts_with("}[");
}

} // namespace

std::vector<std::string> Frame::All(const std::string& name) const {
    std::vector<std::string> values;
    for (const Field& field : Fields)
        if (field.Name == name)
            values.push_back(field.Value);
    return values;
}

std::string Frame::First(const std::string& name) const {
    const std::vector<std::string> values = All(name);
    return values.empty() ? std::string() : values.front();
}

bool Frame::Has(const std::string& name) const {
    return std::ranges::any_of(Fields, [&](const Field& field) { return field.Name == name; });
}

bool Frame::Shows(const std::string& label) const {
    return Count(label) != 0;
}

std::size_t Frame::Count(const std::string& label) const {
    return static_cast<std::size_t>(
        std::ranges::count_if(Fields, [&](const Field& field) { return field.Label.starts_with(label); }));
}

std::string Frame::Text() const {
    std::string text;
    for (const Field& field : Fields)
        text += field.Name + " | " + field.Value + " | " + field.Label + "\n";
    return text;
}

bool HasDecoder() {
    return std::system("tshark --version >/dev/null 2>&1") == 0;
}

std::vector<Frame> Decode(const std::filesystem::path& file, std::uint16_t udpPort) {
    std::vector<Frame> frames;
    Decode(file, udpPort, "", [&](const Frame& frame) { frames.push_back(frame); });
    return frames;
}

void DecodeEach(const std::filesystem::path& file, std::uint16_t udpPort, const std::string& layer,
                const std::function<void(const Frame&)>& take) {
    Decode(file, udpPort, "-J " + Quoted(layer), take);
}

std::string Reading(const Frame& frame, const std::string& layer) {
    std::string text;
    bool inside = false;
    for (const Field& field : frame.Fields) {
        if (field.Name == layer)
            inside = true;
        else if (!field.Name.empty() && !field.Name.starts_with(layer + "."))
            inside = false; // of the next layer
        else if (inside && !IsHeader(field))
            text += "    " + (field.Name.empty() ? field.Label : field.Name + " " + field.Value) + "\n";
    }
    return text;
}

void ExpectGolden(const std::string& name, const std::string& text) {
    const std::string path = BDC_SOURCE_DIR "/tests/golden/interop/" + name;
    if (std::getenv("BDC_WRITE_GOLDEN") != nullptr) {
        std::ofstream(path, std::ios::binary) << text;
        return;
    }
    std::ifstream file(path, std::ios::binary);
    const std::string golden{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    EXPECT_EQ(text, golden) << "see " << path;
}

std::string Objection(const Frame& frame) {
    for (const Field& field : frame.Fields) {
        if (field.Name.starts_with("_ws.expert") || field.Name.starts_with("_ws.malformed") ||
            field.Name.starts_with("bacapp.bad_") || field.Name == "bacapp.fragment.error" || field.Name == "data")
            return field.Name + " " + field.Label;
        if (field.Label.find("Malformed") != std::string::npos)
            return field.Label;
    }
    if (!frame.Has("bvlc.function"))
        return "is not BACnet/IP";
    const bool carriesNpdu = frame.Has("bacnet.version");
    if (carriesNpdu && !frame.Has("bacapp.type") && !frame.Has("bacnet.mesgtyp"))
        return "has neither an APDU nor a message of the network layer";
    return {};
}

} // namespace interop
