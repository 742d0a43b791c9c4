#pragma once
// The video processor driver: everything a caller may use, grouped by topic. A driver user includes this header alone.
// It also opens the device node, for every driver.

#if __cplusplus <= 201703L
#error "kova/api.h is C++20: compile with -std=c++20 or later"
#endif

#include "../app/device.h" // the device node
#include "csc.h"           // colour conversion, picture controls
#include "deinterlacer.h"  // deinterlacer
#include "filters.h"       // picture enhancement
#include "formats.h"       // what enters the chip and what leaves it: records, formats, modes
#include "input_port.h"    // the input ports
#include "irq.h"           // interrupt status and enables
#include "mainapp.h"       // the start-up sequence
#include "memory.h"        // frame memory
#include "output_port.h"   // output timing, DAC, clocks, pins
#include "regs.h"          // result codes, register access
#include "scaler.h"        // scaler filters
#include "status.h"        // status, measurement, test patterns, display
#include "version.h"       // the version, as text
#include "video_process.h" // the video path update
#include "windows.h"       // windows
