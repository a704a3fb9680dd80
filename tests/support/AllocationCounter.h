// Counts what the calling thread takes from the heap while it lives. Linking this file replaces the program's operator
// new.
#pragma once

#include <cstddef>

class CAllocationCounter {
public:
    CAllocationCounter();

    std::size_t GetCount() const;   // allocations of this thread since construction
    std::size_t GetLargest() const; // bytes of the largest of them
};
