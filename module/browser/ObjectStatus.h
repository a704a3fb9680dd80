// Reads the status flags of a device's objects and shows them as the images of their items.
#pragma once

class CBacGeneral;
class CBrowserTree;
class IProgress;

// Only objects whose type can raise events are read, 20 with one request. The first request that fails ends it
// silently; what was not read keeps the images of the unknown. Deliberate: a cancel is not looked at. Between requests
// messages are served, which may rebuild the tree: an object that has gone by then is passed over.
void ReadObjectsStatus(CBacGeneral& bacnet, CBrowserTree& tree, unsigned device, IProgress& progress);
