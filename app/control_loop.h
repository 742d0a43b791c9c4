#pragma once
// The background thread that manages the HDMI output.

#include <atomic>
#include <cstdint>

/// 1 means that the loop thread keeps running. The shell thread writes the flag. The loop thread reads it before each
/// pass.
extern std::atomic<std::int32_t> ControlLoop_OnOff;

/// Does nothing while ControlLoop_OnOff is 1. Otherwise waits until an earlier loop thread has ended, then starts the
/// loop thread. When no thread can be created, prints the reason on standard error and ends the program with status 1.
void ControlLoopStart();

/// Body of the loop thread: makes passes until ControlLoop_OnOff is 0. Each pass sleeps for one second and then runs
/// the handlers.
void SystemMainCtrlLoop();

/// The work of a pass for the transmitter: first its interrupt handler, then its timer handler.
void HDMIHandler();
