#include "connection/transport_controls.h"

#include "platform/main_form.h"

namespace qxterm {

constinit Socket comnet2{frmterm, "comnet2"};
constinit SerialPort comser{frmterm, "comser"};

}  // namespace qxterm
