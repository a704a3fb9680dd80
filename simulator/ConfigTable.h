// Reads tables of a TOML document key by key, and tells what is wrong with them. Only the readers of descriptions
// include this header, for the sake of the parser's own. One thread.
#pragma once

#include <toml++/toml.h>

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

// Faults as lines "FILE:LINE: text"; there are never more than a screenful.
class ConfigFaults {
public:
    explicit ConfigFaults(std::string name) : m_name(std::move(name)) {}
    void Add(const toml::node& node, const std::string& text) { Add(node.source().begin.line, text); }
    void Add(toml::source_index line, const std::string& text) {
        constexpr unsigned LIMIT = 20;
        if (m_count++ < LIMIT)
            m_text += m_name + ":" + std::to_string(line) + ": " + text + "\n";
    }
    const std::string& Text() const { return m_text; }

private:
    std::string m_name;
    std::string m_text;
    unsigned m_count = 0;
};

// Takes the known keys out of one table, one call each; Finish tells of those that are left.
class ConfigTable {
public:
    ConfigTable(const toml::table& table, ConfigFaults& faults) : m_table(table), m_faults(faults) {}

    const toml::node* Take(std::string_view key) {
        m_known.insert(std::string(key));
        return m_table.get(key);
    }
    const toml::table& Source() const { return m_table; }

    template <typename T>
    void Integer(std::string_view key, std::int64_t low, std::int64_t high, T& target) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        const auto* value = node->as_integer();
        if (value != nullptr && value->get() >= low && value->get() <= high)
            target = static_cast<T>(value->get());
        else
            Fault(*node, key, "has to be a whole number from " + std::to_string(low) + " to " + std::to_string(high));
    }
    void Boolean(std::string_view key, bool& target) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        if (const auto* value = node->as_boolean())
            target = value->get();
        else
            Fault(*node, key, "has to be true or false");
    }
    void Text(std::string_view key, std::string& target) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        if (const auto* value = node->as_string())
            target = value->get();
        else
            Fault(*node, key, "has to be text");
    }
    // A text that parse (text -> optional) understands, or a whole number, which is handed on as its decimal text.
    template <typename Parse, typename T>
    void Word(std::string_view key, const char* what, Parse parse, T& target) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        std::string text;
        if (const auto* value = node->as_string())
            text = value->get();
        else if (const auto* number = node->as_integer())
            text = std::to_string(number->get());
        if (const auto meaning = parse(text))
            target = *meaning;
        else
            Fault(*node, key, std::string("has to be ") + what);
    }
    // The same for a list of texts.
    template <typename Parse, typename T>
    void Words(std::string_view key, const char* what, Parse parse, std::vector<T>& target) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        const toml::array* list = node->as_array();
        if (list == nullptr)
            return Fault(*node, key, std::string("has to be a list of ") + what);
        target.clear();
        for (const toml::node& element : *list) {
            const auto* text = element.as_string();
            const auto meaning = text == nullptr ? decltype(parse(std::string()))() : parse(text->get());
            if (meaning)
                target.push_back(*meaning);
            else
                Fault(element, key, std::string("has to be a list of ") + what);
        }
    }
    // Calls read(ConfigTable&) for every table of the list of tables.
    void Tables(std::string_view key, const std::function<void(ConfigTable&)>& read) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        const toml::array* list = node->as_array();
        if (list == nullptr || (!list->empty() && !list->is_homogeneous(toml::node_type::table)))
            return Fault(*node, key, "has to be a list of tables");
        for (const toml::node& element : *list) {
            ConfigTable table(*element.as_table(), m_faults);
            read(table);
            table.Finish();
        }
    }
    // Calls read(ConfigTable&) for the table, if there is one.
    void Single(std::string_view key, const std::function<void(ConfigTable&)>& read) {
        const toml::node* node = Take(key);
        if (node == nullptr)
            return;
        if (!node->is_table())
            return Fault(*node, key, "has to be a table");
        ConfigTable table(*node->as_table(), m_faults);
        read(table);
        table.Finish();
    }
    void Require(std::string_view key) {
        if (!m_table.contains(key))
            m_faults.Add(m_table, "\"" + std::string(key) + "\" is missing");
    }
    void Fault(const toml::node& node, std::string_view key, const std::string& text) {
        m_faults.Add(node, "\"" + std::string(key) + "\" " + text);
    }
    void Finish() {
        for (const auto& [key, node] : m_table)
            if (!m_known.contains(std::string(key.str())))
                m_faults.Add(key.source().begin.line, "unknown key \"" + std::string(key.str()) + "\"");
    }
    ConfigFaults& AllFaults() const { return m_faults; }

private:
    const toml::table& m_table;
    ConfigFaults& m_faults;
    std::set<std::string> m_known;
};

} // namespace sim
