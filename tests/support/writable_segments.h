// The writable memory of a loaded shared library: its static data, and what else the loader put beside it.
// Linux and the like.
//
// Where the loader finds imported functions at their first call, it writes their addresses there: run with
// LD_BIND_NOW set, and it has done so at the start.
#pragma once

#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace kine::test {

struct Pages
{
    void* begin;
    std::size_t size;
};

// Of the library whose file name begins so; without those that the loader has made read-only. Empty when no
// such library is loaded.
inline std::vector<Pages> WritablePagesOf(std::string_view library)
{
    struct Search
    {
        std::string_view library;
        std::vector<Pages> found;
    } search{library, {}};
    const auto visit = [](dl_phdr_info* info, std::size_t, void* data) {
        auto& [wanted, found] = *static_cast<Search*>(data);
        const std::string_view path = info->dlpi_name;
        if (!path.substr(path.rfind('/') + 1).starts_with(wanted)) return 0;

        const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
        for (int i = 0; i < info->dlpi_phnum; ++i) {
            const auto& segment = info->dlpi_phdr[i];
            if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) == 0) continue;
            std::uintptr_t begin = (info->dlpi_addr + segment.p_vaddr) / page * page;
            const std::uintptr_t end = info->dlpi_addr + segment.p_vaddr + segment.p_memsz;
            for (int j = 0; j < info->dlpi_phnum; ++j) {
                const auto& relro = info->dlpi_phdr[j];
                const std::uintptr_t relroEnd = info->dlpi_addr + relro.p_vaddr + relro.p_memsz;
                if (relro.p_type == PT_GNU_RELRO && relroEnd > begin && relroEnd <= end) {
                    begin = relroEnd / page * page;
                }
            }
            found.push_back({reinterpret_cast<void*>(begin), (end - begin + page - 1) / page * page});
        }
        return 0;
    };
    dl_iterate_phdr(visit, &search);
    return search.found;
}

// From now on a write to them ends the process.
inline bool MakeReadOnly(const std::vector<Pages>& pages)
{
    for (const Pages& range : pages) {
        if (mprotect(range.begin, range.size, PROT_READ) != 0) return false;
    }
    return !pages.empty();
}

}  // namespace kine::test
