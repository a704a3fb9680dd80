// The pictures of the console, drawn from SVG for the size and the device pixel ratio that they are shown with. Lines
// take the palette's text colour, and follow when it changes; the other colours read on light and dark. icons.qrc is
// the table of all of them. Only on the console thread.
#pragma once

#include <QIcon>
#include <QString>

inline constexpr const char* CONSOLE_ICON = ":/20023";
inline constexpr const char* FILTER_CLEAR_ICON = ":/filter-clear";

// Strips are pictures of one size, 16 by 16, that their users know by number.
inline constexpr const char* NETWORK_STRIP = ":/20079";
inline constexpr const char* TREE_STRIP = ":/tree";
inline constexpr const char* STATE_STRIP = ":/state";

// A null icon when there is no such picture.
QIcon NewIcon(const QString& resource);
QIcon NewIcon(const char* resource);
QIcon NewStripIcon(const char* strip, int image);

// The driver's own picture, of 48 by 48, which it brings along as ":/driver/NAME" with "_" for each blank of its
// display name; null when it has none.
QIcon NewDriverIcon(const QString& displayName);
