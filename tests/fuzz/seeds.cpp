// Writes the EDIDs of the tests into a folder, as seeds for fuzz-edid. The argument names the folder.

#include "sim/sim.h"
#include "tests/edid_builder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>

int main(int argc, char* argv[]) {
    const std::string folder = argc > 1 ? argv[1] : ".";
    std::vector<edid::Bytes> monitors = edid::ValidEdids();
    monitors.emplace_back(sim::kBuiltInEdid.begin(), sim::kBuiltInEdid.end());
    for (std::size_t i = 0; i < monitors.size(); ++i) {
        const edid::Bytes seed = edid::Join({{0, 0, 0, 0}, monitors[i]}); // a DDC channel without faults
        std::ofstream file(folder + "/monitor-" + std::to_string(i), std::ios::binary);
        std::copy(seed.begin(), seed.end(), std::ostreambuf_iterator<char>(file));
    }
    return 0;
}
