#include "bench/Directories.h"

#include "api/bacnet/Enums.h"

#include <fmt/format.h>

#include <malloc.h>

#include <utility>

namespace bench {

CBACnetDir NewDirectory(unsigned devices, unsigned objectsOfADevice) {
    CBACnetDir directory;
    for (unsigned device = 1; device <= devices; ++device) {
        CBACnetDev made;
        made.SetInst(device);
        made.SetName(fmt::format("Building {} controller {}", device / 20, device % 20));
        made.Reserve(objectsOfADevice);
        for (unsigned object = 1; object <= objectsOfADevice; ++object) {
            CBACnetObj point;
            point.SetId({object % 2 != 0 ? OBJ_ANALOG_INPUT : OBJ_BINARY_VALUE, object});
            point.SetName(fmt::format("AHU{:02}.Zone{:03}.SupplyAirTemp", device % 100, object));
            point.SetDesc(fmt::format("Supply air temperature, zone {}", object));
            made.AddObj(std::move(point));
        }
        directory.AddDev(made);
    }
    return directory;
}

double BytesInUse() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

} // namespace bench
