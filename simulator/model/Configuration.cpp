#include "simulator/model/Configuration.h"

#include <charconv>
#include <optional>
#include <utility>

namespace sim {

namespace {

constexpr char DIGITS[] = "0123456789abcdef";

// A line: type, instance, property, shape, and each element in hex with a point in front of it.
struct Line {
    BACSTAC_OBJECT_ID Object{};
    BACSTAC_PROPERTY_ID Property = 0;
    Value Content;
};

bool TakeNumber(std::string_view& text, std::uint32_t& number) {
    const char* const end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || behind == end || *behind != ' ')
        return false;
    text.remove_prefix(static_cast<std::size_t>(behind - text.data()) + 1);
    return true;
}

int DigitOf(char c) {
    const std::string_view digits(DIGITS);
    const std::size_t at = digits.find(c);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

bool TakeElements(std::string_view text, std::vector<std::string>& elements) {
    while (!text.empty()) {
        if (text.front() != '.')
            return false;
        text.remove_prefix(1);
        std::string& element = elements.emplace_back();
        while (text.size() >= 2 && text.front() != '.') {
            const int high = DigitOf(text[0]);
            const int low = DigitOf(text[1]);
            if (high < 0 || low < 0)
                return false;
            element.push_back(static_cast<char>(high << 4 | low));
            text.remove_prefix(2);
        }
    }
    return true;
}

std::optional<Line> ParseLine(std::string_view text) {
    Line line;
    std::uint32_t shape = 0;
    std::vector<std::string> elements;
    if (!TakeNumber(text, line.Object.Type) || !TakeNumber(text, line.Object.Instance) ||
        !TakeNumber(text, line.Property) || !TakeNumber(text, shape) ||
        shape > static_cast<std::uint32_t>(Shape::list) || !TakeElements(text, elements))
        return std::nullopt;
    if (static_cast<Shape>(shape) == Shape::single && elements.size() != 1)
        return std::nullopt;
    std::vector<std::span<const std::uint8_t>> wires;
    for (const std::string& element : elements)
        wires.emplace_back(reinterpret_cast<const std::uint8_t*>(element.data()), element.size());
    line.Content = Value::Of(static_cast<Shape>(shape), wires);
    return line;
}

} // namespace

std::string ConfigurationHead(std::uint32_t instance) {
    return "configuration of device " + std::to_string(instance) + "\n";
}

void AppendConfiguration(const Object& object, std::string& text) {
    for (const BACSTAC_PROPERTY_ID property : object.Properties()) {
        const Value* value = object.Find(property);
        const bool commands = property == PROP_PRIORITY_ARRAY;
        if (value == nullptr || (!object.IsWritable(property) && !commands))
            continue;
        for (const std::uint32_t number :
             {object.Id().Type, object.Id().Instance, property, static_cast<std::uint32_t>(value->GetShape())})
            text += std::to_string(number) + ' ';
        for (std::uint32_t i = 0; i < value->Count(); ++i) {
            text += '.';
            for (const std::uint8_t octet : value->Element(i)) {
                text += DIGITS[octet >> 4];
                text += DIGITS[octet & 15];
            }
        }
        text += '\n';
    }
}

bool ReadConfiguration(std::string_view text, std::uint32_t instance, const ConfiguredValue& take) {
    const std::string head = ConfigurationHead(instance);
    if (!text.starts_with(head))
        return false;
    text.remove_prefix(head.size());
    std::vector<Line> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const auto line = end == std::string_view::npos ? std::nullopt : ParseLine(text.substr(0, end));
        if (!line)
            return false;
        lines.push_back(*line);
        text.remove_prefix(end + 1);
    }
    for (Line& line : lines)
        take(line.Object, line.Property, std::move(line.Content));
    return true;
}

} // namespace sim
