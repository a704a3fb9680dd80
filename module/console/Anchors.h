// How the console's controls follow the size of their window.
#pragma once

enum class Anchor {
    None,    // this axis is left alone
    Move,    // by the change of the window's size
    Stretch, // the first edge stays, the second follows
};

struct Extent {
    int position;
    int size;

    bool operator==(const Extent&) const = default;
};

// Where a control of this extent goes on one axis when the window has changed by so much there.
constexpr Extent Anchored(Anchor anchor, Extent extent, int change) {
    switch (anchor) {
    case Anchor::Move:
        return {extent.position + change, extent.size};
    case Anchor::Stretch:
        return {extent.position, extent.size + change};
    case Anchor::None:
        break;
    }
    return extent;
}
