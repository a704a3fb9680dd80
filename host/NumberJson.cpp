#include "host/NumberJson.h"

#include <nlohmann/json.hpp>

#include <cmath>

nlohmann::ordered_json NumberJson(double value) {
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value < 0 ? "-inf" : "inf";
    return value;
}
