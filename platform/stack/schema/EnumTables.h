// Names of the standard's enumerations and of the bits of its bit strings (ANSI/ASHRAE 135 clause 21), by value from 0
// on. Numbers between names that the standard keeps free are called "reserved-n". For Enumerations.cpp.
#pragma once

#include <cstdint>

namespace bacnet::names {

// clang-format off
inline constexpr const char* ACTION[] = {"direct", "reverse"};
inline constexpr const char* BACKUP_STATE[] = {
    /* 0 */ "idle", "preparing-for-backup", "preparing-for-restore", "performing-a-backup", "performing-a-restore",
    /* 5 */ "backup-failure", "restore-failure",
};
inline constexpr const char* BINARY_PV[] = {"inactive", "active"};
inline constexpr const char* DAYS_OF_WEEK[] = {
    /* 0 */ "monday", "tuesday", "wednesday", "thursday", "friday", "saturday", "sunday",
};
inline constexpr const char* DEVICE_STATUS[] = {
    /* 0 */ "operational", "operational-read-only", "download-required", "download-in-progress", "non-operational",
    /* 5 */ "backup-in-progress",
};
inline constexpr const char* UNITS[] = {
    /*   0 */ "square-meters", "square-feet", "milliamperes", "amperes", "ohms", "volts", "kilovolts", "megavolts",
    /*   8 */ "volt-amperes", "kilovolt-amperes", "megavolt-amperes", "volt-amperes-reactive",
    /*  12 */ "kilovolt-amperes-reactive", "megavolt-amperes-reactive", "degrees-phase", "power-factor", "joules",
    /*  17 */ "kilojoules", "watt-hours", "kilowatt-hours", "btus", "therms", "ton-hours",
    /*  23 */ "joules-per-kilogram-dry-air", "btus-per-pound-dry-air", "cycles-per-hour", "cycles-per-minute",
    /*  27 */ "hertz", "grams-of-water-per-kilogram-dry-air", "percent-relative-humidity", "millimeters", "meters",
    /*  32 */ "inches", "feet", "watts-per-square-foot", "watts-per-square-meter", "lumens", "luxes",
    /*  38 */ "foot-candles", "kilograms", "pounds-mass", "tons", "kilograms-per-second", "kilograms-per-minute",
    /*  44 */ "kilograms-per-hour", "pounds-mass-per-minute", "pounds-mass-per-hour", "watts", "kilowatts",
    /*  49 */ "megawatts", "btus-per-hour", "horsepower", "tons-refrigeration", "pascals", "kilopascals", "bars",
    /*  56 */ "pounds-force-per-square-inch", "centimeters-of-water", "inches-of-water", "millimeters-of-mercury",
    /*  60 */ "centimeters-of-mercury", "inches-of-mercury", "degrees-celsius", "degrees-kelvin",
    /*  64 */ "degrees-fahrenheit", "degree-days-celsius", "degree-days-fahrenheit", "years", "months", "weeks",
    /*  70 */ "days", "hours", "minutes", "seconds", "meters-per-second", "kilometers-per-hour", "feet-per-second",
    /*  77 */ "feet-per-minute", "miles-per-hour", "cubic-feet", "cubic-meters", "imperial-gallons", "liters",
    /*  83 */ "us-gallons", "cubic-feet-per-minute", "cubic-meters-per-second", "imperial-gallons-per-minute",
    /*  87 */ "liters-per-second", "liters-per-minute", "us-gallons-per-minute", "degrees-angular",
    /*  91 */ "degrees-celsius-per-hour", "degrees-celsius-per-minute", "degrees-fahrenheit-per-hour",
    /*  94 */ "degrees-fahrenheit-per-minute", "no-units", "parts-per-million", "parts-per-billion", "percent",
    /*  99 */ "percent-per-second", "per-minute", "per-second", "psi-per-degree-fahrenheit", "radians",
    /* 104 */ "revolutions-per-minute", "currency1", "currency2", "currency3", "currency4", "currency5",
    /* 110 */ "currency6", "currency7", "currency8", "currency9", "currency10", "square-inches",
    /* 116 */ "square-centimeters", "btus-per-pound", "centimeters", "pounds-mass-per-second",
    /* 120 */ "delta-degrees-fahrenheit", "delta-degrees-kelvin", "kilohms", "megohms", "millivolts",
    /* 125 */ "kilojoules-per-kilogram", "megajoules", "joules-per-degree-kelvin",
    /* 128 */ "joules-per-kilogram-degree-kelvin", "kilohertz", "megahertz", "per-hour", "milliwatts",
    /* 133 */ "hectopascals", "millibars", "cubic-meters-per-hour", "liters-per-hour",
    /* 137 */ "kilowatt-hours-per-square-meter", "kilowatt-hours-per-square-foot", "megajoules-per-square-meter",
    /* 140 */ "megajoules-per-square-foot", "watts-per-square-meter-degree-kelvin", "cubic-feet-per-second",
    /* 143 */ "percent-obscuration-per-foot", "percent-obscuration-per-meter", "milliohms", "megawatt-hours",
    /* 147 */ "kilo-btus", "mega-btus", "kilojoules-per-kilogram-dry-air", "megajoules-per-kilogram-dry-air",
    /* 151 */ "kilojoules-per-degree-kelvin", "megajoules-per-degree-kelvin", "newton", "grams-per-second",
    /* 155 */ "grams-per-minute", "tons-per-hour", "kilo-btus-per-hour", "hundredths-seconds", "milliseconds",
    /* 160 */ "newton-meters", "millimeters-per-second", "millimeters-per-minute", "meters-per-minute",
    /* 164 */ "meters-per-hour", "cubic-meters-per-minute", "meters-per-second-per-second", "amperes-per-meter",
    /* 168 */ "amperes-per-square-meter", "ampere-square-meters", "farads", "henrys", "ohm-meters", "siemens",
    /* 174 */ "siemens-per-meter", "teslas", "volts-per-degree-kelvin", "volts-per-meter", "webers", "candelas",
    /* 180 */ "candelas-per-square-meter", "degrees-kelvin-per-hour", "degrees-kelvin-per-minute", "joule-seconds",
    /* 184 */ "radians-per-second", "square-meters-per-newton", "kilograms-per-cubic-meter", "newton-seconds",
    /* 188 */ "newtons-per-meter", "watts-per-meter-per-degree-kelvin", "microsiemens", "cubic-feet-per-hour",
    /* 192 */ "us-gallons-per-hour", "kilometers", "micrometers", "grams", "milligrams", "milliliters",
    /* 198 */ "milliliters-per-second", "decibels", "decibels-millivolt", "decibels-volt", "millisiemens",
    /* 203 */ "watt-hours-reactive", "kilowatt-hours-reactive", "megawatt-hours-reactive", "millimeters-of-water",
    /* 207 */ "per-mille", "grams-per-gram", "kilograms-per-kilogram", "grams-per-kilogram", "milligrams-per-gram",
    /* 212 */ "milligrams-per-kilogram", "grams-per-milliliter", "grams-per-liter", "milligrams-per-liter",
    /* 216 */ "micrograms-per-liter", "grams-per-cubic-meter", "milligrams-per-cubic-meter",
    /* 219 */ "micrograms-per-cubic-meter", "nanograms-per-cubic-meter", "grams-per-cubic-centimeter", "becquerels",
    /* 223 */ "kilobecquerels", "megabecquerels", "gray", "milligray", "microgray", "sieverts", "millisieverts",
    /* 230 */ "microsieverts", "microsieverts-per-hour", "decibels-a", "nephelometric-turbidity-unit", "ph",
    /* 235 */ "grams-per-square-meter", "minutes-per-degree-kelvin", "ohm-meter-squared-per-meter",
    /* 238 */ "ampere-seconds", "volt-ampere-hours", "kilovolt-ampere-hours", "megavolt-ampere-hours",
    /* 242 */ "volt-ampere-hours-reactive", "kilovolt-ampere-hours-reactive", "megavolt-ampere-hours-reactive",
    /* 245 */ "volt-square-hours", "ampere-square-hours", "joule-per-hours", "cubic-feet-per-day",
    /* 249 */ "cubic-meters-per-day", "watt-hours-per-cubic-meter", "joules-per-cubic-meter", "mole-percent",
    /* 253 */ "pascal-seconds", "million-standard-cubic-feet-per-minute",
};
inline constexpr const char* ERROR_CLASS[] = {
    /* 0 */ "device", "object", "property", "resources", "security", "services", "vt", "communication",
};
inline constexpr const char* EVENT_STATE[] = {
    /* 0 */ "normal", "fault", "offnormal", "high-limit", "low-limit", "life-safety-alarm",
};
inline constexpr const char* EVENT_TRANSITION_BITS[] = {"to-offnormal", "to-fault", "to-normal"};
inline constexpr const char* EVENT_TYPE[] = {
    /*  0 */ "change-of-bitstring", "change-of-state", "change-of-value", "command-failure", "floating-limit",
    /*  5 */ "out-of-range", "complex-event-type", "buffer-ready-old", "change-of-life-safety", "extended",
    /* 10 */ "buffer-ready", "unsigned-range", "reserved-12", "access-event", "double-out-of-range",
    /* 15 */ "signed-out-of-range", "unsigned-out-of-range", "change-of-characterstring", "change-of-status-flags",
    /* 19 */ "change-of-reliability", "none", "change-of-discrete-value", "change-of-timer",
};
inline constexpr const char* ERROR_CODE[] = {
    /*   0 */ "other", "authentication-failed", "configuration-in-progress", "device-busy",
    /*   4 */ "dynamic-creation-not-supported", "file-access-denied", "incompatible-security-levels",
    /*   7 */ "inconsistent-parameters", "inconsistent-selection-criterion", "invalid-data-type",
    /*  10 */ "invalid-file-access-method", "invalid-file-start-position", "invalid-operator-name",
    /*  13 */ "invalid-parameter-data-type", "invalid-time-stamp", "key-generation-error",
    /*  16 */ "missing-required-parameter", "no-objects-of-specified-type", "no-space-for-object",
    /*  19 */ "no-space-to-add-list-element", "no-space-to-write-property", "no-vt-sessions-available",
    /*  22 */ "property-is-not-a-list", "object-deletion-not-permitted", "object-identifier-already-exists",
    /*  25 */ "operational-problem", "password-failure", "read-access-denied", "security-not-supported",
    /*  29 */ "service-request-denied", "timeout", "unknown-object", "unknown-property", "reserved-33",
    /*  34 */ "unknown-vt-class", "unknown-vt-session", "unsupported-object-type", "value-out-of-range",
    /*  38 */ "vt-session-already-closed", "vt-session-termination-failure", "write-access-denied",
    /*  41 */ "character-set-not-supported", "invalid-array-index", "cov-subscription-failed", "not-cov-property",
    /*  45 */ "optional-functionality-not-supported", "invalid-configuration-data", "datatype-not-supported",
    /*  48 */ "duplicate-name", "duplicate-object-id", "property-is-not-an-array", "abort-buffer-overflow",
    /*  52 */ "abort-invalid-apdu-in-this-state", "abort-preempted-by-higher-priority-task",
    /*  54 */ "abort-segmentation-not-supported", "abort-proprietary", "abort-other", "invalid-tag", "network-down",
    /*  59 */ "reject-buffer-overflow", "reject-inconsistent-parameters", "reject-invalid-parameter-data-type",
    /*  62 */ "reject-invalid-tag", "reject-missing-required-parameter", "reject-parameter-out-of-range",
    /*  65 */ "reject-too-many-arguments", "reject-undefined-enumeration", "reject-unrecognized-service",
    /*  68 */ "reject-proprietary", "reject-other", "unknown-device", "unknown-route", "value-not-initialized",
    /*  73 */ "invalid-event-state", "no-alarm-configured", "log-buffer-full", "logged-value-purged",
    /*  77 */ "no-property-specified", "not-configured-for-triggered-logging", "unknown-subscription",
    /*  80 */ "parameter-out-of-range", "list-element-not-found", "busy", "communication-disabled", "success",
    /*  85 */ "access-denied", "bad-destination-address", "bad-destination-device-id", "bad-signature",
    /*  89 */ "bad-source-address", "bad-timestamp", "cannot-use-key", "cannot-verify-message-id",
    /*  93 */ "correct-key-revision", "destination-device-id-required", "duplicate-message",
    /*  96 */ "encryption-not-configured", "encryption-required", "incorrect-key", "invalid-key-data",
    /* 100 */ "key-update-in-progress", "malformed-message", "not-key-server", "security-not-configured",
    /* 104 */ "source-security-required", "too-many-keys", "unknown-authentication-type", "unknown-key",
    /* 108 */ "unknown-key-revision", "unknown-source-message", "not-router-to-dnet", "router-busy",
    /* 112 */ "unknown-network-message", "message-too-long", "security-error", "addressing-error",
    /* 116 */ "write-bdt-failed", "read-bdt-failed", "register-foreign-device-failed", "read-fdt-failed",
    /* 120 */ "delete-fdt-entry-failed", "distribute-broadcast-failed", "unknown-file-size", "abort-apdu-too-long",
    /* 124 */ "abort-application-exceeded-reply-time", "abort-out-of-resources", "abort-tsm-timeout",
    /* 127 */ "abort-window-size-out-of-range", "file-full", "inconsistent-configuration",
    /* 130 */ "inconsistent-object-type", "internal-error", "not-configured", "out-of-memory", "value-too-long",
    /* 135 */ "abort-insufficient-security", "abort-security-error", "duplicate-entry",
    /* 138 */ "invalid-value-in-this-state", "invalid-operation-in-this-state", "list-item-not-numbered",
    /* 141 */ "list-item-not-timestamped", "invalid-data-encoding", "bvlc-function-unknown",
    /* 144 */ "bvlc-proprietary-function-unknown", "header-encoding-error", "header-not-understood",
    /* 147 */ "message-incomplete", "not-a-bacnet-sc-hub", "payload-expected", "unexpected-data",
    /* 151 */ "node-duplicate-vmac", "http-unexpected-response-code", "http-no-upgrade", "http-resource-not-local",
    /* 155 */ "http-proxy-authentication-failed", "http-response-timeout", "http-response-syntax-error",
    /* 158 */ "http-response-value-error", "http-response-missing-header", "http-websocket-header-error",
    /* 161 */ "http-upgrade-required", "http-upgrade-error", "http-temporary-unavailable", "http-not-a-server",
    /* 165 */ "http-error", "websocket-scheme-not-supported", "websocket-unknown-control-message",
    /* 168 */ "websocket-close-error", "websocket-closed-by-peer", "websocket-endpoint-leaves",
    /* 171 */ "websocket-protocol-error", "websocket-data-not-accepted", "websocket-closed-abnormally",
    /* 174 */ "websocket-data-inconsistent", "websocket-data-against-policy", "websocket-frame-too-long",
    /* 177 */ "websocket-extension-missing", "websocket-request-unavailable", "websocket-error",
    /* 180 */ "tls-client-certificate-error", "tls-server-certificate-error", "tls-client-authentication-failed",
    /* 183 */ "tls-server-authentication-failed", "tls-client-certificate-expired",
    /* 185 */ "tls-server-certificate-expired", "tls-client-certificate-revoked", "tls-server-certificate-revoked",
    /* 188 */ "tls-error", "dns-unavailable", "dns-name-resolution-failed", "dns-resolver-failure", "dns-error",
    /* 193 */ "tcp-connect-timeout", "tcp-connection-refused", "tcp-closed-by-local", "tcp-closed-other",
    /* 197 */ "tcp-error", "ip-address-not-reachable", "ip-error", "certificate-expired", "certificate-invalid",
    /* 202 */ "certificate-malformed", "certificate-revoked", "unknown-security-key", "referenced-port-in-error",
};
inline constexpr const char* NOTIFY_TYPE[] = {"alarm", "event", "ack-notification"};
inline constexpr const char* FILE_ACCESS_METHOD[] = {"record-access", "stream-access"};
inline constexpr const char* LIFE_SAFETY_MODE[] = {
    /*  0 */ "off", "on", "test", "manned", "unmanned", "armed", "disarmed", "prearmed", "slow", "fast",
    /* 10 */ "disconnected", "enabled", "disabled", "automatic-release-disabled", "default",
};
inline constexpr const char* LIFE_SAFETY_OPERATION[] = {
    /* 0 */ "none", "silence", "silence-audible", "silence-visual", "reset", "reset-alarm", "reset-fault",
    /* 7 */ "unsilence", "unsilence-audible", "unsilence-visual",
};
inline constexpr const char* LIFE_SAFETY_STATE[] = {
    /*  0 */ "quiet", "pre-alarm", "alarm", "fault", "fault-pre-alarm", "fault-alarm", "not-ready", "active",
    /*  8 */ "tamper", "test-alarm", "test-active", "test-fault", "test-fault-alarm", "holdup", "duress",
    /* 15 */ "tamper-alarm", "abnormal", "emergency-power", "delayed", "blocked", "local-alarm", "general-alarm",
    /* 22 */ "supervisory", "test-supervisory",
};
inline constexpr const char* LIMIT_ENABLE[] = {"low-limit-enable", "high-limit-enable"};
inline constexpr const char* LOGGING_TYPE[] = {"polled", "cov", "triggered"};
inline constexpr const char* MAINTENANCE[] = {
    /* 0 */ "none", "periodic-test", "need-service-operational", "need-service-inoperative",
};
inline constexpr const char* STATUS_FLAGS[] = {"in-alarm", "fault", "overridden", "out-of-service"};
inline constexpr const char* NODE_TYPE[] = {
    /*  0 */ "unknown", "system", "network", "device", "organizational", "area", "equipment", "point", "collection",
    /*  9 */ "property", "functional", "other", "subsystem", "building", "floor", "section", "module", "tree",
    /* 18 */ "member", "protocol", "room", "zone",
};
inline constexpr const char* POLARITY[] = {"normal", "reverse"};
inline constexpr const char* PROGRAM_ERROR[] = {"normal", "load-failed", "internal", "program", "other"};
inline constexpr const char* PROGRAM_REQUEST[] = {"ready", "load", "run", "halt", "restart", "unload"};
inline constexpr const char* PROGRAM_STATE[] = {"idle", "loading", "running", "waiting", "halted", "unloading"};
inline constexpr const char* RELIABILITY[] = {
    /*  0 */ "no-fault-detected", "no-sensor", "over-range", "under-range", "open-loop", "shorted-loop",
    /*  6 */ "no-output", "unreliable-other", "process-error", "multi-state-fault", "configuration-error",
    /* 11 */ "reserved-11", "communication-failure", "member-fault", "monitored-object-fault", "tripped",
    /* 16 */ "lamp-failure", "activation-failure", "renew-dhcp-failure", "renew-fd-registration-failure",
    /* 20 */ "restart-auto-negotiation-failure", "restart-failure", "proprietary-command-failure", "faults-listed",
    /* 24 */ "referenced-object-fault", "multi-state-out-of-range",
};
inline constexpr const char* RESTART_REASON[] = {
    /* 0 */ "unknown", "coldstart", "warmstart", "detected-power-lost", "detected-powered-off", "hardware-watchdog",
    /* 6 */ "software-watchdog", "suspended", "activate-changes",
};
inline constexpr const char* SEGMENTATION[] = {
    /* 0 */ "segmented-both", "segmented-transmit", "segmented-receive", "no-segmentation",
};
inline constexpr const char* LOG_STATUS[] = {"log-disabled", "buffer-purged", "log-interrupted"};
inline constexpr const char* SHED_STATE[] = {
    /* 0 */ "shed-inactive", "shed-request-pending", "shed-compliant", "shed-non-compliant",
};
inline constexpr const char* SILENCED_STATE[] = {"unsilenced", "audible-silenced", "visible-silenced", "all-silenced"};
inline constexpr const char* SERVICES_SUPPORTED[] = {
    /*  0 */ "acknowledge-alarm", "confirmed-cov-notification", "confirmed-event-notification", "get-alarm-summary",
    /*  4 */ "get-enrollment-summary", "subscribe-cov", "atomic-read-file", "atomic-write-file", "add-list-element",
    /*  9 */ "remove-list-element", "create-object", "delete-object", "read-property", "read-property-conditional",
    /* 14 */ "read-property-multiple", "write-property", "write-property-multiple", "device-communication-control",
    /* 18 */ "confirmed-private-transfer", "confirmed-text-message", "reinitialize-device", "vt-open", "vt-close",
    /* 23 */ "vt-data", "authenticate", "request-key", "i-am", "i-have", "unconfirmed-cov-notification",
    /* 29 */ "unconfirmed-event-notification", "unconfirmed-private-transfer", "unconfirmed-text-message",
    /* 32 */ "time-synchronization", "who-has", "who-is", "read-range", "utc-time-synchronization",
    /* 37 */ "life-safety-operation", "subscribe-cov-property", "get-event-information", "write-group",
    /* 41 */ "subscribe-cov-property-multiple", "confirmed-cov-notification-multiple",
    /* 43 */ "unconfirmed-cov-notification-multiple", "confirmed-audit-notification", "audit-log-query",
    /* 46 */ "unconfirmed-audit-notification", "who-am-i", "you-are",
};
inline constexpr const char* DOOR_ALARM_STATE[] = {
    /* 0 */ "normal", "alarm", "door-open-too-long", "forced-open", "tamper", "door-fault", "lock-down",
    /* 7 */ "free-access", "egress-open",
};
inline constexpr const char* DOOR_STATUS[] = {
    /* 0 */ "closed", "opened", "unknown", "door-fault", "unused", "none", "closing", "opening", "safety-locked",
    /* 9 */ "limited-opened",
};
inline constexpr const char* DOOR_VALUE[] = {"lock", "unlock", "pulse-unlock", "extended-pulse-unlock"};
inline constexpr const char* LOCK_STATUS[] = {"locked", "unlocked", "lock-fault", "unused", "unknown"};
inline constexpr const char* DOOR_SECURED_STATUS[] = {"secured", "unsecured", "unknown"};
inline constexpr const char* ACCESS_EVENT[] = {
    /*  0 */ "none", "granted", "muster", "passback-detected", "duress", "trace", "lockout-max-attempts",
    /*  7 */ "lockout-other", "lockout-relinquished", "locked-by-higher-authority", "out-of-service",
    /* 11 */ "out-of-service-relinquished", "accompaniment-by", "authentication-factor-read",
    /* 14 */ "authorization-delayed", "verification-required", "no-entry-after-granted",
};
inline constexpr const char* ACCESS_CREDENTIAL_DISABLE[] = {"none", "disable", "disable-manual", "disable-lockout"};
inline constexpr const char* ACCESS_CREDENTIAL_DISABLE_REASON[] = {
    /* 0 */ "disabled", "disabled-needs-provisioning", "disabled-unassigned", "disabled-not-yet-active",
    /* 4 */ "disabled-expired", "disabled-lockout", "disabled-max-days", "disabled-max-uses", "disabled-inactivity",
    /* 9 */ "disabled-manual",
};
inline constexpr const char* AUTHENTICATION_STATUS[] = {
    /* 0 */ "not-ready", "ready", "disabled", "waiting-for-authentication-factor", "waiting-for-accompaniment",
    /* 5 */ "waiting-for-verification", "in-progress",
};
inline constexpr const char* AUTHORIZATION_MODE[] = {
    /* 0 */ "authorize", "grant-active", "deny-all", "verification-required", "authorization-delayed", "none",
};
inline constexpr const char* ACCESS_USER_TYPE[] = {"asset", "group", "person"};
inline constexpr const char* ACCESS_ZONE_OCCUPANCY_STATE[] = {
    /* 0 */ "normal", "below-lower-limit", "at-lower-limit", "at-upper-limit", "above-upper-limit", "disabled",
    /* 6 */ "not-supported",
};
inline constexpr const char* ACCESS_PASSBACK_MODE[] = {"passback-off", "hard-passback", "soft-passback"};
inline constexpr const char* AUTHENTICATION_FACTOR_TYPE[] = {
    /*  0 */ "undefined", "error", "custom", "simple-number16", "simple-number32", "simple-number56",
    /*  6 */ "simple-alpha-numeric", "aba-track2", "wiegand26", "wiegand37", "wiegand37-facility",
    /* 11 */ "facility16-card32", "facility32-card32", "fasc-n", "fasc-n-bcd", "fasc-n-large", "fasc-n-large-bcd",
    /* 17 */ "gsa75", "chuid", "chuid-full", "guid", "cbeff-a", "cbeff-b", "cbeff-c", "user-password",
};
inline constexpr const char* LIGHTING_OPERATION[] = {
    /*  0 */ "none", "fade-to", "ramp-to", "step-up", "step-down", "step-on", "step-off", "warn", "warn-off",
    /*  9 */ "warn-relinquish", "stop",
};
inline constexpr const char* LIGHTING_IN_PROGRESS[] = {
    /* 0 */ "idle", "fade-active", "ramp-active", "not-controlled", "other", "trim-active",
};
inline constexpr const char* LIGHTING_TRANSITION[] = {"none", "fade", "ramp"};
inline constexpr const char* WRITE_STATUS[] = {"idle", "in-progress", "successful", "failed"};
inline constexpr const char* REJECT_REASON[] = {
    /*  0 */ "other", "buffer-overflow", "inconsistent-parameters", "invalid-parameter-data-type", "invalid-tag",
    /*  5 */ "missing-required-parameter", "parameter-out-of-range", "too-many-arguments", "undefined-enumeration",
    /*  9 */ "unrecognized-service", "invalid-data-encoding",
};
inline constexpr const char* ABORT_REASON[] = {
    /*  0 */ "other", "buffer-overflow", "invalid-apdu-in-this-state", "preempted-by-higher-priority-task",
    /*  4 */ "segmentation-not-supported", "security-error", "insufficient-security", "window-size-out-of-range",
    /*  8 */ "application-exceeded-reply-time", "out-of-resources", "tsm-timeout", "apdu-too-long",
};
inline constexpr const char* SECURITY_LEVEL[] = {
    /* 0 */ "incapable", "plain", "signed", "encrypted", "signed-end-to-end", "encrypted-end-to-end",
};
inline constexpr const char* NETWORK_TYPE[] = {
    /*  0 */ "ethernet", "arcnet", "mstp", "ptp", "lontalk", "ipv4", "zigbee", "virtual", "non-bacnet", "ipv6",
    /* 10 */ "serial", "secure-connect",
};
inline constexpr const char* PROTOCOL_LEVEL[] = {
    /* 0 */ "physical", "protocol", "bacnet-application", "non-bacnet-application",
};
inline constexpr const char* NETWORK_NUMBER_QUALITY[] = {"unknown", "learned", "learned-configured", "configured"};
inline constexpr const char* IP_MODE[] = {"normal", "foreign", "bbmd"};
inline constexpr const char* NETWORK_PORT_COMMAND[] = {
    /* 0 */ "idle", "discard-changes", "renew-fd-registration", "restart-slave-discovery", "renew-dhcp",
    /* 5 */ "restart-autonegotiation", "disconnect", "restart-port", "generate-csr-file", "validate-changes",
};
inline constexpr const char* TIMER_STATE[] = {"idle", "running", "expired"};
inline constexpr const char* TIMER_TRANSITION[] = {
    /* 0 */ "none", "idle-to-running", "running-to-idle", "running-to-running", "running-to-expired",
    /* 5 */ "forced-to-expired", "expired-to-idle", "expired-to-running",
};
inline constexpr const char* BINARY_LIGHTING_PV[] = {"off", "on", "warn", "warn-off", "warn-relinquish", "stop"};
inline constexpr const char* FAULT_TYPE[] = {
    /* 0 */ "none", "fault-characterstring", "fault-extended", "fault-life-safety", "fault-state",
    /* 5 */ "fault-status-flags", "fault-out-of-range", "fault-listed",
};
inline constexpr const char* LIFT_CAR_DIRECTION[] = {"unknown", "none", "stopped", "up", "down", "up-and-down"};
inline constexpr const char* LIFT_CAR_DOOR_COMMAND[] = {"none", "open", "close"};
inline constexpr const char* LIFT_CAR_DRIVE_STATUS[] = {
    /* 0 */ "unknown", "stationary", "braking", "accelerate", "decelerate", "rated-speed", "single-floor-jump",
    /* 7 */ "two-floor-jump", "three-floor-jump", "multi-floor-jump",
};
inline constexpr const char* LIFT_CAR_MODE[] = {
    /*  0 */ "unknown", "normal", "vip", "homing", "parking", "attendant-control", "firefighter-control",
    /*  7 */ "emergency-power", "inspection", "cabinet-recall", "earthquake-operation", "fire-operation",
    /* 12 */ "out-of-service", "occupant-evacuation",
};
inline constexpr const char* LIFT_FAULT[] = {
    /*  0 */ "controller-fault", "drive-and-motor-fault", "governor-and-safety-gear-fault",
    /*  3 */ "lift-shaft-device-fault", "power-supply-fault", "safety-interlock-fault", "door-closing-fault",
    /*  7 */ "door-opening-fault", "car-stopped-outside-landing-zone", "call-button-stuck", "start-failure",
    /* 11 */ "controller-supply-fault", "self-test-failure", "runtime-limit-exceeded", "position-lost",
    /* 15 */ "drive-temperature-exceeded", "load-measurement-fault",
};
inline constexpr const char* LIFT_GROUP_MODE[] = {
    /* 0 */ "unknown", "normal", "down-peak", "two-way", "four-way", "emergency-power", "up-peak",
};
inline constexpr const char* ESCALATOR_FAULT[] = {
    /* 0 */ "controller-fault", "drive-and-motor-fault", "mechanical-component-fault", "overspeed-fault",
    /* 4 */ "power-supply-fault", "safety-device-fault", "controller-supply-fault", "drive-temperature-exceeded",
    /* 8 */ "comb-plate-fault",
};
inline constexpr const char* ESCALATOR_MODE[] = {"unknown", "stop", "up", "down", "inspection", "out-of-service"};
inline constexpr const char* ESCALATOR_OPERATION_DIRECTION[] = {
    /* 0 */ "unknown", "stopped", "up-rated-speed", "up-reduced-speed", "down-rated-speed", "down-reduced-speed",
};
inline constexpr const char* AUDIT_LEVEL[] = {"none", "audit-all", "audit-config", "default"};
inline constexpr const char* AUDIT_OPERATION[] = {
    /*  0 */ "read", "write", "create", "delete", "life-safety", "acknowledge-alarm", "device-disable-comm",
    /*  7 */ "device-enable-comm", "device-reset", "device-backup", "device-restore", "subscription",
    /* 12 */ "notification", "auditing-failure", "network-changes", "general",
};
inline constexpr const char* RELATIONSHIP[] = {
    /*  0 */ "unknown", "default", "contains", "contained-by", "uses", "used-by", "commands", "commanded-by",
    /*  8 */ "adjusts", "adjusted-by", "ingress", "egress", "supplies-air", "receives-air", "supplies-hot-air",
    /* 15 */ "receives-hot-air", "supplies-cool-air", "receives-cool-air", "supplies-power", "receives-power",
    /* 20 */ "supplies-gas", "receives-gas", "supplies-water", "receives-water", "supplies-hot-water",
    /* 25 */ "receives-hot-water", "supplies-cool-water", "receives-cool-water", "supplies-steam", "receives-steam",
};
inline constexpr const char* ACCUMULATOR_STATUS[] = {"normal", "starting", "recovered", "abnormal", "failed"};
inline constexpr const char* VT_CLASS[] = {
    /* 0 */ "default-terminal", "ansi-x3-64", "dec-vt52", "dec-vt100", "dec-vt220", "hp-700-94", "ibm-3130",
};
inline constexpr const char* SUCCESS_FILTER[] = {"all", "successes-only", "failures-only"};
inline constexpr const char* AUTHORIZATION_EXEMPTION[] = {
    /* 0 */ "passback", "occupancy-check", "access-rights", "lockout", "deny", "verification",
    /* 6 */ "authorization-delay",
};
inline constexpr const char* ACCESS_AUTHENTICATION_FACTOR_DISABLE[] = {
    /* 0 */ "none", "disabled", "disabled-lost", "disabled-stolen", "disabled-damaged", "disabled-destroyed",
};
inline constexpr const char* ACCESS_RULE_TIME[] = {"specified", "always"};
inline constexpr const char* ACCESS_RULE_LOCATION[] = {"specified", "all"};
inline constexpr const char* ROUTER_STATUS[] = {"available", "busy", "disconnected"};
inline constexpr const char* COLOR_OPERATION[] = {
    /* 0 */ "none", "fade-to-color", "fade-to-cct", "ramp-to-cct", "step-up-cct", "step-down-cct", "stop",
};
inline constexpr const char* SECURITY_POLICY[] = {
    /* 0 */ "plain-non-trusted", "plain-trusted", "signed-trusted", "encrypted-trusted",
};
// clang-format on

// ---- names beyond a gap

struct FarName {
    std::uint32_t Value;
    const char* Name;
};

inline constexpr FarName FAR_UNITS[] = {
    {47808, "standard-cubic-feet-per-day"}, {47809, "million-standard-cubic-feet-per-day"},
    {47810, "thousand-cubic-feet-per-day"}, {47811, "thousand-standard-cubic-feet-per-day"},
    {47812, "pounds-mass-per-day"},         {47814, "millirems"},
    {47815, "millirems-per-hour"},
};

inline constexpr FarName FAR_ACCESS_EVENTS[] = {
    {128, "denied-deny-all"},
    {129, "denied-unknown-credential"},
    {130, "denied-authentication-unavailable"},
    {131, "denied-authentication-factor-timeout"},
    {132, "denied-incorrect-authentication-factor"},
    {133, "denied-zone-no-access-rights"},
    {134, "denied-point-no-access-rights"},
    {135, "denied-no-access-rights"},
    {136, "denied-out-of-time-range"},
    {137, "denied-threat-level"},
    {138, "denied-passback"},
    {139, "denied-unexpected-location-usage"},
    {140, "denied-max-attempts"},
    {141, "denied-lower-occupancy-limit"},
    {142, "denied-upper-occupancy-limit"},
    {143, "denied-authentication-factor-lost"},
    {144, "denied-authentication-factor-stolen"},
    {145, "denied-authentication-factor-damaged"},
    {146, "denied-authentication-factor-destroyed"},
    {147, "denied-authentication-factor-disabled"},
    {148, "denied-authentication-factor-error"},
    {149, "denied-credential-unassigned"},
    {150, "denied-credential-not-provisioned"},
    {151, "denied-credential-not-yet-active"},
    {152, "denied-credential-expired"},
    {153, "denied-credential-manual-disable"},
    {154, "denied-credential-lockout"},
    {155, "denied-credential-max-days"},
    {156, "denied-credential-max-uses"},
    {157, "denied-credential-inactivity"},
    {158, "denied-credential-disabled"},
    {159, "denied-no-accompaniment"},
    {160, "denied-incorrect-accompaniment"},
    {161, "denied-lockout"},
    {162, "denied-verification-failed"},
    {163, "denied-verification-timeout"},
    {164, "denied-other"},
};

} // namespace bacnet::names
