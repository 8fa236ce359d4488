#include "tools/console/Streams.h"

#include <string_view>

namespace tools {

bool wantsColor(bool isTerminal, const char* noColor, const char* term)
{
    const bool refused = noColor != nullptr && !std::string_view(noColor).empty();
    const bool capable = term != nullptr && std::string_view(term) != "dumb";
    return isTerminal && capable && !refused;
}

} // namespace tools
