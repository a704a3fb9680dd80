// Lets the heap give back what a piece of work has made it keep. Some heaps keep all that is freed, however large it
// was, for the next one who asks. Made and asked by one thread, which does the work.
#pragma once

#include <cstddef>

class CHeapWatch {
public:
    CHeapWatch();

    // To be called when the work's memory is freed. Takes a moment, but only when this thread has met more than so
    // many bytes of new memory since the construction; all that is free goes to the system then, whoever freed it.
    void GiveBack(std::size_t bytes) const;

private:
    std::size_t m_before; // bytes of new memory
};
