// What an independent decoder reads in a capture file: the frames in their order, each with its fields. The decoder is
// tshark, run as a process of its own, without the user's settings and in the C locale.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace interop {

struct Field {
    std::string Name;         // "bacapp.invoke_id"; empty for a line of text
    std::string Value;        // as the decoder's filters have it: numbers without their names; the line of a text
    std::string Label;        // as the decoder shows it to people
    std::size_t Position = 0; // of its first octet in the packet, from the IP header on
    std::string Octets;       // hexadecimal
};

class Frame {
public:
    std::vector<Field> Fields; // also those of the layers below BACnet

    // All values of a field, in their order.
    std::vector<std::string> All(const std::string& name) const;
    // The first value; empty when there is none.
    std::string First(const std::string& name) const;
    bool Has(const std::string& name) const;
    // Whether a label begins so.
    bool Shows(const std::string& label) const;
    std::size_t Count(const std::string& label) const;
    std::string Text() const; // all labels, one a line, for messages
};

// Whether there is a decoder on this machine.
bool HasDecoder();
// Decodes a file whose BACnet/IP traffic is on one UDP port. Throws std::runtime_error when the decoder fails.
std::vector<Frame> Decode(const std::filesystem::path& file, std::uint16_t udpPort);
// The same one frame at a time, for long files, and with the fields of one layer only ("bacapp").
void DecodeEach(const std::filesystem::path& file, std::uint16_t udpPort, const std::string& layer,
                const std::function<void(const Frame&)>& take);

// What the decoder reads in one layer ("bvlc", "bacnet", "bacapp"), a line each, indented: its text, or the name and
// the value of a field of its filters. Without the tags, and without flags that are not set.
std::string Reading(const Frame& frame, const std::string& layer);
// Compares with tests/golden/interop/NAME. With BDC_WRITE_GOLDEN set in the environment the file is written instead.
void ExpectGolden(const std::string& name, const std::string& text);

// Why the decoder does not agree with a frame; empty when it does. A frame has to be BACnet/IP, without a mark of the
// decoder's experts and without octets left over.
std::string Objection(const Frame& frame);

} // namespace interop
