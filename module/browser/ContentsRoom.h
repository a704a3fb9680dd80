// Room for the contents of many properties of an object, each as large as a value may be. One block, of which nothing
// is touched before a value lies there: it costs what the values need.
#pragma once

#include "api/bacnet/Enums.h"
#include "api/bacnet/Types.h"

#include <cstddef>
#include <memory>
#include <vector>

class CContentsRoom {
public:
    explicit CContentsRoom(std::size_t count)
        : m_block(new std::max_align_t[count * BACSTAC_CONTENTS_SIZE / sizeof(std::max_align_t)]) {
        auto* const block = reinterpret_cast<char*>(m_block.get());
        m_contents.reserve(count);
        for (std::size_t i = 0; i < count; ++i)
            m_contents.push_back({TYPE_NONE, block + i * BACSTAC_CONTENTS_SIZE, BACSTAC_CONTENTS_SIZE, 0});
    }

    std::size_t GetSize() const { return m_contents.size(); }
    BACSTAC_PROPERTY_CONTENTS& operator[](std::size_t index) { return m_contents[index]; }

private:
    std::unique_ptr<std::max_align_t[]> m_block;
    std::vector<BACSTAC_PROPERTY_CONTENTS> m_contents;
};
