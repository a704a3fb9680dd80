// The icons of the browser's tree and list. Only on the console thread.
#pragma once

#include <QIcon>
#include <QSize>

// Room for an image behind the marker of a state.
inline constexpr QSize BROWSER_IMAGE_SIZE(34, 16);

// An image of BrowserTree.h, behind the marker of an alarm state if there is one.
const QIcon& BrowserImage(int image, int state);
