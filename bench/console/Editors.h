// How long an editor of values takes to open on a value as large as they come.
#pragma once

namespace bench {

// Of all editors that the browser's Edit opens, on lists and on single values of 131072 bytes: the longest time from
// the press of the button until the dialog is painted, with the read of the value from a device in memory.
// Milliseconds.
double MeasureEditors();

} // namespace bench
