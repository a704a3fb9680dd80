// Marks what the BACnet access library gives to those who link it.
#pragma once

#if defined(_WIN32)
#if defined(BCN_BUILDING)
#define BCN_API __declspec(dllexport)
#else
#define BCN_API __declspec(dllimport)
#endif
#else
#define BCN_API __attribute__((visibility("default")))
#endif

#if defined(__GNUC__)
#define BCN_PRINTF(formatIndex, firstArgument) __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define BCN_PRINTF(formatIndex, firstArgument)
#endif
