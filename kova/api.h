#pragma once
// The video processor driver: everything a caller may use, grouped by topic. A driver user includes this header alone.

#include "kova/formats.h" // what enters the chip and what leaves it: records, formats, modes
#include "kova/irq.h"     // interrupt status and enables
#include "kova/regs.h"    // result codes, register access
