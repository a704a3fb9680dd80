// How labels are ordered: by the operator's locale, in any case, not by numbers in them. The window has the locale.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

class ILabelOrder {
public:
    virtual ~ILabelOrder() = default;
    // Places in labels, in the order to show them; labels that compare equal keep the order they come in. UTF-8.
    virtual std::vector<std::size_t> Order(const std::vector<std::string>& labels) const = 0;
};
