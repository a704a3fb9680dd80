// BDC_API marks what the loadable module shows to the driver; everything else of it is hidden.
#pragma once

#if defined(_WIN32)
#if defined(BDC_BUILDING_MODULE)
#define BDC_API __declspec(dllexport)
#else
#define BDC_API __declspec(dllimport)
#endif
#else
#define BDC_API __attribute__((visibility("default")))
#endif
