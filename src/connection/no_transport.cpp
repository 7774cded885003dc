// A profile whose type no one knows: the attempt is made, and times out.

#include "connection/session.h"
#include "connection/transport.h"

namespace qxterm {

constinit const Transport noTransport{
    .type = connectType::unknown,
    .start =
        [](ErrorTrap& /*trap*/) {
            startSession(noTransport);
            return true;
        },
};

}  // namespace qxterm
