// How long the console's window stands still while its browser is at work: 1,000 devices with 100,000 objects in the
// tree, each device's status read a hundredth of a second after the other's, and no answer to any other read.
#pragma once

namespace bench {

// The longest pauses of the console thread, in milliseconds.
struct Pauses {
    double walk;    // the operator goes down the tree with the key held, and stops now and then
    double answers; // nothing but the answers for the status comes
};

Pauses MeasurePauses();

} // namespace bench
