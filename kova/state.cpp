#include "kova/state.h"

VideoWindow stKOVASrcWIN{};
VideoWindow stKOVADstWIN{};
VideoWindow stKOVAZoomWIN{};
VideoWindow stKOVAViewWIN{};
DeintState stKOVADeint{};
std::uint8_t KOVAMFCCoef = 0;
std::uint16_t KOVAPLLClock = 0;
MemoryConfig stKOVAMemory{};
ClockDelay stSrcVideoClock{};
