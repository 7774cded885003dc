#include "connection/transport.h"

#include <algorithm>

namespace qxterm {

const Transport& transportOf(std::int16_t type) {
    const auto* const found = std::find_if(transports.begin(), transports.end(),
                                           [&](const Transport* row) { return row->type == type; });
    return found == transports.end() ? noTransport : **found;
}

}  // namespace qxterm
