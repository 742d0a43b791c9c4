#pragma once
// The video processor driver: everything a caller may use, grouped by topic. A driver user includes this header alone.
// It also opens the device node, for every driver.

#if __cplusplus <= 201703L
#error "kova/api.h is C++20: compile with -std=c++20 or later"
#endif

#include "app/device.h"         // the device node
#include "kova/csc.h"           // colour conversion, picture controls
#include "kova/deinterlacer.h"  // deinterlacer
#include "kova/filters.h"       // picture enhancement
#include "kova/formats.h"       // what enters the chip and what leaves it: records, formats, modes
#include "kova/input_port.h"    // the input ports
#include "kova/irq.h"           // interrupt status and enables
#include "kova/mainapp.h"       // the start-up sequence
#include "kova/memory.h"        // frame memory
#include "kova/output_port.h"   // output timing, DAC, clocks, pins
#include "kova/regs.h"          // result codes, register access
#include "kova/scaler.h"        // scaler filters
#include "kova/status.h"        // status, measurement, test patterns, display
#include "kova/video_process.h" // the video path update
#include "kova/windows.h"       // windows
