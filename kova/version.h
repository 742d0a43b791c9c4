#pragma once
// The version of this project. The build files read it from this file.

#define KOVA_VERSION "1.0.0"
