#include "module/console/LogPage.h"

#include "api/bacnet/Log.h"
#include "base/Decimal.h"

namespace {

constexpr std::uint32_t FLAGS[LOG_CHECK_COUNT] = {LOG_ONLINE_ENABLED, LOG_ONLINE_LIMIT_SIZE, LOG_HISTORICAL_ENABLED,
                                                  LOG_HISTORICAL_LIMIT_SIZE, LOG_HISTORICAL_LIMIT_SESSIONS};

constexpr std::int32_t LogSettings::*LIMITS[LOG_LIMIT_COUNT] = {
    &LogSettings::onlineSizeLimit, &LogSettings::historicalSizeLimit, &LogSettings::historicalSessionLimit};

// Which check box a limit has, and which one enables that.
constexpr struct {
    LOG_LIMIT limit;
    LOG_CHECK own;
    LOG_CHECK log;
} RULES[] = {{LIMIT_ONLINE_SIZE, CHECK_ONLINE_SIZE, CHECK_ONLINE},
             {LIMIT_HISTORICAL_SIZE, CHECK_HISTORICAL_SIZE, CHECK_HISTORICAL},
             {LIMIT_SESSIONS, CHECK_SESSIONS, CHECK_HISTORICAL}};

} // namespace

LogPageFields ShowLog(const LogSettings& settings) {
    LogPageFields fields;
    for (int i = 0; i < LOG_CHECK_COUNT; ++i)
        fields.checks[i] = (settings.flags & FLAGS[i]) != 0;
    for (int i = 0; i < LOG_LIMIT_COUNT; ++i)
        fields.limits[i] = std::to_string(settings.*LIMITS[i]);
    if (settings.level < LOG_LEVEL_COUNT)
        fields.level = static_cast<int>(settings.level);
    return fields;
}

void TakeLog(const LogPageFields& fields, LogSettings& settings) {
    for (int i = 0; i < LOG_CHECK_COUNT; ++i)
        settings.flags = fields.checks[i] ? settings.flags | FLAGS[i] : settings.flags & ~FLAGS[i];
    for (int i = 0; i < LOG_LIMIT_COUNT; ++i)
        settings.*LIMITS[i] = static_cast<std::int32_t>(DecToU32(fields.limits[i]));
    if (fields.level != NO_LOG_LEVEL)
        settings.level = static_cast<std::uint32_t>(fields.level);
}

LogPageEnabled EnabledFor(const LogPageFields& fields) {
    LogPageEnabled enabled;
    enabled.checks[CHECK_ONLINE] = true;
    enabled.checks[CHECK_HISTORICAL] = true;
    for (const auto& rule : RULES) {
        enabled.checks[rule.own] = fields.checks[rule.log];
        enabled.limits[rule.limit] = fields.checks[rule.log] && fields.checks[rule.own];
    }
    return enabled;
}

void ApplyLog(const LogSettings& settings, CQilBAC_ErrLog& log) {
    const auto has = [&settings](std::uint32_t flag) { return (settings.flags & flag) != 0; };
    log.EnableLog(has(LOG_ONLINE_ENABLED));
    log.SetLogSizeLimit(has(LOG_ONLINE_LIMIT_SIZE), settings.onlineSizeLimit);
    log.EnableHisLog(has(LOG_HISTORICAL_ENABLED));
    log.SetHisLogSizeLimit(has(LOG_HISTORICAL_LIMIT_SIZE), settings.historicalSizeLimit);
    log.SetHisLogSessionLimit(has(LOG_HISTORICAL_LIMIT_SESSIONS), settings.historicalSessionLimit);
    log.SetLevel(static_cast<CQilBAC_ErrLog::LEVEL>(settings.level));
    log.SetFilter(static_cast<unsigned short>(settings.filter & 0xFFFFU));
}
