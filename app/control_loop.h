#pragma once
// The background thread that manages the HDMI output.

#include <atomic>
#include <cstdint>

/// 1: the loop thread is to keep running. Written by the shell's thread, read before each pass by the loop's.
extern std::atomic<std::int32_t> ControlLoop_OnOff;

/// Starts the loop thread, after an earlier one has ended; does nothing while ControlLoop_OnOff is 1. When no thread
/// can be created, says why on standard error and ends the program with status 1.
void ControlLoopStart();

/// The thread's body: passes of one second until ControlLoop_OnOff is 0.
void SystemMainCtrlLoop();

/// The transmitter's part of a pass: its interrupts, then its timer service.
void HDMIHandler();
