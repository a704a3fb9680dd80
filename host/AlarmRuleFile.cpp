#include "host/AlarmRuleFile.h"

#include "api/bacnet/Log.h"
#include "base/DurableFile.h"
#include "host/AlarmJson.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <cstdio>

namespace {

using Json = nlohmann::json;

constexpr std::size_t MAX_FILE_SIZE = 256 << 20;

bool Decode(const std::string& text, std::map<AlarmRuleKey, AlarmDefinition>& rules) {
    const Json json = Json::parse(text, nullptr, false);
    if (!json.is_array())
        return false;
    try {
        for (const Json& entry : json) {
            AlarmRuleKey key;
            key.device = entry.at("device").get<std::uint32_t>();
            key.object.Type = entry.at("type").get<std::uint32_t>();
            key.object.Instance = entry.at("instance").get<std::uint32_t>();
            rules[key] = entry.at("alarm").get<AlarmDefinition>();
        }
    } catch (const Json::exception&) {
        return false;
    }
    return true;
}

std::string Encode(const std::map<AlarmRuleKey, AlarmDefinition>& rules) {
    Json json = Json::array();
    for (const auto& [key, alarm] : rules)
        json.push_back(
            {{"device", key.device}, {"type", key.object.Type}, {"instance", key.object.Instance}, {"alarm", alarm}});
    return json.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace

CAlarmRuleFile::CAlarmRuleFile(std::string path) : m_path(std::move(path)) {
    Read();
}

void CAlarmRuleFile::Reload() {
    const std::lock_guard guard(m_lock);
    Read();
}

bool CAlarmRuleFile::Find(const AlarmRuleKey& key, AlarmDefinition& definition) {
    const std::lock_guard guard(m_lock);
    const auto found = m_rules.find(key);
    if (found == m_rules.end())
        return false;
    definition = found->second;
    return true;
}

void CAlarmRuleFile::Set(const AlarmRuleKey& key, const AlarmDefinition& definition) {
    const std::lock_guard guard(m_lock);
    m_rules[key] = definition;
    Write();
}

bool CAlarmRuleFile::Remove(const AlarmRuleKey& key) {
    const std::lock_guard guard(m_lock);
    if (m_rules.erase(key) == 0)
        return false;
    Write();
    return true;
}

const char* CAlarmRuleFile::GetFileName() {
    return m_path.c_str();
}

std::filesystem::file_time_type CAlarmRuleFile::GetFileTime() {
    const std::lock_guard guard(m_lock);
    return m_time;
}

std::map<AlarmRuleKey, AlarmDefinition> CAlarmRuleFile::GetAll() {
    const std::lock_guard guard(m_lock);
    return m_rules;
}

void CAlarmRuleFile::Read() {
    m_isDamaged = false;
    std::map<AlarmRuleKey, AlarmDefinition> rules;
    std::error_code failure;
    const auto time = std::filesystem::last_write_time(m_path, failure);
    m_time = failure ? std::filesystem::file_time_type() : time;
    if (!failure) {
        std::string text;
        std::string error;
        if (ReadWholeFile(m_path, MAX_FILE_SIZE, text, &error) != FileRead::Ok) {
            LogErr("Alarm rules: %s", error.c_str());
            m_isDamaged = true;
        } else if (!Decode(text, rules)) {
            LogErr("Alarm rules: %s is damaged", m_path.c_str());
            m_isDamaged = true;
            rules.clear();
        }
    }
    m_rules = std::move(rules);
}

void CAlarmRuleFile::Write() {
    if (m_isDamaged)
        rename(m_path.c_str(), (m_path + ".damaged").c_str());
    m_isDamaged = false;
    std::string error;
    if (!ReplaceWholeFile(m_path, Encode(m_rules), FileAccess::OwnerOnly, &error))
        LogErr("Alarm rules: %s", error.c_str());
    std::error_code failure;
    m_time = std::filesystem::last_write_time(m_path, failure);
}
