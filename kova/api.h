#pragma once
// The video processor driver. An application includes this header to use the driver. This header includes the header of
// each topic, and the header with the functions that open and close the device node for all drivers.

#if __cplusplus <= 201703L
#error "kova/api.h is C++20: compile with -std=c++20 or later"
#endif

#include "../app/device.h" // opening and closing the device node
#include "csc.h"           // colour conversion, picture controls
#include "deinterlacer.h"  // deinterlacer
#include "filters.h"       // picture enhancement filters
#include "formats.h"       // description of the input and the output: records, formats, modes
#include "input_port.h"    // the input ports
#include "irq.h"           // interrupt status and enables
#include "mainapp.h"       // the start-up sequence
#include "memory.h"        // frame memory
#include "output_port.h"   // output timing, DAC, clocks, pins
#include "regs.h"          // result codes, register access
#include "scaler.h"        // scaler filters
#include "status.h"        // status, measurement, test patterns, display
#include "version.h"       // the version as text
#include "video_process.h" // the video path update
#include "windows.h"       // source, clip, zoom and view windows
