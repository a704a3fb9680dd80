// The private messages of the console dialog. Any thread posts them through CBDCManager::PostMessageW; the console
// thread handles them in the order of posting.
//
// A trigger tag posts its message on both edges, with wParam 1 on the rising and 0 on the falling one. Jobs run when
// wParam is not 0; a network follows both edges.
#pragma once

#include <cstdint>

inline constexpr unsigned WM_CONSOLE_SHUTDOWN = 0x464; // destroys the dialog
inline constexpr unsigned WM_CONSOLE_SHOW = 0x465;     // shows the console with no login; parameters are ignored
inline constexpr unsigned WM_CONSOLE_HISTORY = 0x466;  // lParam: BACSTAC_DEV_OBJ_REF* owned by the message, 0 for all
inline constexpr unsigned WM_CONSOLE_BACKUP = 0x467;   // backs up the configured devices
inline constexpr unsigned WM_CONSOLE_TIMESYNC = 0x468; // one time synchronization
inline constexpr unsigned WM_CONSOLE_NETWORK = 0x469;  // wParam 1 enables, else disables; lParam: network, low 16 bits
inline constexpr unsigned WM_CONSOLE_REPORT = 0x46A;   // lParam: key of the report job
inline constexpr unsigned WM_CONSOLE_RESTORE = 0x46B;  // lParam: device instance
inline constexpr unsigned WM_CONSOLE_SETUPNETWORKS = 0x46C; // registers the network triggers
inline constexpr unsigned WM_CONSOLE_OBJECTCHANGED = 0x46D; // wParam: device instance; lParam: PackObjectId
inline constexpr unsigned WM_CONSOLE_TRAYICON = 0x4C8;      // wParam: icon id; lParam: mouse message

// Mouse messages of the tray icon.
inline constexpr std::intptr_t TRAY_LEFT_BUTTON_UP = 0x202;
inline constexpr std::intptr_t TRAY_RIGHT_BUTTON_UP = 0x205;

// wParam of a trigger's message.
inline constexpr std::uintptr_t TRIGGER_DOWN = 0;
inline constexpr std::uintptr_t TRIGGER_UP = 1;

// The object identifier in lParam of WM_CONSOLE_OBJECTCHANGED: the type in bits 22 to 31, the instance below. Only ten
// bits of the type survive. The value is 32 bits wide and negative from type 512 on, so it is unpacked from its
// unsigned low 32 bits.
constexpr std::intptr_t PackObjectId(std::uint32_t type, std::uint32_t instance) {
    return static_cast<std::int32_t>((type << 22) | instance);
}
constexpr std::uint32_t UnpackObjectType(std::intptr_t lParam) {
    return (static_cast<std::uint32_t>(lParam) >> 22) & 0x3FF;
}
constexpr std::uint32_t UnpackObjectInstance(std::intptr_t lParam) {
    return static_cast<std::uint32_t>(lParam) & 0x3FFFFF;
}
