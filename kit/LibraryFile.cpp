#include "kit/LibraryFile.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include <elf.h>

#include "common/Files.h"
#include "common/Printable.h"

namespace kit {

namespace {

/// \return whether the structure lies there as a whole
template <typename Structure>
bool copy(const std::string& bytes, std::size_t offset, Structure& into) {
    if (offset > bytes.size() || bytes.size() - offset < sizeof into) return false;
    std::memcpy(&into, bytes.data() + offset, sizeof into);
    return true;
}

bool isElf(const std::string& bytes, Elf64_Ehdr& header) {
    return copy(bytes, 0, header) && std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
           header.e_ident[EI_CLASS] == ELFCLASS64;
}

/// Whether all that is to be loaded lies in the file, and the table of its sections, which is the last thing.
bool isWhole(const std::string& bytes, const Elf64_Ehdr& header) {
    for (std::size_t i = 0; i < header.e_phnum; ++i) {
        Elf64_Phdr segment;
        if (!copy(bytes, header.e_phoff + i * sizeof segment, segment)) return false;
        if (segment.p_offset > bytes.size() || segment.p_filesz > bytes.size() - segment.p_offset)
            return false;
    }
    Elf64_Shdr last;
    return header.e_phnum != 0 &&
           (header.e_shnum == 0 || copy(bytes, header.e_shoff + (header.e_shnum - 1U) * sizeof last, last));
}

}  // namespace

void judgeFile(const std::string& path) {
    const auto unless = [&](bool holds, const std::string& reason) {
        if (!holds) throw std::runtime_error(UTILS::printable(path) + ": " + reason);
    };
    unless(std::filesystem::exists(path), "there is no such file");
    unless(std::filesystem::is_regular_file(path), "this is no file");
    std::string bytes, own;
    unless(UTILS::readFile(path, bytes).empty(), "it cannot be read");
    Elf64_Ehdr header, mine;
    unless(isElf(bytes, header), "this is no library of 64 bits");
    unless(header.e_type != ET_REL, "this is an object file, which is to be linked to a library");
    unless(header.e_type == ET_DYN, "this is no library");
    if (UTILS::readFile("/proc/self/exe", own).empty() && isElf(own, mine))
        unless(header.e_machine == mine.e_machine, "this is a library for another processor");
    unless(isWhole(bytes, header), "the library is cut short");
}

std::vector<std::string> visibleSymbols(const std::string& library) {
    std::string bytes;
    std::vector<std::string> names;
    if (!UTILS::readFile(library, bytes).empty()) return names;
    const auto read = [&](std::size_t offset, auto& into) { return copy(bytes, offset, into); };
    Elf64_Ehdr header;
    if (!isElf(bytes, header)) return names;
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
