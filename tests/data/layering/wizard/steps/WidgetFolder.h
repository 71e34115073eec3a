#pragma once

// Not part of the program: the layering check must refuse this include.
#include "platform/ui/DRSequenceWindow.h"
