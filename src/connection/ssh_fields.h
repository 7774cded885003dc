#pragma once

#include <string>
#include <string_view>

namespace qxterm {

/// Says why one of these texts must not become part of a helper's command line, as a sentence for the user;
/// empty when all of them may. The helpers' lines are not quoted, so a text with a blank, a quotation mark or
/// a leading hyphen could become an option of its own.
[[nodiscard]] std::string sshFieldComplaint(std::string_view host, std::string_view login,
                                            std::string_view sshPort);

}  // namespace qxterm
