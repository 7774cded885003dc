#include "shortage.h"

#include <array>
#include <vector>

#include "platform/win32/system.h"

/// Where the program finds the system's routine: a slot of its table of imports.
extern "C" decltype(&CreateFontA) __imp_CreateFontA;

namespace qxterm::probe {
namespace {

constexpr std::size_t objectsLeft = 100;
constexpr std::size_t mostObjects = 100000;
constexpr std::size_t largestBlock = std::size_t{1} << 30U;
constexpr std::size_t smallestBlock = std::size_t{1} << 16U;

std::vector<HGDIOBJ>& objects() {
    static std::vector<HGDIOBJ> all;
    return all;
}

/// What was reserved, in a place of its own: while it is taken there is none for a list that grows.
struct Blocks {
    std::array<void*, 65536> all;
    std::size_t count;
};
Blocks blocks{};

void giveObjects(std::size_t count) {
    for (; count > 0 && !objects().empty(); --count) {
        DeleteObject(objects().back());
        objects().pop_back();
    }
}

Json takeObjects(std::size_t left) {
    // Room for all of them beforehand.
    objects().reserve(mostObjects);
    while (objects().size() < mostObjects) {
        HGDIOBJ const object = CreateRectRgn(0, 0, 1, 1);
        if (object == nullptr) break;
        objects().push_back(object);
    }
    giveObjects(left);
    return {{"taken", objects().size()}};
}

HFONT WINAPI noFont(int, int, int, int, int, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, LPCSTR) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

void setCreateFont(decltype(&CreateFontA) routine) {
    DWORD before = 0;
    VirtualProtect(&__imp_CreateFontA, sizeof __imp_CreateFontA, PAGE_READWRITE, &before);
    __imp_CreateFontA = routine;
    VirtualProtect(&__imp_CreateFontA, sizeof __imp_CreateFontA, before, &before);
}

decltype(&CreateFontA) const systemsCreateFont = __imp_CreateFontA;

}  // namespace

Json noFonts() {
    setCreateFont(noFont);
    return Json::object();
}

Json freeFonts() {
    setCreateFont(systemsCreateFont);
    return Json::object();
}

Json fewObjects() { return takeObjects(objectsLeft); }
Json noObjects() { return takeObjects(0); }

Json freeObjects() {
    giveObjects(mostObjects);
    return Json::object();
}

Json noSpace() {
    std::size_t taken = 0;
    for (std::size_t size = largestBlock; size >= smallestBlock; size /= 2) {
        while (blocks.count < blocks.all.size()) {
            void* const block = VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_NOACCESS);
            if (block == nullptr) break;
            blocks.all[blocks.count++] = block;
            taken += size;
        }
    }
    return {{"bytes", taken}};
}

Json freeSpace() {
    while (blocks.count > 0) VirtualFree(blocks.all[--blocks.count], 0, MEM_RELEASE);
    return Json::object();
}

}  // namespace qxterm::probe
