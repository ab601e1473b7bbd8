#include "kit/Process.h"

#include <algorithm>
#include <cfenv>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>

#include <elf.h>
#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/Files.h"

namespace kit {

namespace {

std::string entriesOf(const char* directory) {
    const auto names = UTILS::namesIn(directory);
    const std::set<std::string> sorted(names.begin(), names.end());
    std::string text;
    for (const std::string& name : sorted) {
        // That of the directory itself, which is closed again.
        std::error_code gone;
        const auto target = std::filesystem::read_symlink(std::string(directory) + "/" + name, gone);
        if (!gone && target.string().find("/proc/") != 0) text += target.string() + "; ";
    }
    return text;
}

std::string signalHandlers() {
    std::string text;
    for (int signal = 1; signal < NSIG; ++signal) {
        struct sigaction action {};
        if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_DFL)
            text += std::to_string(signal) + (action.sa_handler == SIG_IGN ? " ignored; " : " handled; ");
    }
    return text;
}

}  // namespace

ProcessState ProcessState::now() {
    ProcessState state;
    auto& facts = state.facts_;
    facts["open files"] = entriesOf("/proc/self/fd");
    facts["number of threads"] = std::to_string(UTILS::namesIn("/proc/self/task").size());
    std::string& children = facts["child processes"];
    for (const int child : childProcesses()) children += std::to_string(child) + "; ";
    facts["signals"] = signalHandlers();
    facts["locale"] = std::setlocale(LC_ALL, nullptr);
    facts["working directory"] = std::filesystem::current_path();
    facts["rounding of numbers"] = std::to_string(std::fegetround());
    const mode_t mask = ::umask(0);
    ::umask(mask);
    facts["mask of new files"] = std::to_string(mask);
    std::set<std::string> variables;
    for (char** variable = environ; *variable; ++variable) variables.insert(*variable);
    for (const std::string& variable : variables) facts["environment"] += variable + "; ";
    return state;
}

std::vector<std::string> ProcessState::differences(const ProcessState& before) const {
    std::vector<std::string> different;
    for (const auto& [name, fact] : facts_)
        if (const std::string& old = before.facts_.at(name); fact != old)
            different.push_back(name + ": \"" + fact + "\", before \"" + old + "\"");
    return different;
}

std::vector<int> childProcesses() {
    std::vector<int> found;
    for (const std::string& thread : UTILS::namesIn("/proc/self/task")) {
        std::ifstream file("/proc/self/task/" + thread + "/children");
        for (int process = 0; file >> process;) found.push_back(process);
    }
    return found;
}

bool isScratch(const std::string& directory) {
    const std::filesystem::path path(directory);
    return path.is_absolute() && path.parent_path().native().find(kScratch) != std::string::npos;
}

double residentOf(int process) {
    double size = 0.0, resident = 0.0;
    std::ifstream("/proc/" + std::to_string(process) + "/statm") >> size >> resident;
    return resident * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

Memory Memory::now() {
    Memory memory;
    memory.resident = residentOf(::getpid());
    const auto info = ::mallinfo2();
    memory.heap = static_cast<double>(info.uordblks + info.hblkhd);
    return memory;
}

bool Memory::isMeasurable() {
    return ::mallinfo2().arena != 0 && !std::getenv("LD_PRELOAD");
}

std::vector<std::string> visibleSymbols(const std::string& library) {
    std::string bytes;
    std::vector<std::string> names;
    if (!UTILS::readFile(library, bytes).empty()) return names;
    const auto read = [&](std::size_t offset, auto& into) {
        if (offset > bytes.size() || bytes.size() - offset < sizeof into) return false;
        std::memcpy(&into, bytes.data() + offset, sizeof into);
        return true;
    };
    Elf64_Ehdr header;
    if (!read(0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
        header.e_ident[EI_CLASS] != ELFCLASS64)
        return names;
    const auto section = [&](std::size_t index, Elf64_Shdr& into) {
        return index < header.e_shnum && read(header.e_shoff + index * sizeof into, into);
    };
    for (std::size_t i = 0; i < header.e_shnum; ++i) {
        Elf64_Shdr symbols, strings;
        if (!section(i, symbols) || symbols.sh_type != SHT_DYNSYM || !section(symbols.sh_link, strings))
            continue;
        Elf64_Sym symbol;
        for (std::size_t at = 0; at + sizeof symbol <= symbols.sh_size; at += sizeof symbol) {
            if (!read(symbols.sh_offset + at, symbol)) break;
            const auto visibility = ELF64_ST_VISIBILITY(symbol.st_other);
            const bool visible = visibility == STV_DEFAULT || visibility == STV_PROTECTED;
            // Weak ones are copies of what headers define: any does for all.
            const bool strong = ELF64_ST_BIND(symbol.st_info) == STB_GLOBAL;
            const std::size_t name = strings.sh_offset + symbol.st_name;
            if (symbol.st_shndx != SHN_UNDEF && visible && strong && name < bytes.size())
                names.emplace_back(bytes.c_str() + name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace kit
