// The machine, as Linux describes it.
#include "machine.h"

#include <array>
#include <ctime>
#include <fstream>
#include <stdexcept>

namespace kine::bench {

std::string ProcessorName()
{
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        const std::size_t colon = line.find(": ");
        if (line.starts_with("model name") && colon != std::string::npos) return line.substr(colon + 2);
    }
    return "unknown";
}

std::string Today()
{
    const std::time_t now = std::time(nullptr);
    std::tm date{};
    std::array<char, 16> text{};
    if (gmtime_r(&now, &date) == nullptr) return "unknown";
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d", &date)};
}

std::vector<std::size_t> UsableCores()
{
    cpu_set_t set;
    CPU_ZERO(&set);
    std::vector<std::size_t> cores;
    if (sched_getaffinity(0, sizeof set, &set) != 0) return cores;
    for (std::size_t core = 0; core < CPU_SETSIZE; ++core) {
        if (CPU_ISSET(core, &set)) cores.push_back(core);
    }
    return cores;
}

OnCore::OnCore(std::size_t core)
{
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(core, &set);
    if (sched_getaffinity(0, sizeof before_, &before_) != 0 || sched_setaffinity(0, sizeof set, &set) != 0) {
        throw std::runtime_error("cannot stay on one core");
    }
}

OnCore::~OnCore() { static_cast<void>(sched_setaffinity(0, sizeof before_, &before_)); }

}  // namespace kine::bench
