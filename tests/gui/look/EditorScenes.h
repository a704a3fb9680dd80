// The editors of values: one of each type that has one, of parts of values, and of lists;
// and the viewer.
#pragma once

#include "tests/gui/look/Scenes.h"

void ShowEditors(const Look& look);
void ShowMemberEditors(const Look& look);
void ShowListEditors(const Look& look);
void ShowSimpleEditors(const Look& look); // with values in them
void ShowViewer(const Look& look);
