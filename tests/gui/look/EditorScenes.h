// The editors of values: one of each type that has one, of parts of values, and of lists.
#pragma once

#include "tests/gui/look/Scenes.h"

void ShowEditors(const Look& look);
void ShowMemberEditors(const Look& look);
void ShowListEditors(const Look& look);
