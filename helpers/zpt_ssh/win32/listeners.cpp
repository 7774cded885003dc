#include "zpt_ssh/win32/listeners.h"

#include <cstddef>

#include "common/win32/system.h"

#include <iphlpapi.h>

namespace zpt {
namespace {

/// The owners of the table's rows with this port. Table is the system's for the address family.
template <class Table>
std::vector<std::uint32_t> ownersIn(ULONG family, std::uint16_t port) {
    const auto read = [&](void* buffer, ULONG& size) {
        return GetExtendedTcpTable(buffer, &size, FALSE, family, TCP_TABLE_OWNER_PID_LISTENER, 0);
    };
    ULONG size = 0;
    DWORD error = read(nullptr, size);
    std::vector<std::byte> bytes;
    // The table may have grown by the time it is filled.
    for (int tries = 0; error == ERROR_INSUFFICIENT_BUFFER && tries < 8; ++tries) {
        bytes.resize(size);
        error = read(bytes.data(), size);
    }
    std::vector<std::uint32_t> owners;
    if (error != NO_ERROR || bytes.size() < sizeof(Table)) return owners;
    const auto* table = reinterpret_cast<const Table*>(bytes.data());
    for (DWORD row = 0; row < table->dwNumEntries; ++row) {
        const auto& one = table->table[row];
        if (ntohs(static_cast<u_short>(one.dwLocalPort)) == port) owners.push_back(one.dwOwningPid);
    }
    return owners;
}

}  // namespace

std::vector<std::uint32_t> listenersOf(Loopback address, std::uint16_t port) {
    return address == Loopback::four ? ownersIn<MIB_TCPTABLE_OWNER_PID>(AF_INET, port)
                                     : ownersIn<MIB_TCP6TABLE_OWNER_PID>(AF_INET6, port);
}

}  // namespace zpt
