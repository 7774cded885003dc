#include "platform/port_table.h"

#include <cstddef>
#include <vector>

#include "platform/win32/system.h"

#include <iphlpapi.h>

namespace qxterm {
namespace {

/// Reads one of the system's tables: asks for the size it needs, then has it filled. Empty when the system
/// does not give the table. read: (buffer, size in bytes) -> error number.
template <class Read>
std::vector<std::byte> tableOf(Read&& read) {
    ULONG size = 0;
    DWORD error = read(nullptr, &size);
    std::vector<std::byte> table;
    // The table may have grown by the time it is filled.
    for (int tries = 0; error == ERROR_INSUFFICIENT_BUFFER && tries < 8; ++tries) {
        table.resize(size);
        error = read(table.data(), &size);
    }
    if (error != NO_ERROR) table.clear();
    return table;
}

/// The rows of a table that was read; Table is one of the system's, with a count and an array of rows.
template <class Table, class Visit>
void eachRow(const std::vector<std::byte>& bytes, Visit&& visit) {
    if (bytes.size() < sizeof(DWORD)) return;
    const auto* table = reinterpret_cast<const Table*>(bytes.data());
    const std::size_t room = (bytes.size() - offsetof(Table, table)) / sizeof(table->table[0]);
    for (DWORD row = 0; row < table->dwNumEntries && row < room; ++row) visit(table->table[row]);
}

/// The low half of a row's field holds the port in network byte order.
std::uint16_t portOf(DWORD field) { return ntohs(static_cast<u_short>(field)); }

std::vector<std::byte> tcpTable() {
    return tableOf([](void* buffer, ULONG* size) {
        return GetTcpTable(static_cast<MIB_TCPTABLE*>(buffer), size, FALSE);
    });
}

std::vector<std::byte> tcp6Table() {
    return tableOf([](void* buffer, ULONG* size) {
        return GetTcp6Table(static_cast<MIB_TCP6TABLE*>(buffer), size, FALSE);
    });
}

std::vector<std::byte> udpTable() {
    return tableOf([](void* buffer, ULONG* size) {
        return GetUdpTable(static_cast<MIB_UDPTABLE*>(buffer), size, FALSE);
    });
}

std::vector<std::byte> udp6Table() {
    return tableOf([](void* buffer, ULONG* size) {
        return GetUdp6Table(static_cast<MIB_UDP6TABLE*>(buffer), size, FALSE);
    });
}

}  // namespace

void readPortTables(PortTables& tables) {
    tables.tcp.reset();
    tables.udp.reset();
    const auto tcp = [&](const auto& row) { tables.tcp.set(portOf(row.dwLocalPort)); };
    const auto udp = [&](const auto& row) { tables.udp.set(portOf(row.dwLocalPort)); };
    eachRow<MIB_TCPTABLE>(tcpTable(), tcp);
    eachRow<MIB_UDPTABLE>(udpTable(), udp);
    // "localhost" is both 127.0.0.1 and ::1: a port that another program has on either of them is not free.
    eachRow<MIB_TCP6TABLE>(tcp6Table(), tcp);
    eachRow<MIB_UDP6TABLE>(udp6Table(), udp);
}

}  // namespace qxterm
