#pragma once

// Not part of the program: the layering check must refuse this include.
#include "convert/media/DRVideoCleaner.h"
