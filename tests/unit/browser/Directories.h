// Directories for tests, and the order of labels without a locale.
#pragma once

#include "api/bacnet/Dir.h"
#include "module/browser/LabelOrder.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <string>
#include <vector>

class CPlainOrder : public ILabelOrder {
public:
    std::vector<std::size_t> Order(const std::vector<std::string>& labels) const override {
        std::vector<std::size_t> places(labels.size());
        std::iota(places.begin(), places.end(), std::size_t{0});
        std::ranges::stable_sort(places, [&](std::size_t left, std::size_t right) {
            return std::ranges::lexicographical_compare(labels[left], labels[right], [](char a, char b) {
                return std::tolower(static_cast<unsigned char>(a)) < std::tolower(static_cast<unsigned char>(b));
            });
        });
        return places;
    }
};

struct NamedObject {
    BACSTAC_OBJECT_ID id;
    const char* name;
};

inline BACSTAC_ADDRESS AddressOf(unsigned device, unsigned short network) {
    return {static_cast<std::uint8_t>(network != 0),
            0,
            network,
            {127, 0, 0, static_cast<std::uint8_t>(device), 186, 192},
            6};
}

inline void PutDevice(CBACnetDir& directory, unsigned instance, const std::string& name, unsigned short network,
                      const std::vector<NamedObject>& objects) {
    CBACnetDev device;
    device.SetInst(instance);
    device.SetAddr(AddressOf(instance, network));
    device.SetName(name);
    for (const auto& [id, objectName] : objects) {
        CBACnetObj object;
        object.SetId(id);
        object.SetName(objectName);
        device.AddObj(object);
    }
    directory.AddDev(device);
}
